#include "CLS_VideoFrameTraits.h"

#include <algorithm>
#include <cmath>

extern "C" {
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace RK_Framework::VideoPlayer {

bool CLS_VideoFrameTraits::HasPicture(const AVFrame* _pFrame)
{
    return _pFrame && _pFrame->width > 0 && _pFrame->height > 0 && _pFrame->data[0] &&
           av_pix_fmt_desc_get(static_cast<AVPixelFormat>(_pFrame->format)) != nullptr;
}

bool CLS_VideoFrameTraits::IsFullRange(const AVFrame* _pFrame)
{
    switch (_pFrame->format) {
        case AV_PIX_FMT_YUVJ420P:
        case AV_PIX_FMT_YUVJ422P:
        case AV_PIX_FMT_YUVJ444P:
        case AV_PIX_FMT_YUVJ440P:
        case AV_PIX_FMT_YUVJ411P:
            return true;
        default:
            return _pFrame->color_range == AVCOL_RANGE_JPEG;
    }
}

bool CLS_VideoFrameTraits::UsesBt709(const AVFrame* _pFrame)
{
    switch (_pFrame->colorspace) {
        case AVCOL_SPC_BT709:
        // Of the two matrices a widget knows, 709 is by far the nearer.
        case AVCOL_SPC_BT2020_NCL:
        case AVCOL_SPC_BT2020_CL:
            return true;
        case AVCOL_SPC_BT470BG:
        case AVCOL_SPC_SMPTE170M:
        case AVCOL_SPC_SMPTE240M:
        case AVCOL_SPC_FCC:
            return false;
        default:
            return _pFrame->height >= 720;
    }
}

AVRational CLS_VideoFrameTraits::SampleAspect(const AVFrame* _pFrame)
{
    const AVRational sar = _pFrame->sample_aspect_ratio;
    if (sar.num <= 0 || sar.den <= 0) return AVRational{1, 1};
    // Anything past 10:1 is a broken header, not a real pixel shape.
    const double dSar = av_q2d(sar);
    if (dSar < 0.1 || dSar > 10.0) return AVRational{1, 1};
    return sar;
}

const int* CLS_VideoFrameTraits::SwsCoefficients(const AVFrame* _pFrame)
{
    return sws_getCoefficients(UsesBt709(_pFrame) ? SWS_CS_ITU709 : SWS_CS_ITU601);
}

SVideoRect CLS_VideoFrameTraits::FitRect(int _iWidth, int _iHeight, AVRational _sar, int _iTargetW,
                                         int _iTargetH)
{
    if (_iWidth <= 0 || _iHeight <= 0 || _iTargetW <= 0 || _iTargetH <= 0) return SVideoRect();
    if (_sar.num <= 0 || _sar.den <= 0) _sar = AVRational{1, 1};
    const double dAspect =
        (static_cast<double>(_iWidth) * _sar.num) / (static_cast<double>(_iHeight) * _sar.den);
    int iW = _iTargetW, iH = _iTargetH;
    if (static_cast<double>(_iTargetW) / _iTargetH > dAspect) {
        iW = std::clamp(static_cast<int>(std::lround(_iTargetH * dAspect)), 1, _iTargetW);
    } else {
        iH = std::clamp(static_cast<int>(std::lround(_iTargetW / dAspect)), 1, _iTargetH);
    }
    return SVideoRect{(_iTargetW - iW) / 2, (_iTargetH - iH) / 2, iW, iH};
}

}  // namespace RK_Framework::VideoPlayer
