#include "CLS_NativeWindowVideoOutput.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <string>
#include <utility>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace RK_Framework::VideoPlayer {

CLS_NativeWindowVideoOutput::CLS_NativeWindowVideoOutput(std::int64_t _i64WindowId)
    : m_i64Window(_i64WindowId), m_pSurface(std::make_unique<CLS_NativeWindowSurface>(_i64WindowId))
{}

CLS_NativeWindowVideoOutput::CLS_NativeWindowVideoOutput(std::function<std::int64_t()> _fnWindow)
    : m_fnWindow(std::move(_fnWindow))
{}

CLS_NativeWindowVideoOutput::~CLS_NativeWindowVideoOutput()
{
    av_frame_free(&m_pLast);
    sws_freeContext(m_pSws);
    av_freep(&m_apScratch[0]);
}

bool CLS_NativeWindowVideoOutput::Show(const AVFrame* _pFrame)
{
    if (!CLS_VideoFrameTraits::HasPicture(_pFrame)) {
        m_diagnostics.Report("frame without a picture");
        return false;
    }
    // A reference, not a copy: the decoder's buffer stays alive for redraws.
    AVFrame* pFrame = av_frame_clone(_pFrame);
    if (!pFrame) {
        m_diagnostics.Report("out of memory keeping a picture");
        return false;
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    av_frame_free(&m_pLast);
    m_pLast = pFrame;
    if (!FindWindow()) return false;
    int iWidth = 0, iHeight = 0;
    if (!m_pSurface->QuerySize(iWidth, iHeight)) {
        m_diagnostics.Report(m_pSurface->LastError());
        return false;
    }
    return Draw(iWidth, iHeight);
}

bool CLS_NativeWindowVideoOutput::FindWindow()
{
    if (!m_fnWindow) return true;
    const std::int64_t i64Window = m_fnWindow();
    if (i64Window == 0) {
        m_diagnostics.Report("the render widget is gone or has no window");
        return false;
    }
    if (i64Window != m_i64Window || !m_pSurface) {
        // Everything drawn so far belongs to the old window.
        m_pSurface = std::make_unique<CLS_NativeWindowSurface>(i64Window);
        m_i64Window = i64Window;
        m_pCanvas = nullptr;
        m_iCanvasWidth = m_iCanvasHeight = 0;
        m_eCanvasFormat = AV_PIX_FMT_NONE;
    }
    return true;
}

void CLS_NativeWindowVideoOutput::Clear()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    av_frame_free(&m_pLast);
    int iWidth = 0, iHeight = 0;
    if (FindWindow() && m_pSurface->QuerySize(iWidth, iHeight)) Draw(iWidth, iHeight);
}

void CLS_NativeWindowVideoOutput::Refresh()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    // Nothing was ever drawn: the window is still the toolkit's to paint.
    if (!m_blDrawn || !FindWindow()) return;
    const bool blExposed = m_pSurface->TakeExposed();
    int iWidth = 0, iHeight = 0;
    if (!m_pSurface->QuerySize(iWidth, iHeight)) return;
    if (blExposed || iWidth != m_iCanvasWidth || iHeight != m_iCanvasHeight) Draw(iWidth, iHeight);
}

bool CLS_NativeWindowVideoOutput::Draw(int _iWidth, int _iHeight)
{
    m_blDrawn = true;
    // A minimised or collapsed window has nothing to show; not a failure.
    if (_iWidth <= 0 || _iHeight <= 0) return true;
    const AVPixelFormat eFormat = m_pSurface->PixelFormat();
    if (eFormat == AV_PIX_FMT_NONE) {
        m_diagnostics.Report(m_pSurface->LastError());
        return false;
    }
    if (!PrepareCanvas(_iWidth, _iHeight, eFormat)) return false;

    if (!m_pLast) {
        FillBlack();
        m_rectPicture = SVideoRect();
    } else {
        SVideoRect rect = CLS_VideoFrameTraits::FitRect(m_pLast->width, m_pLast->height,
                                                        CLS_VideoFrameTraits::SampleAspect(m_pLast),
                                                        _iWidth, _iHeight);
        // swscale falls back to a path several times slower for an odd width
        // of packed RGB, and to an extra copy for rows that do not start on 16
        // bytes: a pixel or three off centre is not worth either. Its vector
        // output also darkens the last columns of a width that is not a
        // multiple of 8, so the width is cut to one.
        if (rect.iWidth > 8) rect.iWidth &= ~7;
        const int iBytesPerPixel = av_get_padded_bits_per_pixel(av_pix_fmt_desc_get(eFormat)) / 8;
        if (iBytesPerPixel == 4) rect.iX &= ~3;
        // Bars are painted only when the picture moved; the picture area is
        // overwritten by every frame anyway.
        if (rect != m_rectPicture) {
            FillBlack();
            m_rectPicture = rect;
        }
        if (!ScalePicture(rect)) return false;
    }
    if (!m_pSurface->Present()) {
        m_diagnostics.Report(m_pSurface->LastError());
        return false;
    }
    m_diagnostics.Recovered();
    return true;
}

bool CLS_NativeWindowVideoOutput::PrepareCanvas(int _iWidth, int _iHeight, AVPixelFormat _eFormat)
{
    // Waits until the previous picture has left the canvas.
    bool blFresh = false;
    m_pCanvas = m_pSurface->Canvas(_iWidth, _iHeight, m_iCanvasStride, blFresh);
    if (!m_pCanvas) {
        m_iCanvasWidth = m_iCanvasHeight = 0;
        m_diagnostics.Report(m_pSurface->LastError());
        return false;
    }
    if (!blFresh && _iWidth == m_iCanvasWidth && _iHeight == m_iCanvasHeight &&
        _eFormat == m_eCanvasFormat) {
        return true;
    }
    m_iCanvasWidth = _iWidth;
    m_iCanvasHeight = _iHeight;
    m_eCanvasFormat = _eFormat;
    m_rectPicture = SVideoRect();
    FillBlack();
    return true;
}

