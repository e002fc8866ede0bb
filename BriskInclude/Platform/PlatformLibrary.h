#pragma once

#include <string>

// The only place that knows how the operating system loads libraries, shared
// by the framework's loader and the playback engine. The implementation is
// PlatformLibrary_posix.cpp or PlatformLibrary_win.cpp.
namespace BriskPlatform {

using LibraryHandle = void*;

// Opens a library by path (UTF-8). Null on failure; LastErrorText() then says
// why. Libraries are never closed: the suite keeps them for the whole process.
LibraryHandle OpenLibrary(const std::string& _strUtf8Path);

// The library when this process has already loaded it, found by file name
// whatever path it was loaded from, and kept loaded for good. Null (with
// LastErrorText() set) otherwise; never loads anything new.
LibraryHandle FindLoadedLibrary(const std::string& _strFileName);

// Address of an exported symbol, or null.
void* FindSymbol(LibraryHandle _hLibrary, const char* _pName);

// Why the last OpenLibrary, FindLoadedLibrary or FindSymbol on this thread
// failed: the system's error code in decimal on Windows, the loader's message
// elsewhere.
std::string LastErrorText();

// File name of a library from its base name: "KoLog" -> "libKoLog.so" on
// Linux, "KoLog.dll" on Windows. Every library path the suite builds goes
// through here.
std::string LibraryFileName(const std::string& _strBaseName);

}  // namespace BriskPlatform
