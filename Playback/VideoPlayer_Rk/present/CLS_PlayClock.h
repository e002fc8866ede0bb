#pragma once

#include <chrono>
#include <mutex>

namespace RK_Framework::VideoPlayer {

// Media time in seconds that runs at the playback speed from the last point it
// was set to. Without sound this alone paces the pictures; with sound at 1X it
// is re-anchored to what the sound card has played.
class CLS_PlayClock
{
public:
    using Clock = std::chrono::steady_clock;

    double Get() const;
    void Set(double _dMediaSeconds);
    void SetSpeed(double _dSpeed);
    void SetPaused(bool _blPaused);

private:
    double NowLocked(Clock::time_point _tpNow) const;

    mutable std::mutex m_mutex;
    double m_dBase = 0.0;
    Clock::time_point m_tpBase = Clock::now();
    double m_dSpeed = 1.0;
    bool m_blPaused = true;
};

}  // namespace RK_Framework::VideoPlayer
