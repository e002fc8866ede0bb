#include "CLS_NullVideoOutput.h"

namespace RK_Framework::VideoPlayer {

bool CLS_NullVideoOutput::Show(const AVFrame* _pFrame)
{
    return _pFrame != nullptr;
}

#if defined(QUILL_NULL_VIDEO_OUTPUT_ONLY)
// Without a drawing back end every handle gets the null output.
std::unique_ptr<IVideoOutput> CreateVideoOutput(std::int64_t /*playHandle*/)
{
    return std::make_unique<CLS_NullVideoOutput>();
}
#endif

}  // namespace RK_Framework::VideoPlayer
