#include "PlatformThread.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace BriskPlatform {

void SetCurrentThreadName(const std::string& _strName)
{
    // Windows 10 1607 and later only; looked up so older systems still start.
    using FnSetThreadDescription = HRESULT(WINAPI*)(HANDLE, PCWSTR);
    static const auto s_fnSet = reinterpret_cast<FnSetThreadDescription>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "SetThreadDescription")));
    if (!s_fnSet) return;
    wchar_t wszName[64] = {};
    if (MultiByteToWideChar(CP_UTF8, 0, _strName.c_str(), -1, wszName, 63) > 0)
        s_fnSet(GetCurrentThread(), wszName);
}

}  // namespace BriskPlatform
