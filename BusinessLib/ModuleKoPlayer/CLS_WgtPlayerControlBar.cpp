#include "CLS_WgtPlayerControlBar.h"

#include "CLS_Player7ListItemDelegate.h"
#include "KoServices.h"
#include "ModuleKeys.h"
#include "ModuleKoPlayerLog.h"
#include "ui_CLS_WgtPlayerControlBar.h"

#include <QListView>
#include <QSignalBlocker>
#include <QStandardItemModel>

namespace {

constexpr int kNormalSpeedIndex = 4;
constexpr int kLastSpeedIndex = 8;
constexpr int kSpeedItemSize = 30;

// Entries 0..8 are the speeds; the tenth is deliberately empty and is never a
// speed (the delegate draws it as a small marker).
const char* const kSpeedLabels[] = {"1/16X", "1/8X", "1/4X", "1/2X", "1X",
                                    "2X",    "4X",   "8X",   "16X",  ""};

int SoundParam(const char* _pKey, const char* _pDefault)
{
    std::string strValue = KoService::GetParam(kModuleKoPlayerCode, _pKey, _pDefault);
    // An absent parameter service answers "", which must still mean the default.
    if (strValue.empty()) strValue = _pDefault;
    return QString::fromStdString(strValue).trimmed().toInt(nullptr, 10);
}

}  // namespace

CLS_WgtPlayerControlBar::CLS_WgtPlayerControlBar(QWidget* _pParent)
    : QWidget(_pParent), ui(new Ui::CLS_WgtPlayerControlBar)
{
    ui->setupUi(this);
    InitSpeedList();
    MakeConnections();
    SetCurrentTime(0);
}

CLS_WgtPlayerControlBar::~CLS_WgtPlayerControlBar()
{
    // The list view holds the delegate by a guarded pointer, so deleting it
    // before the view goes with the combo box is safe.
    delete m_pItemDelegate;
    delete ui;
}

void CLS_WgtPlayerControlBar::InitSpeedList()
{
    QComboBox* pCombo = ui->comboBox_speedinfo;
    for (const char* pLabel : kSpeedLabels)
        pCombo->addItem(QString::fromLatin1(pLabel));

    QAbstractItemModel* pModel = pCombo->model();
    for (int iRow = 0; iRow < pModel->rowCount(); ++iRow) {
        const QModelIndex index = pModel->index(iRow, pCombo->modelColumn());
        pModel->setData(index, int(Qt::AlignHCenter | Qt::AlignVCenter), Qt::TextAlignmentRole);
        pModel->setData(index, pModel->data(index, Qt::DisplayRole),
                        CLS_Player7ListItemDelegate::kTextRole);
        pModel->setData(index, QSize(kSpeedItemSize, kSpeedItemSize), Qt::SizeHintRole);
    }

    m_pItemDelegate = new CLS_Player7ListItemDelegate();
    auto* pView = new QListView();
    pCombo->setView(pView);
    pView->setItemDelegate(m_pItemDelegate);
    pCombo->setCurrentIndex(kNormalSpeedIndex);
}

