#include "CLS_WgtMsgBox.h"
#include "QuillTestSupport.h"
#include "TestLogFiles.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace {

constexpr int kOk = 1024;
constexpr int kCancel = 4194304;
constexpr int kYes = 16384;
constexpr int kNo = 65536;

QVariantMap Request(int _iType, int _iButtons, int _iDefault,
                    const QString& _qstrContent = QString())
{
    QVariantMap qmapParam;
    qmapParam.insert(QStringLiteral("parent"), 0);
    qmapParam.insert(QStringLiteral("msgboxtype"), _iType);
    qmapParam.insert(QStringLiteral("title"), QStringLiteral("lab_notice"));
    qmapParam.insert(QStringLiteral("content"),
                     _qstrContent.isEmpty() ? QStringLiteral("msg_question") : _qstrContent);
    qmapParam.insert(QStringLiteral("inputholder"), QStringLiteral("holder"));
    qmapParam.insert(QStringLiteral("defaultbutton"), _iDefault);
    qmapParam.insert(QStringLiteral("standbuttons"), _iButtons);
    return qmapParam;
}

CLS_WgtMsgBox* NewBox()
{
    auto* pBox = new CLS_WgtMsgBox();
    pBox->Init();
    return pBox;
}

}  // namespace

class tst_WgtMsgBox : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void stylesFromActiveSkin();
    void presentsTheRequest();
    void answersOnceWithPressedButton_data();
    void answersOnceWithPressedButton();
    void inputIsMaskedAndNeverLogged();
    void refusesOtherRequests();
    void reachedThroughModuleLibrary();

private:
    QuillTest::TestLogFiles* m_pLogs = nullptr;
};

void tst_WgtMsgBox::initTestCase()
{
    m_pLogs = new QuillTest::TestLogFiles();
    QVERIFY(m_pLogs->IsReady());
}

// First on purpose: style texts are cached for the life of the process.
void tst_WgtMsgBox::stylesFromActiveSkin()
{
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.WriteFile(QStringLiteral("resource/skin/dark/WgtMsgBox/qss/CLS_WgtMsgBox.qss"),
                              "#CLS_WgtMsgBox { border: 1px solid #123456; }"));
    QPointer<CLS_WgtMsgBox> pBox = NewBox();
    QCOMPARE(pBox->objectName(), QStringLiteral("CLS_WgtMsgBox"));
    QVERIFY(pBox->styleSheet().contains(QStringLiteral("#123456")));
    delete pBox;
}

