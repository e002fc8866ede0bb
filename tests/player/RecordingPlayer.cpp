#include "RecordingPlayer.h"
#include "CLS_Player_Rk.h"

#include <cstring>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>

using RK_Framework::VideoPlayer::CLS_Player_Rk;
using RK_Framework::VideoPlayer::ST_PlayerEventCallback;
using RK_Framework::VideoPlayer::ST_ShownPicture;

#define RECPLAYER_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

struct ST_State
{
    std::mutex mutex;
    RecPlayer::ST_Script script;
    std::string strCalls;
    std::string strTaken;
    unsigned uFastCalls = 0;
    CLS_Player_Rk* pLivePlayer = nullptr;
    const ST_PlayerEventCallback* pCallback = nullptr;
};

ST_State& State()
{
    static ST_State s_state;
    return s_state;
}

void Record(const std::string& _strCall)
{
    std::lock_guard<std::mutex> lock(State().mutex);
    State().strCalls += _strCall + "\n";
}

class CLS_RecordingPlayer : public CLS_Player_Rk
{
public:
    CLS_RecordingPlayer()
    {
        std::lock_guard<std::mutex> lock(State().mutex);
        State().pLivePlayer = this;
    }
    ~CLS_RecordingPlayer() override
    {
        Record("Destroy");
        std::lock_guard<std::mutex> lock(State().mutex);
        if (State().pLivePlayer == this) {
            State().pLivePlayer = nullptr;
            State().pCallback = nullptr;
        }
    }
    std::int64_t GetPlayHandle() override { return m_i64Handle; }
    bool OpenFile(const std::string& _strPath) override
    {
        return Recorded("OpenFile(" + _strPath + ")");
    }
    void SetEventCallback(const ST_PlayerEventCallback* _pCallback) override
    {
        Record("SetEventCallback");
        std::lock_guard<std::mutex> lock(State().mutex);
        State().pCallback = _pCallback;
    }
    void Init() override { Record("Init"); }
    bool Stop() override { return Recorded("Stop"); }
    bool Play(std::int64_t _i64PlayHandle) override
    {
        m_i64Handle = _i64PlayHandle;
        return Recorded("Play");
    }
    bool Pause(bool _blPause) override { return Recorded(_blPause ? "Pause(1)" : "Pause(0)"); }
    int Fast() override
    {
        Record("Fast");
        std::lock_guard<std::mutex> lock(State().mutex);
        return (State().script.uFastRefusals >> State().uFastCalls++) & 1u;
    }
    int Slow() override { return Recorded("Slow", 0); }
    bool SetPlayPos(int _iPercent) override
    {
        return Recorded("SetPlayPos(" + std::to_string(_iPercent) + ")");
    }
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
    int SetDecryptKey(const char* _pKey, int _iLength) override
    {
        const std::string strKey(_pKey ? _pKey : "");
        Record("SetDecryptKey(" + strKey + "," + std::to_string(_iLength) + ")");
        return strKey == Script().szAcceptedKey ? 0 : 1;
    }
    int IsBusy() override { return Recorded("IsBusy", Script().iIsBusy); }

    // A 4 x 2 picture: the left half red, the right half blue.
    bool GetShownPicture(ST_ShownPicture& _stPicture, bool _blPixels) override
    {
        Record(_blPixels ? "GetShownPicture(1)" : "GetShownPicture(0)");
        _stPicture.m_iWidth = 4;
        _stPicture.m_iHeight = 2;
        _stPicture.m_dTime = Script().iPlayedTime;
        _stPicture.m_vecRgb.clear();
        if (_blPixels)
            for (int i = 0; i < 8; ++i)
                _stPicture.m_vecRgb.insert(_stPicture.m_vecRgb.end(),
                                           {std::uint8_t(i % 4 < 2 ? 255 : 0), 0,
                                            std::uint8_t(i % 4 < 2 ? 0 : 255)});
        return true;
    }
    bool SetShownPart(double _dX, double _dY, double _dWidth, double _dHeight) override
    {
        char szCall[96];
        std::snprintf(szCall, sizeof szCall, "SetShownPart(%.3g,%.3g,%.3g,%.3g)", _dX, _dY,
                      _dWidth, _dHeight);
        return Recorded(szCall);
    }

protected:
    int DoNormalSpeed() override { return Recorded("NormalSpeed", 0); }

private:
    // Records the call and gives the scripted answer.
    template <typename T = bool>
    static T Recorded(const std::string& _strCall, T _answer = true)
    {
        Record(_strCall);
        return _answer;
    }
    static RecPlayer::ST_Script Script()
    {
        std::lock_guard<std::mutex> lock(State().mutex);
        return State().script;
    }

    std::int64_t m_i64Handle = 0;
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
    Record("Create");
    {
        std::lock_guard<std::mutex> lock(State().mutex);
        if (!State().script.blCreateOk) return nullptr;
    }
    return new CLS_RecordingPlayer();
}

RECPLAYER_EXPORT void RecPlayer_Reset(const RecPlayer::ST_Script* _pScript)
{
    std::lock_guard<std::mutex> lock(State().mutex);
    State().script = _pScript ? *_pScript : RecPlayer::ST_Script();
    State().strCalls.clear();
    State().uFastCalls = 0;
}

RECPLAYER_EXPORT const char* RecPlayer_TakeCalls()
{
    std::lock_guard<std::mutex> lock(State().mutex);
    State().strTaken.swap(State().strCalls);
    State().strCalls.clear();
    return State().strTaken.c_str();
}

RECPLAYER_EXPORT void RecPlayer_Raise(int _iType)
{
    std::thread([_iType]() {
        std::lock_guard<std::mutex> lock(State().mutex);
        const ST_PlayerEventCallback* pCallback = State().pCallback;
        if (pCallback && pCallback->m_pfnCallback)
            pCallback->m_pfnCallback(pCallback->m_pUser, State().pLivePlayer, _iType);
    }).join();
}
