#include "CLS_VideoView.h"

#include <algorithm>
#include <cmath>

#include "CLS_VideoFrameTraits.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
}

namespace RK_Framework::VideoPlayer {

namespace {
constexpr double kSmallestPart = 1.0 / 64.0;

// _dStart and _dLength of a side of _iSize pixels, on the chroma grid of _iShift.
void ToPixels(double _dStart, double _dLength, int _iSize, int _iShift, int& _iStart,
              int& _iLength)
{
    const int iGrid = 1 << _iShift;
    _iLength = std::max(iGrid, static_cast<int>(std::lround(_dLength * _iSize)) & ~(iGrid - 1));
    _iLength = std::min(_iLength, _iSize);
    _iStart = static_cast<int>(std::lround(_dStart * _iSize)) & ~(iGrid - 1);
    _iStart = std::clamp(_iStart, 0, (_iSize - _iLength) & ~(iGrid - 1));
}
}  // namespace

SVideoView SVideoView::Bounded() const
{
    SVideoView view;
    view.dWidth = std::clamp(dWidth, kSmallestPart, 1.0);
    view.dHeight = std::clamp(dHeight, kSmallestPart, 1.0);
    view.dX = std::clamp(dX, 0.0, 1.0 - view.dWidth);
    view.dY = std::clamp(dY, 0.0, 1.0 - view.dHeight);
    return view;
}

AVFrame* CLS_VideoView::Cut(const AVFrame* _pFrame, const SVideoView& _view)
{
    if (!CLS_VideoFrameTraits::HasPicture(_pFrame)) return nullptr;
    const AVPixFmtDescriptor* pDesc =
        av_pix_fmt_desc_get(static_cast<AVPixelFormat>(_pFrame->format));
    if (!pDesc || (pDesc->flags & (AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_BITSTREAM)))
        return nullptr;
    const SVideoView view = _view.Bounded();
    int iX = 0, iY = 0, iW = 0, iH = 0;
    ToPixels(view.dX, view.dWidth, _pFrame->width, pDesc->log2_chroma_w, iX, iW);
    ToPixels(view.dY, view.dHeight, _pFrame->height, pDesc->log2_chroma_h, iY, iH);

    AVFrame* pCut = av_frame_clone(_pFrame);
    if (!pCut) return nullptr;
    pCut->crop_left = static_cast<size_t>(iX);
    pCut->crop_top = static_cast<size_t>(iY);
    pCut->crop_right = static_cast<size_t>(_pFrame->width - iX - iW);
    pCut->crop_bottom = static_cast<size_t>(_pFrame->height - iY - iH);
    if (av_frame_apply_cropping(pCut, AV_FRAME_CROP_UNALIGNED) < 0) {
        av_frame_free(&pCut);
        return nullptr;
    }
    // The whole picture's shape: sar' = sar * (W * h) / (H * w), kept exact.
    const AVRational sar = CLS_VideoFrameTraits::SampleAspect(_pFrame);
    av_reduce(&pCut->sample_aspect_ratio.num, &pCut->sample_aspect_ratio.den,
              static_cast<int64_t>(sar.num) * _pFrame->width * iH,
              static_cast<int64_t>(sar.den) * _pFrame->height * iW, INT32_MAX);
    // Untagged pictures get their matrix from their height: the part must
    // keep the whole picture's.
    if (pCut->colorspace == AVCOL_SPC_UNSPECIFIED)
        pCut->colorspace =
            CLS_VideoFrameTraits::UsesBt709(_pFrame) ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
    return pCut;
}

}  // namespace RK_Framework::VideoPlayer
