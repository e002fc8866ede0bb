// The real module on the real engine, driven as the host drives them, on a
// generated clip under a virtual display: what only the whole chain shows.

#include "PlayerRig.h"
#include "QuillTestSupport.h"

#include <QtTest>
#include <QtWidgets>

#include <utility>

namespace {

constexpr int kHangMs = 20000;

// The widget as the screen shows it.
QImage OnScreen(QWidget* _pWidget)
{
    const QPoint ptTopLeft = _pWidget->mapTo(_pWidget->window(), QPoint(0, 0));
    return _pWidget->screen()
        ->grabWindow(_pWidget->window()->winId(), ptTopLeft.x(), ptTopLeft.y(), _pWidget->width(),
                     _pWidget->height())
        .toImage();
}

}  // namespace

class tst_PlayerEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    // Space pauses and resumes. Paused, the wheel zooms inside the letterbox
    // and Ctrl+0 brings back the very same screen; the video's right-click
    // menu switches the time label to the recording's clock and back.
    void pauseZoomAndClock()
    {
        QuillTest::PlayerRig rig;
        QVERIFY(rig.IsReady());
        // The creation time is the recording's clock.
        const QString qstrClip = rig.WorkDir().FilePath(QStringLiteral("clip.mp4"));
        QCOMPARE(QuillTest::RunProgram(QStringLiteral("ffmpeg"),
                                       {"-v", "error", "-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=20",
                                        "-c:v", "libx264", "-preset", "ultrafast", "-metadata",
                                        "creation_time=2024-03-15T10:23:45Z", qstrClip}),
                 0);
        rig.CreateDialog();
        QVERIFY(rig.Open(qstrClip));
        QTRY_VERIFY_WITH_TIMEOUT(rig.PlayedShown() >= 1, kHangMs);
        QWidget* pVideo = rig.Find("openGLWgt");
        QWidget* pDialog = rig.Dialog();
        // The keys belong to the window the video is in.
        pDialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(pDialog));
        QTest::keyClick(pDialog, Qt::Key_Space);
        // A step also brings the time label up to the picture on screen.
        QVERIFY(rig.Bar("SignStepUp"));
        // A playing screen changes 25 times a second; a paused one stands still.
        QImage imgWhole = OnScreen(pVideo);
        const auto settled = [&] {
            const QImage imgNow = OnScreen(pVideo);
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
        QTRY_VERIFY_WITH_TIMEOUT(OnScreen(pVideo) != imgWhole, kHangMs);
        const QImage imgZoomed = OnScreen(pVideo);
        QCOMPARE(imgZoomed.pixelColor(2, imgZoomed.height() / 2), QColor(Qt::black));
        QTest::keyClick(pVideo, Qt::Key_0, Qt::ControlModifier);
        QTRY_COMPARE_WITH_TIMEOUT(OnScreen(pVideo), imgWhole, kHangMs);

        QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, ptCentre);
        QApplication::sendEvent(pVideo->childAt(ptCentre), &menuEvent);
        auto* pMenu = pVideo->findChild<QMenu*>(QStringLiteral("menu_video"));
        QTRY_VERIFY(pMenu->isVisible());
        auto* pClock = pMenu->findChild<QAction*>(QStringLiteral("action_recorded_time"));
        pMenu->close();
        const int iPlayed = rig.PlayedShown();
        pClock->trigger();
        const QString qstrExpected = QDateTime(QDate(2024, 3, 15), QTime(10, 23, 45), Qt::UTC)
                                         .addSecs(iPlayed)
                                         .toLocalTime()
                                         .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        QTRY_COMPARE(static_cast<QLabel*>(rig.Find("label_videoTime"))->text(), qstrExpected);
        pClock->trigger();
        QTRY_COMPARE(rig.PlayedShown(), iPlayed);
        QTest::keyClick(pDialog, Qt::Key_Space);
        QTRY_VERIFY_WITH_TIMEOUT(rig.PlayedShown() > iPlayed, kHangMs);
    }
};

QTEST_MAIN(tst_PlayerEndToEnd)
#include "tst_PlayerEndToEnd.moc"
