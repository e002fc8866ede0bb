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

    // The window's inner size now; false when the window is unusable.
    bool QuerySize(int& _iWidth, int& _iHeight);
    // The layout of the window's pixels (AV_PIX_FMT_NONE until QuerySize has
    // succeeded once, or for a layout this surface cannot fill).
    AVPixelFormat PixelFormat() const;
    // Bytes per row of an image _iWidth pixels wide that Present accepts.
    int Stride(int _iWidth) const;
    // Puts a whole-window image (top row first) on the window.
    bool Present(const std::uint8_t* _pPixels, int _iWidth, int _iHeight);
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
