#include "MainWindow.h"

#include "CLS_ClipCutController.h"
#include "CLS_GLWgtLibLoader.h"
#include "CLS_MsgBoxRequest.h"
#include "CLS_VideoAreaTools.h"
#include "CLS_VideoContextMenu.h"
#include "CLS_VideoPlayControl.h"
#include "CLS_WgtHistroyList.h"
#include "CLS_WgtPlayerControlBar.h"
#include "CLS_WgtPlayerSlider.h"
#include "FixedSkinFile.h"
#include "I_AppSignals.h"
#include "KoServices.h"
#include "ModuleKeys.h"
#include "ModuleKoPlayerLog.h"
#include "ui_MainWindow.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMimeData>
#include <QPointer>
#include <QUrl>

#include <cmath>
#include <cstdlib>

namespace {

constexpr int kNormalSpeedIndex = 4;
constexpr int kMaxSpeedIndex = 8;
constexpr int kProgressIntervalMs = 1000;
constexpr int kEventPlayOver = 81;
constexpr int kEventPasswordNeeded = 55;
constexpr int kEventWrongPassword = 56;
constexpr int kFileTypeSdv = 2;
constexpr int kHistroyListWidth = 200;
constexpr int kDefaultVolume = 50;

const char* const kSystemConfig = "SystemConfig";
const char* const kRenderingType = "RenderingType";

// Exact, case-sensitive: "clip.MP4" is not an mp4 here.
int FileTypeIndex(const QString& _qstrSuffix)
{
    static const char* const s_arrSuffixes[] = {"mp4", "avi", "sdv", "ps"};
    for (int i = 0; i < 4; ++i)
        if (_qstrSuffix == QLatin1String(s_arrSuffixes[i])) return i;
    return 4;
}

// A module parameter, or its default when the parameter library has no answer.
QString ModuleParam(const char* _pKey, const char* _pDefault)
{
    const std::string strValue = KoService::GetParam(kModuleKoPlayerCode, _pKey, _pDefault);
    return QString::fromStdString(strValue.empty() ? std::string(_pDefault) : strValue);
}

void SetModuleParam(const char* _pKey, const QString& _qstrValue)
{
    KoService::SetParam(kModuleKoPlayerCode, _pKey, _qstrValue.toStdString());
}

// Deliberately without a fallback: only an explicit "0" gives the render
// widget, so a missing parameter library gives the native window.
bool IsGLRendering()
{
    return KoService::GetParam(kSystemConfig, kRenderingType, "0") == "0";
}

}  // namespace

MainWindow::MainWindow(QWidget* _pParent) : QMainWindow(_pParent), ui(new Ui::MainWindow)
{
    ui->setupUi(this);
    m_pControlBar = new CLS_WgtPlayerControlBar(ui->centralWidget);
    m_pControlBar->setObjectName(QStringLiteral("WgtControlBar"));
    ui->verticalLayout_4->addWidget(m_pControlBar);
    m_pHistroyList = new CLS_WgtHistroyList(ui->centralWidget);
    m_pHistroyList->hide();
    ui->openGLWgt->installEventFilter(this);
    m_iSliderMin = 0;
    m_iSliderMax = m_pControlBar->GetPlaySliderMaximum();
    m_pControlBar->SetPlaybackControlsEnabled(!m_blNoFile);
    setAcceptDrops(true);

    LoadStyleSheet();
    CreateRenderSurface();
    m_pContextMenu = new CLS_VideoContextMenu(ui->openGLWgt);
    m_pAreaTools = new CLS_VideoAreaTools(
        ui->openGLWgt, m_pContextMenu, m_pControlBar, [this] { return m_pVideoPlayControl; },
        [this] { return m_qstrFilePath; });

    m_pProgressTimer = new QTimer(this);
    setObjectName(QStringLiteral("mainwindow"));
    connect(m_pProgressTimer, &QTimer::timeout, this, &MainWindow::SlotGetPlayProgress);
    connect(this, &MainWindow::SignNormalSpeed, this, &MainWindow::SlotSetNormalSpeed);
    setWindowTitle(QStringLiteral("Player"));
    MakeConnections();

    // Cut marks and the clip export: shortcuts on this window, entries in
    // the video area's context menu, notices in the control bar.
    m_pClipCut = new CLS_ClipCutController(
        this, m_pControlBar->findChild<CLS_WgtPlayerSlider*>(QStringLiteral("slider_Play")),
        [this](int& _iPlayed) {
            return m_pVideoPlayControl && m_pVideoPlayControl->GetPlayedTime(_iPlayed);
        },
        this);
    m_pClipCut->AttachContextMenu(m_pContextMenu, ui->openGLWgt);
    connect(m_pClipCut, &CLS_ClipCutController::SignNotice, m_pControlBar,
            &CLS_WgtPlayerControlBar::SetExceptionInfo);
}

