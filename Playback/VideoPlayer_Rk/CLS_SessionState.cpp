#include "CLS_SessionState.h"

#include <chrono>

namespace RK_Framework::VideoPlayer {

int CLS_SessionState::RequestSeek(ST_SeekRequest _stRequest)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    _stRequest.m_iSerial = m_iSerial.load() + 1;
    m_stLatest = _stRequest;
    m_blPending = true;
    m_iSerial = _stRequest.m_iSerial;
    m_cvWork.notify_all();
    return _stRequest.m_iSerial;
}

bool CLS_SessionState::RetrySeek(int _iSerial, ST_SeekRequest _stRequest)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_iSerial.load() != _iSerial) return false;
    _stRequest.m_iSerial = _iSerial + 1;
    m_stLatest = _stRequest;
    m_blPending = true;
    m_iSerial = _stRequest.m_iSerial;
    m_cvWork.notify_all();
    return true;
}

bool CLS_SessionState::TakeSeek(ST_SeekRequest& _stRequest)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_blPending) return false;
    m_blPending = false;
    _stRequest = m_stLatest;
    return true;
}

ST_SeekRequest CLS_SessionState::LatestSeek() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_stLatest;
}

void CLS_SessionState::WaitForWork(int _iMs)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_cvWork.wait_for(lock, std::chrono::milliseconds(_iMs),
                      [this] { return m_blPending || m_blAbort.load(); });
}

void CLS_SessionState::Wake()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_cvWork.notify_all();
}

}  // namespace RK_Framework::VideoPlayer