void tst_WgtMsgBox::presentsTheRequest()
{
    const QString qstrLong = QStringLiteral("word ").repeated(80);
    QPointer<CLS_WgtMsgBox> pBox = NewBox();
    QVERIFY(pBox->TaskRequest(QStringLiteral("ShowMessage"),
                              Request(0, kOk | kCancel, kOk, qstrLong), QStringLiteral("uuid-1")));
    QVERIFY(pBox->isVisible());
    QVERIFY(pBox->isWindow());
    QVERIFY(pBox->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(pBox->windowFlags() & Qt::WindowStaysOnTopHint);
    QVERIFY(pBox->isModal());

    auto* pTitle = pBox->findChild<QLabel*>(QStringLiteral("lbl_title"));
    auto* pContent = pBox->findChild<QLabel*>(QStringLiteral("lbl_content"));
    QVERIFY(pTitle && pContent);
    QCOMPARE(pTitle->text(), QStringLiteral("lab_notice"));
    QCOMPARE(pContent->text(), qstrLong);
    QVERIFY(pTitle->wordWrap() && pContent->wordWrap());
    QVERIFY(pBox->width() <= pBox->maximumWidth());
    QVERIFY(!pBox->findChild<QWidget*>(QStringLiteral("widget_input"))->isVisible());

    // Only the requested buttons, captioned by their translation keys, the
    // default one marked for the skin.
    auto* pOk = pBox->findChild<QPushButton*>(QStringLiteral("btn_ok"));
    auto* pCancel = pBox->findChild<QPushButton*>(QStringLiteral("btn_cancel"));
    QVERIFY(pOk && pCancel);
    QCOMPARE(pBox->findChildren<QPushButton*>().size(), 2);
    QCOMPARE(pOk->text(), QStringLiteral("btn_ok"));
    QCOMPARE(pCancel->text(), QStringLiteral("btn_cancel"));
    QVERIFY(pOk->isDefault());
    QVERIFY(!pCancel->isDefault());
    delete pBox;
}

void tst_WgtMsgBox::answersOnceWithPressedButton_data()
{
    QTest::addColumn<int>("buttons");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<QString>("action");
    QTest::addColumn<int>("expected");

    const int iAll = kOk | kCancel | kYes | kNo;
    QTest::newRow("click ok") << iAll << kOk << "btn_ok" << kOk;
    QTest::newRow("click cancel") << iAll << kOk << "btn_cancel" << kCancel;
    QTest::newRow("click yes") << iAll << kOk << "btn_yes" << kYes;
    QTest::newRow("click no") << iAll << kOk << "btn_no" << kNo;
    QTest::newRow("enter takes default") << iAll << kNo << "enter" << kNo;
    QTest::newRow("escape is cancel") << iAll << kOk << "escape" << kCancel;
    QTest::newRow("closing is cancel") << kOk << kOk << "close" << kCancel;
}

void tst_WgtMsgBox::answersOnceWithPressedButton()
{
    QFETCH(int, buttons);
    QFETCH(int, defaultButton);
    QFETCH(QString, action);
    QFETCH(int, expected);

    QPointer<CLS_WgtMsgBox> pBox = NewBox();
    QSignalSpy spy(pBox.data(), &CLS_ViewBasic::SignRequestTaskRsulted);
    QVERIFY(pBox->TaskRequest(QStringLiteral("ShowMessage"), Request(0, buttons, defaultButton),
                              QStringLiteral("uuid-42")));
    QVERIFY(QTest::qWaitForWindowExposed(pBox.data()));

    if (action == QLatin1String("enter")) {
        QTest::keyClick(pBox.data(), Qt::Key_Return);
    } else if (action == QLatin1String("escape")) {
        QTest::keyClick(pBox.data(), Qt::Key_Escape);
    } else if (action == QLatin1String("close")) {
        pBox->close();
    } else {
        auto* pButton = pBox->findChild<QPushButton*>(action);
        QVERIFY(pButton);
        QTest::mouseClick(pButton, Qt::LeftButton);
        // A second press before the box is gone must not answer again.
        if (pBox) QTest::mouseClick(pButton, Qt::LeftButton);
    }

    QTRY_VERIFY(pBox.isNull());
    QCOMPARE(spy.count(), 1);
    const QList<QVariant> lstArgs = spy.takeFirst();
    QCOMPARE(lstArgs.at(0).toString(), QStringLiteral("ShowMessage"));
    QCOMPARE(lstArgs.at(1).toMap().value(QStringLiteral("type")).toInt(), expected);
    QCOMPARE(lstArgs.at(2).toString(), QStringLiteral("uuid-42"));
}

void tst_WgtMsgBox::inputIsMaskedAndNeverLogged()
{
    const QString qstrSecret = QStringLiteral("s3cret-Pa55");
    QPointer<CLS_WgtMsgBox> pBox = NewBox();
    QSignalSpy spy(pBox.data(), &CLS_ViewBasic::SignRequestTaskRsulted);
    QVERIFY(pBox->TaskRequest(QStringLiteral("ShowMessage"), Request(1, kOk | kCancel, kOk),
                              QStringLiteral("uuid-pw")));
    QVERIFY(QTest::qWaitForWindowExposed(pBox.data()));

    auto* pInput = pBox->findChild<QLineEdit*>(QStringLiteral("lineEdit_input"));
    auto* pToggle = pBox->findChild<QToolButton*>(QStringLiteral("tlb_showPassword"));
    QVERIFY(pInput && pToggle);
    QVERIFY(pInput->isVisible());
    QCOMPARE(pInput->placeholderText(), QStringLiteral("holder"));
    QCOMPARE(pInput->echoMode(), QLineEdit::Password);
    QTRY_VERIFY(pInput->hasFocus());

    QTest::mouseClick(pToggle, Qt::LeftButton);
    QCOMPARE(pInput->echoMode(), QLineEdit::Normal);
    QTest::mouseClick(pToggle, Qt::LeftButton);
    QCOMPARE(pInput->echoMode(), QLineEdit::Password);

    QTest::keyClicks(pInput, qstrSecret);
    // Enter in the field takes the default button.
    QTest::keyClick(pInput, Qt::Key_Return);
    QTRY_VERIFY(pBox.isNull());
    QCOMPARE(spy.count(), 1);
    const QVariantMap qmapAnswer = spy.first().at(1).toMap();
    QCOMPARE(qmapAnswer.value(QStringLiteral("type")).toInt(), kOk);
    QCOMPARE(qmapAnswer.value(QStringLiteral("inputtext")).toString(), qstrSecret);

    const QString qstrLogs = m_pLogs->AllText();
    QVERIFY(m_pLogs->Text(QStringLiteral("WgtMsgBox")).contains(QStringLiteral("uuid-pw")));
    QVERIFY(!qstrLogs.contains(QStringLiteral("s3cret")));
}

void tst_WgtMsgBox::refusesOtherRequests()
{
    QPointer<CLS_WgtMsgBox> pBox = NewBox();
    QSignalSpy spy(pBox.data(), &CLS_ViewBasic::SignRequestTaskRsulted);
    QVERIFY(!pBox->TaskRequest(QStringLiteral("OpenVideoFile"), Request(0, kOk, kOk),
                               QStringLiteral("u")));
    QVERIFY(!pBox->isVisible());

    QVERIFY(pBox->TaskRequest(QStringLiteral("ShowMessage"),
                              Request(0, kOk, kOk, QStringLiteral("first")), QStringLiteral("u1")));
    // A box asks one question: a second request leaves the first one standing.
    QVERIFY(!pBox->TaskRequest(QStringLiteral("ShowMessage"),
                               Request(0, kOk, kOk, QStringLiteral("second")),
                               QStringLiteral("u2")));
    QCOMPARE(pBox->findChild<QLabel*>(QStringLiteral("lbl_content"))->text(),
             QStringLiteral("first"));
    QTest::keyClick(pBox.data(), Qt::Key_Return);
    QTRY_VERIFY(pBox.isNull());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().at(2).toString(), QStringLiteral("u1"));
}

void tst_WgtMsgBox::reachedThroughModuleLibrary()
{
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
    QPointer<QWidget> pWidget =
        CLS_ViewBasic::GetWgtView(QStringLiteral("WgtMsgBox"), QVariantMap());
    auto* pView = dynamic_cast<CLS_ViewBasic*>(pWidget.data());
    QVERIFY(pView);
    QCOMPARE(pView->objectName(), QStringLiteral("CLS_WgtMsgBox"));

    QSignalSpy spy(pView, &CLS_ViewBasic::SignRequestTaskRsulted);
    QVERIFY(pView->TaskRequest(QStringLiteral("ShowMessage"), Request(0, kYes | kNo, kYes),
                               QStringLiteral("uuid-lib")));
    QTest::keyClick(pView, Qt::Key_Escape);
    QTRY_VERIFY(pWidget.isNull());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().at(1).toMap().value(QStringLiteral("type")).toInt(), kCancel);
    QCOMPARE(spy.first().at(2).toString(), QStringLiteral("uuid-lib"));
}

QTEST_MAIN(tst_WgtMsgBox)
#include "tst_WgtMsgBox.moc"
