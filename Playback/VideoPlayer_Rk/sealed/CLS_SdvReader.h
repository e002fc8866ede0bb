#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "ST_SdvHeader.h"

namespace RK_Framework::VideoPlayer {

class CLS_SdvChunkCipher;

// Reads the payload of an .sdv file at any position. A sealed payload is
// opened chunk by chunk as reads reach it; the last few chunks are kept, so
// that a demuxer going back and forth near one spot (a seek, a step back,
// interleaved sound and pictures) authenticates each chunk once.
class CLS_SdvReader
{
public:
    enum EM_Open { OPEN_OK, OPEN_NOT_SDV, OPEN_DAMAGED, OPEN_IO_ERROR };
    static constexpr std::int64_t kReadDamaged = -1;
    static constexpr std::int64_t kReadIoError = -2;

    CLS_SdvReader();
    ~CLS_SdvReader();
    CLS_SdvReader(const CLS_SdvReader&) = delete;
    CLS_SdvReader& operator=(const CLS_SdvReader&) = delete;

    EM_Open Open(const std::string& _strPath);
    const ST_SdvHeader& Header() const { return m_stHeader; }
    // Plain payloads are readable at once; sealed ones after Unlock.
    bool Readable() const { return !m_stHeader.m_blSealed || m_pCipher; }
    // False when the password does not open the file.
    bool Unlock(const char* _pPassword, std::size_t _sizePassword);
    // Opens with the content key itself (kKeySize bytes).
    void UnlockWithKey(const std::uint8_t* _pKey);

    // Payload bytes (what a truncated plain file still holds).
    std::int64_t Size() const;
    std::int64_t FileSize() const { return m_i64FileSize; }
    // Bytes read, at most to the end of one chunk; 0 at the end;
    // kReadDamaged when a chunk fails to authenticate (DamagedChunk() names
    // it); kReadIoError when the file cannot be read.
    std::int64_t Read(std::int64_t _i64Pos, std::uint8_t* _pOut, std::size_t _sizeOut);
    std::int64_t DamagedChunk() const { return m_i64DamagedChunk; }

private:
    struct ST_CachedChunk
    {
        std::int64_t m_i64Index = -1;
        std::uint64_t m_u64Used = 0;
        std::vector<std::uint8_t> m_vecPlain;
    };
    // The cached chunk _i64Index, loaded if needed; null with the read status
    // in _i64Status when it cannot be had.
    const ST_CachedChunk* Chunk(std::int64_t _i64Index, std::int64_t& _i64Status);
    bool ReadAt(std::int64_t _i64Pos, std::uint8_t* _pOut, std::size_t _sizeOut);

    std::ifstream m_ifFile;
    std::int64_t m_i64FileSize = 0;
    ST_SdvHeader m_stHeader;
    std::unique_ptr<CLS_SdvChunkCipher> m_pCipher;
    std::vector<ST_CachedChunk> m_vecCache;
    std::vector<std::uint8_t> m_vecSealed;
    std::uint64_t m_u64Clock = 0;
    std::int64_t m_i64DamagedChunk = -1;
};

}  // namespace RK_Framework::VideoPlayer
