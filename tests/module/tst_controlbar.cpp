#include "CLS_Player7ComboBox.h"
#include "CLS_Player7ListItemDelegate.h"
#include "CLS_PlayerToolButton.h"
#include "CLS_WgtPlayerControlBar.h"
#include "CLS_WgtPlayerSlider.h"
#include "ChromeTestSupport.h"
#include "KoServices.h"

#include <QDir>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

class TestControlBar : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void formCarriesNamesFocusAndTooltips();
    void speedListHasTenEntries();

    void currentAndTotalTime();

    void emptySpeedEntryGoesBackToLastSpeed();
    void speedIndexAppliesSoundRule_data();
    void speedIndexAppliesSoundRule();

    void buttonEmitsItsSignalOnce_data();
    void buttonEmitsItsSignalOnce();
    void slidersPassTheirSignalsOn_data();
    void slidersPassTheirSignalsOn();

    void playAndSoundStates();
    void stoppedAndSliderSetters();

    void rendersInEachSkin_data();
    void rendersInEachSkin();

private:
    template <typename T>
    static T* Child(const CLS_WgtPlayerControlBar& _bar, const char* _pName)
    {
        return _bar.findChild<T*>(QString::fromLatin1(_pName));
    }
    static int State(const CLS_WgtPlayerControlBar& _bar, const char* _pButton)
    {
        return Child<CLS_PlayerToolButton>(_bar, _pButton)->property("state").toInt();
    }

    QuillTest::ScopedWorkDir m_workDir;
};

void TestControlBar::initTestCase()
{
    QVERIFY(ChromeTest::InitParamService(m_workDir.FilePath(QStringLiteral("params.json"))));
    // Style sheets name their images relative to the current directory, and
    // the colour service keeps the first palette it finds (or misses) for the
    // process, so the skins are in place before the first bar is built.
    QVERIFY(QFile::link(QStringLiteral(QUILL_SOURCE_DIR "/resource"),
                        m_workDir.FilePath(QStringLiteral("resource"))));
}

void TestControlBar::formCarriesNamesFocusAndTooltips()
{
    CLS_WgtPlayerControlBar bar;

    struct Control
    {
        const char* pName;
        const char* pClass;
        const char* pToolTip;
    };
    const Control controls[] = {
        {"pushButton_openfile", "QPushButton", "btn_open_file"},
        {"toolButton_stepback", "CLS_PlayerToolButton", "btn_frameback"},
        {"toolButton_slowplay", "CLS_PlayerToolButton", "btn_slow_forward"},
        {"toolButton_play", "CLS_PlayerToolButton", "btn_play_pause"},
        {"toolButton_stop", "CLS_PlayerToolButton", "lab_stop"},
        {"toolButton_fastplay", "CLS_PlayerToolButton", "btn_fast_forward"},
        {"toolButton_stepup", "CLS_PlayerToolButton", "btn_frame_progression"},
        {"toolButton_full", "CLS_PlayerToolButton", "btn_full_screen"},
        {"toolButton_sound", "CLS_PlayerToolButton", "lab_sound_on_off"},
        {"toolButton_histroytable", "CLS_PlayerToolButton", "btn_history_table"},
        {"slider_Play", "CLS_WgtPlayerSlider", ""},
        {"horizontalSlider_sound", "CLS_WgtPlayerSlider", ""},
        {"comboBox_speedinfo", "CLS_Player7ComboBox", ""},
    };
    for (const Control& control : controls) {
        const QWidget* pWidget = Child<QWidget>(bar, control.pName);
        QVERIFY2(pWidget, control.pName);
        QVERIFY2(pWidget->inherits(control.pClass), control.pName);
        // The keyboard must stay with the dialog for Space and Escape.
        QVERIFY2(pWidget->focusPolicy() == Qt::NoFocus, control.pName);
        QCOMPARE(pWidget->toolTip(), QString::fromLatin1(control.pToolTip));
        if (const auto* pButton = qobject_cast<const QAbstractButton*>(pWidget))
            QVERIFY2(pButton->text().isEmpty(), control.pName);
    }

    for (const char* pName :
         {"wgtVideoProgress", "bottomBar", "label_videoTime", "label_exceptionInfo"})
        QVERIFY2(Child<QWidget>(bar, pName), pName);
    QVERIFY(Child<QWidget>(bar, "bottomBar")->styleSheet().isEmpty());
    QCOMPARE(bar.GetPlaySliderMaximum(), 100);
    QCOMPARE(bar.GetSoundSliderMaximum(), 100);
}

