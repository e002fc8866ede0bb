#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>

struct AVPacket;

namespace RK_Framework::VideoPlayer {

// Demuxed packets of one stream on their way to a decoder. Every entry carries
// the serial of the seek it belongs to, so a decoder can tell stale packets
// from the new position. A null packet marks the end of the stream.
class CLS_PacketQueue
{
public:
    struct ST_Entry
    {
        AVPacket* m_pPacket = nullptr;  // owned by whoever holds the entry
        int m_iSerial = 0;
    };

    CLS_PacketQueue() = default;
    ~CLS_PacketQueue();
    CLS_PacketQueue(const CLS_PacketQueue&) = delete;
    CLS_PacketQueue& operator=(const CLS_PacketQueue&) = delete;

    // Takes ownership of _pPacket (null for end of stream).
    void Put(AVPacket* _pPacket, int _iSerial);
    // Waits up to _timeout for an entry; false on timeout or abort.
    bool Get(ST_Entry& _stEntry, std::chrono::milliseconds _timeout);
    // Frees everything queued.
    void Flush();
    void Abort();

    std::size_t Count() const;
    std::size_t Bytes() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_cvNotEmpty;
    std::deque<ST_Entry> m_dqEntries;
    std::size_t m_sizeBytes = 0;
    bool m_blAbort = false;
};

}  // namespace RK_Framework::VideoPlayer
