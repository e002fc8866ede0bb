#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace RK_Framework::VideoPlayer {

// The clear header in front of every .sdv file (docs/sdv-format.md gives the
// byte layout). Everything a player shows before the password lives here,
// and so do the parameters that turn a password into the file's content key.
struct ST_SdvHeader
{
    static constexpr std::size_t kSize = 192;
    static constexpr std::uint16_t kVersion = 1;
    static constexpr std::uint32_t kChunkSize = 64 * 1024;
    static constexpr std::size_t kTagSize = 16;
    static constexpr std::size_t kKeySize = 32;
    static constexpr std::size_t kSaltSize = 16;
    static constexpr std::size_t kPrefixSize = 8;
    static constexpr std::size_t kWrapNonceSize = 12;
    static constexpr std::size_t kCodecSize = 16;
    static constexpr std::uint64_t kMaxPayloadSize = std::uint64_t(1) << 62;
    // 24 MiB and about a tenth of a second on our 2-core machines: slow for
    // someone guessing, unnoticed by someone typing. The time comes from p,
    // not from a larger N, which outgrows the cache here and then costs
    // three to four times as much from one run to the next.
    static constexpr std::uint8_t kDefaultLog2N = 14;
    static constexpr std::uint8_t kDefaultR = 12;
    static constexpr std::uint8_t kDefaultP = 2;
    // What a header may ask of scrypt at most: memory (128 * r * N bytes),
    // and work (r * N * p), 43 times the default, a few seconds here.
    static constexpr std::uint64_t kMaxScryptBytes = 256u * 1024u * 1024u;
    static constexpr std::uint64_t kMaxScryptWork = std::uint64_t(1) << 24;

    enum EM_Parse { SDV_NOT_SDV, SDV_DAMAGED, SDV_OK };

    bool m_blSealed = false;
    std::uint32_t m_u32ChunkSize = kChunkSize;
    std::uint64_t m_u64PayloadSize = 0;
    std::uint64_t m_u64DurationMs = 0;
    std::uint32_t m_u32Width = 0;
    std::uint32_t m_u32Height = 0;
    std::string m_strCodec;
    std::int64_t m_i64Created = 0;  // seconds since 1970, UTC
    std::uint8_t m_u8Log2N = 0;     // scrypt cost; all zero in a plain file
    std::uint8_t m_u8R = 0;
    std::uint8_t m_u8P = 0;
    std::array<std::uint8_t, kSaltSize> m_arrSalt{};
    std::array<std::uint8_t, kPrefixSize> m_arrNoncePrefix{};
    std::array<std::uint8_t, kWrapNonceSize> m_arrWrapNonce{};
    std::array<std::uint8_t, kKeySize + kTagSize> m_arrWrappedKey{};

    // SDV_NOT_SDV: no .sdv magic (a plain media file); SDV_DAMAGED: the magic
    // is there but the rest does not add up.
    static EM_Parse Parse(const std::uint8_t* _pData, std::size_t _sizeData, ST_SdvHeader& _stOut);
    std::array<std::uint8_t, kSize> Serialize() const;

    // Payload bytes on disk for a sealed payload of this size.
    std::uint64_t ChunkCount() const;
    std::uint64_t SealedPayloadBytes() const;

    // Draws a new salt and wrap nonce and wraps _pKey under _pPassword.
    bool WrapKey(const char* _pPassword, std::size_t _sizePassword, const std::uint8_t* _pKey);
    // False when the password does not unwrap the key (or the header was
    // altered since it was wrapped).
    bool UnwrapKey(const char* _pPassword, std::size_t _sizePassword, std::uint8_t* _pKey) const;

private:
    bool DeriveKey(const char* _pPassword, std::size_t _sizePassword, std::uint8_t* _pOut) const;
};

}  // namespace RK_Framework::VideoPlayer
