#include "CLS_SdvIoContext.h"

#include <cstdio>

#include "CLS_SdvReader.h"

extern "C" {
#include <libavformat/avio.h>
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

namespace RK_Framework::VideoPlayer {

namespace {
// Half a chunk: most reads are served from a chunk already opened.
constexpr int kBufferSize = 32 * 1024;
}  // namespace

CLS_SdvIoContext::CLS_SdvIoContext(std::unique_ptr<CLS_SdvReader> _pReader, std::string _strPath)
    : m_pReader(std::move(_pReader)), m_strPath(std::move(_strPath))
{
    auto* pBuffer = static_cast<unsigned char*>(av_malloc(kBufferSize));
    if (!pBuffer) return;
    m_pContext = avio_alloc_context(pBuffer, kBufferSize, 0, this, &CLS_SdvIoContext::ReadPacket,
                                    nullptr, &CLS_SdvIoContext::Seek);
    if (!m_pContext) av_free(pBuffer);
}

CLS_SdvIoContext::~CLS_SdvIoContext()
{
    if (m_pContext) av_freep(&m_pContext->buffer);
    avio_context_free(&m_pContext);
}

int CLS_SdvIoContext::ReadPacket(void* _pOpaque, std::uint8_t* _pBuffer, int _iSize)
{
    auto* pThis = static_cast<CLS_SdvIoContext*>(_pOpaque);
    const std::int64_t i64Read =
        pThis->m_pReader->Read(pThis->m_i64Pos, _pBuffer, static_cast<std::size_t>(_iSize));
    if (i64Read > 0) {
        pThis->m_i64Pos += i64Read;
        return static_cast<int>(i64Read);
    }
    if (i64Read == 0) return AVERROR_EOF;
    if (i64Read == CLS_SdvReader::kReadIoError) return AVERROR(EIO);
    // Said once per chunk: a demuxer may come back to it after every seek.
    const std::int64_t i64Chunk = pThis->m_pReader->DamagedChunk();
    if (i64Chunk != pThis->m_i64Reported) {
        pThis->m_i64Reported = i64Chunk;
        std::fprintf(
            stderr,
            "VideoPlayer_Rk: %s: chunk %lld fails authentication, playback ends before it\n",
            pThis->m_strPath.c_str(), static_cast<long long>(i64Chunk));
    }
    return AVERROR_INVALIDDATA;
}

std::int64_t CLS_SdvIoContext::SeekTarget(std::int64_t _i64Pos, std::int64_t _i64Size,
                                          std::int64_t _i64Offset, int _iWhence)
{
    std::int64_t i64Target = 0;
    switch (_iWhence & ~AVSEEK_FORCE) {
        case AVSEEK_SIZE:
            return _i64Size;
        case SEEK_SET:
            i64Target = _i64Offset;
            break;
        case SEEK_CUR:
            i64Target = _i64Pos + _i64Offset;
            break;
        case SEEK_END:
            i64Target = _i64Size + _i64Offset;
            break;
        default:
            return AVERROR(EINVAL);
    }
    return i64Target < 0 ? AVERROR(EINVAL) : i64Target;
}

std::int64_t CLS_SdvIoContext::Seek(void* _pOpaque, std::int64_t _i64Offset, int _iWhence)
{
    auto* pThis = static_cast<CLS_SdvIoContext*>(_pOpaque);
    const std::int64_t i64Target =
        SeekTarget(pThis->m_i64Pos, pThis->m_pReader->Size(), _i64Offset, _iWhence);
    if (i64Target >= 0 && (_iWhence & ~AVSEEK_FORCE) != AVSEEK_SIZE) pThis->m_i64Pos = i64Target;
    return i64Target;
}

std::int64_t CLS_SdvIoContext::Created() const
{
    return m_pReader ? m_pReader->Header().m_i64Created : 0;
}

}  // namespace RK_Framework::VideoPlayer
