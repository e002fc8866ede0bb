#pragma once

// The player's languages: the start parameter "Language" that the suite sends
// (lower-cased) and the translation index it selects, and each index's file
// below "./Lang/QuillPlayer/". The host offers the same keys on its command
// line. There is no key for 6, and "polish" selects 0: both are what the suite
// sends and expects.
namespace PlayerLanguages {

struct ST_LanguageKey
{
    const char* pKey;
    int iIndex;
};

inline constexpr ST_LanguageKey kKeys[] = {
    {"cn", 0},        {"en", 1},       {"russian", 2}, {"korean", 3},  {"thai", 4},
    {"vietnames", 5}, {"italian", 7},  {"arabic", 8},  {"farsi", 9},   {"tradchs", 10},
    {"turkish", 11},  {"spanish", 12}, {"polish", 0},  {"hebrew", 14}, {"dutch", 15},
    {"czech", 16},    {"slovak", 17},  {"de", 18},
};

// The names are the installed files' names, misspellings included.
inline constexpr const char* kFiles[] = {
    "QuillPlayer_CN.qm",      "QuillPlayer_EN.qm",      "QuillPlayer_Russian.qm",
    "QuillPlayer_Korean.qm",  "QuillPlayer_Thai.qm",    "QuillPlayer_Vietnames.qm",
    "QuillPlayer_French.qm",  "QuillPlayer_Italian.qm", "QuillPlayer_Abrabic.qm",
    "QuillPlayer_Farsi.qm",   "QuillPlayer_TradCHS.qm", "QuillPlayer_Turkish.qm",
    "QuillPlayer_Spanish.qm", "QuillPlayer_Polish.qm",  "QuillPlayer_Hebrew.qm",
    "QuillPlayer_Dutch.qm",   "QuillPlayer_Czech.qm",   "QuillPlayer_Slovak.qm",
    "QuillPlayer_DE.qm",
};
inline constexpr int kFileCount = static_cast<int>(sizeof(kFiles) / sizeof(kFiles[0]));

}  // namespace PlayerLanguages
