#include "CLS_VideoPresenter.h"

#include <algorithm>
#include <cmath>

#include "CLS_AudioOutput.h"
#include "CLS_PlayClock.h"
#include "CLS_SessionState.h"
#include "CLS_StepCache.h"
#include "IVideoOutput.h"
#include "PlatformThread.h"

extern "C" {
#include <libavutil/frame.h>
}

namespace RK_Framework::VideoPlayer {

namespace {
using Clock = std::chrono::steady_clock;
// Longest single sleep, so commands and pauses are picked up quickly.
constexpr double kMaxSleep = 0.02;
constexpr int kStepTimeoutMs = 4000;
// How long the thread sleeps when there is nothing to time.
constexpr double kIdleWait = 0.05;
// A still picture is redrawn this often, so a native window follows its size.
constexpr auto kRefreshInterval = std::chrono::milliseconds(250);
// Wall seconds a picture may come late at high speed before decoding less,
// and how long a step down in decoding is given to take effect.
constexpr double kLagLimit = 0.25;
constexpr auto kLagRaiseInterval = std::chrono::milliseconds(500);
// Seconds the picture clock may run off the sound before it is pulled back.
constexpr double kAudioDriftLimit = 0.025;
// Wall seconds behind that 1X playback catches up on rather than dropping.
constexpr double kCatchUpLimit = 0.1;
}  // namespace

CLS_VideoPresenter::CLS_VideoPresenter(CLS_SessionState& _state, CLS_FrameQueue& _frames,
                                       CLS_StepCache& _cache, CLS_PlayClock& _clock,
                                       CLS_AudioOutput& _audio)
    : m_state(_state), m_frames(_frames), m_cache(_cache), m_clock(_clock), m_audio(_audio)
{}

CLS_VideoPresenter::~CLS_VideoPresenter()
{
    Join();
    FreeVideoFrame(m_stShown);
}

void CLS_VideoPresenter::Start()
{
    m_thread = BriskPlatform::StartNamedThread("quill-present", [this] { Run(); });
}

void CLS_VideoPresenter::Join()
{
    Wake();
    if (m_thread.joinable()) m_thread.join();
}

void CLS_VideoPresenter::Wake()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_cvWake.notify_all();
    m_cvDone.notify_all();
}

void CLS_VideoPresenter::SetOutput(std::unique_ptr<IVideoOutput> _pOutput)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_pPendingOutput = std::move(_pOutput);
    m_blOutputPending = true;
    m_cvWake.notify_all();
}

void CLS_VideoPresenter::ClearOutput()
{
    if (m_thread.joinable()) return;
    if (m_pOutput) m_pOutput->Clear();
    m_pOutput.reset();
    std::lock_guard<std::mutex> lock(m_mutex);
    m_pPendingOutput.reset();
    m_blOutputPending = false;
}

void CLS_VideoPresenter::SetObserver(FrameObserver _fnObserver)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_fnObserver = std::move(_fnObserver);
}

void CLS_VideoPresenter::SetView(const SVideoView& _view)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_viewPending = _view.Bounded();
    m_blViewPending = true;
    m_cvWake.notify_all();
}

AVFrame* CLS_VideoPresenter::CopyShown(long long& _llPts, double& _dTime)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_stShown.m_pFrame) return nullptr;
    _llPts = m_stShown.m_llPts;
    _dTime = m_stShown.m_dTime;
    return av_frame_clone(m_stShown.m_pFrame);
}

void CLS_VideoPresenter::SetEndHandler(EndHandler _fnEnd)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_fnEnd = std::move(_fnEnd);
}

void CLS_VideoPresenter::SetRunning(bool _blRunning)
{
    m_blRunning = _blRunning;
    Wake();
}

void CLS_VideoPresenter::SetPaused(bool _blPaused)
{
    m_blPaused = _blPaused;
    Wake();
}

bool CLS_VideoPresenter::StepForward()
{
    return RunCommand(EM_Command::Forward);
}

bool CLS_VideoPresenter::StepBackFromCache()
{
    return RunCommand(EM_Command::BackCached);
}

