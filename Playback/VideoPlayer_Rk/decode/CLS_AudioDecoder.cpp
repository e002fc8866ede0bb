#include "CLS_AudioDecoder.h"

#include <algorithm>
#include <cmath>

#include <chrono>
#include <cstring>
#include <vector>

#include "CLS_AudioOutput.h"
#include "CLS_PacketQueue.h"
#include "CLS_SessionState.h"
#include "PlatformThread.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

namespace RK_Framework::VideoPlayer {

CLS_AudioDecoder::CLS_AudioDecoder(CLS_SessionState& _state, CLS_PacketQueue& _packets,
                                   CLS_AudioOutput& _output)
    : m_state(_state), m_packets(_packets), m_output(_output)
{}

CLS_AudioDecoder::~CLS_AudioDecoder()
{
    Join();
    swr_free(&m_pSwr);
    av_frame_free(&m_pFrame);
    avcodec_free_context(&m_pCodec);
}

bool CLS_AudioDecoder::Open(AVStream* _pStream, std::string& _strError)
{
    const AVCodec* pDecoder = avcodec_find_decoder(_pStream->codecpar->codec_id);
    if (!pDecoder) {
        _strError = "no sound decoder";
        return false;
    }
    m_pCodec = avcodec_alloc_context3(pDecoder);
    m_pFrame = av_frame_alloc();
    if (!m_pCodec || !m_pFrame || avcodec_parameters_to_context(m_pCodec, _pStream->codecpar) < 0) {
        _strError = "cannot set up the sound decoder";
        return false;
    }
    m_pCodec->pkt_timebase = _pStream->time_base;
    if (avcodec_open2(m_pCodec, pDecoder, nullptr) < 0) {
        _strError = "cannot open the sound decoder";
        return false;
    }
    m_dTimeBase = av_q2d(_pStream->time_base);
    return true;
}

int CLS_AudioDecoder::SampleRate() const
{
    return m_pCodec ? m_pCodec->sample_rate : 0;
}

int CLS_AudioDecoder::Channels() const
{
    return m_pCodec ? m_pCodec->ch_layout.nb_channels : 0;
}

void CLS_AudioDecoder::Start()
{
    m_thread = BriskPlatform::StartNamedThread("quill-adecode", [this] { Run(); });
}

void CLS_AudioDecoder::Join()
{
    if (m_thread.joinable()) m_thread.join();
}

void CLS_AudioDecoder::Run()
{
    CLS_PacketQueue::ST_Entry stEntry;
    while (!m_state.m_blAbort.load()) {
        if (!m_packets.Get(stEntry, std::chrono::milliseconds(50))) continue;
        AVPacket* pPacket = stEntry.m_pPacket;
        if (stEntry.m_iSerial != m_state.m_iSerial.load() || !m_state.m_blAudioActive.load()) {
            av_packet_free(&pPacket);
            continue;
        }
        if (stEntry.m_iSerial != m_iSerial) {
            avcodec_flush_buffers(m_pCodec);
            m_iSerial = stEntry.m_iSerial;
            m_blHaveLast = false;
            // A new position decodes from the keyframe before it; the sound
            // of the way there would only hold up the sound at it.
            const ST_SeekRequest stSeek = m_state.LatestSeek();
            m_dSkipUntil = stSeek.m_iSerial == m_iSerial && stSeek.m_i64Target != INT64_MIN
                               ? m_state.TimeOf(stSeek.m_i64Target)
                               : -1.0e300;
            // Until a stamp says otherwise, sound continues from where the
            // new position starts, not from where the old one stopped.
            m_dNextTime = std::max(m_dSkipUntil, 0.0);
        }
        Feed(pPacket);
        if (!pPacket) avcodec_flush_buffers(m_pCodec);
        av_packet_free(&pPacket);
    }
}

void CLS_AudioDecoder::Feed(const AVPacket* _pPacket)
{
    const int iRet = avcodec_send_packet(m_pCodec, _pPacket);
    if (iRet < 0 && _pPacket) return;  // damaged packet: skip it
    while (!m_state.m_blAbort.load() && avcodec_receive_frame(m_pCodec, m_pFrame) >= 0) {
        Convert(m_pFrame);
        av_frame_unref(m_pFrame);
    }
}

void CLS_AudioDecoder::Convert(AVFrame* _pFrame)
{
    // A resampler fed frames of another layout than it was made for reads
    // planes that are not there.
    if (m_pSwr && (_pFrame->format != m_iSwrFormat || _pFrame->sample_rate != m_iSwrRate ||
                   _pFrame->ch_layout.nb_channels != m_iSwrChannels))
        swr_free(&m_pSwr);
    if (!m_pSwr) {
        AVChannelLayout stOutLayout;
        av_channel_layout_default(&stOutLayout, m_output.Channels());
        // The input layout may be unspecified in recorder files (G.711).
        AVChannelLayout stInLayout;
        std::memset(&stInLayout, 0, sizeof(stInLayout));
        if (_pFrame->ch_layout.order == AV_CHANNEL_ORDER_UNSPEC ||
            av_channel_layout_copy(&stInLayout, &_pFrame->ch_layout) < 0)
            av_channel_layout_default(&stInLayout, _pFrame->ch_layout.nb_channels);
        const int iRet = swr_alloc_set_opts2(
            &m_pSwr, &stOutLayout, AV_SAMPLE_FMT_S16, m_output.SampleRate(), &stInLayout,
            static_cast<AVSampleFormat>(_pFrame->format), _pFrame->sample_rate, 0, nullptr);
        av_channel_layout_uninit(&stInLayout);
        av_channel_layout_uninit(&stOutLayout);
        if (iRet < 0 || swr_init(m_pSwr) < 0) {
            swr_free(&m_pSwr);
            return;
        }
        m_iSwrFormat = _pFrame->format;
        m_iSwrRate = _pFrame->sample_rate;
        m_iSwrChannels = _pFrame->ch_layout.nb_channels;
    }
    const int iOutMax = swr_get_out_samples(m_pSwr, _pFrame->nb_samples) + 32;
    if (iOutMax <= 0) return;
    std::vector<std::uint8_t> vecData(static_cast<std::size_t>(iOutMax) * m_output.Channels() * 2);
    std::uint8_t* pOut = vecData.data();
    const int iSamples =
        swr_convert(m_pSwr, &pOut, iOutMax,
                    const_cast<const std::uint8_t**>(_pFrame->extended_data), _pFrame->nb_samples);
    if (iSamples <= 0) return;
    vecData.resize(static_cast<std::size_t>(iSamples) * m_output.Channels() * 2);
    double dTime = m_dNextTime;
    const std::int64_t i64Pts = _pFrame->best_effort_timestamp;
    if (i64Pts != AV_NOPTS_VALUE) {
        // Sound follows the pictures' timeline, joins taken out by the same
        // shift; the sound's own finer clock is kept.
        const double dSeconds = static_cast<double>(i64Pts) * m_dTimeBase;
        const auto i64VideoTicks =
            static_cast<std::int64_t>(std::llround(dSeconds / m_state.m_dTimeBase));
        CLS_Timeline& timeline = m_state.m_timeline;
        std::int64_t i64Line = timeline.ToLine(i64VideoTicks, _pFrame->pkt_pos);
        // Sound usually reaches a join the scan missed before the pictures
        // do; left on the old clock it would drag the pictures along.
        if (m_blHaveLast && timeline.IsJump(m_i64LastLine, i64Line) &&
            timeline.AddJoin(_pFrame->pkt_pos, m_i64LastLine, i64VideoTicks, m_state.m_i64FirstPts))
            i64Line = timeline.ToLine(i64VideoTicks, _pFrame->pkt_pos);
        m_blHaveLast = true;
        m_i64LastLine = i64Line;
        const std::int64_t i64Shift = i64Line - i64VideoTicks;
        dTime =
            dSeconds + static_cast<double>(i64Shift - m_state.m_i64FirstPts) * m_state.m_dTimeBase;
    }
    m_dNextTime = dTime + static_cast<double>(iSamples) / m_output.SampleRate();
    if (m_dNextTime < m_dSkipUntil) return;
    m_output.Push(std::move(vecData), dTime, m_iSerial);
}

}  // namespace RK_Framework::VideoPlayer
