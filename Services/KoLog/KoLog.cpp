#include "CLS_LogService.h"
#include "KoLogApi.h"
#include "KoServiceExport.h"

#include <type_traits>

namespace {

// Never destroyed: worker threads of other libraries may still log while the
// process runs its exit handlers, and a destroyed service would crash them.
CLS_LogService& Service()
{
    static CLS_LogService* const s_pService = new CLS_LogService();
    return *s_pService;
}

}  // namespace

extern "C" KO_SERVICE_EXPORT bool Init(const std::string& logDir, int level)
{
    try {
        return Service().Init(logDir, level);
    } catch (...) {
        return false;
    }
}

extern "C" KO_SERVICE_EXPORT bool SetLoggerConfig(const std::string& channel, int level)
{
    try {
        return Service().SetLoggerConfig(channel, level);
    } catch (...) {
        return false;
    }
}

extern "C" KO_SERVICE_EXPORT bool SetLoggerConfigAll(int level)
{
    try {
        return Service().SetLoggerConfigAll(level);
    } catch (...) {
        return false;
    }
}

extern "C" KO_SERVICE_EXPORT void PrintLog(unsigned level, const char* channel, const char* file,
                                           unsigned line, const char* function,
                                           const std::string* text)
{
    try {
        Service().PrintLog(level, channel, file, line, function, text);
    } catch (...) {
        // A record that cannot be written is lost; the caller must not be.
    }
}

extern "C" KO_SERVICE_EXPORT void UnInit()
{
    try {
        Service().UnInit();
    } catch (...) {
    }
}

static_assert(std::is_same_v<decltype(&Init), KoLogApi::InitFn>);
static_assert(std::is_same_v<decltype(&SetLoggerConfig), KoLogApi::SetLoggerConfigFn>);
static_assert(std::is_same_v<decltype(&SetLoggerConfigAll), KoLogApi::SetLoggerConfigAllFn>);
static_assert(std::is_same_v<decltype(&PrintLog), KoLogApi::PrintLogFn>);
static_assert(std::is_same_v<decltype(&UnInit), KoLogApi::UnInitFn>);
