#include "CLS_SdvChunkCipher.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <algorithm>

namespace RK_Framework::VideoPlayer {

namespace {
constexpr std::uint8_t kAadMiddle = 0x00;
constexpr std::uint8_t kAadLast = 0x01;
}  // namespace

CLS_SdvChunkCipher::CLS_SdvChunkCipher(const std::uint8_t* _pKey, const std::uint8_t* _pNoncePrefix)
    : m_pCtx(EVP_CIPHER_CTX_new())
{
    std::copy_n(_pKey, sizeof(m_arrKey), m_arrKey);
    std::copy_n(_pNoncePrefix, ST_SdvHeader::kPrefixSize, m_arrNonce);
}

CLS_SdvChunkCipher::~CLS_SdvChunkCipher()
{
    EVP_CIPHER_CTX_free(m_pCtx);
    OPENSSL_cleanse(m_arrKey, sizeof(m_arrKey));
}

bool CLS_SdvChunkCipher::Run(bool _blEncrypt, std::uint32_t _u32Index, bool _blLast,
                             const std::uint8_t* _pIn, std::size_t _sizeIn, std::uint8_t* _pOut,
                             std::uint8_t* _pTag)
{
    if (!m_pCtx) return false;
    for (std::size_t i = 0; i < 4; ++i)
        m_arrNonce[ST_SdvHeader::kPrefixSize + i] = static_cast<std::uint8_t>(_u32Index >> (8 * i));
    const std::uint8_t u8Aad = _blLast ? kAadLast : kAadMiddle;
    int iLen = 0;
    if (EVP_CipherInit_ex(m_pCtx, EVP_aes_256_gcm(), nullptr, m_arrKey, m_arrNonce,
                          _blEncrypt ? 1 : 0) != 1 ||
        EVP_CipherUpdate(m_pCtx, nullptr, &iLen, &u8Aad, 1) != 1)
        return false;
    if (_sizeIn > 0 && EVP_CipherUpdate(m_pCtx, _pOut, &iLen, _pIn, static_cast<int>(_sizeIn)) != 1)
        return false;
    if (!_blEncrypt && EVP_CIPHER_CTX_ctrl(m_pCtx, EVP_CTRL_GCM_SET_TAG,
                                           static_cast<int>(ST_SdvHeader::kTagSize), _pTag) != 1)
        return false;
    int iFinal = 0;
    if (EVP_CipherFinal_ex(m_pCtx, _pOut + (_sizeIn > 0 ? iLen : 0), &iFinal) != 1) return false;
    return !_blEncrypt || EVP_CIPHER_CTX_ctrl(m_pCtx, EVP_CTRL_GCM_GET_TAG,
                                              static_cast<int>(ST_SdvHeader::kTagSize), _pTag) == 1;
}

bool CLS_SdvChunkCipher::Seal(std::uint32_t _u32Index, bool _blLast, const std::uint8_t* _pIn,
                              std::size_t _sizeIn, std::uint8_t* _pOut)
{
    return Run(true, _u32Index, _blLast, _pIn, _sizeIn, _pOut, _pOut + _sizeIn);
}

bool CLS_SdvChunkCipher::Open(std::uint32_t _u32Index, bool _blLast, const std::uint8_t* _pIn,
                              std::size_t _sizePlain, std::uint8_t* _pOut)
{
    std::uint8_t arrTag[ST_SdvHeader::kTagSize];
    std::copy_n(_pIn + _sizePlain, sizeof(arrTag), arrTag);
    if (Run(false, _u32Index, _blLast, _pIn, _sizePlain, _pOut, arrTag)) return true;
    // Nothing unauthenticated leaves here, not even by accident.
    OPENSSL_cleanse(_pOut, _sizePlain);
    return false;
}

}  // namespace RK_Framework::VideoPlayer
