#pragma once

#include <cstddef>
#include <cstdint>

#include "ST_SdvHeader.h"

typedef struct evp_cipher_ctx_st EVP_CIPHER_CTX;

namespace RK_Framework::VideoPlayer {

// Seals and opens the payload chunks of one file with AES-256-GCM. The nonce
// is the file's random prefix followed by the chunk number, and whether the
// chunk is the last one is bound as associated data: a chunk moved, dropped,
// repeated, or made the last by cutting the file fails to open.
class CLS_SdvChunkCipher
{
public:
    // _pKey: kKeySize bytes, copied (and wiped again by the destructor).
    CLS_SdvChunkCipher(const std::uint8_t* _pKey, const std::uint8_t* _pNoncePrefix);
    ~CLS_SdvChunkCipher();
    CLS_SdvChunkCipher(const CLS_SdvChunkCipher&) = delete;
    CLS_SdvChunkCipher& operator=(const CLS_SdvChunkCipher&) = delete;

    // _pOut receives _sizeIn bytes followed by the tag.
    bool Seal(std::uint32_t _u32Index, bool _blLast, const std::uint8_t* _pIn, std::size_t _sizeIn,
              std::uint8_t* _pOut);
    // _pIn holds _sizePlain bytes followed by the tag; false (and _pOut
    // wiped) when they are not what was sealed under this number.
    bool Open(std::uint32_t _u32Index, bool _blLast, const std::uint8_t* _pIn,
              std::size_t _sizePlain, std::uint8_t* _pOut);

private:
    bool Run(bool _blEncrypt, std::uint32_t _u32Index, bool _blLast, const std::uint8_t* _pIn,
             std::size_t _sizeIn, std::uint8_t* _pOut, std::uint8_t* _pTag);

    EVP_CIPHER_CTX* m_pCtx = nullptr;
    std::uint8_t m_arrKey[ST_SdvHeader::kKeySize];
    std::uint8_t m_arrNonce[12];
};

}  // namespace RK_Framework::VideoPlayer
