#include "PlatformLibrary.h"

#include <dlfcn.h>

namespace BriskPlatform {

namespace {
// dlerror() forgets its message once read, so the text is kept per thread for
// whoever asks next.
thread_local std::string t_strLastError;

void RememberError()
{
    const char* pError = dlerror();
    t_strLastError = pError ? pError : "unknown error";
}
}  // namespace

LibraryHandle OpenLibrary(const std::string& _strUtf8Path)
{
    // POSIX paths are bytes: a UTF-8 path needs no conversion.
    void* hLibrary = dlopen(_strUtf8Path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!hLibrary) RememberError();
    return hLibrary;
}

LibraryHandle FindLoadedLibrary(const std::string& _strFileName)
{
    // RTLD_NOLOAD matches the soname as well, whatever path the library was
    // loaded from. The reference taken here is never dropped.
    void* hLibrary = dlopen(_strFileName.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
    if (!hLibrary) RememberError();
    return hLibrary;
}

void* FindSymbol(LibraryHandle _hLibrary, const char* _pName)
{
    if (!_hLibrary || !_pName) return nullptr;
    dlerror();
    void* pSymbol = dlsym(_hLibrary, _pName);
    if (!pSymbol) RememberError();
    return pSymbol;
}

std::string LastErrorText()
{
    return t_strLastError;
}

std::string LibraryFileName(const std::string& _strBaseName)
{
#if defined(__APPLE__)
    return "lib" + _strBaseName + ".dylib";
#else
    return "lib" + _strBaseName + ".so";
#endif
}

}  // namespace BriskPlatform
