// The player window on the recording test player, offscreen: the controller's
// call sequences, its messages (through the real message box module), history
// and sound parameters; then the dialog around it: its start parameters, the
// frameless window's drag, buttons and keys, the close chain.

#include "CLS_DlgQuillPlayer.h"
#include "CLS_ModuleQuillPlayer.h"
#include "CLS_WgtHistroyList.h"
#include "CLS_WgtPlayerControlBar.h"
#include "I_AppSignals.h"
#include "KoServices.h"
#include "MainWindow.h"
#include "MsgBoxDriver.h"
#include "QuillTestSupport.h"
#include "ServiceFixture.h"
#include "RecordingPlayer.h"

#include <QtTest>
#include <QtWidgets>

#include <memory>

namespace {

constexpr int kHangMs = 10000;

// What a translation file says for one text.
QString TranslatedBy(const QString& _qstrFile, const char* _pContext, const char* _pSource)
{
    QTranslator translator;
    if (!translator.load(QStringLiteral("./Lang/QuillPlayer/") + _qstrFile)) return QString();
    return translator.translate(_pContext, _pSource);
}

}  // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

private:
    RecPlayer::ResetFn m_pfnReset = nullptr;
    RecPlayer::TakeCallsFn m_pfnTakeCalls = nullptr;
    RecPlayer::RaiseFn m_pfnRaise = nullptr;
    std::unique_ptr<QuillTest::ServiceFixture> m_pFixture;
    std::unique_ptr<MainWindow> m_pWindow;
    CLS_WgtPlayerControlBar* m_pBar = nullptr;
    QString m_qstrClip;

    void Script(const RecPlayer::ST_Script& _stScript) { m_pfnReset(&_stScript); }
    QStringList Calls() { return QString::fromUtf8(m_pfnTakeCalls()).split('\n', Qt::SkipEmptyParts); }
    void Invoke(const char* _pSlot) { QVERIFY(QMetaObject::invokeMethod(m_pWindow.get(), _pSlot)); }
    // As the history panel continues a file at its kept position.
    void Open(const QString& _qstrPath, long _lStart = 0)
    {
        emit m_pWindow->findChild<CLS_WgtHistroyList*>()->SignContinuePlay(_qstrPath, _lStart);
    }
    QString Notice() { return m_pWindow->findChild<QLabel*>(QStringLiteral("label_exceptionInfo"))->text(); }
    QComboBox* SpeedList() { return m_pBar->findChild<QComboBox*>(QStringLiteral("comboBox_speedinfo")); }
    int SpeedShown() { return SpeedList()->currentIndex(); }
    // The volume the bar offers: its value, or -1 minus it while the slider is locked.
    int VolumeShown()
    {
        const auto* pVolume = m_pBar->findChild<QSlider*>(QStringLiteral("horizontalSlider_sound"));
        return pVolume->isEnabled() ? pVolume->value() : -1 - pVolume->value();
    }

