#include "LoadDll.h"

#include "PlatformLibrary.h"

#include <iostream>
#include <mutex>

namespace {

struct LoadedLibrary
{
    BriskPlatform::LibraryHandle hLibrary = nullptr;
    std::string strError;  // why the load failed, reported again at each later use
};

struct LibraryCache
{
    std::mutex mutex;
    std::map<std::string, LoadedLibrary> mapLibraries;
};

LibraryCache& Cache()
{
    static LibraryCache s_cache;
    return s_cache;
}

}  // namespace

std::map<std::string, void*> LoadDll(const std::string& _strPath,
                                     const std::vector<std::string>& _vecNames)
{
    LibraryCache& cache = Cache();
    // One lock over lookup, load and the console lines, so two threads asking
    // for the same library load it once and their lines do not interleave.
    std::lock_guard<std::mutex> lock(cache.mutex);

    auto it = cache.mapLibraries.find(_strPath);
    if (it == cache.mapLibraries.end()) {
        std::cout << "load dll - " << _strPath << std::endl;
        LoadedLibrary loaded;
        loaded.hLibrary = BriskPlatform::OpenLibrary(_strPath);
        if (!loaded.hLibrary) loaded.strError = BriskPlatform::LastErrorText();
        it = cache.mapLibraries.emplace(_strPath, std::move(loaded)).first;
    }

    std::map<std::string, void*> mapFunctions;
    if (!it->second.hLibrary) {
        std::cerr << "load dll [" << _strPath << "] fail !!! " << it->second.strError << std::endl;
        return mapFunctions;
    }
    for (const std::string& strName : _vecNames) {
        mapFunctions[strName] = BriskPlatform::FindSymbol(it->second.hLibrary, strName.c_str());
        std::cout << "load dll [" << _strPath << ": " << strName << "] sucess" << std::endl;
    }
    return mapFunctions;
}
