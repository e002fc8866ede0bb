#include "CLS_PacketQueue.h"

extern "C" {
#include <libavcodec/packet.h>
}

namespace RK_Framework::VideoPlayer {

CLS_PacketQueue::~CLS_PacketQueue()
{
    Flush();
}

void CLS_PacketQueue::Put(AVPacket* _pPacket, int _iSerial)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_blAbort) {
        av_packet_free(&_pPacket);
        return;
    }
    if (_pPacket) m_sizeBytes += static_cast<std::size_t>(_pPacket->size);
    m_dqEntries.push_back({_pPacket, _iSerial});
    m_cvNotEmpty.notify_one();
}

bool CLS_PacketQueue::Get(ST_Entry& _stEntry, std::chrono::milliseconds _timeout)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_cvNotEmpty.wait_for(lock, _timeout,
                               [this] { return m_blAbort || !m_dqEntries.empty(); }))
        return false;
    if (m_blAbort) return false;
    _stEntry = m_dqEntries.front();
    m_dqEntries.pop_front();
    if (_stEntry.m_pPacket) m_sizeBytes -= static_cast<std::size_t>(_stEntry.m_pPacket->size);
    return true;
}

void CLS_PacketQueue::Flush()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (auto& stEntry : m_dqEntries)
        av_packet_free(&stEntry.m_pPacket);
    m_dqEntries.clear();
    m_sizeBytes = 0;
}

void CLS_PacketQueue::Abort()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_blAbort = true;
    m_cvNotEmpty.notify_all();
}

std::size_t CLS_PacketQueue::Count() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_dqEntries.size();
}

std::size_t CLS_PacketQueue::Bytes() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_sizeBytes;
}

}  // namespace RK_Framework::VideoPlayer
