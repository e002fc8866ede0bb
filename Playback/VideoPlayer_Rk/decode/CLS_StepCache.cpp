#include "CLS_StepCache.h"

extern "C" {
#include <libavutil/frame.h>
}

namespace RK_Framework::VideoPlayer {

namespace {

std::size_t FrameBytes(const AVFrame* _pFrame)
{
    std::size_t sizeBytes = 0;
    for (int i = 0; i < AV_NUM_DATA_POINTERS && _pFrame->buf[i]; ++i)
        sizeBytes += _pFrame->buf[i]->size;
    return sizeBytes;
}

}  // namespace

CLS_StepCache::CLS_StepCache(std::size_t _sizeBudgetBytes) : m_sizeBudget(_sizeBudgetBytes) {}

CLS_StepCache::~CLS_StepCache()
{
    Clear();
}

void CLS_StepCache::Append(const ST_VideoFrame& _stFrame, bool _blFollows)
{
    if (!_stFrame.m_pFrame) return;
    AVFrame* pRef = av_frame_clone(_stFrame.m_pFrame);
    if (!pRef) return;
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!_blFollows || (!m_dqFrames.empty() && m_dqFrames.back().m_llPts >= _stFrame.m_llPts)) {
        for (auto& stOld : m_dqFrames)
            FreeVideoFrame(stOld);
        m_dqFrames.clear();
        m_sizeBytes = 0;
    }
    ST_VideoFrame stCopy = _stFrame;
    stCopy.m_pFrame = pRef;
    m_dqFrames.push_back(stCopy);
    m_sizeBytes += FrameBytes(pRef);
    // Keep at least two pictures so that one step back always has a neighbour.
    while (m_sizeBytes > m_sizeBudget && m_dqFrames.size() > 2) {
        m_sizeBytes -= FrameBytes(m_dqFrames.front().m_pFrame);
        FreeVideoFrame(m_dqFrames.front());
        m_dqFrames.pop_front();
    }
}

int CLS_StepCache::IndexOf(long long _llPts) const
{
    for (std::size_t i = 0; i < m_dqFrames.size(); ++i)
        if (m_dqFrames[i].m_llPts == _llPts) return static_cast<int>(i);
    return -1;
}

bool CLS_StepCache::CopyAt(int _iIndex, ST_VideoFrame& _stFrame) const
{
    if (_iIndex < 0 || _iIndex >= static_cast<int>(m_dqFrames.size())) return false;
    const ST_VideoFrame& stKept = m_dqFrames[static_cast<std::size_t>(_iIndex)];
    AVFrame* pRef = av_frame_clone(stKept.m_pFrame);
    if (!pRef) return false;
    _stFrame = stKept;
    _stFrame.m_pFrame = pRef;
    return true;
}

bool CLS_StepCache::Previous(long long _llPts, ST_VideoFrame& _stFrame) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const int iIndex = IndexOf(_llPts);
    return iIndex > 0 && CopyAt(iIndex - 1, _stFrame);
}

bool CLS_StepCache::Next(long long _llPts, ST_VideoFrame& _stFrame) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const int iIndex = IndexOf(_llPts);
    return iIndex >= 0 && CopyAt(iIndex + 1, _stFrame);
}

bool CLS_StepCache::Contains(long long _llPts) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return IndexOf(_llPts) >= 0;
}

bool CLS_StepCache::IsNewest(long long _llPts) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return !m_dqFrames.empty() && m_dqFrames.back().m_llPts == _llPts;
}

void CLS_StepCache::Clear()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (auto& stFrame : m_dqFrames)
        FreeVideoFrame(stFrame);
    m_dqFrames.clear();
    m_sizeBytes = 0;
}

std::size_t CLS_StepCache::Count() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_dqFrames.size();
}

}  // namespace RK_Framework::VideoPlayer
