#include "CLS_TaskPool.h"
#include "KoLogApi.h"
#include "KoTaskPoolApi.h"
#include "ServiceLibrary.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <array>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

// Holds tasks inside their run until the test lets them go.
class Gate
{
public:
    void Wait()
    {
        std::unique_lock lock(m_mutex);
        m_cv.wait(lock, [this] { return m_blOpen; });
    }
    void Open()
    {
        std::lock_guard lock(m_mutex);
        m_blOpen = true;
        m_cv.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_cv;
    bool m_blOpen = false;
};

// A withdrawal that must still be blocked gets this long to prove otherwise.
constexpr int kStillBlockedMs = 100;

}  // namespace

class tst_KoTaskPool : public QObject
{
    Q_OBJECT

private slots:
    void everyTaskRunsOnceUnderConcurrentAddAndKill();
    void removeTmpTaskDropsPendingAndWaitsForRunning();
    void withdrawingFromInsideOwnTasksDoesNotDeadlock();
    void loopTasksRepeatUntilRemoved();
    void unInitJoinsAndPoolStartsAfresh();
    void exceptionsAreReportedAndPoolKeepsWorking();
    void libraryLogsTaskExceptions();
};

void tst_KoTaskPool::everyTaskRunsOnceUnderConcurrentAddAndKill()
{
    CLS_TaskPool pool({}, 4);
    const int iOwnerA = 0, iOwnerB = 0;
    constexpr int kAdders = 4, kPerAdder = 500, kKillers = 2, kPerKiller = 300;
    std::array<std::atomic<int>, kAdders * kPerAdder> arrRunsA{};
    std::array<std::atomic<int>, kKillers * kPerKiller> arrRunsB{};
    std::atomic<int> iInFlightB{0}, iRejected{0};

    std::vector<std::thread> vecThreads;
    for (int t = 0; t < kAdders; ++t) {
        vecThreads.emplace_back([&, t] {
            for (int i = 0; i < kPerAdder; ++i) {
                const int iIndex = t * kPerAdder + i;
                if (!pool.AddTmpTask([&, iIndex] { ++arrRunsA[iIndex]; }, &iOwnerA, "A"))
                    ++iRejected;
            }
        });
    }
    for (int t = 0; t < kKillers; ++t) {
        vecThreads.emplace_back([&, t] {
            for (int i = 0; i < kPerKiller; ++i) {
                const int iIndex = t * kPerKiller + i;
                pool.AddTmpTask(
                    [&, iIndex] {
                        ++iInFlightB;
                        ++arrRunsB[iIndex];
                        --iInFlightB;
                    },
                    &iOwnerB, "B");
                if (i % 10 == 9) pool.KillTask(&iOwnerB);
            }
        });
    }
    for (std::thread& thread : vecThreads)
        thread.join();
    pool.KillTask(&iOwnerB);
    QCOMPARE(iInFlightB.load(), 0);
    std::vector<int> vecRunsB;
    for (const auto& runs : arrRunsB) {
        QVERIFY(runs.load() <= 1);
        vecRunsB.push_back(runs.load());
    }

    const auto allRanOnce = [&] {
        for (const auto& runs : arrRunsA) {
            if (runs.load() != 1) return false;
        }
        return true;
    };
    QTRY_VERIFY(allRanOnce());
    for (std::size_t i = 0; i < arrRunsB.size(); ++i)
        QCOMPARE(arrRunsB[i].load(), vecRunsB[i]);

    // KillTaskAll from several threads at once, racing adders of its victims.
    const int iOwnerD = 0;
    std::array<std::atomic<int>, 3 * 200> arrRunsD{};
    std::atomic<int> iInFlightD{0};
    vecThreads.clear();
    for (int t = 0; t < 3; ++t) {
        vecThreads.emplace_back([&, t] {
            for (int i = 0; i < 200; ++i) {
                const int iIndex = t * 200 + i;
                pool.AddTmpTask(
                    [&, iIndex] {
                        ++iInFlightD;
                        ++arrRunsD[iIndex];
                        --iInFlightD;
                    },
                    &iOwnerD, "D");
                if (i % 7 == 0) pool.KillTaskAll();
            }
        });
    }
    for (std::thread& thread : vecThreads)
        thread.join();
    pool.KillTaskAll();
    QCOMPARE(iInFlightD.load(), 0);
    for (const auto& runs : arrRunsD)
        QVERIFY(runs.load() <= 1);
}

