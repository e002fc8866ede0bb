#include "CLS_ParamStore.h"
#include "KoParamApi.h"
#include "KoServiceExport.h"

#include <type_traits>

namespace {

// Never destroyed, so a late caller during process exit finds a live store.
CLS_ParamStore& Store()
{
    static CLS_ParamStore* const s_pStore = new CLS_ParamStore();
    return *s_pStore;
}

}  // namespace

extern "C" KO_SERVICE_EXPORT bool Init(const std::string& path)
{
    try {
        return Store().Init(path);
    } catch (...) {
        return false;
    }
}

extern "C" KO_SERVICE_EXPORT bool IsInit()
{
    try {
        return Store().IsInit();
    } catch (...) {
        return false;
    }
}

extern "C" KO_SERVICE_EXPORT bool SetParam(const std::string& section, const std::string& key,
                                           const std::string& value)
{
    try {
        return Store().SetParam(section, key, value);
    } catch (...) {
        return false;
    }
}

extern "C" KO_SERVICE_EXPORT std::string GetParam(const std::string& section,
                                                  const std::string& key,
                                                  const std::string& defaultValue)
{
    try {
        return Store().GetParam(section, key, defaultValue);
    } catch (...) {
        return defaultValue;
    }
}

extern "C" KO_SERVICE_EXPORT bool DeleteParam(const std::string& section, const std::string& key)
{
    try {
        return Store().DeleteParam(section, key);
    } catch (...) {
        return false;
    }
}

extern "C" KO_SERVICE_EXPORT void UnInit()
{
    try {
        Store().UnInit();
    } catch (...) {
    }
}

static_assert(std::is_same_v<decltype(&Init), KoParamApi::InitFn>);
static_assert(std::is_same_v<decltype(&IsInit), KoParamApi::IsInitFn>);
static_assert(std::is_same_v<decltype(&SetParam), KoParamApi::SetParamFn>);
static_assert(std::is_same_v<decltype(&GetParam), KoParamApi::GetParamFn>);
static_assert(std::is_same_v<decltype(&DeleteParam), KoParamApi::DeleteParamFn>);
static_assert(std::is_same_v<decltype(&UnInit), KoParamApi::UnInitFn>);
