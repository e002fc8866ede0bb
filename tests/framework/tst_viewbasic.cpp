// The view base: start-up, presenter results and their routing, and the
// answer when another module's view cannot be made.
#include "CLS_PresenterBasic.h"
#include "CLS_ViewBasic.h"
#include "ServiceFixture.h"

#include <QtTest>

namespace {

constexpr const char* kChannel = "ViewFrameworkTest";

class EchoPresenter : public CLS_PresenterBasic
{
    Q_OBJECT
public:
    const char* GetModuleCode() override { return kChannel; }

protected:
    bool HandleRequest(const QString& _qstrKey, const QVariantMap& _qmapParam,
                       QVariantMap& _qmapResult) override
    {
        if (_qstrKey == QLatin1String("echo"))
            _qmapResult[QStringLiteral("echo")] = _qmapParam.value(QStringLiteral("x"));
        return true;
    }
};

class TestView : public CLS_ViewBasic
{
    Q_OBJECT
public:
    explicit TestView(CLS_PresenterBasic* _pPresenter) : m_pPresenter(_pPresenter) {}
    const char* GetModuleCode() override { return kChannel; }
    CLS_PresenterBasic* GetPresenter() override { return m_pPresenter; }
    void InitUi() override { ++m_iInitUi; }
    void InitConnect() override {}
    bool HandleTask(const QString& _qstrKey, const QVariantMap& _qmapParam,
                    QVariantMap& _qmapResult) override
    {
        ++m_iHandled;
        // "quiet" results are handled but leave nothing to report.
        if (_qstrKey != QLatin1String("quiet"))
            _qmapResult[QStringLiteral("seen")] = _qmapParam.value(QStringLiteral("echo"));
        return _qstrKey != QLatin1String("refuse");
    }

    int m_iInitUi = 0;
    int m_iHandled = 0;

private:
    CLS_PresenterBasic* m_pPresenter;
};

}  // namespace

class TestViewBasic : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_services.IsReady()); }
    void initRunsOnceAndSaysWhenPresenterIsMissing()
    {
        TestView view(nullptr);
        view.show();
        view.hide();
        view.show();
        QCOMPARE(view.m_iInitUi, 1);
        QVERIFY(view.testAttribute(Qt::WA_StyledBackground));
        view.Init();
        QCOMPARE(Log().filter(QStringLiteral("nullptr == pPresenter Init Fail")).size(), 2);
    }

    void resultsReachTheAskingViewOnly()
    {
        EchoPresenter presenter;
        TestView viewA(&presenter);
        TestView viewB(&presenter);
        viewA.Init();
        viewB.Init();
        QSignalSpy spyA(&viewA, &CLS_ViewBasic::SignRequestTaskRsulted);
        QSignalSpy spyB(&viewB, &CLS_ViewBasic::SignRequestTaskRsulted);

        viewA.SendPresenterRequest(QStringLiteral("echo"), {{QStringLiteral("x"), 5}},
                                   QStringLiteral("u-a"));
        QTRY_COMPARE(spyA.count(), 1);
        const QVariantMap qmapResult = spyA.first().at(1).toMap();
        QCOMPARE(spyA.first().at(0).toString() + ' ' + spyA.first().at(2).toString(),
                 QStringLiteral("echo u-a"));
        QCOMPARE(qmapResult.value(QStringLiteral("seen")).toInt(), 5);
        QCOMPARE(qmapResult.value(QStringLiteral("__result__")).toString(),
                 QStringLiteral("success"));
        // The same result also reached B, which logged its entry line and stopped.
        QTRY_COMPARE(Log().filter(QStringLiteral("call funtion key:[echo]")).size(), 2);
        QCOMPARE(viewB.m_iHandled, 0);

        viewB.SendPresenterRequest(QStringLiteral("refuse"), {}, QStringLiteral("u-b"));
        QTRY_COMPARE(spyB.count(), 1);
        QCOMPARE(spyB.first().at(1).toMap().value(QStringLiteral("__result__")).toString(),
                 QStringLiteral("fail"));
        // A result that leaves nothing to report is handled silently; the view
        // answers in the same call that handles it.
        viewB.SendPresenterRequest(QStringLiteral("quiet"), {}, QStringLiteral("u-q"));
        QTRY_COMPARE(viewB.m_iHandled, 2);
        QCOMPARE(spyA.count() + spyB.count(), 2);
    }

    // Views made through GetWgtView are the player's message boxes, which
    // its window tests drive; a missing module gives null, and says so at
    // every request.
    void missingModuleGivesNoView()
    {
        QCOMPARE(CLS_ViewBasic::GetWgtView(QStringLiteral("NoSuchModule"), {}), nullptr);
        QCOMPARE(CLS_ViewBasic::GetWgtView(QStringLiteral("NoSuchModule"), {}), nullptr);
        QCOMPARE(m_services.LogRecords(QStringLiteral("default"))
                     .filter(QStringLiteral("Request Fail_strModuleName:[NoSuchModule]"))
                     .size(),
                 2);
    }

private:
    QStringList Log() const { return m_services.LogRecords(QString::fromLatin1(kChannel)); }

    QuillTest::ServiceFixture m_services{QuillTest::Service::Log, QuillTest::Service::TaskPool};
};

QTEST_MAIN(TestViewBasic)
#include "tst_viewbasic.moc"
