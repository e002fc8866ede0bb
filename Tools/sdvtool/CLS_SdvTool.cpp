#include "CLS_SdvTool.h"

#include <openssl/crypto.h>

#include <atomic>
#include <cinttypes>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <vector>

#include "CLS_AtomicFile.h"
#include "CLS_ClipExporter.h"
#include "CLS_PasswordSource.h"
#include "CLS_SdvReader.h"
#include "CLS_SdvWriter.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

using namespace RK_Framework::VideoPlayer;

namespace {

// A key on the stack that wipes itself whichever way we leave.
struct ST_Key
{
    std::uint8_t m_arr[ST_SdvHeader::kKeySize] = {};
    ~ST_Key() { OPENSSL_cleanse(m_arr, sizeof(m_arr)); }
};

bool WriteToFile(void* _pFile, const std::uint8_t* _pData, std::size_t _sizeData)
{
    return static_cast<CLS_AtomicFile*>(_pFile)->Write(_pData, _sizeData);
}

// Ctrl+C during an export ends it cleanly: the half-written clip is removed.
std::atomic<bool> g_blCancel{false};

extern "C" void OnInterrupt(int)
{
    g_blCancel.store(true);
}

bool EndsWith(const std::string& _strText, const std::string& _strEnd)
{
    return _strText.size() >= _strEnd.size() &&
           _strText.compare(_strText.size() - _strEnd.size(), _strEnd.size(), _strEnd) == 0;
}

}  // namespace

CLS_SdvTool::CLS_SdvTool(ST_Options _stOptions) : m_stOptions(std::move(_stOptions)) {}

int CLS_SdvTool::Fail(int _iStatus, const std::string& _strMessage)
{
    std::fprintf(stderr, "sdvtool: %s\n", _strMessage.c_str());
    return _iStatus;
}

