#include "I_AppSignals.h"
#include "KoAppManagerApi.h"
#include "ServiceFixture.h"

#include <QCoreApplication>
#include <QtTest>

#include <thread>

class tst_KoAppManager : public QObject
{
    Q_OBJECT

private slots:
    // The first caller may be a worker thread that ends at once; the hub it
    // creates must live on the application's thread all the same.
    void hubLivesOnTheApplicationThread()
    {
        const auto pfnGet = QuillTest::ServiceFunction<KoAppManagerApi::GetAppSignalsFn>(
            QuillTest::Service::AppManager, "GetAppSignals");
        QVERIFY(pfnGet);
        I_AppSignals* pFirst = nullptr;
        std::thread([&] { pFirst = pfnGet(); }).join();
        QVERIFY(pFirst);
        QCOMPARE(pfnGet(), pFirst);
        QCOMPARE(pFirst->thread(), QCoreApplication::instance()->thread());
    }
};

QTEST_GUILESS_MAIN(tst_KoAppManager)
#include "tst_KoAppManager.moc"
