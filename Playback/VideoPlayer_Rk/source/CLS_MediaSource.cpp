#include "CLS_MediaSource.h"

#include <algorithm>
#include <vector>

extern "C" {
#include <libavformat/avformat.h>
}

namespace RK_Framework::VideoPlayer {

CLS_MediaSource::CLS_MediaSource() = default;

CLS_MediaSource::~CLS_MediaSource()
{
    Close();
}

int CLS_MediaSource::InterruptCallback(void* _pOpaque)
{
    // FFmpeg asks before every read and between packets.
    auto* pSource = static_cast<CLS_MediaSource*>(_pOpaque);
    pSource->m_u64Progress.fetch_add(1, std::memory_order_relaxed);
    return pSource->m_blInterrupt.load() ? 1 : 0;
}

bool CLS_MediaSource::Open(const std::string& _strPath, AVIOContext* _pIo)
{
    Close();
    m_pFormat = avformat_alloc_context();
    if (!m_pFormat) {
        m_strError = "out of memory";
        return false;
    }
    m_pFormat->interrupt_callback.callback = &CLS_MediaSource::InterruptCallback;
    m_pFormat->interrupt_callback.opaque = this;
    if (_pIo) {
        m_pFormat->pb = _pIo;
        m_pFormat->flags |= AVFMT_FLAG_CUSTOM_IO;
    }
    int iRet = avformat_open_input(&m_pFormat, _strPath.c_str(), nullptr, nullptr);
    if (iRet < 0) {
        char szError[AV_ERROR_MAX_STRING_SIZE] = {};
        av_strerror(iRet, szError, sizeof(szError));
        m_strError = std::string("cannot open: ") + szError;
        m_pFormat = nullptr;  // freed by avformat_open_input on failure
        return false;
    }
    // Probing decodes a picture or two; one thread does that as fast and
    // without a frame pool per thread that the heap would keep afterwards.
    std::vector<AVDictionary*> vecOptions(m_pFormat->nb_streams, nullptr);
    for (AVDictionary*& pOptions : vecOptions)
        av_dict_set(&pOptions, "threads", "1", 0);
    iRet = avformat_find_stream_info(m_pFormat, vecOptions.empty() ? nullptr : vecOptions.data());
    for (AVDictionary*& pOptions : vecOptions)
        av_dict_free(&pOptions);
    if (iRet < 0) {
        m_strError = "no stream information";
        Close();
        return false;
    }
    m_iVideo = std::max(-1, av_find_best_stream(m_pFormat, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0));
    m_iAudio =
        std::max(-1, av_find_best_stream(m_pFormat, AVMEDIA_TYPE_AUDIO, -1, m_iVideo, nullptr, 0));
    // The sound track of an export plays on its own.
    if (m_iVideo < 0 && m_iAudio < 0) {
        m_strError = "no video or sound stream";
        Close();
        return false;
    }
    for (unsigned i = 0; i < m_pFormat->nb_streams; ++i) {
        const int iIndex = static_cast<int>(i);
        m_pFormat->streams[i]->discard =
            (iIndex == m_iVideo || iIndex == m_iAudio) ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    return true;
}

void CLS_MediaSource::Close()
{
    if (m_pFormat) avformat_close_input(&m_pFormat);
    m_pFormat = nullptr;
    m_iVideo = -1;
    m_iAudio = -1;
}

int CLS_MediaSource::Read(AVPacket* _pPacket)
{
    if (!m_pFormat) return AVERROR_EOF;
    // A supplied byte source refuses bytes it cannot vouch for; a packet
    // that ran into such a refusal is incomplete and must not be decoded.
    const bool blCustomIo = (m_pFormat->flags & AVFMT_FLAG_CUSTOM_IO) && m_pFormat->pb;
    if (blCustomIo) m_pFormat->pb->error = 0;
    const int iRet = av_read_frame(m_pFormat, _pPacket);
    if (iRet >= 0 && blCustomIo && m_pFormat->pb->error < 0) {
        av_packet_unref(_pPacket);
        return m_pFormat->pb->error;
    }
    return iRet;
}

bool CLS_MediaSource::Seek(std::int64_t _i64Pts, bool _blToStart)
{
    if (!m_pFormat) return false;
    if (_blToStart) {
        // Program and elementary streams find a time by searching the bytes,
        // which can end a group of pictures late; their data starts at byte zero.
        if ((m_pFormat->iformat->flags & (AVFMT_TS_DISCONT | AVFMT_GENERIC_INDEX)) && SeekByte(0))
            return true;
        const std::int64_t i64Start =
            m_pFormat->start_time != AV_NOPTS_VALUE ? m_pFormat->start_time : 0;
        if (avformat_seek_file(m_pFormat, -1, INT64_MIN, i64Start, i64Start, 0) >= 0) return true;
        // Containers without a usable index still start at byte zero.
        return av_seek_frame(m_pFormat, -1, 0, AVSEEK_FLAG_BYTE) >= 0;
    }
    const int iIndex = TimingIndex();
    if (avformat_seek_file(m_pFormat, iIndex, INT64_MIN, _i64Pts, _i64Pts, 0) >= 0) return true;
    return av_seek_frame(m_pFormat, iIndex, _i64Pts, AVSEEK_FLAG_BACKWARD) >= 0;
}

bool CLS_MediaSource::SeekByte(std::int64_t _i64Pos)
{
    if (!m_pFormat) return false;
    return av_seek_frame(m_pFormat, -1, std::max<std::int64_t>(0, _i64Pos), AVSEEK_FLAG_BYTE) >= 0;
}

void CLS_MediaSource::Interrupt(bool _blInterrupt)
{
    m_blInterrupt = _blInterrupt;
}

AVStream* CLS_MediaSource::VideoStream() const
{
    return m_iVideo >= 0 ? m_pFormat->streams[m_iVideo] : nullptr;
}

AVStream* CLS_MediaSource::TimingStream() const
{
    return m_pFormat && TimingIndex() >= 0 ? m_pFormat->streams[TimingIndex()] : nullptr;
}

AVStream* CLS_MediaSource::AudioStream() const
{
    return m_iAudio >= 0 ? m_pFormat->streams[m_iAudio] : nullptr;
}

double CLS_MediaSource::DurationSeconds() const
{
    if (!m_pFormat) return -1.0;
    if (m_pFormat->duration != AV_NOPTS_VALUE && m_pFormat->duration > 0)
        return static_cast<double>(m_pFormat->duration) / AV_TIME_BASE;
    const AVStream* pVideo = VideoStream();
    if (pVideo && pVideo->duration != AV_NOPTS_VALUE && pVideo->duration > 0)
        return static_cast<double>(pVideo->duration) * av_q2d(pVideo->time_base);
    return -1.0;
}

double CLS_MediaSource::NominalFrameDuration() const
{
    const AVStream* pVideo = VideoStream();
    if (pVideo) {
        AVRational rate = av_guess_frame_rate(m_pFormat, const_cast<AVStream*>(pVideo), nullptr);
        if (rate.num > 0 && rate.den > 0 && av_q2d(rate) <= 240.0) return 1.0 / av_q2d(rate);
    }
    return 1.0 / 25.0;
}

}  // namespace RK_Framework::VideoPlayer
