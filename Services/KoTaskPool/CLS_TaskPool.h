#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// One-shot and loop tasks on a bounded set of worker threads, started on first
// use. Tasks are grouped by an owner pointer (never dereferenced) so that an
// owner can withdraw its work before it goes away; every withdrawal waits for
// the owner's runs in progress, because the owner is usually about to destroy
// what those runs touch.
class CLS_TaskPool
{
public:
    using Task = std::function<void()>;
    // Told about a task that threw: its name and the exception's text.
    using FailureReporter =
        std::function<void(const std::string& _strName, const std::string& _strWhat)>;

    explicit CLS_TaskPool(FailureReporter _reporter = {}, unsigned _uiWorkers = 0);
    ~CLS_TaskPool();
    CLS_TaskPool(const CLS_TaskPool&) = delete;
    CLS_TaskPool& operator=(const CLS_TaskPool&) = delete;

    bool AddTmpTask(const Task& _task, const void* _pOwner, const std::string& _strName);
    void RemoveTmpTask(const void* _pOwner, const std::string& _strName);
    bool AddLoopTask(const Task& _task, const void* _pOwner, const std::string& _strName,
                     int _iIntervalMs);
    void RemoveTask(const void* _pOwner, const std::string& _strName);
    void KillTask(const void* _pOwner);
    void KillTaskAll();
    void UnInit();

    unsigned WorkerLimit() const { return m_uiWorkerLimit; }

private:
    using Clock = std::chrono::steady_clock;

    struct TmpTask
    {
        Task m_task;
        const void* m_pOwner;
        std::string m_strName;
    };
    struct LoopTask
    {
        Task m_task;
        const void* m_pOwner;
        std::string m_strName;
        std::chrono::milliseconds m_interval;
        Clock::time_point m_due;
        bool m_blRunning = false;
        bool m_blRemoved = false;
    };
    struct Run
    {
        const void* m_pOwner;
        const std::string* m_pName;
        bool m_blLoop;
        std::thread::id m_threadId;
    };
    using RunMatch = std::function<bool(const Run&)>;

    void StartLocked();
    void WorkerMain(std::uint64_t _uiGeneration);
    void Execute(const Task& _task, const std::string& _strName) noexcept;
    void DropLoopsLocked(const std::function<bool(const LoopTask&)>& _match);
    // Blocks until no run that _match selects is in progress on another thread.
    void WaitForRuns(std::unique_lock<std::mutex>& _lock, const RunMatch& _match);
    bool MustWaitFor(std::thread::id _self, const RunMatch& _match) const;
    // Whether _waiter, blocked in a withdrawal, waits (directly or through other
    // waiting threads) for a run on _target.
    bool WaitsOn(std::thread::id _waiter, std::thread::id _target,
                 std::vector<std::thread::id>& _vecVisited) const;

    const FailureReporter m_reporter;
    const unsigned m_uiWorkerLimit;

    std::mutex m_mutex;
    std::condition_variable m_cvWork;
    std::condition_variable m_cvRunEnded;
    std::deque<TmpTask> m_dequePending;
    std::list<std::shared_ptr<LoopTask>> m_lstLoops;
    std::list<Run> m_lstRuns;
    // Threads blocked in a withdrawal, with what each waits for. A run whose
    // thread waits, through any chain, for the withdrawing thread cannot end
    // before the withdrawal returns, so it is not waited for: two tasks of one
    // owner that both withdraw the owner would otherwise wait for each other.
    std::map<std::thread::id, const RunMatch*> m_mapWaiting;
    std::vector<std::thread> m_vecWorkers;
    // Workers of an older generation leave; UnInit starts a new one.
    std::uint64_t m_uiGeneration = 0;
    bool m_blStopping = false;
};