void TestControlBar::speedListHasTenEntries()
{
    CLS_WgtPlayerControlBar bar;
    auto* pCombo = Child<CLS_Player7ComboBox>(bar, "comboBox_speedinfo");
    const QStringList qlstLabels = {"1/16X", "1/8X", "1/4X", "1/2X", "1X",
                                    "2X",    "4X",   "8X",   "16X",  ""};
    QCOMPARE(pCombo->count(), qlstLabels.size());
    QCOMPARE(pCombo->currentIndex(), 4);
    for (int i = 0; i < pCombo->count(); ++i) {
        QCOMPARE(pCombo->itemText(i), qlstLabels.at(i));
        QCOMPARE(pCombo->itemData(i, Qt::UserRole + 1).toString(), qlstLabels.at(i));
        QCOMPARE(pCombo->itemData(i, Qt::TextAlignmentRole).toInt(),
                 int(Qt::AlignHCenter | Qt::AlignVCenter));
        QCOMPARE(pCombo->itemData(i, Qt::SizeHintRole).toSize(), QSize(30, 30));
    }
    auto* pView = qobject_cast<QListView*>(pCombo->view());
    QVERIFY(pView);
    QVERIFY(qobject_cast<CLS_Player7ListItemDelegate*>(pView->itemDelegate()));
}

void TestControlBar::currentAndTotalTime()
{
    CLS_WgtPlayerControlBar bar;
    const QLabel* pLabel = Child<QLabel>(bar, "label_videoTime");
    QCOMPARE(pLabel->text(), QStringLiteral("00:00:00/00:00:00"));

    bar.SetCurrentTime(5);  // beyond a total of 0
    QCOMPARE(pLabel->text(), QStringLiteral("00:00:00/00:00:00"));

    bar.SetTotalTime(3725);
    QCOMPARE(pLabel->text(), QStringLiteral("00:00:00/00:00:00"));  // not until the next tick
    bar.SetCurrentTime(61);
    QCOMPARE(pLabel->text(), QStringLiteral("00:01:01/01:02:05"));

    bar.SetTotalTime(-1);
    bar.SetCurrentTime(3725);
    QCOMPARE(pLabel->text(), QStringLiteral("01:02:05/01:02:05"));
    bar.SetCurrentTime(3726);
    bar.SetCurrentTime(-1);
    QCOMPARE(pLabel->text(), QStringLiteral("01:02:05/01:02:05"));

    bar.SetTotalTime(360000);
    bar.SetCurrentTime(360000);
    QCOMPARE(pLabel->text(), QStringLiteral("100:00:00/100:00:00"));
    bar.SetCurrentTime(0);
    QCOMPARE(pLabel->text(), QStringLiteral("00:00:00/100:00:00"));
}

void TestControlBar::emptySpeedEntryGoesBackToLastSpeed()
{
    CLS_WgtPlayerControlBar bar;
    auto* pCombo = Child<QComboBox>(bar, "comboBox_speedinfo");
    QSignalSpy speeds(&bar, &CLS_WgtPlayerControlBar::SignSpeedChange);

    pCombo->setCurrentIndex(9);  // no speed set yet: back to 1X
    QCOMPARE(pCombo->currentIndex(), 4);
    QCOMPARE(speeds.count(), 0);

    bar.SetSpeedIndex(6);  // mirroring the player is not a choice
    QCOMPARE(pCombo->currentIndex(), 6);
    QCOMPARE(speeds.count(), 0);

    pCombo->setCurrentIndex(9);
    QCOMPARE(pCombo->currentIndex(), 6);
    QCOMPARE(speeds.count(), 0);

    pCombo->setCurrentIndex(2);
    pCombo->setCurrentIndex(8);
    pCombo->setCurrentIndex(-1);  // a cleared list passes on as it is
    QCOMPARE(speeds.count(), 3);
    QCOMPARE(speeds.at(0).at(0).toInt(), 2);
    QCOMPARE(speeds.at(1).at(0).toInt(), 8);
    QCOMPARE(speeds.at(2).at(0).toInt(), -1);

    bar.SetSpeedIndex(-3);
    QCOMPARE(pCombo->currentIndex(), -1);
}

void TestControlBar::speedIndexAppliesSoundRule_data()
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

