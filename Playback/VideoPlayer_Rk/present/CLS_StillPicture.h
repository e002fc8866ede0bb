#pragma once

#include "CLS_Player_Rk.h"

struct AVFrame;

namespace RK_Framework::VideoPlayer {

// Turns a decoded picture into the 8-bit RGB copy of ST_ShownPicture: at its
// display aspect, with the colour matrix and range the outputs use.
class CLS_StillPicture
{
public:
    // Size of the copy: one side stretched by the pixel aspect, never shrunk.
    static void DisplaySize(const AVFrame* _pFrame, int& _iWidth, int& _iHeight);
    // Fills size and, when _blPixels, the pixels; false when it cannot.
    static bool Copy(const AVFrame* _pFrame, bool _blPixels, ST_ShownPicture& _stPicture);
};

}  // namespace RK_Framework::VideoPlayer