MainWindow::~MainWindow()
{
    if (m_pVideoPlayControl && !m_blNoFile) m_pVideoPlayControl->Stop();
    delete m_pVideoPlayControl;
    m_pVideoPlayControl = nullptr;
    delete m_pHistroyList;
    m_pHistroyList = nullptr;
    // Asked for either kind of surface: the library leaves alone a widget it
    // did not make.
    CLS_GLWgtLibLoader::ReleaseGLWgt(m_pRenderWgt);
    m_pProgressTimer->disconnect();
    delete ui;
}

void MainWindow::LoadStyleSheet()
{
    const QString qstrPath = FixedSkinFilePath(QStringLiteral("ModuleKoPlayer.qss"));
    if (!SetStyleSheetFromFile(this, qstrPath))
        PLAYER_LOG(3) << "COMMON_PLATFORM_WIN SetStyleSheetByFile Loading Failed,Path = " << qstrPath;
}

void MainWindow::CreateRenderSurface()
{
    m_blGLRendering = IsGLRendering();
    m_pRenderWgt = m_blGLRendering ? CLS_GLWgtLibLoader::CreateGLWgt() : nullptr;
    // Without the render library (already logged by the loader) the video
    // goes to a plain widget, as when the plain surface was chosen.
    if (!m_pRenderWgt) {
        m_blGLRendering = false;
        m_pRenderWgt = new QWidget(this);
    }
    auto* pLayout = new QHBoxLayout();
    pLayout->setSpacing(0);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pRenderWgt);
    ui->openGLWgt->setLayout(pLayout);
}

void MainWindow::MakeConnections()
{
    using Bar = CLS_WgtPlayerControlBar;
    connect(m_pControlBar, &Bar::SignShowHistroyLog, this, &MainWindow::SlotShowHistroyLog);
    connect(m_pControlBar, &Bar::SignFullScreen, this, &MainWindow::SlotFullScreen);
    connect(m_pControlBar, &Bar::SignStepBack, this, &MainWindow::SlotStepBack);
    connect(m_pControlBar, &Bar::SignStepUp, this, &MainWindow::SlotStepUp);
    connect(m_pControlBar, &Bar::SignSlowPlay, this, &MainWindow::SlotSlowPlay);
    connect(m_pControlBar, &Bar::SignFastPlay, this, &MainWindow::SlotFastPlay);
    connect(m_pControlBar, &Bar::SignVideoPlayOrPause, this, &MainWindow::SlotVideoPlayOrPause);
    connect(m_pControlBar, &Bar::SignStop, this, &MainWindow::SlotStopVideoEx);
    connect(m_pControlBar, &Bar::SignSliderMoved, this, &MainWindow::SlotPlayProgresChanged);
    connect(m_pControlBar, &Bar::SignSliderClicked, this, &MainWindow::SlotSliderClicked);
    connect(m_pControlBar, &Bar::SignSliderValueChanged, this, &MainWindow::SlotSliderValueChanged);
    connect(m_pControlBar, &Bar::SignSoundOpenOrClose, this, &MainWindow::SlotOpenOrCloseSound);
    connect(m_pControlBar, &Bar::SignSoundSliderMoved, this, &MainWindow::SlotSoundSliderMoved);
    connect(m_pControlBar, &Bar::SignSoundSliderPressed, this, &MainWindow::SlotSoundSliderPressed);
    connect(m_pControlBar, &Bar::SignSoundSliderValueChanged, this,
            &MainWindow::SlotSoundValueChange);
    connect(m_pControlBar, &Bar::SignSpeedChange, this, &MainWindow::SlotSpeedChange);
    connect(m_pControlBar, &Bar::SignOpenVideoFile, this, &MainWindow::SlotOpenFile);

    connect(m_pHistroyList, &CLS_WgtHistroyList::SignContinuePlay, this,
            &MainWindow::SlotContinuePlay);
    connect(m_pHistroyList, &CLS_WgtHistroyList::SignHideHistrouListWgt, this, [this]() {
        m_pHistroyList->hide();
        m_blHistroyListVisible = false;
    });
    if (I_AppSignals* pAppSignals = KoService::GetAppSignals())
        connect(pAppSignals, &I_AppSignals::SignSoundStateChanged, this,
                &MainWindow::SlotAppSoundStateChanged, Qt::UniqueConnection);
}