void TestControlBar::speedIndexAppliesSoundRule()
{
    QFETCH(QString, openSound);
    QFETCH(QString, soundSet);
    QFETCH(int, index);
    QFETCH(int, volume);
    QFETCH(bool, volumeEnabled);
    QFETCH(int, soundState);

    const auto fnStore = [](const char* _pKey, const QString& _qstrValue) {
        if (!_qstrValue.isEmpty())
            return KoService::SetParam("ModuleKoPlayer", _pKey, _qstrValue.toStdString());
        KoService::DeleteParam("ModuleKoPlayer", _pKey);
        return true;
    };
    QVERIFY(fnStore("OpenSound", openSound));
    QVERIFY(fnStore("SoundSet", soundSet));

    CLS_WgtPlayerControlBar bar;
    bar.SetSoundState(true);
    bar.SetSoundValue(80);
    const auto* pVolume = Child<QSlider>(bar, "horizontalSlider_sound");
    QVERIFY(pVolume->isEnabled());

    bar.SetSpeedIndex(index);
    QCOMPARE(Child<QComboBox>(bar, "comboBox_speedinfo")->currentIndex(), index);
    QCOMPARE(pVolume->value(), volume);
    QCOMPARE(pVolume->isEnabled(), volumeEnabled);
    QCOMPARE(State(bar, "toolButton_sound"), soundState);
}

void TestControlBar::buttonEmitsItsSignalOnce_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QByteArray>("signal");

    QTest::newRow("open") << "pushButton_openfile" << QByteArray(SIGNAL(SignOpenVideoFile()));
    QTest::newRow("frame back") << "toolButton_stepback" << QByteArray(SIGNAL(SignStepBack()));
    QTest::newRow("slow") << "toolButton_slowplay" << QByteArray(SIGNAL(SignSlowPlay()));
    QTest::newRow("play") << "toolButton_play" << QByteArray(SIGNAL(SignVideoPlayOrPause()));
    QTest::newRow("stop") << "toolButton_stop" << QByteArray(SIGNAL(SignStop()));
    QTest::newRow("fast") << "toolButton_fastplay" << QByteArray(SIGNAL(SignFastPlay()));
    QTest::newRow("frame up") << "toolButton_stepup" << QByteArray(SIGNAL(SignStepUp()));
    QTest::newRow("full screen") << "toolButton_full" << QByteArray(SIGNAL(SignFullScreen()));
    QTest::newRow("sound") << "toolButton_sound" << QByteArray(SIGNAL(SignSoundOpenOrClose()));
    QTest::newRow("history") << "toolButton_histroytable"
                             << QByteArray(SIGNAL(SignShowHistroyLog()));
}

void TestControlBar::buttonEmitsItsSignalOnce()
{
    QFETCH(QString, button);
    QFETCH(QByteArray, signal);

    CLS_WgtPlayerControlBar bar;
    bar.resize(900, 84);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));

    // Every button signal is watched, so a click that also reaches another
    // button's signal is caught.
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    int iWatched = -1;
    for (int i = 0; i < bar.metaObject()->methodCount(); ++i) {
        const QMetaMethod method = bar.metaObject()->method(i);
        if (method.methodType() != QMetaMethod::Signal || method.parameterCount() != 0 ||
            !method.name().startsWith("Sign"))
            continue;
        // "2" is the prefix SIGNAL() puts before a signature.
        const QByteArray qbaSignal = QByteArray("2") + method.methodSignature();
        if (qbaSignal == signal) iWatched = int(spies.size());
        spies.push_back(std::make_unique<QSignalSpy>(&bar, qbaSignal.constData()));
    }
    QCOMPARE(spies.size(), size_t(10));
    QVERIFY(iWatched >= 0);

    auto* pButton = bar.findChild<QAbstractButton*>(button);
    QVERIFY(pButton);
    QTest::mouseClick(pButton, Qt::LeftButton);
    for (size_t i = 0; i < spies.size(); ++i)
        QCOMPARE(spies[i]->count(), int(i) == iWatched ? 1 : 0);
}

void TestControlBar::slidersPassTheirSignalsOn_data()
{
    QTest::addColumn<QString>("slider");
    QTest::addColumn<QByteArray>("moved");
    QTest::addColumn<QByteArray>("clicked");
    QTest::addColumn<QByteArray>("changed");

    QTest::newRow("progress") << "slider_Play" << QByteArray(SIGNAL(SignSliderMoved(int)))
                              << QByteArray(SIGNAL(SignSliderClicked(int)))
                              << QByteArray(SIGNAL(SignSliderValueChanged(int)));
    QTest::newRow("volume") << "horizontalSlider_sound"
                            << QByteArray(SIGNAL(SignSoundSliderMoved(int)))
                            << QByteArray(SIGNAL(SignSoundSliderPressed(int)))
                            << QByteArray(SIGNAL(SignSoundSliderValueChanged(int)));
}

