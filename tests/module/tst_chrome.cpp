// The player's chrome on its own: the progress slider and its cut marks, the
// speed list, the control bar and the top bar. How the
// dialog wires them to the player is the player tests' part.

#include "CLS_ClipCutController.h"
#include "CLS_Player7ComboBox.h"
#include "CLS_WgtPlayerControlBar.h"
#include "CLS_WgtPlayerSlider.h"
#include "CLS_WgtPlayerTopBar.h"
#include "ServiceFixture.h"

#include <QtTest>
#include <QtWidgets>

namespace {

// A cut controller on a 0..100 slider, its played time and playing state
// set by the test.
struct CutRig
{
    QWidget window;
    CLS_WgtPlayerSlider* pSlider = new CLS_WgtPlayerSlider(&window);
    int iPlayed = 5;
    bool blPlaying = true;
    CLS_ClipCutController controller{&window, pSlider, [this](int& _iPlayed) {
                                         _iPlayed = iPlayed;
                                         return blPlaying;
                                     }};
    CutRig() { pSlider->setRange(0, 100); }
};

template <typename T = QWidget>
T* Child(const QWidget& _parent, const char* _pName)
{
    return _parent.findChild<T*>(QString::fromLatin1(_pName));
}

int State(const CLS_WgtPlayerControlBar& _bar, const char* _pButton)
{
    return Child(_bar, _pButton)->property("state").toInt();
}

}  // namespace

