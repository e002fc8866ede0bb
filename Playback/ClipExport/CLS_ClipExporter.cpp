#include "CLS_ClipExporter.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "CLS_AtomicFile.h"
#include "CLS_PacketLine.h"
#include "CLS_SdvIoContext.h"
#include "CLS_SdvReader.h"
#include "CLS_SdvWriter.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

namespace RK_Framework::ClipExport {

using VideoPlayer::CLS_SdvIoContext;
using VideoPlayer::CLS_SdvReader;
using VideoPlayer::CLS_SdvWriter;
using VideoPlayer::ST_SdvHeader;

ST_ClipRequest::~ST_ClipRequest()
{
    for (std::string* pSecret : {&m_strSourcePassword, &m_strTargetPassword})
        if (!pSecret->empty()) OPENSSL_cleanse(pSecret->data(), pSecret->size());
}

namespace {

constexpr AVRational kMicroseconds{1, AV_TIME_BASE};
// Past the end mark, pictures may still be needed by earlier ones that are
// shown before it; no recorder reorders by more than this.
constexpr std::int64_t kReorderUs = 2 * AV_TIME_BASE;
constexpr int kIoBufferSize = 64 * 1024;

struct ST_PacketFree
{
    void operator()(AVPacket* _pPacket) const { av_packet_free(&_pPacket); }
};
using PacketPtr = std::unique_ptr<AVPacket, ST_PacketFree>;

ST_ClipOutcome Failure(EM_ClipResult _emResult, std::string _strMessage)
{
    ST_ClipOutcome stOutcome;
    stOutcome.m_emResult = _emResult;
    stOutcome.m_strMessage = std::move(_strMessage);
    return stOutcome;
}

// The file the clip comes from, read through an .sdv reader when it is one.
class CLS_Source
{
public:
    ~CLS_Source() { avformat_close_input(&m_pFormat); }

    std::optional<ST_ClipOutcome> Open(const std::string& _strPath, const std::string& _strPassword)
    {
        auto pReader = std::make_unique<CLS_SdvReader>();
        switch (pReader->Open(_strPath)) {
            case CLS_SdvReader::OPEN_IO_ERROR:
                return Failure(CLIP_BAD_SOURCE, _strPath + ": cannot read");
            case CLS_SdvReader::OPEN_DAMAGED:
                return Failure(CLIP_BAD_SOURCE, _strPath + ": damaged header");
            case CLS_SdvReader::OPEN_NOT_SDV:
                break;
            case CLS_SdvReader::OPEN_OK:
                if (!pReader->Readable()) {
                    if (_strPassword.empty())
                        return Failure(CLIP_PASSWORD_NEEDED,
                                       _strPath + ": sealed, password needed");
                    if (!pReader->Unlock(_strPassword.data(), _strPassword.size()))
                        return Failure(CLIP_WRONG_PASSWORD, _strPath + ": wrong password");
                }
                m_pIo = std::make_unique<CLS_SdvIoContext>(std::move(pReader), _strPath);
                m_pFormat = avformat_alloc_context();
                if (!m_pIo->Context() || !m_pFormat)
                    return Failure(CLIP_BAD_SOURCE, _strPath + ": out of memory");
                m_pFormat->pb = m_pIo->Context();
                m_pFormat->flags |= AVFMT_FLAG_CUSTOM_IO;
                break;
        }
        if (avformat_open_input(&m_pFormat, _strPath.c_str(), nullptr, nullptr) < 0) {
            m_pFormat = nullptr;  // freed by avformat_open_input
            return Failure(CLIP_BAD_SOURCE, _strPath + ": not a video file this player can read");
        }
        if (avformat_find_stream_info(m_pFormat, nullptr) < 0)
            return Failure(CLIP_BAD_SOURCE, _strPath + ": not a video file this player can read");
        return std::nullopt;
    }

    AVFormatContext* Format() const { return m_pFormat; }