void MainWindow::DisconnectControl()
{
    disconnect(m_pVideoPlayControl, &CLS_VideoPlayControl::SignPlaybackDecryptCallback, this,
               &MainWindow::SlotPlayBackDecryptCallBack);
    disconnect(m_pVideoPlayControl, &CLS_VideoPlayControl::SignDealVideoHostPlayOver, this,
               &MainWindow::SlotDealVideoHostPlayOver);
    disconnect(this, &MainWindow::SignSetVideoDecryptKey, m_pVideoPlayControl,
               &CLS_VideoPlayControl::SlotSetVideoDecryptKey);
}

qlonglong MainWindow::RenderHandle()
{
    if (m_blGLRendering) return static_cast<qlonglong>(reinterpret_cast<quintptr>(m_pRenderWgt));
    return m_pRenderWgt ? static_cast<qlonglong>(m_pRenderWgt->winId()) : 0;
}

// ---- open, play, stop -------------------------------------------------------

void MainWindow::SlotOpenFile()
{
    if (m_qstrLastDir.isEmpty()) m_qstrLastDir = QCoreApplication::applicationDirPath();
    const QString qstrPath = QFileDialog::getOpenFileName(
        this, tr("lab_open_video"), m_qstrLastDir,
        tr("lab_video_format") + QStringLiteral("(*.mp4 *.sdv *.avi *.ps)"));
    if (qstrPath.isEmpty()) return;
    m_qstrLastDir = QFileInfo(qstrPath).absolutePath();
    QMetaObject::invokeMethod(this, "SlotContinuePlay", Q_ARG(QString, qstrPath), Q_ARG(long, 0));
}

void MainWindow::dragEnterEvent(QDragEnterEvent* _pEvent)
{
    _pEvent->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* _pEvent)
{
    const QMimeData* pMimeData = _pEvent->mimeData();
    if (!pMimeData || !pMimeData->hasUrls() || pMimeData->urls().isEmpty()) return;
    const QString qstrPath = pMimeData->urls().first().toLocalFile();
    if (!qstrPath.isEmpty()) SlotContinuePlay(qstrPath, 0);
}

