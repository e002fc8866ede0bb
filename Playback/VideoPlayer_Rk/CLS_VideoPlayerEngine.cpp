#include "CLS_VideoPlayerEngine.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <system_error>

#include "CLS_PlaybackSession.h"
#include "CLS_SdvIoContext.h"
#include "CLS_SdvReader.h"
#include "CLS_StallGuard.h"
#include "IVideoOutput.h"
#include "PlatformThread.h"

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

// How long an opening may go without reading anything before the caller
// gives up on it, and how long closing may take before it finishes alone.
constexpr int kOpenSilenceMs = 500;
constexpr int kCloseWaitMs = 250;

// The sealed-file check reads the first bytes, which a pipe would not give
// again to FFmpeg: only files are checked.
bool IsPlainFile(const std::string& _strPath)
{
    std::error_code error;
    return std::filesystem::is_regular_file(std::filesystem::u8path(_strPath), error);
}

}  // namespace

// A file being opened, or closed: everything the work on the other thread
// touches, owned by it.
struct CLS_VideoPlayerEngine::SOpening
{
    std::string strPath;
    // Set before opening when the file is already known sealed and unlocked.
    std::unique_ptr<CLS_SdvIoContext> pIo;
    std::unique_ptr<CLS_PlaybackSession> pSession;
    // The outcome: opened, or sealed and waiting for its key, or neither.
    bool blOpened = false;
    bool blDamaged = false;
    std::unique_ptr<CLS_SdvReader> pLocked;
    std::string strError;

    void Open()
    {
        // An .sdv file is known by its first bytes, whatever its name; any
        // other file goes to FFmpeg as it is.
        if (!pIo && IsPlainFile(strPath)) {
            auto pReader = std::make_unique<CLS_SdvReader>();
            switch (pReader->Open(strPath)) {
                case CLS_SdvReader::OPEN_NOT_SDV:
                case CLS_SdvReader::OPEN_IO_ERROR:
                    break;
                case CLS_SdvReader::OPEN_DAMAGED:
                    blDamaged = true;
                    return;
                case CLS_SdvReader::OPEN_OK:
                    if (!pReader->Readable()) {
                        pLocked = std::move(pReader);
                        return;
                    }
                    pIo = std::make_unique<CLS_SdvIoContext>(std::move(pReader), strPath);
                    break;
            }
        }
        if (pIo && !pIo->Context()) {
            strError = "out of memory";
            return;
        }
        try {
            blOpened = pSession->Open(strPath, strError, pIo ? pIo->Context() : nullptr);
        } catch (const std::exception& e) {
            strError = e.what();
        }
    }

    // The session reads through the sealed file's context: it goes first.
    void Release()
    {
        pSession.reset();
        pIo.reset();
    }
};

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
        CloseFile();
        if (m_thEvents.joinable()) m_thEvents.join();
        return 0;
    });
}

void CLS_VideoPlayerEngine::CloseFile()
{
    if (m_pSession) {
        // Pictures and sound stop here; the rest, which may wait on a source
        // that went silent, closes on its own thread.
        m_pSession->Halt();
        auto pClosing = std::make_shared<SOpening>();
        pClosing->pSession = std::move(m_pSession);
        pClosing->pIo = std::move(m_pIo);
        CLS_StallGuard::Run(
            "quill-close", [pClosing] { pClosing->Release(); }, nullptr, kCloseWaitMs);
    }
    m_pIo.reset();
    m_pLocked.reset();
    m_pWaitingOutput.reset();
    m_i64PlayHandle = 0;
}

std::int64_t CLS_VideoPlayerEngine::GetPlayHandle()
{
    return m_i64PlayHandle.load();
}

bool CLS_VideoPlayerEngine::OpenFile(const std::string& _strPath)
{
    return Guarded(false, "OpenFile", [&] {
        CloseFile();
        if (_strPath.empty()) {
            m_strLastError = "no file named";
            return false;
        }
        auto pOpening = std::make_shared<SOpening>();
        pOpening->strPath = _strPath;
        pOpening->pSession = std::make_unique<CLS_PlaybackSession>();
        if (!OpenGuarded(pOpening)) return false;
        if (pOpening->blDamaged) {
            m_strLastError = "damaged .sdv header";
            std::fprintf(stderr, "VideoPlayer_Rk: %s: %s\n", _strPath.c_str(),
                         m_strLastError.c_str());
            return false;
        }
        if (pOpening->pLocked) {
            m_pLocked = std::move(pOpening->pLocked);
            m_strLastPath = _strPath;
            m_strLastError.clear();
            m_iSpeedIndex = kNormalSpeedIndex;
            RaiseLater(PLAYER_EVENT_PASSWORD_NEEDED);
            return true;
        }
        if (!pOpening->blOpened) {
            m_strLastError = pOpening->strError;
            return false;
        }
        StartSession(*pOpening);
        return true;
    });
}

