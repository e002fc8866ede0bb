#include "RecordingPlayer.h"
#include "CLS_Player_Rk.h"

#include <cstdio>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

using RK_Framework::VideoPlayer::CLS_Player_Rk;
using RK_Framework::VideoPlayer::ST_PlayerEventCallback;
using RK_Framework::VideoPlayer::ST_ShownPicture;

#define RECPLAYER_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

// The engine's events come from its own threads: everything here is shared.
std::mutex g_mutex;
RecPlayer::ST_Script g_stScript;
std::string g_strCalls;
std::string g_strTaken;
CLS_Player_Rk* g_pLivePlayer = nullptr;
const ST_PlayerEventCallback* g_pCallback = nullptr;

// Records the call and gives the scripted answer.
template <typename T = bool>
T Recorded(const std::string& _strCall, T _answer = true)
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_strCalls += _strCall + "\n";
    return _answer;
}

RecPlayer::ST_Script Script()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    return g_stScript;
}

class CLS_RecordingPlayer : public CLS_Player_Rk
{
public:
    ~CLS_RecordingPlayer() override
    {
        std::lock_guard<std::mutex> lock(g_mutex);
        if (g_pLivePlayer == this) g_pCallback = nullptr;
    }
    std::int64_t GetPlayHandle() override { return 1; }
    bool OpenFile(const std::string& _strPath) override { return Recorded("OpenFile(" + _strPath + ")"); }
    void SetEventCallback(const ST_PlayerEventCallback* _pCallback) override
    {
        std::lock_guard<std::mutex> lock(g_mutex);
        g_pLivePlayer = this;
        g_pCallback = _pCallback;
    }
    void Init() override { Recorded("Init"); }
    bool Stop() override { return Recorded("Stop"); }
    bool Play(std::int64_t) override { return Recorded("Play"); }
    bool Pause(bool _blPause) override { return Recorded(_blPause ? "Pause(1)" : "Pause(0)"); }
    int Fast() override { return Recorded("Fast", Script().blFastRefused ? 1 : 0); }
    int Slow() override { return Recorded("Slow", 0); }
    bool SetPlayPos(int _iPercent) override { return Recorded("SetPlayPos(" + std::to_string(_iPercent) + ")"); }
    bool SetVolume(std::int64_t _i64Volume) override
    {
        return Recorded("SetVolume(" + std::to_string(_i64Volume) + ")");
    }
    bool OpenSound() override { return Recorded("OpenSound"); }
    bool CloseSound() override { return Recorded("CloseSound"); }
    int GetTotalTime() override { return Recorded("GetTotalTime", Script().iTotalTime); }
    int GetPlayedTime() override { return Recorded("GetPlayedTime", Script().iPlayedTime); }
    bool StepForward() override { return Recorded("StepForward"); }
    bool StepBack() override { return Recorded("StepBack"); }
    // "secret" is the one key accepted.
    int SetDecryptKey(const char* _pKey, int _iLength) override
    {
        const std::string strKey(_pKey ? _pKey : "");
        return Recorded("SetDecryptKey(" + strKey + "," + std::to_string(_iLength) + ")", strKey == "secret" ? 0 : 1);
    }
    int IsBusy() override { return Recorded("IsBusy", 0); }

    // A 4 x 2 picture: the left half red, the right half blue.
    bool GetShownPicture(ST_ShownPicture& _stPicture, bool _blPixels) override
    {
        Recorded(_blPixels ? "GetShownPicture(1)" : "GetShownPicture(0)");
        _stPicture.m_iWidth = 4;
        _stPicture.m_iHeight = 2;
        _stPicture.m_dTime = Script().iPlayedTime;
        _stPicture.m_vecRgb.clear();
        if (_blPixels)
            for (int i = 0; i < 8; ++i)
                _stPicture.m_vecRgb.insert(_stPicture.m_vecRgb.end(),
                                           {std::uint8_t(i % 4 < 2 ? 255 : 0), 0, std::uint8_t(i % 4 < 2 ? 0 : 255)});
        return true;
    }
    bool SetShownPart(double _dX, double _dY, double _dWidth, double _dHeight) override
    {
        char szCall[96];
        std::snprintf(szCall, sizeof szCall, "SetShownPart(%.3g,%.3g,%.3g,%.3g)", _dX, _dY, _dWidth, _dHeight);
        return Recorded(szCall);
    }

protected:
    int DoNormalSpeed() override { return Recorded("NormalSpeed", 0); }
};

}  // namespace

namespace RK_Framework::VideoPlayer {
CLS_Player_Rk::~CLS_Player_Rk() = default;
int CLS_Player_Rk::NormalSpeed()
{
    return DoNormalSpeed();
}
}  // namespace RK_Framework::VideoPlayer

RECPLAYER_EXPORT CLS_Player_Rk* CreateVideoPlayer(const char*)
{
    return Script().blCreateOk ? new CLS_RecordingPlayer() : nullptr;
}

RECPLAYER_EXPORT void RecPlayer_Reset(const RecPlayer::ST_Script* _pScript)
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_stScript = _pScript ? *_pScript : RecPlayer::ST_Script();
    g_strCalls.clear();
}

RECPLAYER_EXPORT const char* RecPlayer_TakeCalls()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_strTaken = std::exchange(g_strCalls, {});
    return g_strTaken.c_str();
}

RECPLAYER_EXPORT void RecPlayer_Raise(int _iType)
{
    std::thread([_iType]() {
        std::lock_guard<std::mutex> lock(g_mutex);
        if (g_pCallback && g_pCallback->m_pfnCallback)
            g_pCallback->m_pfnCallback(g_pCallback->m_pUser, g_pLivePlayer, _iType);
    }).join();
}