void MainWindow::SlotContinuePlay(QString _qstrFilePath, long _lStartTime)
{
    if (!m_pControlBar) return;
    if (_qstrFilePath.isEmpty()) {
        m_pControlBar->SetExceptionInfo(tr("msg_path_not_exist"));
        return;
    }
    const QFileInfo fileInfo(_qstrFilePath);
    if (!fileInfo.exists() || fileInfo.isDir()) return;

    m_iFileType = FileTypeIndex(fileInfo.suffix());
    m_pControlBar->SetExceptionInfo(QString());

    if (m_pVideoPlayControl) SlotStopVideo(false);
    m_qstrFilePath = _qstrFilePath;
    m_pVideoPlayControl = new CLS_VideoPlayControl();
    m_iPendingSeek = 0;

    connect(m_pVideoPlayControl, &CLS_VideoPlayControl::SignPlaybackDecryptCallback, this,
            &MainWindow::SlotPlayBackDecryptCallBack);
    connect(m_pVideoPlayControl, &CLS_VideoPlayControl::SignDealVideoHostPlayOver, this,
            &MainWindow::SlotDealVideoHostPlayOver);
    connect(this, &MainWindow::SignSetVideoDecryptKey, m_pVideoPlayControl,
            &CLS_VideoPlayControl::SlotSetVideoDecryptKey);

    if (!m_pVideoPlayControl->OpenAndPlay(RenderHandle(), _qstrFilePath)) {
        delete m_pVideoPlayControl;
        m_pVideoPlayControl = nullptr;
        ShowNotice(tr("msg_failed_play_video"));
        return;
    }

    int iTotalTime = -1;
    if (!m_pVideoPlayControl->GetTotalTime(iTotalTime) || iTotalTime < 0) {
        SlotStopVideo(false);
        m_pControlBar->SetExceptionInfo(tr("lab_error_getvideotime"));
        return;
    }
    m_iTotalTime = iTotalTime;

    int iStartTime = static_cast<int>(_lStartTime);
    if (_lStartTime >= 0 && _lStartTime <= iTotalTime) {
        m_pControlBar->SetExceptionInfo(QString());
    } else {
        m_pControlBar->SetExceptionInfo(tr("msg_setting_time_error"));
        iStartTime = 0;
    }
    m_iPlayedTime = iStartTime;

    m_iSpeedIndex = kNormalSpeedIndex;
    m_pProgressTimer->start(kProgressIntervalMs);
    m_blPlaying = true;
    m_blResume = false;
    m_blNoFile = false;
    m_blStepMode = false;

    const QString qstrFileName = fileInfo.fileName();
    const int iDot = qstrFileName.lastIndexOf(QLatin1Char('.'));
    ui->label_videoname->setText(iDot < 0 ? qstrFileName : qstrFileName.left(iDot));
    m_pControlBar->SetTotalTime(iTotalTime);
    m_pClipCut->SetFile(_qstrFilePath, iTotalTime);

    // A total of 0 (a file too short to count) has nothing to seek into.
    m_iPendingSeek = iTotalTime > 0
                         ? static_cast<int>(std::ceil(static_cast<double>(iStartTime) / iTotalTime * 100))
                         : 0;
    m_pControlBar->SetPlaySliderValue(m_iPendingSeek);
    m_pControlBar->SetPlaybackControlsEnabled(true);
    RefreshDisplay();

    m_pHistroyList->AddHistroy(_qstrFilePath, iStartTime);
    ApplySoundSettings();
    m_pAreaTools->PlaybackChanged();
    if (!m_blGLRendering && m_pRenderWgt) m_pRenderWgt->setUpdatesEnabled(false);
}

void MainWindow::SlotVideoPlayOrPause()
{
    if (m_qstrFilePath.isEmpty() && m_blNoFile) {
        const QString qstrPath = m_pHistroyList ? m_pHistroyList->CurrentHistroyPath() : QString();
        if (!qstrPath.isEmpty()) SlotContinuePlay(qstrPath, 0);
        return;
    }
    if (!m_pVideoPlayControl) return;
    const bool blChanged = m_pVideoPlayControl->Pause(m_blPlaying);
    if (blChanged) m_iSpeedIndex = kNormalSpeedIndex;
    if (m_blPlaying)
        m_pProgressTimer->stop();
    else
        m_pProgressTimer->start(kProgressIntervalMs);
    m_blPlaying = !m_blPlaying;
    if (blChanged) RefreshDisplay();
}

void MainWindow::SlotDealVideoHostPlayOver(int _iPlayStype, qlonglong)
{
    if (_iPlayStype == kEventPlayOver && m_pVideoPlayControl) SlotStopVideo(true);
}

void MainWindow::SlotStopVideo()
{
    SlotStopVideo(false);
}

void MainWindow::SlotStopVideoEx()
{
    SlotStopVideo(false);
}

