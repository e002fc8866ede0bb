#pragma once

// Export marker for the service libraries' C entry points. Only the functions a
// library's contract names are exported; everything else stays hidden.
#if defined(_WIN32)
#define KO_SERVICE_EXPORT __declspec(dllexport)
#else
#define KO_SERVICE_EXPORT __attribute__((visibility("default")))
#endif

// The service libraries are loaded by name at run time and reached through
// function pointers of the types declared in the Ko*Api.h headers. Those types
// carry C++ values (std::string, std::function) across the library boundary.
// That is sound because every library of the suite is built by one toolchain
// with one standard library; a library built otherwise must not be loaded.