private slots:
    void initTestCase()
    {
        QLibrary library(QStringLiteral(QUILL_RECPLAYER_LIB));
        QVERIFY2(library.load(), qPrintable(library.errorString()));
        m_pfnReset = reinterpret_cast<RecPlayer::ResetFn>(library.resolve("RecPlayer_Reset"));
        m_pfnTakeCalls = reinterpret_cast<RecPlayer::TakeCallsFn>(library.resolve("RecPlayer_TakeCalls"));
        m_pfnRaise = reinterpret_cast<RecPlayer::RaiseFn>(library.resolve("RecPlayer_Raise"));
        QVERIFY(m_pfnReset && m_pfnTakeCalls && m_pfnRaise);
    }

    void init()
    {
        using QuillTest::Service;
        m_pFixture = std::make_unique<QuillTest::ServiceFixture>(
            std::initializer_list<Service>{Service::Log, Service::Param, Service::AppManager});
        QVERIFY(m_pFixture->IsReady());
        QuillTest::ScopedWorkDir& workDir = m_pFixture->WorkDir();
        QVERIFY(QFile::link(QStringLiteral(QUILL_RECPLAYER_LIB), QStringLiteral("libVideoPlayer_Rk.so")));
        for (const char* pName : {"libWgtMsgBox.so", "Lang", "resource"})
            QVERIFY(workDir.LinkFromBin(QLatin1String(pName)));
        // Offscreen there is no OpenGL: the plain native surface.
        KoService::SetParam("SystemConfig", "RenderingType", "1");
        m_qstrClip = workDir.FilePath(QStringLiteral("clip.sdv"));
        QVERIFY(workDir.WriteFile(QStringLiteral("clip.sdv"), "x"));
        Script({});
        m_pWindow = std::make_unique<MainWindow>();
        m_pBar = m_pWindow->findChild<CLS_WgtPlayerControlBar*>(QStringLiteral("WgtControlBar"));
        QVERIFY(m_pBar);
        m_pWindow->show();
    }

    void cleanup()
    {
        m_pWindow.reset();
        for (QWidget* pWidget : QApplication::topLevelWidgets())
            if (pWidget->objectName() == QLatin1String("CLS_WgtMsgBox")) delete pWidget;
        m_pFixture.reset();
    }

    // An engine that makes no player is a message, and the window stays
    // ready for the next file.
    void noPlayer()
    {
        RecPlayer::ST_Script stScript;
        stScript.blCreateOk = false;
        Script(stScript);
        Open(m_qstrClip);
        QuillTest::AnswerMsgBox(QStringLiteral("msg_failed_play_video"));
        Script({});
        Open(m_qstrClip);
        QVERIFY(Calls().contains("Play"));
    }

    // The keys of the video area: Ctrl+S writes the picture on screen into
    // the remembered folder, never over an earlier still; the wheel zooms
    // around the cursor, and a drag pans no further than the picture's edge.
    void stillAndZoomFromTheKeys()
    {
        RecPlayer::ST_Script stScript;
        stScript.iPlayedTime = 65;
        Script(stScript);
        const QString qstrDir = m_pFixture->WorkDir().FilePath(QStringLiteral("stills"));
        QVERIFY(QDir().mkpath(qstrDir));
        KoService::SetParam("ModuleKoPlayer", "SnapshotDir", qstrDir.toStdString());
        auto* pArea = m_pWindow->findChild<QWidget*>(QStringLiteral("openGLWgt"));
        Open(m_qstrClip);
        m_pWindow->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_pWindow.get()));

        for (const char* pName : {"clip_00-01-05.000.png", "clip_00-01-05.000_2.png"}) {
            QTest::keyClick(pArea, Qt::Key_S, Qt::ControlModifier);
            const QString qstrStill = QDir(qstrDir).filePath(QLatin1String(pName));
            QTRY_VERIFY2(QFileInfo::exists(qstrStill), pName);
            const QImage image(qstrStill);
            QCOMPARE(image.size(), QSize(4, 2));
            QCOMPARE(image.pixelColor(1, 1), QColor(Qt::red));
            QCOMPARE(image.pixelColor(2, 0), QColor(Qt::blue));
            QVERIFY(Notice().endsWith(QLatin1Char(' ') + QLatin1String(pName)));
        }

        Calls();
        const QPointF posCentre = QRectF(pArea->rect()).center();
        QWheelEvent wheel(posCentre, QPointF(pArea->mapToGlobal(posCentre.toPoint())), QPoint(),
                          QPoint(0, 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(pArea, &wheel);
        QVERIFY(Calls().contains(QStringLiteral("SetShownPart(0.1,0.1,0.8,0.8)")));
        const auto mouse = [pArea](QEvent::Type _eType, const QPoint& _pt) {
            QMouseEvent event(_eType, _pt, pArea->mapToGlobal(_pt), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(pArea, &event);
        };
        mouse(QEvent::MouseButtonPress, posCentre.toPoint());
        mouse(QEvent::MouseMove, posCentre.toPoint() - QPoint(5000, 0));
        mouse(QEvent::MouseButtonRelease, posCentre.toPoint() - QPoint(5000, 0));
        QVERIFY(Calls().contains(QStringLiteral("SetShownPart(0.2,0.1,0.8,0.8)")));
    }

    // Start positions: accepted up to the total, else 0 with a notice; the
    // first tick after a start only performs the pending seek.
    void startPosition_data()
    {
        QTest::addColumn<int>("iTotal");
        QTest::addColumn<int>("iStart");
        QTest::addColumn<bool>("blAccepted");
        QTest::addColumn<int>("iSeek");
        QTest::newRow("middle") << 60 << 30 << true << 50;
        QTest::newRow("equal to the total") << 60 << 60 << true << 100;
        QTest::newRow("rounded up") << 300 << 1 << true << 1;
        QTest::newRow("beyond the total") << 60 << 61 << false << 0;
        QTest::newRow("negative") << 60 << -5 << false << 0;
        QTest::newRow("total of 0") << 0 << 0 << true << 0;
    }
    void startPosition()
    {
        QFETCH(int, iTotal);
        QFETCH(int, iStart);
        QFETCH(bool, blAccepted);
        QFETCH(int, iSeek);
        RecPlayer::ST_Script stScript;
        stScript.iTotalTime = iTotal;
        Script(stScript);
        Open(m_qstrClip, iStart);
        QCOMPARE(Notice(), blAccepted ? QString() : QStringLiteral("msg_setting_time_error"));
        QCOMPARE(QuillTest::NewestHistroyEntry()[QLatin1String("pos")].toInt(),
                 blAccepted ? iStart : 0);
        Calls();
        Invoke("SlotGetPlayProgress");
        const QStringList qlstTick = Calls();
        if (iSeek > 0)
            QCOMPARE(qlstTick, QStringList{"SetPlayPos(" + QString::number(iSeek) + ")"});
        else
            QCOMPARE(qlstTick.contains("GetPlayedTime"), iTotal > 0);
    }

    void speeds()
    {
        RecPlayer::ST_Script stScript;
        stScript.blFastRefused = true;
        Script(stScript);
        Open(m_qstrClip);
        Calls();
        // The list's choice wins, refused steps or not.
        SpeedList()->setCurrentIndex(8);
        QCOMPARE(Calls().count("Fast"), 4);
        QCOMPARE(SpeedShown(), 8);
        // Sound plays at normal speed only: the volume is locked at 0 until then.
        QCOMPARE(VolumeShown(), -1);
        Script({});
        // A step returns to normal speed first.
        emit m_pBar->SignStepUp();
        const QStringList qlstStep = Calls();
        QVERIFY(qlstStep.indexOf("NormalSpeed") >= 0);
        QVERIFY(qlstStep.indexOf("NormalSpeed") < qlstStep.indexOf("StepForward"));
        QCOMPARE(SpeedShown(), 4);
        QCOMPARE(VolumeShown(), 50);  // nothing stored yet
        // Paused by the step: faster resumes first.
        emit m_pBar->SignFastPlay();
        QCOMPARE(Calls().mid(0, 2), (QStringList{"Pause(0)", "Fast"}));
        QCOMPARE(SpeedShown(), 5);
        // Sound is only switched at normal speed; the list's empty tenth entry
        // is no speed, the last one comes back.
        emit m_pBar->SignSoundOpenOrClose();
        SpeedList()->setCurrentIndex(9);
        QCOMPARE(SpeedShown(), 5);
        QVERIFY(Calls().isEmpty());
    }

    // Commands on a paused playback. A click on the slider resumes, a drag
    // leaves it paused, values outside the slider are ignored; stepping back
    // is for sealed exports alone.
    void pausedCommands_data()
    {
        QTest::addColumn<QString>("qstrFile");
        QTest::addColumn<QByteArray>("qbaSignal");
        QTest::addColumn<int>("iValue");
        QTest::addColumn<QStringList>("qlstExpected");
        const QStringList qlstSeek{"SetPlayPos(40)", "GetPlayedTime"};
        QTest::newRow("click") << "clip.sdv" << QByteArray("SignSliderClicked") << 40 << qlstSeek + QStringList{"Pause(0)"};
        QTest::newRow("drag") << "clip.sdv" << QByteArray("SignSliderMoved") << 40 << qlstSeek;
        QTest::newRow("click beyond") << "clip.sdv" << QByteArray("SignSliderClicked") << 101 << QStringList();
        QTest::newRow("drag below") << "clip.sdv" << QByteArray("SignSliderMoved") << -1 << QStringList();
        QTest::newRow("step back, sdv") << "clip.sdv" << QByteArray("SignStepBack") << 0
                                        << QStringList{"StepBack", "GetPlayedTime", "GetTotalTime"};
        QTest::newRow("step back, mp4") << "clip.mp4" << QByteArray("SignStepBack") << 0 << QStringList();
    }
    void pausedCommands()
    {
        QFETCH(QString, qstrFile);
        QFETCH(QByteArray, qbaSignal);
        QFETCH(int, iValue);
        QFETCH(QStringList, qlstExpected);
        QVERIFY(m_pFixture->WorkDir().WriteFile(qstrFile, "x"));
        Open(m_pFixture->WorkDir().FilePath(qstrFile));
        Invoke("SlotVideoPlayOrPause");
        QVERIFY(Calls().contains("Pause(1)"));
        if (qbaSignal == "SignStepBack")
            emit m_pBar->SignStepBack();
        else
            QVERIFY(QMetaObject::invokeMethod(m_pBar, qbaSignal.constData(), Q_ARG(int, iValue)));
        QCOMPARE(Calls(), qlstExpected);
        if (qstrFile.endsWith(QLatin1String(".mp4")))
            QuillTest::AnswerMsgBox(QStringLiteral("msg_function_notallow"));
    }

    // The password cycle: an empty input counts as wrong without asking the
    // player; a refused key comes back as 56 and is asked for again; an
    // accepted key resumes playback. The password is kept nowhere, and a key
    // typed for a playback replaced since reaches no player.
    void password()
    {
        Open(m_qstrClip);
        Calls();
        m_pfnRaise(55);
        QuillTest::AnswerMsgBox(QStringLiteral("msg_decrptinput_password"));
        QuillTest::AnswerMsgBox(QStringLiteral("msg_videodecript_failed"));
        QVERIFY(Calls().isEmpty());
        QuillTest::AnswerMsgBox(QStringLiteral("msg_decrptinput_password"), QDialogButtonBox::Ok, "wrong");
        QCOMPARE(Calls(), QStringList{"SetDecryptKey(wrong,5)"});
        m_pfnRaise(56);
        QuillTest::AnswerMsgBox(QStringLiteral("msg_videodecript_failed"));
        QuillTest::AnswerMsgBox(QStringLiteral("msg_decrptinput_password"), QDialogButtonBox::Ok, "secret");
        QCOMPARE(Calls(), (QStringList{"SetDecryptKey(secret,6)", "Play"}));
        QVERIFY(!m_pFixture->AllLogText().contains(QStringLiteral("secret")));
        QFile params(QStringLiteral("settings.json"));
        QVERIFY(params.open(QIODevice::ReadOnly) && !params.readAll().contains("secret"));

        m_pfnRaise(55);
        QWidget* pBox = nullptr;
        QTRY_VERIFY_WITH_TIMEOUT((pBox = QuillTest::ShownMsgBox()) != nullptr, kHangMs);
        Open(m_qstrClip);
        Calls();
        pBox->findChild<QLineEdit*>(QStringLiteral("lineEdit_input"))->setText(QStringLiteral("secret"));
        pBox->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        QVERIFY(Calls().isEmpty());
    }

    void sound()
    {
        KoService::SetParam("ModuleKoPlayer", "OpenSound", "0");
        KoService::SetParam("ModuleKoPlayer", "SoundSet", "20");
        Open(m_qstrClip);
        QStringList qlstCalls = Calls();
        QVERIFY(qlstCalls.contains("CloseSound") && qlstCalls.contains("SetVolume(0)"));
        QCOMPARE(VolumeShown(), -1);  // locked while off
        // A volume of 0 while off leaves the sound off.
        emit m_pBar->SignSoundSliderValueChanged(0);
        QVERIFY(!Calls().contains("OpenSound"));
        // Switching on always comes back at 50.
        emit m_pBar->SignSoundOpenOrClose();
        qlstCalls = Calls();
        QCOMPARE(qlstCalls.mid(0, 2), (QStringList{"OpenSound", "SetVolume(50)"}));
        QCOMPARE(KoService::GetParam("ModuleKoPlayer", "OpenSound", ""), std::string("1"));
        QCOMPARE(KoService::GetParam("ModuleKoPlayer", "SoundSet", ""), std::string("50"));
        // Our own publication is ignored; another module's sound-on wins.
        I_AppSignals* pHub = KoService::GetAppSignals();
        QVERIFY(pHub);
        emit pHub->SignSoundStateChanged({{"ModuleName", "ModuleKoPlayer"}, {"SoundOpen", true}});
        QVERIFY(Calls().isEmpty());
        emit pHub->SignSoundStateChanged({{"ModuleName", "ModuleOther"}, {"SoundOpen", true}});
        QVERIFY(Calls().contains("CloseSound"));
        QCOMPARE(KoService::GetParam("ModuleKoPlayer", "OpenSound", ""), std::string("0"));
        QCOMPARE(KoService::GetParam("ModuleKoPlayer", "SoundSet", ""), std::string("0"));
    }

    // The position kept in the history: the played time when stopped by
    // hand, 0 when that reached the total or the file played to its end.
    void stopPosition_data()
    {
        QTest::addColumn<bool>("blEnd");
        QTest::addColumn<int>("iPlayed");
        QTest::addColumn<int>("iKept");
        QTest::newRow("by hand") << false << 42 << 42;
        QTest::newRow("by hand at the total") << false << 60 << 0;
        QTest::newRow("end of file") << true << 42 << 0;
    }
    void stopPosition()
    {
        QFETCH(bool, blEnd);
        QFETCH(int, iPlayed);
        QFETCH(int, iKept);
        RecPlayer::ST_Script stScript;
        stScript.iPlayedTime = iPlayed;
        Script(stScript);
        Open(m_qstrClip, 10);
        Invoke("SlotGetPlayProgress");  // the pending seek
        Invoke("SlotGetPlayProgress");
        if (blEnd)
            m_pfnRaise(81);
        else
            emit m_pBar->SignStop();
        QTRY_COMPARE_WITH_TIMEOUT(QuillTest::NewestHistroyEntry()[QLatin1String("pos")].toInt(), iKept, kHangMs);
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
        QTest::newRow("polish is 0") << QJsonObject{{"Language", "POLISH"}} << 5 << 0 << "QuillPlayer_CN.qm";
        QTest::newRow("no key for french") << QJsonObject{{"Language", "French"}} << 5 << 0 << "QuillPlayer_CN.qm";
        // Without start parameters the property chooses the file; out of
        // range is the first file.
        QTest::newRow("arabic, misspelt file") << QJsonObject() << 8 << 8 << "QuillPlayer_Abrabic.qm";
        QTest::newRow("19") << QJsonObject() << 19 << 19 << "QuillPlayer_CN.qm";
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
    // the start-drag distance of the origin; its title bar buttons leave the
    // keyboard to the dialog. Escape outside full screen goes no further; a
    // double click on the video takes it full screen without the title bar,
    // Escape brings it back.
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
        CLS_ModuleQuillPlayer module;
        QWidget* pDialog = module.CreateModuleWgt({{"UIType", QJsonObject{{"InPlayBack", blInPlayBack}}}});
        pDialog->setAttribute(Qt::WA_DeleteOnClose);
        QPointer<QWidget> pGuard(pDialog);
        pDialog->show();
        QEventLoop loop;
        // QCoreApplication::quit ends every running event loop, this one too.
        QTimer::singleShot(0, pDialog, [pDialog]() {
            pDialog->findChild<QAbstractButton*>(QStringLiteral("pushButton_closeapp"))->click();
        });
        QTimer::singleShot(3000, &loop, [&loop]() { loop.exit(1); });
        QCOMPARE(loop.exec() == 0, !blInPlayBack);
        if (blInPlayBack) QTRY_VERIFY(pGuard.isNull());
        delete pGuard.data();
    }
};

QTEST_MAIN(tst_MainWindow)
#include "tst_MainWindow.moc"
