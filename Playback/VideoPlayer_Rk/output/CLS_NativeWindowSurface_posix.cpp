#include "CLS_NativeWindowSurface.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include <xcb/xcb.h>

// X11 through XCB rather than Xlib: XCB has no process-wide error handler to
// fight the toolkit's over (Xlib's default one exits the process on a bad
// window id) and reports each failed request to its caller instead.

namespace RK_Framework::VideoPlayer {

namespace {

std::string Hex(std::int64_t _i64Value)
{
    char acBuffer[32];
    std::snprintf(acBuffer, sizeof(acBuffer), "0x%llx", static_cast<unsigned long long>(_i64Value));
    return acBuffer;
}

}  // namespace

struct CLS_NativeWindowSurface::SImpl
{
    xcb_connection_t* pConnection = nullptr;
    xcb_window_t uWindow = 0;
    xcb_gcontext_t uGc = 0;
    bool blSetUp = false;
    std::uint8_t u8Depth = 0;
    int iBitsPerPixel = 0;
    int iScanlinePad = 32;
    AVPixelFormat ePixelFormat = AV_PIX_FMT_NONE;
    std::size_t szMaxRequestBytes = 0;
    bool blExposed = false;

    // Finds depth, visual and pixel layout, and prepares drawing.
    bool SetUp(std::string& _strError);
    void DrainEvents();
};

bool CLS_NativeWindowSurface::SImpl::SetUp(std::string& _strError)
{
    xcb_generic_error_t* pError = nullptr;
    xcb_get_window_attributes_reply_t* pAttributes = xcb_get_window_attributes_reply(
        pConnection, xcb_get_window_attributes(pConnection, uWindow), &pError);
    xcb_get_geometry_reply_t* pGeometry =
        pAttributes
            ? xcb_get_geometry_reply(pConnection, xcb_get_geometry(pConnection, uWindow), nullptr)
            : nullptr;
    std::free(pError);
    if (!pAttributes || !pGeometry) {
        std::free(pAttributes);
        std::free(pGeometry);
        _strError = "window " + Hex(uWindow) + " does not exist";
        return false;
    }
    const xcb_visualid_t uVisual = pAttributes->visual;
    u8Depth = pGeometry->depth;
    std::free(pAttributes);
    std::free(pGeometry);

    const xcb_setup_t* pSetup = xcb_get_setup(pConnection);
    for (xcb_format_iterator_t it = xcb_setup_pixmap_formats_iterator(pSetup); it.rem;
         xcb_format_next(&it)) {
        if (it.data->depth == u8Depth) {
            iBitsPerPixel = it.data->bits_per_pixel;
            iScanlinePad = it.data->scanline_pad;
        }
    }
    const xcb_visualtype_t* pVisualType = nullptr;
    for (xcb_screen_iterator_t itScreen = xcb_setup_roots_iterator(pSetup);
         itScreen.rem && !pVisualType; xcb_screen_next(&itScreen)) {
        for (xcb_depth_iterator_t itDepth = xcb_screen_allowed_depths_iterator(itScreen.data);
             itDepth.rem && !pVisualType; xcb_depth_next(&itDepth)) {
            for (xcb_visualtype_iterator_t itVisual = xcb_depth_visuals_iterator(itDepth.data);
                 itVisual.rem; xcb_visualtype_next(&itVisual)) {
                if (itVisual.data->visual_id == uVisual) {
                    pVisualType = itVisual.data;
                    break;
                }
            }
        }
    }
    const bool blLsbFirst = pSetup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    if (pVisualType && (pVisualType->_class == XCB_VISUAL_CLASS_TRUE_COLOR ||
                        pVisualType->_class == XCB_VISUAL_CLASS_DIRECT_COLOR)) {
        const std::uint32_t uR = pVisualType->red_mask, uG = pVisualType->green_mask,
                            uB = pVisualType->blue_mask;
        const bool blRgbHigh = uR == 0xff0000 && uG == 0xff00 && uB == 0xff;
        const bool blBgrHigh = uR == 0xff && uG == 0xff00 && uB == 0xff0000;
        if (iBitsPerPixel == 32 && blRgbHigh) {
            ePixelFormat = blLsbFirst ? AV_PIX_FMT_BGRA : AV_PIX_FMT_ARGB;
        } else if (iBitsPerPixel == 32 && blBgrHigh) {
            ePixelFormat = blLsbFirst ? AV_PIX_FMT_RGBA : AV_PIX_FMT_ABGR;
        } else if (iBitsPerPixel == 24 && (blRgbHigh || blBgrHigh)) {
            ePixelFormat = (blRgbHigh == blLsbFirst) ? AV_PIX_FMT_BGR24 : AV_PIX_FMT_RGB24;
        } else if (iBitsPerPixel == 16 && uR == 0xf800 && uG == 0x07e0 && uB == 0x001f) {
            ePixelFormat = blLsbFirst ? AV_PIX_FMT_RGB565LE : AV_PIX_FMT_RGB565BE;
        }
    }
    if (ePixelFormat == AV_PIX_FMT_NONE) {
        _strError = "window " + Hex(uWindow) +
                    " has a pixel layout this output cannot fill (depth " +
                    std::to_string(u8Depth) + ")";
        return false;
    }

    uGc = xcb_generate_id(pConnection);
    const std::uint32_t uNoExposures = 0;
    xcb_create_gc(pConnection, uGc, uWindow, XCB_GC_GRAPHICS_EXPOSURES, &uNoExposures);
    // Every client keeps its own event selection on a window, so this leaves
    // the toolkit's untouched.
    const std::uint32_t uEvents = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(pConnection, uWindow, XCB_CW_EVENT_MASK, &uEvents);
    // Counted in 4-byte units; BIG-REQUESTS is used when the server has it.
    szMaxRequestBytes = static_cast<std::size_t>(xcb_get_maximum_request_length(pConnection)) * 4;
    blSetUp = true;
    return true;
}

void CLS_NativeWindowSurface::SImpl::DrainEvents()
{
    while (xcb_generic_event_t* pEvent = xcb_poll_for_event(pConnection)) {
        const std::uint8_t u8Type = pEvent->response_type & 0x7f;
        if (u8Type == XCB_EXPOSE || u8Type == XCB_CONFIGURE_NOTIFY || u8Type == XCB_MAP_NOTIFY) {
            blExposed = true;
        }
        std::free(pEvent);
    }
}

CLS_NativeWindowSurface::CLS_NativeWindowSurface(std::int64_t _i64WindowId)
    : m_pImpl(std::make_unique<SImpl>())
{
    if (_i64WindowId <= 0 || _i64WindowId > std::numeric_limits<std::uint32_t>::max()) {
        m_strError = Hex(_i64WindowId) + " is not an X window id";
        return;
    }
    m_pImpl->uWindow = static_cast<xcb_window_t>(_i64WindowId);
    // A connection of our own: drawing happens on the engine's presenter thread,
    // which must not share the toolkit's.
    m_pImpl->pConnection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(m_pImpl->pConnection)) {
        xcb_disconnect(m_pImpl->pConnection);
        m_pImpl->pConnection = nullptr;
        const char* szDisplay = std::getenv("DISPLAY");
        m_strError = std::string("cannot connect to the X display ") +
                     (szDisplay ? szDisplay : "(DISPLAY not set)");
    }
}