void TestControlBar::slidersPassTheirSignalsOn()
{
    QFETCH(QString, slider);
    QFETCH(QByteArray, moved);
    QFETCH(QByteArray, clicked);
    QFETCH(QByteArray, changed);

    CLS_WgtPlayerControlBar bar;
    auto* pSlider = bar.findChild<CLS_WgtPlayerSlider*>(slider);
    QVERIFY(pSlider);
    pSlider->setEnabled(true);
    QSignalSpy spyMoved(&bar, moved.constData());
    QSignalSpy spyClicked(&bar, clicked.constData());
    QSignalSpy spyChanged(&bar, changed.constData());

    pSlider->setSliderDown(true);
    pSlider->setSliderPosition(30);
    pSlider->setSliderDown(false);
    QCOMPARE(spyMoved.count(), 1);
    QCOMPARE(spyMoved.at(0).at(0).toInt(), 30);
    QCOMPARE(spyChanged.count(), 1);
    QCOMPARE(spyChanged.at(0).at(0).toInt(), 30);

    pSlider->setFixedWidth(100);
    QTest::mouseRelease(pSlider, Qt::LeftButton, {}, QPoint(120, 5));
    QCOMPARE(spyClicked.count(), 1);
    QCOMPARE(spyClicked.at(0).at(0).toInt(), 120);
    QCOMPARE(spyMoved.count(), 1);
}

void TestControlBar::playAndSoundStates()
{
    CLS_WgtPlayerControlBar bar;
    const auto* pVolume = Child<QSlider>(bar, "horizontalSlider_sound");

    bar.SetPlayState(true);
    QCOMPARE(State(bar, "toolButton_play"), 1);
    QCOMPARE(State(bar, "toolButton_sound"), 0);
    QVERIFY(!pVolume->isEnabled());

    bar.SetSoundState(true);
    QCOMPARE(State(bar, "toolButton_play"), 1);
    QCOMPARE(State(bar, "toolButton_sound"), 1);
    QVERIFY(pVolume->isEnabled());

    bar.SetPlayState(false);
    QCOMPARE(State(bar, "toolButton_play"), 0);
    QCOMPARE(State(bar, "toolButton_sound"), 1);

    bar.SetSoundState(false);
    QCOMPARE(State(bar, "toolButton_sound"), 0);
    QVERIFY(!pVolume->isEnabled());
}

void TestControlBar::stoppedAndSliderSetters()
{
    CLS_WgtPlayerControlBar bar;
    auto* pPlay = Child<QSlider>(bar, "slider_Play");
    auto* pVolume = Child<QSlider>(bar, "horizontalSlider_sound");
    QVERIFY(bar.IsVideoStopped());

    bar.SetSoundValue(101);
    QCOMPARE(pVolume->value(), 0);
    bar.SetSoundState(true);
    bar.SetSoundValue(40);
    QCOMPARE(pVolume->value(), 40);
    bar.SetPlaySliderValueChecked(101);
    bar.SetPlaySliderValueChecked(-1);
    QCOMPARE(pPlay->value(), 0);
    bar.SetPlaySliderValueChecked(35);
    QCOMPARE(pPlay->value(), 35);
    bar.SetTotalTime(100);
    bar.SetCurrentTime(35);

    bar.SetVideoStopped(false);
    QVERIFY(!bar.IsVideoStopped());
    QCOMPARE(State(bar, "toolButton_play"), 1);
    QCOMPARE(pPlay->value(), 35);
    QCOMPARE(pVolume->value(), 40);

    bar.SetVideoStopped(true);
    QVERIFY(bar.IsVideoStopped());
    QCOMPARE(pPlay->value(), 0);
    QCOMPARE(pVolume->value(), 0);
    QCOMPARE(Child<QLabel>(bar, "label_videoTime")->text(), QStringLiteral("00:00:00/00:01:40"));
    // The icons wait for the player; the flags are already cleared.
    QCOMPARE(State(bar, "toolButton_play"), 1);
    QCOMPARE(State(bar, "toolButton_sound"), 1);
    bar.RefreshButtonStates();
    QCOMPARE(State(bar, "toolButton_play"), 0);
    QCOMPARE(State(bar, "toolButton_sound"), 0);
    QVERIFY(!pVolume->isEnabled());

    bar.SetPlaySliderValue(150);  // unchecked: the slider itself clamps
    QCOMPARE(pPlay->value(), 100);
}

