#include "CLS_QGLRenderLibrary.h"

#include <cstdio>
#include <mutex>
#include <string>

#include "PlatformLibrary.h"

namespace RK_Framework::VideoPlayer {

const CLS_QGLRenderLibrary* CLS_QGLRenderLibrary::Find()
{
    static std::mutex s_mutex;
    // Kept for the life of the process, as the library itself is.
    static const CLS_QGLRenderLibrary* s_pLibrary = nullptr;
    static bool s_blBrokenReported = false;

    std::lock_guard<std::mutex> lock(s_mutex);
    if (s_pLibrary) return s_pLibrary;
    // Not loaded yet is the normal case of native-window playback: asked
    // again next time, since the module may load it later.
    const std::string strFileName = BriskPlatform::LibraryFileName("QGLRender");
    BriskPlatform::LibraryHandle hLibrary = BriskPlatform::FindLoadedLibrary(strFileName);
    if (!hLibrary) return nullptr;
    const auto fnIs = reinterpret_cast<FnIsRenderWidget>(
        BriskPlatform::FindSymbol(hLibrary, "QGL_IsRenderWidget"));
    const auto fnPush =
        reinterpret_cast<FnPushFrame>(BriskPlatform::FindSymbol(hLibrary, "QGL_PushFrame"));
    const auto fnPushShared =
        reinterpret_cast<FnPushShared>(BriskPlatform::FindSymbol(hLibrary, "QGL_PushSharedFrame"));
    const auto fnClear =
        reinterpret_cast<FnClear>(BriskPlatform::FindSymbol(hLibrary, "QGL_Clear"));
    const auto fnNativeWindow =
        reinterpret_cast<FnNativeWindow>(BriskPlatform::FindSymbol(hLibrary, "QGL_NativeWindow"));
    if (!fnIs || !fnPush || !fnClear) {
        if (!s_blBrokenReported) {
            std::fprintf(stderr, "video output: %s lacks the frame-sink entry points\n",
                         strFileName.c_str());
            s_blBrokenReported = true;
        }
        return nullptr;
    }
    s_pLibrary = new CLS_QGLRenderLibrary(fnIs, fnPush, fnPushShared, fnClear, fnNativeWindow);
    return s_pLibrary;
}

}  // namespace RK_Framework::VideoPlayer
