// The .sdv header and the payload reader, as the engine reads them: the header
// parsed (first as it is, then with its checksum made right, so that the
// checks behind the checksum are reached too), a sealed payload opened with a
// fixed password, and the payload read through FFmpeg's byte context with the
// moves a demuxer makes.

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CLS_SdvIoContext.h"
#include "CLS_SdvReader.h"
#include "FuzzScratch.h"
#include "ST_SdvHeader.h"

extern "C" {
#include <libavformat/avio.h>
}

using RK_Framework::VideoPlayer::CLS_SdvIoContext;
using RK_Framework::VideoPlayer::CLS_SdvReader;
using RK_Framework::VideoPlayer::ST_SdvHeader;

namespace {

// The password scripts/fuzz.sh seals its seeds with.
constexpr char kPassword[] = "quill-fuzz";
constexpr std::size_t kChecksumAt = 160;
// Bytes 0..155 are all that the unwrapping of the key depends on.
constexpr std::size_t kWrapInput = 156;
// Unwrapping costs a tenth of a second or more. A header whose checksum had
// to be made right was changed, and the key wrap authenticates every byte the
// lookup is keyed on: it cannot open, and is not tried. The seeds' headers
// are, once each.
constexpr std::size_t kMaxUnwraps = 32;
constexpr std::int64_t kMaxRead = 4 * 1024 * 1024;

using ContentKey = std::array<std::uint8_t, ST_SdvHeader::kKeySize>;

std::optional<ContentKey> KeyFor(const std::vector<std::uint8_t>& _vecFile,
                                 const ST_SdvHeader& _stHeader, bool _blRepaired)
{
    static std::map<std::string, std::optional<ContentKey>> s_mapKeys;
    const std::string strWrapInput(_vecFile.begin(), _vecFile.begin() + kWrapInput);
    if (auto it = s_mapKeys.find(strWrapInput); it != s_mapKeys.end()) return it->second;
    if (_blRepaired || s_mapKeys.size() >= kMaxUnwraps) return std::nullopt;
    ContentKey arrKey;
    const bool blOpened = _stHeader.UnwrapKey(kPassword, std::strlen(kPassword), arrKey.data());
    return s_mapKeys[strWrapInput] = blOpened ? std::optional(arrKey) : std::nullopt;
}

// Reads up to _i64Bytes from where the context stands; the count read.
std::int64_t ReadOn(AVIOContext* _pIo, std::int64_t _i64Bytes)
{
    std::uint8_t arrBuffer[4096];
    std::int64_t i64Total = 0;
    while (i64Total < _i64Bytes) {
        const int iWant =
            static_cast<int>(std::min<std::int64_t>(sizeof(arrBuffer), _i64Bytes - i64Total));
        const int iRead = avio_read(_pIo, arrBuffer, iWant);
        if (iRead <= 0) break;
        i64Total += iRead;
    }
    return i64Total;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* _pData, std::size_t _sizeData)
{
    std::vector<std::uint8_t> vecFile(_pData, _pData + _sizeData);
    ST_SdvHeader stHeader;
    bool blRepaired = false;
    if (ST_SdvHeader::Parse(vecFile.data(), vecFile.size(), stHeader) ==
            ST_SdvHeader::SDV_DAMAGED &&
        vecFile.size() >= ST_SdvHeader::kSize) {
        unsigned int uiSize = 0;
        EVP_Digest(vecFile.data(), kChecksumAt, vecFile.data() + kChecksumAt, &uiSize,
                   EVP_sha256(), nullptr);
        blRepaired = true;
        if (ST_SdvHeader::Parse(vecFile.data(), vecFile.size(), stHeader) != ST_SdvHeader::SDV_OK)
            return 0;
    }
    const std::string strPath =
        QuillFuzz::WriteScratchFile("clip.sdv", vecFile.data(), vecFile.size());
    auto pReader = std::make_unique<CLS_SdvReader>();
    if (pReader->Open(strPath) != CLS_SdvReader::OPEN_OK) return 0;
    const ST_SdvHeader& stParsed = pReader->Header();
    if (stParsed.m_blSealed) {
        std::uint8_t arrByte = 0;
        if (pReader->Read(0, &arrByte, 1) != CLS_SdvReader::kReadIoError)
            QuillFuzz::Fail("a sealed payload read before it was unlocked");
        const std::optional<ContentKey> optKey = KeyFor(vecFile, stParsed, blRepaired);
        if (!optKey) return 0;
        pReader->UnlockWithKey(optKey->data());
    }
    const std::int64_t i64Size = pReader->Size();
    if (i64Size < 0) QuillFuzz::Fail("a negative payload size");
    const bool blSealed = stParsed.m_blSealed;

    CLS_SdvIoContext io(std::move(pReader), strPath);
    AVIOContext* pIo = io.Context();
    if (!pIo) return 0;
    if (avio_size(pIo) != i64Size) QuillFuzz::Fail("the byte context's size is not the payload's");
    const std::int64_t i64Read = ReadOn(pIo, kMaxRead);
    if (i64Read > i64Size) QuillFuzz::Fail("more bytes read than the payload holds");
    if (!blSealed) {
        // A plain payload is the file's bytes after the header.
        std::vector<std::uint8_t> vecBack(
            static_cast<std::size_t>(std::min<std::int64_t>(i64Size, 4096)));
        avio_seek(pIo, 0, SEEK_SET);
        const int iBack = avio_read(pIo, vecBack.data(), static_cast<int>(vecBack.size()));
        if (iBack > 0 && std::memcmp(vecBack.data(), vecFile.data() + ST_SdvHeader::kSize,
                                     static_cast<std::size_t>(iBack)) != 0)
            QuillFuzz::Fail("a plain payload read as other bytes");
    }
    // The moves a demuxer makes: the middle, near the end, past the end and
    // back to the start, reading a little at each.
    for (const std::int64_t i64Pos :
         {i64Size / 2, i64Size - 100, i64Size + 70000, std::int64_t(1) << 40, std::int64_t(0)}) {
        if (avio_seek(pIo, i64Pos, SEEK_SET) >= 0) ReadOn(pIo, 70000);
    }
    avio_seek(pIo, -1, SEEK_END);
    avio_skip(pIo, 1 << 20);
    ReadOn(pIo, 16);
    return 0;
}
