#pragma once

#include <cstddef>
#include <deque>
#include <mutex>

#include "CLS_FrameQueue.h"

namespace RK_Framework::VideoPlayer {

// Consecutive decoded pictures around the one on screen, so that stepping
// back within a group of pictures needs no new decode. Only a run without
// gaps is kept: a picture that does not follow the newest one starts a new
// run. Bounded by bytes; the oldest pictures go first.
class CLS_StepCache
{
public:
    explicit CLS_StepCache(std::size_t _sizeBudgetBytes);
    ~CLS_StepCache();
    CLS_StepCache(const CLS_StepCache&) = delete;
    CLS_StepCache& operator=(const CLS_StepCache&) = delete;

    // Keeps a reference to the picture. _blFollows: the picture comes right
    // after the newest one kept (else the run restarts with it).
    void Append(const ST_VideoFrame& _stFrame, bool _blFollows);
    // Copies (new references) of the picture before / after the one at
    // _llPts; false when _llPts is not kept or has no neighbour in the run.
    bool Previous(long long _llPts, ST_VideoFrame& _stFrame) const;
    bool Next(long long _llPts, ST_VideoFrame& _stFrame) const;
    bool Contains(long long _llPts) const;
    bool IsNewest(long long _llPts) const;
    void Clear();
    std::size_t Count() const;

private:
    int IndexOf(long long _llPts) const;
    bool CopyAt(int _iIndex, ST_VideoFrame& _stFrame) const;

    const std::size_t m_sizeBudget;
    mutable std::mutex m_mutex;
    std::deque<ST_VideoFrame> m_dqFrames;
    std::size_t m_sizeBytes = 0;
};

}  // namespace RK_Framework::VideoPlayer
