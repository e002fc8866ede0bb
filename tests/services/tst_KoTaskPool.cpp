#include "CLS_TaskPool.h"
#include "KoServices.h"
#include "KoTaskPoolApi.h"
#include "ServiceFixture.h"

#include <QtTest>

#include <atomic>
#include <stdexcept>
#include <thread>

class tst_KoTaskPool : public QObject
{
    Q_OBJECT

private slots:
    void withdrawalWaitsForRunsInProgress_data()
    {
        QTest::addColumn<QString>("withdrawal");
        QTest::addColumn<bool>("loop");        // the owner's held run is a loop task's
        QTest::addColumn<int>("pendingRuns");  // of the owner's 5 pending one-shot tasks
        QTest::newRow("RemoveTmpTask") << "RemoveTmpTask" << false << 0;
        QTest::newRow("RemoveTask leaves one-shot tasks") << "RemoveTask" << true << 5;
        QTest::newRow("KillTask") << "KillTask" << true << 0;
        QTest::newRow("UnInit, then the pool starts afresh") << "UnInit" << false << 0;
    }

    // Two workers: one holds a run of the owner, the other a run of someone
    // else. The withdrawal returns once the owner's run has ended, but does not
    // wait for the other's (UnInit waits for every run); a withdrawn loop does
    // not run again.
    void withdrawalWaitsForRunsInProgress()
    {
        QFETCH(QString, withdrawal);
        QFETCH(bool, loop);
        QFETCH(int, pendingRuns);
        const bool blWaitsForAll = withdrawal == QLatin1String("UnInit");
        // Everything the runs touch outlives the pool, which joins them.
        std::atomic<bool> blOpenOwner{false}, blOpenOther{false};
        const int iOwner = 0, iOther = 0;
        std::atomic<int> iInFlight{0}, iHeldRuns{0}, iPendingRuns{0};
        CLS_TaskPool pool({}, 2);
        // Held runs are let go before the pool joins, even when a check fails early.
        const auto release = qScopeGuard([&] { blOpenOwner = blOpenOther = true; });
        const auto held = [&](std::atomic<bool>& _blOpen) {
            return [&iInFlight, &iHeldRuns, pOpen = &_blOpen] {
                ++iHeldRuns;
                ++iInFlight;
                while (!*pOpen)
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                --iInFlight;
            };
        };
        QVERIFY(pool.AddTmpTask(held(blOpenOther), &iOther, "other"));
        if (loop)
            QVERIFY(pool.AddLoopTask(held(blOpenOwner), &iOwner, "run", 1));
        else
            QVERIFY(pool.AddTmpTask(held(blOpenOwner), &iOwner, "run"));
        QTRY_COMPARE(iInFlight.load(), 2);
        for (int i = 0; i < 5; ++i)
            pool.AddTmpTask([&] { ++iPendingRuns; }, &iOwner, "pending");

        std::atomic<int> iInFlightAtReturn{-1};
        std::thread caller([&] {
            if (withdrawal == QLatin1String("RemoveTmpTask"))
                pool.RemoveTmpTask(&iOwner, "run");
            else if (withdrawal == QLatin1String("RemoveTask"))
                pool.RemoveTask(&iOwner, "run");
            else if (withdrawal == QLatin1String("KillTask"))
                pool.KillTask(&iOwner);
            else
                pool.UnInit();
            iInFlightAtReturn = iInFlight.load();
        });
        // A withdrawal that does not wait returns within this pause; there is
        // no event that marks "still waiting" to poll for instead.
        QTest::qWait(100);
        blOpenOwner = true;
        if (blWaitsForAll) blOpenOther = true;
        caller.join();
        QCOMPARE(iInFlightAtReturn.load(), blWaitsForAll ? 0 : 1);

        QTest::qWait(50);  // a loop left scheduled runs many times in this pause
        // Runs after anything still pending on the one free worker.
        std::atomic<bool> blMarked{false};
        QVERIFY(pool.AddTmpTask([&] { blMarked = true; }, &iOther, "marker"));
        QTRY_VERIFY(blMarked.load());
        QCOMPARE(iPendingRuns.load(), pendingRuns);
        QCOMPARE(iHeldRuns.load(), 2);
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

    // Through the library: its pool logs what a task throws and goes on.
    void exceptionsAreLoggedAndPoolKeepsWorking()
    {
        using QuillTest::Service;
        QuillTest::ServiceFixture services{Service::Log, Service::TaskPool};
        const auto pfnAddLoop = QuillTest::ServiceFunction<KoTaskPoolApi::AddLoopTaskFn>(
            Service::TaskPool, "AddLoopTask");
        QVERIFY(services.IsReady() && pfnAddLoop);
        const int iOwner = 0;
        QVERIFY(KoService::AddTmpTask([] { throw std::runtime_error("disk on fire"); }, &iOwner,
                                      "CLS_Probe::Run"));
        QVERIFY(KoService::AddTmpTask([] { throw 42; }, &iOwner, "odd-thrower"));
        // A throwing loop keeps its schedule.
        QVERIFY(pfnAddLoop([] { throw std::logic_error("again"); }, &iOwner, "loop", 2));
        const auto logText = [&] { return services.LogText(QStringLiteral("KoTaskPool")); };
        QTRY_VERIFY(logText().count(QStringLiteral("[loop] failed: again")) >= 3);
        const QRegularExpression reFailed(R"(\[error\] .*\[CLS_Probe::Run\] failed: disk on fire)");
        QVERIFY2(logText().contains(reFailed) && logText().contains("[odd-thrower] failed: "),
                 qPrintable(logText()));
        std::atomic<int> iRuns{0};
        for (int i = 0; i < 20; ++i)
            KoService::AddTmpTask([&] { ++iRuns; }, &iOwner, "after");
        QTRY_COMPARE(iRuns.load(), 20);
    }
};

QTEST_GUILESS_MAIN(tst_KoTaskPool)
#include "tst_KoTaskPool.moc"
