#include "CLS_LoadLibrary.h"

#include "LoadDll.h"
#include "ModuleKoPlayerLog.h"
#include "PlatformLibrary.h"

namespace {
const char* const kCreateVideoPlayer = "CreateVideoPlayer";
}

CLS_LoadLibrary::CLS_LoadLibrary(const std::string& _strDirectory) : m_strDirectory(_strDirectory) {}

bool CLS_LoadLibrary::LoadPlayerDyLibrary(const std::string& _strDirectory)
{
    const std::string strPath =
        _strDirectory + "/" + BriskPlatform::LibraryFileName("VideoPlayer_Rk");
    const std::map<std::string, void*> mapFunctions = LoadDll(strPath, {kCreateVideoPlayer});
    const auto it = mapFunctions.find(kCreateVideoPlayer);
    if (it == mapFunctions.end() || !it->second) {
        PLAYER_LOG(3) << "LoadHostDll-> dlsym CreateVideoHost error!" << strPath;
        return false;
    }
    m_pfnCreateVideoPlayer = reinterpret_cast<CreateVideoPlayerFn>(it->second);
    return true;
}

bool CLS_LoadLibrary::GetCreateVideoPlayer()
{
    if (LoadPlayerDyLibrary(m_strDirectory)) {
        PLAYER_LOG(1) << "GetCreateVideoPlayer() success ";
        return true;
    }
    PLAYER_LOG(3) << "GetCreateVideoPlayer() error";
    return false;
}
