#include "CLS_VideoDecoder.h"

#include <algorithm>
#include <chrono>

#include "CLS_MediaSource.h"
#include "CLS_PacketQueue.h"
#include "CLS_StepCache.h"
#include "PlatformThread.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
}

namespace RK_Framework::VideoPlayer {

namespace {
// Two frame threads beat "auto" on the two-core machines we ship for: more
// threads only add reordering delay and memory.
constexpr int kDecoderThreads = 2;
constexpr int kPlainThreads = 1;
// Give up looking for a first picture after this many packets.
constexpr int kMaxPacketsForFirst = 3000;
// Recorder streams sometimes never flag a keyframe; stop waiting for one.
constexpr int kMaxSkipForKey = 250;
// Share of the decoder's time that high-speed playback may take before it
// starts decoding less.
constexpr double kDecodeBudget = 0.6;
// Decode times kept beyond what the decoder can hold back, for packets still
// on their way through it.
constexpr int kSpareDecodeTimes = 4;
// Pictures without a time held after a seek until one with a time follows;
// past this many the stream is taken to have none there.
constexpr std::size_t kMaxUntimed = 16;
}  // namespace

CLS_VideoDecoder::CLS_VideoDecoder(CLS_SessionState& _state, CLS_PacketQueue& _packets,
                                   CLS_FrameQueue& _frames, CLS_StepCache& _cache)
    : m_state(_state), m_packets(_packets), m_frames(_frames), m_cache(_cache)
{}

CLS_VideoDecoder::~CLS_VideoDecoder()
{
    Join();
    DropUntimed();
    FreeVideoFrame(m_stHeld);
    av_frame_free(&m_pScratch);
    av_frame_free(&m_pBlank);
    avcodec_free_context(&m_pCodec);
}

bool CLS_VideoDecoder::Open(AVStream* _pStream, std::string& _strError)
{
    m_pStream = _pStream;
    m_pScratch = av_frame_alloc();
    m_state.m_dTimeBase = av_q2d(_pStream->time_base);
    m_i64NominalTicks = std::max<std::int64_t>(
        1, static_cast<std::int64_t>(m_state.m_dFrameDuration / m_state.m_dTimeBase + 0.5));
    if (_pStream->codecpar->codec_type != AVMEDIA_TYPE_VIDEO) {
        m_pBlank = MakeBlank();
        if (m_pScratch && m_pBlank) return true;
        _strError = "out of memory";
        return false;
    }
    const int iThreads = m_state.m_dSpeed.load() > 1.0 ? kDecoderThreads : kPlainThreads;
    if (!m_pScratch || !OpenCodec(iThreads, _strError)) return false;
    // A first guess until real decoding tells: about 2 ns per pixel on one
    // thread here.
    m_dCostPerFrame = 2.0e-9 * std::max(1, m_pCodec->width) * std::max(1, m_pCodec->height);
    return true;
}

bool CLS_VideoDecoder::OpenCodec(int _iThreads, std::string& _strError)
{
    avcodec_free_context(&m_pCodec);
    m_iThreads = 0;
    m_vecDecodeTimes.clear();
    const AVCodec* pDecoder = avcodec_find_decoder(m_pStream->codecpar->codec_id);
    if (!pDecoder) {
        _strError =
            std::string("no decoder for ") + avcodec_get_name(m_pStream->codecpar->codec_id);
        return false;
    }
    m_pCodec = avcodec_alloc_context3(pDecoder);
    if (!m_pCodec || avcodec_parameters_to_context(m_pCodec, m_pStream->codecpar) < 0) {
        _strError = "cannot set up the video decoder";
        return false;
    }
    m_pCodec->pkt_timebase = m_pStream->time_base;
    m_pCodec->thread_count = _iThreads;
    m_pCodec->thread_type = FF_THREAD_FRAME;
    if (avcodec_open2(m_pCodec, pDecoder, nullptr) < 0) {
        _strError = "cannot open the video decoder";
        return false;
    }
    m_iThreads = _iThreads;
    m_iLevel = DECODE_ALL;
    return true;
}

void CLS_VideoDecoder::ChooseThreads()
{
    // Frame threads pay for their speed with pictures in flight and a copy
    // of the decoder's tables each (at 1080p some 12 MB). Playback up to 1X,
    // a new position while playing included, needs a fraction of one core;
    // a picture someone waits for while paused (a seek, a step) and fast
    // playback want the second thread. A new position starts from a keyframe
    // with a flushed decoder anyway, so that is where the decoder is replaced.
    const bool blHurry = (m_stSeek.m_i64Target != INT64_MIN && m_stSeek.m_blWhilePaused) ||
                         m_state.m_dSpeed.load() > 1.0;
    const int iWanted = blHurry ? kDecoderThreads : kPlainThreads;
    std::string strIgnored;
    if (m_pBlank || iWanted == m_iThreads || OpenCodec(iWanted, strIgnored)) return;
    // The decoder opened once with these parameters; if it fails now, stay
    // with what works.
    OpenCodec(m_iThreads > 0 ? m_iThreads : kPlainThreads, strIgnored);
}

std::size_t CLS_VideoDecoder::PictureBytes() const
{
    if (m_pBlank)
        return static_cast<std::size_t>(
            av_image_get_buffer_size(AV_PIX_FMT_YUV420P, m_pBlank->width, m_pBlank->height, 1));
    if (!m_pCodec || m_pCodec->width <= 0 || m_pCodec->height <= 0) return 0;
    if (m_pCodec->pix_fmt == AV_PIX_FMT_NONE)
        return static_cast<std::size_t>(m_pCodec->width) * m_pCodec->height * 3 / 2;
    const int iBytes =
        av_image_get_buffer_size(m_pCodec->pix_fmt, m_pCodec->width, m_pCodec->height, 1);
    return iBytes > 0 ? static_cast<std::size_t>(iBytes) : 0;
}

bool CLS_VideoDecoder::DecodeFirst(CLS_MediaSource& _source, std::vector<AVPacket*>& _vecAudio,
                                   std::string& _strError)
{
    m_iSerial = m_state.m_iSerial.load();
    AVPacket* pPacket = av_packet_alloc();
    if (!pPacket) return false;
    // One packet of a damaged stream, or the flush at its end, can give more
    // pictures than the queue holds; nobody takes them out yet, so the ones
    // past its size are dropped rather than waited on.
    m_blOpening = true;
    for (int i = 0; i < kMaxPacketsForFirst && m_frames.Count() == 0; ++i) {
        const int iRet = _source.Read(pPacket);
        if (iRet == AVERROR(EAGAIN)) continue;
        if (iRet < 0) {
            Feed(nullptr);
            break;
        }
        if (pPacket->stream_index == m_pStream->index) {
            // Recordings cut in mid-group start with pictures that refer to
            // ones we never get: begin at the first keyframe.
            const bool blKey = (pPacket->flags & AV_PKT_FLAG_KEY) != 0;
            if (!m_blWaitKey || blKey || ++m_iSkippedForKey >= kMaxSkipForKey) {
                m_blWaitKey = false;
                Feed(pPacket);
            }
        }
        if (pPacket->stream_index == _source.AudioIndex())
            _vecAudio.push_back(av_packet_clone(pPacket));
        av_packet_unref(pPacket);
    }
    av_packet_free(&pPacket);
    m_blOpening = false;
    if (m_frames.Count() == 0) {
        _strError = "no picture could be decoded";
        return false;
    }
    return true;
}

void CLS_VideoDecoder::Start()
{
    m_thread = BriskPlatform::StartNamedThread("quill-vdecode", [this] { Run(); });
}

void CLS_VideoDecoder::Join()
{
    if (m_thread.joinable()) m_thread.join();
}

void CLS_VideoDecoder::BeginSerial(int _iSerial)
{
    Flush();
    m_iSerial = _iSerial;
    m_stSeek = m_state.LatestSeek();
    if (m_stSeek.m_iSerial != _iSerial) m_stSeek = ST_SeekRequest{};
    ChooseThreads();
    m_blWaitKey = true;
    m_iSkippedForKey = 0;
    m_blFirstAfterSeek = true;
    m_blCollected = false;
    m_blHaveLast = false;
    m_i64LastPos = -1;
    FreeVideoFrame(m_stHeld);
}

int CLS_VideoDecoder::DiscardLevel() const
{
    const double dSpeed = m_state.m_dSpeed.load();
    if (dSpeed <= 1.0 || m_stSeek.m_i64Target != INT64_MIN) return DECODE_ALL;
    const double dLoad = dSpeed / m_state.m_dFrameDuration * m_dCostPerFrame;
    int iLevel = DECODE_ALL;
    if (dLoad > kDecodeBudget)
        iLevel = dLoad * 0.5 > kDecodeBudget ? DECODE_KEYFRAMES_ONLY : DECODE_SKIP_NONREF;
    return std::min<int>(DECODE_KEYFRAMES_ONLY, std::max(iLevel, m_state.m_iLagLevel.load()));
}

void CLS_VideoDecoder::ApplyDiscard(int _iLevel)
{
    if (_iLevel == m_iLevel || !m_pCodec) return;
    m_iLevel = _iLevel;
    m_pCodec->skip_frame = _iLevel == DECODE_ALL           ? AVDISCARD_DEFAULT
                           : _iLevel == DECODE_SKIP_NONREF ? AVDISCARD_NONREF
                                                           : AVDISCARD_NONKEY;
}

void CLS_VideoDecoder::Run()
{
    CLS_PacketQueue::ST_Entry stEntry;
    while (!m_state.m_blAbort.load()) {
        if (!m_packets.Get(stEntry, std::chrono::milliseconds(50))) continue;
        AVPacket* pPacket = stEntry.m_pPacket;
        if (stEntry.m_iSerial != m_state.m_iSerial.load()) {
            av_packet_free(&pPacket);
            continue;
        }
        if (stEntry.m_iSerial != m_iSerial) BeginSerial(stEntry.m_iSerial);
        if (!pPacket) {
            FinishStream();
            continue;
        }
        const bool blKey = (pPacket->flags & AV_PKT_FLAG_KEY) != 0;
        if (m_blWaitKey && !blKey && ++m_iSkippedForKey < kMaxSkipForKey) {
            av_packet_free(&pPacket);
            continue;
        }
        m_blWaitKey = false;
        ApplyDiscard(DiscardLevel());
        if (m_iLevel == DECODE_KEYFRAMES_ONLY && !blKey) {
            av_packet_free(&pPacket);
            continue;
        }
        Feed(pPacket);
        av_packet_free(&pPacket);
    }
}

void CLS_VideoDecoder::Feed(const AVPacket* _pPacket)
{
    using Clock = std::chrono::steady_clock;
    const auto tpStart = Clock::now();
    int iFrames = 0;
    if (m_pBlank) {
        FeedBlank(_pPacket);
        return;
    }
    if (!m_pCodec) return;
    int iRet = avcodec_send_packet(m_pCodec, _pPacket);
    // A damaged packet is skipped; the stream goes on.
    if (iRet < 0 && iRet != AVERROR(EAGAIN) && iRet != AVERROR_EOF && _pPacket) return;
    if (iRet >= 0 && !m_blPictureTimes && _pPacket && _pPacket->pts == AV_NOPTS_VALUE &&
        _pPacket->dts != AV_NOPTS_VALUE)
        NoteDecodeTime(_pPacket->dts);
    while (true) {
        iRet = avcodec_receive_frame(m_pCodec, m_pScratch);
        if (iRet < 0) break;
        ++iFrames;
        AVFrame* pFrame = av_frame_alloc();
        if (!pFrame) {
            av_frame_unref(m_pScratch);
            continue;
        }
        av_frame_move_ref(pFrame, m_pScratch);
        if (m_iLevel == DECODE_ALL && _pPacket) {
            const double dSpent = std::chrono::duration<double>(Clock::now() - tpStart).count();
            m_dCostPerFrame = 0.95 * m_dCostPerFrame + 0.05 * (dSpent / iFrames);
        }
        HandleFrame(pFrame);
        if (m_state.m_blAbort.load()) break;
    }
}

AVFrame* CLS_VideoDecoder::MakeBlank()
{
    // Small is enough: the output letterboxes it, and its bars are black too.
    AVFrame* pFrame = av_frame_alloc();
    if (!pFrame) return nullptr;
    pFrame->format = AV_PIX_FMT_YUV420P;
    pFrame->width = pFrame->height = 64;
    pFrame->color_range = AVCOL_RANGE_MPEG;
    if (av_frame_get_buffer(pFrame, 0) < 0) {
        av_frame_free(&pFrame);
        return nullptr;
    }
    for (int iPlane = 0; iPlane < 3; ++iPlane) {
        const int iRows = iPlane == 0 ? pFrame->height : pFrame->height / 2;
        std::fill_n(pFrame->data[iPlane],
                    static_cast<std::size_t>(pFrame->linesize[iPlane]) * iRows,
                    iPlane == 0 ? 16 : 128);
    }
    return pFrame;
}

void CLS_VideoDecoder::FeedBlank(const AVPacket* _pPacket)
{
    // One black picture per nominal picture time of sound, so that it is
    // timed, seeks land and the end comes just as with pictures. The sound's
    // last packet gets one too, for the end to wait for all of it.
    if (!_pPacket) {
        if (m_blBlankPending) EmitBlank(m_i64BlankPendingPts, m_i64BlankPendingPos);
        m_blBlankPending = false;
        return;
    }
    const std::int64_t i64Pts = _pPacket->pts != AV_NOPTS_VALUE ? _pPacket->pts : _pPacket->dts;
    if (i64Pts == AV_NOPTS_VALUE) return;
    if (m_blHaveBlank && i64Pts < m_i64BlankNext) {
        m_blBlankPending = true;
        m_i64BlankPendingPts = i64Pts;
        m_i64BlankPendingPos = _pPacket->pos;
        return;
    }
    m_blBlankPending = false;
    m_blHaveBlank = true;
    m_i64BlankNext = i64Pts + m_i64NominalTicks;
    EmitBlank(i64Pts, _pPacket->pos);
}

void CLS_VideoDecoder::EmitBlank(std::int64_t _i64Pts, std::int64_t _i64Pos)
{
    AVFrame* pFrame = av_frame_clone(m_pBlank);
    if (!pFrame) return;
    pFrame->pts = pFrame->best_effort_timestamp = _i64Pts;
    pFrame->pkt_pos = _i64Pos;
    pFrame->pkt_duration = m_i64NominalTicks;
    HandleFrame(pFrame);
}

void CLS_VideoDecoder::NoteDecodeTime(std::int64_t _i64Dts)
{
    m_vecDecodeTimes.insert(
        std::upper_bound(m_vecDecodeTimes.begin(), m_vecDecodeTimes.end(), _i64Dts), _i64Dts);
    // Pictures the decoder never puts out (skipped at high speed, damaged)
    // leave their time behind; more than the decoder can hold back at once
    // are such leftovers.
    const std::size_t sizeMax = static_cast<std::size_t>(
        std::max(0, m_pCodec->has_b_frames) + std::max(1, m_iThreads) + kSpareDecodeTimes);
    if (m_vecDecodeTimes.size() > sizeMax)
        m_vecDecodeTimes.erase(m_vecDecodeTimes.begin(),
                               m_vecDecodeTimes.begin() +
                                   static_cast<std::ptrdiff_t>(m_vecDecodeTimes.size() - sizeMax));
}

void CLS_VideoDecoder::HandleFrame(AVFrame* _pFrame)
{
    const std::int64_t i64Pts = PictureTime(_pFrame);
    // Program streams stamp only some pictures, and a seek may land on one
    // without a stamp (often the keyframe itself). Counting on from an
    // earlier picture is impossible there, so such pictures wait for the
    // next one that has a time and are placed a picture apart before it.
    if (i64Pts == AV_NOPTS_VALUE && !m_blHaveLast && m_blPictureTimes &&
        m_vecUntimed.size() < kMaxUntimed) {
        m_vecUntimed.push_back(_pFrame);
        return;
    }
    PlaceUntimed(i64Pts);
    Place(_pFrame, i64Pts);
}

void CLS_VideoDecoder::PlaceUntimed(std::int64_t _i64NextPts)
{
    std::vector<AVFrame*> vecUntimed;
    vecUntimed.swap(m_vecUntimed);
    const auto n = static_cast<std::int64_t>(vecUntimed.size());
    for (std::int64_t i = 0; i < n; ++i) {
        Place(vecUntimed[i], _i64NextPts == AV_NOPTS_VALUE
                                 ? AV_NOPTS_VALUE
                                 : _i64NextPts - (n - i) * m_i64NominalTicks);
    }
}

void CLS_VideoDecoder::DropUntimed()
{
    for (AVFrame*& pFrame : m_vecUntimed)
        av_frame_free(&pFrame);
    m_vecUntimed.clear();
}

std::int64_t CLS_VideoDecoder::PictureTime(const AVFrame* _pFrame)
{
    std::int64_t i64Pts = _pFrame->best_effort_timestamp;
    // Containers that store decode order only (avi) give B-frame streams no
    // picture times. Pictures come out in display order, and a constant
    // rate shows them at the decode times sorted: the earliest time still
    // open belongs to this picture. The decoder's own guess is the decode
    // time of whatever packet went in last, later by its reordering delay,
    // which changes with threads and after every flush.
    // Program streams leave some pictures without a time of their own too,
    // but give most one: there the decoder's guess is right and the decode
    // times would lag behind it.
    if (_pFrame->pts != AV_NOPTS_VALUE && !m_blPictureTimes) {
        m_blPictureTimes = true;
        m_vecDecodeTimes.clear();
    }
    if (_pFrame->pts == AV_NOPTS_VALUE && !m_vecDecodeTimes.empty()) {
        i64Pts = m_vecDecodeTimes.front();
        m_vecDecodeTimes.erase(m_vecDecodeTimes.begin());
    }
    if (i64Pts == AV_NOPTS_VALUE) i64Pts = _pFrame->pts;
    // Pictures the parser split off a packet carry no position; the one
    // before theirs tells which recording they belong to.
    if (_pFrame->pkt_pos >= 0) m_i64LastPos = _pFrame->pkt_pos;
    if (i64Pts != AV_NOPTS_VALUE) {
        const std::int64_t i64Raw = i64Pts;
        i64Pts = m_state.m_timeline.ToLine(i64Raw, m_i64LastPos);
        // A join the scan did not see: from here on the line leaves out the
        // jump, as it would had the scan found it. Keyframes alone lie a
        // group apart, which may be a long way forward but never back.
        const bool blSparse = m_iLevel == DECODE_KEYFRAMES_ONLY;
        if (m_blHaveLast && m_state.m_timeline.IsJump(m_i64LastPts, i64Pts) &&
            (!blSparse || i64Pts < m_i64LastPts) &&
            m_state.m_timeline.AddJoin(m_i64LastPos, m_i64LastPts, i64Raw, m_state.m_i64FirstPts))
            i64Pts = m_state.m_timeline.ToLine(i64Raw, m_i64LastPos);
    }
    return i64Pts;
}

void CLS_VideoDecoder::Place(AVFrame* _pFrame, std::int64_t i64Pts)
{
    if (i64Pts == AV_NOPTS_VALUE)
        i64Pts = m_blHaveLast ? m_i64LastPts + m_i64NominalTicks
                              : (m_blHaveFirst ? m_state.m_i64FirstPts : 0);
    // Small steps backwards are broken stamps; keep the order we decoded in.
    if (m_blHaveLast && i64Pts <= m_i64LastPts &&
        static_cast<double>(m_i64LastPts - i64Pts) * m_state.m_dTimeBase < 1.0)
        i64Pts = m_i64LastPts + 1;
    m_blHaveLast = true;
    m_i64LastPts = i64Pts;
    if (!m_blHaveFirst) {
        m_blHaveFirst = true;
        m_state.m_i64FirstPts = i64Pts;
    }

    ST_VideoFrame stFrame;
    stFrame.m_pFrame = _pFrame;
    stFrame.m_iSerial = m_iSerial;
    stFrame.m_llPts = i64Pts;
    stFrame.m_dTime = m_state.TimeOf(i64Pts);
    stFrame.m_dDuration = _pFrame->pkt_duration > 0
                              ? static_cast<double>(_pFrame->pkt_duration) * m_state.m_dTimeBase
                              : m_state.m_dFrameDuration;
    // A damaged duration must not hold the last picture (and the end of the
    // file) for minutes.
    if (stFrame.m_dDuration > std::max(2.0, 4.0 * m_state.m_dFrameDuration))
        stFrame.m_dDuration = m_state.m_dFrameDuration;

    const std::int64_t i64Target = m_stSeek.m_i64Target;
    if (i64Target != INT64_MIN) {
        if (m_blFirstAfterSeek && i64Pts > i64Target && !m_stSeek.m_blToStart) {
            // Landed after the target (program streams seek by bisection and
            // can overshoot): go further back and decode forward again.
            RetryFurtherBack();
            FreeVideoFrame(stFrame);
            return;
        }
        m_blFirstAfterSeek = false;
        if (i64Pts <= i64Target) {
            if (m_stHeld.m_pFrame) {
                if (m_stSeek.m_blCollect) {
                    m_cache.Append(m_stHeld, m_blCollected);
                    m_blCollected = true;
                }
                FreeVideoFrame(m_stHeld);
            }
            m_stHeld = stFrame;
            return;
        }
        m_stSeek.m_i64Target = INT64_MIN;
        DeliverHeld();
    }
    m_blFirstAfterSeek = false;
    Deliver(stFrame);
}

void CLS_VideoDecoder::Deliver(ST_VideoFrame& _stFrame)
{
    ST_VideoFrame stOut = _stFrame;
    _stFrame = ST_VideoFrame{};
    if (m_blOpening)
        m_frames.PutNoWait(stOut);
    else
        m_frames.Put(stOut);
}

void CLS_VideoDecoder::DeliverHeld()
{
    if (!m_stHeld.m_pFrame) return;
    m_stHeld.m_blFollowsCache = m_stSeek.m_blCollect && m_blCollected;
    Deliver(m_stHeld);
}

void CLS_VideoDecoder::RetryFurtherBack()
{
    ST_SeekRequest stRetry = m_stSeek;
    ++stRetry.m_iBackoff;
    const double dBack = static_cast<double>(1 << std::min(stRetry.m_iBackoff, 6));
    stRetry.m_i64SeekPts =
        stRetry.m_i64Target - static_cast<std::int64_t>(dBack / m_state.m_dTimeBase);
    if (stRetry.m_i64SeekPts <= m_state.m_i64FirstPts || stRetry.m_iBackoff > 6)
        stRetry.m_blToStart = true;
    m_state.RetrySeek(m_iSerial, stRetry);
}

void CLS_VideoDecoder::FinishStream()
{
    Feed(nullptr);
    PlaceUntimed(AV_NOPTS_VALUE);
    if (m_stSeek.m_i64Target != INT64_MIN && m_blFirstAfterSeek && !m_stSeek.m_blToStart) {
        // The seek ran into the end without a single picture (a bisection
        // that landed in the tail): go further back rather than show nothing.
        Flush();
        RetryFurtherBack();
        return;
    }
    DeliverHeld();
    m_stSeek.m_i64Target = INT64_MIN;
    ST_VideoFrame stEnd;
    stEnd.m_iSerial = m_iSerial;
    stEnd.m_llPts = m_i64LastPts;
    m_frames.Put(stEnd);
    Flush();
}

void CLS_VideoDecoder::Flush()
{
    if (m_pCodec) avcodec_flush_buffers(m_pCodec);
    DropUntimed();
    m_vecDecodeTimes.clear();
    m_blHaveBlank = m_blBlankPending = false;
}

}  // namespace RK_Framework::VideoPlayer
