#include "CLS_GLWidgetVideoOutput.h"

#include <string>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include "CLS_QGLRenderLibrary.h"
#include "CLS_VideoFrameTraits.h"
#include "QGLRenderApi.h"

namespace RK_Framework::VideoPlayer {

namespace {

// The widget's layout for an FFmpeg format it reads as is, else -1.
int WidgetLayout(int _iFormat)
{
    switch (_iFormat) {
        case AV_PIX_FMT_YUV420P:
        case AV_PIX_FMT_YUVJ420P:
            return QGL_PIX_YUV420P;
        case AV_PIX_FMT_NV12:
            return QGL_PIX_NV12;
        case AV_PIX_FMT_YUV422P:
        case AV_PIX_FMT_YUVJ422P:
            return QGL_PIX_YUV422P;
        case AV_PIX_FMT_YUV444P:
        case AV_PIX_FMT_YUVJ444P:
            return QGL_PIX_YUV444P;
        default:
            return -1;
    }
}

void ReleaseFrame(void* _pOpaque)
{
    AVFrame* pFrame = static_cast<AVFrame*>(_pOpaque);
    av_frame_free(&pFrame);
}

std::string FormatName(int _iFormat)
{
    const char* szName = av_get_pix_fmt_name(static_cast<AVPixelFormat>(_iFormat));
    return szName ? szName : "format " + std::to_string(_iFormat);
}

}  // namespace

CLS_GLWidgetVideoOutput::CLS_GLWidgetVideoOutput(const CLS_QGLRenderLibrary& _library,
                                                 void* _pWidget)
    : m_library(_library), m_pWidget(_pWidget)
{}

CLS_GLWidgetVideoOutput::~CLS_GLWidgetVideoOutput()
{
    sws_freeContext(m_pSws);
    av_freep(&m_apConverted[0]);
}

bool CLS_GLWidgetVideoOutput::Show(const AVFrame* _pFrame)
{
    if (!CLS_VideoFrameTraits::HasPicture(_pFrame)) {
        m_diagnostics.Report("frame without a picture");
        return false;
    }
    QGL_Frame frame{};
    frame.width = _pFrame->width;
    frame.height = _pFrame->height;
    const AVRational sar = CLS_VideoFrameTraits::SampleAspect(_pFrame);
    frame.sarNum = sar.num;
    frame.sarDen = sar.den;
    frame.matrix = CLS_VideoFrameTraits::UsesBt709(_pFrame) ? QGL_MATRIX_BT709 : QGL_MATRIX_BT601;
    frame.fullRange = CLS_VideoFrameTraits::IsFullRange(_pFrame) ? 1 : 0;

    const int iLayout = WidgetLayout(_pFrame->format);
    AVFrame* pShared = nullptr;
    if (iLayout >= 0) {
        frame.format = iLayout;
        for (int i = 0; i < 3; ++i) {
            frame.data[i] = _pFrame->data[i];
            frame.linesize[i] = _pFrame->linesize[i];
        }
        // The widget may keep a reference to the decoder's picture: a copy of
        // every picture would cost a full picture of memory per buffer the
        // widget rotates, and the copying time on this thread.
        const bool blTopDown = _pFrame->linesize[0] > 0 && _pFrame->linesize[1] > 0 &&
                               (iLayout == QGL_PIX_NV12 || _pFrame->linesize[2] > 0);
        if (m_library.CanShare() && blTopDown && _pFrame->buf[0]) pShared = av_frame_clone(_pFrame);
    } else if (!Convert(_pFrame, frame)) {
        return false;
    }

    const int iResult = pShared
                            ? m_library.PushSharedFrame(m_pWidget, frame, &ReleaseFrame, pShared)
                            : m_library.PushFrame(m_pWidget, frame);
    if (iResult != 0) {
        m_diagnostics.Report(iResult == -1 ? "the render widget is gone"
                                           : "the render widget refused the frame");
        return false;
    }
    m_diagnostics.Recovered();
    return true;
}

bool CLS_GLWidgetVideoOutput::Convert(const AVFrame* _pFrame, QGL_Frame& _frameOut)
{
    const int iW = _pFrame->width, iH = _pFrame->height;
    const auto eSource = static_cast<AVPixelFormat>(_pFrame->format);
    m_pSws = sws_getCachedContext(m_pSws, iW, iH, eSource, iW, iH, AV_PIX_FMT_YUV420P, SWS_BILINEAR,
                                  nullptr, nullptr, nullptr);
    if (!m_pSws) {
        m_diagnostics.Report("cannot convert " + FormatName(_pFrame->format) + " for display");
        return false;
    }
    // Same matrix and range on both sides: only depth and subsampling change,
    // and the widget is told the matrix and range the picture already has.
    const int* piCoefficients = CLS_VideoFrameTraits::SwsCoefficients(_pFrame);
    const int iRange = _frameOut.fullRange;
    sws_setColorspaceDetails(m_pSws, piCoefficients, iRange, piCoefficients, iRange, 0, 1 << 16,
                             1 << 16);
    if (iW != m_iConvertedWidth || iH != m_iConvertedHeight) {
        av_freep(&m_apConverted[0]);
        m_iConvertedWidth = m_iConvertedHeight = 0;
        if (av_image_alloc(m_apConverted, m_aiConvertedLinesize, iW, iH, AV_PIX_FMT_YUV420P, 32) <
            0) {
            m_diagnostics.Report("out of memory converting a picture");
            return false;
        }
        m_iConvertedWidth = iW;
        m_iConvertedHeight = iH;
    }
    if (sws_scale(m_pSws, _pFrame->data, _pFrame->linesize, 0, iH, m_apConverted,
                  m_aiConvertedLinesize) <= 0) {
        m_diagnostics.Report("conversion of " + FormatName(_pFrame->format) + " failed");
        return false;
    }
    _frameOut.format = QGL_PIX_YUV420P;
    for (int i = 0; i < 3; ++i) {
        _frameOut.data[i] = m_apConverted[i];
        _frameOut.linesize[i] = m_aiConvertedLinesize[i];
    }
    return true;
}

void CLS_GLWidgetVideoOutput::Clear()
{
    m_library.Clear(m_pWidget);
}

}  // namespace RK_Framework::VideoPlayer
