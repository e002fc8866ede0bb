#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The readers under test take paths, not bytes: each input is written to a
// file in a private folder first. The folder is made once per process, on a
// memory file system where there is one, and removed at exit.
namespace QuillFuzz {

const std::string& ScratchDir();
// Writes the bytes to _strName (relative, parents made as needed) in the
// scratch folder, replacing what was there; the full path.
std::string WriteScratchFile(const std::string& _strName, const std::uint8_t* _pData,
                             std::size_t _sizeData);
// Empties the scratch folder: a reader may leave files of its own behind.
void ClearScratch();
// Stops the process with a message: an input broke a promise of the code
// under test. libFuzzer keeps the input as a crash.
[[noreturn]] void Fail(const char* _pWhat);

}  // namespace QuillFuzz