void tst_KoTaskPool::removeTmpTaskDropsPendingAndWaitsForRunning()
{
    Gate gateA, gateB;
    std::thread remover;
    CLS_TaskPool pool({}, 2);
    // A failed check returns early: let the held runs go so the pool can join.
    const auto release = qScopeGuard([&] {
        gateA.Open();
        gateB.Open();
        if (remover.joinable()) remover.join();
    });
    const int iOwnerA = 0, iOwnerB = 0;
    std::atomic<int> iStarted{0}, iPendingRuns{0};
    std::atomic<bool> blFinishedA{false};

    QVERIFY(pool.AddTmpTask(
        [&] {
            ++iStarted;
            gateA.Wait();
            blFinishedA = true;
        },
        &iOwnerA, "A::running"));
    QVERIFY(pool.AddTmpTask(
        [&] {
            ++iStarted;
            gateB.Wait();
        },
        &iOwnerB, "B::running"));
    QTRY_COMPARE(iStarted.load(), 2);
    for (int i = 0; i < 5; ++i)
        pool.AddTmpTask([&] { ++iPendingRuns; }, &iOwnerA, "A::pending");

    std::atomic<bool> blReturned{false}, blFinishedAtReturn{false};
    remover = std::thread([&] {
        pool.RemoveTmpTask(&iOwnerA, "A::~A");
        blFinishedAtReturn = blFinishedA.load();
        blReturned = true;
    });
    QTest::qWait(kStillBlockedMs);
    QVERIFY(!blReturned);
    // Only the owner's own run is waited for, not B's, still held at its gate.
    gateA.Open();
    QTRY_VERIFY(blReturned);
    remover.join();
    QVERIFY(blFinishedAtReturn);

    gateB.Open();
    std::atomic<bool> blSentinel{false};
    pool.AddTmpTask([&] { blSentinel = true; }, &iOwnerB, "B::sentinel");
    QTRY_VERIFY(blSentinel);
    pool.UnInit();
    QCOMPARE(iPendingRuns.load(), 0);
}

void tst_KoTaskPool::withdrawingFromInsideOwnTasksDoesNotDeadlock()
{
    CLS_TaskPool pool({}, 3);
    const int iOwner = 0;
    std::atomic<int> iDone{0};
    pool.AddTmpTask(
        [&] {
            pool.RemoveTmpTask(&iOwner, "self");
            pool.KillTask(&iOwner);
            ++iDone;
        },
        &iOwner, "self");
    QTRY_COMPARE(iDone.load(), 1);

    // Two runs of one owner, each withdrawing the owner while the other runs.
    std::atomic<int> iEntered{0};
    for (int i = 0; i < 2; ++i) {
        pool.AddTmpTask(
            [&] {
                ++iEntered;
                const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
                while (iEntered.load() < 2 && std::chrono::steady_clock::now() < deadline)
                    std::this_thread::yield();
                pool.RemoveTmpTask(&iOwner, "pair");
                ++iDone;
            },
            &iOwner, "pair");
    }
    QTRY_COMPARE(iDone.load(), 3);
    QCOMPARE(iEntered.load(), 2);
}