bool CLS_SdvTool::Probe(const std::string& _strIn, ST_SdvHeader& _stHeader, std::string& _strError)
{
    av_log_set_level(AV_LOG_QUIET);
    AVFormatContext* pFormat = nullptr;
    if (avformat_open_input(&pFormat, _strIn.c_str(), nullptr, nullptr) < 0 ||
        avformat_find_stream_info(pFormat, nullptr) < 0) {
        avformat_close_input(&pFormat);
        _strError = _strIn + ": not a video file this player can read";
        return false;
    }
    const int iVideo = av_find_best_stream(pFormat, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (iVideo < 0) {
        avformat_close_input(&pFormat);
        _strError = _strIn + ": no video stream";
        return false;
    }
    const AVCodecParameters* pCodec = pFormat->streams[iVideo]->codecpar;
    _stHeader.m_u32Width = static_cast<std::uint32_t>(pCodec->width);
    _stHeader.m_u32Height = static_cast<std::uint32_t>(pCodec->height);
    _stHeader.m_strCodec = avcodec_get_name(pCodec->codec_id);
    _stHeader.m_u64DurationMs =
        pFormat->duration > 0 ? static_cast<std::uint64_t>(pFormat->duration / 1000) : 0;
    avformat_close_input(&pFormat);
    return true;
}

int CLS_SdvTool::Seal(const std::string& _strIn, const std::string& _strOut)
{
    Reader stExisting;
    if (stExisting.Open(_strIn) != Reader::OPEN_NOT_SDV)
        return Fail(EXIT_USAGE, _strIn + ": already an .sdv file");
    std::ifstream ifIn(_strIn, std::ios::binary | std::ios::ate);
    if (!ifIn) return Fail(EXIT_IO, _strIn + ": cannot read");
    const std::int64_t i64Size = static_cast<std::int64_t>(ifIn.tellg());
    ifIn.seekg(0);

    ST_SdvHeader stHeader;
    std::string strError;
    if (!Probe(_strIn, stHeader, strError)) return Fail(EXIT_DAMAGED, strError);
    stHeader.m_i64Created = static_cast<std::int64_t>(std::time(nullptr));

    CLS_SdvWriter stOut(_strOut);
    bool blOpened = false;
    if (m_stOptions.m_blPlain) {
        blOpened = stOut.Open(nullptr, 0);
    } else {
        CLS_PasswordSource stSource(m_stOptions.m_strPasswordFile);
        CLS_PasswordSource::CLS_Secret stPassword;
        if (!stSource.ReadNew(stPassword, strError)) return Fail(EXIT_USAGE, strError);
        blOpened = stOut.Open(stPassword.Data(), stPassword.Size());
    }
    if (!blOpened) return Fail(EXIT_IO, _strOut + ": cannot write");
    std::vector<std::uint8_t> vecBuffer(ST_SdvHeader::kChunkSize);
    bool blOk = true;
    while (blOk && ifIn) {
        ifIn.read(reinterpret_cast<char*>(vecBuffer.data()),
                  static_cast<std::streamsize>(vecBuffer.size()));
        blOk = stOut.Write(vecBuffer.data(), static_cast<std::size_t>(ifIn.gcount()));
    }
    if (blOk && static_cast<std::int64_t>(stOut.Written()) != i64Size)
        return Fail(EXIT_IO, _strIn + ": changed while being read");
    if (!blOk || !stOut.Commit(stHeader)) return Fail(EXIT_IO, _strOut + ": cannot write");
    return EXIT_OK;
}

int CLS_SdvTool::OpenHeader(const std::string& _strFile, Reader& _reader)
{
    switch (_reader.Open(_strFile)) {
        case Reader::OPEN_IO_ERROR:
            return Fail(EXIT_IO, _strFile + ": cannot read");
        case Reader::OPEN_NOT_SDV:
            return Fail(EXIT_DAMAGED, _strFile + ": not an .sdv file");
        case Reader::OPEN_DAMAGED:
            return Fail(EXIT_DAMAGED, _strFile + ": damaged header");
        case Reader::OPEN_OK:
            break;
    }
    return EXIT_OK;
}

int CLS_SdvTool::OpenUnlocked(const std::string& _strFile, Reader& _reader)
{
    if (const int iStatus = OpenHeader(_strFile, _reader); iStatus != EXIT_OK) return iStatus;
    if (_reader.Readable()) return EXIT_OK;
    CLS_PasswordSource stSource(m_stOptions.m_strPasswordFile);
    CLS_PasswordSource::CLS_Secret stPassword;
    std::string strError;
    if (!stSource.Read("Password: ", stPassword, strError)) return Fail(EXIT_USAGE, strError);
    if (!_reader.Unlock(stPassword.Data(), stPassword.Size()))
        return Fail(EXIT_WRONG_PASSWORD, _strFile + ": wrong password");
    return EXIT_OK;
}

int CLS_SdvTool::ReadThrough(const std::string& _strFile, Reader& _reader,
                             bool (*_pfnSink)(void*, const std::uint8_t*, std::size_t),
                             void* _pSink)
{
    const ST_SdvHeader& stHeader = _reader.Header();
    std::vector<std::uint8_t> vecBuffer(ST_SdvHeader::kChunkSize);
    std::int64_t i64Pos = 0;
    for (;;) {
        const std::int64_t i64Read = _reader.Read(i64Pos, vecBuffer.data(), vecBuffer.size());
        if (i64Read == 0) break;
        if (i64Read == Reader::kReadDamaged)
            return Fail(EXIT_DAMAGED, _strFile + ": chunk " +
                                          std::to_string(_reader.DamagedChunk()) +
                                          " fails authentication");
        if (i64Read < 0) return Fail(EXIT_IO, _strFile + ": cannot read");
        if (_pfnSink && !_pfnSink(_pSink, vecBuffer.data(), static_cast<std::size_t>(i64Read)))
            return Fail(EXIT_IO, "cannot write");
        i64Pos += i64Read;
    }
    const std::int64_t i64Expected =
        static_cast<std::int64_t>(ST_SdvHeader::kSize) +
        static_cast<std::int64_t>(stHeader.m_blSealed ? stHeader.SealedPayloadBytes()
                                                      : stHeader.m_u64PayloadSize);
    if (_reader.FileSize() < i64Expected) return Fail(EXIT_DAMAGED, _strFile + ": cut short");
    if (_reader.FileSize() > i64Expected)
        return Fail(EXIT_DAMAGED, _strFile + ": data after the end of the payload");
    return EXIT_OK;
}

int CLS_SdvTool::Unseal(const std::string& _strIn, const std::string& _strOut)
{
    Reader stReader;
    int iStatus = OpenUnlocked(_strIn, stReader);
    if (iStatus != EXIT_OK) return iStatus;
    CLS_AtomicFile stOut(_strOut);
    if (!stOut.Open()) return Fail(EXIT_IO, _strOut + ": cannot write");
    iStatus = ReadThrough(_strIn, stReader, &WriteToFile, &stOut);
    if (iStatus != EXIT_OK) return iStatus;
    return stOut.Commit() ? EXIT_OK : Fail(EXIT_IO, _strOut + ": cannot write");
}

int CLS_SdvTool::Verify(const std::string& _strFile)
{
    Reader stReader;
    int iStatus = OpenUnlocked(_strFile, stReader);
    if (iStatus == EXIT_OK) iStatus = ReadThrough(_strFile, stReader, nullptr, nullptr);
    if (iStatus != EXIT_OK) return iStatus;
    const ST_SdvHeader& stHeader = stReader.Header();
    std::printf(
        "%s: ok, %" PRIu64 " payload bytes%s\n", _strFile.c_str(), stHeader.m_u64PayloadSize,
        stHeader.m_blSealed
            ? (", " + std::to_string(stHeader.ChunkCount()) + " chunks authenticated").c_str()
            : ", plain");
    return EXIT_OK;
}

int CLS_SdvTool::Info(const std::string& _strFile)
{
    Reader stReader;
    if (const int iStatus = OpenHeader(_strFile, stReader); iStatus != EXIT_OK) return iStatus;
    const ST_SdvHeader& stHeader = stReader.Header();
    char szCreated[32] = "unknown";
    const std::time_t tCreated = static_cast<std::time_t>(stHeader.m_i64Created);
    if (const std::tm* pTm = std::gmtime(&tCreated))
        std::strftime(szCreated, sizeof(szCreated), "%Y-%m-%dT%H:%M:%SZ", pTm);
    std::printf("file: %s\n", _strFile.c_str());
    std::printf("version: %u\n", static_cast<unsigned>(ST_SdvHeader::kVersion));
    std::printf("payload: %s\n", stHeader.m_blSealed ? "sealed, AES-256-GCM" : "plain");
    std::printf("payload bytes: %" PRIu64 "\n", stHeader.m_u64PayloadSize);
    std::printf("chunk size: %u\n", static_cast<unsigned>(stHeader.m_u32ChunkSize));
    if (stHeader.m_blSealed) {
        std::printf("chunks: %" PRIu64 "\n", stHeader.ChunkCount());
        std::printf("kdf: scrypt N=2^%u r=%u p=%u\n", static_cast<unsigned>(stHeader.m_u8Log2N),
                    static_cast<unsigned>(stHeader.m_u8R), static_cast<unsigned>(stHeader.m_u8P));
    }
    std::printf("duration ms: %" PRIu64 "\n", stHeader.m_u64DurationMs);
    std::printf("picture: %ux%u\n", static_cast<unsigned>(stHeader.m_u32Width),
                static_cast<unsigned>(stHeader.m_u32Height));
    std::printf("codec: %s\n", stHeader.m_strCodec.c_str());
    std::printf("created: %s\n", szCreated);
    return EXIT_OK;
}

int CLS_SdvTool::Passwd(const std::string& _strFile)
{
    Reader stReader;
    if (const int iStatus = OpenHeader(_strFile, stReader); iStatus != EXIT_OK) return iStatus;
    ST_SdvHeader stHeader = stReader.Header();
    if (!stHeader.m_blSealed)
        return Fail(EXIT_USAGE, _strFile + ": not sealed, no password to change");
    std::string strError;
    ST_Key stKey;
    {
        CLS_PasswordSource stSource(m_stOptions.m_strPasswordFile);
        CLS_PasswordSource::CLS_Secret stPassword;
        if (!stSource.Read("Password: ", stPassword, strError)) return Fail(EXIT_USAGE, strError);
        if (!stHeader.UnwrapKey(stPassword.Data(), stPassword.Size(), stKey.m_arr))
            return Fail(EXIT_WRONG_PASSWORD, _strFile + ": wrong password");
    }
    {
        // Without a second file, the new password is the next line of the
        // same source (standard input), or asked for on the terminal.
        CLS_PasswordSource stSource(m_stOptions.m_strNewPasswordFile);
        CLS_PasswordSource::CLS_Secret stPassword;
        if (!stSource.ReadNew(stPassword, strError)) return Fail(EXIT_USAGE, strError);
        if (!stHeader.WrapKey(stPassword.Data(), stPassword.Size(), stKey.m_arr))
            return Fail(EXIT_IO, "cannot make a key");
    }
    // The payload is copied byte for byte behind the new header; a copy and
    // a rename, so that a crash leaves the old file, never half of a new one.
    std::ifstream ifIn(_strFile, std::ios::binary);
    ifIn.seekg(static_cast<std::streamoff>(ST_SdvHeader::kSize));
    CLS_AtomicFile stOut(_strFile);
    if (!ifIn || !stOut.Open()) return Fail(EXIT_IO, _strFile + ": cannot rewrite");
    const auto arrHeader = stHeader.Serialize();
    bool blOk = stOut.Write(arrHeader.data(), arrHeader.size());
    std::vector<char> vecBuffer(1 << 20);
    while (blOk && ifIn) {
        ifIn.read(vecBuffer.data(), static_cast<std::streamsize>(vecBuffer.size()));
        blOk = stOut.Write(vecBuffer.data(), static_cast<std::size_t>(ifIn.gcount()));
    }
    if (!blOk || !ifIn.eof() || !stOut.Commit())
        return Fail(EXIT_IO, _strFile + ": cannot rewrite");
    return EXIT_OK;
}

int CLS_SdvTool::Export(const std::string& _strIn, const std::string& _strOut, double _dFrom,
                        double _dTo)
{
    using namespace RK_Framework::ClipExport;
    if (!std::isfinite(_dFrom) || !std::isfinite(_dTo) || _dFrom < 0 || _dTo <= _dFrom)
        return Fail(EXIT_USAGE, "FROM and TO are seconds, FROM below TO");
    ST_ClipRequest stRequest;
    stRequest.m_strSource = _strIn;
    stRequest.m_strTarget = _strOut;
    stRequest.m_i64FromMs = std::llround(_dFrom * 1000.0);
    stRequest.m_i64ToMs = std::llround(_dTo * 1000.0);
    stRequest.m_emFormat = EndsWith(_strOut, ".sdv") ? CLIP_FORMAT_SDV : CLIP_FORMAT_MP4;
    std::string strError;
    {
        Reader stProbe;
        if (stProbe.Open(_strIn) == Reader::OPEN_OK && !stProbe.Readable()) {
            CLS_PasswordSource stSource(m_stOptions.m_strPasswordFile);
            CLS_PasswordSource::CLS_Secret stPassword;
            if (!stSource.Read("Password: ", stPassword, strError))
                return Fail(EXIT_USAGE, strError);
            stRequest.m_strSourcePassword.assign(stPassword.Data(), stPassword.Size());
        }
    }
    if (stRequest.m_emFormat == CLIP_FORMAT_SDV) {
        // With one source for both, the clip's password is the next line.
        CLS_PasswordSource stSource(m_stOptions.m_strNewPasswordFile);
        CLS_PasswordSource::CLS_Secret stPassword;
        if (!stSource.ReadNew(stPassword, strError)) return Fail(EXIT_USAGE, strError);
        stRequest.m_strTargetPassword.assign(stPassword.Data(), stPassword.Size());
    }

    g_blCancel.store(false);
    auto* pfnOld = std::signal(SIGINT, &OnInterrupt);
    const ST_ClipOutcome stOutcome = CLS_ClipExporter::Run(stRequest, nullptr, &g_blCancel);
    std::signal(SIGINT, pfnOld == SIG_ERR ? SIG_DFL : pfnOld);
    switch (stOutcome.m_emResult) {
        case CLIP_OK:
            break;
        case CLIP_WRONG_PASSWORD:
            return Fail(EXIT_WRONG_PASSWORD, stOutcome.m_strMessage);
        case CLIP_BAD_SOURCE:
            return Fail(EXIT_DAMAGED, stOutcome.m_strMessage);
        case CLIP_WRITE_FAILED:
        case CLIP_CANCELLED:
            return Fail(EXIT_IO, stOutcome.m_strMessage);
        case CLIP_PASSWORD_NEEDED:
        case CLIP_EMPTY_RANGE:
            return Fail(EXIT_USAGE, stOutcome.m_strMessage);
    }
    std::printf("%s: %.3f s to %.3f s of %s%s%s\n", _strOut.c_str(),
                static_cast<double>(stOutcome.m_i64FirstMs) / 1000.0,
                static_cast<double>(stOutcome.m_i64EndMs) / 1000.0, _strIn.c_str(),
                stOutcome.m_blSoundLeftOut ? ", sound left out (MP4 cannot carry it)" : "",
                stOutcome.m_blCutShort ? ", source ends early (damaged)" : "");
    return EXIT_OK;
}
