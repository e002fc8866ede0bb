#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "CLS_AudioDecoder.h"
#include "CLS_AudioOutput.h"
#include "CLS_Demuxer.h"
#include "CLS_FrameQueue.h"
#include "CLS_MediaSource.h"
#include "CLS_PacketQueue.h"
#include "CLS_PlayClock.h"
#include "CLS_SessionState.h"
#include "CLS_StepCache.h"
#include "CLS_VideoDecoder.h"
#include "CLS_VideoPresenter.h"

struct AVIOContext;

namespace RK_Framework::VideoPlayer {

class IVideoOutput;

// One opened file and the threads that play it. Created by OpenFile,
// destroyed by Stop; all its operations are called from one thread.
class CLS_PlaybackSession
{
public:
    using EndHandler = std::function<void()>;
    using FrameObserver = CLS_VideoPresenter::FrameObserver;

    CLS_PlaybackSession();
    ~CLS_PlaybackSession();
    CLS_PlaybackSession(const CLS_PlaybackSession&) = delete;
    CLS_PlaybackSession& operator=(const CLS_PlaybackSession&) = delete;

    // _pIo: optional byte source for the file (not owned; must outlive us).
    bool Open(const std::string& _strPath, std::string& _strError, AVIOContext* _pIo = nullptr);
    void SetEndHandler(EndHandler _fnEnd);
    void SetObserver(FrameObserver _fnObserver);

    // Starts (or moves) drawing into _pOutput and plays.
    void Play(std::unique_ptr<IVideoOutput> _pOutput);
    bool Pause(bool _blPause);
    bool Paused() const;
    void SetSpeed(double _dSpeed);
    bool SeekPercent(int _iPercent);
    bool StepForward();
    bool StepBack();

    int TotalSeconds() const;
    int PlayedSeconds() const;
    // Seconds from the first picture of the picture on screen (-1: none yet).
    double ShownTime() const;

    bool HasSoundDevice() const { return m_blSound; }
    void SetSoundOn(bool _blOn);
    void SetVolume(int _iPercent);

    std::uint64_t DroppedFrames() const { return m_presenter.DroppedFrames(); }
    std::uint64_t ShownFrames() const { return m_presenter.ShownFrames(); }

private:
    int PostSeek(ST_SeekRequest _stRequest);
    void ResyncSound();
    void Shutdown();

    CLS_SessionState m_state;
    CLS_PlayClock m_clock;
    CLS_MediaSource m_source;
    CLS_PacketQueue m_videoPackets;
    CLS_PacketQueue m_audioPackets;
    CLS_FrameQueue m_frames;
    CLS_StepCache m_cache;
    CLS_AudioOutput m_audio;
    CLS_VideoDecoder m_videoDecoder;
    CLS_AudioDecoder m_audioDecoder;
    CLS_Demuxer m_demuxer;
    CLS_VideoPresenter m_presenter;

    bool m_blStarted = false;
    bool m_blSound = false;
    // Back at 1X after a speed without sound: realign on the next resume.
    bool m_blSoundBehind = false;
    double m_dDuration = -1.0;
    double m_dPendingTime = 0.0;
};

}  // namespace RK_Framework::VideoPlayer
