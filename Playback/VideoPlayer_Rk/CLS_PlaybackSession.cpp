#include "CLS_PlaybackSession.h"

#include "CLS_StillPicture.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "CLS_TimelineScanner.h"
#include "IVideoOutput.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/parseutils.h>
}

namespace RK_Framework::VideoPlayer {

namespace {
// Decoded pictures waiting for their time: enough to hide a slow keyframe,
// bounded in bytes so that large pictures do not multiply the memory. Every
// queued picture also keeps a buffer of the decoder's pool out of reuse.
constexpr std::size_t kFrameQueueSize = 4;
constexpr std::size_t kMinFrameQueueSize = 2;
constexpr std::size_t kFrameQueueBytes = 8u * 1024u * 1024u;
// Pictures kept for stepping back: about 30 at 1080p. Fresh memory for more
// costs more in page faults than decoding them again would.
constexpr std::size_t kStepCacheBytes = 96u * 1024u * 1024u;
constexpr int kStepBackTimeoutMs = 5000;
// A picture clock that starts this many seconds in or later is a time of day.
constexpr double kClockHoursIn = 3600.0;

// Seconds on the timing stream's clock where the streams we play end; 0 when
// the container does not say.
double StreamsEnd(const CLS_MediaSource& _source)
{
    double dEnd = 0.0;
    for (const AVStream* pStream : {_source.TimingStream(), _source.AudioStream()}) {
        if (!pStream || pStream->start_time == AV_NOPTS_VALUE ||
            pStream->duration == AV_NOPTS_VALUE || pStream->duration <= 0)
            continue;
        dEnd = std::max(dEnd, static_cast<double>(pStream->start_time + pStream->duration) *
                                  av_q2d(pStream->time_base));
    }
    return dEnd;
}
}  // namespace

CLS_PlaybackSession::CLS_PlaybackSession()
    : m_frames(kFrameQueueSize, m_state.m_iSerial),
      m_cache(kStepCacheBytes),
      m_audio(m_state, m_clock),
      m_videoDecoder(m_state, m_videoPackets, m_frames, m_cache),
      m_audioDecoder(m_state, m_audioPackets, m_audio),
      m_demuxer(m_state, m_source, m_videoPackets, m_audioPackets),
      m_presenter(m_state, m_frames, m_cache, m_clock, m_audio)
{}

CLS_PlaybackSession::~CLS_PlaybackSession()
{
    Halt();
    m_demuxer.Join();
    for (AVPacket*& pPacket : m_vecFirstSound)
        av_packet_free(&pPacket);
}

void CLS_PlaybackSession::Halt()
{
    m_state.m_blAbort = true;
    m_state.Wake();
    m_source.Interrupt(true);
    m_videoPackets.Abort();
    m_audioPackets.Abort();
    m_frames.Abort();
    m_audio.Abort();
    // None of these reads the source: they wait on queues, now aborted.
    m_presenter.Join();
    m_videoDecoder.Join();
    m_audioDecoder.Join();
    m_audio.Close();
    m_presenter.ClearOutput();
}

bool CLS_PlaybackSession::Open(const std::string& _strPath, std::string& _strError,
                               AVIOContext* _pIo)
{
    if (!m_source.Open(_strPath, _pIo)) {
        _strError = m_source.LastError();
        return false;
    }
    m_state.m_dFrameDuration = m_source.NominalFrameDuration();
    if (!m_videoDecoder.Open(m_source.TimingStream(), _strError)) return false;
    if (m_source.VideoStream())
        CLS_TimelineScanner(m_source, m_state.m_dTimeBase, m_state.m_dFrameDuration)
            .Build(m_state.m_timeline);

    bool blAudio = false;
    if (m_source.AudioStream()) {
        std::string strIgnored;
        // A file whose sound we cannot decode still shows its pictures.
        blAudio = m_audioDecoder.Open(m_source.AudioStream(), strIgnored);
    }
    if (!m_videoDecoder.DecodeFirst(m_source, m_vecFirstSound, _strError)) return false;
    m_blSoundDecodable = blAudio;
    const std::size_t sizePicture = std::max<std::size_t>(1, m_videoDecoder.PictureBytes());
    m_frames.SetCapacity(
        std::clamp(kFrameQueueBytes / sizePicture, kMinFrameQueueSize, kFrameQueueSize));

    FindRecordingClock();
    // Times run from the first picture, whatever clock the recorder started.
    const double dContainer = m_source.DurationSeconds();
    m_blLineTotal = m_state.m_timeline.HasJoins();
    if (m_blLineTotal) {
        // The container counts the jumps between joined recordings too.
        m_dDuration = std::max(0.0, m_state.TimeOf(m_state.m_timeline.LineEnd()));
    } else if (const double dEnd = StreamsEnd(m_source);
               dEnd > static_cast<double>(m_state.m_i64FirstPts) * m_state.m_dTimeBase) {
        // An mp4 whose clock starts hours in counts those hours in its
        // duration (an empty edit); its streams know where they end.
        m_dDuration = dEnd - static_cast<double>(m_state.m_i64FirstPts) * m_state.m_dTimeBase;
    } else if (dContainer > 0.0) {
        const AVFormatContext* pFormat = m_source.Format();
        const double dStart = pFormat->start_time != AV_NOPTS_VALUE
                                  ? static_cast<double>(pFormat->start_time) / AV_TIME_BASE
                                  : 0.0;
        const double dFirst = static_cast<double>(m_state.m_i64FirstPts) * m_state.m_dTimeBase;
        const double dLead = pFormat->start_time != AV_NOPTS_VALUE ? dFirst - dStart : 0.0;
        m_dDuration = dContainer - std::clamp(dLead, 0.0, dContainer);
    }

    return true;
}

void CLS_PlaybackSession::Start()
{
    if (m_blStarted) return;
    // The sound server may take its time to answer; that is no silence of
    // the file, so the device is opened here rather than in Open.
    if (m_blSoundDecodable)
        m_blSound = m_audio.Open(m_audioDecoder.SampleRate(), m_audioDecoder.Channels());
    m_state.m_blAudioActive = m_blSound;
    for (AVPacket*& pPacket : m_vecFirstSound) {
        if (m_blSound)
            m_audioPackets.Put(pPacket, m_state.m_iSerial.load());
        else
            av_packet_free(&pPacket);
    }
    m_vecFirstSound.clear();
    m_demuxer.Start();
    m_videoDecoder.Start();
    if (m_blSound) m_audioDecoder.Start();
    m_presenter.Start();
    m_blStarted = true;
}

void CLS_PlaybackSession::SetEndHandler(EndHandler _fnEnd)
{
    m_presenter.SetEndHandler(std::move(_fnEnd));
}

void CLS_PlaybackSession::SetObserver(FrameObserver _fnObserver)
{
    m_presenter.SetObserver(std::move(_fnObserver));
}

void CLS_PlaybackSession::Play(std::unique_ptr<IVideoOutput> _pOutput)
{
    if (!m_blStarted) return;
    m_presenter.SetOutput(std::move(_pOutput));
    m_presenter.SetRunning(true);
    Pause(false);
}

bool CLS_PlaybackSession::Pause(bool _blPause)
{
    if (!m_blStarted || m_presenter.Paused() == _blPause) return false;
    m_clock.SetPaused(_blPause);
    m_audio.SetPaused(_blPause);
    m_presenter.SetPaused(_blPause);
    if (!_blPause && m_blSoundBehind) ResyncSound();
    return true;
}

bool CLS_PlaybackSession::Paused() const
{
    return m_presenter.Paused();
}

void CLS_PlaybackSession::SetSpeed(double _dSpeed)
{
    const bool blWasActive = m_state.m_blAudioActive.load();
    const bool blActive = m_blSound && _dSpeed == 1.0;
    m_state.m_dSpeed = _dSpeed;
    m_state.m_iLagLevel = DECODE_ALL;
    m_clock.SetSpeed(_dSpeed);
    m_state.m_blAudioActive = blActive;
    if (blWasActive && !blActive) {
        m_audio.Flush();
        m_audioPackets.Flush();
    } else if (!blWasActive && blActive) {
        m_blSoundBehind = true;
        if (!m_presenter.Paused()) ResyncSound();
    }
    m_presenter.Wake();
}

void CLS_PlaybackSession::ResyncSound()
{
    m_blSoundBehind = false;
    if (m_presenter.ShownSerial() < 0) return;
    // The demuxer read ahead without sound; go back to the picture on screen
    // so that sound resumes with it rather than seconds later.
    ST_SeekRequest stRequest;
    stRequest.m_i64Target = m_presenter.ShownPts();
    stRequest.m_i64SeekPts = stRequest.m_i64Target;
    m_dPendingTime = m_presenter.ShownTime();
    PostSeek(stRequest);
}

int CLS_PlaybackSession::PostSeek(ST_SeekRequest _stRequest)
{
    if (_stRequest.m_i64SeekPts <= m_state.m_i64FirstPts) _stRequest.m_blToStart = true;
    _stRequest.m_blWhilePaused = m_presenter.Paused();
    const int iSerial = m_state.RequestSeek(_stRequest);
    m_frames.Wake();
    m_audio.Flush();
    m_presenter.Wake();
    return iSerial;
}

double CLS_PlaybackSession::Duration() const
{
    if (m_dDuration <= 0.0) return m_dDuration;
    // Joins met while playing take their jumps out of the total as well.
    const double dTotal =
        m_blLineTotal ? m_state.TimeOf(m_state.m_timeline.LineEnd())
                      : m_dDuration - static_cast<double>(m_state.m_timeline.FoundShortening()) *
                                          m_state.m_dTimeBase;
    // Where it still falls short, what has been shown is on the line all the same.
    const double dShown =
        m_presenter.ShownSerial() < 0 ? 0.0 : m_presenter.ShownTime() + m_state.m_dFrameDuration;
    return std::max(dTotal, dShown);
}

bool CLS_PlaybackSession::SeekPercent(int _iPercent)
{
    const double dDuration = Duration();
    if (!m_blStarted || dDuration <= 0.0) return false;
    const double dTime = dDuration * std::clamp(_iPercent, 0, 100) / 100.0;
    ST_SeekRequest stRequest;
    stRequest.m_i64Target = m_state.PtsOf(dTime);
    stRequest.m_i64SeekPts = stRequest.m_i64Target;
    m_dPendingTime = dTime;
    m_cache.Clear();
    // A new position brings its own sound.
    m_blSoundBehind = false;
    PostSeek(stRequest);
    return true;
}

bool CLS_PlaybackSession::StepForward()
{
    if (!m_blStarted) return false;
    Pause(true);
    return m_presenter.StepForward();
}

bool CLS_PlaybackSession::StepBack()
{
    // Before the first Play nothing is on screen to step back from.
    if (!m_blStarted || !m_presenter.Running()) return false;
    Pause(true);
    const int iLatest = m_state.m_iSerial.load();
    if (m_presenter.ShownSerial() != iLatest &&
        !m_presenter.WaitForSerial(iLatest, kStepBackTimeoutMs))
        return false;
    if (m_presenter.StepBackFromCache()) return true;
    const long long llShown = m_presenter.ShownPts();
    if (llShown <= m_state.m_i64FirstPts) return false;
    // Decode again from the keyframe before, keeping the pictures on the way
    // so that the next steps back need no decoding.
    ST_SeekRequest stRequest;
    stRequest.m_i64Target = llShown - 1;
    stRequest.m_i64SeekPts = stRequest.m_i64Target;
    stRequest.m_blCollect = true;
    m_dPendingTime = m_state.TimeOf(llShown);
    const int iSerial = PostSeek(stRequest);
    if (!m_presenter.WaitForSerial(iSerial, kStepBackTimeoutMs)) return false;
    return m_presenter.ShownPts() < llShown;
}

int CLS_PlaybackSession::TotalSeconds() const
{
    const double dDuration = Duration();
    if (dDuration <= 0.0) return -1;
    return static_cast<int>(std::lround(dDuration));
}

double CLS_PlaybackSession::ShownTime() const
{
    return m_presenter.ShownSerial() < 0 ? -1.0 : m_presenter.ShownTime();
}

bool CLS_PlaybackSession::GetShownPicture(ST_ShownPicture& _stPicture, bool _blPixels)
{
    long long llPts = 0;
    double dTime = 0.0;
    AVFrame* pFrame = m_presenter.CopyShown(llPts, dTime);
    if (!pFrame) return false;
    const bool blCopied = CLS_StillPicture::Copy(pFrame, _blPixels, _stPicture);
    av_frame_free(&pFrame);
    if (!blCopied) return false;
    _stPicture.m_dTime = dTime;
    _stPicture.m_i64RecordedMs = RecordedMs(llPts);
    _stPicture.m_blRecordedDate = m_blClockDate;
    return true;
}

void CLS_PlaybackSession::FindRecordingClock()
{
    const AVFormatContext* pFormat = m_source.Format();
    const AVStream* pVideo = m_source.VideoStream();
    const AVDictionaryEntry* pCreated = av_dict_get(pFormat->metadata, "creation_time", nullptr, 0);
    if (!pCreated && pVideo) pCreated = av_dict_get(pVideo->metadata, "creation_time", nullptr, 0);
    std::int64_t i64Us = 0;
    if (pCreated && av_parse_time(&i64Us, pCreated->value, 0) == 0 && i64Us > 0) {
        SetRecordingStart(i64Us / 1000);
        return;
    }
    // Recorders stamp their pictures with the time of day; a stream that
    // starts at 0 has no such clock.
    const double dFirst = static_cast<double>(m_state.m_i64FirstPts) * m_state.m_dTimeBase;
    if (dFirst >= kClockHoursIn) {
        m_i64ClockAtFirstMs = std::llround(dFirst * 1000.0);
        m_blClockDate = false;
    }
}

void CLS_PlaybackSession::SetRecordingStart(std::int64_t _i64Ms)
{
    m_i64ClockAtFirstMs = _i64Ms;
    m_blClockDate = true;
}

std::int64_t CLS_PlaybackSession::RecordedMs(long long _llLinePts) const
{
    if (m_i64ClockAtFirstMs == ST_ShownPicture::kNoRecordedTime) return m_i64ClockAtFirstMs;
    // The recorder's own clock, jumps between joined recordings included.
    std::size_t sizePart = 0;
    const std::int64_t i64Raw = m_state.m_timeline.ToStream(_llLinePts, sizePart);
    return m_i64ClockAtFirstMs +
           std::llround(static_cast<double>(i64Raw - m_state.m_i64FirstPts) * m_state.m_dTimeBase *
                        1000.0);
}

int CLS_PlaybackSession::PlayedSeconds() const
{
    // While a seek is on its way, report where it goes, not where it was.
    const double dTime = m_presenter.ShownSerial() == m_state.m_iSerial.load()
                             ? m_presenter.ShownTime()
                             : m_dPendingTime;
    if (dTime <= 0.0) return 0;
    return static_cast<int>(std::floor(dTime + 1e-6));
}

void CLS_PlaybackSession::SetSoundOn(bool _blOn)
{
    m_audio.SetSoundOn(_blOn);
}

void CLS_PlaybackSession::SetVolume(int _iPercent)
{
    m_audio.SetVolume(_iPercent);
}

}  // namespace RK_Framework::VideoPlayer
