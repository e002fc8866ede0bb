// The player window against the recording test player: exact call sequences
// of the controller, its messages (through the real message box module), the
// history it writes and the sound parameters it keeps.

#include "CLS_WgtPlayerControlBar.h"
#include "I_AppSignals.h"
#include "KoServices.h"
#include "MainWindow.h"
#include "MsgBoxDriver.h"
#include "QuillTestSupport.h"
#include "ServiceFixture.h"
#include "RecordingPlayer.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMenu>
#include <QContextMenuEvent>
#include <QWheelEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLibrary>
#include <QPushButton>
#include <QtTest>

#include <memory>
#include <utility>

namespace {

constexpr int kHangMs = 10000;

QString Param(const char* _pKey)
{
    return QString::fromStdString(KoService::GetParam("ModuleKoPlayer", _pKey, "<none>"));
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
    QuillTest::ScopedWorkDir* m_pWorkDir = nullptr;
    std::unique_ptr<MainWindow> m_pWindow;
    CLS_WgtPlayerControlBar* m_pBar = nullptr;
    QString m_qstrClip;
    QStringList m_qlstSeen;

    void Script(const RecPlayer::ST_Script& _stScript) { m_pfnReset(&_stScript); }
    // Calls since the last look; Seen keeps them for the next look, so it can
    // be polled.
    QStringList Calls()
    {
        Seen(QString());
        return std::exchange(m_qlstSeen, {});
    }
    bool Seen(const QString& _qstrCall)
    {
        m_qlstSeen += QString::fromUtf8(m_pfnTakeCalls()).split('\n', Qt::SkipEmptyParts);
        return m_qlstSeen.contains(_qstrCall);
    }
    void Invoke(const char* _pSlot) { QVERIFY(QMetaObject::invokeMethod(m_pWindow.get(), _pSlot)); }
    void Open(const QString& _qstrPath, long _lStart = 0)
    {
        QVERIFY(QMetaObject::invokeMethod(m_pWindow.get(), "SlotContinuePlay",
                                          Q_ARG(QString, _qstrPath), Q_ARG(long, _lStart)));
    }
    QString Notice() { return m_pWindow->findChild<QLabel*>(QStringLiteral("label_exceptionInfo"))->text(); }
    int SpeedShown() { return m_pBar->findChild<QComboBox*>(QStringLiteral("comboBox_speedinfo"))->currentIndex(); }
    void Answer(const QString& _qstrContent, QDialogButtonBox::StandardButton _button,
                const QString& _qstrInput = QString())
    {
        QuillTest::AnswerMsgBox(_qstrContent, _button, _qstrInput, kHangMs);
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
        m_qlstSeen.clear();
        using QuillTest::Service;
        m_pFixture = std::make_unique<QuillTest::ServiceFixture>(
            std::initializer_list<Service>{Service::Log, Service::Param, Service::AppManager});
        QVERIFY(m_pFixture->IsReady());
        m_pWorkDir = &m_pFixture->WorkDir();
        QVERIFY(QFile::link(QStringLiteral(QUILL_RECPLAYER_LIB), QStringLiteral("libVideoPlayer_Rk.so")));
        QVERIFY(m_pWorkDir->LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
        // Offscreen there is no OpenGL: the plain native surface.
        KoService::SetParam("SystemConfig", "RenderingType", "1");
        m_qstrClip = m_pWorkDir->FilePath(QStringLiteral("clip.sdv"));
        QVERIFY(m_pWorkDir->WriteFile(QStringLiteral("clip.sdv"), "x"));
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

    void openCallsInOrder()
    {
        RecPlayer::ST_Script stScript;
        stScript.iIsBusy = 1;
        Script(stScript);
        Open(m_qstrClip);
        const QStringList qlstCalls = Calls();
        QCOMPARE(qlstCalls.mid(0, 8),
                 (QStringList{"Create", "SetEventCallback", "Init", "IsBusy", "Stop",
                              "OpenFile(" + m_qstrClip + ")", "Play", "GetTotalTime"}));
        QVERIFY(qlstCalls.contains("OpenSound") && qlstCalls.contains("SetVolume(50)"));
        QCOMPARE(QuillTest::NewestHistroyEntry()[QLatin1String("path")].toString(), m_qstrClip);
    }

    // The keys of the video area: Ctrl+S writes the picture on screen into
    // the remembered folder, never over an earlier still; the wheel zooms
    // around the cursor and Ctrl+0 shows the whole picture again.
    void stillAndZoomFromTheKeys()
    {
        RecPlayer::ST_Script stScript;
        stScript.iPlayedTime = 65;
        Script(stScript);
        const QString qstrDir = m_pWorkDir->FilePath(QStringLiteral("stills"));
        QVERIFY(QDir().mkpath(qstrDir));
        KoService::SetParam("ModuleKoPlayer", "SnapshotDir", qstrDir.toStdString());
        auto* pArea = m_pWindow->findChild<QWidget*>(QStringLiteral("openGLWgt"));
        // A right click on the picture reaches the area's menu; a still
        // needs a file.
        QWidget* pSurface = pArea->childAt(pArea->rect().center());
        QVERIFY(pSurface);
        QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, QPoint(5, 5));
        QApplication::sendEvent(pSurface, &menuEvent);
        auto* pMenu = pArea->findChild<QMenu*>(QStringLiteral("menu_video"));
        QTRY_VERIFY(pMenu && pMenu->isVisible());
        QVERIFY(!pMenu->findChild<QAction*>(QStringLiteral("action_snapshot"))->isEnabled());
        pMenu->close();
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
                          QPoint(0, 120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(pArea, &wheel);
        QVERIFY(Seen(QStringLiteral("SetShownPart(0.1,0.1,0.8,0.8)")));
        // A drag moves the zoomed picture, no further than its edge.
        const auto mouse = [pArea](QEvent::Type _eType, const QPoint& _pt) {
            QMouseEvent event(_eType, _pt, pArea->mapToGlobal(_pt), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(pArea, &event);
        };
        mouse(QEvent::MouseButtonPress, posCentre.toPoint());
        mouse(QEvent::MouseMove, posCentre.toPoint() - QPoint(5000, 0));
        mouse(QEvent::MouseButtonRelease, posCentre.toPoint() - QPoint(5000, 0));
        QVERIFY(Seen(QStringLiteral("SetShownPart(0.2,0.1,0.8,0.8)")));
        QTest::keyClick(pArea, Qt::Key_0, Qt::ControlModifier);
        QVERIFY(Seen(QStringLiteral("SetShownPart(0,0,1,1)")));
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
        stScript.iPlayedTime = 7;
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
        stScript.uFastRefusals = 0b0110;  // the second and third step are refused
        Script(stScript);
        Open(m_qstrClip);
        Calls();
        // The list's choice wins, refused steps or not.
        emit m_pBar->SignSpeedChange(8);
        QCOMPARE(Calls().count("Fast"), 4);
        QCOMPARE(SpeedShown(), 8);
        // At the top the player is still asked, and the index stays.
        emit m_pBar->SignFastPlay();
        QCOMPARE(Calls(), QStringList{"Fast"});
        QCOMPARE(SpeedShown(), 8);
        // A step returns to normal speed first.
        emit m_pBar->SignStepUp();
        const QStringList qlstStep = Calls();
        QVERIFY(qlstStep.indexOf("NormalSpeed") >= 0);
        QVERIFY(qlstStep.indexOf("NormalSpeed") < qlstStep.indexOf("StepForward"));
        QCOMPARE(SpeedShown(), 4);
        // Paused by the step: faster resumes first.
        emit m_pBar->SignFastPlay();
        QCOMPARE(Calls().mid(0, 2), (QStringList{"Pause(0)", "Fast"}));
        QCOMPARE(SpeedShown(), 5);
        // Sound is only switched at normal speed.
        emit m_pBar->SignSoundOpenOrClose();
        QVERIFY(Calls().isEmpty());
    }

    // Seeks: a click resumes a paused playback, a drag leaves it paused,
    // values outside the slider are ignored.
    void seeking_data()
    {
        QTest::addColumn<bool>("blClick");
        QTest::addColumn<int>("iValue");
        QTest::addColumn<QStringList>("qlstExpected");
        QTest::newRow("click") << true << 40 << QStringList{"SetPlayPos(40)", "GetPlayedTime", "Pause(0)"};
        QTest::newRow("drag") << false << 40 << QStringList{"SetPlayPos(40)", "GetPlayedTime"};
        QTest::newRow("click beyond") << true << 101 << QStringList{};
        QTest::newRow("drag below") << false << -1 << QStringList{};
    }
    void seeking()
    {
        QFETCH(bool, blClick);
        QFETCH(int, iValue);
        QFETCH(QStringList, qlstExpected);
        Open(m_qstrClip);
        Invoke("SlotVideoPlayOrPause");
        Calls();
        if (blClick)
            emit m_pBar->SignSliderClicked(iValue);
        else
            emit m_pBar->SignSliderMoved(iValue);
        QCOMPARE(Calls(), qlstExpected);
    }

    void stepBackOnlyForSealedExports_data()
    {
        QTest::addColumn<QString>("qstrName");
        QTest::addColumn<bool>("blAllowed");
        QTest::newRow("sdv") << "clip.sdv" << true;
        QTest::newRow("mp4") << "clip.mp4" << false;
        QTest::newRow("capital suffix") << "clip.MP4" << false;
    }
    void stepBackOnlyForSealedExports()
    {
        QFETCH(QString, qstrName);
        QFETCH(bool, blAllowed);
        QVERIFY(m_pWorkDir->WriteFile(qstrName, "x"));
        Open(m_pWorkDir->FilePath(qstrName));
        QVERIFY(Calls().contains("Play"));
        emit m_pBar->SignStepBack();
        QCOMPARE(Calls().contains("StepBack"), blAllowed);
        if (!blAllowed) Answer(QStringLiteral("msg_function_notallow"), QDialogButtonBox::Ok);
    }

    // The password cycle: an empty input counts as wrong without asking the
    // player; a wrong key comes back as 56; an accepted key resumes playback.
    void password()
    {
        Open(m_qstrClip);
        Calls();
        m_pfnRaise(55);
        Answer(QStringLiteral("msg_decrptinput_password"), QDialogButtonBox::Ok, QString());
        QVERIFY(Calls().isEmpty());
        Answer(QStringLiteral("msg_videodecript_failed"), QDialogButtonBox::Ok);
        Answer(QStringLiteral("msg_decrptinput_password"), QDialogButtonBox::Ok, QStringLiteral("wrong"));
        QCOMPARE(Calls(), QStringList{"SetDecryptKey(wrong,5)"});
        m_pfnRaise(56);
        Answer(QStringLiteral("msg_videodecript_failed"), QDialogButtonBox::Ok);
        Answer(QStringLiteral("msg_decrptinput_password"), QDialogButtonBox::Ok, QStringLiteral("secret"));
        QCOMPARE(Calls(), (QStringList{"SetDecryptKey(secret,6)", "Play"}));
        // The password is kept nowhere: not in a log line, not in a parameter.
        QVERIFY(!m_pFixture->AllLogText().contains(QStringLiteral("secret")));
        QFile params(QStringLiteral("settings.json"));
        QVERIFY(params.open(QIODevice::ReadOnly) && !params.readAll().contains("secret"));

        // A key typed after the file was stopped reaches no player.
        m_pfnRaise(55);
        QWidget* pBox = nullptr;
        QTRY_VERIFY_WITH_TIMEOUT((pBox = QuillTest::ShownMsgBox()) != nullptr, kHangMs);
        emit m_pBar->SignStop();
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
        // A volume of 0 while off leaves the sound off.
        emit m_pBar->SignSoundSliderValueChanged(0);
        QVERIFY(!Calls().contains("OpenSound"));
        // Switching on always comes back at 50.
        emit m_pBar->SignSoundOpenOrClose();
        qlstCalls = Calls();
        QCOMPARE(qlstCalls.mid(0, 2), (QStringList{"OpenSound", "SetVolume(50)"}));
        QCOMPARE(Param("OpenSound"), QStringLiteral("1"));
        QCOMPARE(Param("SoundSet"), QStringLiteral("50"));
        // Our own publication is ignored; another module's sound-on wins.
        I_AppSignals* pHub = KoService::GetAppSignals();
        QVERIFY(pHub);
        emit pHub->SignSoundStateChanged({{"ModuleName", "ModuleKoPlayer"}, {"SoundOpen", true}});
        QVERIFY(Calls().isEmpty());
        emit pHub->SignSoundStateChanged({{"ModuleName", "ModuleOther"}, {"SoundOpen", true}});
        QVERIFY(Calls().contains("CloseSound"));
        QCOMPARE(Param("OpenSound"), QStringLiteral("0"));
        QCOMPARE(Param("SoundSet"), QStringLiteral("0"));
    }

    // The position kept in the history: 0 at the end of the file, the played
    // time when stopped by hand, 0 when that reached the total.
    void stopPosition_data()
    {
        QTest::addColumn<bool>("blEnd");
        QTest::addColumn<int>("iPlayed");
        QTest::addColumn<int>("iKept");
        QTest::newRow("end of file") << true << 42 << 0;
        QTest::newRow("by hand at the total") << false << 60 << 0;
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
        QTRY_VERIFY_WITH_TIMEOUT(Seen("Destroy"), kHangMs);
        QCOMPARE(QuillTest::NewestHistroyEntry()[QLatin1String("pos")].toInt(), iKept);
        // Stopped, with no history row selected, play does nothing.
        Calls();
        Invoke("SlotVideoPlayOrPause");
        QVERIFY(Calls().isEmpty());
    }

    void noPlayer()
    {
        RecPlayer::ST_Script stScript;
        stScript.blCreateOk = false;
        Script(stScript);
        Open(m_qstrClip);
        Answer(QStringLiteral("msg_failed_play_video"), QDialogButtonBox::Ok);
        // Still ready for the next file.
        Script({});
        Open(m_qstrClip);
        QVERIFY(Calls().contains("Play"));
    }
};

QTEST_MAIN(tst_MainWindow)
#include "tst_MainWindow.moc"