    // As av_read_frame, but a sealed chunk that fails authentication is an
    // error even where the demuxer would carry on past it.
    int Read(AVPacket* _pPacket)
    {
        if (m_pIo) m_pFormat->pb->error = 0;
        const int iRet = av_read_frame(m_pFormat, _pPacket);
        if (iRet >= 0 && m_pIo && m_pFormat->pb->error < 0) {
            av_packet_unref(_pPacket);
            return m_pFormat->pb->error;
        }
        return iRet;
    }

private:
    // Declared before the format context, so it outlives it.
    std::unique_ptr<CLS_SdvIoContext> m_pIo;
    AVFormatContext* m_pFormat = nullptr;
};

// Where the muxer's bytes go: an atomic file it may seek in (MP4), or the
// sealed writer, which takes them in order only (a fragmented MP4 payload).
class CLS_Target
{
public:
    explicit CLS_Target(const ST_ClipRequest& _stRequest) : m_stRequest(_stRequest) {}
    ~CLS_Target()
    {
        if (m_pIo) av_freep(&m_pIo->buffer);
        avio_context_free(&m_pIo);
    }

    bool Open()
    {
        const bool blSealed = m_stRequest.m_emFormat == CLIP_FORMAT_SDV;
        if (blSealed) {
            m_pSdv = std::make_unique<CLS_SdvWriter>(m_stRequest.m_strTarget);
            if (!m_pSdv->Open(m_stRequest.m_strTargetPassword.data(),
                              m_stRequest.m_strTargetPassword.size()))
                return false;
        } else {
            m_pFile = std::make_unique<CLS_AtomicFile>(m_stRequest.m_strTarget);
            if (!m_pFile->Open()) return false;
        }
        auto* pBuffer = static_cast<unsigned char*>(av_malloc(kIoBufferSize));
        if (!pBuffer) return false;
        m_pIo = avio_alloc_context(pBuffer, kIoBufferSize, 1, this, nullptr, &CLS_Target::Write,
                                   blSealed ? nullptr : &CLS_Target::Seek);
        if (!m_pIo) av_free(pBuffer);
        return m_pIo != nullptr;
    }

    AVIOContext* Io() const { return m_pIo; }

    bool Commit(const ST_SdvHeader& _stMetadata)
    {
        avio_flush(m_pIo);
        if (m_blFailed || m_pIo->error < 0) return false;
        return m_pSdv ? m_pSdv->Commit(_stMetadata) : m_pFile->Commit();
    }

private:
    static int Write(void* _pOpaque, std::uint8_t* _pData, int _iSize)
    {
        auto* pThis = static_cast<CLS_Target*>(_pOpaque);
        const auto sizeData = static_cast<std::size_t>(_iSize);
        const bool blOk = pThis->m_pSdv ? pThis->m_pSdv->Write(_pData, sizeData)
                                        : pThis->m_pFile->Write(_pData, sizeData);
        if (!blOk) {
            pThis->m_blFailed = true;
            return AVERROR(EIO);
        }
        pThis->m_i64Pos += _iSize;
        pThis->m_i64Size = std::max(pThis->m_i64Size, pThis->m_i64Pos);
        return _iSize;
    }

    static std::int64_t Seek(void* _pOpaque, std::int64_t _i64Offset, int _iWhence)
    {
        auto* pThis = static_cast<CLS_Target*>(_pOpaque);
        const std::int64_t i64Target =
            CLS_SdvIoContext::SeekTarget(pThis->m_i64Pos, pThis->m_i64Size, _i64Offset, _iWhence);
        if (i64Target < 0 || (_iWhence & ~AVSEEK_FORCE) == AVSEEK_SIZE) return i64Target;
        if (!pThis->m_pFile->Seek(i64Target)) return AVERROR(EIO);
        pThis->m_i64Pos = i64Target;
        return i64Target;
    }

