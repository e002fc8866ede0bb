#pragma once

#include <cstdint>
#include <memory>

struct AVFrame;

namespace RK_Framework::VideoPlayer {

// Where decoded pictures go. One output serves one play handle. The engine's
// presenter thread calls Show and Refresh; Clear comes once that thread has
// stopped. Create is called on the thread that calls Play.
class IVideoOutput
{
public:
    virtual ~IVideoOutput() = default;

    // Shows frame (any pixel format FFmpeg decodes to), letterboxed by its
    // display aspect ratio. The output keeps what it needs; the caller keeps
    // ownership of frame. False when the picture could not be shown.
    virtual bool Show(const AVFrame* frame) = 0;
    // Shows black and forgets the last picture.
    virtual void Clear() = 0;
    // Redraws the last picture when the surface needs it (resized or exposed
    // since the last drawing); cheap otherwise, so a paused engine may call it
    // a few times a second to let a native window follow its size.
    virtual void Refresh() = 0;
};

// Picks the output for a play handle: a live QGLRender widget when QGLRender's
// registry knows the handle, else a native window id drawn into directly.
// 0 gives an output that discards pictures (headless decoding, benchmarks).
// Never null.
std::unique_ptr<IVideoOutput> CreateVideoOutput(std::int64_t playHandle);

}  // namespace RK_Framework::VideoPlayer
