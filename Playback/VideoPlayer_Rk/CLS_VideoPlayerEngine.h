#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "CLS_Player_Rk.h"
#include "CLS_VideoView.h"

struct AVFrame;

namespace RK_Framework::VideoPlayer {

class CLS_PlaybackSession;
class CLS_SdvIoContext;
class CLS_SdvReader;
class IVideoOutput;

// The player the factory hands out: keeps what outlives one file (speed,
// sound settings, the callback, the window) and one playback session.
class CLS_VideoPlayerEngine : public CLS_Player_Rk
{
public:
    using FrameObserver = std::function<void(const AVFrame*)>;

    static constexpr int kNormalSpeedIndex = 4;
    static constexpr int kMaxSpeedIndex = 8;

    CLS_VideoPlayerEngine();
    ~CLS_VideoPlayerEngine() override;

    std::int64_t GetPlayHandle() override;
    bool OpenFile(const std::string& _strPath) override;
    void SetEventCallback(const ST_PlayerEventCallback* _pCallback) override;
    void Init() override;
    bool Stop() override;
    bool Play(std::int64_t _i64PlayHandle) override;
    bool Pause(bool _blPause) override;
    int Fast() override;
    int Slow() override;
    bool SetPlayPos(int _iPercent) override;
    bool SetVolume(std::int64_t _i64Volume) override;
    bool OpenSound() override;
    bool CloseSound() override;
    int GetTotalTime() override;
    int GetPlayedTime() override;
    bool StepForward() override;
    bool StepBack() override;
    int SetDecryptKey(const char* _pKey, int _iLength) override;
    int IsBusy() override;
    bool GetShownPicture(ST_ShownPicture& _stPicture, bool _blPixels) override;
    bool SetShownPart(double _dX, double _dY, double _dWidth, double _dHeight) override;

    // Called on the presenter thread with every picture put on screen (tests,
    // benchmarks). Applies to this and later files.
    void SetFrameObserver(FrameObserver _fnObserver);
    int SpeedIndex() const { return m_iSpeedIndex; }
    // Seconds from the first picture of the picture on screen; -1 when none.
    double ShownTime() const;
    std::uint64_t DroppedFrames() const;
    std::uint64_t ShownFrames() const;
    const std::string& LastError() const { return m_strLastError; }

protected:
    int DoNormalSpeed() override;

private:
    void ApplySpeed();
    void Raise(int _iEvent);
    // Raises _iEvent on a thread of ours: the caller may be the receiver's
    // own thread, which must not be called back from inside its call.
    void RaiseLater(int _iEvent);
    struct SOpening;
    // Opens on a thread of its own (see CLS_StallGuard); false, with
    // m_strLastError set, when the source went silent.
    bool OpenGuarded(const std::shared_ptr<SOpening>& _pOpening);
    void StartSession(SOpening& _opening);
    void CloseFile();

    // A sealed file waiting for its key; it has no session yet.
    std::unique_ptr<CLS_SdvReader> m_pLocked;
    std::unique_ptr<IVideoOutput> m_pWaitingOutput;
    // Declared before the session, which reads through it.
    std::unique_ptr<CLS_SdvIoContext> m_pIo;
    std::unique_ptr<CLS_PlaybackSession> m_pSession;
    std::thread m_thEvents;
    // Read by the module from the event threads (it asks for the handle of
    // the player raising an event); 0 whenever nothing is open.
    std::atomic<std::int64_t> m_i64PlayHandle{0};
    std::string m_strLastPath;
    std::string m_strLastError;
    int m_iSpeedIndex = kNormalSpeedIndex;
    bool m_blSoundOn = true;
    int m_iVolume = 50;
    SVideoView m_view;

    mutable std::mutex m_mutexCallback;
    ST_PlayerEventCallback m_stCallback;
    FrameObserver m_fnObserver;
};

}  // namespace RK_Framework::VideoPlayer