void MainWindow::SlotStopVideo(bool _blIsVideoEnd)
{
    if (m_pVideoPlayControl) {
        // The last tick may be up to a second old; the history gets the picture
        // on screen. Before the first tick the start position still stands.
        int iPlayedTime = 0;
        if (!_blIsVideoEnd && m_iPendingSeek == 0 && m_iTotalTime > 0 &&
            m_pVideoPlayControl->GetPlayedTime(iPlayedTime) && iPlayedTime >= 0)
            m_iPlayedTime = iPlayedTime;
        DisconnectControl();
        if (!m_pVideoPlayControl->Stop()) PLAYER_LOG(3) << "MainWindow::SlotStopVideo Video Stoped Error";
        delete m_pVideoPlayControl;
        m_pVideoPlayControl = nullptr;
        if (!m_blGLRendering && m_pRenderWgt) m_pRenderWgt->setUpdatesEnabled(true);
    }
    m_pProgressTimer->stop();

    if (m_pHistroyList) {
        int iPosition = 0;
        if (!_blIsVideoEnd && m_iPlayedTime < m_iTotalTime) iPosition = m_iPlayedTime;
        m_pHistroyList->AddHistroy(m_qstrFilePath, iPosition);
    }

    m_qstrFilePath.clear();
    m_iTotalTime = 0;
    m_iPlayedTime = 0;
    m_iPendingSeek = 0;
    m_blPlaying = false;
    m_blSoundOpen = false;
    m_blStepMode = false;
    m_blNoFile = true;
    m_iSpeedIndex = kNormalSpeedIndex;
    ui->label_videoname->setText(QStringLiteral(" "));
    m_pControlBar->SetPlaybackControlsEnabled(false);
    m_pAreaTools->PlaybackChanged();
    RefreshDisplay();
}

void MainWindow::SlotCloseApp()
{
    // Only while playing: a paused playback is closed by the destructor.
    if (m_blPlaying) SlotStopVideo(false);
    if (m_blHistroyListVisible) SlotShowHistroyLog();
    PublishSoundState(false);
    emit SignDealCloseApp();
}

void MainWindow::SlotFullScreen()
{
    emit SignFullScreen();
}

void MainWindow::SlotShowHistroyLog()
{
    if (!m_pHistroyList) return;
    m_blHistroyListVisible = !m_blHistroyListVisible;
    if (!m_blHistroyListVisible) {
        m_pHistroyList->hide();
        return;
    }
    PlaceHistroyList();
    m_pHistroyList->show();
    m_pHistroyList->raise();
}

void MainWindow::PlaceHistroyList()
{
    const QRect rectVideo = ui->openGLWgt->geometry();
    m_pHistroyList->setGeometry(rectVideo.x() + rectVideo.width() - kHistroyListWidth, rectVideo.y(),
                                m_pHistroyList->width(), rectVideo.height());
}

bool MainWindow::eventFilter(QObject* _pWatched, QEvent* _pEvent)
{
    if (_pWatched != ui->openGLWgt) return QMainWindow::eventFilter(_pWatched, _pEvent);
    switch (_pEvent->type()) {
        case QEvent::MouseButtonDblClick:
            emit SignFullScreen();
            return true;
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(_pEvent)->key() != Qt::Key_Escape) break;
            if (m_blFullScreen) emit SignFullScreen();
            return true;
        case QEvent::Resize:
            if (!m_blHistroyListVisible) break;
            PlaceHistroyList();
            return true;
        case QEvent::WindowDeactivate:
            if (!m_blFullScreen) break;
            // A full-screen video window that loses activation would drop
            // under the dialog; keep it in front.
            if (QWidget* pWindow = ui->openGLWgt->window())
                pWindow->setWindowState(pWindow->windowState() | Qt::WindowActive);
            break;
        default:
            break;
    }
    return QMainWindow::eventFilter(_pWatched, _pEvent);
}

void MainWindow::ShowNotice(const QString& _qstrContent)
{
    CLS_MsgBoxRequest::ST_Request stRequest;
    stRequest.qstrTitle = tr("lab_notice");
    stRequest.qstrContent = _qstrContent;
    CLS_MsgBoxRequest::Show(stRequest);
}

void MainWindow::RefreshDisplay()
{
    if (!m_pControlBar) return;
    m_pControlBar->SetVideoStopped(m_blNoFile);
    m_pControlBar->SetPlayState(m_blPlaying);
    m_pControlBar->SetSoundState(m_blSoundOpen);
    m_pControlBar->SetTotalTime(m_iTotalTime);
    m_pControlBar->SetCurrentTime(m_iPlayedTime);
    m_pControlBar->SetSpeedIndex(m_iSpeedIndex);
}

// ---- speed, stepping, progress ---------------------------------------------

