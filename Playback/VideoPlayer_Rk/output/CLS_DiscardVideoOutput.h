#pragma once

#include "IVideoOutput.h"

namespace RK_Framework::VideoPlayer {

// For playback without a picture (handle 0): decoding, timing and sound run as
// usual and every picture counts as shown.
class CLS_DiscardVideoOutput final : public IVideoOutput
{
public:
    bool Show(const AVFrame* _pFrame) override { return _pFrame != nullptr; }
    void Clear() override {}
    void Refresh() override {}
};

}  // namespace RK_Framework::VideoPlayer
