#pragma once

#include <string>

namespace RK_Framework::VideoPlayer {
class CLS_Player_Rk;
}

// Finds the playback library in a folder and its factory "CreateVideoPlayer".
// The library is loaded through the suite's loader, so it is loaded once per
// process and never unloaded.
class CLS_LoadLibrary
{
public:
    using CreateVideoPlayerFn = RK_Framework::VideoPlayer::CLS_Player_Rk* (*)(const char*);

    explicit CLS_LoadLibrary(const std::string& _strDirectory);

    // Loads "<directory>/<file name of VideoPlayer_Rk>" and resolves the factory.
    bool LoadPlayerDyLibrary(const std::string& _strDirectory);
    bool GetCreateVideoPlayer();
    // Null until GetCreateVideoPlayer succeeded.
    CreateVideoPlayerFn CreateVideoPlayerFunc() const { return m_pfnCreateVideoPlayer; }

private:
    std::string m_strDirectory;
    CreateVideoPlayerFn m_pfnCreateVideoPlayer = nullptr;
};