bool CLS_VideoPlayerEngine::OpenGuarded(const std::shared_ptr<SOpening>& _pOpening)
{
    const CLS_PlaybackSession* pSession = _pOpening->pSession.get();
    if (CLS_StallGuard::Run(
            "quill-open", [_pOpening] { _pOpening->Open(); },
            [pSession] { return pSession->OpenProgress(); }, kOpenSilenceMs))
        return true;
    m_strLastError = "the file stopped answering";
    std::fprintf(stderr, "VideoPlayer_Rk: %s: %s\n", _pOpening->strPath.c_str(),
                 m_strLastError.c_str());
    return false;
}

void CLS_VideoPlayerEngine::StartSession(SOpening& _opening)
{
    std::unique_ptr<CLS_PlaybackSession> pSession = std::move(_opening.pSession);
    m_pIo = std::move(_opening.pIo);
    pSession->Start();
    pSession->SetEndHandler([this] { Raise(PLAYER_EVENT_PLAY_OVER); });
    {
        std::lock_guard<std::mutex> lock(m_mutexCallback);
        if (m_fnObserver) pSession->SetObserver(m_fnObserver);
    }
    pSession->SetSoundOn(m_blSoundOn);
    pSession->SetVolume(m_iVolume);
    pSession->SetView(m_view);
    // The header of a sealed file knows when it was made; the container's
    // own creation time, where it has one, is read by the session.
    if (m_pIo && m_pIo->Created() > 0 && !pSession->HasDatedClock())
        pSession->SetRecordingStart(m_pIo->Created() * 1000);
    m_pSession = std::move(pSession);
    m_strLastPath = _opening.strPath;
    m_strLastError.clear();
    m_iSpeedIndex = kNormalSpeedIndex;
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
        CloseFile();
        m_iSpeedIndex = kNormalSpeedIndex;
        return true;
    });
}

bool CLS_VideoPlayerEngine::Play(std::int64_t _i64PlayHandle)
{
    return Guarded(false, "Play", [&] {
        // After Stop the same file starts over.
        if (!m_pSession && !m_pLocked && (m_strLastPath.empty() || !OpenFile(m_strLastPath)))
            return false;
        std::unique_ptr<IVideoOutput> pOutput = CreateVideoOutput(_i64PlayHandle);
        m_i64PlayHandle = _i64PlayHandle;
        if (m_pLocked) {
            // Black until the key comes; the module then plays again.
            pOutput->Clear();
            m_pWaitingOutput = std::move(pOutput);
            return true;
        }
        m_pWaitingOutput.reset();
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
    if (m_pLocked) {
        const std::uint64_t u64Ms = m_pLocked->Header().m_u64DurationMs;
        return u64Ms > 0 ? static_cast<int>((u64Ms + 500) / 1000) : -1;
    }
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
    return Guarded(-1, "SetDecryptKey", [&] {
        // Nothing open needs a key: plain files play as they are.
        if (!m_pLocked) return -1;
        // The length counts characters, not bytes; the bytes end at the zero.
        const std::size_t sizeKey = _pKey ? std::strlen(_pKey) : 0;
        if (_iLength <= 0 || sizeKey == 0 || !m_pLocked->Unlock(_pKey, sizeKey)) {
            RaiseLater(PLAYER_EVENT_WRONG_PASSWORD);
            return 1;
        }
        m_pWaitingOutput.reset();
        auto pOpening = std::make_shared<SOpening>();
        pOpening->strPath = m_strLastPath;
        pOpening->pIo = std::make_unique<CLS_SdvIoContext>(std::move(m_pLocked), m_strLastPath);
        pOpening->pSession = std::make_unique<CLS_PlaybackSession>();
        if (!OpenGuarded(pOpening) || !pOpening->blOpened) {
            // The key was right and the payload is not: as far as the user
            // is concerned, the playback is over.
            if (!pOpening->blOpened) m_strLastError = pOpening->strError;
            std::fprintf(stderr, "VideoPlayer_Rk: %s: %s\n", pOpening->strPath.c_str(),
                         m_strLastError.c_str());
            m_i64PlayHandle = 0;
            RaiseLater(PLAYER_EVENT_PLAY_OVER);
            return 2;
        }
        StartSession(*pOpening);
        // The module now plays again in the window it started in.
        return 0;
    });
}

int CLS_VideoPlayerEngine::IsBusy()
{
    return (m_pSession || m_pLocked) ? 1 : 0;
}

bool CLS_VideoPlayerEngine::GetShownPicture(ST_ShownPicture& _stPicture, bool _blPixels)
{
    return Guarded(false, "GetShownPicture",
                   [&] { return m_pSession && m_pSession->GetShownPicture(_stPicture, _blPixels); });
}

bool CLS_VideoPlayerEngine::SetShownPart(double _dX, double _dY, double _dWidth, double _dHeight)
{
    return Guarded(false, "SetShownPart", [&] {
        if (!(_dWidth > 0.0 && _dHeight > 0.0)) return false;
        m_view = SVideoView{_dX, _dY, _dWidth, _dHeight}.Bounded();
        if (m_pSession) m_pSession->SetView(m_view);
        return true;
    });
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

void CLS_VideoPlayerEngine::RaiseLater(int _iEvent)
{
    if (m_thEvents.joinable()) m_thEvents.join();
    m_thEvents =
        BriskPlatform::StartNamedThread("quill-events", [this, _iEvent] { Raise(_iEvent); });
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
