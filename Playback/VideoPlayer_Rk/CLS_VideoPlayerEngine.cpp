#include "CLS_VideoPlayerEngine.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "CLS_PlaybackSession.h"
#include "IVideoOutput.h"

extern "C" {
#include <libavutil/log.h>
}

namespace RK_Framework::VideoPlayer {

namespace {

// No exception leaves the library: the caller gets the neutral answer.
template <typename T, typename F>
T Guarded(T _tNeutral, const char* _pWhere, F&& _fnBody)
{
    try {
        return _fnBody();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "VideoPlayer_Rk: %s failed: %s\n", _pWhere, e.what());
    } catch (...) {
        std::fprintf(stderr, "VideoPlayer_Rk: %s failed\n", _pWhere);
    }
    return _tNeutral;
}

double SpeedOf(int _iIndex)
{
    return std::ldexp(1.0, _iIndex - CLS_VideoPlayerEngine::kNormalSpeedIndex);
}

}  // namespace

CLS_VideoPlayerEngine::CLS_VideoPlayerEngine()
{
    // Recorder files are full of damage FFmpeg complains about on every
    // packet; the engine conceals it, and the host's console stays readable.
    static std::once_flag s_onceLog;
    std::call_once(s_onceLog, [] { av_log_set_level(AV_LOG_FATAL); });
}

CLS_VideoPlayerEngine::~CLS_VideoPlayerEngine()
{
    Guarded(0, "destroy", [this] {
        m_pSession.reset();
        return 0;
    });
}

std::int64_t CLS_VideoPlayerEngine::GetPlayHandle()
{
    return m_pSession ? m_i64PlayHandle : 0;
}

bool CLS_VideoPlayerEngine::OpenFile(const std::string& _strPath)
{
    return Guarded(false, "OpenFile", [&] {
        m_pSession.reset();
        m_i64PlayHandle = 0;
        auto pSession = std::make_unique<CLS_PlaybackSession>();
        if (_strPath.empty() || !pSession->Open(_strPath, m_strLastError)) {
            if (_strPath.empty()) m_strLastError = "no file named";
            return false;
        }
        pSession->SetEndHandler([this] { Raise(PLAYER_EVENT_PLAY_OVER); });
        {
            std::lock_guard<std::mutex> lock(m_mutexCallback);
            if (m_fnObserver) pSession->SetObserver(m_fnObserver);
        }
        pSession->SetSoundOn(m_blSoundOn);
        pSession->SetVolume(m_iVolume);
        m_pSession = std::move(pSession);
        m_strLastPath = _strPath;
        m_strLastError.clear();
        m_iSpeedIndex = kNormalSpeedIndex;
        return true;
    });
}

void CLS_VideoPlayerEngine::SetEventCallback(const ST_PlayerEventCallback* _pCallback)
{
    std::lock_guard<std::mutex> lock(m_mutexCallback);
    m_stCallback = _pCallback ? *_pCallback : ST_PlayerEventCallback{};
}

void CLS_VideoPlayerEngine::Init() {}

bool CLS_VideoPlayerEngine::Stop()
{
    return Guarded(false, "Stop", [this] {
        // For measurements (bench/player_cpu.sh): what the playback showed
        // and dropped, on standard error.
        if (m_pSession && std::getenv("QUILL_PLAYBACK_STATS"))
            std::fprintf(stderr, "VideoPlayer_Rk: shown %llu dropped %llu\n",
                         static_cast<unsigned long long>(m_pSession->ShownFrames()),
                         static_cast<unsigned long long>(m_pSession->DroppedFrames()));
        m_pSession.reset();
        m_i64PlayHandle = 0;
        m_iSpeedIndex = kNormalSpeedIndex;
        return true;
    });
}

bool CLS_VideoPlayerEngine::Play(std::int64_t _i64PlayHandle)
{
    return Guarded(false, "Play", [&] {
        // After Stop the same file starts over.
        if (!m_pSession && (m_strLastPath.empty() || !OpenFile(m_strLastPath))) return false;
        std::unique_ptr<IVideoOutput> pOutput = CreateVideoOutput(_i64PlayHandle);
        m_i64PlayHandle = _i64PlayHandle;
        m_pSession->Play(std::move(pOutput));
        return true;
    });
}

bool CLS_VideoPlayerEngine::Pause(bool _blPause)
{
    return Guarded(false, "Pause", [&] {
        if (!m_pSession || m_pSession->Paused() == _blPause) return false;
        // The window shows 1X after a pause or a resume; so do we. Pausing
        // comes first and resuming last, so the change of speed happens
        // while the picture stands still.
        if (_blPause) m_pSession->Pause(true);
        m_iSpeedIndex = kNormalSpeedIndex;
        ApplySpeed();
        if (!_blPause) m_pSession->Pause(false);
        return true;
    });
}

