#include "ST_SdvHeader.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace RK_Framework::VideoPlayer {

namespace {

// Eight bytes that no media container starts with; the CR LF and ^Z catch a
// copy that went through a text-mode transfer.
constexpr std::uint8_t kMagic[8] = {'Q', 'S', 'D', 'V', '\r', '\n', 0x1a, '\n'};
constexpr std::uint16_t kFlagSealed = 0x0001;
constexpr std::uint8_t kKdfNone = 0;
constexpr std::uint8_t kKdfScrypt = 1;

// Byte offsets of the fields.
constexpr std::size_t kOffVersion = 8, kOffFlags = 10, kOffHeaderSize = 12, kOffChunk = 16,
                      kOffPayload = 20, kOffDuration = 28, kOffWidth = 36, kOffHeight = 40,
                      kOffCodec = 44, kOffCreated = 60, kOffKdf = 68, kOffLog2N = 69, kOffR = 70,
                      kOffP = 71, kOffSalt = 72, kOffPrefix = 88, kOffWrapNonce = 96,
                      kOffWrapped = 108, kOffChecksum = 160;
// The wrapped key authenticates every field before it, so a password-holder
// knows the metadata and parameters are the ones it was sealed with.
constexpr std::size_t kWrapAadSize = kOffWrapped;
constexpr std::size_t kChecksumSize = 32;
static_assert(kOffWrapped + ST_SdvHeader::kKeySize + ST_SdvHeader::kTagSize + 4 == kOffChecksum);
static_assert(kOffChecksum + kChecksumSize == ST_SdvHeader::kSize);

template <typename T>
void Put(std::uint8_t* _pOut, T _tValue)
{
    for (std::size_t i = 0; i < sizeof(T); ++i)
        _pOut[i] = static_cast<std::uint8_t>(static_cast<std::uint64_t>(_tValue) >> (8 * i));
}

template <typename T>
T Get(const std::uint8_t* _pIn)
{
    std::uint64_t u64Value = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        u64Value |= static_cast<std::uint64_t>(_pIn[i]) << (8 * i);
    return static_cast<T>(u64Value);
}

bool Checksum(const std::uint8_t* _pData, std::size_t _sizeData, std::uint8_t* _pOut)
{
    unsigned int uiSize = 0;
    return EVP_Digest(_pData, _sizeData, _pOut, &uiSize, EVP_sha256(), nullptr) == 1 &&
           uiSize == kChecksumSize;
}

struct ST_CtxFree
{
    void operator()(EVP_CIPHER_CTX* _pCtx) const { EVP_CIPHER_CTX_free(_pCtx); }
};
using CipherCtx = std::unique_ptr<EVP_CIPHER_CTX, ST_CtxFree>;

// Key-wrap with AES-256-GCM: _pIn and _pOut hold kKeySize bytes, _pTag kTagSize.
bool Gcm(bool _blEncrypt, const std::uint8_t* _pKey, const std::uint8_t* _pNonce,
         const std::uint8_t* _pAad, std::size_t _sizeAad, const std::uint8_t* _pIn,
         std::uint8_t* _pOut, std::uint8_t* _pTag)
{
    CipherCtx pCtx(EVP_CIPHER_CTX_new());
    int iLen = 0;
    if (!pCtx ||
        EVP_CipherInit_ex(pCtx.get(), EVP_aes_256_gcm(), nullptr, _pKey, _pNonce,
                          _blEncrypt ? 1 : 0) != 1 ||
        EVP_CipherUpdate(pCtx.get(), nullptr, &iLen, _pAad, static_cast<int>(_sizeAad)) != 1 ||
        EVP_CipherUpdate(pCtx.get(), _pOut, &iLen, _pIn, ST_SdvHeader::kKeySize) != 1)
        return false;
    if (!_blEncrypt &&
        EVP_CIPHER_CTX_ctrl(pCtx.get(), EVP_CTRL_GCM_SET_TAG, ST_SdvHeader::kTagSize, _pTag) != 1)
        return false;
    if (EVP_CipherFinal_ex(pCtx.get(), _pOut + iLen, &iLen) != 1) return false;
    return !_blEncrypt || EVP_CIPHER_CTX_ctrl(pCtx.get(), EVP_CTRL_GCM_GET_TAG,
                                              ST_SdvHeader::kTagSize, _pTag) == 1;
}

}  // namespace