CLS_NativeWindowSurface::~CLS_NativeWindowSurface()
{
    if (!m_pImpl->pConnection) return;
    if (m_pImpl->uGc) xcb_free_gc(m_pImpl->pConnection, m_pImpl->uGc);
    xcb_disconnect(m_pImpl->pConnection);
}

bool CLS_NativeWindowSurface::QuerySize(int& _iWidth, int& _iHeight)
{
    SImpl& impl = *m_pImpl;
    if (!impl.pConnection) return false;
    if (xcb_connection_has_error(impl.pConnection)) {
        m_strError = "lost the connection to the X display";
        return false;
    }
    if (!impl.blSetUp && !impl.SetUp(m_strError)) return false;
    xcb_get_geometry_reply_t* pGeometry = xcb_get_geometry_reply(
        impl.pConnection, xcb_get_geometry(impl.pConnection, impl.uWindow), nullptr);
    impl.DrainEvents();
    if (!pGeometry) {
        m_strError = "window " + Hex(impl.uWindow) + " is gone";
        return false;
    }
    _iWidth = pGeometry->width;
    _iHeight = pGeometry->height;
    std::free(pGeometry);
    return true;
}

AVPixelFormat CLS_NativeWindowSurface::PixelFormat() const
{
    return m_pImpl->ePixelFormat;
}

int CLS_NativeWindowSurface::Stride(int _iWidth) const
{
    const int iPad = m_pImpl->iScanlinePad > 0 ? m_pImpl->iScanlinePad : 32;
    const int iBits = _iWidth * m_pImpl->iBitsPerPixel;
    return ((iBits + iPad - 1) / iPad) * iPad / 8;
}

bool CLS_NativeWindowSurface::Present(const std::uint8_t* _pPixels, int _iWidth, int _iHeight)
{
    SImpl& impl = *m_pImpl;
    if (!impl.blSetUp || _iWidth <= 0 || _iHeight <= 0) return false;
    const std::size_t szStride = static_cast<std::size_t>(Stride(_iWidth));
    // A whole window rarely fits in one request: send bands of rows.
    const std::size_t szHeader = 32;
    const int iBandRows =
        static_cast<int>(std::max<std::size_t>(1, (impl.szMaxRequestBytes - szHeader) / szStride));
    xcb_void_cookie_t cookieLast{};
    for (int iRow = 0; iRow < _iHeight; iRow += iBandRows) {
        const int iRows = std::min(iBandRows, _iHeight - iRow);
        const auto uLength = static_cast<std::uint32_t>(szStride * static_cast<std::size_t>(iRows));
        const std::uint8_t* pBand = _pPixels + szStride * static_cast<std::size_t>(iRow);
        const bool blLast = iRow + iRows >= _iHeight;
        const auto put = blLast ? xcb_put_image_checked : xcb_put_image;
        cookieLast = put(impl.pConnection, XCB_IMAGE_FORMAT_Z_PIXMAP, impl.uWindow, impl.uGc,
                         static_cast<std::uint16_t>(_iWidth), static_cast<std::uint16_t>(iRows), 0,
                         static_cast<std::int16_t>(iRow), 0, impl.u8Depth, uLength, pBand);
    }
    // Waiting for the last band keeps the engine at the server's pace and
    // tells whether the window still takes pictures.
    xcb_generic_error_t* pError = xcb_request_check(impl.pConnection, cookieLast);
    impl.DrainEvents();
    if (pError) {
        std::free(pError);
        m_strError = "window " + Hex(impl.uWindow) + " refused the picture";
        return false;
    }
    if (xcb_connection_has_error(impl.pConnection)) {
        m_strError = "lost the connection to the X display";
        return false;
    }
    return true;
}

bool CLS_NativeWindowSurface::TakeExposed()
{
    SImpl& impl = *m_pImpl;
    if (!impl.pConnection || !impl.blSetUp) return false;
    impl.DrainEvents();
    const bool blExposed = impl.blExposed;
    impl.blExposed = false;
    return blExposed;
}

}  // namespace RK_Framework::VideoPlayer
