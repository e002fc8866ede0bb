#pragma once

class I_AppSignals;

// Contract of the application manager service "KoAppManager".
namespace KoAppManagerApi {

inline constexpr const char* kLibraryName = "KoAppManager";

// The one process-wide signal hub; never null, owned by the library.
using GetAppSignalsFn = I_AppSignals* (*)();

}  // namespace KoAppManagerApi
