#pragma once

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/rational.h>
}

namespace RK_Framework::VideoPlayer {

// Where a picture lands inside a surface, origin top left.
struct SVideoRect
{
    int iX = 0;
    int iY = 0;
    int iWidth = 0;
    int iHeight = 0;
    bool operator==(const SVideoRect& _other) const
    {
        return iX == _other.iX && iY == _other.iY && iWidth == _other.iWidth &&
               iHeight == _other.iHeight;
    }
    bool operator!=(const SVideoRect& _other) const { return !(*this == _other); }
};

// How a decoded picture is meant to look: the colour interpretation and the
// shape on screen, with the guesses recorders' streams need when they say
// nothing about either.
class CLS_VideoFrameTraits
{
public:
    // A frame with a size and a first plane, of a format FFmpeg can describe.
    static bool HasPicture(const AVFrame* _pFrame);
    static bool IsFullRange(const AVFrame* _pFrame);
    // BT.709 when tagged so, BT.601 when tagged with one of its variants;
    // untagged HD (720 lines and more) is BT.709, anything smaller BT.601.
    static bool UsesBt709(const AVFrame* _pFrame);
    // The sample aspect ratio, 1:1 when unknown or absurd.
    static AVRational SampleAspect(const AVFrame* _pFrame);
    // swscale's coefficient table for UsesBt709.
    static const int* SwsCoefficients(const AVFrame* _pFrame);
    // Largest centred rectangle of a _iTargetW x _iTargetH surface showing the
    // picture undistorted; empty when either side has no area.
    static SVideoRect FitRect(int _iWidth, int _iHeight, AVRational _sar, int _iTargetW,
                              int _iTargetH);
};

}  // namespace RK_Framework::VideoPlayer
