#include "CLS_FrameQueue.h"

#include <algorithm>

extern "C" {
#include <libavutil/frame.h>
}

namespace RK_Framework::VideoPlayer {

void FreeVideoFrame(ST_VideoFrame& _stFrame)
{
    av_frame_free(&_stFrame.m_pFrame);
}

CLS_FrameQueue::CLS_FrameQueue(std::size_t _sizeCapacity, const std::atomic<int>& _iLatestSerial)
    : m_sizeCapacity(_sizeCapacity), m_iLatestSerial(_iLatestSerial)
{}

CLS_FrameQueue::~CLS_FrameQueue()
{
    Flush();
}

bool CLS_FrameQueue::Put(ST_VideoFrame _stFrame)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_cvChanged.wait(lock, [&] {
        return m_blAbort || m_dqFrames.size() < m_sizeCapacity ||
               _stFrame.m_iSerial != m_iLatestSerial.load();
    });
    if (m_blAbort || _stFrame.m_iSerial != m_iLatestSerial.load()) {
        FreeVideoFrame(_stFrame);
        return false;
    }
    m_dqFrames.push_back(_stFrame);
    m_cvChanged.notify_all();
    return true;
}

bool CLS_FrameQueue::PutNoWait(ST_VideoFrame _stFrame)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_blAbort || m_dqFrames.size() >= m_sizeCapacity ||
        _stFrame.m_iSerial != m_iLatestSerial.load()) {
        FreeVideoFrame(_stFrame);
        return false;
    }
    m_dqFrames.push_back(_stFrame);
    m_cvChanged.notify_all();
    return true;
}

bool CLS_FrameQueue::Peek(ST_VideoFrame& _stFrame, std::chrono::milliseconds _timeout)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_cvChanged.wait_for(lock, _timeout, [this] { return m_blAbort || !m_dqFrames.empty(); }))
        return false;
    if (m_blAbort) return false;
    _stFrame = m_dqFrames.front();
    return true;
}

bool CLS_FrameQueue::PeekNext(ST_VideoFrame& _stFrame)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_dqFrames.size() < 2) return false;
    _stFrame = m_dqFrames[1];
    return true;
}

bool CLS_FrameQueue::Pop(ST_VideoFrame& _stFrame)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_dqFrames.empty()) return false;
    _stFrame = m_dqFrames.front();
    m_dqFrames.pop_front();
    m_cvChanged.notify_all();
    return true;
}

void CLS_FrameQueue::Flush()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (auto& stFrame : m_dqFrames)
        FreeVideoFrame(stFrame);
    m_dqFrames.clear();
    m_cvChanged.notify_all();
}

void CLS_FrameQueue::Wake()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_cvChanged.notify_all();
}

void CLS_FrameQueue::Abort()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_blAbort = true;
    m_cvChanged.notify_all();
}

void CLS_FrameQueue::SetCapacity(std::size_t _sizeCapacity)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_sizeCapacity = std::max<std::size_t>(1, _sizeCapacity);
    m_cvChanged.notify_all();
}

std::size_t CLS_FrameQueue::Count() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_dqFrames.size();
}

}  // namespace RK_Framework::VideoPlayer