bool CLS_VideoPresenter::RunCommand(EM_Command _eCommand)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_thread.joinable()) return false;
    m_eCommand = _eCommand;
    m_blCommandDone = false;
    m_cvWake.notify_all();
    const bool blDone =
        m_cvDone.wait_for(lock, std::chrono::milliseconds(kStepTimeoutMs + 1000),
                          [this] { return m_blCommandDone || m_state.m_blAbort.load(); });
    m_eCommand = EM_Command::None;
    return blDone && m_blCommandDone && m_blCommandResult;
}

bool CLS_VideoPresenter::WaitForSerial(int _iSerial, int _iTimeoutMs)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_cvDone.wait_for(lock, std::chrono::milliseconds(_iTimeoutMs), [&] {
        return m_iShownSerial.load() >= _iSerial || m_iEndSerial.load() >= _iSerial ||
               m_state.m_blAbort.load();
    });
    return m_iShownSerial.load() >= _iSerial;
}

double CLS_VideoPresenter::MasterTime()
{
    double dAudio = 0.0;
    const double dSystem = m_clock.Get();
    if (!m_blPaused.load() && m_state.m_dSpeed.load() == 1.0 && m_audio.MasterTime(dAudio)) {
        // The card reports in buffer-sized jumps; follow it only when it has
        // really drifted, so those jumps do not make two pictures due at once.
        if (std::fabs(dAudio - dSystem) > kAudioDriftLimit) {
            m_clock.Set(dAudio);
            return dAudio;
        }
    }
    return dSystem;
}

void CLS_VideoPresenter::IdleWait(double _dSeconds)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_cvWake.wait_for(lock, std::chrono::duration<double>(_dSeconds), [this] {
        return m_eCommand != EM_Command::None || m_blOutputPending || m_blViewPending ||
               m_state.m_blAbort.load();
    });
}

void CLS_VideoPresenter::Show(ST_VideoFrame& _stFrame, bool _blFromQueue)
{
    if (_blFromQueue) {
        if (m_blPaused.load()) {
            const bool blFollows = _stFrame.m_iSerial == m_iShownSerial.load()
                                       ? m_cache.IsNewest(m_llShownPts.load())
                                       : _stFrame.m_blFollowsCache;
            m_cache.Append(_stFrame, blFollows);
        } else if (m_cache.Count() > 0) {
            // Playing on: the stepping pictures are no longer worth the memory.
            m_cache.Clear();
        }
    }
    Output(_stFrame.m_pFrame);
    FrameObserver fnObserver;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        fnObserver = m_fnObserver;
    }
    if (fnObserver) fnObserver(_stFrame.m_pFrame);
    if (_stFrame.m_iSerial != m_iShownSerial.load()) m_blEndRaised = false;
    m_tpLastRefresh = Clock::now();
    ++m_u64Shown;
    std::lock_guard<std::mutex> lock(m_mutex);
    FreeVideoFrame(m_stShown);
    m_stShown = _stFrame;
    _stFrame = ST_VideoFrame{};
    m_llShownPts = m_stShown.m_llPts;
    m_dShownTime = m_stShown.m_dTime;
    m_iShownSerial = m_stShown.m_iSerial;
    m_cvDone.notify_all();
}

bool CLS_VideoPresenter::ForwardFromQueue()
{
    const auto tpGiveUp = Clock::now() + std::chrono::milliseconds(kStepTimeoutMs);
    while (!m_state.m_blAbort.load() && Clock::now() < tpGiveUp) {
        if (m_iEndSerial == m_state.m_iSerial.load()) return false;
        ST_VideoFrame stHead;
        if (!m_frames.Peek(stHead, std::chrono::milliseconds(20))) continue;
        m_frames.Pop(stHead);
        if (stHead.m_iSerial != m_state.m_iSerial.load()) {
            FreeVideoFrame(stHead);
            continue;
        }
        if (!stHead.m_pFrame) {
            NoteStreamEnd(stHead.m_iSerial);
            return false;
        }
        Show(stHead, true);
        m_clock.Set(m_stShown.m_dTime);
        return true;
    }
    return false;
}

