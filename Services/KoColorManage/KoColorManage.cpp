#include "CLS_PaletteStore.h"
#include "KoColorManageApi.h"
#include "KoServiceExport.h"
#include "KoServices.h"

#include <type_traits>

namespace {

CLS_PaletteStore& Store()
{
    static CLS_PaletteStore* const s_pStore =
        new CLS_PaletteStore([] { return KoService::GetParam("SystemConfig", "skin", "dark"); });
    return *s_pStore;
}

}  // namespace

extern "C" KO_SERVICE_EXPORT std::string GetNamedColor(const std::string& group,
                                                       const std::string& key,
                                                       const std::string& skin)
{
    try {
        return Store().GetNamedColor(group, key, skin);
    } catch (...) {
        return {};
    }
}

static_assert(std::is_same_v<decltype(&GetNamedColor), KoColorManageApi::GetNamedColorFn>);
