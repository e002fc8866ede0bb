#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "CLS_AtomicFile.h"
#include "ST_SdvHeader.h"

namespace RK_Framework::VideoPlayer {

class CLS_SdvChunkCipher;

// Writes an .sdv file as its payload comes, without knowing its size ahead:
// full chunks are sealed as they fill (one is held back, since only the end
// tells which chunk is the last), and the header, which binds the payload
// size and the metadata into the key wrap, is written over its placeholder by
// Commit. The file appears under its name only then; dropped before, it
// leaves nothing.
class CLS_SdvWriter
{
public:
    explicit CLS_SdvWriter(std::string _strTarget);
    ~CLS_SdvWriter();
    CLS_SdvWriter(const CLS_SdvWriter&) = delete;
    CLS_SdvWriter& operator=(const CLS_SdvWriter&) = delete;

    // Sealed under _pPassword; a null password writes a plain payload. The
    // password is kept (wiped on destruction) until Commit wraps the key.
    bool Open(const char* _pPassword, std::size_t _sizePassword);
    bool Write(const std::uint8_t* _pData, std::size_t _sizeData);
    // Payload bytes written so far.
    std::uint64_t Written() const { return m_u64Written; }
    // _stMetadata: duration, picture, codec and creation time; the writer
    // fills in the rest.
    bool Commit(const ST_SdvHeader& _stMetadata);

private:
    bool SealPending(bool _blLast);

    CLS_AtomicFile m_file;
    bool m_blSealed = false;
    std::vector<char> m_vecPassword;
    std::uint8_t m_arrKey[ST_SdvHeader::kKeySize] = {};
    std::array<std::uint8_t, ST_SdvHeader::kPrefixSize> m_arrPrefix{};
    std::unique_ptr<CLS_SdvChunkCipher> m_pCipher;
    std::vector<std::uint8_t> m_vecPending;  // the chunk being filled
    std::vector<std::uint8_t> m_vecSealed;
    std::uint32_t m_u32Chunk = 0;
    std::uint64_t m_u64Written = 0;
    bool m_blOpen = false;
};

}  // namespace RK_Framework::VideoPlayer
