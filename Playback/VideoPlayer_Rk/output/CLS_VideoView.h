#pragma once

struct AVFrame;

namespace RK_Framework::VideoPlayer {

// The part of a picture to show, in fractions of its width and height.
struct SVideoView
{
    double dX = 0.0;
    double dY = 0.0;
    double dWidth = 1.0;
    double dHeight = 1.0;

    bool IsWhole() const { return dX <= 0.0 && dY <= 0.0 && dWidth >= 1.0 && dHeight >= 1.0; }
    // Clamped into the picture; a part smaller than 1/64 of a side is widened to that.
    SVideoView Bounded() const;
};

// Digital zoom without a second scaling pass: the part is cut out of the
// decoded picture by moving its plane pointers, and its pixel aspect is
// stretched so that the part letterboxes exactly like the whole picture did.
// Any output then magnifies it into the same place.
class CLS_VideoView
{
public:
    // A new reference to _pFrame's buffers showing only _view (its colour
    // facts kept as the whole picture's); null when the format cannot be cut.
    static AVFrame* Cut(const AVFrame* _pFrame, const SVideoView& _view);
};

}  // namespace RK_Framework::VideoPlayer
