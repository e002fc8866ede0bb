#pragma once

#include "output/IVideoOutput.h"

namespace RK_Framework::VideoPlayer {

// Accepts pictures and shows them nowhere: headless decoding, benchmarks, and
// builds without a drawing back end.
class CLS_NullVideoOutput : public IVideoOutput
{
public:
    bool Show(const AVFrame* _pFrame) override;
    void Clear() override {}
    void Refresh() override {}
};

}  // namespace RK_Framework::VideoPlayer