void tst_KoTaskPool::loopTasksRepeatUntilRemoved()
{
    Gate gate;
    std::thread remover;
    CLS_TaskPool pool({}, 3);
    const auto release = qScopeGuard([&] {
        gate.Open();
        if (remover.joinable()) remover.join();
    });
    const int iOwner = 0, iClockOwner = 0;
    QVERIFY(!pool.AddLoopTask([] {}, &iOwner, "zero", 0));
    QVERIFY(!pool.AddLoopTask({}, &iOwner, "empty", 5));
    QVERIFY(!pool.AddTmpTask({}, &iOwner, "empty"));

    std::atomic<int> iPoll{0}, iOther{0}, iClock{0};
    QVERIFY(pool.AddLoopTask([&] { ++iPoll; }, &iOwner, "poll", 5));
    QVERIFY(pool.AddLoopTask([&] { ++iOther; }, &iOwner, "other", 5));
    QVERIFY(pool.AddLoopTask([&] { ++iClock; }, &iClockOwner, "clock", 5));
    QTRY_VERIFY(iPoll.load() >= 3);

    pool.RemoveTask(&iOwner, "poll");
    const int iPollFrozen = iPoll.load();
    int iTicks = iClock.load();
    QTRY_VERIFY(iClock.load() >= iTicks + 5);
    QCOMPARE(iPoll.load(), iPollFrozen);
    QVERIFY(iOther.load() > 0);

    pool.KillTask(&iOwner);
    const int iOtherFrozen = iOther.load();
    iTicks = iClock.load();
    QTRY_VERIFY(iClock.load() >= iTicks + 5);
    QCOMPARE(iOther.load(), iOtherFrozen);

    // RemoveTask waits for a run in progress.
    std::atomic<int> iSlowRuns{0};
    std::atomic<bool> blInRun{false};
    pool.AddLoopTask(
        [&] {
            ++iSlowRuns;
            blInRun = true;
            gate.Wait();
            blInRun = false;
        },
        &iOwner, "slow", 1);
    QTRY_VERIFY(blInRun);
    std::atomic<bool> blReturned{false}, blRunEndedFirst{false};
    remover = std::thread([&] {
        pool.RemoveTask(&iOwner, "slow");
        blRunEndedFirst = !blInRun.load();
        blReturned = true;
    });
    QTest::qWait(kStillBlockedMs);
    QVERIFY(!blReturned);
    gate.Open();
    QTRY_VERIFY(blReturned);
    remover.join();
    QVERIFY(blRunEndedFirst);
    QCOMPARE(iSlowRuns.load(), 1);
}

void tst_KoTaskPool::unInitJoinsAndPoolStartsAfresh()
{
    Gate gate;
    std::thread stopper;
    CLS_TaskPool pool({}, 2);
    const auto release = qScopeGuard([&] {
        gate.Open();
        if (stopper.joinable()) stopper.join();
    });
    const int iOwner = 0;
    std::atomic<int> iInFlight{0}, iPendingRuns{0};
    for (int i = 0; i < 2; ++i) {
        pool.AddTmpTask(
            [&] {
                ++iInFlight;
                gate.Wait();
                --iInFlight;
            },
            &iOwner, "busy");
    }
    QTRY_COMPARE(iInFlight.load(), 2);
    for (int i = 0; i < 10; ++i)
        pool.AddTmpTask([&] { ++iPendingRuns; }, &iOwner, "pending");

    std::atomic<bool> blReturned{false};
    std::atomic<int> iInFlightAtReturn{-1};
    stopper = std::thread([&] {
        pool.UnInit();
        iInFlightAtReturn = iInFlight.load();
        blReturned = true;
    });
    QTest::qWait(kStillBlockedMs);
    QVERIFY(!blReturned);
    gate.Open();
    QTRY_VERIFY(blReturned);
    stopper.join();
    QCOMPARE(iInFlightAtReturn.load(), 0);
    QCOMPARE(iPendingRuns.load(), 0);

    std::atomic<int> iAfter{0};
    QVERIFY(pool.AddTmpTask([&] { ++iAfter; }, &iOwner, "again"));
    QVERIFY(pool.AddLoopTask([&] { ++iAfter; }, &iOwner, "again-loop", 2));
    QTRY_VERIFY(iAfter.load() >= 3);
}