void MainWindow::ResumeIfPaused()
{
    if (!m_blPlaying && !m_blNoFile) SlotVideoPlayOrPause();
}

void MainWindow::SlotFastPlay()
{
    if (!m_pVideoPlayControl) return;
    ResumeIfPaused();
    if (m_pVideoPlayControl->Fast() != 0) return;
    if (m_iSpeedIndex < kMaxSpeedIndex) ++m_iSpeedIndex;
    RefreshDisplay();
}

void MainWindow::SlotSlowPlay()
{
    if (!m_pVideoPlayControl) return;
    ResumeIfPaused();
    if (m_pVideoPlayControl->Slow() != 0) return;
    if (m_iSpeedIndex > 0) --m_iSpeedIndex;
    RefreshDisplay();
}

void MainWindow::SlotSpeedChange(int _iIndex)
{
    if (_iIndex == m_iSpeedIndex) return;
    const bool blFaster = _iIndex > m_iSpeedIndex;
    const int iSteps = std::abs(_iIndex - m_iSpeedIndex);
    for (int i = 0; i < iSteps && m_pVideoPlayControl; ++i) {
        ResumeIfPaused();
        if (blFaster) {
            if (m_pVideoPlayControl->Fast() == 0 && m_iSpeedIndex < kMaxSpeedIndex) ++m_iSpeedIndex;
        } else {
            if (m_pVideoPlayControl->Slow() == 0 && m_iSpeedIndex > 0) --m_iSpeedIndex;
        }
    }
    // The list's choice wins even when the player refused some steps.
    m_iSpeedIndex = _iIndex;
    RefreshDisplay();
}

void MainWindow::SlotSetNormalSpeed()
{
    if (m_iSpeedIndex == kNormalSpeedIndex) return;
    if (!m_pVideoPlayControl || !m_pControlBar) return;
    m_pVideoPlayControl->NormalSpeed();
    m_iSpeedIndex = kNormalSpeedIndex;
    m_pControlBar->SetSpeedIndex(kNormalSpeedIndex);
}

void MainWindow::SlotStepUp()
{
    if (!m_pVideoPlayControl) return;
    emit SignNormalSpeed();
    m_pVideoPlayControl->StepForward();
    m_blPlaying = false;
    m_blStepMode = true;
    m_pControlBar->SetPlayState(false);
    SlotGetPlayProgress();
}

void MainWindow::SlotStepBack()
{
    if (m_iFileType != kFileTypeSdv || m_qstrFilePath.isEmpty()) {
        ShowNotice(tr("msg_function_notallow"));
        return;
    }
    if (!m_pVideoPlayControl) return;
    m_pVideoPlayControl->StepBack();
    m_blPlaying = false;
    m_blStepMode = true;
    m_pControlBar->SetPlayState(false);
    emit SignNormalSpeed();
    SlotGetPlayProgress();
}

void MainWindow::SlotGetPlayProgress()
{
    if (!m_pControlBar || (!m_blPlaying && !m_blStepMode)) return;
    if (!m_pVideoPlayControl) return;
    if (m_iPendingSeek > 0) {
        m_pVideoPlayControl->SetPlayPos(m_iPendingSeek);
        m_iPendingSeek = 0;
        return;
    }
    if (m_iTotalTime <= 0) return;
    int iPlayedTime = 0;
    if (!m_pVideoPlayControl->GetPlayedTime(iPlayedTime)) return;
    m_iPlayedTime = iPlayedTime;
    int iTotalTime = m_iTotalTime;
    m_pVideoPlayControl->GetTotalTime(iTotalTime);
    m_iTotalTime = iTotalTime;
    m_pControlBar->SetTotalTime(m_iTotalTime);
    m_pControlBar->SetCurrentTime(m_iPlayedTime);
    const double dPercent =
        m_iTotalTime > 0 ? static_cast<double>(m_iPlayedTime) / m_iTotalTime * 100 : 0.0;
    m_pControlBar->SetPlaySliderValue(static_cast<int>(dPercent));
}

