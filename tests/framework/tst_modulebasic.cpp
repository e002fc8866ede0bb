// Requests through the module base: queued on the real task pool, handled on
// a worker thread, answered by signal, logged through the real log service.
#include "CLS_BusinessHandler.h"
#include "CLS_ModuleBasic.h"
#include "FrameworkTestUtil.h"
#include "KoServices.h"
#include "TaskTag.h"

#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <stdexcept>

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
    void UnInit() override { ++m_iUnInit; }
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
    QVariantMap Param() const { return m_qmapParam; }

    std::atomic<int> m_iInit{0};
    std::atomic<int> m_iUnInit{0};
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

struct Answer
{
    QString qstrKey;
    QVariantMap qmapResult;
    QString qstrUUID;
};

// Holds every pool worker until released, so tasks queued meanwhile stay pending.
class PoolBlocker
{
public:
    explicit PoolBlocker(int _iTasks)
    {
        for (int i = 0; i < _iTasks; ++i) {
            KoService::AddTmpTask(
                [this]() {
                    std::unique_lock<std::mutex> lock(m_mutex);
                    ++m_iRunning;
                    m_cv.wait(lock, [this]() { return m_blReleased; });
                },
                this, "blocker");
        }
    }
    ~PoolBlocker()
    {
        // Blockers still queued must not run on a blocker that is gone.
        Release();
        KoService::RemoveTmpTask(this, "~PoolBlocker");
    }
    bool AnyRunning()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_iRunning > 0;
    }
    void Release()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_blReleased = true;
        m_cv.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_cv;
    int m_iRunning = 0;
    bool m_blReleased = false;
};

}  // namespace

class TestModuleBasic : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase() { FrameworkTest::StopTaskPool(); }
    void taskTagHasTheSuiteSpacing();
    void handledRequestAnswersFromWorkerThread();
    void refusedRequestIsLoggedAsError();
    void moduleWithoutHandlerStaysSilent();
    void initAndUnInitReachTheHandler();
    void destructorWithdrawsPendingRequests();

private:
    void Collect(TestModule& _module, std::atomic<QThread*>& _pEmittedOn);
    QStringList Log() const
    {
        return FrameworkTest::ReadLog(m_tmpLogDir.path(), QString::fromLatin1(kChannel));
    }

    QTemporaryDir m_tmpLogDir;
    QList<Answer> m_lstAnswers;
};

void TestModuleBasic::initTestCase()
{
    QVERIFY(FrameworkTest::StartLogging(m_tmpLogDir.path()));
}

void TestModuleBasic::Collect(TestModule& _module, std::atomic<QThread*>& _pEmittedOn)
{
    m_lstAnswers.clear();
    connect(
        &_module, &CLS_ModuleBasic::SignHandlerRsulted, &_module,
        [&_pEmittedOn](QString, QVariantMap, QString) { _pEmittedOn = QThread::currentThread(); },
        Qt::DirectConnection);
    connect(&_module, &CLS_ModuleBasic::SignHandlerRsulted, this,
            [this](QString _qstrKey, QVariantMap _qmapResult, QString _qstrUUID) {
                m_lstAnswers << Answer{_qstrKey, _qmapResult, _qstrUUID};
            });
}

void TestModuleBasic::taskTagHasTheSuiteSpacing()
{
    QCOMPARE(QString::fromStdString(MakeTaskTag("a/b.cpp", 42, "CLS_ModuleBasic::TaskRequest")),
             QStringLiteral("{\"file\": \"a/b.cpp\",\"line\": \"42\", \"function\": "
                            "\"CLS_ModuleBasic::TaskRequest\"}"));
}

void TestModuleBasic::handledRequestAnswersFromWorkerThread()
{
    RecordingHandler handler;
    TestModule module(&handler);
    std::atomic<QThread*> pEmittedOn{nullptr};
    Collect(module, pEmittedOn);

    QVariantMap qmapParam{{QStringLiteral("x"), 7}};
    module.TaskRequest(QStringLiteral("echo"), qmapParam, QStringLiteral("uuid-1"));
    qmapParam[QStringLiteral("x")] = 8;  // the queued request keeps its own copy

    QTRY_COMPARE(m_lstAnswers.size(), 1);
    const Answer& answer = m_lstAnswers.first();
    QCOMPARE(answer.qstrKey, QStringLiteral("echo"));
    QCOMPARE(answer.qstrUUID, QStringLiteral("uuid-1"));
    QCOMPARE(answer.qmapResult.value(QStringLiteral("__result__")).toString(),
             QStringLiteral("success"));
    QCOMPARE(answer.qmapResult.value(QStringLiteral("echo")).toInt(), 7);
    QVERIFY(handler.m_pHandledOn.load() != nullptr);
    QVERIFY(handler.m_pHandledOn.load() != QThread::currentThread());
    QCOMPARE(pEmittedOn.load(), handler.m_pHandledOn.load());

    const QStringList qlstLog = Log();
    QCOMPARE(qlstLog
                 .filter(QStringLiteral("_qstrBusinessKey:[echo] _qmapParam:[{\n    \"x\": 7\n}\n] "
                                        "_qstrBusinessUUID:[uuid-1]"))
                 .size(),
             1);
    const QStringList qlstHandled = qlstLog.filter(QStringLiteral("handle 1 key:[echo] param:["));
    QCOMPARE(qlstHandled.size(), 1);
    QVERIFY(qlstHandled.first().contains(QStringLiteral("result:[{\n    \"echo\": 7\n}\n]")));
    QVERIFY(qlstHandled.first().contains(QStringLiteral("CLS_ModuleBasic::RunTask")));
}

