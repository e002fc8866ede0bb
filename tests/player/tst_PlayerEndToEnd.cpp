// The real module on the real engine, loaded as the host loads them, on a
// generated clip under a virtual display. One test per family of behaviour.

#include "CLS_ModuleBasic.h"
#include "CLS_ViewBasic.h"
#include "KoServices.h"
#include "LoadDll.h"
#include "ModuleExports.h"
#include "MsgBoxDriver.h"
#include "QuillTestSupport.h"
#include "ServiceFixture.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QProcess>
#include <QScreen>
#include <QWheelEvent>
#include <QtTest>

#include <memory>
#include <random>
#include <utility>

namespace {

constexpr int kHangMs = 20000;
constexpr int kClipSeconds = 60;
const QByteArray kPassword = "e2e-Secret-42";

}  // namespace

class tst_PlayerEndToEnd : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QuillTest::ServiceFixture> m_pFixture;
    QuillTest::ScopedWorkDir* m_pWorkDir = nullptr;
    GetModuleFn m_pfnGetModule = nullptr;
    std::unique_ptr<CLS_ModuleBasic> m_pModule;
    std::unique_ptr<QWidget> m_pDialog;
    QString m_qstrClip;

    QWidget* Find(const char* _pName) { return m_pDialog->findChild<QWidget*>(QLatin1String(_pName)); }
    // Seconds shown as played, from "hh:mm:ss/hh:mm:ss".
    int PlayedShown()
    {
        const QString qstrText = static_cast<QLabel*>(Find("label_videoTime"))->text();
        const QStringList qlstParts = qstrText.section(QLatin1Char('/'), 0, 0).split(QLatin1Char(':'));
        if (qlstParts.size() != 3) return -1;
        return qlstParts[0].toInt() * 3600 + qlstParts[1].toInt() * 60 + qlstParts[2].toInt();
    }
    void Bar(const char* _pSignal) { QVERIFY(QMetaObject::invokeMethod(Find("WgtControlBar"), _pSignal)); }
    void Key(QWidget* _pTarget, Qt::Key _key) { QTest::keyClick(_pTarget, _key); }
    // The video area as the screen shows it.
    QImage VideoPixels()
    {
        QWidget* pVideo = Find("openGLWgt");
        const QPoint ptTopLeft = pVideo->mapTo(pVideo->window(), QPoint(0, 0));
        return pVideo->screen()
            ->grabWindow(pVideo->window()->winId(), ptTopLeft.x(), ptTopLeft.y(), pVideo->width(),
                         pVideo->height())
            .toImage();
    }
    void OpenClip(const QString& _qstrPath = QString(), bool _blWait = true)
    {
        auto* pView = dynamic_cast<CLS_ViewBasic*>(m_pDialog.get());
        QVERIFY(pView);
        QVERIFY(!pView->DoBusinessRequest(QStringLiteral("OpenVideoFile"),
                                          {{"PlayUrl", _qstrPath.isEmpty() ? m_qstrClip : _qstrPath}}, {}));
        if (_blWait) QTRY_VERIFY_WITH_TIMEOUT(PlayedShown() >= 1, kHangMs);
    }
    void Answer(const char* _pContent, const QString& _qstrInput = QString())
    {
        QuillTest::AnswerMsgBox(QCoreApplication::translate("MainWindow", _pContent),
                                QDialogButtonBox::Ok, _qstrInput, kHangMs);
    }