void MainWindow::SlotPlayProgresChanged(int value)
{
    if (!m_pVideoPlayControl || value < 0 || value > m_iSliderMax) return;
    m_pProgressTimer->stop();
    if (m_pVideoPlayControl->SetPlayPos(value)) {
        m_pVideoPlayControl->GetPlayedTime(m_iPlayedTime);
        m_pControlBar->SetCurrentTime(m_iPlayedTime);
        PLAYER_LOG(1) << " SlotPlayProgresChanged---->Current Slider Value Is " << value;
        if (m_blPlaying) {
            m_blResume = false;
            emit SignNormalSpeed();
        }
    }
    m_pProgressTimer->start(kProgressIntervalMs);
}

void MainWindow::SlotSliderClicked(int value)
{
    if (!m_pVideoPlayControl || value < 0 || value > m_iSliderMax) return;
    m_pProgressTimer->stop();
    if (m_pVideoPlayControl->SetPlayPos(value)) {
        m_pControlBar->SetPlaySliderValue(value);
        m_pVideoPlayControl->GetPlayedTime(m_iPlayedTime);
        m_pControlBar->SetCurrentTime(m_iPlayedTime);
        PLAYER_LOG(1) << " SlotSliderPressed---->Current Slider Value Is " << value;
        if (m_blPlaying) m_blResume = false;
        emit SignNormalSpeed();
        if (!m_blPlaying) {
            m_blPlaying = true;
            m_pVideoPlayControl->Pause(false);
            m_pControlBar->SetPlayState(true);
        }
    }
    m_pProgressTimer->start(kProgressIntervalMs);
}

void MainWindow::SlotSliderValueChanged(int)
{
    // The slider also moves when the tick sets it: seeking is left to drags
    // and clicks.
}

// ---- password --------------------------------------------------------------

void MainWindow::SlotPlayBackDecryptCallBack(int _iDecrytStatusType, qlonglong _qi64PlayHandle)
{
    if (_iDecrytStatusType == kEventPasswordNeeded)
        AskPassword(_qi64PlayHandle);
    else if (_iDecrytStatusType == kEventWrongPassword)
        ReportWrongPassword(_qi64PlayHandle);
}

void MainWindow::AskPassword(qlonglong _qi64PlayHandle)
{
    CLS_MsgBoxRequest::ST_Request stRequest;
    stRequest.iMsgBoxType = CLS_MsgBoxRequest::kTypeInput;
    stRequest.qstrTitle = tr("msg_videodecrpt_notice");
    stRequest.qstrContent = tr("msg_decrptinput_password");
    stRequest.iButtons = CLS_MsgBoxRequest::kButtonOk | CLS_MsgBoxRequest::kButtonCancel;
    // The answer belongs to the playback that asked; once it is stopped the
    // key goes nowhere, also when another file has been opened since.
    QPointer<CLS_VideoPlayControl> pAskingControl(m_pVideoPlayControl);
    CLS_MsgBoxRequest::Show(
        stRequest, this, [this, _qi64PlayHandle, pAskingControl](int _iButton, QString& _qstrInput) {
            if (_iButton != CLS_MsgBoxRequest::kButtonOk) return;
            if (!pAskingControl || pAskingControl != m_pVideoPlayControl) return;
            if (_qstrInput.isEmpty()) {
                ReportWrongPassword(_qi64PlayHandle);
                return;
            }
            emit SignSetVideoDecryptKey(_qstrInput);
        });
}

void MainWindow::ReportWrongPassword(qlonglong _qi64PlayHandle)
{
    CLS_MsgBoxRequest::ST_Request stRequest;
    stRequest.qstrTitle = tr("msg_decrpte_notice");
    stRequest.qstrContent = tr("msg_videodecript_failed");
    stRequest.iButtons = CLS_MsgBoxRequest::kButtonOk | CLS_MsgBoxRequest::kButtonCancel;
    CLS_MsgBoxRequest::Show(stRequest, this, [this, _qi64PlayHandle](int _iButton, QString&) {
        if (_iButton == CLS_MsgBoxRequest::kButtonOk) AskPassword(_qi64PlayHandle);
    });
}

// ---- sound -----------------------------------------------------------------

