#pragma once

#include <string>

namespace RK_Framework::VideoPlayer {

// The little of run-time linking the outputs need, one file per platform.
class CLS_SharedLibrary
{
public:
    using Function = void (*)();

    // File name of a library given its base name ("QGLRender" ->
    // "libQGLRender.so" / "QGLRender.dll").
    static std::string FileName(const std::string& _strBaseName);
    // The library when this process has already loaded it, found by bare file
    // name and kept loaded for good; null (and the reason in *_pstrError)
    // otherwise. Never loads anything new.
    static void* FindLoaded(const std::string& _strBaseName, std::string* _pstrError);
    static Function Symbol(void* _pLibrary, const char* _szName);
};

}  // namespace RK_Framework::VideoPlayer
