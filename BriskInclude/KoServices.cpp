#include "KoServices.h"

#include "KoAppManagerApi.h"
#include "KoColorManageApi.h"
#include "KoLogApi.h"
#include "KoParamApi.h"
#include "LoadDll.h"
#include "PlatformLibrary.h"

#include <mutex>

namespace {

// One service library: its contract's function names and the process-wide
// table of the addresses resolved so far.
class ServiceLibrary
{
public:
    ServiceLibrary(const char* _pBaseName, std::vector<std::string> _vecNames)
        : m_strFileName(BriskPlatform::LibraryFileName(_pBaseName)),
          m_vecNames(std::move(_vecNames))
    {}

    void* Find(const std::string& _strName, const std::string& _strDirectory)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        auto it = m_mapFunctions.find(_strName);
        if (it != m_mapFunctions.end()) return it->second;
        // Any name not in the table asks the loader again, one outside the
        // contract included: the loader keeps the handle, so this only
        // repeats its console lines, and a missing library its error line.

        const std::string strPath =
            _strDirectory.empty() ? m_strFileName : _strDirectory + "/" + m_strFileName;
        const std::map<std::string, void*> mapLoaded = LoadDll(strPath, m_vecNames);
        m_mapFunctions.insert(mapLoaded.begin(), mapLoaded.end());

        it = m_mapFunctions.find(_strName);
        return it != m_mapFunctions.end() ? it->second : nullptr;
    }

private:
    const std::string m_strFileName;
    const std::vector<std::string> m_vecNames;
    std::mutex m_mutex;
    std::map<std::string, void*> m_mapFunctions;
};

ServiceLibrary& KoLogLibrary()
{
    static ServiceLibrary s_library(
        KoLogApi::kLibraryName,
        {"Init", "SetLoggerConfig", "SetLoggerConfigAll", "PrintLog", "UnInit"});
    return s_library;
}

ServiceLibrary& KoParamLibrary()
{
    static ServiceLibrary s_library(
        KoParamApi::kLibraryName,
        {"Init", "IsInit", "SetParam", "GetParam", "DeleteParam", "UnInit"});
    return s_library;
}

ServiceLibrary& KoTaskPoolLibrary()
{
    static ServiceLibrary s_library(KoTaskPoolApi::kLibraryName,
                                    {"AddTmpTask", "RemoveTmpTask", "AddLoopTask", "RemoveTask",
                                     "KillTask", "KillTaskAll", "UnInit"});
    return s_library;
}

ServiceLibrary& KoAppManagerLibrary()
{
    static ServiceLibrary s_library(KoAppManagerApi::kLibraryName, {"GetAppSignals"});
    return s_library;
}

ServiceLibrary& KoColorManageLibrary()
{
    static ServiceLibrary s_library(KoColorManageApi::kLibraryName, {"GetNamedColor"});
    return s_library;
}

template <typename Fn>
Fn As(void* _pFunction)
{
    return reinterpret_cast<Fn>(_pFunction);
}

}  // namespace

void* GetKoLogFunc(const std::string& _strName, const std::string& _strDirectory)
{
    return KoLogLibrary().Find(_strName, _strDirectory);
}

void* GetKoParamFunc(const std::string& _strName, const std::string& _strDirectory)
{
    return KoParamLibrary().Find(_strName, _strDirectory);
}

void* GetKoTaskPoolFunc(const std::string& _strName, const std::string& _strDirectory)
{
    return KoTaskPoolLibrary().Find(_strName, _strDirectory);
}

void* GetKoAppManagerFunc(const std::string& _strName, const std::string& _strDirectory)
{
    return KoAppManagerLibrary().Find(_strName, _strDirectory);
}

void* GetKoColorManageFunc(const std::string& _strName, const std::string& _strDirectory)
{
    return KoColorManageLibrary().Find(_strName, _strDirectory);
}

namespace KoService {

void PrintLog(unsigned _uiLevel, const char* _pChannel, const char* _pFile, unsigned _uiLine,
              const char* _pFunction, const std::string& _strText)
{
    if (auto pfn = As<KoLogApi::PrintLogFn>(GetKoLogFunc("PrintLog")))
        pfn(_uiLevel, _pChannel, _pFile, _uiLine, _pFunction, &_strText);
}

std::string GetParam(const std::string& _strSection, const std::string& _strKey,
                     const std::string& _strDefault)
{
    if (auto pfn = As<KoParamApi::GetParamFn>(GetKoParamFunc("GetParam")))
        return pfn(_strSection, _strKey, _strDefault);
    return {};
}

bool SetParam(const std::string& _strSection, const std::string& _strKey,
              const std::string& _strValue)
{
    if (auto pfn = As<KoParamApi::SetParamFn>(GetKoParamFunc("SetParam")))
        return pfn(_strSection, _strKey, _strValue);
    return false;
}

bool DeleteParam(const std::string& _strSection, const std::string& _strKey)
{
    if (auto pfn = As<KoParamApi::DeleteParamFn>(GetKoParamFunc("DeleteParam")))
        return pfn(_strSection, _strKey);
    return false;
}

bool AddTmpTask(const KoTaskPoolApi::Task& _task, const void* _pOwner, const std::string& _strName)
{
    if (auto pfn = As<KoTaskPoolApi::AddTmpTaskFn>(GetKoTaskPoolFunc("AddTmpTask")))
        return pfn(_task, _pOwner, _strName);
    return false;
}

void RemoveTmpTask(const void* _pOwner, const std::string& _strName)
{
    if (auto pfn = As<KoTaskPoolApi::RemoveTmpTaskFn>(GetKoTaskPoolFunc("RemoveTmpTask")))
        pfn(_pOwner, _strName);
}

I_AppSignals* GetAppSignals()
{
    if (auto pfn = As<KoAppManagerApi::GetAppSignalsFn>(GetKoAppManagerFunc("GetAppSignals")))
        return pfn();
    return nullptr;
}

std::string GetNamedColor(const std::string& _strGroup, const std::string& _strKey,
                          const std::string& _strExtra)
{
    if (auto pfn = As<KoColorManageApi::GetNamedColorFn>(GetKoColorManageFunc("GetNamedColor")))
        return pfn(_strGroup, _strKey, _strExtra);
    return {};
}

}  // namespace KoService
