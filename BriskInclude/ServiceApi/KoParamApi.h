#pragma once

#include <string>

// Contract of the parameter service "KoParam": sections of string keys and
// string values, persisted in one per-user settings file.
namespace KoParamApi {

inline constexpr const char* kLibraryName = "KoParam";

// Opens (or creates) the settings file at path. A file that cannot be parsed is
// kept beside it as a backup and the service starts empty.
using InitFn = bool (*)(const std::string& path);
using IsInitFn = bool (*)();
// Stores one value and writes the file at once. False when not initialised or
// the file cannot be written (the value is still held in memory).
using SetParamFn = bool (*)(const std::string& section, const std::string& key,
                            const std::string& value);
// The stored value, or defaultValue when there is none.
using GetParamFn = std::string (*)(const std::string& section, const std::string& key,
                                   const std::string& defaultValue);
using DeleteParamFn = bool (*)(const std::string& section, const std::string& key);
using UnInitFn = void (*)();

}  // namespace KoParamApi