class TestChrome : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_services.IsReady()); }

    void sliderPressJumpsAndReleaseReports()
    {
        CLS_WgtPlayerSlider slider;
        slider.setOrientation(Qt::Horizontal);
        slider.setFixedSize(200, 20);
        slider.show();
        QVERIFY(QTest::qWaitForWindowExposed(&slider));
        QSignalSpy clicks(&slider, &CLS_WgtPlayerSlider::SliderClick);
        // minimum, maximum, press x, value after the press, release x, value reported
        const int cases[][6] = {{0, 100, 150, 75, 199, 99},   // release at the last pixel
                                {0, 100, 10, 5, 250, 125},    // released beyond the end
                                {10, 30, 100, 20, 150, 25}};  // range not starting at zero
        for (const auto& c : cases) {
            slider.setRange(c[0], c[1]);
            clicks.clear();
            QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(c[2], 10));
            QCOMPARE(slider.value(), c[3]);
            QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(c[4], 10));
            QCOMPARE(clicks, QList<QVariantList>{{c[5]}});
            // Reporting is all a release does; moving the slider is the receiver's call.
            QCOMPARE(slider.value(), c[3]);
        }
    }

    // The cut marks follow the picture on screen, 200 s on a 0..100 slider:
    // the slider shows the stretch the clip holds, the later mark covering
    // its whole second.
    void cutMarksShowTheClip_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("second");
        QTest::addColumn<int>("low");
        QTest::addColumn<int>("high");
        QTest::newRow("in order") << 20 << 60 << 10 << 30;
        QTest::newRow("second before first") << 60 << 20 << 10 << 30;
        QTest::newRow("same second") << 40 << 40 << 20 << 20;
        QTest::newRow("last second") << 0 << 199 << 0 << 100;
    }

    void cutMarksShowTheClip()
    {
        QFETCH(int, first);
        QFETCH(int, second);
        QFETCH(int, low);
        QFETCH(int, high);
        CutRig rig;
        rig.controller.SetFile(QStringLiteral("/videos/a.mp4"), 200);
        rig.iPlayed = first;
        rig.controller.SlotSetFirstMark();
        QVERIFY(rig.pSlider->IsFirstCutSet() && !rig.pSlider->IsSecondCutSet());
        rig.iPlayed = second;
        rig.controller.SlotSetSecondMark();
        QCOMPARE(rig.pSlider->GetFirstCutValue(), low);
        QCOMPARE(rig.pSlider->GetSecondCutValue(), high);
        // Export, the menu's last entry, is enabled now both are set.
        QMenu qMenu;
        rig.controller.AddActions(&qMenu);
        QVERIFY(qMenu.actions().last()->isEnabled());
    }

    void cutMarksBelongToOneFile()
    {
        CutRig rig;
        rig.blPlaying = false;
        QSignalSpy spyNotice(&rig.controller, &CLS_ClipCutController::SignNotice);
        // Nothing playing: no mark, and an export asks for marks first.
        rig.controller.SetFile(QStringLiteral("/videos/a.mp4"), 100);
        rig.controller.SlotSetFirstMark();
        QCOMPARE(rig.controller.FirstMark(), -1);
        rig.controller.SlotExport();
        QCOMPARE(spyNotice.count(), 1);

        rig.blPlaying = true;
        rig.controller.SlotSetFirstMark();
        rig.controller.SlotSetSecondMark();
        // Reopening the same file (a resume, a longer total) keeps them ...
        rig.controller.SetFile(QStringLiteral("/videos/a.mp4"), 120);
        QVERIFY(rig.controller.FirstMark() == 5 && rig.pSlider->IsSecondCutSet());
        // ... another file drops them, and so does clearing.
        rig.controller.SetFile(QStringLiteral("/videos/b.mp4"), 100);
        QVERIFY(rig.controller.FirstMark() == -1 && !rig.pSlider->IsFirstCutSet());
        rig.controller.SlotSetFirstMark();
        rig.controller.SlotClearMarks();
        QVERIFY(!rig.pSlider->IsFirstCutSet() && rig.controller.FirstMark() == -1);
    }

    void comboListOpensAbove()
    {
        QWidget window;
        auto* pCombo = new CLS_Player7ComboBox(&window);
        (new QVBoxLayout(&window))->addWidget(pCombo);
        pCombo->addItems({"0", "1", "2", "3", "4", "5"});
        pCombo->setCurrentIndex(5);
        window.setGeometry(200, 420, 200, 40);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        // Animated combo boxes need the general effects switch on too.
        QApplication::setEffectEnabled(Qt::UI_General, true);
        QApplication::setEffectEnabled(Qt::UI_AnimateCombo, true);
        pCombo->showPopup();
        QWidget* pContainer = pCombo->view()->window();
        QTRY_VERIFY(pContainer->isVisible());
        const QPoint qptCombo = pCombo->mapToGlobal(QPoint(0, 0));
        QCOMPARE(pContainer->geometry().bottomLeft() + QPoint(0, 1), qptCombo);
        pCombo->hidePopup();
    }

    // Each button of the bar reaches its own signal and no other; the player
    // tests drive the bar from its signals on.
    void buttonsReachTheirSignals()
    {
        CLS_WgtPlayerControlBar bar;
        bar.resize(900, 84);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        const char* const buttons[][2] = {{"pushButton_openfile", "SignOpenVideoFile()"},
                                          {"toolButton_stepback", "SignStepBack()"},
                                          {"toolButton_slowplay", "SignSlowPlay()"},
                                          {"toolButton_play", "SignVideoPlayOrPause()"},
                                          {"toolButton_stop", "SignStop()"},
                                          {"toolButton_fastplay", "SignFastPlay()"},
                                          {"toolButton_stepup", "SignStepUp()"},
                                          {"toolButton_full", "SignFullScreen()"},
                                          {"toolButton_sound", "SignSoundOpenOrClose()"},
                                          {"toolButton_histroytable", "SignShowHistroyLog()"}};
        std::vector<std::unique_ptr<QSignalSpy>> spies;
        for (const auto& button : buttons)
            spies.push_back(std::make_unique<QSignalSpy>(
                &bar, QByteArray(QByteArray("2") + button[1]).constData()));
        for (size_t i = 0; i < spies.size(); ++i) {
            auto* pButton = Child<QAbstractButton>(bar, buttons[i][0]);
            // The keyboard must stay with the dialog for Space and Escape.
            QCOMPARE(pButton->focusPolicy(), Qt::NoFocus);
            QTest::mouseClick(pButton, Qt::LeftButton);
            for (size_t k = 0; k < spies.size(); ++k)
                QVERIFY2(spies[k]->count() == (k == i ? 1 : 0), buttons[i][0]);
            spies[i]->clear();
        }
    }

    // Values out of range change nothing; a stop clears the sliders and the
    // time at once, the icons only when the player refreshes them.
    void barIgnoresOutOfRangeAndStops()
    {
        CLS_WgtPlayerControlBar bar;
        auto* pPlay = Child<QSlider>(bar, "slider_Play");
        auto* pVolume = Child<QSlider>(bar, "horizontalSlider_sound");
        const auto* pTime = Child<QLabel>(bar, "label_videoTime");
        bar.SetCurrentTime(5);  // beyond a total of 0
        QCOMPARE(pTime->text(), QStringLiteral("00:00:00/00:00:00"));
        bar.SetTotalTime(3725);
        bar.SetCurrentTime(61);
        bar.SetTotalTime(-1);
        bar.SetCurrentTime(3726);
        bar.SetCurrentTime(-1);
        QCOMPARE(pTime->text(), QStringLiteral("00:01:01/01:02:05"));

        bar.SetPlayState(true);
        bar.SetSoundState(true);
        bar.SetSoundValue(101);
        bar.SetPlaySliderValueChecked(101);
        QCOMPARE(QPoint(pPlay->value(), pVolume->value()), QPoint(0, 0));
        bar.SetSoundValue(40);
        bar.SetPlaySliderValueChecked(35);
        QCOMPARE(QPoint(pPlay->value(), pVolume->value()), QPoint(35, 40));
        QCOMPARE(State(bar, "toolButton_play") + State(bar, "toolButton_sound"), 2);
        bar.SetVideoStopped(true);
        QCOMPARE(QPoint(pPlay->value(), pVolume->value()), QPoint(0, 0));
        QCOMPARE(pTime->text(), QStringLiteral("00:00:00/01:02:05"));
        QCOMPARE(State(bar, "toolButton_play"), 1);
        bar.RefreshButtonStates();
        QCOMPARE(State(bar, "toolButton_play") + State(bar, "toolButton_sound"), 0);
        QVERIFY(!pVolume->isEnabled());
    }

    void topBarClockTicks()
    {
        CLS_WgtPlayerTopBar bar;
        const auto* pTime = Child<QLabel>(bar, "label_time");
        // Local time, 24-hour; the waits only catch a clock that never ticks.
        QTRY_VERIFY_WITH_TIMEOUT(QTime::fromString(pTime->text(), "hh:mm:ss").isValid(), 15000);
        const int iBehind =
            QTime::fromString(pTime->text(), "hh:mm:ss").secsTo(QTime::currentTime());
        QVERIFY((iBehind + 86400) % 86400 < 3);
        const QString qstrFirst = pTime->text();
        QTRY_VERIFY_WITH_TIMEOUT(pTime->text() != qstrFirst, 15000);
    }

private:
    QuillTest::ServiceFixture m_services{QuillTest::Service::Param,
                                         QuillTest::Service::ColorManage};
};

QTEST_MAIN(TestChrome)
#include "tst_chrome.moc"
