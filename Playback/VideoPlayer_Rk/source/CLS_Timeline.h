#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace RK_Framework::VideoPlayer {

// One recording inside a file, in the video stream's time base.
struct ST_TimelinePart
{
    std::int64_t m_i64RawStart = 0;  // earliest picture time of the part
    std::int64_t m_i64RawEnd = 0;    // latest picture time plus one picture
    std::int64_t m_i64PosStart = 0;  // byte position of the part's first packet
};

// A place the demuxer can restart from: a byte position and the picture time
// found there.
struct ST_TimelineSeekPoint
{
    std::int64_t m_i64Pos = 0;
    std::int64_t m_i64Pts = 0;
};

// The play line of a file that joins recordings: each part's clock is moved
// so that it continues where the previous part ended, whether the recorder's
// clock jumped forward by hours or back to zero. Times on the line are in the
// video time base; the first part keeps its own clock. Without joins the line
// is the stream's clock itself.
//
// The scan before playing can miss a join in a large file; the decoders add
// what they find while playing, so the line may grow parts from any thread.
class CLS_Timeline
{
public:
    // _i64FrameTicks: one picture; a step forward beyond _i64JumpTicks or back
    // beyond _i64BackTicks between neighbouring pictures is a join. Kept
    // across SetParts and Clear.
    void SetScale(std::int64_t _i64FrameTicks, std::int64_t _i64JumpTicks,
                  std::int64_t _i64BackTicks);
    bool IsJump(std::int64_t _i64Previous, std::int64_t _i64Next) const;

    // _vecParts in file order, each with a non-empty range; _i64Slack: how far
    // (ticks) a picture may stray outside its part's range (reordering,
    // imprecise part ends) and still belong to it.
    void SetParts(std::vector<ST_TimelinePart> _vecParts,
                  std::vector<ST_TimelineSeekPoint> _vecSeekPoints, std::int64_t _i64Slack);
    void Clear();

    bool HasJoins() const;
    // A later part's clock does not lie after every earlier one's: the
    // container cannot find a time by bisection, only a byte position can.
    bool SeeksByByte() const;

    // A join met while playing: from byte _i64Pos on the clock reads
    // _i64Raw, and the picture before it was at _i64PreviousLine on the line
    // (_i64Origin: where the line starts). False when the line already
    // accounts for it.
    bool AddJoin(std::int64_t _i64Pos, std::int64_t _i64PreviousLine, std::int64_t _i64Raw,
                 std::int64_t _i64Origin);
    // How much shorter the line has become than the stream's clock through
    // the joins added while playing (negative when clocks went back).
    std::int64_t FoundShortening() const;

    // Stream time of a picture (with the byte position of its packet, -1 when
    // unknown) to its place on the line.
    std::int64_t ToLine(std::int64_t _i64Pts, std::int64_t _i64Pos) const;
    // A place on the line to the stream time of the part it falls in.
    std::int64_t ToStream(std::int64_t _i64Line, std::size_t& _sizePart) const;
    // Byte position to restart from to reach stream time _i64Pts of part
    // _sizePart: a known point at or before it in that part, else the part's start.
    std::int64_t SeekPosition(std::size_t _sizePart, std::int64_t _i64Pts) const;
    // End of the last part on the line.
    std::int64_t LineEnd() const;

private:
    bool HasJoinsLocked() const { return m_vecParts.size() > 1; }
    void Relate();
    std::int64_t ToLineLocked(std::int64_t _i64Pts, std::int64_t _i64Pos) const;
    std::size_t PartOf(std::int64_t _i64Pts, std::int64_t _i64Pos) const;
    bool Contains(std::size_t _sizePart, std::int64_t _i64Pts) const;

    std::vector<ST_TimelinePart> m_vecParts;
    // Where each part starts on the line.
    std::vector<std::int64_t> m_vecLineStart;
    std::vector<ST_TimelineSeekPoint> m_vecSeekPoints;  // by byte position
    std::int64_t m_i64Slack = 0;
    bool m_blByByte = false;
    std::int64_t m_i64FrameTicks = 1;
    std::int64_t m_i64JumpTicks = 0;  // 0: no scale set, nothing is a jump
    std::int64_t m_i64BackTicks = 0;
    std::int64_t m_i64Shortening = 0;
    mutable std::mutex m_mutex;
};

}  // namespace RK_Framework::VideoPlayer
