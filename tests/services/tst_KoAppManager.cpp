#include "I_AppSignals.h"
#include "KoAppManagerApi.h"
#include "ServiceLibrary.h"

#include <QCoreApplication>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

class tst_KoAppManager : public QObject
{
    Q_OBJECT

private slots:
    void oneHubForEveryCaller();
    void soundStateReachesEveryReceiver();
};

void tst_KoAppManager::oneHubForEveryCaller()
{
    ServiceLibrary library(KoAppManagerApi::kLibraryName);
    QVERIFY(library.Load());
    const auto pfnGet = library.Get<KoAppManagerApi::GetAppSignalsFn>("GetAppSignals");
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
    QCOMPARE(pfnGet(), pHub);
    for (I_AppSignals* pSeen : vecSeen)
        QCOMPARE(pSeen, pHub);
    QCOMPARE(pHub->thread(), QCoreApplication::instance()->thread());
}

void tst_KoAppManager::soundStateReachesEveryReceiver()
{
    ServiceLibrary library(KoAppManagerApi::kLibraryName);
    QVERIFY(library.Load());
    I_AppSignals* pHub = library.Get<KoAppManagerApi::GetAppSignalsFn>("GetAppSignals")();
    QVERIFY(pHub);

    // Two modules follow the sound state; the publisher is one of them.
    QObject player, other;
    QVariantMap qmapAtPlayer, qmapAtOther;
    connect(pHub, &I_AppSignals::SignSoundStateChanged, &player,
            [&](const QVariantMap& _qmap) { qmapAtPlayer = _qmap; });
    connect(pHub, &I_AppSignals::SignSoundStateChanged, &other,
            [&](const QVariantMap& _qmap) { qmapAtOther = _qmap; });

    const QVariantMap qmapState{{QStringLiteral("ModuleName"), QStringLiteral("ModuleKoPlayer")},
                                {QStringLiteral("SoundOpen"), true}};
    emit pHub->SignSoundStateChanged(qmapState);
    QCOMPARE(qmapAtPlayer, qmapState);
    QCOMPARE(qmapAtOther, qmapState);

    // Published from a worker thread, it arrives queued on the receivers' thread.
    qmapAtPlayer.clear();
    qmapAtOther.clear();
    std::thread publisher([&] { emit pHub->SignSoundStateChanged(qmapState); });
    publisher.join();
    QTRY_COMPARE(qmapAtPlayer, qmapState);
    QTRY_COMPARE(qmapAtOther, qmapState);
}

QTEST_GUILESS_MAIN(tst_KoAppManager)
#include "tst_KoAppManager.moc"