void CLS_VideoPlayerEngine::ApplySpeed()
{
    if (m_pSession) m_pSession->SetSpeed(SpeedOf(m_iSpeedIndex));
}

int CLS_VideoPlayerEngine::Fast()
{
    return Guarded(-1, "Fast", [this] {
        if (m_iSpeedIndex >= kMaxSpeedIndex) return 1;
        ++m_iSpeedIndex;
        ApplySpeed();
        return 0;
    });
}

int CLS_VideoPlayerEngine::Slow()
{
    return Guarded(-1, "Slow", [this] {
        if (m_iSpeedIndex <= 0) return 1;
        --m_iSpeedIndex;
        ApplySpeed();
        return 0;
    });
}

int CLS_VideoPlayerEngine::DoNormalSpeed()
{
    return Guarded(-1, "NormalSpeed", [this] {
        m_iSpeedIndex = kNormalSpeedIndex;
        ApplySpeed();
        return 0;
    });
}

bool CLS_VideoPlayerEngine::SetPlayPos(int _iPercent)
{
    return Guarded(false, "SetPlayPos",
                   [&] { return m_pSession && m_pSession->SeekPercent(_iPercent); });
}

bool CLS_VideoPlayerEngine::SetVolume(std::int64_t _i64Volume)
{
    return Guarded(false, "SetVolume", [&] {
        m_iVolume = static_cast<int>(std::clamp<std::int64_t>(_i64Volume, 0, 100));
        if (!m_pSession || !m_pSession->HasSoundDevice()) return false;
        m_pSession->SetVolume(m_iVolume);
        return true;
    });
}

bool CLS_VideoPlayerEngine::OpenSound()
{
    return Guarded(false, "OpenSound", [this] {
        m_blSoundOn = true;
        if (!m_pSession || !m_pSession->HasSoundDevice()) return false;
        m_pSession->SetSoundOn(true);
        return true;
    });
}

bool CLS_VideoPlayerEngine::CloseSound()
{
    return Guarded(false, "CloseSound", [this] {
        m_blSoundOn = false;
        if (!m_pSession || !m_pSession->HasSoundDevice()) return false;
        m_pSession->SetSoundOn(false);
        return true;
    });
}

int CLS_VideoPlayerEngine::GetTotalTime()
{
    return m_pSession ? m_pSession->TotalSeconds() : -1;
}

int CLS_VideoPlayerEngine::GetPlayedTime()
{
    return m_pSession ? m_pSession->PlayedSeconds() : 0;
}

bool CLS_VideoPlayerEngine::StepForward()
{
    return Guarded(false, "StepForward", [this] {
        if (!m_pSession) return false;
        // Paused first, so the return to 1X does not move the picture.
        m_pSession->Pause(true);
        m_iSpeedIndex = kNormalSpeedIndex;
        ApplySpeed();
        return m_pSession->StepForward();
    });
}

bool CLS_VideoPlayerEngine::StepBack()
{
    return Guarded(false, "StepBack", [this] {
        if (!m_pSession) return false;
        // Paused first, so the return to 1X does not move the picture.
        m_pSession->Pause(true);
        m_iSpeedIndex = kNormalSpeedIndex;
        ApplySpeed();
        return m_pSession->StepBack();
    });
}

int CLS_VideoPlayerEngine::SetDecryptKey(const char* _pKey, int _iLength)
{
    // Nothing open needs a key: plain files play as they are.
    (void)_pKey;
    (void)_iLength;
    return -1;
}

int CLS_VideoPlayerEngine::IsBusy()
{
    return m_pSession ? 1 : 0;
}

void CLS_VideoPlayerEngine::SetFrameObserver(FrameObserver _fnObserver)
{
    {
        std::lock_guard<std::mutex> lock(m_mutexCallback);
        m_fnObserver = _fnObserver;
    }
    if (m_pSession) m_pSession->SetObserver(std::move(_fnObserver));
}

double CLS_VideoPlayerEngine::ShownTime() const
{
    return m_pSession ? m_pSession->ShownTime() : -1.0;
}

std::uint64_t CLS_VideoPlayerEngine::DroppedFrames() const
{
    return m_pSession ? m_pSession->DroppedFrames() : 0;
}

std::uint64_t CLS_VideoPlayerEngine::ShownFrames() const
{
    return m_pSession ? m_pSession->ShownFrames() : 0;
}

void CLS_VideoPlayerEngine::Raise(int _iEvent)
{
    ST_PlayerEventCallback stCallback;
    {
        std::lock_guard<std::mutex> lock(m_mutexCallback);
        stCallback = m_stCallback;
    }
    if (!stCallback.m_pfnCallback) return;
    try {
        stCallback.m_pfnCallback(stCallback.m_pUser, this, _iEvent);
    } catch (...) {
        // The receiver's failure must not take the presenter thread down.
    }
}

}  // namespace RK_Framework::VideoPlayer