namespace {

QString ReadAll(const QString& _qstrPath)
{
    QFile file(_qstrPath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The skin as the player installs it: the shared files and the dialog's own
// sheet on the dialog, the module sheet on the player window that holds the bar.
struct SkinnedBar
{
    QWidget dialog;
    QWidget* pWindow;
    CLS_WgtPlayerControlBar* pBar;

    explicit SkinnedBar(const QString& _qstrSkinDir)
    {
        QString qstrShared;
        const QDir dirCommon(_qstrSkinDir + QStringLiteral("/Common"));
        for (const QString& qstrEntry : dirCommon.entryList(QDir::Files))
            qstrShared += ReadAll(dirCommon.filePath(qstrEntry));
        const QString qstrQss = _qstrSkinDir + QStringLiteral("/ModuleKoPlayer/qss/");
        dialog.setObjectName(QStringLiteral("DlgQuillPlayer"));
        dialog.setStyleSheet(qstrShared +
                             ReadAll(qstrQss + QStringLiteral("CLS_DlgQuillPlayer.qss")));
        auto* pLayout = new QVBoxLayout(&dialog);
        pLayout->setContentsMargins(0, 0, 0, 0);
        pWindow = new QWidget(&dialog);
        pWindow->setObjectName(QStringLiteral("mainwindow"));
        pWindow->setStyleSheet(ReadAll(qstrQss + QStringLiteral("ModuleKoPlayer.qss")));
        pLayout->addWidget(pWindow);
        auto* pWindowLayout = new QVBoxLayout(pWindow);
        pWindowLayout->setContentsMargins(0, 0, 0, 0);
        pBar = new CLS_WgtPlayerControlBar(pWindow);
        pBar->setObjectName(QStringLiteral("WgtControlBar"));
        pWindowLayout->addWidget(pBar);
        dialog.resize(960, 84);
    }
};

}  // namespace

void TestControlBar::rendersInEachSkin_data()
{
    QTest::addColumn<QString>("skin");
    QTest::newRow("dark") << "dark";
    QTest::newRow("light") << "light";
}

void TestControlBar::rendersInEachSkin()
{
    QFETCH(QString, skin);
    const QString qstrSkinDir = QStringLiteral("./resource/skin/") + skin;
    QVERIFY2(QFile::exists(qstrSkinDir + QStringLiteral("/ModuleKoPlayer/qss/ModuleKoPlayer.qss")),
             qPrintable(skin));

    // The speed list's colours come from the active skin's palette.
    QVERIFY(KoService::SetParam("SystemConfig", "skin", skin.toStdString()));
    SkinnedBar skinned(qstrSkinDir);
    CLS_WgtPlayerControlBar& bar = *skinned.pBar;
    skinned.dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&skinned.dialog));
    bar.SetTotalTime(3725);
    bar.SetCurrentTime(1337);
    bar.SetPlaySliderValue(36);
    bar.SetSpeedIndex(4);

    // The skin, not the code, turns a state into an icon: each state must look
    // different, or the user cannot tell play from pause.
    for (const char* pName : {"toolButton_play", "toolButton_sound"}) {
        auto* pButton = Child<CLS_PlayerToolButton>(bar, pName);
        pButton->SetState(0);
        const QImage imgOff = pButton->grab().toImage();
        pButton->SetState(1);
        QVERIFY2(pButton->grab().toImage() != imgOff, pName);
    }
    bar.SetPlayState(true);
    bar.SetSoundState(true);

    const QImage imgBar = skinned.dialog.grab().toImage();

    // The speed list is painted in the skin's own colours.
    auto* pCombo = Child<QComboBox>(bar, "comboBox_speedinfo");
    pCombo->showPopup();
    QWidget* pList = pCombo->view()->window();
    QTRY_VERIFY(pList->isVisible());
    const QImage imgList = pList->grab().toImage();
    const QRect qrcFirst = pCombo->view()
                               ->visualRect(pCombo->model()->index(0, 0))
                               .translated(pCombo->view()->viewport()->mapTo(pList, QPoint(0, 0)));
    const QColor fill(
        QString::fromStdString(KoService::GetNamedColor("Common", "<BgColor_Common>")));
    QVERIFY(fill.isValid());
    QCOMPARE(imgList.pixelColor(qrcFirst.left() + 3, qrcFirst.center().y()), fill);

    const QByteArray qbaDir = qgetenv("QUILL_RENDER_DIR");
    if (!qbaDir.isEmpty()) {
        const QString qstrDir = QString::fromLocal8Bit(qbaDir);
        QVERIFY(imgBar.save(qstrDir + "/controlbar_" + skin + ".png"));
        QVERIFY(imgList.save(qstrDir + "/speedlist_" + skin + ".png"));
        qInfo("rendered into %s", qPrintable(qstrDir));
    }
    pCombo->hidePopup();
}

QTEST_MAIN(TestControlBar)
#include "tst_controlbar.moc"
