#include "CLS_NativeWindowSurface.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

// X11 through XCB rather than Xlib: XCB has no process-wide error handler to
// fight the toolkit's over (Xlib's default one exits the process on a bad
// window id) and reports each failed request to its caller instead.
//
// Nothing here waits for the server per picture: the size comes from the
// window's configure events, a vanished window from its destroy event or the
// error a request draws. Pictures go through a shared memory segment when the
// server offers one (it reads them in place), else as image requests.

namespace RK_Framework::VideoPlayer {

namespace {

std::string Hex(std::int64_t _i64Value)
{
    char acBuffer[32];
    std::snprintf(acBuffer, sizeof(acBuffer), "0x%llx", static_cast<unsigned long long>(_i64Value));
    return acBuffer;
}

// QUILL_X11_SHM=0 sends pictures through the connection even where shared
// memory works, for displays that claim it but cannot reach our memory.
bool SharedMemoryWanted()
{
    const char* szValue = std::getenv("QUILL_X11_SHM");
    return !szValue || std::strcmp(szValue, "0") != 0;
}

}  // namespace

struct CLS_NativeWindowSurface::SImpl
{
    xcb_connection_t* pConnection = nullptr;
    xcb_window_t uWindow = 0;
    xcb_gcontext_t uGc = 0;
    bool blSetUp = false;
    bool blGone = false;
    std::uint8_t u8Depth = 0;
    int iBitsPerPixel = 0;
    int iScanlinePad = 32;
    AVPixelFormat ePixelFormat = AV_PIX_FMT_NONE;
    std::size_t szMaxRequestBytes = 0;
    bool blExposed = false;
    int iWidth = 0;
    int iHeight = 0;

    // The canvas: a shared segment when blShm, else heap memory.
    bool blShm = false;
    std::uint8_t u8ShmFirstEvent = 0;
    std::uint8_t u8ShmMajor = 0;
    xcb_shm_seg_t uSegment = 0;
    std::uint8_t* pShared = nullptr;
    bool blPutPending = false;
    std::vector<std::uint8_t> vecHeap;
    std::uint8_t* pCanvas = nullptr;
    int iCanvasWidth = 0;
    int iCanvasHeight = 0;
    int iCanvasStride = 0;

