#include "CLS_Timeline.h"

#include <algorithm>

namespace RK_Framework::VideoPlayer {

void CLS_Timeline::SetScale(std::int64_t _i64FrameTicks, std::int64_t _i64JumpTicks,
                            std::int64_t _i64BackTicks)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_i64FrameTicks = std::max<std::int64_t>(1, _i64FrameTicks);
    m_i64JumpTicks = std::max<std::int64_t>(0, _i64JumpTicks);
    m_i64BackTicks = std::max<std::int64_t>(0, _i64BackTicks);
}

bool CLS_Timeline::IsJump(std::int64_t _i64Previous, std::int64_t _i64Next) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_i64JumpTicks <= 0) return false;
    return _i64Next - _i64Previous > m_i64JumpTicks || _i64Next < _i64Previous - m_i64BackTicks;
}

void CLS_Timeline::SetParts(std::vector<ST_TimelinePart> _vecParts,
                            std::vector<ST_TimelineSeekPoint> _vecSeekPoints,
                            std::int64_t _i64Slack)
{
    Clear();
    std::lock_guard<std::mutex> lock(m_mutex);
    _vecParts.erase(std::remove_if(_vecParts.begin(), _vecParts.end(),
                                   [](const ST_TimelinePart& _stPart) {
                                       return _stPart.m_i64RawEnd <= _stPart.m_i64RawStart;
                                   }),
                    _vecParts.end());
    if (_vecParts.empty()) return;
    m_vecParts = std::move(_vecParts);
    m_i64Slack = std::max<std::int64_t>(0, _i64Slack);
    Relate();
    m_vecSeekPoints = std::move(_vecSeekPoints);
    std::sort(m_vecSeekPoints.begin(), m_vecSeekPoints.end(),
              [](const ST_TimelineSeekPoint& _a, const ST_TimelineSeekPoint& _b) {
                  return _a.m_i64Pos < _b.m_i64Pos;
              });
}

void CLS_Timeline::Relate()
{
    m_vecLineStart.clear();
    m_blByByte = false;
    std::int64_t i64Line = m_vecParts.front().m_i64RawStart;
    for (std::size_t i = 0; i < m_vecParts.size(); ++i) {
        m_vecLineStart.push_back(i64Line);
        i64Line += m_vecParts[i].m_i64RawEnd - m_vecParts[i].m_i64RawStart;
        if (i > 0 && m_vecParts[i].m_i64RawStart < m_vecParts[i - 1].m_i64RawEnd) m_blByByte = true;
    }
}

void CLS_Timeline::Clear()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_vecParts.clear();
    m_vecLineStart.clear();
    m_vecSeekPoints.clear();
    m_i64Slack = 0;
    m_blByByte = false;
    m_i64Shortening = 0;
}

bool CLS_Timeline::HasJoins() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return HasJoinsLocked();
}

bool CLS_Timeline::SeeksByByte() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_blByByte;
}

bool CLS_Timeline::AddJoin(std::int64_t _i64Pos, std::int64_t _i64PreviousLine,
                           std::int64_t _i64Raw, std::int64_t _i64Origin)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_i64JumpTicks <= 0 || _i64Pos < 0 || m_vecParts.size() >= 256) return false;
    // Another decoder may have met it first.
    const std::int64_t i64Line = ToLineLocked(_i64Raw, _i64Pos);
    if (i64Line - _i64PreviousLine <= m_i64JumpTicks &&
        i64Line >= _i64PreviousLine - m_i64BackTicks)
        return false;
    if (m_vecParts.empty()) {
        // No join was known: the line was the stream's clock.
        m_vecParts.push_back(ST_TimelinePart{_i64Origin, _i64PreviousLine + 1, 0});
        m_vecLineStart.push_back(_i64Origin);
        m_i64Slack = m_i64JumpTicks / 2;
    }
    // The part the picture before the join belongs to ends with it.
    std::size_t sizePart = 0;
    while (sizePart + 1 < m_vecParts.size() && m_vecLineStart[sizePart + 1] <= _i64PreviousLine)
        ++sizePart;
    ST_TimelinePart& stBefore = m_vecParts[sizePart];
    if (_i64Pos <= stBefore.m_i64PosStart) return false;
    const std::int64_t i64PreviousRaw =
        stBefore.m_i64RawStart + (_i64PreviousLine - m_vecLineStart[sizePart]);
    // A part the scan took for one recording keeps its end in the later
    // clock, when that lies after the jump.
    ST_TimelinePart stAfter{_i64Raw, _i64Raw + m_i64FrameTicks, _i64Pos};
    if (stBefore.m_i64RawEnd > stAfter.m_i64RawEnd && _i64Raw > i64PreviousRaw)
        stAfter.m_i64RawEnd = stBefore.m_i64RawEnd;
    stBefore.m_i64RawEnd = i64PreviousRaw + m_i64FrameTicks;
    m_i64Shortening += _i64Raw - stBefore.m_i64RawEnd;
    m_vecParts.insert(m_vecParts.begin() + static_cast<std::ptrdiff_t>(sizePart + 1), stAfter);
    Relate();
    return true;
}

