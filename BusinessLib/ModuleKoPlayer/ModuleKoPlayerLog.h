#pragma once

#include "Logger.h"

// The player module's code: its log channel, its folder in the skin tree and
// its parameter section.
inline constexpr const char* kModuleKoPlayerCode = "ModuleKoPlayer";

// One log line of the player module: PLAYER_LOG(1) << "text";
#define PLAYER_LOG(level) KOLOG((level), kModuleKoPlayerCode)