void CLS_NativeWindowVideoOutput::FillBlack()
{
    const std::size_t szBytes = static_cast<std::size_t>(m_iCanvasStride) * m_iCanvasHeight;
    std::memset(m_pCanvas, 0, szBytes);
    // Opaque black: a window with an alpha channel would show zero alpha as
    // a hole in the player.
    const AVPixFmtDescriptor* pDesc = av_pix_fmt_desc_get(m_eCanvasFormat);
    if (!pDesc || !(pDesc->flags & AV_PIX_FMT_FLAG_ALPHA) || pDesc->comp[3].depth != 8) return;
    const int iStep = pDesc->comp[3].step, iOffset = pDesc->comp[3].offset;
    for (int r = 0; r < m_iCanvasHeight; ++r) {
        std::uint8_t* pRow = m_pCanvas + static_cast<std::size_t>(r) * m_iCanvasStride;
        for (int c = 0; c < m_iCanvasWidth; ++c)
            pRow[c * iStep + iOffset] = 0xff;
    }
}

bool CLS_NativeWindowVideoOutput::ScalePicture(const SVideoRect& _rect)
{
    const auto eSource = static_cast<AVPixelFormat>(m_pLast->format);
    // A new context (swscale may hand it out at the old address) needs its
    // matrix set again.
    const std::array<int, 6> aiKey = {m_pLast->width, m_pLast->height, eSource,
                                      _rect.iWidth,   _rect.iHeight,   m_eCanvasFormat};
    if (aiKey != m_aiSwsKey) m_piSwsCoefficients = nullptr;
    m_aiSwsKey = aiKey;
    m_pSws = sws_getCachedContext(m_pSws, m_pLast->width, m_pLast->height, eSource, _rect.iWidth,
                                  _rect.iHeight, m_eCanvasFormat, SWS_BILINEAR, nullptr, nullptr,
                                  nullptr);
    if (!m_pSws) {
        m_piSwsCoefficients = nullptr;
        const char* szName = av_get_pix_fmt_name(eSource);
        m_diagnostics.Report(std::string("cannot convert ") + (szName ? szName : "this format") +
                             " for display");
        return false;
    }
    // Setting the matrix rebuilds swscale's tables: only when it changes.
    const int* piCoefficients = CLS_VideoFrameTraits::SwsCoefficients(m_pLast);
    const bool blFullRange = CLS_VideoFrameTraits::IsFullRange(m_pLast);
    if (piCoefficients != m_piSwsCoefficients || blFullRange != m_blSwsFullRange) {
        sws_setColorspaceDetails(m_pSws, piCoefficients, blFullRange ? 1 : 0, piCoefficients, 1, 0,
                                 1 << 16, 1 << 16);
        m_piSwsCoefficients = piCoefficients;
        m_blSwsFullRange = blFullRange;
    }

    const int iBytesPerPixel =
        av_get_padded_bits_per_pixel(av_pix_fmt_desc_get(m_eCanvasFormat)) / 8;
    std::uint8_t* pTarget = m_pCanvas + static_cast<std::size_t>(_rect.iY) * m_iCanvasStride +
                            static_cast<std::size_t>(_rect.iX) * iBytesPerPixel;
    // swscale's fast paths want aligned rows; a letterboxed spot in the window
    // rarely is, so such pictures go through an aligned scratch image.
    const bool blAligned =
        (reinterpret_cast<std::uintptr_t>(pTarget) % 16) == 0 && (m_iCanvasStride % 16) == 0;
    if (blAligned) {
        std::uint8_t* apDst[4] = {pTarget, nullptr, nullptr, nullptr};
        const int aiDstLinesize[4] = {m_iCanvasStride, 0, 0, 0};
        return sws_scale(m_pSws, m_pLast->data, m_pLast->linesize, 0, m_pLast->height, apDst,
                         aiDstLinesize) > 0;
    }
    if (_rect.iWidth != m_iScratchWidth || _rect.iHeight != m_iScratchHeight) {
        av_freep(&m_apScratch[0]);
        m_iScratchWidth = m_iScratchHeight = 0;
        if (av_image_alloc(m_apScratch, m_aiScratchLinesize, _rect.iWidth, _rect.iHeight,
                           m_eCanvasFormat, 32) < 0) {
            m_diagnostics.Report("out of memory scaling a picture");
            return false;
        }
        m_iScratchWidth = _rect.iWidth;
        m_iScratchHeight = _rect.iHeight;
    }
    if (sws_scale(m_pSws, m_pLast->data, m_pLast->linesize, 0, m_pLast->height, m_apScratch,
                  m_aiScratchLinesize) <= 0) {
        return false;
    }
    const std::size_t szRowBytes = static_cast<std::size_t>(_rect.iWidth) * iBytesPerPixel;
    for (int r = 0; r < _rect.iHeight; ++r) {
        std::memcpy(pTarget + static_cast<std::size_t>(r) * m_iCanvasStride,
                    m_apScratch[0] + static_cast<std::size_t>(r) * m_aiScratchLinesize[0],
                    szRowBytes);
    }
    return true;
}

}  // namespace RK_Framework::VideoPlayer