    // Finds depth, visual, size and pixel layout, and prepares drawing.
    bool SetUp(std::string& _strError);
    void QueryShm();
    int Stride(int _iWidth) const;
    bool AttachShm(std::size_t _szBytes);
    void DetachShm();
    void Handle(xcb_generic_event_t* _pEvent);
    void DrainEvents();
    void WaitForPut();
};

bool CLS_NativeWindowSurface::SImpl::SetUp(std::string& _strError)
{
    // Events first, so that no resize between the geometry reply and the
    // selection goes unnoticed. Every client keeps its own event selection
    // on a window, so this leaves the toolkit's untouched.
    const std::uint32_t uEvents = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(pConnection, uWindow, XCB_CW_EVENT_MASK, &uEvents);
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
    iWidth = pGeometry->width;
    iHeight = pGeometry->height;
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
    // Counted in 4-byte units; BIG-REQUESTS is used when the server has it.
    szMaxRequestBytes = static_cast<std::size_t>(xcb_get_maximum_request_length(pConnection)) * 4;
    if (SharedMemoryWanted()) QueryShm();
    blSetUp = true;
    return true;
}

void CLS_NativeWindowSurface::SImpl::QueryShm()
{
    const xcb_query_extension_reply_t* pExtension =
        xcb_get_extension_data(pConnection, &xcb_shm_id);
    if (!pExtension || !pExtension->present) return;
    xcb_shm_query_version_reply_t* pVersion =
        xcb_shm_query_version_reply(pConnection, xcb_shm_query_version(pConnection), nullptr);
    if (!pVersion) return;
    std::free(pVersion);
    u8ShmFirstEvent = pExtension->first_event;
    u8ShmMajor = pExtension->major_opcode;
    blShm = true;
}

int CLS_NativeWindowSurface::SImpl::Stride(int _iWidth) const
{
    const int iPad = iScanlinePad > 0 ? iScanlinePad : 32;
    const int iBits = _iWidth * iBitsPerPixel;
    return ((iBits + iPad - 1) / iPad) * iPad / 8;
}

bool CLS_NativeWindowSurface::SImpl::AttachShm(std::size_t _szBytes)
{
    const int iId = shmget(IPC_PRIVATE, _szBytes, IPC_CREAT | 0600);
    if (iId < 0) return false;
    void* pAddress = shmat(iId, nullptr, 0);
    if (pAddress == reinterpret_cast<void*>(-1)) {
        shmctl(iId, IPC_RMID, nullptr);
        return false;
    }
    uSegment = xcb_generate_id(pConnection);
    // The one round trip per size: a server on another machine accepts the
    // request but cannot reach the segment, and says so here.
    xcb_generic_error_t* pError = xcb_request_check(
        pConnection,
        xcb_shm_attach_checked(pConnection, uSegment, static_cast<std::uint32_t>(iId), 0));
    // Marked for removal at once: it goes away with its last user, even when
    // this process dies without cleaning up.
    shmctl(iId, IPC_RMID, nullptr);
    if (pError) {
        std::free(pError);
        shmdt(pAddress);
        uSegment = 0;
        return false;
    }
    pShared = static_cast<std::uint8_t*>(pAddress);
    return true;
}

void CLS_NativeWindowSurface::SImpl::DetachShm()
{
    if (!pShared) return;
    WaitForPut();
    xcb_shm_detach(pConnection, uSegment);
    xcb_flush(pConnection);
    shmdt(pShared);
    pShared = nullptr;
    uSegment = 0;
}

void CLS_NativeWindowSurface::SImpl::Handle(xcb_generic_event_t* _pEvent)
{
    const std::uint8_t u8Type = _pEvent->response_type & 0x7f;
    if (u8Type == 0) {
        const auto* pError = reinterpret_cast<const xcb_generic_error_t*>(_pEvent);
        if (pError->error_code == XCB_WINDOW || pError->error_code == XCB_DRAWABLE) {
            blGone = true;
        } else if (blShm && pError->major_code == u8ShmMajor) {
            blShm = false;  // the segment stopped working; the connection carries on
        }
        // A failed put sends no completion.
        if (pError->major_code == u8ShmMajor) blPutPending = false;
    } else if (blShm && u8Type == u8ShmFirstEvent + XCB_SHM_COMPLETION) {
        blPutPending = false;
    } else if (u8Type == XCB_CONFIGURE_NOTIFY) {
        const auto* pConfigure = reinterpret_cast<const xcb_configure_notify_event_t*>(_pEvent);
        // A move alone changes nothing inside the window.
        if (pConfigure->window == uWindow &&
            (pConfigure->width != iWidth || pConfigure->height != iHeight)) {
            iWidth = pConfigure->width;
            iHeight = pConfigure->height;
            blExposed = true;
        }
    } else if (u8Type == XCB_DESTROY_NOTIFY) {
        if (reinterpret_cast<const xcb_destroy_notify_event_t*>(_pEvent)->window == uWindow)
            blGone = true;
    } else if (u8Type == XCB_EXPOSE || u8Type == XCB_MAP_NOTIFY) {
        blExposed = true;
    }
}

void CLS_NativeWindowSurface::SImpl::DrainEvents()
{
    while (xcb_generic_event_t* pEvent = xcb_poll_for_event(pConnection)) {
        Handle(pEvent);
        std::free(pEvent);
    }
}

void CLS_NativeWindowSurface::SImpl::WaitForPut()
{
    DrainEvents();
    while (blPutPending && !blGone) {
        xcb_generic_event_t* pEvent = xcb_wait_for_event(pConnection);
        if (!pEvent) {  // the connection broke
            blPutPending = false;
            break;
        }
        Handle(pEvent);
        std::free(pEvent);
    }
    blPutPending = false;
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
    m_pImpl->DetachShm();
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
    impl.DrainEvents();
    if (impl.blGone) {
        m_strError = "window " + Hex(impl.uWindow) + " is gone";
        return false;
    }
    _iWidth = impl.iWidth;
    _iHeight = impl.iHeight;
    return true;
}

AVPixelFormat CLS_NativeWindowSurface::PixelFormat() const
{
    return m_pImpl->ePixelFormat;
}

std::uint8_t* CLS_NativeWindowSurface::Canvas(int _iWidth, int _iHeight, int& _iStride,
                                              bool& _blFresh)
{
    SImpl& impl = *m_pImpl;
    _blFresh = false;
    if (!impl.blSetUp || _iWidth <= 0 || _iHeight <= 0) return nullptr;
    impl.WaitForPut();
    if (impl.pCanvas && _iWidth == impl.iCanvasWidth && _iHeight == impl.iCanvasHeight &&
        (impl.pCanvas != impl.pShared || impl.blShm)) {
        _iStride = impl.iCanvasStride;
        return impl.pCanvas;
    }
    impl.DetachShm();
    impl.pCanvas = nullptr;
    impl.iCanvasWidth = impl.iCanvasHeight = 0;
    const int iStride = impl.Stride(_iWidth);
    const std::size_t szBytes =
        static_cast<std::size_t>(iStride) * static_cast<std::size_t>(_iHeight);
    if (impl.blShm && !impl.AttachShm(szBytes)) impl.blShm = false;
    if (impl.pShared) {
        std::vector<std::uint8_t>().swap(impl.vecHeap);
        impl.pCanvas = impl.pShared;
    } else {
        try {
            impl.vecHeap.resize(szBytes);
        } catch (const std::bad_alloc&) {
            m_strError = "out of memory for a " + std::to_string(_iWidth) + "x" +
                         std::to_string(_iHeight) + " window";
            return nullptr;
        }
        impl.pCanvas = impl.vecHeap.data();
    }
    impl.iCanvasWidth = _iWidth;
    impl.iCanvasHeight = _iHeight;
    impl.iCanvasStride = iStride;
    _iStride = iStride;
    _blFresh = true;
    return impl.pCanvas;
}

bool CLS_NativeWindowSurface::Present()
{
    SImpl& impl = *m_pImpl;
    if (!impl.blSetUp || !impl.pCanvas) return false;
    const int iWidth = impl.iCanvasWidth, iHeight = impl.iCanvasHeight;
    if (impl.pCanvas == impl.pShared) {
        // send_event: the server says when it has read the segment, which
        // must not be written before.
        xcb_shm_put_image(impl.pConnection, impl.uWindow, impl.uGc,
                          static_cast<std::uint16_t>(iWidth), static_cast<std::uint16_t>(iHeight),
                          0, 0, static_cast<std::uint16_t>(iWidth),
                          static_cast<std::uint16_t>(iHeight), 0, 0, impl.u8Depth,
                          XCB_IMAGE_FORMAT_Z_PIXMAP, 1, impl.uSegment, 0);
        impl.blPutPending = true;
    } else {
        const std::size_t szStride = static_cast<std::size_t>(impl.iCanvasStride);
        // A whole window rarely fits in one request: send bands of rows.
        const std::size_t szHeader = 32;
        const int iBandRows = static_cast<int>(
            std::max<std::size_t>(1, (impl.szMaxRequestBytes - szHeader) / szStride));
        for (int iRow = 0; iRow < iHeight; iRow += iBandRows) {
            const int iRows = std::min(iBandRows, iHeight - iRow);
            const auto uLength =
                static_cast<std::uint32_t>(szStride * static_cast<std::size_t>(iRows));
            xcb_put_image(impl.pConnection, XCB_IMAGE_FORMAT_Z_PIXMAP, impl.uWindow, impl.uGc,
                          static_cast<std::uint16_t>(iWidth), static_cast<std::uint16_t>(iRows), 0,
                          static_cast<std::int16_t>(iRow), 0, impl.u8Depth, uLength,
                          impl.pCanvas + szStride * static_cast<std::size_t>(iRow));
        }
    }
    xcb_flush(impl.pConnection);
    impl.DrainEvents();
    if (xcb_connection_has_error(impl.pConnection)) {
        m_strError = "lost the connection to the X display";
        return false;
    }
    if (impl.blGone) {
        m_strError = "window " + Hex(impl.uWindow) + " is gone";
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
