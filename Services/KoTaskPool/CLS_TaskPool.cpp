#include "CLS_TaskPool.h"

#include <algorithm>
#include <exception>

namespace {

unsigned DefaultWorkerCount()
{
    const unsigned uiHardware = std::thread::hardware_concurrency();
    return std::clamp(uiHardware, 2u, 8u);
}

}  // namespace

CLS_TaskPool::CLS_TaskPool(FailureReporter _reporter, unsigned _uiWorkers)
    : m_reporter(std::move(_reporter)),
      m_uiWorkerLimit(_uiWorkers ? _uiWorkers : DefaultWorkerCount())
{}

CLS_TaskPool::~CLS_TaskPool()
{
    UnInit();
}

void CLS_TaskPool::StartLocked()
{
    while (m_vecWorkers.size() < m_uiWorkerLimit)
        m_vecWorkers.emplace_back(&CLS_TaskPool::WorkerMain, this, m_uiGeneration);
}

bool CLS_TaskPool::AddTmpTask(const Task& _task, const void* _pOwner, const std::string& _strName)
{
    if (!_task) return false;
    std::lock_guard lock(m_mutex);
    if (m_blStopping) return false;
    StartLocked();
    m_dequePending.push_back(TmpTask{_task, _pOwner, _strName});
    m_cvWork.notify_one();
    return true;
}

bool CLS_TaskPool::AddLoopTask(const Task& _task, const void* _pOwner, const std::string& _strName,
                               int _iIntervalMs)
{
    if (!_task || _iIntervalMs <= 0) return false;
    std::lock_guard lock(m_mutex);
    if (m_blStopping) return false;
    StartLocked();
    auto pLoop = std::make_shared<LoopTask>();
    pLoop->m_task = _task;
    pLoop->m_pOwner = _pOwner;
    pLoop->m_strName = _strName;
    pLoop->m_interval = std::chrono::milliseconds(_iIntervalMs);
    pLoop->m_due = Clock::now() + pLoop->m_interval;
    m_lstLoops.push_back(std::move(pLoop));
    // Idle workers may be sleeping until a later due time, or for good.
    m_cvWork.notify_all();
    return true;
}

void CLS_TaskPool::RemoveTmpTask(const void* _pOwner, const std::string& /*_strName*/)
{
    std::unique_lock lock(m_mutex);
    m_dequePending.erase(std::remove_if(m_dequePending.begin(), m_dequePending.end(),
                                        [&](const TmpTask& t) { return t.m_pOwner == _pOwner; }),
                         m_dequePending.end());
    WaitForRuns(lock, [&](const Run& r) { return !r.m_blLoop && r.m_pOwner == _pOwner; });
}

void CLS_TaskPool::RemoveTask(const void* _pOwner, const std::string& _strName)
{
    std::unique_lock lock(m_mutex);
    DropLoopsLocked(
        [&](const LoopTask& l) { return l.m_pOwner == _pOwner && l.m_strName == _strName; });
    WaitForRuns(lock, [&](const Run& r) {
        return r.m_blLoop && r.m_pOwner == _pOwner && *r.m_pName == _strName;
    });
}

void CLS_TaskPool::KillTask(const void* _pOwner)
{
    std::unique_lock lock(m_mutex);
    m_dequePending.erase(std::remove_if(m_dequePending.begin(), m_dequePending.end(),
                                        [&](const TmpTask& t) { return t.m_pOwner == _pOwner; }),
                         m_dequePending.end());
    DropLoopsLocked([&](const LoopTask& l) { return l.m_pOwner == _pOwner; });
    WaitForRuns(lock, [&](const Run& r) { return r.m_pOwner == _pOwner; });
}

void CLS_TaskPool::KillTaskAll()
{
    std::unique_lock lock(m_mutex);
    m_dequePending.clear();
    DropLoopsLocked([](const LoopTask&) { return true; });
    WaitForRuns(lock, [](const Run&) { return true; });
}

void CLS_TaskPool::UnInit()
{
    std::vector<std::thread> vecWorkers;
    {
        std::unique_lock lock(m_mutex);
        m_dequePending.clear();
        DropLoopsLocked([](const LoopTask&) { return true; });
        m_blStopping = true;
        ++m_uiGeneration;
        vecWorkers.swap(m_vecWorkers);
    }
    m_cvWork.notify_all();
    const std::thread::id self = std::this_thread::get_id();
    for (std::thread& worker : vecWorkers) {
        // A task that shuts the pool down cannot join its own thread; the
        // thread leaves by itself once the task returns.
        if (worker.get_id() == self)
            worker.detach();
        else
            worker.join();
    }
    std::lock_guard lock(m_mutex);
    m_blStopping = false;
}