    const ST_ClipRequest& m_stRequest;
    std::unique_ptr<CLS_AtomicFile> m_pFile;
    std::unique_ptr<CLS_SdvWriter> m_pSdv;
    AVIOContext* m_pIo = nullptr;
    std::int64_t m_i64Pos = 0;
    std::int64_t m_i64Size = 0;
    bool m_blFailed = false;
};

double FrameSeconds(const AVStream* _pStream)
{
    if (_pStream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
        const AVCodecParameters* pPar = _pStream->codecpar;
        return pPar->frame_size > 0 && pPar->sample_rate > 0
                   ? static_cast<double>(pPar->frame_size) / pPar->sample_rate
                   : 0.02;
    }
    const AVRational stRate =
        _pStream->avg_frame_rate.num > 0 ? _pStream->avg_frame_rate : _pStream->r_frame_rate;
    return stRate.num > 0 && stRate.den > 0 ? av_q2d(av_inv_q(stRate)) : 0.04;
}

// One run of the cut: reads the source from its start, so that the line
// counts joins exactly as the player does, and writes the stretch.
class CLS_Cut
{
public:
    CLS_Cut(const ST_ClipRequest& _stRequest, CLS_Source& _source,
            const CLS_ClipExporter::ProgressFunc& _fnProgress, const std::atomic<bool>* _pCancel)
        : m_stRequest(_stRequest),
          m_source(_source),
          m_fnProgress(_fnProgress),
          m_pCancel(_pCancel),
          m_i64StartUs(_stRequest.m_i64FromMs * 1000),
          m_i64EndUs(_stRequest.m_i64ToMs * 1000)
    {}
    ~CLS_Cut() { avformat_free_context(m_pOut); }

