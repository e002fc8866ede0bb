#include "I_AppSignals.h"
#include "KoAppManagerApi.h"
#include "ServiceFixture.h"

#include <QCoreApplication>
#include <QtTest>

#include <thread>
#include <vector>

class tst_KoAppManager : public QObject
{
    Q_OBJECT

private slots:
    void oneHubReachesEveryReceiver()
    {
        const auto pfnGet = QuillTest::ServiceFunction<KoAppManagerApi::GetAppSignalsFn>(
            QuillTest::Service::AppManager, "GetAppSignals");
        QVERIFY(pfnGet);

        // The first callers race from worker threads; all must get the same hub,
        // and it must live on the application's thread, not on a thread that ends.
        std::vector<I_AppSignals*> vecSeen(8, nullptr);
        std::vector<std::thread> vecThreads;
        for (std::size_t i = 0; i < vecSeen.size(); ++i)
            vecThreads.emplace_back([&, i] { vecSeen[i] = pfnGet(); });
        for (std::thread& thread : vecThreads)
            thread.join();
        I_AppSignals* pHub = pfnGet();
        QVERIFY(pHub);
        QCOMPARE(vecSeen, std::vector<I_AppSignals*>(vecSeen.size(), pHub));
        QCOMPARE(pHub->thread(), QCoreApplication::instance()->thread());

        // A module follows the sound state; a worker thread publishes it.
        QObject player;
        QVariantMap qmapAtPlayer;
        connect(pHub, &I_AppSignals::SignSoundStateChanged, &player,
                [&](const QVariantMap& _qmap) { qmapAtPlayer = _qmap; });
        const QVariantMap qmapState{{"ModuleName", "ModuleKoPlayer"}, {"SoundOpen", true}};
        std::thread publisher([&] { emit pHub->SignSoundStateChanged(qmapState); });
        publisher.join();
        QTRY_COMPARE(qmapAtPlayer, qmapState);
    }
};

QTEST_GUILESS_MAIN(tst_KoAppManager)
#include "tst_KoAppManager.moc"
