#include "CLS_SharedLibrary.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace RK_Framework::VideoPlayer {

std::string CLS_SharedLibrary::FileName(const std::string& _strBaseName)
{
    return _strBaseName + ".dll";
}

void* CLS_SharedLibrary::FindLoaded(const std::string& _strBaseName, std::string* _pstrError)
{
    HMODULE hModule = nullptr;
    // Pinned: the module may free its own reference, the engine's stays.
    if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN, FileName(_strBaseName).c_str(),
                            &hModule)) {
        if (_pstrError) {
            *_pstrError = FileName(_strBaseName) + " is not loaded (error " +
                          std::to_string(GetLastError()) + ")";
        }
        return nullptr;
    }
    return hModule;
}

CLS_SharedLibrary::Function CLS_SharedLibrary::Symbol(void* _pLibrary, const char* _szName)
{
    if (!_pLibrary) return nullptr;
    return reinterpret_cast<Function>(GetProcAddress(static_cast<HMODULE>(_pLibrary), _szName));
}

}  // namespace RK_Framework::VideoPlayer
