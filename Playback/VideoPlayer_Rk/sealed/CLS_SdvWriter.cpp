#include "CLS_SdvWriter.h"

#include <openssl/crypto.h>
#include <openssl/rand.h>

#include <algorithm>

#include "CLS_SdvChunkCipher.h"

namespace RK_Framework::VideoPlayer {

CLS_SdvWriter::CLS_SdvWriter(std::string _strTarget) : m_file(std::move(_strTarget)) {}

CLS_SdvWriter::~CLS_SdvWriter()
{
    if (!m_vecPassword.empty()) OPENSSL_cleanse(m_vecPassword.data(), m_vecPassword.size());
    OPENSSL_cleanse(m_arrKey, sizeof(m_arrKey));
    if (!m_vecPending.empty()) OPENSSL_cleanse(m_vecPending.data(), m_vecPending.size());
}

bool CLS_SdvWriter::Open(const char* _pPassword, std::size_t _sizePassword)
{
    m_blSealed = _pPassword != nullptr;
    if (m_blSealed) {
        m_vecPassword.assign(_pPassword, _pPassword + _sizePassword);
        if (RAND_bytes(m_arrKey, sizeof(m_arrKey)) != 1 ||
            RAND_bytes(m_arrPrefix.data(), static_cast<int>(m_arrPrefix.size())) != 1)
            return false;
        m_pCipher = std::make_unique<CLS_SdvChunkCipher>(m_arrKey, m_arrPrefix.data());
        m_vecSealed.resize(ST_SdvHeader::kChunkSize + ST_SdvHeader::kTagSize);
    }
    m_vecPending.reserve(ST_SdvHeader::kChunkSize);
    if (!m_file.Open()) return false;
    // Room for the header, written for real once the size is known.
    const std::array<std::uint8_t, ST_SdvHeader::kSize> arrPlaceholder{};
    m_blOpen = m_file.Write(arrPlaceholder.data(), arrPlaceholder.size());
    return m_blOpen;
}

bool CLS_SdvWriter::SealPending(bool _blLast)
{
    if (!m_blSealed) {
        const bool blOk = m_file.Write(m_vecPending.data(), m_vecPending.size());
        m_vecPending.clear();
        return blOk;
    }
    const bool blOk =
        m_pCipher->Seal(m_u32Chunk, _blLast, m_vecPending.data(), m_vecPending.size(),
                        m_vecSealed.data()) &&
        m_file.Write(m_vecSealed.data(), m_vecPending.size() + ST_SdvHeader::kTagSize);
    OPENSSL_cleanse(m_vecPending.data(), m_vecPending.size());
    m_vecPending.clear();
    ++m_u32Chunk;
    return blOk;
}

bool CLS_SdvWriter::Write(const std::uint8_t* _pData, std::size_t _sizeData)
{
    if (!m_blOpen) return false;
    while (_sizeData > 0) {
        // A full chunk is sealed only when more data follows it: until then
        // it may be the last one, which is sealed differently.
        if (m_vecPending.size() == ST_SdvHeader::kChunkSize && !SealPending(false)) return false;
        const std::size_t sizeTake =
            std::min(_sizeData, ST_SdvHeader::kChunkSize - m_vecPending.size());
        m_vecPending.insert(m_vecPending.end(), _pData, _pData + sizeTake);
        _pData += sizeTake;
        _sizeData -= sizeTake;
        m_u64Written += sizeTake;
    }
    return true;
}

bool CLS_SdvWriter::Commit(const ST_SdvHeader& _stMetadata)
{
    if (!m_blOpen || !SealPending(true)) return false;
    ST_SdvHeader stHeader = _stMetadata;
    stHeader.m_blSealed = false;
    stHeader.m_u32ChunkSize = ST_SdvHeader::kChunkSize;
    stHeader.m_u64PayloadSize = m_u64Written;
    if (m_blSealed) {
        stHeader.m_arrNoncePrefix = m_arrPrefix;
        if (!stHeader.WrapKey(m_vecPassword.data(), m_vecPassword.size(), m_arrKey)) return false;
    }
    const auto arrHeader = stHeader.Serialize();
    return m_file.Seek(0) && m_file.Write(arrHeader.data(), arrHeader.size()) && m_file.Commit();
}

}  // namespace RK_Framework::VideoPlayer
