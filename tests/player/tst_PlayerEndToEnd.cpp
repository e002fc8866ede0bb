// The real module on the real engine, driven as the host drives them, on a
// generated clip under a virtual display: what only the whole chain shows.

#include "KoServices.h"
#include "PlayerRig.h"
#include "QuillTestSupport.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QWheelEvent>
#include <QtTest>

#include <memory>
#include <utility>

namespace {

constexpr int kHangMs = 20000;
constexpr int kClipSeconds = 20;

}  // namespace

class tst_PlayerEndToEnd : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QuillTest::PlayerRig> m_pRig;
    QString m_qstrClip;

    QWidget* Find(const char* _pName) { return m_pRig->Find(_pName); }
    int PlayedShown() { return m_pRig->PlayedShown(); }
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
    void Play(const QString& _qstrPath)
    {
        QVERIFY(m_pRig->Open(_qstrPath));
        QTRY_VERIFY_WITH_TIMEOUT(PlayedShown() >= 1, kHangMs);
    }

private slots:
    void initTestCase()
    {
        m_pRig = std::make_unique<QuillTest::PlayerRig>();
        QVERIFY(m_pRig->IsReady());
        // The creation time is the recording's clock.
        m_qstrClip = m_pRig->WorkDir().FilePath(QStringLiteral("clip.mp4"));
        const QString qstrSeconds = QString::number(kClipSeconds);
        QCOMPARE(QuillTest::RunProgram(
                     QStringLiteral("ffmpeg"),
                     {"-v", "error", "-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=" + qstrSeconds,
                      "-f", "lavfi", "-i", "sine=duration=" + qstrSeconds, "-c:v", "libx264", "-preset",
                      "ultrafast", "-g", "50", "-c:a", "aac", "-shortest", "-metadata",
                      "creation_time=2024-03-15T10:23:45Z", m_qstrClip}),
                 0);
    }
    void init() { m_pRig->CreateDialog(); }
    void cleanup() { m_pRig->DestroyDialog(); }
    void cleanupTestCase() { m_pRig.reset(); }

    // Space pauses and resumes. Paused, the wheel zooms inside the letterbox
    // and Ctrl+0 brings back the very same screen; the video's right-click
    // menu switches the time label to the recording's clock and back.
    void pauseZoomAndClock()
    {
        Play(m_qstrClip);
        QWidget* pDialog = m_pRig->Dialog();
        // The keys belong to the window the video is in.
        pDialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(pDialog));
        QTest::keyClick(pDialog, Qt::Key_Space);
        // A playing screen changes 25 times a second; a paused one stands still.
        QImage imgWhole = VideoPixels();
        const auto settled = [&] {
            const QImage imgNow = VideoPixels();
            return std::exchange(imgWhole, imgNow) == imgNow;
        };
        QTRY_VERIFY_WITH_TIMEOUT(settled(), kHangMs);
        QCOMPARE(imgWhole.pixelColor(2, imgWhole.height() / 2), QColor(Qt::black));
        QWidget* pVideo = Find("openGLWgt");
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

        QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, ptCentre);
        QApplication::sendEvent(pVideo->childAt(ptCentre), &menuEvent);
        auto* pMenu = pVideo->findChild<QMenu*>(QStringLiteral("menu_video"));
        QTRY_VERIFY(pMenu->isVisible());
        auto* pClock = pMenu->findChild<QAction*>(QStringLiteral("action_recorded_time"));
        pMenu->close();
        const int iPlayed = PlayedShown();
        pClock->trigger();
        const QString qstrExpected = QDateTime(QDate(2024, 3, 15), QTime(10, 23, 45), Qt::UTC)
                                         .addSecs(iPlayed)
                                         .toLocalTime()
                                         .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        QTRY_COMPARE(static_cast<QLabel*>(Find("label_videoTime"))->text(), qstrExpected);
        QCOMPARE(KoService::GetParam("ModuleKoPlayer", "ShowRecordedTime", ""), std::string("1"));
        pClock->trigger();
        QTRY_COMPARE(PlayedShown(), iPlayed);
        QTest::keyClick(pDialog, Qt::Key_Space);
        QTRY_VERIFY_WITH_TIMEOUT(PlayedShown() > iPlayed, kHangMs);
    }
};

QTEST_MAIN(tst_PlayerEndToEnd)
#include "tst_PlayerEndToEnd.moc"
