#pragma once

#include <thread>

namespace RK_Framework::VideoPlayer {

class CLS_MediaSource;
class CLS_PacketQueue;
class CLS_SessionState;
struct ST_SeekRequest;

// Reads the container ahead of the decoders, never further than the queues
// allow, and carries out seeks: the latest request wins, queued packets of the
// old position are dropped.
class CLS_Demuxer
{
public:
    CLS_Demuxer(CLS_SessionState& _state, CLS_MediaSource& _source, CLS_PacketQueue& _videoQueue,
                CLS_PacketQueue& _audioQueue);
    ~CLS_Demuxer();
    CLS_Demuxer(const CLS_Demuxer&) = delete;
    CLS_Demuxer& operator=(const CLS_Demuxer&) = delete;

    void Start();
    // The state's abort flag must be set first.
    void Join();

private:
    void Run();
    bool SeekTo(const ST_SeekRequest& _stSeek);
    bool QueuesFull() const;

    CLS_SessionState& m_state;
    CLS_MediaSource& m_source;
    CLS_PacketQueue& m_videoQueue;
    CLS_PacketQueue& m_audioQueue;
    std::thread m_thread;
};

}  // namespace RK_Framework::VideoPlayer
