#pragma once

// A playback runs on five threads besides the caller's:
//
// - demux ("quill-demux", CLS_Demuxer): owns the container's read position.
//   Reads ahead into the video and audio packet queues, tagging each packet
//   with the current serial, and carries out seeks.
// - video decode ("quill-vdecode", CLS_VideoDecoder): owns the video codec.
//   Turns packets into pictures on the timeline, lands seeks exactly (pictures
//   before the target are held back, or kept in the step cache when stepping
//   back) and puts them into the frame queue. For a file without pictures it
//   makes black ones, timed by the sound's packets. It and the audio decoder
//   add to the timeline the joins that the scan before playing missed.
// - audio decode ("quill-adecode", CLS_AudioDecoder): owns the sound codec
//   and resampler; at 1X with sound only. Feeds the audio output's buffer.
// - presenter ("quill-present", CLS_VideoPresenter): owns the video output
//   and the picture on screen. Times pictures against the clock, drops the
//   late ones, carries out frame steps, raises the end of the file.
// - SDL audio callback (CLS_AudioOutput): takes samples from the buffer,
//   lines them up with the clock, and what it has played is the clock at 1X.
//
// Opening (reading up to the first picture) and the last part of closing
// (the demux thread's end and the container's) run on short-lived threads of
// their own, "quill-open" and "quill-close" (CLS_StallGuard), so that a
// source gone silent never holds the caller; everything else, the sound
// device included, is called from the caller's thread.
//
// A seek bumps the serial in CLS_SessionState: from then on everything older
// in the queues is stale. The frame queue and the presenter are woken (a
// decoder waiting for room drops its stale picture) and the sound buffer is
// flushed. The demux thread flushes its packet queues, seeks and reads on
// under the new serial; the video decoder starts over at the first packet of
// it and delivers the picture at the target; the presenter shows that picture
// at once, paused or not, and sets the clock to it.
//
// A step forward is a command to the presenter, which shows the step cache's
// next picture or else the frame queue's head; the caller waits for the
// answer. A step back is the cache's previous picture when it has one;
// otherwise a seek to just before the picture on screen that collects the
// pictures of the way into the step cache, so that the next steps back are
// immediate.

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "CLS_AudioDecoder.h"
#include "CLS_Player_Rk.h"
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
// destroyed by Stop; Open runs on one thread, and every other operation on
// the caller's.
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
    // Moves while Open reads (for a caller that waits on another thread).
    std::uint64_t OpenProgress() const { return m_source.Progress(); }
    // After a successful Open, on the caller's thread: opens the sound
    // device and starts the threads.
    void Start();
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
    // The picture on screen; false before the first one.
    bool GetShownPicture(ST_ShownPicture& _stPicture, bool _blPixels);
    void SetView(const SVideoView& _view) { m_presenter.SetView(_view); }
    // The wall clock at the first picture, ms since 1970 UTC, for a file
    // whose container names none (a sealed file's header does).
    void SetRecordingStart(std::int64_t _i64Ms);
    bool HasDatedClock() const { return m_blClockDate; }

    bool HasSoundDevice() const { return m_blSound; }
    void SetSoundOn(bool _blOn);
    void SetVolume(int _iPercent);

    // Stops the pictures and the sound, and lets go of the window and the
    // sound device: the part of closing that must happen on the caller's
    // thread. The demux thread may still wait on its source; the destructor
    // waits for it.
    void Halt();

    std::uint64_t DroppedFrames() const { return m_presenter.DroppedFrames(); }
    std::uint64_t ShownFrames() const { return m_presenter.ShownFrames(); }

private:
    // Seconds of the line from the first picture to the end (negative: unknown).
    double Duration() const;
    int PostSeek(ST_SeekRequest _stRequest);
    void ResyncSound();
    // The recording's clock: the container's creation time, else a clock
    // that starts hours in read as the time of day.
    void FindRecordingClock();
    std::int64_t RecordedMs(long long _llLinePts) const;

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
    // Open's part: whether the sound can be decoded, and the sound packets
    // read while looking for the first picture.
    bool m_blSoundDecodable = false;
    std::vector<AVPacket*> m_vecFirstSound;
    bool m_blSound = false;
    // Back at 1X after a speed without sound: realign on the next resume.
    bool m_blSoundBehind = false;
    double m_dDuration = -1.0;
    // The scan found joins: the total is the line's, else the container's.
    bool m_blLineTotal = false;
    double m_dPendingTime = 0.0;
    // The recording's clock at the first picture (ms), and whether it names a day.
    std::int64_t m_i64ClockAtFirstMs = ST_ShownPicture::kNoRecordedTime;
    bool m_blClockDate = false;
};

}  // namespace RK_Framework::VideoPlayer
