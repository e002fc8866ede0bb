#include "CLS_Player7ComboBox.h"
#include "CLS_Player7ListItemDelegate.h"
#include "CLS_PlayerToolButton.h"
#include "CLS_WgtPlayerControlBar.h"
#include "CLS_WgtPlayerSlider.h"
#include "ChromeTestSupport.h"
#include "KoServices.h"

#include <QLabel>
#include <QListView>
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
    void initTestCase()
    {
        QVERIFY(ChromeTest::InitParamService(m_workDir.FilePath(QStringLiteral("params.json"))));
    }

    void speedListAndEmptyEntry()
    {
        CLS_WgtPlayerControlBar bar;
        auto* pCombo = Child<CLS_Player7ComboBox>(bar, "comboBox_speedinfo");
        const QStringList qlstLabels = {"1/16X", "1/8X", "1/4X", "1/2X", "1X",
                                        "2X",    "4X",   "8X",   "16X",  ""};
        QCOMPARE(pCombo->count(), qlstLabels.size());
        for (int i = 0; i < pCombo->count(); ++i) {
            QCOMPARE(pCombo->itemText(i), qlstLabels.at(i));
            QCOMPARE(pCombo->itemData(i, CLS_Player7ListItemDelegate::kTextRole).toString(),
                     qlstLabels.at(i));
        }
        auto* pView = qobject_cast<QListView*>(pCombo->view());
        QVERIFY(pView && qobject_cast<CLS_Player7ListItemDelegate*>(pView->itemDelegate()));

        // The empty tenth entry is no speed: back to the last one, silently.
        QSignalSpy speeds(&bar, &CLS_WgtPlayerControlBar::SignSpeedChange);
        QCOMPARE(pCombo->currentIndex(), 4);
        pCombo->setCurrentIndex(9);
        QCOMPARE(pCombo->currentIndex(), 4);
        bar.SetSpeedIndex(6);  // mirroring the player is not a choice
        pCombo->setCurrentIndex(9);
        QCOMPARE(pCombo->currentIndex(), 6);
        QCOMPARE(speeds.count(), 0);
        pCombo->setCurrentIndex(2);
        pCombo->setCurrentIndex(8);
        QCOMPARE(speeds, QList<QVariantList>({{2}, {8}}));
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
        QTest::addColumn<QString>("openSound");  // empty: parameter absent
        QTest::addColumn<QString>("soundSet");
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("volume");
        QTest::addColumn<bool>("volumeEnabled");
        QTest::addColumn<int>("soundState");
        QTest::newRow("2X mutes though sound is on") << "1"
                                                     << "30" << 5 << 0 << false << 0;
        QTest::newRow("1/16X mutes too") << "1"
                                         << "30" << 0 << 0 << false << 0;
        QTest::newRow("1X restores the stored volume") << "1"
                                                       << "30" << 4 << 30 << true << 1;
        QTest::newRow("1X with sound switched off") << "0"
                                                    << "70" << 4 << 70 << false << 0;
        QTest::newRow("1X with nothing stored") << ""
                                                << "" << 4 << 50 << true << 1;
    }

    void speedIndexAppliesSoundRule()
    {
        QFETCH(QString, openSound);
        QFETCH(QString, soundSet);
        QFETCH(int, index);
        QFETCH(int, volume);
        QFETCH(bool, volumeEnabled);
        QFETCH(int, soundState);
        const std::pair<const char*, QString> params[] = {{"OpenSound", openSound},
                                                          {"SoundSet", soundSet}};
        for (const auto& param : params) {
            if (param.second.isEmpty())
                KoService::DeleteParam("ModuleKoPlayer", param.first);
            else
                QVERIFY(
                    KoService::SetParam("ModuleKoPlayer", param.first, param.second.toStdString()));
        }

        CLS_WgtPlayerControlBar bar;
        bar.SetSoundState(true);
        bar.SetSoundValue(80);
        bar.SetSpeedIndex(index);
        const auto* pVolume = Child<QSlider>(bar, "horizontalSlider_sound");
        QCOMPARE(Child<QComboBox>(bar, "comboBox_speedinfo")->currentIndex(), index);
        QCOMPARE(pVolume->value(), volume);
        QCOMPARE(pVolume->isEnabled(), volumeEnabled);
        QCOMPARE(State(bar, "toolButton_sound"), soundState);
    }

    void buttonEmitsItsSignalOnce_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QByteArray>("signal");
        QTest::newRow("open") << "pushButton_openfile" << QByteArray("SignOpenVideoFile()");
        QTest::newRow("frame back") << "toolButton_stepback" << QByteArray("SignStepBack()");
        QTest::newRow("slow") << "toolButton_slowplay" << QByteArray("SignSlowPlay()");
        QTest::newRow("play") << "toolButton_play" << QByteArray("SignVideoPlayOrPause()");
        QTest::newRow("stop") << "toolButton_stop" << QByteArray("SignStop()");
        QTest::newRow("fast") << "toolButton_fastplay" << QByteArray("SignFastPlay()");
        QTest::newRow("frame up") << "toolButton_stepup" << QByteArray("SignStepUp()");
        QTest::newRow("full screen") << "toolButton_full" << QByteArray("SignFullScreen()");
        QTest::newRow("sound") << "toolButton_sound" << QByteArray("SignSoundOpenOrClose()");
        QTest::newRow("history") << "toolButton_histroytable" << QByteArray("SignShowHistroyLog()");
    }

    void buttonEmitsItsSignalOnce()
    {
        QFETCH(QString, button);
        QFETCH(QByteArray, signal);
        CLS_WgtPlayerControlBar bar;
        bar.resize(900, 84);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));

        // Every button signal is watched, so a click reaching another one is caught.
        std::map<QByteArray, std::unique_ptr<QSignalSpy>> spies;
        for (int i = 0; i < bar.metaObject()->methodCount(); ++i) {
            const QMetaMethod method = bar.metaObject()->method(i);
            if (method.methodType() == QMetaMethod::Signal && method.parameterCount() == 0 &&
                method.name().startsWith("Sign"))
                spies[method.methodSignature()] = std::make_unique<QSignalSpy>(
                    &bar, QByteArray(QByteArray("2") + method.methodSignature()).constData());
        }
        QCOMPARE(spies.size(), size_t(10));
        QVERIFY(spies.count(signal));

        auto* pButton = bar.findChild<QAbstractButton*>(button);
        // The keyboard must stay with the dialog for Space and Escape.
        QCOMPARE(pButton->focusPolicy(), Qt::NoFocus);
        QTest::mouseClick(pButton, Qt::LeftButton);
        for (const auto& spy : spies)
            QVERIFY2(spy.second->count() == (spy.first == signal ? 1 : 0), spy.first.constData());
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
        QCOMPARE(State(bar, "toolButton_play"), 1);
        QCOMPARE(State(bar, "toolButton_sound"), 0);
        QVERIFY(!pVolume->isEnabled());
        bar.SetSoundValue(101);
        bar.SetSoundState(true);
        QCOMPARE(State(bar, "toolButton_play"), 1);
        QCOMPARE(State(bar, "toolButton_sound"), 1);
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
        QCOMPARE(State(bar, "toolButton_play"), 0);
        QCOMPARE(State(bar, "toolButton_sound"), 0);
        QVERIFY(!pVolume->isEnabled());
    }

private:
    QuillTest::ScopedWorkDir m_workDir;
};

QTEST_MAIN(TestControlBar)
#include "tst_controlbar.moc"
