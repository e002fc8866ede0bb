#pragma once

#include <cstdint>
#include <memory>
#include <string>

extern "C" {
#include <libavutil/pixfmt.h>
}

namespace RK_Framework::VideoPlayer {

// A window of another component (the player's video area) as a place to put
// pixels, talked to through the window system directly: the toolkit that owns
// the window reports no size for it to a foreign caller, and the engine must
// not depend on that toolkit anyway. A window that does not exist, or goes
// away, fails the calls; it never ends the process.
class CLS_NativeWindowSurface
{
public:
    explicit CLS_NativeWindowSurface(std::int64_t _i64WindowId);
    ~CLS_NativeWindowSurface();
    CLS_NativeWindowSurface(const CLS_NativeWindowSurface&) = delete;
    CLS_NativeWindowSurface& operator=(const CLS_NativeWindowSurface&) = delete;

    // The window's inner size as the window system last reported it (no
    // round trip once set up); false when the window is unusable.
    bool QuerySize(int& _iWidth, int& _iHeight);
    // The layout of the window's pixels (AV_PIX_FMT_NONE until QuerySize has
    // succeeded once, or for a layout this surface cannot fill).
    AVPixelFormat PixelFormat() const;
    // An image of _iWidth x _iHeight pixels (top row first, _iStride bytes a
    // row) to draw the next picture into. The same memory comes back while
    // the size stays, its pixels as left; _blFresh tells that it is new and
    // its pixels undefined. Waits until the window system has finished
    // reading the previous picture from it. Null on failure.
    std::uint8_t* Canvas(int _iWidth, int _iHeight, int& _iStride, bool& _blFresh);
    // Puts the whole canvas on the window.
    bool Present();
    // True once after the window system asked for the content again (the
    // window was uncovered, mapped or resized).
    bool TakeExposed();

    const std::string& LastError() const { return m_strError; }

private:
    struct SImpl;
    std::unique_ptr<SImpl> m_pImpl;
    std::string m_strError;
};

}  // namespace RK_Framework::VideoPlayer
