#pragma once

#include <map>
#include <string>
#include <vector>

// Loads a library once per process and resolves the named functions.
//
// The handle is cached under the path exactly as given, also when the load
// failed: a library that could not be loaded is not tried again. Writes the
// suite's "load dll" console lines. Answers one entry per name (null when the
// function is missing), or an empty map when the library is not loaded.
// Safe for concurrent callers.
std::map<std::string, void*> LoadDll(const std::string& _strPath,
                                     const std::vector<std::string>& _vecNames);
