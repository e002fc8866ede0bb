// The dialog and the module object, offscreen: start parameters and the
// translation they select, the frameless window's dragging, buttons and keys,
// and the close chain.

#include "CLS_DlgQuillPlayer.h"
#include "CLS_ModuleQuillPlayer.h"
#include "QuillTestSupport.h"

#include <QEventLoop>
#include <QJsonObject>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QTranslator>
#include <QtTest>

#include <memory>

namespace {

// What a translation file says for one text.
QString TranslatedBy(const QString& _qstrFile, const char* _pContext, const char* _pSource)
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

    // Start parameter -> language property -> translation installed, the
    // chrome translated with it.
    void startParams_data()
    {
        QTest::addColumn<QJsonObject>("jsonParams");
        QTest::addColumn<int>("iPresetLanguage");
        QTest::addColumn<int>("iLanguage");
        QTest::addColumn<QString>("qstrFile");
        QTest::newRow("en") << QJsonObject{{"Language", "EN"}} << 5 << 1 << "QuillPlayer_EN.qm";
        QTest::newRow("de") << QJsonObject{{"Language", "de"}} << 5 << 18 << "QuillPlayer_DE.qm";
        QTest::newRow("polish is 0") << QJsonObject{{"Language", "POLISH"}} << 5 << 0 << "QuillPlayer_CN.qm";
        QTest::newRow("no key for french") << QJsonObject{{"Language", "French"}} << 5 << 0 << "QuillPlayer_CN.qm";
        QTest::newRow("absent language") << QJsonObject{{"Skin", "blue"}} << 5 << 0 << "QuillPlayer_CN.qm";
        // Without start parameters the property chooses the file; out of
        // range is the first file.
        QTest::newRow("french") << QJsonObject() << 6 << 6 << "QuillPlayer_French.qm";
        QTest::newRow("arabic, misspelt file") << QJsonObject() << 8 << 8 << "QuillPlayer_Abrabic.qm";
        QTest::newRow("19") << QJsonObject() << 19 << 19 << "QuillPlayer_CN.qm";
        QTest::newRow("-1") << QJsonObject() << -1 << -1 << "QuillPlayer_CN.qm";
    }
    void startParams()
    {
        QFETCH(QJsonObject, jsonParams);
        QFETCH(int, iPresetLanguage);
        QFETCH(int, iLanguage);
        QFETCH(QString, qstrFile);
        qApp->setProperty("Language", iPresetLanguage);
        // No start parameters at all (an empty object): the other constructor.
        const std::unique_ptr<CLS_DlgQuillPlayer> pDialog(
            jsonParams.isEmpty() ? new CLS_DlgQuillPlayer : new CLS_DlgQuillPlayer(nullptr, jsonParams));
        QCOMPARE(qApp->property("Language").toInt(), iLanguage);
        QCOMPARE(QCoreApplication::translate("MainWindow", "lab_notice"),
                 TranslatedBy(qstrFile, "MainWindow", "lab_notice"));
        auto* pStop = pDialog->findChild<QToolButton*>(QStringLiteral("toolButton_stop"));
        QCOMPARE(pStop->toolTip(), TranslatedBy(qstrFile, "CLS_WgtPlayerControlBar", "lab_stop"));
    }

    // The frameless window follows a drag unless its corner would land within
    // the start-drag distance of the origin. Maximise toggles, its tooltip
    // telling which way it goes next; no title bar button takes the keyboard
    // from the dialog. Escape outside full screen goes no further; a double
    // click on the video takes it full screen without the title bar, Escape
    // brings it back.
    void windowHandling()
    {
        CLS_DlgQuillPlayer dialog;
        dialog.move(100, 100);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        const auto drag = [&dialog](const QPoint& _ptTarget) {
            QMouseEvent press(QEvent::MouseButtonPress, QPoint(5, 5), dialog.pos() + QPoint(5, 5),
                              Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&dialog, &press);
            QMouseEvent move(QEvent::MouseMove, QPoint(5, 5), _ptTarget + QPoint(5, 5), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&dialog, &move);
        };
        drag(QPoint(300, 200));
        QCOMPARE(dialog.pos(), QPoint(300, 200));
        drag(QPoint(3, 4));
        QCOMPARE(dialog.pos(), QPoint(300, 200));

        auto* pBar = dialog.findChild<QWidget*>(QStringLiteral("CLS_WgtPlayerTopBar"));
        for (const QPushButton* pButton : pBar->findChildren<QPushButton*>())
            QCOMPARE(pButton->focusPolicy(), Qt::NoFocus);
        auto* pBig = pBar->findChild<QPushButton*>(QStringLiteral("pushButton_big"));
        const QString qstrNormalTip = pBig->toolTip();
        pBig->click();
        QVERIFY(dialog.isMaximized());
        QVERIFY(pBig->toolTip() != qstrNormalTip);
        pBig->click();
        QVERIFY(!dialog.isMaximized());
        QCOMPARE(pBig->toolTip(), qstrNormalTip);

        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QVERIFY(QApplication::sendEvent(&dialog, &escape));
        QWidget* pBody = dialog.findChild<QWidget*>(QStringLiteral("CLS_WgtPlayerMainBody"));
        QWidget* pVideo = dialog.findChild<QWidget*>(QStringLiteral("openGLWgt"));
        QTest::mouseDClick(pVideo->childAt(pVideo->rect().center()), Qt::LeftButton);
        QTRY_VERIFY(pBody->isWindow() && pBody->isFullScreen());
        QVERIFY(!pBar->isVisible());
        QTest::keyClick(pBody, Qt::Key_Escape);
        QTRY_VERIFY(!pBody->isWindow());
        QVERIFY(pBar->isVisible());
        pBar->findChild<QPushButton*>(QStringLiteral("pushButton_small"))->click();
        QVERIFY(dialog.isMinimized());
    }

    // Made by the module entry, the dialog takes the parent it is given.
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
        CLS_ModuleQuillPlayer module;
        QWidget parent;
        QVariantMap qmapParam{{"UIType", QJsonObject{{"InPlayBack", blInPlayBack}}}};
        if (blInPlayBack) qmapParam.insert("ParentWiget", QVariant::fromValue<QWidget*>(&parent));
        QWidget* pDialog = module.CreateModuleWgt(qmapParam);
        QCOMPARE(pDialog->parentWidget(), blInPlayBack ? &parent : nullptr);
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
        QCOMPARE(loop.exec() == 0, !blInPlayBack);
        if (blInPlayBack) QTRY_VERIFY(pGuard.isNull());
        delete pGuard.data();
    }
};

QTEST_MAIN(tst_DlgQuillPlayer)
#include "tst_DlgQuillPlayer.moc"