void CLS_TaskPool::DropLoopsLocked(const std::function<bool(const LoopTask&)>& _match)
{
    for (auto it = m_lstLoops.begin(); it != m_lstLoops.end();) {
        if (_match(**it)) {
            (*it)->m_blRemoved = true;
            it = m_lstLoops.erase(it);
        } else {
            ++it;
        }
    }
}

void CLS_TaskPool::WaitForRuns(std::unique_lock<std::mutex>& _lock, const RunMatch& _match)
{
    const std::thread::id self = std::this_thread::get_id();
    if (!MustWaitFor(self, _match)) return;
    m_mapWaiting[self] = &_match;
    // Other withdrawals may now be part of a cycle through this thread.
    m_cvRunEnded.notify_all();
    m_cvRunEnded.wait(_lock, [&] { return !MustWaitFor(self, _match); });
    m_mapWaiting.erase(self);
    m_cvRunEnded.notify_all();
}

bool CLS_TaskPool::MustWaitFor(std::thread::id _self, const RunMatch& _match) const
{
    for (const Run& run : m_lstRuns) {
        if (run.m_threadId == _self || !_match(run)) continue;
        std::vector<std::thread::id> vecVisited;
        if (!WaitsOn(run.m_threadId, _self, vecVisited)) return true;
    }
    return false;
}

bool CLS_TaskPool::WaitsOn(std::thread::id _waiter, std::thread::id _target,
                           std::vector<std::thread::id>& _vecVisited) const
{
    const auto itWaiting = m_mapWaiting.find(_waiter);
    if (itWaiting == m_mapWaiting.end()) return false;
    if (std::find(_vecVisited.begin(), _vecVisited.end(), _waiter) != _vecVisited.end())
        return false;
    _vecVisited.push_back(_waiter);
    for (const Run& run : m_lstRuns) {
        if (run.m_threadId == _waiter || !(*itWaiting->second)(run)) continue;
        if (run.m_threadId == _target || WaitsOn(run.m_threadId, _target, _vecVisited)) return true;
    }
    return false;
}

void CLS_TaskPool::Execute(const Task& _task, const std::string& _strName) noexcept
{
    std::string strWhat;
    try {
        _task();
        return;
    } catch (const std::exception& e) {
        strWhat = e.what();
    } catch (...) {
        strWhat = "an exception of unknown type";
    }
    if (!m_reporter) return;
    try {
        m_reporter(_strName, strWhat);
    } catch (...) {
        // Nothing more can be done for a report that fails.
    }
}

void CLS_TaskPool::WorkerMain(std::uint64_t _uiGeneration)
{
    const std::thread::id self = std::this_thread::get_id();
    std::unique_lock lock(m_mutex);
    while (_uiGeneration == m_uiGeneration) {
        if (!m_dequePending.empty()) {
            TmpTask task = std::move(m_dequePending.front());
            m_dequePending.pop_front();
            const auto itRun =
                m_lstRuns.insert(m_lstRuns.end(), Run{task.m_pOwner, &task.m_strName, false, self});
            lock.unlock();
            Execute(task.m_task, task.m_strName);
            // The owner may free what the task captured as soon as a withdrawal
            // returns, so the captures go before the run counts as ended.
            try {
                task.m_task = nullptr;
            } catch (...) {
            }
            lock.lock();
            m_lstRuns.erase(itRun);
            m_cvRunEnded.notify_all();
            continue;
        }

        std::shared_ptr<LoopTask> pDue;
        for (const auto& pLoop : m_lstLoops) {
            if (!pLoop->m_blRunning && (!pDue || pLoop->m_due < pDue->m_due)) pDue = pLoop;
        }
        if (!pDue) {
            m_cvWork.wait(lock);
            continue;
        }
        if (pDue->m_due > Clock::now()) {
            m_cvWork.wait_until(lock, pDue->m_due);
            continue;
        }

        pDue->m_blRunning = true;
        const auto itRun =
            m_lstRuns.insert(m_lstRuns.end(), Run{pDue->m_pOwner, &pDue->m_strName, true, self});
        lock.unlock();
        Execute(pDue->m_task, pDue->m_strName);
        lock.lock();
        pDue->m_blRunning = false;
        pDue->m_due = Clock::now() + pDue->m_interval;
        if (pDue->m_blRemoved) {
            // Withdrawn while running: nobody else refers to it any more.
            lock.unlock();
            try {
                pDue->m_task = nullptr;
            } catch (...) {
            }
            lock.lock();
        }
        m_lstRuns.erase(itRun);
        m_cvRunEnded.notify_all();
    }
}