std::int64_t CLS_Timeline::FoundShortening() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_i64Shortening;
}

bool CLS_Timeline::Contains(std::size_t _sizePart, std::int64_t _i64Pts) const
{
    const ST_TimelinePart& stPart = m_vecParts[_sizePart];
    return _i64Pts >= stPart.m_i64RawStart - m_i64Slack &&
           _i64Pts < stPart.m_i64RawEnd + m_i64Slack;
}

std::size_t CLS_Timeline::PartOf(std::int64_t _i64Pts, std::int64_t _i64Pos) const
{
    // The byte position decides where clocks of two parts overlap; the time
    // decides when the position is unknown or does not fit (a part boundary
    // found only roughly in a large file).
    if (_i64Pos >= 0) {
        std::size_t sizePart = 0;
        while (sizePart + 1 < m_vecParts.size() &&
               m_vecParts[sizePart + 1].m_i64PosStart <= _i64Pos)
            ++sizePart;
        if (Contains(sizePart, _i64Pts)) return sizePart;
        // A position taken from a neighbouring packet can lie just across a
        // join.
        if (sizePart + 1 < m_vecParts.size() && Contains(sizePart + 1, _i64Pts))
            return sizePart + 1;
        if (sizePart > 0 && Contains(sizePart - 1, _i64Pts)) return sizePart - 1;
    }
    for (std::size_t i = 0; i < m_vecParts.size(); ++i)
        if (Contains(i, _i64Pts)) return i;
    // A time no part claims (a jump the scan did not see): the part whose
    // clock lies nearest below it.
    std::size_t sizeBest = 0;
    for (std::size_t i = 0; i < m_vecParts.size(); ++i)
        if (m_vecParts[i].m_i64RawStart <= _i64Pts &&
            m_vecParts[i].m_i64RawStart >= m_vecParts[sizeBest].m_i64RawStart)
            sizeBest = i;
    return sizeBest;
}

std::int64_t CLS_Timeline::ToLineLocked(std::int64_t _i64Pts, std::int64_t _i64Pos) const
{
    if (!HasJoinsLocked()) return _i64Pts;
    const std::size_t sizePart = PartOf(_i64Pts, _i64Pos);
    return m_vecLineStart[sizePart] + (_i64Pts - m_vecParts[sizePart].m_i64RawStart);
}

std::int64_t CLS_Timeline::ToLine(std::int64_t _i64Pts, std::int64_t _i64Pos) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return ToLineLocked(_i64Pts, _i64Pos);
}

std::int64_t CLS_Timeline::ToStream(std::int64_t _i64Line, std::size_t& _sizePart) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    _sizePart = 0;
    if (!HasJoinsLocked()) return _i64Line;
    while (_sizePart + 1 < m_vecParts.size() && m_vecLineStart[_sizePart + 1] <= _i64Line)
        ++_sizePart;
    return m_vecParts[_sizePart].m_i64RawStart + (_i64Line - m_vecLineStart[_sizePart]);
}

std::int64_t CLS_Timeline::SeekPosition(std::size_t _sizePart, std::int64_t _i64Pts) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (_sizePart >= m_vecParts.size()) return 0;
    const std::int64_t i64Begin = m_vecParts[_sizePart].m_i64PosStart;
    const std::int64_t i64End =
        _sizePart + 1 < m_vecParts.size() ? m_vecParts[_sizePart + 1].m_i64PosStart : INT64_MAX;
    std::int64_t i64Best = i64Begin;
    for (const ST_TimelineSeekPoint& stPoint : m_vecSeekPoints) {
        if (stPoint.m_i64Pos < i64Begin) continue;
        if (stPoint.m_i64Pos >= i64End) break;
        if (stPoint.m_i64Pts <= _i64Pts) i64Best = stPoint.m_i64Pos;
    }
    return i64Best;
}

std::int64_t CLS_Timeline::LineEnd() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_vecParts.empty()) return INT64_MIN;
    return m_vecLineStart.back() +
           (m_vecParts.back().m_i64RawEnd - m_vecParts.back().m_i64RawStart);
}

}  // namespace RK_Framework::VideoPlayer
