#include "CLS_TaskPool.h"
#include "KoLogApi.h"
#include "KoTaskPoolApi.h"
#include "ServiceFixture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <stdexcept>
#include <thread>
#include <vector>

class tst_KoTaskPool : public QObject
{
    Q_OBJECT

private slots:
    void concurrentAddRemoveAndKill()
    {
        CLS_TaskPool pool({}, 4);
        const int iKept = 0, iVictim = 0;
        constexpr int kThreads = 3, kPerThread = 400;
        std::array<std::atomic<int>, kThreads * kPerThread> arrKept{}, arrVictim{};
        std::atomic<int> iInFlight{0};
        // Threads queue kept and victim tasks and withdraw the victims every 7th step.
        std::vector<std::thread> vecThreads;
        for (int t = 0; t < kThreads; ++t) {
            vecThreads.emplace_back([&, t] {
                for (int i = t * kPerThread; i < (t + 1) * kPerThread; ++i) {
                    pool.AddTmpTask([&, i] { ++arrKept[i]; }, &iKept, "kept");
                    pool.AddTmpTask(
                        [&, i] {
                            ++iInFlight;
                            ++arrVictim[i];
                            --iInFlight;
                        },
                        &iVictim, "victim");
                    if (i % 14 == 0) pool.KillTask(&iVictim);
                    if (i % 14 == 7) pool.RemoveTmpTask(&iVictim, "victim");
                }
            });
        }
        for (std::thread& thread : vecThreads)
            thread.join();
        pool.KillTask(&iVictim);
        QCOMPARE(iInFlight.load(), 0);
        // Victim runs so far, or -1 once a victim ran twice.
        const auto victimRuns = [&] {
            int iRuns = 0;
            for (const auto& runs : arrVictim)
                iRuns = iRuns < 0 || runs > 1 ? -1 : iRuns + runs;
            return iRuns;
        };
        const int iVictimRuns = victimRuns();
        QVERIFY(iVictimRuns >= 0);
        QTRY_VERIFY(
            std::all_of(arrKept.begin(), arrKept.end(), [](auto& runs) { return runs == 1; }));
        QCOMPARE(victimRuns(), iVictimRuns);  // none ran after the withdrawal returned
    }

    void withdrawalsWaitForRunsInProgress()
    {
        std::atomic<bool> blOpenA{false}, blOpenLoop{false}, blOpenLast{false};
        CLS_TaskPool pool({}, 2);
        // Held runs are let go before the pool joins, even when a check fails early.
        const auto release = qScopeGuard([&] { blOpenA = blOpenLoop = blOpenLast = true; });
        const int iOwnerA = 0, iOwnerB = 0;
        std::atomic<int> iInFlight{0}, iRuns{0};
        const auto held = [&](std::atomic<bool>& _blOpen) {
            return [&iInFlight, pOpen = &_blOpen] {
                ++iInFlight;
                while (!*pOpen)
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                --iInFlight;
            };
        };
        const auto addPending = [&](const void* _pOwner, int _iCount) {
            for (int i = 0; i < _iCount; ++i)
                pool.AddTmpTask([&] { ++iRuns; }, _pOwner, "pending");
        };
        // Runs _withdraw on a thread of its own and answers the runs still in
        // flight when it returned; setting _blOpen lets the awaited run end.
        const auto inFlightAfter = [&](std::atomic<bool>& _blOpen,
                                       const std::function<void()>& _withdraw) {
            std::atomic<int> iAtReturn{-1};
            std::thread caller([&] {
                _withdraw();
                iAtReturn = iInFlight.load();
            });
            // A withdrawal that does not wait returns within this pause; there is
            // no event that marks "still waiting" to poll for instead.
            QTest::qWait(100);
            _blOpen = true;
            caller.join();
            return iAtReturn.load();
        };

        // RemoveTmpTask drops the owner's pending tasks and waits for its running
        // one, but not for another owner's.
        QVERIFY(pool.AddTmpTask(held(blOpenA), &iOwnerA, "A"));
        QVERIFY(pool.AddTmpTask(held(blOpenLast), &iOwnerB, "B"));
        QTRY_COMPARE(iInFlight.load(), 2);
        addPending(&iOwnerA, 5);
        QCOMPARE(inFlightAfter(blOpenA, [&] { pool.RemoveTmpTask(&iOwnerA, "A"); }), 1);

        // RemoveTask waits for the loop's run in progress, and that run is its last.
        std::atomic<int> iLoopRuns{0};
        QVERIFY(pool.AddLoopTask(
            [&, run = held(blOpenLoop)] {
                ++iLoopRuns;
                run();
            },
            &iOwnerA, "loop", 1));
        QTRY_COMPARE(iInFlight.load(), 2);
        QCOMPARE(inFlightAfter(blOpenLoop, [&] { pool.RemoveTask(&iOwnerA, "loop"); }), 1);
        QTest::qWait(50);  // a loop left scheduled runs many times in this pause
        QCOMPARE(iLoopRuns.load(), 1);

        // UnInit drops what is pending and joins the running tasks; the pool then starts afresh.
        QVERIFY(pool.AddTmpTask(held(blOpenLast), &iOwnerB, "B2"));
        QTRY_COMPARE(iInFlight.load(), 2);
        addPending(&iOwnerB, 10);
        QCOMPARE(inFlightAfter(blOpenLast, [&] { pool.UnInit(); }), 0);
        QCOMPARE(iRuns.load(), 0);
        addPending(&iOwnerA, 1);
        QTRY_COMPARE(iRuns.load(), 1);
    }

