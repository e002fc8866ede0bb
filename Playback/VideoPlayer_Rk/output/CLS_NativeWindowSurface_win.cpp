#include "CLS_NativeWindowSurface.h"

#include <cstdio>
#include <new>
#include <vector>

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
    std::vector<std::uint8_t> vecCanvas;
    int iCanvasWidth = 0;
    int iCanvasHeight = 0;
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

std::uint8_t* CLS_NativeWindowSurface::Canvas(int _iWidth, int _iHeight, int& _iStride,
                                              bool& _blFresh)
{
    SImpl& impl = *m_pImpl;
    _blFresh = false;
    if (!impl.blUsable || _iWidth <= 0 || _iHeight <= 0) return nullptr;
    _iStride = _iWidth * 4;
    if (_iWidth != impl.iCanvasWidth || _iHeight != impl.iCanvasHeight) {
        impl.iCanvasWidth = impl.iCanvasHeight = 0;
        try {
            impl.vecCanvas.resize(static_cast<std::size_t>(_iStride) * _iHeight);
        } catch (const std::bad_alloc&) {
            m_strError = "out of memory for a window of this size";
            return nullptr;
        }
        impl.iCanvasWidth = _iWidth;
        impl.iCanvasHeight = _iHeight;
        _blFresh = true;
    }
    return impl.vecCanvas.data();
}

bool CLS_NativeWindowSurface::Present()
{
    const int iWidth = m_pImpl->iCanvasWidth, iHeight = m_pImpl->iCanvasHeight;
    const std::uint8_t* pPixels = m_pImpl->vecCanvas.data();
    if (!m_pImpl->blUsable || iWidth <= 0 || iHeight <= 0) return false;
    HDC hDc = GetDC(m_pImpl->hWindow);
    if (!hDc) {
        m_strError = "window gave no drawing context";
        return false;
    }
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = iWidth;
    info.bmiHeader.biHeight = -iHeight;  // top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    const int iLines =
        SetDIBitsToDevice(hDc, 0, 0, static_cast<DWORD>(iWidth), static_cast<DWORD>(iHeight), 0, 0,
                          0, static_cast<UINT>(iHeight), pPixels, &info, DIB_RGB_COLORS);
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
