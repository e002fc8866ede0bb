// The dialog and the module object, offscreen: start parameters and the
// translation they select, the skin colours, dragging, the title bar's window
// buttons, keys, the close chain and the module entry.

#include "CLS_DlgQuillPlayer.h"
#include "CLS_ModuleQuillPlayer.h"
#include "CLS_WgtPlayerMainBody.h"
#include "QuillTestSupport.h"

#include <QEventLoop>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QTranslator>
#include <QtTest>

#include <memory>

namespace {

// What a translation file says for one text.
QString TranslatedBy(const QString& _qstrFile, const char* _pContext = "MainWindow",
                     const char* _pSource = "lab_notice")
{
    QTranslator translator;
    if (!translator.load(QStringLiteral("./Lang/QuillPlayer/") + _qstrFile)) return QString();
    return translator.translate(_pContext, _pSource);
}

}  // namespace

class tst_DlgQuillPlayer : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QuillTest::ScopedWorkDir> m_pWorkDir;

private slots:
    void initTestCase()
    {
        m_pWorkDir = std::make_unique<QuillTest::ScopedWorkDir>();
        QVERIFY(m_pWorkDir->LinkFromBin(QStringLiteral("Lang")));
        QVERIFY(m_pWorkDir->LinkFromBin(QStringLiteral("resource")));
        QVERIFY(m_pWorkDir->LinkFromBin(QStringLiteral("libModuleKoPlayer.so")));
    }

    // Start parameter -> application properties -> translation installed.
    void startParams_data()
    {
        QTest::addColumn<QJsonObject>("jsonParams");
        QTest::addColumn<int>("iPresetLanguage");
        QTest::addColumn<int>("iLanguage");
        QTest::addColumn<QString>("qstrFile");
        QTest::addColumn<int>("iSkin");
        QTest::addColumn<QString>("qstrMargin");
        QTest::newRow("en, dark") << QJsonObject{{"Language", "EN"}, {"Skin", "Dark"}} << 5 << 1
                                  << "QuillPlayer_EN.qm" << 0 << "#151A2F";
        QTest::newRow("polish is 0") << QJsonObject{{"Language", "POLISH"}} << 5 << 0
                                     << "QuillPlayer_CN.qm" << 0 << "#151A2F";
        QTest::newRow("no key for french") << QJsonObject{{"Language", "French"}} << 5 << 0
                                           << "QuillPlayer_CN.qm" << 0 << "#151A2F";
        QTest::newRow("absent language")
            << QJsonObject{{"Skin", "blue"}} << 5 << 0 << "QuillPlayer_CN.qm" << 1 << "#EAEAEA";
        QTest::newRow("de, light") << QJsonObject{{"Language", "de"}, {"Skin", "light"}} << 5 << 18
                                   << "QuillPlayer_DE.qm" << 1 << "#EAEAEA";
        // Without start parameters the property chooses the file; out of
        // range is the first file.
        QTest::newRow("french") << QJsonObject() << 6 << 6 << "QuillPlayer_French.qm" << 0
                                << "#151A2F";
        QTest::newRow("arabic, misspelt file")
            << QJsonObject() << 8 << 8 << "QuillPlayer_Abrabic.qm" << 0 << "#151A2F";
        QTest::newRow("19") << QJsonObject() << 19 << 19 << "QuillPlayer_CN.qm" << 0 << "#151A2F";
        QTest::newRow("-1") << QJsonObject() << -1 << -1 << "QuillPlayer_CN.qm" << 0 << "#151A2F";
    }
    void startParams()
    {
        QFETCH(QJsonObject, jsonParams);
        QFETCH(int, iPresetLanguage);
        QFETCH(int, iLanguage);
        QFETCH(QString, qstrFile);
        QFETCH(int, iSkin);
        QFETCH(QString, qstrMargin);
        qApp->setProperty("Language", iPresetLanguage);
        qApp->setProperty("Skin", 0);
        // No start parameters at all (an empty object): the other constructor.
        const std::unique_ptr<CLS_DlgQuillPlayer> pDialog(
            jsonParams.isEmpty() ? new CLS_DlgQuillPlayer
                                 : new CLS_DlgQuillPlayer(nullptr, jsonParams));
        QCOMPARE(qApp->property("Language").toInt(), iLanguage);
        QCOMPARE(qApp->property("Skin").toInt(), iSkin);
        QCOMPARE(QCoreApplication::translate("MainWindow", "lab_notice"), TranslatedBy(qstrFile));
        QVERIFY(pDialog->styleSheet().contains(qstrMargin));
        // The skin's dialog sheet selects it by this name.
        QCOMPARE(pDialog->objectName(), QStringLiteral("DlgQuillPlayer"));
        // The chrome is translated with it.
        auto* pStop = pDialog->findChild<QToolButton*>(QStringLiteral("toolButton_stop"));
        QVERIFY(pStop);
        QCOMPARE(pStop->toolTip(), TranslatedBy(qstrFile, "CLS_WgtPlayerControlBar", "lab_stop"));
    }

    // The window follows the cursor unless its corner would land within the
    // start-drag distance of the origin.
    void drag_data()
    {
        QTest::addColumn<QPoint>("ptTarget");
        QTest::addColumn<bool>("blMoves");
        QTest::newRow("far") << QPoint(300, 200) << true;
        QTest::newRow("near the origin") << QPoint(3, 4) << false;
    }
    void drag()
    {
        QFETCH(QPoint, ptTarget);
        QFETCH(bool, blMoves);
        CLS_DlgQuillPlayer dialog;
        dialog.move(100, 100);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const QPoint ptStart = dialog.pos();
        const QPoint ptGrab = ptStart + QPoint(5, 5);
        QMouseEvent press(QEvent::MouseButtonPress, QPoint(5, 5), ptGrab, Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&dialog, &press);
        QMouseEvent move(QEvent::MouseMove, QPoint(5, 5), ptTarget + QPoint(5, 5), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&dialog, &move);
        QCOMPARE(dialog.pos(), blMoves ? ptTarget : ptStart);
    }

    // Maximise toggles, its icon and tooltip telling which way it goes next;
    // no title bar button takes the keyboard from the dialog.
    void windowButtons()
    {
        CLS_DlgQuillPlayer dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        auto* pBar = dialog.findChild<QWidget*>(QStringLiteral("CLS_WgtPlayerTopBar"));
        for (const QPushButton* pButton : pBar->findChildren<QPushButton*>())
            QCOMPARE(pButton->focusPolicy(), Qt::NoFocus);
        auto* pBig = pBar->findChild<QPushButton*>(QStringLiteral("pushButton_big"));
        const QImage imgNormal = pBig->grab().toImage();
        const QString qstrNormalTip = pBig->toolTip();
        pBig->click();
        QVERIFY(dialog.isMaximized());
        QVERIFY(pBig->grab().toImage() != imgNormal);
        QVERIFY(pBig->toolTip() != qstrNormalTip);
        pBig->click();
        QVERIFY(!dialog.isMaximized());
        QCOMPARE(pBig->grab().toImage(), imgNormal);
        QCOMPARE(pBig->toolTip(), qstrNormalTip);
        pBar->findChild<QPushButton*>(QStringLiteral("pushButton_small"))->click();
        QVERIFY(dialog.isMinimized());
    }

    void escapeOutsideFullScreenIsSwallowed()
    {
        CLS_DlgQuillPlayer dialog;
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QVERIFY(QApplication::sendEvent(&dialog, &escape));
        QVERIFY(escape.isAccepted());
        QVERIFY(!dialog.findChild<CLS_WgtPlayerMainBody*>()->isWindow());
    }

    // Closing from the title bar ends the application, or with InPlayBack
    // only the dialog.
    void close_data()
    {
        QTest::addColumn<bool>("blInPlayBack");
        QTest::newRow("stand-alone") << false;
        QTest::newRow("in playback") << true;
    }
    void close()
    {
        QFETCH(bool, blInPlayBack);
        auto* pDialog = new CLS_DlgQuillPlayer(nullptr, QJsonObject{{"InPlayBack", blInPlayBack}});
        pDialog->setAttribute(Qt::WA_DeleteOnClose);
        QPointer<QWidget> pGuard(pDialog);
        pDialog->show();
        QEventLoop loop;
        // QCoreApplication::quit ends every running event loop, this one too.
        QTimer::singleShot(0, pDialog, [pDialog]() {
            pDialog->findChild<QWidget*>(QStringLiteral("CLS_WgtPlayerTopBar"))
                ->findChild<QAbstractButton*>(QStringLiteral("pushButton_closeapp"))
                ->click();
        });
        QTimer::singleShot(3000, &loop, [&loop]() { loop.exit(1); });
        const bool blQuit = loop.exec() == 0;
        QCOMPARE(blQuit, !blInPlayBack);
        if (blInPlayBack) QTRY_VERIFY(pGuard.isNull());
        delete pGuard.data();
    }

    void moduleEntry()
    {
        CLS_ModuleQuillPlayer module;
        QCOMPARE(QByteArray(module.GetModuleCode()), QByteArray("ModuleKoPlayer"));
        QVERIFY(!module.GetBusinessHandler({}));
        QWidget parent;
        for (const QVariantMap& qmapParam :
             {QVariantMap{}, QVariantMap{{"ParentWiget", QVariant::fromValue<QWidget*>(&parent)}},
              QVariantMap{{"ParentWiget", 42}, {"UIType", QJsonObject{{"Skin", "light"}}}}}) {
            std::unique_ptr<QWidget> pDialog(module.CreateModuleWgt(qmapParam));
            QVERIFY(qobject_cast<CLS_DlgQuillPlayer*>(pDialog.get()));
            QCOMPARE(pDialog->parentWidget(), qmapParam.value("ParentWiget").value<QWidget*>());
        }
    }
};

QTEST_MAIN(tst_DlgQuillPlayer)
#include "tst_DlgQuillPlayer.moc"
