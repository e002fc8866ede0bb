#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>

struct AVFrame;

namespace RK_Framework::VideoPlayer {

// A decoded picture with its place on the playback timeline.
struct ST_VideoFrame
{
    AVFrame* m_pFrame = nullptr;  // null: end of stream for this serial
    int m_iSerial = 0;
    long long m_llPts = 0;     // place on the timeline (video time base), gaps filled
    double m_dTime = 0.0;      // seconds from the first picture
    double m_dDuration = 0.0;  // seconds this picture stays on screen at 1X
    // The step cache already holds the pictures just before this one.
    bool m_blFollowsCache = false;
};

// Decoded pictures waiting for their time. Bounded: the decoder waits when it
// is far enough ahead. Entries of a serial older than the latest are dropped
// rather than waited on.
class CLS_FrameQueue
{
public:
    CLS_FrameQueue(std::size_t _sizeCapacity, const std::atomic<int>& _iLatestSerial);
    ~CLS_FrameQueue();
    CLS_FrameQueue(const CLS_FrameQueue&) = delete;
    CLS_FrameQueue& operator=(const CLS_FrameQueue&) = delete;

    // Takes ownership of the frame. Waits for room; false (frame freed) when
    // the entry went stale or the queue was aborted meanwhile.
    bool Put(ST_VideoFrame _stFrame);
    // Put for a producer that nobody consumes from yet: false (and the
    // picture freed) when the queue is full, instead of waiting for ever.
    bool PutNoWait(ST_VideoFrame _stFrame);
    // Waits up to _timeout for the head; the head stays queued.
    bool Peek(ST_VideoFrame& _stFrame, std::chrono::milliseconds _timeout);
    // Second entry, if queued.
    bool PeekNext(ST_VideoFrame& _stFrame);
    // Removes the head and hands it over (caller frees).
    bool Pop(ST_VideoFrame& _stFrame);
    void Flush();
    // Wakes a waiting producer (after the latest serial changed).
    void Wake();
    void Abort();
    // A picture size known only once the stream is open changes how many
    // pictures fit the memory the queue may hold.
    void SetCapacity(std::size_t _sizeCapacity);
    std::size_t Count() const;

private:
    std::size_t m_sizeCapacity;
    const std::atomic<int>& m_iLatestSerial;
    mutable std::mutex m_mutex;
    std::condition_variable m_cvChanged;
    std::deque<ST_VideoFrame> m_dqFrames;
    bool m_blAbort = false;
};

void FreeVideoFrame(ST_VideoFrame& _stFrame);

}  // namespace RK_Framework::VideoPlayer
