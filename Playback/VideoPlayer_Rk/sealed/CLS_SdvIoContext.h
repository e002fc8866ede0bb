#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct AVIOContext;

namespace RK_Framework::VideoPlayer {

class CLS_SdvReader;

// Lets FFmpeg read the payload of an .sdv file as if it were the whole file:
// positions are payload positions, and a sealed payload is decrypted only
// where the demuxer reads. A chunk that fails to authenticate reads as an
// error, never as data.
class CLS_SdvIoContext
{
public:
    // _pReader: open and readable. _strPath only names the file in the log.
    CLS_SdvIoContext(std::unique_ptr<CLS_SdvReader> _pReader, std::string _strPath);
    ~CLS_SdvIoContext();
    CLS_SdvIoContext(const CLS_SdvIoContext&) = delete;
    CLS_SdvIoContext& operator=(const CLS_SdvIoContext&) = delete;

    // Null when FFmpeg could not allocate it.
    AVIOContext* Context() const { return m_pContext; }
    // When the file was made, seconds since 1970 UTC; 0 when not recorded.
    std::int64_t Created() const;

    // What an AVIOContext seek callback answers for a stream at _i64Pos of
    // _i64Size bytes: the new position (the size itself for AVSEEK_SIZE), or
    // a negative error for a whence it does not know or a place before 0.
    static std::int64_t SeekTarget(std::int64_t _i64Pos, std::int64_t _i64Size,
                                   std::int64_t _i64Offset, int _iWhence);

private:
    static int ReadPacket(void* _pOpaque, std::uint8_t* _pBuffer, int _iSize);
    static std::int64_t Seek(void* _pOpaque, std::int64_t _i64Offset, int _iWhence);

    std::unique_ptr<CLS_SdvReader> m_pReader;
    std::string m_strPath;
    AVIOContext* m_pContext = nullptr;
    std::int64_t m_i64Pos = 0;
    std::int64_t m_i64Reported = -1;
};

}  // namespace RK_Framework::VideoPlayer
