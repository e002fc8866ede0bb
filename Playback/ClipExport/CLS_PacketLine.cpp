#include "CLS_PacketLine.h"

#include <algorithm>
#include <cmath>

extern "C" {
#include <libavcodec/packet.h>
#include <libavutil/avutil.h>
#include <libavutil/mathematics.h>
}

namespace RK_Framework::ClipExport {

CLS_PacketLine::CLS_PacketLine(AVRational _stTimeBase, double _dFrameSeconds)
    : m_stTimeBase(_stTimeBase)
{
    const double dBase = av_q2d(_stTimeBase);
    const double dFrame = _dFrameSeconds > 0.0 ? _dFrameSeconds : 0.04;
    m_i64FrameTicks = std::max<std::int64_t>(1, std::llround(dFrame / dBase));
    // A step forward of more than 100 frames (at least 10 s) or back of more
    // than 8 frames (at least 1 s) between neighbours is a join.
    m_i64JumpTicks = std::llround(std::max(10.0, 100.0 * dFrame) / dBase);
    m_i64BackTicks = std::llround(std::max(1.0, 8.0 * dFrame) / dBase);
}

void CLS_PacketLine::SetOrigin(std::int64_t _i64Origin, AVRational _stOriginBase)
{
    m_i64Origin = av_rescale_q(_i64Origin, _stOriginBase, m_stTimeBase);
    m_blHaveOrigin = true;
}

bool CLS_PacketLine::Place(AVPacket* _pPacket)
{
    const bool blHadPts = _pPacket->pts != AV_NOPTS_VALUE;
    std::int64_t i64Raw = _pPacket->dts != AV_NOPTS_VALUE ? _pPacket->dts : _pPacket->pts;
    const bool blTimed = i64Raw != AV_NOPTS_VALUE;
    if (!blTimed) i64Raw = m_blHaveLast ? m_i64LastRaw + m_i64FrameTicks : m_i64Origin;
    if (m_blHaveLast &&
        (i64Raw - m_i64LastRaw > m_i64JumpTicks || i64Raw < m_i64LastRaw - m_i64BackTicks)) {
        // A new recording: it starts one frame after the last packet of the
        // one before, on the line.
        m_i64Offset += m_i64LastRaw + m_i64FrameTicks - i64Raw;
    }
    // The presentation delay of a reordered picture is kept across a join.
    const std::int64_t i64Delay =
        (blTimed && _pPacket->pts != AV_NOPTS_VALUE && _pPacket->dts != AV_NOPTS_VALUE)
            ? _pPacket->pts - _pPacket->dts
            : 0;
    m_i64LastRaw = i64Raw;
    m_blHaveLast = true;
    _pPacket->dts = i64Raw + m_i64Offset - m_i64Origin;
    _pPacket->pts = _pPacket->dts + std::max<std::int64_t>(0, i64Delay);
    return blHadPts;
}

bool CLS_PacketLine::IsJump(std::int64_t _i64Previous, std::int64_t _i64Next) const
{
    return _i64Next - _i64Previous > m_i64JumpTicks || _i64Next < _i64Previous - m_i64BackTicks;
}

std::int64_t CLS_PacketLine::ToMicroseconds(std::int64_t _i64Line) const
{
    return av_rescale_q(_i64Line, m_stTimeBase, AVRational{1, AV_TIME_BASE});
}

}  // namespace RK_Framework::ClipExport
