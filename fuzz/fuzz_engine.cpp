// The engine's open, demux and decode of a damaged clip, the way the module
// drives it: open (with the fixed password for a sealed file), play into no
// window, step a few pictures, seek to the middle, step back, stop. After
// stop no thread of the playback may be left.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <string>

#include "CLS_VideoPlayerEngine.h"
#include "FuzzScratch.h"

using RK_Framework::VideoPlayer::CLS_VideoPlayerEngine;

namespace {

constexpr char kPassword[] = "quill-fuzz";
constexpr int kSteps = 6;

int ThreadCount()
{
    const std::filesystem::directory_iterator itTasks("/proc/self/task");
    return static_cast<int>(std::distance(begin(itTasks), end(itTasks)));
}

// The name users give such a file; FFmpeg takes the suffix as a hint only.
const char* SuffixOf(const std::uint8_t* _pData, std::size_t _sizeData)
{
    const std::string strMagic(reinterpret_cast<const char*>(_pData),
                               std::min<std::size_t>(_sizeData, 4));
    if (strMagic == "QSDV") return ".sdv";
    if (strMagic == "RIFF") return ".avi";
    if (strMagic == std::string("\x00\x00\x01\xba", 4)) return ".ps";
    return ".mp4";
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setenv("SDL_AUDIODRIVER", "dummy", 0);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* _pData, std::size_t _sizeData)
{
    static const int s_iThreads = ThreadCount();
    const std::string strPath = QuillFuzz::WriteScratchFile(
        std::string("clip") + SuffixOf(_pData, _sizeData), _pData, _sizeData);
    {
        CLS_VideoPlayerEngine engine;
        if (engine.OpenFile(strPath)) {
            // Nothing happens for a file that needs no key.
            engine.SetDecryptKey(kPassword, static_cast<int>(std::strlen(kPassword)));
            engine.GetTotalTime();
            engine.Play(0);
            for (int i = 0; i < kSteps && engine.StepForward(); ++i) {
            }
            engine.SetPlayPos(50);
            engine.StepForward();
            engine.StepBack();
            engine.GetPlayedTime();
            engine.Stop();
        }
    }
    QuillFuzz::ClearScratch();
    if (ThreadCount() > s_iThreads) QuillFuzz::Fail("a thread outlived its playback");
    return 0;
}