void CLS_VideoPresenter::NoteStreamEnd(int _iSerial)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_iEndSerial = _iSerial;
    m_cvDone.notify_all();
}

void CLS_VideoPresenter::CheckEnd()
{
    if (m_blEndRaised.load() || m_blPaused.load() || !m_stShown.m_pFrame) return;
    const int iSerial = m_state.m_iSerial.load();
    if (m_iEndSerial != iSerial || m_iShownSerial.load() != iSerial) return;
    if (m_cache.Count() > 0 && !m_cache.IsNewest(m_stShown.m_llPts)) return;
    // The last picture stays up for its own duration before the file is over.
    if (MasterTime() < m_stShown.m_dTime + m_stShown.m_dDuration) return;
    m_blEndRaised = true;
    EndHandler fnEnd;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        fnEnd = m_fnEnd;
    }
    if (fnEnd) fnEnd();
}

void CLS_VideoPresenter::TakePendingOutput()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_blOutputPending && !m_blViewPending) return;
    if (m_blOutputPending) m_pOutput = std::move(m_pPendingOutput);
    if (m_blViewPending) m_view = m_viewPending;
    m_blOutputPending = m_blViewPending = false;
    lock.unlock();
    if (m_stShown.m_pFrame) Output(m_stShown.m_pFrame);
}

void CLS_VideoPresenter::Output(const AVFrame* _pFrame)
{
    if (!m_pOutput) return;
    if (m_view.IsWhole()) {
        m_pOutput->Show(_pFrame);
        return;
    }
    AVFrame* pPart = CLS_VideoView::Cut(_pFrame, m_view);
    m_pOutput->Show(pPart ? pPart : _pFrame);
    av_frame_free(&pPart);
}

CLS_VideoPresenter::EM_Command CLS_VideoPresenter::PendingCommand()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_blCommandDone ? EM_Command::None : m_eCommand;
}

void CLS_VideoPresenter::CarryOut(EM_Command _eCommand)
{
    bool blResult = false;
    ST_VideoFrame stNeighbour;
    const bool blCurrent = m_iShownSerial.load() == m_state.m_iSerial.load();
    if (_eCommand == EM_Command::Forward) {
        if (blCurrent && m_cache.Next(m_stShown.m_llPts, stNeighbour)) {
            Show(stNeighbour, false);
            blResult = true;
        } else {
            blResult = ForwardFromQueue();
        }
    } else if (blCurrent && m_cache.Previous(m_stShown.m_llPts, stNeighbour)) {
        Show(stNeighbour, false);
        blResult = true;
    }
    if (blResult) m_clock.Set(m_stShown.m_dTime);
    std::lock_guard<std::mutex> lock(m_mutex);
    m_blCommandResult = blResult;
    m_blCommandDone = true;
    m_cvDone.notify_all();
}

bool CLS_VideoPresenter::TakeNext(ST_VideoFrame& _stNext, bool& _blFromCache)
{
    // One kept from stepping back comes first, else the decoder's.
    _blFromCache = false;
    const bool blCurrent = m_iShownSerial.load() == m_state.m_iSerial.load();
    if (blCurrent && !m_blPaused.load() && m_cache.Next(m_stShown.m_llPts, _stNext)) {
        _blFromCache = true;
        return true;
    }
    if (!m_frames.Peek(_stNext, std::chrono::milliseconds(10))) {
        CheckEnd();
        if (m_blPaused.load() || m_blEndRaised.load()) IdleWait(kIdleWait);
        return false;
    }
    if (_stNext.m_iSerial != m_state.m_iSerial.load()) {
        if (m_frames.Pop(_stNext)) FreeVideoFrame(_stNext);
        return false;
    }
    if (!_stNext.m_pFrame) {
        m_frames.Pop(_stNext);
        NoteStreamEnd(_stNext.m_iSerial);
        return false;
    }
    if (_stNext.m_iSerial != m_iShownSerial.load()) {
        // A new position: show its picture at once, paused or not.
        m_frames.Pop(_stNext);
        Show(_stNext, true);
        m_clock.Set(m_stShown.m_dTime);
        return false;
    }
    return true;
}

