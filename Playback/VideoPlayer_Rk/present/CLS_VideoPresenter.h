#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "CLS_FrameQueue.h"
#include "CLS_VideoView.h"

namespace RK_Framework::VideoPlayer {

class CLS_AudioOutput;
class CLS_PlayClock;
class CLS_SessionState;
class CLS_StepCache;
class IVideoOutput;

// The presenter thread: shows each picture when the clock reaches it, drops
// pictures only when the next one is due as well, carries out frame steps
// and reports the end of the file once the last picture has had its time.
class CLS_VideoPresenter
{
public:
    using FrameObserver = std::function<void(const AVFrame*)>;
    using EndHandler = std::function<void()>;

    CLS_VideoPresenter(CLS_SessionState& _state, CLS_FrameQueue& _frames, CLS_StepCache& _cache,
                       CLS_PlayClock& _clock, CLS_AudioOutput& _audio);
    ~CLS_VideoPresenter();
    CLS_VideoPresenter(const CLS_VideoPresenter&) = delete;
    CLS_VideoPresenter& operator=(const CLS_VideoPresenter&) = delete;

    void Start();
    // The state's abort flag must be set first.
    void Join();
    void Wake();

    // Replaces the output; the picture on screen is shown again in it.
    void SetOutput(std::unique_ptr<IVideoOutput> _pOutput);
    // Shows black in the output and releases it (after Join only).
    void ClearOutput();
    void SetObserver(FrameObserver _fnObserver);
    // Any thread: the part of the picture outputs show; a still picture is
    // drawn again with it.
    void SetView(const SVideoView& _view);
    // Any thread: a new reference to the picture on screen (caller frees)
    // and its time; null before the first picture.
    AVFrame* CopyShown(long long& _llPts, double& _dTime);
    void SetEndHandler(EndHandler _fnEnd);

    // Nothing is shown before the first Play.
    void SetRunning(bool _blRunning);
    bool Running() const { return m_blRunning.load(); }
    void SetPaused(bool _blPaused);
    bool Paused() const { return m_blPaused.load(); }

    // Shows the picture after the one on screen; false at the end.
    bool StepForward();
    // Shows the picture before the one on screen if the step cache has it.
    bool StepBackFromCache();
    // Waits until a picture of _iSerial (or a later one) is on screen; false
    // on timeout or when that position turned out to have no picture.
    bool WaitForSerial(int _iSerial, int _iTimeoutMs);

    int ShownSerial() const { return m_iShownSerial.load(); }
    long long ShownPts() const { return m_llShownPts.load(); }
    double ShownTime() const { return m_dShownTime.load(); }
    std::uint64_t DroppedFrames() const { return m_u64Dropped.load(); }
    std::uint64_t ShownFrames() const { return m_u64Shown.load(); }

private:
    enum class EM_Command { None, Forward, BackCached };

    void Run();
    // Caller side of a step: hands it to the thread and waits for the answer.
    bool RunCommand(EM_Command _eCommand);
    double MasterTime();
    void IdleWait(double _dSeconds);
    void Show(ST_VideoFrame& _stFrame, bool _blFromQueue);

    // The thread's own steps, in the order Run takes them.
    // Switches to an output handed over by SetOutput, showing the picture on
    // screen in it.
    void TakePendingOutput();
    // Hands a picture to the output, cut to the view.
    void Output(const AVFrame* _pFrame);
    EM_Command PendingCommand();
    void CarryOut(EM_Command _eCommand);
    bool ForwardFromQueue();
    // The next picture to time: a kept one after the one on screen, else the
    // queue's head (left queued). False when there is none to time now; a
    // stale head, the stream's end and a new position are dealt with here.
    bool TakeNext(ST_VideoFrame& _stNext, bool& _blFromCache);
    void RefreshWhilePaused();
    // Seconds until _stNext is due (negative: late) and the master time it
    // was measured against.
    double DueIn(const ST_VideoFrame& _stNext, double _dSpeed, double& _dMaster);
    // Drops the queue's head when the picture after it is due as well.
    bool DropIfNextDue(ST_VideoFrame& _stNext, double _dLate, double _dSpeed, double _dMaster);
    // Pictures late at high speed make the decoder decode less.
    void RaiseLagIfBehind(double _dLate, double _dSpeed);
    void NoteStreamEnd(int _iSerial);
    void CheckEnd();

    CLS_SessionState& m_state;
    CLS_FrameQueue& m_frames;
    CLS_StepCache& m_cache;
    CLS_PlayClock& m_clock;
    CLS_AudioOutput& m_audio;
    std::thread m_thread;

    std::mutex m_mutex;
    std::condition_variable m_cvWake;
    std::condition_variable m_cvDone;
    EM_Command m_eCommand = EM_Command::None;
    bool m_blCommandDone = false;
    bool m_blCommandResult = false;
    std::unique_ptr<IVideoOutput> m_pPendingOutput;
    bool m_blOutputPending = false;
    FrameObserver m_fnObserver;
    EndHandler m_fnEnd;
    SVideoView m_viewPending;
    bool m_blViewPending = false;

    // Presenter thread only.
    std::unique_ptr<IVideoOutput> m_pOutput;
    SVideoView m_view;
    // Written by the presenter thread under m_mutex, so CopyShown can read it.
    ST_VideoFrame m_stShown;
    std::chrono::steady_clock::time_point m_tpLastRefresh;
    std::chrono::steady_clock::time_point m_tpLastLagRaise;

    std::atomic<bool> m_blRunning{false};
    std::atomic<bool> m_blPaused{true};
    std::atomic<int> m_iShownSerial{-1};
    // Serial whose stream end the presenter has reached.
    std::atomic<int> m_iEndSerial{-1};
    std::atomic<long long> m_llShownPts{0};
    std::atomic<double> m_dShownTime{0.0};
    std::atomic<bool> m_blEndRaised{false};
    std::atomic<std::uint64_t> m_u64Dropped{0};
    std::atomic<std::uint64_t> m_u64Shown{0};
};

}  // namespace RK_Framework::VideoPlayer
