#include <new>

#include "CLS_Player_Rk.h"
#include "CLS_VideoPlayerEngine.h"

extern "C" RK_Framework::VideoPlayer::CLS_Player_Rk* CreateVideoPlayer(const char* _pLibraryDir)
{
    (void)_pLibraryDir;  // everything the engine needs is linked in or beside it
    try {
        return new (std::nothrow) RK_Framework::VideoPlayer::CLS_VideoPlayerEngine();
    } catch (...) {
        return nullptr;
    }
}
