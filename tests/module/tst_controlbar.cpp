#include "CLS_Player7ComboBox.h"
#include "CLS_Player7ListItemDelegate.h"
#include "CLS_PlayerToolButton.h"
#include "CLS_WgtPlayerControlBar.h"
#include "CLS_WgtPlayerSlider.h"
#include "KoServices.h"
#include "ServiceFixture.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>

namespace {

template <typename T = QWidget>
T* Child(const CLS_WgtPlayerControlBar& _bar, const char* _pName)
{
    return _bar.findChild<T*>(QString::fromLatin1(_pName));
}

int State(const CLS_WgtPlayerControlBar& _bar, const char* _pButton)
{
    return Child(_bar, _pButton)->property("state").toInt();
}

}  // namespace

class TestControlBar : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_services.IsReady()); }

    void speedListAndEmptyEntry()
    {
        CLS_WgtPlayerControlBar bar;
        auto* pCombo = Child<CLS_Player7ComboBox>(bar, "comboBox_speedinfo");
        QStringList qlstLabels;
        for (int i = 0; i < pCombo->count(); ++i)
            qlstLabels << pCombo->itemData(i, CLS_Player7ListItemDelegate::kTextRole).toString();
        QCOMPARE(qlstLabels.join(' '), QStringLiteral("1/16X 1/8X 1/4X 1/2X 1X 2X 4X 8X 16X "));

        // The empty tenth entry is no speed: back to the last one, silently.
        QSignalSpy speeds(&bar, &CLS_WgtPlayerControlBar::SignSpeedChange);
        QCOMPARE(pCombo->currentIndex(), 4);
        pCombo->setCurrentIndex(9);
        QCOMPARE(pCombo->currentIndex(), 4);
        bar.SetSpeedIndex(6);  // mirroring the player is not a choice
        pCombo->setCurrentIndex(9);
        QCOMPARE(pCombo->currentIndex(), 6);
        QCOMPARE(speeds.count(), 0);
    }

    void currentAndTotalTime()
    {
        CLS_WgtPlayerControlBar bar;
        const QLabel* pLabel = Child<QLabel>(bar, "label_videoTime");
        QCOMPARE(pLabel->text(), QStringLiteral("00:00:00/00:00:00"));
        bar.SetCurrentTime(5);  // beyond a total of 0
        QCOMPARE(pLabel->text(), QStringLiteral("00:00:00/00:00:00"));

        bar.SetTotalTime(3725);
        bar.SetCurrentTime(61);
        QCOMPARE(pLabel->text(), QStringLiteral("00:01:01/01:02:05"));
        bar.SetTotalTime(-1);
        bar.SetCurrentTime(3725);
        bar.SetCurrentTime(3726);
        bar.SetCurrentTime(-1);
        QCOMPARE(pLabel->text(), QStringLiteral("01:02:05/01:02:05"));

        bar.SetTotalTime(360000);
        bar.SetCurrentTime(360000);
        QCOMPARE(pLabel->text(), QStringLiteral("100:00:00/100:00:00"));
    }

    void speedIndexAppliesSoundRule_data()
    {
        QTest::addColumn<QStringList>("stored");  // OpenSound, SoundSet; none: absent
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("volume");
        QTest::addColumn<bool>("soundOn");
        QTest::newRow("2X mutes though sound is on") << QStringList{"1", "30"} << 5 << 0 << false;
        QTest::newRow("1X restores the stored volume") << QStringList{"1", "30"} << 4 << 30 << true;
        QTest::newRow("1X with sound switched off") << QStringList{"0", "70"} << 4 << 70 << false;
        QTest::newRow("1X with nothing stored") << QStringList() << 4 << 50 << true;
    }

    void speedIndexAppliesSoundRule()
    {
        QFETCH(QStringList, stored);
        QFETCH(int, index);
        QFETCH(int, volume);
        QFETCH(bool, soundOn);
        const char* const keys[] = {"OpenSound", "SoundSet"};
        for (int i = 0; i < 2; ++i) {
            if (stored.isEmpty())
                KoService::DeleteParam("ModuleKoPlayer", keys[i]);
            else
                QVERIFY(KoService::SetParam("ModuleKoPlayer", keys[i], stored[i].toStdString()));
        }

        CLS_WgtPlayerControlBar bar;
        bar.SetSoundState(true);
        bar.SetSoundValue(80);
        bar.SetSpeedIndex(index);
        const auto* pVolume = Child<QSlider>(bar, "horizontalSlider_sound");
        QCOMPARE(Child<QComboBox>(bar, "comboBox_speedinfo")->currentIndex(), index);
        QCOMPARE(pVolume->value(), volume);
        QCOMPARE(pVolume->isEnabled(), soundOn);
        QCOMPARE(State(bar, "toolButton_sound"), int(soundOn));
    }

    void everyButtonEmitsItsSignalOnce()
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
        // Every button signal is watched, so a click reaching another one is caught.
        std::map<QByteArray, std::unique_ptr<QSignalSpy>> spies;
        for (const auto& button : buttons)
            spies[button[1]] = std::make_unique<QSignalSpy>(
                &bar, QByteArray(QByteArray("2") + button[1]).constData());
        for (const auto& button : buttons) {
            auto* pButton = bar.findChild<QAbstractButton*>(QString::fromLatin1(button[0]));
            // The keyboard must stay with the dialog for Space and Escape.
            QCOMPARE(pButton->focusPolicy(), Qt::NoFocus);
            QTest::mouseClick(pButton, Qt::LeftButton);
            for (const auto& spy : spies)
                QVERIFY2(spy.second->count() == (spy.first == button[1] ? 1 : 0), button[0]);
            spies[button[1]]->clear();
        }
    }

    void slidersPassTheirSignalsOn()
    {
        CLS_WgtPlayerControlBar bar;
        const char* const sliders[][4] = {
            {"slider_Play", SIGNAL(SignSliderMoved(int)), SIGNAL(SignSliderValueChanged(int)),
             SIGNAL(SignSliderClicked(int))},
            {"horizontalSlider_sound", SIGNAL(SignSoundSliderMoved(int)),
             SIGNAL(SignSoundSliderValueChanged(int)), SIGNAL(SignSoundSliderPressed(int))}};
        for (const auto& names : sliders) {
            auto* pSlider = Child<CLS_WgtPlayerSlider>(bar, names[0]);
            pSlider->setEnabled(true);
            QSignalSpy moved(&bar, names[1]), changed(&bar, names[2]), clicked(&bar, names[3]);
            pSlider->setSliderDown(true);
            pSlider->setSliderPosition(30);
            pSlider->setSliderDown(false);
            pSlider->setFixedWidth(100);
            QTest::mouseRelease(pSlider, Qt::LeftButton, {}, QPoint(120, 5));
            QCOMPARE(moved, QList<QVariantList>{{30}});
            QCOMPARE(changed, QList<QVariantList>{{30}});
            QCOMPARE(clicked, QList<QVariantList>{{120}});
        }
    }

    void statesFollowThePlayer()
    {
        CLS_WgtPlayerControlBar bar;
        auto* pPlay = Child<QSlider>(bar, "slider_Play");
        auto* pVolume = Child<QSlider>(bar, "horizontalSlider_sound");
        bar.SetPlayState(true);
        bar.SetSoundValue(101);
        bar.SetSoundState(true);
        QCOMPARE(State(bar, "toolButton_play") + State(bar, "toolButton_sound"), 2);
        QVERIFY(pVolume->isEnabled());
        QCOMPARE(pVolume->value(), 0);
        bar.SetSoundValue(40);
        bar.SetPlaySliderValueChecked(101);
        QCOMPARE(pPlay->value(), 0);
        bar.SetPlaySliderValueChecked(35);
        QCOMPARE(QPoint(pPlay->value(), pVolume->value()), QPoint(35, 40));
        bar.SetTotalTime(100);
        bar.SetCurrentTime(35);

        bar.SetVideoStopped(true);
        QCOMPARE(QPoint(pPlay->value(), pVolume->value()), QPoint(0, 0));
        QCOMPARE(Child<QLabel>(bar, "label_videoTime")->text(),
                 QStringLiteral("00:00:00/00:01:40"));
        // The icons wait for the player; the flags are already cleared.
        QCOMPARE(State(bar, "toolButton_play"), 1);
        bar.RefreshButtonStates();
        QCOMPARE(State(bar, "toolButton_play") + State(bar, "toolButton_sound"), 0);
        QVERIFY(!pVolume->isEnabled());
    }

private:
    QuillTest::ServiceFixture m_services{QuillTest::Service::Param};
};

QTEST_MAIN(TestControlBar)
#include "tst_controlbar.moc"