ST_SdvHeader::EM_Parse ST_SdvHeader::Parse(const std::uint8_t* _pData, std::size_t _sizeData,
                                           ST_SdvHeader& _stOut)
{
    if (_sizeData < sizeof(kMagic) || std::memcmp(_pData, kMagic, sizeof(kMagic)) != 0)
        return SDV_NOT_SDV;
    if (_sizeData < kSize) return SDV_DAMAGED;
    std::uint8_t arrSum[kChecksumSize];
    if (!Checksum(_pData, kOffChecksum, arrSum) ||
        std::memcmp(arrSum, _pData + kOffChecksum, kChecksumSize) != 0)
        return SDV_DAMAGED;
    // A later version may change the layout; we cannot read it.
    if (Get<std::uint16_t>(_pData + kOffVersion) != kVersion ||
        Get<std::uint32_t>(_pData + kOffHeaderSize) != kSize)
        return SDV_DAMAGED;

    ST_SdvHeader stHeader;
    stHeader.m_blSealed = (Get<std::uint16_t>(_pData + kOffFlags) & kFlagSealed) != 0;
    stHeader.m_u32ChunkSize = Get<std::uint32_t>(_pData + kOffChunk);
    stHeader.m_u64PayloadSize = Get<std::uint64_t>(_pData + kOffPayload);
    stHeader.m_u64DurationMs = Get<std::uint64_t>(_pData + kOffDuration);
    stHeader.m_u32Width = Get<std::uint32_t>(_pData + kOffWidth);
    stHeader.m_u32Height = Get<std::uint32_t>(_pData + kOffHeight);
    const char* pCodec = reinterpret_cast<const char*>(_pData + kOffCodec);
    stHeader.m_strCodec.assign(pCodec, strnlen(pCodec, kCodecSize));
    stHeader.m_i64Created = Get<std::int64_t>(_pData + kOffCreated);
    const std::uint8_t u8Kdf = _pData[kOffKdf];
    stHeader.m_u8Log2N = _pData[kOffLog2N];
    stHeader.m_u8R = _pData[kOffR];
    stHeader.m_u8P = _pData[kOffP];
    std::copy_n(_pData + kOffSalt, kSaltSize, stHeader.m_arrSalt.begin());
    std::copy_n(_pData + kOffPrefix, kPrefixSize, stHeader.m_arrNoncePrefix.begin());
    std::copy_n(_pData + kOffWrapNonce, kWrapNonceSize, stHeader.m_arrWrapNonce.begin());
    std::copy_n(_pData + kOffWrapped, stHeader.m_arrWrappedKey.size(),
                stHeader.m_arrWrappedKey.begin());

    // Sizes, positions and chunk counts are reckoned in signed 64 bits; a
    // payload size beyond them would turn negative there.
    if (stHeader.m_u32ChunkSize != kChunkSize || stHeader.m_u64PayloadSize > kMaxPayloadSize)
        return SDV_DAMAGED;
    // Costs are bounded so that a forged header cannot make us allocate
    // gigabytes or think for minutes. Each parameter within its range is not
    // enough: N = 2^22 with r = 32 asks for 16 GiB, so their products are
    // bounded as well.
    if (stHeader.m_blSealed &&
        (u8Kdf != kKdfScrypt || stHeader.m_u8Log2N < 10 || stHeader.m_u8Log2N > 22 ||
         stHeader.m_u8R < 1 || stHeader.m_u8R > 32 || stHeader.m_u8P < 1 || stHeader.m_u8P > 16 ||
         (std::uint64_t(128) * stHeader.m_u8R << stHeader.m_u8Log2N) > kMaxScryptBytes ||
         (std::uint64_t(stHeader.m_u8R) * stHeader.m_u8P << stHeader.m_u8Log2N) > kMaxScryptWork ||
         stHeader.ChunkCount() > UINT32_MAX))
        return SDV_DAMAGED;
    if (!stHeader.m_blSealed && u8Kdf != kKdfNone) return SDV_DAMAGED;
    _stOut = stHeader;
    return SDV_OK;
}

