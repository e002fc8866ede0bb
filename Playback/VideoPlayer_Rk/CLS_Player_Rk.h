#pragma once

#include <climits>
#include <cstdint>
#include <string>
#include <vector>

#if defined(_WIN32)
#if defined(VIDEOPLAYER_RK_BUILD)
#define VIDEOPLAYER_RK_API __declspec(dllexport)
#else
#define VIDEOPLAYER_RK_API __declspec(dllimport)
#endif
#else
#define VIDEOPLAYER_RK_API __attribute__((visibility("default")))
#endif

namespace RK_Framework::VideoPlayer {

class CLS_Player_Rk;

// Events a player raises through its callback, on a thread of the library.
enum EM_PlayerEvent : int {
    PLAYER_EVENT_PASSWORD_NEEDED = 55,
    PLAYER_EVENT_WRONG_PASSWORD = 56,
    PLAYER_EVENT_PLAY_OVER = 81,
};

using PlayerEventFunc = void (*)(void* _pUser, CLS_Player_Rk* _pPlayer, int _iType);

// Handed over once with SetEventCallback; its layout (user word first, then
// the function) is part of the binary contract with the module.
struct ST_PlayerEventCallback
{
    void* m_pUser = nullptr;
    PlayerEventFunc m_pfnCallback = nullptr;
};

// A copy of the picture on screen, for a still of it.
struct ST_ShownPicture
{
    // Size of the copy: the decoded picture stretched to its display aspect
    // (never shrunk), so a still looks as the picture does on screen.
    int m_iWidth = 0;
    int m_iHeight = 0;
    // 8-bit RGB, rows top to bottom, m_iWidth * 3 bytes each; left empty
    // when only the facts were asked for.
    std::vector<std::uint8_t> m_vecRgb;
    // Seconds from the first picture.
    double m_dTime = -1.0;
    // The recording's own clock at this picture, in milliseconds: since
    // 1970-01-01 UTC when the file names a date, else since midnight of an
    // unknown day; kNoRecordedTime when the file carries no clock.
    static constexpr std::int64_t kNoRecordedTime = INT64_MIN;
    std::int64_t m_i64RecordedMs = kNoRecordedTime;
    bool m_blRecordedDate = false;
};

// One player plays one file at a time. Every operation is called from one
// thread (the GUI thread of the host); events come back on the library's own
// threads. The order of the virtual functions is fixed: the module was built
// against it.
class VIDEOPLAYER_RK_API CLS_Player_Rk
{
public:
    CLS_Player_Rk() = default;
    CLS_Player_Rk(const CLS_Player_Rk&) = delete;
    CLS_Player_Rk& operator=(const CLS_Player_Rk&) = delete;

    virtual ~CLS_Player_Rk();
    // Window the current playback renders into; 0 when none.
    virtual std::int64_t GetPlayHandle() = 0;
    virtual bool OpenFile(const std::string& _strPath) = 0;
    virtual void SetEventCallback(const ST_PlayerEventCallback* _pCallback) = 0;
    virtual void Init() = 0;
    // Closes the playback; true also when nothing was open.
    virtual bool Stop() = 0;
    virtual bool Play(std::int64_t _i64PlayHandle) = 0;
    // True when the state changed. Pausing or resuming returns to normal speed.
    virtual bool Pause(bool _blPause) = 0;
    // 0 when the speed changed by one step, non-zero at the limit.
    virtual int Fast() = 0;
    virtual int Slow() = 0;
    virtual bool SetPlayPos(int _iPercent) = 0;
    // 0..100; 50 is the default.
    virtual bool SetVolume(std::int64_t _i64Volume) = 0;
    virtual bool OpenSound() = 0;
    virtual bool CloseSound() = 0;
    // Whole seconds; negative when unknown.
    virtual int GetTotalTime() = 0;
    // Whole seconds of the picture on screen, from the first picture.
    virtual int GetPlayedTime() = 0;
    virtual bool StepForward() = 0;
    virtual bool StepBack() = 0;
    // 0 when the key was accepted.
    virtual int SetDecryptKey(const char* _pKey, int _iLength) = 0;
    // Non-zero while a playback is held.
    virtual int IsBusy() = 0;

    // Back to 1X; 0 on success.
    int NormalSpeed();

protected:
    virtual int DoNormalSpeed() = 0;

public:
    // Later additions; they stay after everything above.

    // The picture on screen, with its pixels when _blPixels. False when no
    // picture has been shown yet.
    virtual bool GetShownPicture(ST_ShownPicture& _stPicture, bool _blPixels) = 0;
    // Shows only a part of the picture, in fractions of its width and height
    // (0, 0, 1, 1: all of it), magnified into the place the whole picture
    // takes. Kept for later files of this player.
    virtual bool SetShownPart(double _dX, double _dY, double _dWidth, double _dHeight) = 0;
};

}  // namespace RK_Framework::VideoPlayer

// Creates a player; the caller owns it. _pLibraryDir is the folder the library
// was loaded from (may be null). Null when the player cannot be created.
extern "C" VIDEOPLAYER_RK_API RK_Framework::VideoPlayer::CLS_Player_Rk* CreateVideoPlayer(
    const char* _pLibraryDir);
