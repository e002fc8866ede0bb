#pragma once

// Keys and values of task requests and results shared with the rest of the
// suite. Spelled exactly as the suite spells them.
namespace ModuleKeys {

inline constexpr const char* kResult = "__result__";
inline constexpr const char* kSuccess = "success";
inline constexpr const char* kFail = "fail";
inline constexpr const char* kUIType = "UIType";
inline constexpr const char* kParentWiget = "ParentWiget";
inline constexpr const char* kOpenVideoFile = "OpenVideoFile";
inline constexpr const char* kSetLocalVideoToPlayUrl = "SetLocalVideoToPlayUrl";
inline constexpr const char* kPlayUrl = "PlayUrl";
inline constexpr const char* kOpenSound = "OpenSound";
inline constexpr const char* kSoundSet = "SoundSet";
inline constexpr const char* kDelete = "__Delete__";
inline constexpr const char* kObject = "__object__";

}  // namespace ModuleKeys
