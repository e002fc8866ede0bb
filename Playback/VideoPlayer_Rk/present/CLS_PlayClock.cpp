#include "CLS_PlayClock.h"

namespace RK_Framework::VideoPlayer {

double CLS_PlayClock::NowLocked(Clock::time_point _tpNow) const
{
    if (m_blPaused) return m_dBase;
    return m_dBase + std::chrono::duration<double>(_tpNow - m_tpBase).count() * m_dSpeed;
}

double CLS_PlayClock::Get() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return NowLocked(Clock::now());
}

void CLS_PlayClock::Set(double _dMediaSeconds)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_dBase = _dMediaSeconds;
    m_tpBase = Clock::now();
}

void CLS_PlayClock::SetSpeed(double _dSpeed)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto tpNow = Clock::now();
    m_dBase = NowLocked(tpNow);
    m_tpBase = tpNow;
    m_dSpeed = _dSpeed;
}

void CLS_PlayClock::SetPaused(bool _blPaused)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto tpNow = Clock::now();
    m_dBase = NowLocked(tpNow);
    m_tpBase = tpNow;
    m_blPaused = _blPaused;
}

}  // namespace RK_Framework::VideoPlayer
