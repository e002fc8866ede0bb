#pragma once

#include <string>

// Contract of the logging service "KoLog". The library defines the functions
// with C linkage under these plain names; callers reach them through the types
// below (see KoServices.h).
namespace KoLogApi {

inline constexpr const char* kLibraryName = "KoLog";

// Severity numbers as every caller passes them.
enum Level : unsigned { Trace = 0, Info = 1, Warning = 2, Error = 3 };

// Starts logging into rotating files below logDir, one file per channel
// ("<logDir>/<channel>.log"); records below level are dropped. Answers false
// when the folder cannot be created or written.
using InitFn = bool (*)(const std::string& logDir, int level);
// Sets the lowest level written for one channel.
using SetLoggerConfigFn = bool (*)(const std::string& channel, int level);
// Sets the lowest level for every channel, present and future.
using SetLoggerConfigAllFn = bool (*)(int level);
// Writes one record. Safe from any thread; dropped before Init and after UnInit.
using PrintLogFn = void (*)(unsigned level, const char* channel, const char* file, unsigned line,
                            const char* function, const std::string* text);
// Flushes and closes every file.
using UnInitFn = void (*)();

}  // namespace KoLogApi
