#include "CLS_NativeWindowSurface.h"

#include <cstdio>

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

// GDI takes pixels for any window from any thread, so the engine's video
// thread draws without involving the thread that owns the window.

namespace RK_Framework::VideoPlayer {

struct CLS_NativeWindowSurface::SImpl
{
    HWND hWindow = nullptr;
    bool blUsable = false;
};

CLS_NativeWindowSurface::CLS_NativeWindowSurface(std::int64_t _i64WindowId)
    : m_pImpl(std::make_unique<SImpl>())
{
    m_pImpl->hWindow = reinterpret_cast<HWND>(static_cast<std::intptr_t>(_i64WindowId));
}

CLS_NativeWindowSurface::~CLS_NativeWindowSurface() = default;

bool CLS_NativeWindowSurface::QuerySize(int& _iWidth, int& _iHeight)
{
    RECT rect{};
    if (!m_pImpl->hWindow || !IsWindow(m_pImpl->hWindow) ||
        !GetClientRect(m_pImpl->hWindow, &rect)) {
        char acBuffer[64];
        std::snprintf(acBuffer, sizeof(acBuffer), "window %p does not exist",
                      static_cast<void*>(m_pImpl->hWindow));
        m_strError = acBuffer;
        m_pImpl->blUsable = false;
        return false;
    }
    _iWidth = rect.right - rect.left;
    _iHeight = rect.bottom - rect.top;
    m_pImpl->blUsable = true;
    return true;
}

AVPixelFormat CLS_NativeWindowSurface::PixelFormat() const
{
    // A 32-bit BI_RGB DIB is blue, green, red, unused in memory.
    return m_pImpl->blUsable ? AV_PIX_FMT_BGRA : AV_PIX_FMT_NONE;
}

int CLS_NativeWindowSurface::Stride(int _iWidth) const
{
    return _iWidth * 4;
}

bool CLS_NativeWindowSurface::Present(const std::uint8_t* _pPixels, int _iWidth, int _iHeight)
{
    if (!m_pImpl->blUsable || _iWidth <= 0 || _iHeight <= 0) return false;
    HDC hDc = GetDC(m_pImpl->hWindow);
    if (!hDc) {
        m_strError = "window gave no drawing context";
        return false;
    }
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = _iWidth;
    info.bmiHeader.biHeight = -_iHeight;  // top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    const int iLines =
        SetDIBitsToDevice(hDc, 0, 0, static_cast<DWORD>(_iWidth), static_cast<DWORD>(_iHeight), 0,
                          0, 0, static_cast<UINT>(_iHeight), _pPixels, &info, DIB_RGB_COLORS);
    ReleaseDC(m_pImpl->hWindow, hDc);
    if (iLines <= 0) {
        m_strError = "window refused the picture (error " + std::to_string(GetLastError()) + ")";
        return false;
    }
    return true;
}

bool CLS_NativeWindowSurface::TakeExposed()
{
    // Paint requests go to the owning thread's window procedure, out of
    // reach here; a resize is still noticed through the size.
    return false;
}

}  // namespace RK_Framework::VideoPlayer
