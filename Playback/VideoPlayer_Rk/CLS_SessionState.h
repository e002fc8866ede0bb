#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "CLS_Timeline.h"

namespace RK_Framework::VideoPlayer {

// How much the video decoder leaves out at high speed so that the position
// keeps pace with the speed; each level skips more than the one before.
enum EM_DecodeLevel : int {
    DECODE_ALL = 0,             // every picture
    DECODE_SKIP_NONREF = 1,     // pictures nothing refers to are skipped
    DECODE_KEYFRAMES_ONLY = 2,  // keyframes alone
};

// Where the demuxer should go next and what the video decoder should land on.
struct ST_SeekRequest
{
    int m_iSerial = 0;
    std::int64_t m_i64Target = INT64_MIN;  // video time base; INT64_MIN: no exact landing
    std::int64_t m_i64SeekPts = 0;         // where the demuxer seeks (keyframe at or before)
    bool m_blToStart = false;              // seek to the beginning of the data instead
    bool m_blCollect = false;              // keep the pictures before the target for stepping
    int m_iBackoff = 0;                    // how often the landing came out too late already
    bool m_blWhilePaused = false;          // someone waits, looking at a still picture
};

// What the threads of one playback share. Timeline facts are written before
// the threads start and only read afterwards, except the timeline's parts,
// which the decoders may add to while playing (it locks for itself).
class CLS_SessionState
{
public:
    std::atomic<bool> m_blAbort{false};
    // Latest serial; anything tagged with an older one is stale.
    std::atomic<int> m_iSerial{0};
    // Sound is decoded only at 1X.
    std::atomic<bool> m_blAudioActive{true};
    std::atomic<double> m_dSpeed{1.0};
    // Raised by the presenter when pictures come too late at high speed: the
    // least EM_DecodeLevel the decoder may use.
    std::atomic<int> m_iLagLevel{DECODE_ALL};

    // Picture times below are places on the timeline (the stream's clock
    // with the jumps between joined recordings taken out).
    CLS_Timeline m_timeline;
    std::int64_t m_i64FirstPts = 0;  // video time base
    double m_dTimeBase = 0.0;        // seconds per video time-base unit
    double m_dFrameDuration = 0.04;  // nominal seconds per picture

    // Posts a seek; the latest one wins. Answers its serial.
    int RequestSeek(ST_SeekRequest _stRequest);
    // Posts a seek only if no newer one was posted since _iSerial.
    bool RetrySeek(int _iSerial, ST_SeekRequest _stRequest);
    // For the demuxer: the pending seek, if any.
    bool TakeSeek(ST_SeekRequest& _stRequest);
    // The latest request (whether taken or not).
    ST_SeekRequest LatestSeek() const;
    // Waits until a seek is posted, abort is set or _iMs pass.
    void WaitForWork(int _iMs);
    void Wake();

    double TimeOf(std::int64_t _i64Pts) const
    {
        return static_cast<double>(_i64Pts - m_i64FirstPts) * m_dTimeBase;
    }
    std::int64_t PtsOf(double _dTime) const
    {
        return m_i64FirstPts + static_cast<std::int64_t>(_dTime / m_dTimeBase + 0.5);
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_cvWork;
    ST_SeekRequest m_stLatest;
    bool m_blPending = false;
};

}  // namespace RK_Framework::VideoPlayer
