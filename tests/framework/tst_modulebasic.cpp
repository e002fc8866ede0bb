// Requests through the module base: queued on the real task pool, handled on
// a worker thread, answered by signal, logged through the real log service.
#include "CLS_BusinessHandler.h"
#include "CLS_ModuleBasic.h"
#include "KoServices.h"
#include "ServiceFixture.h"

#include <QtTest>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace {

constexpr const char* kChannel = "ModuleFrameworkTest";

class RecordingHandler : public CLS_BusinessHandler
{
public:
    void Init() override
    {
        ++m_iInit;
        if (m_blThrowOnInit) throw std::runtime_error("handler could not start");
    }
    void UnInit() override {}
    bool Handle(const QString& _qstrKey, const QVariantMap& _qmapParam,
                QVariantMap& _qmapResult) override
    {
        m_pHandledOn = QThread::currentThread();
        if (_qstrKey == QLatin1String("refuse")) {
            _qmapResult[QStringLiteral("reason")] = QStringLiteral("not today");
            return false;
        }
        _qmapResult[QStringLiteral("echo")] = _qmapParam.value(QStringLiteral("x"));
        return true;
    }

    std::atomic<int> m_iInit{0};
    std::atomic<QThread*> m_pHandledOn{nullptr};
    bool m_blThrowOnInit = false;
};

class TestModule : public CLS_ModuleBasic
{
    Q_OBJECT
public:
    explicit TestModule(RecordingHandler* _pHandler) : m_pHandler(_pHandler) {}
    const char* GetModuleCode() override { return kChannel; }
    CLS_BusinessHandler* GetBusinessHandler(const QVariantMap&) override
    {
        ++m_iAsked;
        return m_pHandler;
    }
    QWidget* CreateModuleWgt(const QVariantMap&) override { return nullptr; }

    std::atomic<int> m_iAsked{0};

private:
    RecordingHandler* m_pHandler;
};

}  // namespace

class TestModuleBasic : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_services.IsReady()); }
    void requestIsAnsweredFromWorkerThread_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("outcome");
        QTest::addColumn<QString>("resultKey");
        QTest::addColumn<QVariant>("resultValue");
        QTest::addColumn<QString>("record");  // one record expected in the module's log
        // The maps' layout in a record is the log line builder's, tested there.
        QTest::newRow("handled") << "echo"
                                 << "success"
                                 << "echo" << QVariant(7)
                                 << "\\[info\\] .*\\] handle 1 key:\\[echo\\]";
        QTest::newRow("refused, logged as an error")
            << "refuse"
            << "fail"
            << "reason" << QVariant("not today")
            << "\\[error\\] .*\\] key:\\[refuse\\] .*UUID:\\[uuid-refuse\\]";
    }

    void requestIsAnsweredFromWorkerThread()
    {
        QFETCH(QString, key);
        QFETCH(QString, outcome);
        QFETCH(QString, resultKey);
        QFETCH(QVariant, resultValue);
        QFETCH(QString, record);
        RecordingHandler handler;
        TestModule module(&handler);
        std::atomic<QThread*> pEmittedOn{nullptr};
        connect(
            &module, &CLS_ModuleBasic::SignHandlerRsulted, &module,
            [&pEmittedOn](QString, QVariantMap, QString) { pEmittedOn = QThread::currentThread(); },
            Qt::DirectConnection);
        QSignalSpy spy(&module, &CLS_ModuleBasic::SignHandlerRsulted);

        QVariantMap qmapParam{{QStringLiteral("x"), 7}};
        module.TaskRequest(key, qmapParam, "uuid-" + key);
        qmapParam[QStringLiteral("x")] = 8;  // the queued request keeps its own copy

        QTRY_COMPARE(spy.count(), 1);
        QCOMPARE(spy.first().at(0).toString() + ' ' + spy.first().at(2).toString(),
                 key + " uuid-" + key);
        const QVariantMap qmapResult = spy.first().at(1).toMap();
        QCOMPARE(qmapResult.value(QStringLiteral("__result__")).toString(), outcome);
        QCOMPARE(qmapResult.value(resultKey), resultValue);
        QVERIFY(handler.m_pHandledOn.load() != nullptr);
        QVERIFY(handler.m_pHandledOn.load() != QThread::currentThread());
        QCOMPARE(pEmittedOn.load(), handler.m_pHandledOn.load());

        const QRegularExpression reRecord(record, QRegularExpression::DotMatchesEverythingOption);
        QCOMPARE(Log().filter(reRecord).size(), 1);
    }

    void moduleWithoutHandlerStaysSilent()
    {
        TestModule module(nullptr);
        QSignalSpy spy(&module, &CLS_ModuleBasic::SignHandlerRsulted);
        const int iLoggedBefore = Log().filter(QStringLiteral(":[silent]")).size();

        module.TaskRequest(QStringLiteral("silent"), {}, QStringLiteral("uuid-3"));
        QTRY_COMPARE(module.m_iAsked.load(), 1);
        // Returns once the module's request has run to its end; the spy would
        // have seen an answer by then.
        KoService::RemoveTmpTask(&module, "test");
        QCOMPARE(spy.count(), 0);
        // Only the request line itself: no outcome, no error.
        QCOMPARE(Log().filter(QStringLiteral(":[silent]")).size(), iLoggedBefore + 1);
    }

    void throwingHandlerInitIsLogged()
    {
        RecordingHandler handler;
        handler.m_blThrowOnInit = true;
        TestModule module(&handler);
        module.InitModule({{QStringLiteral("lang"), 2}});  // must not throw
        QCOMPARE(handler.m_iInit.load(), 1);
        QCOMPARE(Log().filter(QStringLiteral("handler could not start _qmapParam - [")).size(), 1);
    }

    void destructorWithdrawsPendingRequests()
    {
        // More blockers than the pool has workers: every worker is held, so the
        // requests stay pending until the module goes.
        std::atomic<bool> blReleased{false};
        std::atomic<int> iHeld{0};
        for (int i = 0; i < 16; ++i) {
            KoService::AddTmpTask(
                [&] {
                    ++iHeld;
                    while (!blReleased)
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                },
                &blReleased, "blocker");
        }
        QTRY_VERIFY(iHeld > 0);
        RecordingHandler handler;
        auto* pModule = new TestModule(&handler);
        for (int i = 0; i < 5; ++i)
            pModule->TaskRequest(QStringLiteral("echo"), {}, QString::number(i));
        delete pModule;
        blReleased = true;
        KoService::RemoveTmpTask(&blReleased, "release");
        // Withdrawn requests never reach a handler, even once the pool is free.
        std::atomic<bool> blDrained{false};
        KoService::AddTmpTask([&blDrained]() { blDrained = true; }, this, "drain");
        QTRY_VERIFY(blDrained.load());
        QCOMPARE(handler.m_pHandledOn.load(), nullptr);
    }

private:
    QStringList Log() const { return m_services.LogRecords(QString::fromLatin1(kChannel)); }

    QuillTest::ServiceFixture m_services{QuillTest::Service::Log, QuillTest::Service::TaskPool};
};

QTEST_GUILESS_MAIN(TestModuleBasic)
#include "tst_modulebasic.moc"
