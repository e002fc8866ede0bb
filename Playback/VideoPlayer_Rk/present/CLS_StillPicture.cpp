#include "CLS_StillPicture.h"

#include <cmath>

#include "CLS_VideoFrameTraits.h"

extern "C" {
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

namespace RK_Framework::VideoPlayer {

void CLS_StillPicture::DisplaySize(const AVFrame* _pFrame, int& _iWidth, int& _iHeight)
{
    const AVRational sar = CLS_VideoFrameTraits::SampleAspect(_pFrame);
    _iWidth = _pFrame->width;
    _iHeight = _pFrame->height;
    if (sar.num > sar.den)
        _iWidth = static_cast<int>(std::lround(static_cast<double>(_iWidth) * sar.num / sar.den));
    else if (sar.num < sar.den)
        _iHeight = static_cast<int>(std::lround(static_cast<double>(_iHeight) * sar.den / sar.num));
}

bool CLS_StillPicture::Copy(const AVFrame* _pFrame, bool _blPixels, ST_ShownPicture& _stPicture)
{
    if (!CLS_VideoFrameTraits::HasPicture(_pFrame)) return false;
    DisplaySize(_pFrame, _stPicture.m_iWidth, _stPicture.m_iHeight);
    _stPicture.m_vecRgb.clear();
    if (!_blPixels) return true;

    // Exact pixels where no scaling is needed; a smooth filter where the
    // aspect stretches one side.
    const bool blScaled =
        _stPicture.m_iWidth != _pFrame->width || _stPicture.m_iHeight != _pFrame->height;
    const int iFlags = (blScaled ? SWS_BICUBIC : SWS_POINT) | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT;
    SwsContext* pSws = sws_getContext(_pFrame->width, _pFrame->height,
                                      static_cast<AVPixelFormat>(_pFrame->format),
                                      _stPicture.m_iWidth, _stPicture.m_iHeight, AV_PIX_FMT_RGB24,
                                      iFlags, nullptr, nullptr, nullptr);
    if (!pSws) return false;
    const int* piCoefficients = CLS_VideoFrameTraits::SwsCoefficients(_pFrame);
    sws_setColorspaceDetails(pSws, piCoefficients,
                             CLS_VideoFrameTraits::IsFullRange(_pFrame) ? 1 : 0, piCoefficients, 1,
                             0, 1 << 16, 1 << 16);
    const int iStride = _stPicture.m_iWidth * 3;
    _stPicture.m_vecRgb.resize(static_cast<std::size_t>(iStride) * _stPicture.m_iHeight);
    std::uint8_t* apDst[4] = {_stPicture.m_vecRgb.data(), nullptr, nullptr, nullptr};
    const int aiDstStride[4] = {iStride, 0, 0, 0};
    const int iRows = sws_scale(pSws, _pFrame->data, _pFrame->linesize, 0, _pFrame->height, apDst,
                                aiDstStride);
    sws_freeContext(pSws);
    if (iRows <= 0) {
        _stPicture.m_vecRgb.clear();
        return false;
    }
    return true;
}

}  // namespace RK_Framework::VideoPlayer
