#include "CLS_SdvReader.h"

#include <openssl/crypto.h>

#include <algorithm>

#include "CLS_SdvChunkCipher.h"

namespace RK_Framework::VideoPlayer {

namespace {
// Half a megabyte: covers the read-ahead of an interleaved file and the way
// back of a step across a group of pictures at surveillance bit rates.
constexpr std::size_t kCachedChunks = 8;
}  // namespace

CLS_SdvReader::CLS_SdvReader() = default;
CLS_SdvReader::~CLS_SdvReader() = default;

CLS_SdvReader::EM_Open CLS_SdvReader::Open(const std::string& _strPath)
{
    m_pCipher.reset();
    m_vecCache.clear();
    m_i64DamagedChunk = -1;
    m_ifFile.close();
    m_ifFile.clear();
    m_ifFile.open(_strPath, std::ios::binary);
    if (!m_ifFile) return OPEN_IO_ERROR;
    m_ifFile.seekg(0, std::ios::end);
    m_i64FileSize = static_cast<std::int64_t>(m_ifFile.tellg());
    m_ifFile.seekg(0);
    std::uint8_t arrHeader[ST_SdvHeader::kSize] = {};
    m_ifFile.read(reinterpret_cast<char*>(arrHeader), sizeof(arrHeader));
    const std::size_t sizeRead =
        static_cast<std::size_t>(std::max<std::streamsize>(0, m_ifFile.gcount()));
    m_ifFile.clear();
    switch (ST_SdvHeader::Parse(arrHeader, sizeRead, m_stHeader)) {
        case ST_SdvHeader::SDV_NOT_SDV:
            return OPEN_NOT_SDV;
        case ST_SdvHeader::SDV_DAMAGED:
            return OPEN_DAMAGED;
        case ST_SdvHeader::SDV_OK:
            break;
    }
    return OPEN_OK;
}

bool CLS_SdvReader::Unlock(const char* _pPassword, std::size_t _sizePassword)
{
    if (!m_stHeader.m_blSealed) return true;
    std::uint8_t arrKey[ST_SdvHeader::kKeySize];
    if (!m_stHeader.UnwrapKey(_pPassword, _sizePassword, arrKey)) return false;
    UnlockWithKey(arrKey);
    OPENSSL_cleanse(arrKey, sizeof(arrKey));
    return true;
}

void CLS_SdvReader::UnlockWithKey(const std::uint8_t* _pKey)
{
    m_pCipher = std::make_unique<CLS_SdvChunkCipher>(_pKey, m_stHeader.m_arrNoncePrefix.data());
    m_vecCache.clear();
}

std::int64_t CLS_SdvReader::Size() const
{
    if (m_stHeader.m_blSealed) return static_cast<std::int64_t>(m_stHeader.m_u64PayloadSize);
    return std::clamp<std::int64_t>(m_i64FileSize - static_cast<std::int64_t>(ST_SdvHeader::kSize),
                                    0, static_cast<std::int64_t>(m_stHeader.m_u64PayloadSize));
}

bool CLS_SdvReader::ReadAt(std::int64_t _i64Pos, std::uint8_t* _pOut, std::size_t _sizeOut)
{
    m_ifFile.clear();
    m_ifFile.seekg(_i64Pos);
    m_ifFile.read(reinterpret_cast<char*>(_pOut), static_cast<std::streamsize>(_sizeOut));
    const bool blWhole = m_ifFile.gcount() == static_cast<std::streamsize>(_sizeOut);
    m_ifFile.clear();
    return blWhole;
}

const CLS_SdvReader::ST_CachedChunk* CLS_SdvReader::Chunk(std::int64_t _i64Index,
                                                          std::int64_t& _i64Status)
{
    for (ST_CachedChunk& stChunk : m_vecCache) {
        if (stChunk.m_i64Index == _i64Index) {
            stChunk.m_u64Used = ++m_u64Clock;
            return &stChunk;
        }
    }
    const std::int64_t i64ChunkSize = m_stHeader.m_u32ChunkSize;
    const std::int64_t i64Plain = std::min(i64ChunkSize, Size() - _i64Index * i64ChunkSize);
    const bool blLast = _i64Index + 1 == static_cast<std::int64_t>(m_stHeader.ChunkCount());
    const std::int64_t i64At = static_cast<std::int64_t>(ST_SdvHeader::kSize) +
                               _i64Index * (i64ChunkSize + ST_SdvHeader::kTagSize);
    m_vecSealed.resize(static_cast<std::size_t>(i64Plain) + ST_SdvHeader::kTagSize);
    ST_CachedChunk* pSlot = nullptr;
    if (m_vecCache.size() < kCachedChunks) {
        pSlot = &m_vecCache.emplace_back();
    } else {
        pSlot = &*std::min_element(m_vecCache.begin(), m_vecCache.end(),
                                   [](const ST_CachedChunk& _a, const ST_CachedChunk& _b) {
                                       return _a.m_u64Used < _b.m_u64Used;
                                   });
    }
    pSlot->m_i64Index = -1;
    pSlot->m_vecPlain.resize(static_cast<std::size_t>(i64Plain));
    // A file cut short ends in a chunk without its tag: it fails like any
    // other damaged chunk, which is what it is.
    const bool blPresent = i64At + static_cast<std::int64_t>(m_vecSealed.size()) <= m_i64FileSize;
    if (blPresent && !ReadAt(i64At, m_vecSealed.data(), m_vecSealed.size())) {
        _i64Status = kReadIoError;
        return nullptr;
    }
    if (!blPresent ||
        !m_pCipher->Open(static_cast<std::uint32_t>(_i64Index), blLast, m_vecSealed.data(),
                         static_cast<std::size_t>(i64Plain), pSlot->m_vecPlain.data())) {
        m_i64DamagedChunk = _i64Index;
        _i64Status = kReadDamaged;
        return nullptr;
    }
    pSlot->m_i64Index = _i64Index;
    pSlot->m_u64Used = ++m_u64Clock;
    return pSlot;
}

std::int64_t CLS_SdvReader::Read(std::int64_t _i64Pos, std::uint8_t* _pOut, std::size_t _sizeOut)
{
    if (!Readable() || _i64Pos < 0) return kReadIoError;
    const std::int64_t i64Left = Size() - _i64Pos;
    if (i64Left <= 0 || _sizeOut == 0) return 0;
    std::size_t sizeWant = static_cast<std::size_t>(
        std::min<std::int64_t>(i64Left, static_cast<std::int64_t>(_sizeOut)));
    if (!m_stHeader.m_blSealed) {
        const std::int64_t i64At = static_cast<std::int64_t>(ST_SdvHeader::kSize) + _i64Pos;
        return ReadAt(i64At, _pOut, sizeWant) ? static_cast<std::int64_t>(sizeWant) : kReadIoError;
    }
    const std::int64_t i64ChunkSize = m_stHeader.m_u32ChunkSize;
    std::int64_t i64Status = 0;
    const ST_CachedChunk* pChunk = Chunk(_i64Pos / i64ChunkSize, i64Status);
    if (!pChunk) return i64Status;
    const std::size_t sizeOffset = static_cast<std::size_t>(_i64Pos % i64ChunkSize);
    sizeWant = std::min(sizeWant, pChunk->m_vecPlain.size() - sizeOffset);
    std::copy_n(pChunk->m_vecPlain.begin() + static_cast<std::ptrdiff_t>(sizeOffset), sizeWant,
                _pOut);
    return static_cast<std::int64_t>(sizeWant);
}

}  // namespace RK_Framework::VideoPlayer