void TestModuleBasic::refusedRequestIsLoggedAsError()
{
    RecordingHandler handler;
    TestModule module(&handler);
    std::atomic<QThread*> pEmittedOn{nullptr};
    Collect(module, pEmittedOn);

    module.TaskRequest(QStringLiteral("refuse"), {}, QStringLiteral("uuid-2"));
    QTRY_COMPARE(m_lstAnswers.size(), 1);
    QCOMPARE(m_lstAnswers.first().qmapResult.value(QStringLiteral("__result__")).toString(),
             QStringLiteral("fail"));
    QCOMPARE(m_lstAnswers.first().qmapResult.value(QStringLiteral("reason")).toString(),
             QStringLiteral("not today"));

    const QStringList qlstLog = Log();
    QCOMPARE(qlstLog
                 .filter(QStringLiteral(
                     "handle 0 key:[refuse] param:[{\n}\n] result:[{\n    \"reason\""))
                 .size(),
             1);
    const QStringList qlstErrors =
        qlstLog.filter(QStringLiteral("key:[refuse] param:[{\n}\n] UUID:[uuid-2] result:["));
    QCOMPARE(qlstErrors.size(), 1);
    QVERIFY(qlstErrors.first().contains(QStringLiteral("\"__result__\": \"fail\"")));
    QVERIFY2(qlstErrors.first().contains(QStringLiteral("error"), Qt::CaseInsensitive),
             qPrintable(qlstErrors.first()));
}

void TestModuleBasic::moduleWithoutHandlerStaysSilent()
{
    TestModule module(nullptr);
    std::atomic<QThread*> pEmittedOn{nullptr};
    Collect(module, pEmittedOn);
    const int iHandledBefore = Log().filter(QStringLiteral(":[silent]")).size();

    module.TaskRequest(QStringLiteral("silent"), {}, QStringLiteral("uuid-3"));
    QTRY_COMPARE(module.m_iAsked.load(), 1);
    QCoreApplication::processEvents();
    QVERIFY(m_lstAnswers.isEmpty());
    QCOMPARE(pEmittedOn.load(), nullptr);
    // Only the request line itself: no outcome, no error.
    QCOMPARE(Log().filter(QStringLiteral(":[silent]")).size(), iHandledBefore + 1);
}

void TestModuleBasic::initAndUnInitReachTheHandler()
{
    RecordingHandler handler;
    TestModule module(&handler);
    const QVariantMap qmapParam{{QStringLiteral("lang"), 2}};
    module.InitModule(qmapParam);
    QCOMPARE(handler.m_iInit.load(), 1);
    QCOMPARE(handler.Param(), qmapParam);
    module.UnInitModule({});
    QCOMPARE(handler.m_iUnInit.load(), 1);
    QVERIFY(handler.Param().isEmpty());

    handler.m_blThrowOnInit = true;
    module.InitModule(qmapParam);  // must not throw
    QCOMPARE(Log().filter(QStringLiteral("handler could not start _qmapParam - [")).size(), 1);
}

void TestModuleBasic::destructorWithdrawsPendingRequests()
{
    RecordingHandler handler;
    {
        // More blockers than the pool has workers: every worker is held.
        PoolBlocker blocker(16);
        QTRY_VERIFY(blocker.AnyRunning());
        auto* pModule = new TestModule(&handler);
        for (int i = 0; i < 5; ++i)
            pModule->TaskRequest(QStringLiteral("echo"), {}, QString::number(i));
        delete pModule;
        blocker.Release();
    }
    // Let the pool drain the blockers; withdrawn requests never reach a handler.
    std::atomic<bool> blDrained{false};
    KoService::AddTmpTask([&blDrained]() { blDrained = true; }, this, "drain");
    QTRY_VERIFY(blDrained.load());
    QCOMPARE(handler.m_pHandledOn.load(), nullptr);
}

QTEST_GUILESS_MAIN(TestModuleBasic)
#include "tst_modulebasic.moc"