private slots:
    void initTestCase()
    {
        using QuillTest::Service;
        m_pFixture = std::make_unique<QuillTest::ServiceFixture>(std::initializer_list<Service>{
            Service::Log, Service::Param, Service::TaskPool, Service::AppManager, Service::ColorManage});
        QVERIFY(m_pFixture->IsReady());
        m_pWorkDir = &m_pFixture->WorkDir();
        for (const QString& qstrName :
             QDir(QuillTest::BinDir()).entryList({"*.so", "resource", "Lang"}, QDir::AllEntries | QDir::NoDotAndDotDot))
            QVERIFY(m_pWorkDir->LinkFromBin(qstrName));
        m_qstrClip = m_pWorkDir->FilePath(QStringLiteral("clip.mp4"));
        QCOMPARE(QuillTest::RunProgram(
                     QStringLiteral("ffmpeg"),
                     {"-v", "error", "-f", "lavfi", "-i",
                      QStringLiteral("testsrc2=size=320x180:rate=25:duration=%1").arg(kClipSeconds), "-f",
                      "lavfi", "-i", QStringLiteral("sine=duration=%1").arg(kClipSeconds), "-c:v", "libx264",
                      "-preset", "ultrafast", "-g", "50", "-c:a", "aac", "-shortest", "-metadata",
                      "creation_time=2024-03-15T10:23:45Z", m_qstrClip}),
                 0);
        KoService::SetParam("SystemConfig", "RenderingType", "0");
        m_pfnGetModule = reinterpret_cast<GetModuleFn>(
            LoadDll("./libModuleKoPlayer.so", {"GetModule"}).at("GetModule"));
        QVERIFY(m_pfnGetModule);
    }

    void init()
    {
        m_pModule.reset(m_pfnGetModule());
        m_pModule->InitModule({});
        m_pDialog.reset(m_pModule->CreateModuleWgt({{"UIType", QJsonObject{{"Language", "en"}}}}));
        m_pDialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_pDialog.get()));
    }

    void cleanup()
    {
        m_pDialog.reset();
        m_pModule->UnInitModule({});
        m_pModule.reset();
    }

    void playPauseResume()
    {
        OpenClip();
        const QImage imgBefore = VideoPixels();
        QTRY_VERIFY_WITH_TIMEOUT(VideoPixels() != imgBefore, kHangMs);
        // Space reaches the dialog: pause.
        Key(m_pDialog.get(), Qt::Key_Space);
        QTest::qWait(1200);  // let a tick that was already due pass
        const int iPaused = PlayedShown();
        // Nothing to wait for: a paused player stays where it is.
        QTest::qWait(2200);
        QCOMPARE(PlayedShown(), iPaused);
        Key(m_pDialog.get(), Qt::Key_Space);
        QTRY_VERIFY_WITH_TIMEOUT(PlayedShown() > iPaused, kHangMs);
    }

    void speedsAndSteps()
    {
        OpenClip();
        auto* pSpeed = static_cast<QComboBox*>(Find("comboBox_speedinfo"));
        pSpeed->setCurrentIndex(8);  // 16X
        QTRY_VERIFY_WITH_TIMEOUT(PlayedShown() >= 20, kHangMs);
        pSpeed->setCurrentIndex(4);  // back to 1X
        QTRY_COMPARE_WITH_TIMEOUT(pSpeed->currentIndex(), 4, kHangMs);
        const int iAtNormal = PlayedShown();
        QTest::qWait(3000);  // a stretch of play at 1X, measured by its played time
        QVERIFY2(PlayedShown() - iAtNormal <= 5, qPrintable(QString::number(PlayedShown() - iAtNormal)));

        Key(m_pDialog.get(), Qt::Key_Space);
        QTest::qWait(500);
        const QImage imgPaused = VideoPixels();
        Bar("SignStepUp");
        QTRY_VERIFY_WITH_TIMEOUT(VideoPixels() != imgPaused, kHangMs);
    }

    // Stop keeps the position in the history; continuing from the history
    // starts there.
    void historyResume()
    {
        OpenClip();
        QTRY_VERIFY_WITH_TIMEOUT(PlayedShown() >= 3, kHangMs);
        Bar("SignStop");
        const int iKept = QuillTest::NewestHistroyEntry()[QLatin1String("pos")].toInt();
        QVERIFY2(iKept >= 3, qPrintable(QString::number(iKept)));
        QCOMPARE(QuillTest::NewestHistroyEntry()[QLatin1String("path")].toString(), m_qstrClip);
        Bar("SignShowHistroyLog");
        QWidget* pHistroy = Find("CLS_WgtHistroyList");
        QTRY_VERIFY(pHistroy->isVisible());
        QVERIFY(pHistroy->findChild<QListWidget*>()->count() >= 1);
        QVERIFY(QMetaObject::invokeMethod(pHistroy, "SlotItelBtnClicked", Q_ARG(QString, m_qstrClip)));
        QTRY_VERIFY_WITH_TIMEOUT(PlayedShown() >= iKept, kHangMs);
    }

    // Commands faster than the engine answers them, in any order: nothing
    // hangs, and the window still plays the next file.
    void commandsInQuickSuccession()
    {
        OpenClip();
        QObject* pBar = Find("WgtControlBar");
        const char* const arrSignals[] = {"SignVideoPlayOrPause", "SignFastPlay", "SignSlowPlay",
                                          "SignStepUp", "SignStop", "SignSliderClicked",
                                          "SignSliderMoved", "SignSpeedChange"};
        std::mt19937 random(20261125);
        for (int i = 0; i < 300; ++i) {
            const char* pSignal = arrSignals[random() % 8];
            if (i % 40 == 39)
                dynamic_cast<CLS_ViewBasic*>(m_pDialog.get())
                    ->DoBusinessRequest(QStringLiteral("OpenVideoFile"), {{"PlayUrl", m_qstrClip}}, {});
            else if (QByteArray(pSignal).startsWith("SignSlider"))
                QMetaObject::invokeMethod(pBar, pSignal, Q_ARG(int, static_cast<int>(random() % 101)));
            else if (QByteArray(pSignal) == "SignSpeedChange")
                QMetaObject::invokeMethod(pBar, pSignal, Q_ARG(int, static_cast<int>(random() % 9)));
            else
                QMetaObject::invokeMethod(pBar, pSignal);
            if (i % 5 == 0) QCoreApplication::processEvents();
        }
        Bar("SignStop");
        OpenClip();
        const int iPlayed = PlayedShown();
        QTRY_VERIFY_WITH_TIMEOUT(PlayedShown() > iPlayed, kHangMs);
    }

    // A sealed export asks for its password; a wrong one is said to be wrong
    // and asked for again; the right one plays. The password is written
    // nowhere.
    void sealedFile()
    {
        const QString qstrSealed = m_pWorkDir->FilePath(QStringLiteral("sealed.sdv"));
        QProcess qSeal;
        qSeal.start(QuillTest::BinPath(QStringLiteral("sdvtool")), {"seal", m_qstrClip, qstrSealed});
        qSeal.write(kPassword + '\n');
        qSeal.closeWriteChannel();
        QVERIFY(qSeal.waitForFinished(60000) && qSeal.exitCode() == 0);
        OpenClip(qstrSealed, false);
        Answer("msg_decrptinput_password", QStringLiteral("not it"));
        Answer("msg_videodecript_failed");
        Answer("msg_decrptinput_password", QString::fromLatin1(kPassword));
        QTRY_VERIFY_WITH_TIMEOUT(PlayedShown() >= 2, kHangMs);
        Bar("SignStop");
        QDirIterator qIt(m_pWorkDir->Path(), QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
        while (qIt.hasNext()) {
            QFile qfFile(qIt.next());
            QVERIFY(qfFile.open(QIODevice::ReadOnly));
            QVERIFY2(!qfFile.readAll().contains(kPassword), qPrintable(qfFile.fileName()));
        }
    }

    // Paused after a step: Ctrl+S writes the picture on screen; the wheel
    // zooms inside the letterbox and Ctrl+0 brings back the very same
    // screen; the time label can follow the recording's clock.
    void stillZoomAndClock()
    {
        const QString qstrStills = m_pWorkDir->FilePath(QStringLiteral("stills"));
        QVERIFY(QDir().mkpath(qstrStills));
        KoService::SetParam("ModuleKoPlayer", "SnapshotDir", qstrStills.toStdString());
        OpenClip();
        Key(m_pDialog.get(), Qt::Key_Space);
        Bar("SignStepUp");
        QTest::qWait(500);
        QWidget* pVideo = Find("openGLWgt");
        // The keys belong to the window the video is in.
        m_pDialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_pDialog.get()));
        QTest::keyClick(pVideo, Qt::Key_S, Qt::ControlModifier);
        QDir dirStills(qstrStills);
        QTRY_COMPARE(dirStills.entryList({"clip_*.png"}).size(), 1);
        QCOMPARE(QImage(dirStills.filePath(dirStills.entryList({"clip_*.png"}).first())).size(),
                 QSize(320, 180));

        // Once the notice has been laid out, the paused screen stands still.
        QImage imgWhole = VideoPixels();
        const auto settled = [&] {
            const QImage imgNow = VideoPixels();
            return std::exchange(imgWhole, imgNow) == imgNow;
        };
        QTRY_VERIFY_WITH_TIMEOUT(settled(), kHangMs);
        QCOMPARE(imgWhole.pixelColor(2, imgWhole.height() / 2), QColor(Qt::black));
        const QPoint ptCentre = pVideo->rect().center();
        for (int i = 0; i < 4; ++i) {
            QWheelEvent wheel(ptCentre, pVideo->mapToGlobal(ptCentre), QPoint(), QPoint(0, 120),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(pVideo, &wheel);
        }
        QTRY_VERIFY_WITH_TIMEOUT(VideoPixels() != imgWhole, kHangMs);
        const QImage imgZoomed = VideoPixels();
        QCOMPARE(imgZoomed.pixelColor(2, imgZoomed.height() / 2), QColor(Qt::black));
        QTest::keyClick(pVideo, Qt::Key_0, Qt::ControlModifier);
        QTRY_COMPARE_WITH_TIMEOUT(VideoPixels(), imgWhole, kHangMs);

        const int iPlayed = PlayedShown();
        auto* pClock = m_pDialog->findChild<QAction*>(QStringLiteral("action_recorded_time"));
        QVERIFY(pClock);
        pClock->trigger();
        const QString qstrExpected =
            QDateTime(QDate(2024, 3, 15), QTime(10, 23, 45), Qt::UTC)
                .addSecs(iPlayed)
                .toLocalTime()
                .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        QTRY_COMPARE(static_cast<QLabel*>(Find("label_videoTime"))->text(), qstrExpected);
        QCOMPARE(KoService::GetParam("ModuleKoPlayer", "ShowRecordedTime", ""), std::string("1"));
        pClock->trigger();
        QTRY_COMPARE(PlayedShown(), iPlayed);
    }

    void fullScreen()
    {
        OpenClip();
        QWidget* pBody = Find("CLS_WgtPlayerMainBody");
        QWidget* pVideo = Find("openGLWgt");
        QTest::mouseDClick(pVideo->childAt(pVideo->rect().center()) ? pVideo->childAt(pVideo->rect().center())
                                                                     : pVideo,
                           Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(pBody->isWindow() && pBody->isFullScreen(), kHangMs);
        QVERIFY(!Find("CLS_WgtPlayerTopBar")->isVisible());
        Key(pBody, Qt::Key_Escape);
        QTRY_VERIFY_WITH_TIMEOUT(!pBody->isWindow(), kHangMs);
        QVERIFY(Find("CLS_WgtPlayerTopBar")->isVisible());
        // Still playing in the dialog.
        const int iPlayed = PlayedShown();
        QTRY_VERIFY_WITH_TIMEOUT(PlayedShown() > iPlayed, kHangMs);
    }
};

QTEST_MAIN(tst_PlayerEndToEnd)
#include "tst_PlayerEndToEnd.moc"
