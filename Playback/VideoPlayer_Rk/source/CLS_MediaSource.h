#pragma once

#include <atomic>
#include <cstdint>
#include <string>

struct AVFormatContext;
struct AVIOContext;
struct AVPacket;
struct AVStream;

namespace RK_Framework::VideoPlayer {

// The opened container: which streams we play and how to move in it. The
// bytes come from the file directly, or from an AVIOContext the caller
// supplies (a sealed file is read through its own decrypting context).
class CLS_MediaSource
{
public:
    CLS_MediaSource();
    ~CLS_MediaSource();
    CLS_MediaSource(const CLS_MediaSource&) = delete;
    CLS_MediaSource& operator=(const CLS_MediaSource&) = delete;

    // _pIo: optional byte source; the source does not own it. False, with an
    // explanation in LastError(), when nothing playable was found.
    bool Open(const std::string& _strPath, AVIOContext* _pIo = nullptr);
    void Close();

    // 0 or an AVERROR (AVERROR_EOF at the end). Interrupted by Interrupt().
    int Read(AVPacket* _pPacket);
    // Moves to the keyframe at or before _i64Pts (timing stream's time base); with
    // _blToStart, to the very beginning of the data.
    bool Seek(std::int64_t _i64Pts, bool _blToStart);
    // Moves to the first packet at or after byte _i64Pos.
    bool SeekByte(std::int64_t _i64Pos);
    void Interrupt(bool _blInterrupt);
    // Moves on with every read and every packet while opening and reading:
    // standing still means the bytes stopped coming.
    std::uint64_t Progress() const { return m_u64Progress.load(std::memory_order_relaxed); }

    AVFormatContext* Format() const { return m_pFormat; }
    AVStream* VideoStream() const;
    AVStream* AudioStream() const;
    int VideoIndex() const { return m_iVideo; }
    int AudioIndex() const { return m_iAudio; }
    // The stream playback is timed by: the pictures, or the sound of a file
    // without any.
    int TimingIndex() const { return m_iVideo >= 0 ? m_iVideo : m_iAudio; }
    AVStream* TimingStream() const;
    // Container duration in seconds, negative when unknown.
    double DurationSeconds() const;
    // Seconds per picture as the container announces it (fallback 1/25).
    double NominalFrameDuration() const;
    const std::string& LastError() const { return m_strError; }

private:
    static int InterruptCallback(void* _pOpaque);

    AVFormatContext* m_pFormat = nullptr;
    int m_iVideo = -1;
    int m_iAudio = -1;
    std::atomic<bool> m_blInterrupt{false};
    std::atomic<std::uint64_t> m_u64Progress{0};
    std::string m_strError;
};

}  // namespace RK_Framework::VideoPlayer
