// The module and view bases: requests queued on the real task pool, handled on
// a worker thread, answered by signal, logged through the real log service.
#include "CLS_BusinessHandler.h"
#include "CLS_ModuleBasic.h"
#include "CLS_PresenterBasic.h"
#include "CLS_ViewBasic.h"
#include "KoServices.h"
#include "ServiceFixture.h"

#include <QtTest>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace {

constexpr const char* kModuleChannel = "ModuleFrameworkTest";
constexpr const char* kViewChannel = "ViewFrameworkTest";

class RecordingHandler : public CLS_BusinessHandler
{
public:
    void Init() override
    {
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

    std::atomic<QThread*> m_pHandledOn{nullptr};
    bool m_blThrowOnInit = false;
};

class TestModule : public CLS_ModuleBasic
{
    Q_OBJECT
public:
    explicit TestModule(RecordingHandler* _pHandler) : m_pHandler(_pHandler) {}
    const char* GetModuleCode() override { return kModuleChannel; }
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

class EchoPresenter : public CLS_PresenterBasic
{
    Q_OBJECT
public:
    const char* GetModuleCode() override { return kViewChannel; }

protected:
    bool HandleRequest(const QString&, const QVariantMap& _qmapParam,
                       QVariantMap& _qmapResult) override
    {
        _qmapResult[QStringLiteral("echo")] = _qmapParam.value(QStringLiteral("x"));
        return true;
    }
};

class TestView : public CLS_ViewBasic
{
    Q_OBJECT
public:
    explicit TestView(CLS_PresenterBasic* _pPresenter) : m_pPresenter(_pPresenter) {}
    const char* GetModuleCode() override { return kViewChannel; }
    CLS_PresenterBasic* GetPresenter() override { return m_pPresenter; }
    void InitUi() override { ++m_iInitUi; }
    void InitConnect() override {}
    bool HandleTask(const QString&, const QVariantMap& _qmapParam,
                    QVariantMap& _qmapResult) override
    {
        ++m_iHandled;
        _qmapResult[QStringLiteral("seen")] = _qmapParam.value(QStringLiteral("echo"));
        return true;
    }

    int m_iInitUi = 0;
    int m_iHandled = 0;

private:
    CLS_PresenterBasic* m_pPresenter;
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
        QTest::addColumn<QVariantMap>("result");
        QTest::addColumn<QString>("record");  // one record expected in the module's log
        QTest::newRow("handled") << "echo" << QVariantMap{{"echo", 7}, {"__result__", "success"}}
                                 << R"(\[info\] .*\] handle 1 key:\[echo\])";
        QTest::newRow("refused, logged as an error")
            << "refuse" << QVariantMap{{"reason", "not today"}, {"__result__", "fail"}}
            << R"(\[error\] .*\] key:\[refuse\] .*UUID:\[uuid-refuse\])";
    }

    void requestIsAnsweredFromWorkerThread()
    {
        QFETCH(QString, key);
        QFETCH(QVariantMap, result);
        QFETCH(QString, record);
        RecordingHandler handler;
        TestModule module(&handler);
        QSignalSpy spy(&module, &CLS_ModuleBasic::SignHandlerRsulted);
        QVariantMap qmapParam{{QStringLiteral("x"), 7}};
        module.TaskRequest(key, qmapParam, "uuid-" + key);
        qmapParam[QStringLiteral("x")] = 8;  // the queued request keeps its own copy

        QTRY_COMPARE(spy.count(), 1);
        QCOMPARE(spy.first().at(0).toString() + ' ' + spy.first().at(2).toString(),
                 key + " uuid-" + key);
        QCOMPARE(spy.first().at(1).toMap(), result);
        QVERIFY(handler.m_pHandledOn.load() != nullptr);
        QVERIFY(handler.m_pHandledOn.load() != QThread::currentThread());
        const QRegularExpression reRecord(record, QRegularExpression::DotMatchesEverythingOption);
        QCOMPARE(Log(kModuleChannel).filter(reRecord).size(), 1);
    }

    void moduleWithoutHandlerStaysSilent()
    {
        TestModule module(nullptr);
        QSignalSpy spy(&module, &CLS_ModuleBasic::SignHandlerRsulted);
        module.TaskRequest(QStringLiteral("silent"), {}, QStringLiteral("uuid-3"));
        QTRY_COMPARE(module.m_iAsked.load(), 1);
        // Returns once the module's request has run to its end; the spy would
        // have seen an answer by then.
        KoService::RemoveTmpTask(&module, "test");
        QCOMPARE(spy.count(), 0);
        // Only the request line itself: no outcome, no error.
        QCOMPARE(Log(kModuleChannel).filter(QStringLiteral(":[silent]")).size(), 1);
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


    void throwingHandlerInitIsLogged()
    {
        RecordingHandler handler;
        handler.m_blThrowOnInit = true;
        TestModule module(&handler);
        module.InitModule({{QStringLiteral("lang"), 2}});  // must not throw
        QCOMPARE(Log(kModuleChannel).filter("handler could not start _qmapParam - [").size(), 1);
    }

    void presenterResultsReachTheAskingViewOnly()
    {
        EchoPresenter presenter;
        TestView viewA(&presenter);
        TestView viewB(&presenter);
        viewA.Init();
        // Shown, hidden and shown again, a view initialises once.
        viewB.show();
        viewB.hide();
        viewB.show();
        QCOMPARE(viewB.m_iInitUi, 1);
        QSignalSpy spyA(&viewA, &CLS_ViewBasic::SignRequestTaskRsulted);
        QSignalSpy spyB(&viewB, &CLS_ViewBasic::SignRequestTaskRsulted);

        viewA.SendPresenterRequest(QStringLiteral("echo"), {{QStringLiteral("x"), 5}}, "u-a");
        QTRY_COMPARE(spyA.count(), 1);
        QCOMPARE(spyA.first().at(0).toString() + ' ' + spyA.first().at(2).toString(), "echo u-a");
        QCOMPARE(spyA.first().at(1).toMap(), (QVariantMap{{"seen", 5}, {"__result__", "success"}}));
        // The same result also reached B, which logged its entry line and stopped.
        QTRY_COMPARE(Log(kViewChannel).filter("call funtion key:[echo]").size(), 2);
        QCOMPARE(viewB.m_iHandled, 0);
        QCOMPARE(spyB.count(), 0);
    }

    // Views made through GetWgtView are the player's message boxes, which
    // its window tests drive; a missing module gives null, and says so at
    // every request.
    void missingModuleGivesNoView()
    {
        QCOMPARE(CLS_ViewBasic::GetWgtView(QStringLiteral("NoSuchModule"), {}), nullptr);
        QCOMPARE(CLS_ViewBasic::GetWgtView(QStringLiteral("NoSuchModule"), {}), nullptr);
        QCOMPARE(Log("default").filter("Request Fail_strModuleName:[NoSuchModule]").size(), 2);
    }

private:
    QStringList Log(const char* _pChannel) const { return m_services.LogRecords(_pChannel); }

    QuillTest::ServiceFixture m_services{QuillTest::Service::Log, QuillTest::Service::TaskPool};
};

QTEST_MAIN(TestModuleBasic)
#include "tst_modulebasic.moc"