void CLS_WgtPlayerControlBar::MakeConnections()
{
    using Bar = CLS_WgtPlayerControlBar;
    connect(ui->toolButton_stepback, &QAbstractButton::clicked, this, &Bar::SignStepBack);
    connect(ui->toolButton_slowplay, &QAbstractButton::clicked, this, &Bar::SignSlowPlay);
    connect(ui->toolButton_play, &QAbstractButton::clicked, this, &Bar::SignVideoPlayOrPause);
    connect(ui->toolButton_stop, &QAbstractButton::clicked, this, &Bar::SignStop);
    connect(ui->toolButton_fastplay, &QAbstractButton::clicked, this, &Bar::SignFastPlay);
    connect(ui->toolButton_stepup, &QAbstractButton::clicked, this, &Bar::SignStepUp);
    connect(ui->toolButton_full, &QAbstractButton::clicked, this, &Bar::SignFullScreen);
    connect(ui->toolButton_sound, &QAbstractButton::clicked, this, &Bar::SignSoundOpenOrClose);
    connect(ui->toolButton_histroytable, &QAbstractButton::clicked, this, &Bar::SignShowHistroyLog);
    connect(ui->pushButton_openfile, &QAbstractButton::clicked, this, &Bar::SignOpenVideoFile);

    connect(ui->slider_Play, &QSlider::sliderMoved, this, &Bar::SignSliderMoved);
    connect(ui->slider_Play, &CLS_WgtPlayerSlider::SliderClick, this, &Bar::SignSliderClicked);
    connect(ui->slider_Play, &QSlider::valueChanged, this, &Bar::SignSliderValueChanged);
    connect(ui->horizontalSlider_sound, &QSlider::sliderMoved, this, &Bar::SignSoundSliderMoved);
    connect(ui->horizontalSlider_sound, &CLS_WgtPlayerSlider::SliderClick, this,
            &Bar::SignSoundSliderPressed);
    connect(ui->horizontalSlider_sound, &QSlider::valueChanged, this,
            &Bar::SignSoundSliderValueChanged);

    connect(ui->comboBox_speedinfo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &Bar::SlotDealComIndexChange, Qt::UniqueConnection);
}

void CLS_WgtPlayerControlBar::SlotDealComIndexChange(int _iValue)
{
    // Signed on purpose: the -1 of a cleared list is passed on like a speed.
    if (_iValue <= kLastSpeedIndex) {
        emit SignSpeedChange(_iValue);
        return;
    }
    // The empty entry is no speed: show the last one again and tell nobody.
    const QSignalBlocker blocker(ui->comboBox_speedinfo);
    ui->comboBox_speedinfo->setCurrentIndex(m_iSpeedIndex);
}

void CLS_WgtPlayerControlBar::RefreshSound()
{
    ui->toolButton_sound->SetState(m_blSoundOpen ? 1 : 0);
    ui->horizontalSlider_sound->setEnabled(m_blSoundOpen);
}

void CLS_WgtPlayerControlBar::SetPlayState(bool _blPlaying)
{
    m_blPlaying = _blPlaying;
    ui->toolButton_play->SetState(_blPlaying ? 1 : 0);
    RefreshSound();
}

void CLS_WgtPlayerControlBar::SetSoundState(bool _blOpen)
{
    m_blSoundOpen = _blOpen;
    ui->toolButton_play->SetState(m_blPlaying ? 1 : 0);
    RefreshSound();
}

void CLS_WgtPlayerControlBar::RefreshButtonStates()
{
    ui->toolButton_play->SetState(m_blPlaying ? 1 : 0);
    RefreshSound();
}

void CLS_WgtPlayerControlBar::SetVideoStopped(bool _blStopped)
{
    m_blReady = _blStopped;
    if (!_blStopped) {
        m_blPlaying = true;
        ui->toolButton_play->SetState(1);
        return;
    }
    // The icons stay as they are: the player window sets them itself after a
    // stop, and flipping them here would flicker.
    ui->slider_Play->setValue(0);
    ui->horizontalSlider_sound->setValue(0);
    m_blPlaying = false;
    m_blSoundOpen = false;
    SetCurrentTime(0);
}

void CLS_WgtPlayerControlBar::SetSpeedIndex(int _iIndex)
{
    if (_iIndex < 0) return;
    m_iSpeedIndex = _iIndex;
    {
        // Mirroring the player's speed is not a user's choice of one.
        const QSignalBlocker blocker(ui->comboBox_speedinfo);
        ui->comboBox_speedinfo->setCurrentIndex(_iIndex);
    }

    // The engine plays sound at normal speed only, so the volume is only
    // offered there, as the user last left it.
    if (_iIndex == kNormalSpeedIndex) {
        const int iOpenSound = SoundParam(ModuleKeys::kOpenSound, "1");
        const int iSoundSet = SoundParam(ModuleKeys::kSoundSet, "50");
        ui->horizontalSlider_sound->setValue(iSoundSet);
        ui->toolButton_sound->SetState(iOpenSound);
        ui->horizontalSlider_sound->setEnabled(iOpenSound != 0);
    } else {
        ui->horizontalSlider_sound->setValue(0);
        ui->toolButton_sound->SetState(0);
        ui->horizontalSlider_sound->setEnabled(false);
    }
}

