#include "CLS_TimelineScanner.h"

#include <algorithm>
#include <cmath>

#include "CLS_MediaSource.h"

extern "C" {
#include <libavformat/avformat.h>
}

namespace RK_Framework::VideoPlayer {

namespace {
// A sample reads at most this many packets looking for a picture time.
constexpr int kPacketsPerSample = 400;
// Bounds on the whole scan, whatever the file: packets read, joins followed.
constexpr int kMaxReads = 60000;
constexpr std::size_t kMaxJoins = 64;
// Pictures read on after a join, for the earliest time of the new part (the
// pictures reordered before its first keyframe).
constexpr int kPacketsAfterJoin = 16;
// Pictures a narrowed read starts ahead of its left sample: a sample taken
// among the pictures reordered before a join would miss the part's latest
// time, stored a few packets earlier.
constexpr int kReorderLead = 16;

std::int64_t TimeOf(const AVPacket* _pPacket)
{
    return _pPacket->pts != AV_NOPTS_VALUE ? _pPacket->pts : _pPacket->dts;
}
}  // namespace

CLS_TimelineScanner::CLS_TimelineScanner(CLS_MediaSource& _source, double _dTimeBase,
                                         double _dFrameDuration, ST_TimelineScanLimits _stLimits)
    : m_source(_source),
      m_stLimits(_stLimits),
      m_dTimeBase(_dTimeBase > 0.0 ? _dTimeBase : 1.0 / 90000.0)
{
    const double dFrame = _dFrameDuration > 0.0 ? _dFrameDuration : 0.04;
    m_i64FrameTicks = std::max<std::int64_t>(1, std::llround(dFrame / m_dTimeBase));
    // A jump forward is a join only when clearly more than a recorder's
    // pause between pictures; a step back beyond reordering is a clock reset.
    m_i64JumpTicks = std::llround(std::max(10.0, 100.0 * dFrame) / m_dTimeBase);
    m_i64BackTicks = std::llround(std::max(1.0, 8.0 * dFrame) / m_dTimeBase);
}

void CLS_TimelineScanner::Build(CLS_Timeline& _timeline)
{
    _timeline.Clear();
    _timeline.SetScale(m_i64FrameTicks, m_i64JumpTicks, m_i64BackTicks);
    m_iReads = 0;
    m_vecJoins.clear();
    m_vecSeekPoints.clear();
    m_blHaveHead = m_blHaveTail = false;
    if (BuildFromIndex(_timeline)) return;
    BuildByReading(_timeline);
}

bool CLS_TimelineScanner::BuildFromIndex(CLS_Timeline& _timeline)
{
    AVFormatContext* pFormat = m_source.Format();
    AVStream* pVideo = m_source.VideoStream();
    if (!pFormat || !pVideo) return false;
    // Only an index the container brought along lists every picture; one
    // FFmpeg builds while reading knows only what was read so far.
    if (pFormat->iformat->flags & (AVFMT_GENERIC_INDEX | AVFMT_TS_DISCONT)) return false;
    const int iCount = avformat_index_get_entries_count(pVideo);
    if (iCount < 2) return false;
    std::vector<ST_TimelinePart> vecParts;
    const AVIndexEntry* pFirst = avformat_index_get_entry(pVideo, 0);
    ST_TimelinePart stPart{pFirst->timestamp, pFirst->timestamp + m_i64FrameTicks, pFirst->pos};
    std::int64_t i64Previous = pFirst->timestamp;
    for (int i = 1; i < iCount; ++i) {
        const AVIndexEntry* pEntry = avformat_index_get_entry(pVideo, i);
        if (IsJump(i64Previous, pEntry->timestamp) && vecParts.size() < kMaxJoins) {
            vecParts.push_back(stPart);
            stPart = ST_TimelinePart{pEntry->timestamp, pEntry->timestamp + m_i64FrameTicks,
                                     pEntry->pos};
        }
        stPart.m_i64RawStart = std::min(stPart.m_i64RawStart, pEntry->timestamp);
        stPart.m_i64RawEnd = std::max(stPart.m_i64RawEnd, pEntry->timestamp + m_i64FrameTicks);
        i64Previous = pEntry->timestamp;
    }
    vecParts.push_back(stPart);
    if (vecParts.size() > 1) _timeline.SetParts(std::move(vecParts), {}, m_i64JumpTicks / 2);
    return true;
}

CLS_TimelineScanner::ST_Sample CLS_TimelineScanner::SampleAt(std::int64_t _i64Pos)
{
    ST_Sample stSample;
    AVFormatContext* pFormat = m_source.Format();
    if (av_seek_frame(pFormat, -1, _i64Pos, AVSEEK_FLAG_BYTE) < 0) return stSample;
    AVPacket* pPacket = av_packet_alloc();
    if (!pPacket) return stSample;
    for (int i = 0; i < kPacketsPerSample && m_iReads < kMaxReads; ++i) {
        ++m_iReads;
        if (m_source.Read(pPacket) < 0) break;
        const bool blPicture = pPacket->stream_index == m_source.VideoIndex() &&
                               TimeOf(pPacket) != AV_NOPTS_VALUE && pPacket->pos >= 0;
        if (blPicture) {
            stSample.m_i64Pos = pPacket->pos;
            stSample.m_i64Pts = TimeOf(pPacket);
            stSample.m_blValid = true;
        }
        av_packet_unref(pPacket);
        if (blPicture) break;
    }
    av_packet_free(&pPacket);
    return stSample;
}

bool CLS_TimelineScanner::IsJump(std::int64_t _i64Previous, std::int64_t _i64Next) const
{
    return _i64Next - _i64Previous > m_i64JumpTicks || _i64Next < _i64Previous - m_i64BackTicks;
}

void CLS_TimelineScanner::ReadStretch(std::int64_t _i64From, std::int64_t _i64To)
{
    AVFormatContext* pFormat = m_source.Format();
    if (av_seek_frame(pFormat, -1, _i64From, AVSEEK_FLAG_BYTE) < 0) return;
    AVPacket* pPacket = av_packet_alloc();
    if (!pPacket) return;
    bool blHavePrevious = false;
    bool blJoinSeen = false;
    std::int64_t i64Previous = 0;
    std::int64_t i64Latest = 0;  // since the start of the stretch or the last join
    std::int64_t i64LastPos = _i64From;
    int iAfterJoin = 0;
    bool blEnd = false;
    while (m_iReads < kMaxReads) {
        ++m_iReads;
        if (m_source.Read(pPacket) < 0) {
            blEnd = true;
            break;
        }
        const std::int64_t i64Pts = TimeOf(pPacket);
        // Pictures the parser split off a packet carry no position of their
        // own; their time still counts.
        const bool blKnownPos = pPacket->pos >= 0;
        const std::int64_t i64Pos = blKnownPos ? pPacket->pos : i64LastPos;
        const bool blPicture =
            pPacket->stream_index == m_source.VideoIndex() && i64Pts != AV_NOPTS_VALUE;
        const bool blKey = (pPacket->flags & AV_PKT_FLAG_KEY) != 0;
        av_packet_unref(pPacket);
        if (!blPicture) continue;
        if (blKnownPos) i64LastPos = i64Pos;
        if (i64Pos > _i64To && iAfterJoin <= 0) break;
        --iAfterJoin;
        if (blHavePrevious && IsJump(i64Previous, i64Pts)) {
            if (m_vecJoins.size() >= kMaxJoins) break;
            m_vecJoins.push_back(ST_Join{i64Pos, i64Latest, i64Pts});
            blJoinSeen = true;
            i64Latest = i64Pts;
            iAfterJoin = kPacketsAfterJoin;
        } else if (blHavePrevious) {
            i64Latest = std::max(i64Latest, i64Pts);
            if (blJoinSeen)
                m_vecJoins.back().m_i64After = std::min(m_vecJoins.back().m_i64After, i64Pts);
        } else {
            i64Latest = i64Pts;
        }
        // The earliest time of the file's first part: pictures reordered
        // ahead of the first keyframe count too.
        if (_i64From == 0 && !blJoinSeen) {
            m_i64HeadPts = m_blHaveHead ? std::min(m_i64HeadPts, i64Pts) : i64Pts;
            m_blHaveHead = true;
        }
        if (blKey && blKnownPos) m_vecSeekPoints.push_back(ST_TimelineSeekPoint{i64Pos, i64Pts});
        blHavePrevious = true;
        i64Previous = i64Pts;
    }
    av_packet_free(&pPacket);
    if (blEnd && blHavePrevious) {
        m_i64TailPts = i64Latest;
        m_blHaveTail = true;
    }
}

bool CLS_TimelineScanner::Disagrees(const ST_Sample& _a, const ST_Sample& _b,
                                    double _dBytesPerTick) const
{
    if (!_a.m_blValid || !_b.m_blValid) return false;
    const std::int64_t i64Delta = _b.m_i64Pts - _a.m_i64Pts;
    if (i64Delta < -m_i64BackTicks) return true;
    // The bit rate of a recording varies with what it sees; only a jump well
    // beyond that counts.
    const double dExpected = static_cast<double>(_b.m_i64Pos - _a.m_i64Pos) / _dBytesPerTick;
    return static_cast<double>(i64Delta) > 4.0 * dExpected + static_cast<double>(m_i64JumpTicks);
}

void CLS_TimelineScanner::Narrow(ST_Sample _a, ST_Sample _b, double _dBytesPerTick)
{
    while (_b.m_i64Pos - _a.m_i64Pos > m_stLimits.m_i64Stretch && m_iReads < kMaxReads) {
        const ST_Sample stMiddle = SampleAt(_a.m_i64Pos + (_b.m_i64Pos - _a.m_i64Pos) / 2);
        if (!stMiddle.m_blValid || stMiddle.m_i64Pos >= _b.m_i64Pos) break;
        if (Disagrees(_a, stMiddle, _dBytesPerTick)) {
            _b = stMiddle;
        } else if (Disagrees(stMiddle, _b, _dBytesPerTick)) {
            _a = stMiddle;
        } else {
            return;  // the rate merely varied
        }
    }
    const auto i64Lead = static_cast<std::int64_t>(
        std::ceil(kReorderLead * static_cast<double>(m_i64FrameTicks) * _dBytesPerTick));
    ReadStretch(std::max<std::int64_t>(0, _a.m_i64Pos - i64Lead), _b.m_i64Pos);
}

void CLS_TimelineScanner::BuildByReading(CLS_Timeline& _timeline)
{
    AVFormatContext* pFormat = m_source.Format();
    if (!pFormat || !pFormat->pb || !(pFormat->pb->seekable & AVIO_SEEKABLE_NORMAL)) return;
    // A stream without timestamps has no clock that could jump.
    if (pFormat->iformat->flags & AVFMT_NOTIMESTAMPS) return;
    const std::int64_t i64Size = avio_size(pFormat->pb);
    if (i64Size <= 0) return;
    if (i64Size <= m_stLimits.m_i64FullScan) {
        ReadStretch(0, i64Size);
    } else {
        // The ends are read through: a join may sit right at either.
        const std::int64_t i64Edge = std::min(m_stLimits.m_i64Edge, i64Size / 4);
        ReadStretch(0, i64Edge);
        // A muxer may write a tail of sound alone, the last pictures having
        // gone out earlier: read further back until one comes.
        for (std::int64_t i64Tail = i64Edge; !m_blHaveTail && i64Tail < 16 * i64Edge; i64Tail *= 4)
            ReadStretch(std::max<std::int64_t>(0, i64Size - i64Tail), i64Size);
        std::vector<ST_Sample> vecSamples;
        const int iSamples = std::max(2, m_stLimits.m_iSamples);
        for (int i = 0; i < iSamples; ++i)
            vecSamples.push_back(SampleAt(i * (i64Size - i64Edge) / (iSamples - 1)));
        std::vector<double> vecRates;
        for (std::size_t i = 1; i < vecSamples.size(); ++i) {
            const ST_Sample& a = vecSamples[i - 1];
            const ST_Sample& b = vecSamples[i];
            if (a.m_blValid && b.m_blValid && b.m_i64Pts > a.m_i64Pts && b.m_i64Pos > a.m_i64Pos)
                vecRates.push_back(static_cast<double>(b.m_i64Pos - a.m_i64Pos) /
                                   static_cast<double>(b.m_i64Pts - a.m_i64Pts));
        }
        if (!vecRates.empty()) {
            std::nth_element(vecRates.begin(), vecRates.begin() + vecRates.size() / 2,
                             vecRates.end());
            const double dBytesPerTick = vecRates[vecRates.size() / 2];
            for (std::size_t i = 1; i < vecSamples.size(); ++i)
                if (Disagrees(vecSamples[i - 1], vecSamples[i], dBytesPerTick))
                    Narrow(vecSamples[i - 1], vecSamples[i], dBytesPerTick);
        }
        for (const ST_Sample& stSample : vecSamples)
            if (stSample.m_blValid)
                m_vecSeekPoints.push_back(
                    ST_TimelineSeekPoint{stSample.m_i64Pos, stSample.m_i64Pts});
    }
    // Back to the start for playback.
    av_seek_frame(pFormat, -1, 0, AVSEEK_FLAG_BYTE);
    if (m_vecJoins.empty() || !m_blHaveHead || !m_blHaveTail) return;

    std::sort(m_vecJoins.begin(), m_vecJoins.end(),
              [](const ST_Join& _a, const ST_Join& _b) { return _a.m_i64Pos < _b.m_i64Pos; });
    // Stretches that overlap see a join twice, one of them perhaps from a
    // start too close to it to know the whole part before: keep the widest.
    std::vector<ST_Join> vecMerged;
    for (const ST_Join& stJoin : m_vecJoins) {
        if (!vecMerged.empty() && vecMerged.back().m_i64Pos == stJoin.m_i64Pos) {
            ST_Join& stKept = vecMerged.back();
            stKept.m_i64Before = std::max(stKept.m_i64Before, stJoin.m_i64Before);
            stKept.m_i64After = std::min(stKept.m_i64After, stJoin.m_i64After);
        } else {
            vecMerged.push_back(stJoin);
        }
    }
    m_vecJoins.swap(vecMerged);
    std::vector<ST_TimelinePart> vecParts;
    ST_TimelinePart stPart{m_i64HeadPts, 0, 0};
    for (const ST_Join& stJoin : m_vecJoins) {
        stPart.m_i64RawEnd = stJoin.m_i64Before + m_i64FrameTicks;
        vecParts.push_back(stPart);
        stPart = ST_TimelinePart{stJoin.m_i64After, 0, stJoin.m_i64Pos};
    }
    stPart.m_i64RawEnd = m_i64TailPts + m_i64FrameTicks;
    vecParts.push_back(stPart);
    _timeline.SetParts(std::move(vecParts), std::move(m_vecSeekPoints), m_i64JumpTicks / 2);
}

}  // namespace RK_Framework::VideoPlayer
