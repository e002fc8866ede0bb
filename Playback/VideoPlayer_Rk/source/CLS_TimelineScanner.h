#pragma once

#include <cstdint>
#include <vector>

#include "CLS_Timeline.h"

namespace RK_Framework::VideoPlayer {

class CLS_MediaSource;

// How much of a file the timeline scanner reads.
struct ST_TimelineScanLimits
{
    std::int64_t m_i64FullScan = 16 * 1024 * 1024;  // files up to this (bytes) are read through
    std::int64_t m_i64Edge = 1024 * 1024;           // bytes read at either end of larger ones
    std::int64_t m_i64Stretch = 2 * 1024 * 1024;    // bisection stops below this many bytes
    int m_iSamples = 32;                            // byte positions sampled in between
};

// Finds where recordings are joined in a file before it plays, at a bounded
// cost however large the file: an index, where the container has one, lists
// every picture time; otherwise a small file is read through, and a large one
// is sampled at a few byte positions (times grow about linearly with bytes in
// a recording), a sample pair that disagrees is narrowed down by bisection,
// and only the last stretch is read packet by packet.
class CLS_TimelineScanner
{
public:
    // _dTimeBase: seconds per video tick; _dFrameDuration: nominal seconds
    // per picture.
    CLS_TimelineScanner(CLS_MediaSource& _source, double _dTimeBase, double _dFrameDuration,
                        ST_TimelineScanLimits _stLimits = {});

    // Fills _timeline (no joins found: a timeline without joins) and leaves
    // the source at the start of its data when it had to read.
    void Build(CLS_Timeline& _timeline);

private:
    struct ST_Sample
    {
        std::int64_t m_i64Pos = -1;
        std::int64_t m_i64Pts = 0;
        bool m_blValid = false;
    };
    // A jump between two pictures that follow each other in the file.
    struct ST_Join
    {
        std::int64_t m_i64Pos = 0;     // first packet after the jump
        std::int64_t m_i64Before = 0;  // latest time before it
        std::int64_t m_i64After = 0;   // earliest time after it (within the stretch read)
    };

    bool BuildFromIndex(CLS_Timeline& _timeline);
    void BuildByReading(CLS_Timeline& _timeline);
    // The first video picture time at or after byte _i64Pos.
    ST_Sample SampleAt(std::int64_t _i64Pos);
    // Reads packets from _i64From until past _i64To, noting joins, keyframes
    // and the earliest and latest times seen.
    void ReadStretch(std::int64_t _i64From, std::int64_t _i64To);
    bool Disagrees(const ST_Sample& _a, const ST_Sample& _b, double _dBytesPerTick) const;
    void Narrow(ST_Sample _a, ST_Sample _b, double _dBytesPerTick);
    bool IsJump(std::int64_t _i64Previous, std::int64_t _i64Next) const;

    CLS_MediaSource& m_source;
    ST_TimelineScanLimits m_stLimits;
    double m_dTimeBase;
    std::int64_t m_i64FrameTicks;
    std::int64_t m_i64JumpTicks;
    std::int64_t m_i64BackTicks;
    int m_iReads = 0;

    std::vector<ST_Join> m_vecJoins;
    std::vector<ST_TimelineSeekPoint> m_vecSeekPoints;
    bool m_blHaveHead = false;
    std::int64_t m_i64HeadPts = 0;  // earliest time at the start of the file
    bool m_blHaveTail = false;
    std::int64_t m_i64TailPts = 0;  // latest time at its end
};

}  // namespace RK_Framework::VideoPlayer