QString CLS_WgtPlayerControlBar::TimeText(int _iSeconds)
{
    const int iHours = _iSeconds / 3600;
    const int iMinutes = (_iSeconds / 60) % 60;
    const int iSeconds = _iSeconds - 60 * (_iSeconds / 60);
    const QLatin1Char qchZero('0');
    return QStringLiteral("%1:%2:%3")
        .arg(iHours, 2, 10, qchZero)
        .arg(iMinutes, 2, 10, qchZero)
        .arg(iSeconds, 2, 10, qchZero);
}

void CLS_WgtPlayerControlBar::SetTotalTime(int _iSeconds)
{
    if (_iSeconds < 0) return;
    m_iTotalTime = _iSeconds;
    // Shown with the next current time, so the two never disagree on screen.
    m_qstrTotalTime = TimeText(_iSeconds);
}

void CLS_WgtPlayerControlBar::SetCurrentTime(int _iSeconds)
{
    if (_iSeconds < 0 || _iSeconds > m_iTotalTime) return;
    m_iCurrentTime = _iSeconds;
    if (m_qstrTotalTime.isEmpty()) m_qstrTotalTime = TimeText(0);
    ui->label_videoTime->setText(m_qstrRecordedTime.isEmpty()
                                     ? TimeText(_iSeconds) + QLatin1Char('/') + m_qstrTotalTime
                                     : m_qstrRecordedTime);
}

void CLS_WgtPlayerControlBar::SetRecordedTime(const QString& _qstrText)
{
    if (_qstrText == m_qstrRecordedTime) return;
    m_qstrRecordedTime = _qstrText;
    SetCurrentTime(m_iCurrentTime);
}

void CLS_WgtPlayerControlBar::SetPlaySliderValue(int _iValue)
{
    ui->slider_Play->setValue(_iValue);
}

void CLS_WgtPlayerControlBar::SetPlaySliderValueChecked(int _iValue)
{
    if (_iValue < 0 || _iValue > ui->slider_Play->maximum()) return;
    ui->slider_Play->setValue(_iValue);
}

void CLS_WgtPlayerControlBar::SetSoundValue(int _iValue)
{
    if (_iValue < 0 || _iValue > ui->horizontalSlider_sound->maximum()) return;
    ui->horizontalSlider_sound->setValue(_iValue);
    RefreshButtonStates();
}

int CLS_WgtPlayerControlBar::GetPlaySliderMaximum() const
{
    return ui->slider_Play->maximum();
}

int CLS_WgtPlayerControlBar::GetSoundSliderMaximum() const
{
    return ui->horizontalSlider_sound->maximum();
}

void CLS_WgtPlayerControlBar::SetPlaySliderEnabled(bool _blEnabled)
{
    ui->slider_Play->setEnabled(_blEnabled);
}

void CLS_WgtPlayerControlBar::SetSoundSliderEnabled(bool _blEnabled)
{
    ui->horizontalSlider_sound->setEnabled(_blEnabled);
}

void CLS_WgtPlayerControlBar::SetPlaybackControlsEnabled(bool _blEnabled)
{
    for (QWidget* pControl :
         {static_cast<QWidget*>(ui->toolButton_stepback), static_cast<QWidget*>(ui->toolButton_slowplay),
          static_cast<QWidget*>(ui->toolButton_stop), static_cast<QWidget*>(ui->toolButton_fastplay),
          static_cast<QWidget*>(ui->toolButton_stepup), static_cast<QWidget*>(ui->toolButton_sound),
          static_cast<QWidget*>(ui->comboBox_speedinfo),
          static_cast<QWidget*>(ui->slider_Play)})
        pControl->setEnabled(_blEnabled);
}

void CLS_WgtPlayerControlBar::SetExceptionInfo(const QString& _qstrInfo)
{
    ui->label_exceptionInfo->setText(_qstrInfo);
}
