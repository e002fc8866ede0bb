#include "PlatformLibrary.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace BriskPlatform {

LibraryHandle OpenLibrary(const std::string& _strUtf8Path)
{
    HMODULE hModule = LoadLibraryExA(_strUtf8Path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!hModule) {
        // The narrow call goes through the ANSI code page; a UTF-8 path with
        // characters outside it only loads through the wide call.
        wchar_t wszPath[2048] = {};
        if (MultiByteToWideChar(65001, 0, _strUtf8Path.c_str(), -1, wszPath, 2048) > 0)
            hModule = LoadLibraryExW(wszPath, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    }
    return reinterpret_cast<LibraryHandle>(hModule);
}

LibraryHandle FindLoadedLibrary(const std::string& _strFileName)
{
    HMODULE hModule = nullptr;
    // Pinned: whoever loaded it may free their reference, ours stays.
    if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN, _strFileName.c_str(), &hModule))
        return nullptr;
    return reinterpret_cast<LibraryHandle>(hModule);
}

void* FindSymbol(LibraryHandle _hLibrary, const char* _pName)
{
    if (!_hLibrary || !_pName) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(_hLibrary), _pName));
}

std::string LastErrorText()
{
    return std::to_string(GetLastError());
}

std::string LibraryFileName(const std::string& _strBaseName)
{
    return _strBaseName + ".dll";
}

}  // namespace BriskPlatform
