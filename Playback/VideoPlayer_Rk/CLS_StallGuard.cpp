#include "CLS_StallGuard.h"

#include <chrono>
#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

#include "PlatformLibrary.h"
#include "PlatformThread.h"

namespace RK_Framework::VideoPlayer {

namespace {

using Clock = std::chrono::steady_clock;

// How often a waiting caller looks at the progress count.
constexpr auto kLookEvery = std::chrono::milliseconds(20);

struct SWork
{
    std::mutex mutex;
    std::condition_variable cvDone;
    bool blDone = false;
    std::thread thread;

    bool WaitDone(Clock::time_point _tpUntil)
    {
        std::unique_lock<std::mutex> lock(mutex);
        return cvDone.wait_until(lock, _tpUntil, [this] { return blDone; });
    }
};

// The works left behind; a finished one is joined by the next caller. It
// lives as long as the process: one still waiting on its source when the
// process ends is ended with it.
class CLS_LeftBehind
{
public:
    void Add(std::unique_ptr<SWork> _pWork)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        JoinFinished();
        m_listWorks.push_back(std::move(_pWork));
    }

    int Outstanding()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        JoinFinished();
        return static_cast<int>(m_listWorks.size());
    }

private:
    void JoinFinished()
    {
        for (auto it = m_listWorks.begin(); it != m_listWorks.end();) {
            if ((*it)->WaitDone(Clock::now())) {
                (*it)->thread.join();
                it = m_listWorks.erase(it);
            } else {
                ++it;
            }
        }
    }

    std::mutex m_mutex;
    std::list<std::unique_ptr<SWork>> m_listWorks;
};

CLS_LeftBehind& LeftBehind()
{
    static CLS_LeftBehind* s_pLeftBehind = new CLS_LeftBehind;
    return *s_pLeftBehind;
}

}  // namespace

bool CLS_StallGuard::Run(const char* _pName, std::function<void()> _fnWork,
                         const Progress& _fnProgress, int _iSilentMs)
{
    auto pWork = std::make_unique<SWork>();
    SWork* pShared = pWork.get();
    pWork->thread = BriskPlatform::StartNamedThread(_pName, [pShared, fnWork = std::move(_fnWork)]() mutable {
        fnWork();
        // What the work owned goes before the caller may take it for done.
        fnWork = nullptr;
        std::lock_guard<std::mutex> lock(pShared->mutex);
        pShared->blDone = true;
        pShared->cvDone.notify_all();
    });

    const auto durSilent = std::chrono::milliseconds(_iSilentMs);
    std::uint64_t u64Seen = _fnProgress ? _fnProgress() : 0;
    Clock::time_point tpMoved = Clock::now();
    while (!pWork->WaitDone(std::min(Clock::now() + kLookEvery, tpMoved + durSilent))) {
        const std::uint64_t u64Now = _fnProgress ? _fnProgress() : 0;
        if (u64Now != u64Seen) {
            u64Seen = u64Now;
            tpMoved = Clock::now();
        } else if (Clock::now() - tpMoved >= durSilent) {
            // The work's code must stay where it is until it returns, even
            // if whoever loaded this library lets it go meanwhile.
            BriskPlatform::FindLoadedLibrary(BriskPlatform::LibraryFileName("VideoPlayer_Rk"));
            LeftBehind().Add(std::move(pWork));
            return false;
        }
    }
    pWork->thread.join();
    return true;
}

int CLS_StallGuard::Outstanding()
{
    return LeftBehind().Outstanding();
}

}  // namespace RK_Framework::VideoPlayer