std::array<std::uint8_t, ST_SdvHeader::kSize> ST_SdvHeader::Serialize() const
{
    std::array<std::uint8_t, kSize> arrOut{};
    std::uint8_t* p = arrOut.data();
    std::copy_n(kMagic, sizeof(kMagic), p);
    Put<std::uint16_t>(p + kOffVersion, kVersion);
    Put<std::uint16_t>(p + kOffFlags, m_blSealed ? kFlagSealed : 0);
    Put<std::uint32_t>(p + kOffHeaderSize, kSize);
    Put<std::uint32_t>(p + kOffChunk, m_u32ChunkSize);
    Put<std::uint64_t>(p + kOffPayload, m_u64PayloadSize);
    Put<std::uint64_t>(p + kOffDuration, m_u64DurationMs);
    Put<std::uint32_t>(p + kOffWidth, m_u32Width);
    Put<std::uint32_t>(p + kOffHeight, m_u32Height);
    std::copy_n(m_strCodec.data(), std::min(m_strCodec.size(), kCodecSize - 1), p + kOffCodec);
    Put<std::int64_t>(p + kOffCreated, m_i64Created);
    p[kOffKdf] = m_blSealed ? kKdfScrypt : kKdfNone;
    p[kOffLog2N] = m_u8Log2N;
    p[kOffR] = m_u8R;
    p[kOffP] = m_u8P;
    std::copy(m_arrSalt.begin(), m_arrSalt.end(), p + kOffSalt);
    std::copy(m_arrNoncePrefix.begin(), m_arrNoncePrefix.end(), p + kOffPrefix);
    std::copy(m_arrWrapNonce.begin(), m_arrWrapNonce.end(), p + kOffWrapNonce);
    std::copy(m_arrWrappedKey.begin(), m_arrWrappedKey.end(), p + kOffWrapped);
    Checksum(p, kOffChecksum, p + kOffChecksum);
    return arrOut;
}

std::uint64_t ST_SdvHeader::ChunkCount() const
{
    // An empty payload is still one (empty) last chunk, so that cutting a
    // file down to its header is noticed.
    return std::max<std::uint64_t>(1, (m_u64PayloadSize + m_u32ChunkSize - 1) / m_u32ChunkSize);
}

std::uint64_t ST_SdvHeader::SealedPayloadBytes() const
{
    return m_u64PayloadSize + ChunkCount() * kTagSize;
}

bool ST_SdvHeader::DeriveKey(const char* _pPassword, std::size_t _sizePassword,
                             std::uint8_t* _pOut) const
{
    const std::uint64_t u64N = std::uint64_t(1) << m_u8Log2N;
    // scrypt needs 128 * r * N bytes, and a little more for p > 1.
    const std::uint64_t u64MaxMem = 256ull * m_u8R * (u64N + m_u8P);
    return EVP_PBE_scrypt(_pPassword, _sizePassword, m_arrSalt.data(), m_arrSalt.size(), u64N,
                          m_u8R, m_u8P, u64MaxMem, _pOut, kKeySize) == 1;
}

bool ST_SdvHeader::WrapKey(const char* _pPassword, std::size_t _sizePassword,
                           const std::uint8_t* _pKey)
{
    m_blSealed = true;
    if (m_u8Log2N == 0) {
        m_u8Log2N = kDefaultLog2N;
        m_u8R = kDefaultR;
        m_u8P = kDefaultP;
    }
    if (RAND_bytes(m_arrSalt.data(), kSaltSize) != 1 ||
        RAND_bytes(m_arrWrapNonce.data(), kWrapNonceSize) != 1)
        return false;
    std::uint8_t arrKek[kKeySize];
    const auto arrHeader = Serialize();
    const bool blOk = DeriveKey(_pPassword, _sizePassword, arrKek) &&
                      Gcm(true, arrKek, m_arrWrapNonce.data(), arrHeader.data(), kWrapAadSize,
                          _pKey, m_arrWrappedKey.data(), m_arrWrappedKey.data() + kKeySize);
    OPENSSL_cleanse(arrKek, sizeof(arrKek));
    return blOk;
}

bool ST_SdvHeader::UnwrapKey(const char* _pPassword, std::size_t _sizePassword,
                             std::uint8_t* _pKey) const
{
    if (!m_blSealed) return false;
    std::uint8_t arrKek[kKeySize];
    std::array<std::uint8_t, kKeySize + kTagSize> arrWrapped = m_arrWrappedKey;
    const auto arrHeader = Serialize();
    const bool blOk = DeriveKey(_pPassword, _sizePassword, arrKek) &&
                      Gcm(false, arrKek, m_arrWrapNonce.data(), arrHeader.data(), kWrapAadSize,
                          arrWrapped.data(), _pKey, arrWrapped.data() + kKeySize);
    OPENSSL_cleanse(arrKek, sizeof(arrKek));
    if (!blOk) OPENSSL_cleanse(_pKey, kKeySize);
    return blOk;
}

}  // namespace RK_Framework::VideoPlayer
