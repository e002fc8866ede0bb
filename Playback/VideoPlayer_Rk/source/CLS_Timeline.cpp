#include "CLS_Timeline.h"

#include <algorithm>

namespace RK_Framework::VideoPlayer {

void CLS_Timeline::SetParts(std::vector<ST_TimelinePart> _vecParts,
                            std::vector<ST_TimelineSeekPoint> _vecSeekPoints,
                            std::int64_t _i64Slack)
{
    Clear();
    _vecParts.erase(std::remove_if(_vecParts.begin(), _vecParts.end(),
                                   [](const ST_TimelinePart& _stPart) {
                                       return _stPart.m_i64RawEnd <= _stPart.m_i64RawStart;
                                   }),
                    _vecParts.end());
    if (_vecParts.empty()) return;
    m_vecParts = std::move(_vecParts);
    m_i64Slack = std::max<std::int64_t>(0, _i64Slack);
    std::int64_t i64Line = m_vecParts.front().m_i64RawStart;
    for (std::size_t i = 0; i < m_vecParts.size(); ++i) {
        m_vecLineStart.push_back(i64Line);
        i64Line += m_vecParts[i].m_i64RawEnd - m_vecParts[i].m_i64RawStart;
        if (i > 0 && m_vecParts[i].m_i64RawStart < m_vecParts[i - 1].m_i64RawEnd) m_blByByte = true;
    }
    m_vecSeekPoints = std::move(_vecSeekPoints);
    std::sort(m_vecSeekPoints.begin(), m_vecSeekPoints.end(),
              [](const ST_TimelineSeekPoint& _a, const ST_TimelineSeekPoint& _b) {
                  return _a.m_i64Pos < _b.m_i64Pos;
              });
}

void CLS_Timeline::Clear()
{
    m_vecParts.clear();
    m_vecLineStart.clear();
    m_vecSeekPoints.clear();
    m_i64Slack = 0;
    m_blByByte = false;
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

std::int64_t CLS_Timeline::ToLine(std::int64_t _i64Pts, std::int64_t _i64Pos) const
{
    if (!HasJoins()) return _i64Pts;
    const std::size_t sizePart = PartOf(_i64Pts, _i64Pos);
    return m_vecLineStart[sizePart] + (_i64Pts - m_vecParts[sizePart].m_i64RawStart);
}

std::int64_t CLS_Timeline::ToStream(std::int64_t _i64Line, std::size_t& _sizePart) const
{
    _sizePart = 0;
    if (!HasJoins()) return _i64Line;
    while (_sizePart + 1 < m_vecParts.size() && m_vecLineStart[_sizePart + 1] <= _i64Line)
        ++_sizePart;
    return m_vecParts[_sizePart].m_i64RawStart + (_i64Line - m_vecLineStart[_sizePart]);
}

std::int64_t CLS_Timeline::SeekPosition(std::size_t _sizePart, std::int64_t _i64Pts) const
{
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
    if (m_vecParts.empty()) return INT64_MIN;
    return m_vecLineStart.back() +
           (m_vecParts.back().m_i64RawEnd - m_vecParts.back().m_i64RawStart);
}

}  // namespace RK_Framework::VideoPlayer
