#include "CLS_WgtMsgBox.h"
#include "ServiceFixture.h"

#include <QtTest>
#include <QtWidgets>

#include <memory>

namespace {

// The standard buttons' values, as requests carry them.
constexpr int kOk = 0x400, kCancel = 0x400000, kYes = 0x4000, kNo = 0x10000;

QVariantMap Request(int _iType, int _iButtons, int _iDefault, const QString& _qstrContent = "msg")
{
    return {{"parent", 0},
            {"msgboxtype", _iType},
            {"title", "lab_notice"},
            {"content", _qstrContent},
            {"inputholder", "holder"},
            {"defaultbutton", _iDefault},
            {"standbuttons", _iButtons}};
}

// A box as the module's "CreateWgt" hands it out, already asked.
CLS_WgtMsgBox* AskedBox(const QVariantMap& _qmapRequest, const QString& _qstrUUID)
{
    auto* pBox = new CLS_WgtMsgBox();
    pBox->Init();
    if (!pBox->TaskRequest(QStringLiteral("ShowMessage"), _qmapRequest, _qstrUUID))
        qWarning("ShowMessage refused");
    return pBox;
}

}  // namespace

class tst_WgtMsgBox : public QObject
{
    Q_OBJECT
private slots:
    void presentsTheRequest()
    {
        QVERIFY(m_services.IsReady());
        const QString qstrLong = QStringLiteral("word ").repeated(80);
        std::unique_ptr<CLS_WgtMsgBox> pBox(
            AskedBox(Request(0, kOk | kCancel, kOk, qstrLong), "u"));
        QVERIFY(pBox->isVisible() && pBox->isModal());
        auto* pContent = pBox->findChild<QLabel*>(QStringLiteral("lbl_content"));
        QVERIFY(pContent->text() == qstrLong && pContent->wordWrap());
        QVERIFY(!pBox->findChild<QLineEdit*>()->isVisible());
        // Only the requested buttons, captioned by their translation keys.
        QCOMPARE(pBox->findChildren<QPushButton*>().size(), 2);
        QCOMPARE(pBox->findChild<QPushButton*>(QStringLiteral("btn_cancel"))->text(), "btn_cancel");
    }

    void answersOnceWithPressedButton_data()
    {
        QTest::addColumn<int>("buttons");
        QTest::addColumn<int>("defaultButton");
        QTest::addColumn<QString>("action");  // a button's name, "enter", "close" or "type"
        QTest::addColumn<int>("expected");
        const int iAll = kOk | kCancel | kYes | kNo;
        QTest::newRow("click yes") << iAll << kOk << "btn_yes" << kYes;
        QTest::newRow("enter takes default") << iAll << kNo << "enter" << kNo;
        QTest::newRow("closing is cancel") << kOk << kOk << "close" << kCancel;
        QTest::newRow("password, enter in the field") << (kOk | kCancel) << kOk << "type" << kOk;
    }

    void answersOnceWithPressedButton()
    {
        QFETCH(int, buttons);
        QFETCH(int, defaultButton);
        QFETCH(QString, action);
        QFETCH(int, expected);
        const bool blInput = action == QLatin1String("type");
        CLS_WgtMsgBox* pBox = AskedBox(Request(blInput ? 1 : 0, buttons, defaultButton), "uuid-42");
        QPointer<CLS_WgtMsgBox> pGuard(pBox);
        QSignalSpy spy(pBox, &CLS_ViewBasic::SignRequestTaskRsulted);
        QVERIFY(QTest::qWaitForWindowExposed(pBox));

        if (blInput) {
            auto* pInput = pBox->findChild<QLineEdit*>(QStringLiteral("lineEdit_input"));
            QCOMPARE(pInput->placeholderText(), QStringLiteral("holder"));
            QTRY_VERIFY(pInput->hasFocus());
            QCOMPARE(pInput->echoMode(), QLineEdit::Password);
            QTest::keyClicks(pInput, QStringLiteral("s3cret-Pa55"));
            QTest::keyClick(pInput, Qt::Key_Return);  // passed on to the default button
        } else if (action == QLatin1String("enter")) {
            QTest::keyClick(pBox, Qt::Key_Return);
        } else if (action == QLatin1String("close")) {
            pBox->close();
        } else {
            auto* pButton = pBox->findChild<QPushButton*>(action);
            QTest::mouseClick(pButton, Qt::LeftButton);
            // A second press before the box is gone must not answer again.
            QTest::mouseClick(pButton, Qt::LeftButton);
        }
        QTRY_VERIFY(pGuard.isNull());
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString() + spy.at(0).at(2).toString(),
                 QStringLiteral("ShowMessageuuid-42"));
        const QVariantMap qmapAnswer = spy.at(0).at(1).toMap();
        QCOMPARE(qmapAnswer.value("type").toInt(), expected);
        QCOMPARE(qmapAnswer.value("inputtext").toString(), blInput ? "s3cret-Pa55" : "");
    }

    void askedAgainFromAnswer()
    {
        // The password flow: the answer of one box asks the next question.
        QWidget owner;
        owner.show();
        QVERIFY(QTest::qWaitForWindowActive(&owner));
        CLS_WgtMsgBox* pFirst = AskedBox(Request(0, kOk | kCancel, kOk), "first");
        // The box holds the focus, as it does on a desktop.
        QApplication::setActiveWindow(pFirst);
        QTRY_COMPARE(QApplication::activeWindow(), pFirst);
        QPointer<CLS_WgtMsgBox> pSecond;
        connect(pFirst, &CLS_ViewBasic::SignRequestTaskRsulted, this,
                [&] { pSecond = AskedBox(Request(1, kOk | kCancel, kOk), "second"); });
        QPointer<CLS_WgtMsgBox> pFirstGuard(pFirst);
        QTest::keyClick(pFirst, Qt::Key_Return);
        QTRY_VERIFY(pFirstGuard.isNull());
        CLS_WgtMsgBox* pSecondBox = pSecond.data();
        QVERIFY(pSecondBox != nullptr && pSecondBox->isVisible());
        QCOMPARE(pSecondBox->parentWidget(), &owner);
        delete pSecondBox;
    }

private:
    QuillTest::ServiceFixture m_services{QuillTest::Service::Log};
};

QTEST_MAIN(tst_WgtMsgBox)
#include "tst_WgtMsgBox.moc"
