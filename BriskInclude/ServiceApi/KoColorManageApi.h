#pragma once

#include <string>

// Contract of the colour service "KoColorManage": named colours per skin.
namespace KoColorManageApi {

inline constexpr const char* kLibraryName = "KoColorManage";

// The colour of key (for example "<BgColor_Common>") in group (for example
// "Common") as a text Qt understands ("#1f2329", "rgba(...)"), or "" when
// unknown. skin names the skin; empty means the active skin, read from the
// "SystemConfig"/"skin" parameter (default "dark").
using GetNamedColorFn = std::string (*)(const std::string& group, const std::string& key,
                                        const std::string& skin);

}  // namespace KoColorManageApi
