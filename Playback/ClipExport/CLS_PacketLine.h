#pragma once

#include <cstdint>

extern "C" {
#include <libavutil/rational.h>
}

struct AVPacket;

namespace RK_Framework::ClipExport {

// The play line of one stream, read packet by packet from the start of a
// file: times count from the first picture (the origin), and where the
// recorder's clock jumps (two recordings joined, forward by hours or back to
// zero) the line goes on from where the previous part ended. Packets without
// times are placed one frame after the packet before them. The thresholds
// are the player's, so a second here is a second on its progress bar.
class CLS_PacketLine
{
public:
    // _dFrameSeconds: nominal seconds per packet of this stream.
    CLS_PacketLine(AVRational _stTimeBase, double _dFrameSeconds);

    // The first picture's time on the stream's clock, in _stOriginBase.
    void SetOrigin(std::int64_t _i64Origin, AVRational _stOriginBase);
    bool HasOrigin() const { return m_blHaveOrigin; }

    // Rewrites the packet's pts and dts to line time (stream time base);
    // pts is always set afterwards, dts too. False when the packet carried
    // no pts and its pts is a guess (the decode time).
    bool Place(AVPacket* _pPacket);

    // A step between neighbouring packets that only a join explains.
    bool IsJump(std::int64_t _i64Previous, std::int64_t _i64Next) const;
    // After a seek: the next packet continues the line without a join.
    void Restart() { m_blHaveLast = false; }

    // Line time of a stream time stamp, in microseconds.
    std::int64_t ToMicroseconds(std::int64_t _i64Line) const;

private:
    AVRational m_stTimeBase;
    std::int64_t m_i64FrameTicks = 1;
    std::int64_t m_i64JumpTicks = 0;
    std::int64_t m_i64BackTicks = 0;
    std::int64_t m_i64Origin = 0;
    bool m_blHaveOrigin = false;
    std::int64_t m_i64Offset = 0;  // added to the clock of the current part
    std::int64_t m_i64LastRaw = 0;
    bool m_blHaveLast = false;
};

}  // namespace RK_Framework::ClipExport
