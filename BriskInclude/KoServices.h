#pragma once

#include "KoTaskPoolApi.h"

#include <string>

class I_AppSignals;

// Run-time access to the suite's service libraries. Each library is loaded by
// its bare file name on first use and kept for the life of the process; each
// has one process-wide table from function name to address. Nothing here links
// a service library at build time.
//
// The accessors answer the address of the named function, or null when the
// library or the function is missing or the name is not in the library's
// contract. directory empty means the bare file name (the platform's search
// order, which includes this library's own folder).
void* GetKoLogFunc(const std::string& _strName, const std::string& _strDirectory = {});
void* GetKoParamFunc(const std::string& _strName, const std::string& _strDirectory = {});
void* GetKoTaskPoolFunc(const std::string& _strName, const std::string& _strDirectory = {});
void* GetKoAppManagerFunc(const std::string& _strName, const std::string& _strDirectory = {});
void* GetKoColorManageFunc(const std::string& _strName, const std::string& _strDirectory = {});

// Call wrappers. A missing library or function makes each a no-op that answers
// its neutral value.
namespace KoService {

// KoLog "PrintLog"; dropped when unavailable.
void PrintLog(unsigned _uiLevel, const char* _pChannel, const char* _pFile, unsigned _uiLine,
              const char* _pFunction, const std::string& _strText);

// KoParam "GetParam"; "" when unavailable (callers apply their own default).
std::string GetParam(const std::string& _strSection, const std::string& _strKey,
                     const std::string& _strDefault);
// KoParam "SetParam"; false when unavailable.
bool SetParam(const std::string& _strSection, const std::string& _strKey,
              const std::string& _strValue);
// KoParam "DeleteParam"; false when unavailable.
bool DeleteParam(const std::string& _strSection, const std::string& _strKey);

// KoTaskPool "AddTmpTask"; false (and the task dropped) when unavailable.
bool AddTmpTask(const KoTaskPoolApi::Task& _task, const void* _pOwner, const std::string& _strName);
// KoTaskPool "RemoveTmpTask"; nothing when unavailable.
void RemoveTmpTask(const void* _pOwner, const std::string& _strName);

// KoAppManager "GetAppSignals"; null when unavailable.
I_AppSignals* GetAppSignals();

// KoColorManage "GetNamedColor"; "" when unavailable.
std::string GetNamedColor(const std::string& _strGroup, const std::string& _strKey,
                          const std::string& _strExtra = {});

}  // namespace KoService