void CLS_VideoPresenter::RefreshWhilePaused()
{
    if (m_pOutput && Clock::now() - m_tpLastRefresh > kRefreshInterval) {
        m_pOutput->Refresh();
        m_tpLastRefresh = Clock::now();
    }
}

double CLS_VideoPresenter::DueIn(const ST_VideoFrame& _stNext, double _dSpeed, double& _dMaster)
{
    _dMaster = MasterTime();
    const double dDiff = _stNext.m_dTime - _dMaster;
    // Joined recordings jump in their stamps: carry on from the new time.
    if (dDiff > std::max(2.0, 4.0 * m_state.m_dFrameDuration) * std::max(1.0, _dSpeed) ||
        _stNext.m_dTime < m_stShown.m_dTime - 0.5) {
        m_clock.Set(_stNext.m_dTime);
        _dMaster = _stNext.m_dTime;
        return 0.0;
    }
    return dDiff;
}

bool CLS_VideoPresenter::DropIfNextDue(ST_VideoFrame& _stNext, double _dLate, double _dSpeed,
                                       double _dMaster)
{
    // At 1X and below a short delay is caught up by showing the next
    // pictures a little early; dropping is for real lateness.
    const double dLateAllowed = _dSpeed > 1.0 ? 0.0 : kCatchUpLimit;
    ST_VideoFrame stAfter;
    if (_dLate <= dLateAllowed || !m_frames.PeekNext(stAfter) || !stAfter.m_pFrame ||
        stAfter.m_iSerial != _stNext.m_iSerial || stAfter.m_dTime > _dMaster)
        return false;
    // Both are due: this one would only delay the next.
    m_frames.Pop(_stNext);
    FreeVideoFrame(_stNext);
    if (_dSpeed == 1.0) ++m_u64Dropped;
    return true;
}

void CLS_VideoPresenter::RaiseLagIfBehind(double _dLate, double _dSpeed)
{
    if (_dSpeed <= 1.0 || _dLate <= kLagLimit ||
        Clock::now() - m_tpLastLagRaise <= kLagRaiseInterval)
        return;
    m_state.m_iLagLevel = std::min<int>(DECODE_KEYFRAMES_ONLY, m_state.m_iLagLevel.load() + 1);
    m_tpLastLagRaise = Clock::now();
}

void CLS_VideoPresenter::Run()
{
    m_tpLastLagRaise = Clock::now();
    while (!m_state.m_blAbort.load()) {
        TakePendingOutput();
        if (const EM_Command eCommand = PendingCommand(); eCommand != EM_Command::None) {
            CarryOut(eCommand);
            continue;
        }
        if (!m_blRunning.load()) {
            IdleWait(kIdleWait);
            continue;
        }
        ST_VideoFrame stNext;
        bool blFromCache = false;
        if (!TakeNext(stNext, blFromCache)) continue;
        if (m_blPaused.load()) {
            if (blFromCache) FreeVideoFrame(stNext);
            RefreshWhilePaused();
            IdleWait(kIdleWait);
            continue;
        }
        const double dSpeed = m_state.m_dSpeed.load();
        double dMaster = 0.0;
        const double dDiff = DueIn(stNext, dSpeed, dMaster);
        if (dDiff > 0.0) {
            if (blFromCache) FreeVideoFrame(stNext);
            IdleWait(std::min(dDiff / dSpeed, kMaxSleep));
            continue;
        }
        if (!blFromCache) {
            if (DropIfNextDue(stNext, -dDiff / dSpeed, dSpeed, dMaster)) continue;
            m_frames.Pop(stNext);
        }
        RaiseLagIfBehind(-dDiff / dSpeed, dSpeed);
        Show(stNext, !blFromCache);
    }
}

}  // namespace RK_Framework::VideoPlayer