    ST_ClipOutcome Run()
    {
        AVFormatContext* pIn = m_source.Format();
        m_iVideo = av_find_best_stream(pIn, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
        if (m_iVideo < 0) return Failure(CLIP_BAD_SOURCE, m_stRequest.m_strSource + ": no video");
        if (avformat_alloc_output_context2(&m_pOut, nullptr, "mp4", nullptr) < 0 || !m_pOut)
            return Failure(CLIP_WRITE_FAILED, "cannot make an MP4 writer");
        const AVCodecID emVideo = pIn->streams[m_iVideo]->codecpar->codec_id;
        if (avformat_query_codec(m_pOut->oformat, emVideo, FF_COMPLIANCE_NORMAL) != 1)
            return Failure(CLIP_BAD_SOURCE, m_stRequest.m_strSource + ": " +
                                                avcodec_get_name(emVideo) +
                                                " video cannot go into an MP4 file");
        m_iAudio = av_find_best_stream(pIn, AVMEDIA_TYPE_AUDIO, -1, m_iVideo, nullptr, 0);
        if (m_iAudio >= 0 &&
            avformat_query_codec(m_pOut->oformat, pIn->streams[m_iAudio]->codecpar->codec_id,
                                 FF_COMPLIANCE_NORMAL) != 1) {
            // G.711 and the like: MP4 has no place for it, and re-encoding
            // is not what a cut does.
            m_stOutcome.m_blSoundLeftOut = true;
            m_iAudio = -1;
        }
        for (int iIn : {m_iVideo, m_iAudio}) {
            if (iIn < 0) continue;
            const AVStream* pInStream = pIn->streams[iIn];
            AVStream* pOutStream = avformat_new_stream(m_pOut, nullptr);
            if (!pOutStream ||
                avcodec_parameters_copy(pOutStream->codecpar, pInStream->codecpar) < 0)
                return Failure(CLIP_WRITE_FAILED, "cannot make an MP4 writer");
            pOutStream->codecpar->codec_tag = 0;
            pOutStream->time_base = pInStream->time_base;
            pOutStream->avg_frame_rate = pInStream->avg_frame_rate;
            pOutStream->sample_aspect_ratio = pInStream->sample_aspect_ratio;
            m_vecOut.push_back({iIn, pOutStream->index, AV_NOPTS_VALUE,
                                CLS_PacketLine(pInStream->time_base, FrameSeconds(pInStream))});
        }

        CLS_Target target(m_stRequest);
        if (!target.Open())
            return Failure(CLIP_WRITE_FAILED, m_stRequest.m_strTarget + ": cannot write");
        m_pOut->pb = target.Io();
        AVDictionary* pOptions = nullptr;
        if (m_stRequest.m_emFormat == CLIP_FORMAT_SDV)
            av_dict_set(&pOptions, "movflags", "frag_keyframe+empty_moov+default_base_moof", 0);
        const int iHeader = avformat_write_header(m_pOut, &pOptions);
        av_dict_free(&pOptions);
        if (iHeader < 0)
            return Failure(CLIP_WRITE_FAILED, m_stRequest.m_strTarget + ": cannot write");

        if (const std::optional<ST_ClipOutcome> stStop = ReadThrough()) return *stStop;
        if (!m_blCopying || !m_blWroteVideo)
            return Failure(CLIP_EMPTY_RANGE, m_stRequest.m_strSource + ": nothing in that stretch");
        if (av_write_trailer(m_pOut) < 0)
            return Failure(CLIP_WRITE_FAILED, m_stRequest.m_strTarget + ": cannot write");

        const AVCodecParameters* pVideo = pIn->streams[m_iVideo]->codecpar;
        ST_SdvHeader stMetadata;
        stMetadata.m_u64DurationMs =
            static_cast<std::uint64_t>(std::max<std::int64_t>(0, m_i64LastUs - m_i64BaseUs) / 1000);
        stMetadata.m_u32Width = static_cast<std::uint32_t>(pVideo->width);
        stMetadata.m_u32Height = static_cast<std::uint32_t>(pVideo->height);
        stMetadata.m_strCodec = avcodec_get_name(pVideo->codec_id);
        stMetadata.m_i64Created = static_cast<std::int64_t>(std::time(nullptr));
        if (!target.Commit(stMetadata))
            return Failure(CLIP_WRITE_FAILED, m_stRequest.m_strTarget + ": cannot write");
        if (m_fnProgress) m_fnProgress(1.0);
        m_stOutcome.m_emResult = CLIP_OK;
        m_stOutcome.m_i64FirstMs = m_i64FirstUs / 1000;
        m_stOutcome.m_i64EndMs = m_i64LastUs / 1000;
        m_stOutcome.m_strMessage = m_stRequest.m_strTarget + ": written";
        return m_stOutcome;
    }

private:
    struct ST_Stream
    {
        int m_iIn = -1;
        int m_iOut = -1;
        std::int64_t m_i64LastDts = AV_NOPTS_VALUE;  // in the output's time base
        CLS_PacketLine m_line;
    };

    ST_Stream* StreamOf(int _iIn)
    {
        for (ST_Stream& stStream : m_vecOut)
            if (stStream.m_iIn == _iIn) return &stStream;
        return nullptr;
    }

    // Nothing when the stretch has been read; else why the cut stopped.
    std::optional<ST_ClipOutcome> ReadThrough()
    {
        PacketPtr pPacket(av_packet_alloc());
        if (!pPacket) return Failure(CLIP_WRITE_FAILED, "out of memory");
        for (;;) {
            if (m_pCancel && m_pCancel->load())
                return Failure(CLIP_CANCELLED, m_stRequest.m_strTarget + ": cancelled");
            const int iRead = m_source.Read(pPacket.get());
            if (iRead < 0) {
                // A damaged or cut-off source gives what it has.
                m_stOutcome.m_blCutShort = iRead != AVERROR_EOF;
                return std::nullopt;
            }
            ST_Stream* pStream = StreamOf(pPacket->stream_index);
            if (!pStream) {
                av_packet_unref(pPacket.get());
                continue;
            }
            const bool blVideo = pStream->m_iIn == m_iVideo;
            std::optional<ST_ClipOutcome> stStop =
                blVideo ? TakeVideo(*pStream, pPacket) : TakeAudio(*pStream, pPacket);
            if (stStop || m_blDone) return stStop;
            pPacket.reset(av_packet_alloc());
            if (!pPacket) return Failure(CLIP_WRITE_FAILED, "out of memory");
        }
    }

    std::optional<ST_ClipOutcome> TakeVideo(ST_Stream& _stStream, PacketPtr& _pPacket)
    {
        CLS_PacketLine& line = _stStream.m_line;
        // Without presentation times (AVI, some program streams) the end is
        // known only to the group of pictures: the tail keeps all of it.
        if (!line.Place(_pPacket.get())) m_blPtsGuessed = true;
        const bool blKey = (_pPacket->flags & AV_PKT_FLAG_KEY) != 0;
        if (!line.HasOrigin()) {
            // Times count from the first picture that can be shown.
            if (!blKey) return std::nullopt;
            const std::int64_t i64Origin = _pPacket->pts;
            line.SetOrigin(i64Origin, m_source.Format()->streams[m_iVideo]->time_base);
            for (ST_Stream& stOther : m_vecOut)
                if (&stOther != &_stStream)
                    stOther.m_line.SetOrigin(i64Origin,
                                             m_source.Format()->streams[m_iVideo]->time_base);
            _pPacket->pts -= i64Origin;
            _pPacket->dts -= i64Origin;
            if (SkipToStart(i64Origin)) {
                m_vecGop.clear();
                return std::nullopt;
            }
        }
        const std::int64_t i64PtsUs = line.ToMicroseconds(_pPacket->pts);
        const std::int64_t i64DtsUs = line.ToMicroseconds(_pPacket->dts);
        if (!m_blCopying) {
            if (i64PtsUs <= m_i64StartUs && (blKey || !m_vecGop.empty())) {
                // The stretch will start from the latest keyframe at or
                // before its start; what follows it is needed to decode.
                if (blKey) m_vecGop.clear();
                m_vecGop.push_back(std::move(_pPacket));
                return std::nullopt;
            }
            if (m_vecGop.empty()) return std::nullopt;
            m_blCopying = true;
            m_i64BaseUs = line.ToMicroseconds(m_vecGop.front()->dts);
            m_i64FirstUs = line.ToMicroseconds(m_vecGop.front()->pts);
            m_i64LastUs = m_i64FirstUs;
            for (PacketPtr& pHeld : m_vecGop)
                if (auto stStop = Emit(pHeld)) return stStop;
            m_vecGop.clear();
        }
        Progress(i64PtsUs);
        if (m_blVideoDone) {
            m_blDone = i64DtsUs > m_i64EndUs + kReorderUs;
            return std::nullopt;
        }
        if (i64PtsUs < m_i64EndUs) {
            // Pictures held back past the end are references of this one.
            for (PacketPtr& pHeld : m_vecHeld)
                if (auto stStop = Emit(pHeld)) return stStop;
            m_vecHeld.clear();
            m_i64LastUs = std::max(m_i64LastUs, i64PtsUs + line.ToMicroseconds(_pPacket->duration));
            return Emit(_pPacket);
        }
        if (blKey || i64DtsUs > m_i64EndUs + kReorderUs) {
            m_blVideoDone = true;
            // Pictures past the end that some picture before it needed are
            // in; those shown between them go too, so the clip has no gap.
            for (PacketPtr& pHeld : m_vecHeld)
                if (pHeld->pts < m_i64LastVideoPts || m_blPtsGuessed)
                    if (auto stStop = Emit(pHeld)) return stStop;
            m_vecHeld.clear();
            m_blDone = m_iAudio < 0 || m_blAudioDone;
            return std::nullopt;
        }
        m_vecHeld.push_back(std::move(_pPacket));
        return std::nullopt;
    }

    // Where the container indexes every keyframe and the index shows no
    // join, the stream's clock is the line: the demuxer can go straight to
    // the keyframe at or before the start instead of reading up to it.
    bool SkipToStart(std::int64_t _i64Origin)
    {
        AVFormatContext* pIn = m_source.Format();
        AVStream* pVideo = pIn->streams[m_iVideo];
        const int iEntries = avformat_index_get_entries_count(pVideo);
        // Program and transport streams index only what has been read, and
        // their clocks are the ones that jump.
        if (m_i64StartUs <= 0 || iEntries < 2 ||
            (pIn->iformat->flags & (AVFMT_TS_DISCONT | AVFMT_GENERIC_INDEX)))
            return false;
        const CLS_PacketLine& line = StreamOf(m_iVideo)->m_line;
        for (int i = 1; i < iEntries; ++i) {
            const AVIndexEntry* pPrevious = avformat_index_get_entry(pVideo, i - 1);
            const AVIndexEntry* pEntry = avformat_index_get_entry(pVideo, i);
            if (!pPrevious || !pEntry || line.IsJump(pPrevious->timestamp, pEntry->timestamp))
                return false;
        }
        // The index holds decode times, which run ahead of presentation
        // times by the reordering: aim early enough to land on a keyframe
        // shown at or before the start; the packets read then find it.
        const std::int64_t i64Target =
            _i64Origin + av_rescale_q(std::max<std::int64_t>(0, m_i64StartUs - kReorderUs),
                                      kMicroseconds, pVideo->time_base);
        if (av_seek_frame(pIn, m_iVideo, i64Target, AVSEEK_FLAG_BACKWARD) < 0) return false;
        for (ST_Stream& stStream : m_vecOut)
            stStream.m_line.Restart();
        return true;
    }

    std::optional<ST_ClipOutcome> TakeAudio(ST_Stream& _stStream, PacketPtr& _pPacket)
    {
        if (!_stStream.m_line.HasOrigin()) return std::nullopt;
        _stStream.m_line.Place(_pPacket.get());
        if (!m_blCopying) {
            if (!m_vecGop.empty()) m_vecGop.push_back(std::move(_pPacket));
            return std::nullopt;
        }
        if (_stStream.m_line.ToMicroseconds(_pPacket->pts) >= m_i64EndUs) {
            m_blAudioDone = true;
            m_blDone = m_blVideoDone;
            return std::nullopt;
        }
        return Emit(_pPacket);
    }

    // Writes one packet at its place in the clip: line time less the
    // clip's start, in the output stream's time base.
    std::optional<ST_ClipOutcome> Emit(PacketPtr& _pPacket)
    {
        ST_Stream* pStream = StreamOf(_pPacket->stream_index);
        if (!pStream) return std::nullopt;
        if (pStream->m_iIn == m_iVideo) {
            m_blWroteVideo = true;
            m_i64LastVideoPts = std::max(m_i64LastVideoPts, _pPacket->pts);
        }
        const AVRational stIn = m_source.Format()->streams[pStream->m_iIn]->time_base;
        const std::int64_t i64Base = av_rescale_q(m_i64BaseUs, kMicroseconds, stIn);
        _pPacket->pts -= i64Base;
        _pPacket->dts -= i64Base;
        // Sound from before the first picture has nothing to go with.
        if (_pPacket->pts < 0 && pStream->m_iIn != m_iVideo) return std::nullopt;
        const AVRational stOut = m_pOut->streams[pStream->m_iOut]->time_base;
        av_packet_rescale_ts(_pPacket.get(), stIn, stOut);
        // Recorders' clocks stutter; a muxer refuses a decode time that
        // does not move forward.
        if (pStream->m_i64LastDts != AV_NOPTS_VALUE && _pPacket->dts <= pStream->m_i64LastDts)
            _pPacket->dts = pStream->m_i64LastDts + 1;
        if (_pPacket->pts < _pPacket->dts) _pPacket->pts = _pPacket->dts;
        pStream->m_i64LastDts = _pPacket->dts;
        _pPacket->stream_index = pStream->m_iOut;
        _pPacket->pos = -1;
        if (av_interleaved_write_frame(m_pOut, _pPacket.get()) < 0)
            return Failure(CLIP_WRITE_FAILED, m_stRequest.m_strTarget + ": cannot write");
        return std::nullopt;
    }

    void Progress(std::int64_t _i64Us)
    {
        if (!m_fnProgress || m_i64EndUs <= m_i64StartUs) return;
        const double dShare = std::clamp(static_cast<double>(_i64Us - m_i64StartUs) /
                                             static_cast<double>(m_i64EndUs - m_i64StartUs),
                                         0.0, 1.0);
        const int iPermille = static_cast<int>(dShare * 1000.0);
        if (iPermille == m_iLastPermille) return;
        m_iLastPermille = iPermille;
        m_fnProgress(dShare);
    }

    const ST_ClipRequest& m_stRequest;
    CLS_Source& m_source;
    const CLS_ClipExporter::ProgressFunc& m_fnProgress;
    const std::atomic<bool>* m_pCancel;
    const std::int64_t m_i64StartUs;
    const std::int64_t m_i64EndUs;
    AVFormatContext* m_pOut = nullptr;
    int m_iVideo = -1;
    int m_iAudio = -1;
    std::vector<ST_Stream> m_vecOut;
    // Before the start: everything since the latest keyframe at or before it.
    std::vector<PacketPtr> m_vecGop;
    // After the end: pictures that earlier ones may still refer to.
    std::vector<PacketPtr> m_vecHeld;
    bool m_blCopying = false;
    bool m_blWroteVideo = false;
    bool m_blPtsGuessed = false;
    std::int64_t m_i64LastVideoPts = 0;  // latest picture written, on the line
    bool m_blVideoDone = false;
    bool m_blAudioDone = false;
    bool m_blDone = false;
    std::int64_t m_i64BaseUs = 0;
    std::int64_t m_i64FirstUs = 0;
    std::int64_t m_i64LastUs = 0;
    int m_iLastPermille = -1;
    ST_ClipOutcome m_stOutcome;
};

}  // namespace

ST_ClipOutcome CLS_ClipExporter::Run(const ST_ClipRequest& _stRequest,
                                     const ProgressFunc& _fnProgress,
                                     const std::atomic<bool>* _pCancel)
{
    if (_stRequest.m_i64FromMs < 0 || _stRequest.m_i64ToMs <= _stRequest.m_i64FromMs)
        return Failure(CLIP_EMPTY_RANGE, "the stretch is empty");
    if (_stRequest.m_emFormat == CLIP_FORMAT_SDV && _stRequest.m_strTargetPassword.empty())
        return Failure(CLIP_PASSWORD_NEEDED, "a sealed clip needs a password");
    // The rename at the end would put the clip in place of the recording.
    std::error_code ec;
    if (std::filesystem::equivalent(_stRequest.m_strSource, _stRequest.m_strTarget, ec))
        return Failure(CLIP_WRITE_FAILED, _stRequest.m_strTarget + ": that is the source itself");
    av_log_set_level(AV_LOG_QUIET);
    CLS_Source source;
    if (std::optional<ST_ClipOutcome> stFailed =
            source.Open(_stRequest.m_strSource, _stRequest.m_strSourcePassword))
        return *stFailed;
    return CLS_Cut(_stRequest, source, _fnProgress, _pCancel).Run();
}

bool CLS_ClipExporter::NeedsPassword(const std::string& _strSource)
{
    CLS_SdvReader stReader;
    return stReader.Open(_strSource) == CLS_SdvReader::OPEN_OK && !stReader.Readable();
}

}  // namespace RK_Framework::ClipExport