void tst_KoTaskPool::exceptionsAreReportedAndPoolKeepsWorking()
{
    std::mutex mutex;
    std::vector<std::string> vecReports;
    CLS_TaskPool pool(
        [&](const std::string& _strName, const std::string& _strWhat) {
            std::lock_guard lock(mutex);
            vecReports.push_back(_strName + ": " + _strWhat);
        },
        2);
    // A deep copy: Qt's implicitly shared lists would share data with the workers.
    const auto reports = [&] {
        std::lock_guard lock(mutex);
        QStringList qlstReports;
        for (const std::string& strReport : vecReports)
            qlstReports << QString::fromStdString(strReport);
        return qlstReports;
    };
    const int iOwner = 0;
    pool.AddTmpTask([] { throw std::runtime_error("boom"); }, &iOwner, "thrower");
    pool.AddTmpTask([] { throw 42; }, &iOwner, "odd-thrower");
    QTRY_COMPARE(reports().size(), 2);
    QVERIFY(reports().contains(QStringLiteral("thrower: boom")));
    QVERIFY(reports().filter(QStringLiteral("odd-thrower: ")).size() == 1);

    // A throwing loop keeps its schedule.
    pool.AddLoopTask([] { throw std::logic_error("again"); }, &iOwner, "loop", 2);
    QTRY_VERIFY(reports().filter(QStringLiteral("loop: again")).size() >= 3);
    pool.KillTask(&iOwner);

    std::atomic<int> iRuns{0};
    for (int i = 0; i < 20; ++i)
        pool.AddTmpTask([&] { ++iRuns; }, &iOwner, "after");
    QTRY_COMPARE(iRuns.load(), 20);
}

void tst_KoTaskPool::libraryLogsTaskExceptions()
{
    QTemporaryDir logDir;
    QVERIFY(logDir.isValid());
    ServiceLibrary log(KoLogApi::kLibraryName);
    ServiceLibrary pool(KoTaskPoolApi::kLibraryName);
    QVERIFY(log.Load() && pool.Load());
    const auto pfnLogInit = log.Get<KoLogApi::InitFn>("Init");
    QVERIFY(pfnLogInit && pfnLogInit(logDir.path().toStdString(), 0));

    const auto pfnAdd = pool.Get<KoTaskPoolApi::AddTmpTaskFn>("AddTmpTask");
    const auto pfnUnInit = pool.Get<KoTaskPoolApi::UnInitFn>("UnInit");
    QVERIFY(pfnAdd && pfnUnInit);
    for (const char* pName :
         {"RemoveTmpTask", "AddLoopTask", "RemoveTask", "KillTask", "KillTaskAll"})
        QVERIFY2(pool.Get<void (*)()>(pName), pName);

    const int iOwner = 0;
    QVERIFY(pfnAdd([] { throw std::runtime_error("disk on fire"); }, &iOwner, "CLS_Probe::Run"));
    const QString qstrLog = logDir.filePath(QStringLiteral("KoTaskPool.log"));
    const auto logText = [&] {
        QFile file(qstrLog);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    };
    QTRY_VERIFY(logText().contains(QStringLiteral("disk on fire")));
    QVERIFY(logText().contains(QStringLiteral("[error]")));
    QVERIFY(logText().contains(QStringLiteral("CLS_Probe::Run")));

    std::atomic<bool> blRan{false};
    QVERIFY(pfnAdd([&] { blRan = true; }, &iOwner, "after"));
    QTRY_VERIFY(blRan);
    pfnUnInit();
}

QTEST_GUILESS_MAIN(tst_KoTaskPool)
#include "tst_KoTaskPool.moc"
