#include "CLS_SharedLibrary.h"

#include <dlfcn.h>

namespace RK_Framework::VideoPlayer {

std::string CLS_SharedLibrary::FileName(const std::string& _strBaseName)
{
    return "lib" + _strBaseName + ".so";
}

void* CLS_SharedLibrary::FindLoaded(const std::string& _strBaseName, std::string* _pstrError)
{
    // RTLD_NOLOAD matches the soname as well, whatever path the module used.
    // The reference taken here is never dropped, so the handle stays valid.
    void* pLibrary = dlopen(FileName(_strBaseName).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
    if (!pLibrary && _pstrError) {
        const char* szError = dlerror();
        *_pstrError = szError ? szError : FileName(_strBaseName) + " is not loaded";
    }
    return pLibrary;
}

CLS_SharedLibrary::Function CLS_SharedLibrary::Symbol(void* _pLibrary, const char* _szName)
{
    return _pLibrary ? reinterpret_cast<Function>(dlsym(_pLibrary, _szName)) : nullptr;
}

}  // namespace RK_Framework::VideoPlayer
