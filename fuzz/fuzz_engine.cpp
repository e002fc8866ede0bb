// The engine's open, demux and decode of a damaged clip, the way the module
// drives it: open (with the fixed password for a sealed file), play into no
// window, step a few pictures, seek to the middle, step back, stop. After
// stop no thread of the playback may be left.

#include <dirent.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "CLS_VideoPlayerEngine.h"
#include "FuzzScratch.h"

using RK_Framework::VideoPlayer::CLS_VideoPlayerEngine;

namespace {

constexpr char kPassword[] = "quill-fuzz";
constexpr int kSteps = 6;

int ThreadCount()
{
    int iCount = 0;
    if (DIR* pDir = opendir("/proc/self/task")) {
        while (const dirent* pEntry = readdir(pDir))
            if (pEntry->d_name[0] != '.') ++iCount;
        closedir(pDir);
    }
    return iCount;
}

bool StartsWith(const std::uint8_t* _pData, std::size_t _sizeData, const char* _pPrefix,
                std::size_t _sizePrefix)
{
    return _sizeData >= _sizePrefix && std::memcmp(_pData, _pPrefix, _sizePrefix) == 0;
}

// The name users give such a file; FFmpeg takes the suffix as a hint only.
const char* SuffixOf(const std::uint8_t* _pData, std::size_t _sizeData)
{
    if (StartsWith(_pData, _sizeData, "QSDV", 4)) return ".sdv";
    if (StartsWith(_pData, _sizeData, "RIFF", 4)) return ".avi";
    if (StartsWith(_pData, _sizeData, "\x00\x00\x01\xba", 4)) return ".ps";
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