    void withdrawingFromInsideOwnTasksDoesNotDeadlock()
    {
        // Two runs of one owner, each withdrawing the owner while the other runs.
        CLS_TaskPool pool({}, 3);
        const int iOwner = 0;
        std::atomic<int> iDone{0}, iEntered{0};
        for (int i = 0; i < 2; ++i) {
            pool.AddTmpTask(
                [&] {
                    ++iEntered;
                    const auto deadline =
                        std::chrono::steady_clock::now() + std::chrono::seconds(5);
                    while (iEntered < 2 && std::chrono::steady_clock::now() < deadline)
                        std::this_thread::yield();
                    pool.RemoveTmpTask(&iOwner, "pair");
                    pool.KillTask(&iOwner);
                    ++iDone;
                },
                &iOwner, "pair");
        }
        QTRY_COMPARE(iDone.load(), 2);
        QCOMPARE(iEntered.load(), 2);
    }

    void exceptionsAreLoggedAndPoolKeepsWorking()
    {
        using QuillTest::Service;
        using QuillTest::ServiceFunction;
        QuillTest::ServiceFixture services{Service::Log, Service::TaskPool};
        QVERIFY(services.IsReady());
        const auto pfnAdd =
            ServiceFunction<KoTaskPoolApi::AddTmpTaskFn>(Service::TaskPool, "AddTmpTask");
        const auto pfnAddLoop =
            ServiceFunction<KoTaskPoolApi::AddLoopTaskFn>(Service::TaskPool, "AddLoopTask");
        const auto pfnKill =
            ServiceFunction<KoTaskPoolApi::KillTaskFn>(Service::TaskPool, "KillTask");
        QVERIFY(pfnAdd && pfnAddLoop && pfnKill);

        const int iOwner = 0;
        QVERIFY(
            pfnAdd([] { throw std::runtime_error("disk on fire"); }, &iOwner, "CLS_Probe::Run"));
        QVERIFY(pfnAdd([] { throw 42; }, &iOwner, "odd-thrower"));
        // A throwing loop keeps its schedule.
        QVERIFY(pfnAddLoop([] { throw std::logic_error("again"); }, &iOwner, "loop", 2));
        const auto logText = [&] { return services.LogText(QStringLiteral("KoTaskPool")); };
        QTRY_VERIFY(logText().count(QStringLiteral("[loop] failed: again")) >= 3);
        pfnKill(&iOwner);
        const int iLoopFailures = logText().count(QStringLiteral("[loop] failed: again"));
        const QRegularExpression reFailed(R"(\[error\] .*\[CLS_Probe::Run\] failed: disk on fire)");
        QVERIFY2(logText().contains(reFailed) && logText().contains("[odd-thrower] failed: "),
                 qPrintable(logText()));

        std::atomic<int> iRuns{0};
        for (int i = 0; i < 20; ++i)
            pfnAdd([&] { ++iRuns; }, &iOwner, "after");
        QTRY_COMPARE(iRuns.load(), 20);
        QCOMPARE(logText().count(QStringLiteral("[loop] failed: again")), iLoopFailures);
    }
};

QTEST_GUILESS_MAIN(tst_KoTaskPool)
#include "tst_KoTaskPool.moc"
