#include "CLS_GLWgtLibLoader.h"

#include "LoadDll.h"
#include "ModuleKoPlayerLog.h"
#include "PlatformLibrary.h"

namespace {

using CreateGLWgtFn = void* (*)(void*);
using ReleaseGLWgtFn = int (*)(void*);

struct GLWgtLibrary
{
    bool blLoaded = false;
    CreateGLWgtFn pfnCreate = nullptr;
    ReleaseGLWgtFn pfnRelease = nullptr;
};

GLWgtLibrary& Library()
{
    static GLWgtLibrary s_library;
    return s_library;
}

}  // namespace

void CLS_GLWgtLibLoader::LoadLibrary()
{
    GLWgtLibrary& library = Library();
    if (library.blLoaded) return;
    const std::map<std::string, void*> mapFunctions =
        LoadDll(BriskPlatform::LibraryFileName("QGLRender"), {"QGL_Create", "QGL_Release"});
    if (mapFunctions.empty()) return;
    library.pfnCreate = reinterpret_cast<CreateGLWgtFn>(mapFunctions.at("QGL_Create"));
    library.pfnRelease = reinterpret_cast<ReleaseGLWgtFn>(mapFunctions.at("QGL_Release"));
    library.blLoaded = true;
}

QWidget* CLS_GLWgtLibLoader::CreateGLWgt()
{
    LoadLibrary();
    const GLWgtLibrary& library = Library();
    if (!library.blLoaded) {
        PLAYER_LOG(3) << "CLS_GLWgtLibLoader::CreateGLWgt lib not load";
        return nullptr;
    }
    if (!library.pfnCreate) {
        PLAYER_LOG(3) << "CLS_GLWgtLibLoader::CreateGLWgt dy_create_glwgt_func not found";
        return nullptr;
    }
    return static_cast<QWidget*>(library.pfnCreate(nullptr));
}

int CLS_GLWgtLibLoader::ReleaseGLWgt(QWidget* _pWidget)
{
    LoadLibrary();
    const GLWgtLibrary& library = Library();
    if (!library.blLoaded) {
        PLAYER_LOG(3) << "CLS_GLWgtLibLoader::CreateGLWgt lib not load";
        return -1;
    }
    if (!library.pfnRelease) {
        PLAYER_LOG(3) << "CLS_GLWgtLibLoader::CreateGLWgt dy_release_glwgt_func not found";
        return -1;
    }
    const int iRet = library.pfnRelease(_pWidget);
    PLAYER_LOG(1) << "CLS_GLWgtLibLoader ReleaseGLWgt iRet = " << iRet;
    return iRet;
}