void MainWindow::PublishSoundState(bool _blSoundOpen)
{
    I_AppSignals* pAppSignals = KoService::GetAppSignals();
    if (!pAppSignals) return;
    QVariantMap qmapParam;
    qmapParam.insert(QStringLiteral("ModuleName"), QLatin1String(kModuleKoPlayerCode));
    qmapParam.insert(QStringLiteral("SoundOpen"), _blSoundOpen ? 1 : 0);
    emit pAppSignals->SignSoundStateChanged(qmapParam);
}

void MainWindow::ApplySoundSettings()
{
    if (!m_pVideoPlayControl) return;
    const int iOpenSound = ModuleParam(ModuleKeys::kOpenSound, "1").toInt();
    const int iSoundSet = ModuleParam(ModuleKeys::kSoundSet, "50").toInt();
    if (iOpenSound != 0) {
        m_pVideoPlayControl->OpenSound();
        m_pVideoPlayControl->SetVolume(iSoundSet);
        m_blSoundOpen = true;
        m_pControlBar->SetSoundValue(iSoundSet);
        m_pControlBar->SetSoundState(true);
        PublishSoundState(true);
    } else {
        m_pVideoPlayControl->CloseSound();
        m_pVideoPlayControl->SetVolume(0);
        m_blSoundOpen = false;
        m_pControlBar->SetSoundValue(0);
        m_pControlBar->SetSoundState(false);
    }
}

void MainWindow::SlotOpenOrCloseSound()
{
    if (m_iSpeedIndex != kNormalSpeedIndex || !m_pVideoPlayControl || !m_pControlBar) return;
    m_blSoundOpen = !m_blSoundOpen;
    if (!m_blSoundOpen) {
        m_pVideoPlayControl->CloseSound();
        m_pControlBar->SetSoundState(false);
        m_pControlBar->SetSoundValue(0);
        SetModuleParam(ModuleKeys::kOpenSound, QStringLiteral("0"));
    } else {
        m_pVideoPlayControl->OpenSound();
        // Back to the default volume on every switch-on, whatever it was.
        m_pVideoPlayControl->SetVolume(kDefaultVolume);
        m_pControlBar->SetSoundState(true);
        m_pControlBar->SetSoundValue(kDefaultVolume);
        SetModuleParam(ModuleKeys::kOpenSound, QStringLiteral("1"));
        SetModuleParam(ModuleKeys::kSoundSet, QString::number(kDefaultVolume));
    }
    PublishSoundState(m_blSoundOpen);
}

void MainWindow::SlotSoundValueChange(int value)
{
    if (m_iSpeedIndex != kNormalSpeedIndex || !m_pControlBar) return;
    if (value < 0 || value > m_pControlBar->GetSoundSliderMaximum() || !m_pVideoPlayControl) return;
    if (!m_blSoundOpen && value >= 1 && m_pVideoPlayControl->OpenSound()) {
        m_blSoundOpen = true;
        m_pControlBar->SetSoundState(true);
    }
    m_pVideoPlayControl->SetVolume(value);
    SetModuleParam(ModuleKeys::kSoundSet, QString::number(value));
}

void MainWindow::SlotSoundSliderPressed(int _iValue)
{
    if (!m_pVideoPlayControl) return;
    m_pVideoPlayControl->SetVolume(_iValue);
    SetModuleParam(ModuleKeys::kSoundSet, QString::number(_iValue));
}

void MainWindow::SlotSoundSliderMoved(int _iValue)
{
    SlotSoundSliderPressed(_iValue);
}

void MainWindow::SlotAppSoundStateChanged(QVariantMap _qmapParam)
{
    if (_qmapParam.value(QStringLiteral("ModuleName")).toString() ==
        QLatin1String(kModuleKoPlayerCode))
        return;
    if (!_qmapParam.value(QStringLiteral("SoundOpen"), false).toBool()) return;
    // Another module of the suite plays sound now: only one does at a time.
    m_blSoundOpen = false;
    if (m_pVideoPlayControl) m_pVideoPlayControl->CloseSound();
    if (!m_pControlBar) return;
    m_pControlBar->SetSoundValue(0);
    m_pControlBar->SetSoundState(false);
    SetModuleParam(ModuleKeys::kOpenSound, QStringLiteral("0"));
    SetModuleParam(ModuleKeys::kSoundSet, QStringLiteral("0"));
}
