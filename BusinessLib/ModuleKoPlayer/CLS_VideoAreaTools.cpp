#include "CLS_VideoAreaTools.h"

#include "CLS_RecordingClock.h"
#include "CLS_SnapshotWriter.h"
#include "CLS_VideoContextMenu.h"
#include "CLS_VideoPlayControl.h"
#include "CLS_VideoZoom.h"
#include "CLS_WgtPlayerControlBar.h"
#include "KoServices.h"
#include "ModuleKoPlayerLog.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QTimer>
#include <QWidget>

using RK_Framework::VideoPlayer::ST_ShownPicture;

namespace {

const char* const kSnapshotDir = "SnapshotDir";
const char* const kShowRecordedTime = "ShowRecordedTime";
constexpr int kClockIntervalMs = 200;

QString ModuleParam(const char* _pKey)
{
    return QString::fromStdString(KoService::GetParam(kModuleKoPlayerCode, _pKey, ""));
}

}  // namespace

CLS_VideoAreaTools::CLS_VideoAreaTools(QWidget* _pArea, CLS_VideoContextMenu* _pMenu,
                                       CLS_WgtPlayerControlBar* _pControlBar, ControlFn _fnControl,
                                       PathFn _fnPath)
    : QObject(_pArea),
      m_pArea(_pArea),
      m_pControlBar(_pControlBar),
      m_fnControl(std::move(_fnControl)),
      m_fnPath(std::move(_fnPath))
{
    m_pZoom = new CLS_VideoZoom(_pArea, [this] { return PictureSize(); });
    connect(m_pZoom, &CLS_VideoZoom::SignViewChanged, this, [this](QRectF _rectView) {
        if (CLS_VideoPlayControl* pControl = m_fnControl())
            pControl->SetShownPart(_rectView.x(), _rectView.y(), _rectView.width(),
                                   _rectView.height());
        UpdateEntries();
    });

    _pMenu->AddSeparator();
    m_pActSnapshot = _pMenu->AddEntry(QStringLiteral("action_snapshot"), tr("lab_snapshot"),
                                      QKeySequence(Qt::CTRL | Qt::Key_S));
    connect(m_pActSnapshot, &QAction::triggered, this, &CLS_VideoAreaTools::SlotSnapshot);
    QAction* pActFolder =
        _pMenu->AddEntry(QStringLiteral("action_snapshot_folder"), tr("lab_snapshot_folder"));
    connect(pActFolder, &QAction::triggered, this, &CLS_VideoAreaTools::SlotChooseSnapshotFolder);
    _pMenu->AddSeparator();
    m_pActResetZoom = _pMenu->AddEntry(QStringLiteral("action_zoom_reset"), tr("lab_zoom_reset"),
                                       QKeySequence(Qt::CTRL | Qt::Key_0));
    connect(m_pActResetZoom, &QAction::triggered, this, &CLS_VideoAreaTools::SlotResetZoom);
    m_pActRecordedTime =
        _pMenu->AddToggle(QStringLiteral("action_recorded_time"), tr("lab_recorded_time"),
                          ModuleParam(kShowRecordedTime) == QLatin1String("1"));
    connect(m_pActRecordedTime, &QAction::toggled, this, &CLS_VideoAreaTools::SlotShowRecordedTime);
    connect(_pMenu, &CLS_VideoContextMenu::SignAboutToShow, this,
            &CLS_VideoAreaTools::UpdateEntries);
    m_pClockTimer = new QTimer(this);
    connect(m_pClockTimer, &QTimer::timeout, this, &CLS_VideoAreaTools::RefreshClock);
    UpdateEntries();
}

void CLS_VideoAreaTools::UpdateEntries()
{
    const bool blPlayback = m_fnControl() != nullptr;
    m_pActSnapshot->setEnabled(blPlayback);
    m_pActResetZoom->setEnabled(m_pZoom->Scale() > 1.0);
}

QSize CLS_VideoAreaTools::PictureSize() const
{
    CLS_VideoPlayControl* pControl = m_fnControl();
    ST_ShownPicture stPicture;
    if (!pControl || !pControl->GetShownPicture(stPicture, false)) return QSize();
    return QSize(stPicture.m_iWidth, stPicture.m_iHeight);
}

void CLS_VideoAreaTools::PlaybackChanged()
{
    // A new player shows the whole picture from the start.
    m_pZoom->Reset();
    RefreshClock();
    UpdateEntries();
}

void CLS_VideoAreaTools::RefreshClock()
{
    CLS_VideoPlayControl* pControl = m_fnControl();
    ST_ShownPicture stPicture;
    const bool blFollow = m_pActRecordedTime->isChecked() && pControl;
    if (blFollow != m_pClockTimer->isActive()) {
        if (blFollow)
            m_pClockTimer->start(kClockIntervalMs);
        else
            m_pClockTimer->stop();
    }
    const bool blClock = blFollow && pControl->GetShownPicture(stPicture, false);
    m_pControlBar->SetRecordedTime(blClock ? CLS_RecordingClock::LabelText(stPicture) : QString());
}

QString CLS_VideoAreaTools::SlotSnapshot()
{
    CLS_VideoPlayControl* pControl = m_fnControl();
    if (!pControl) return QString();
    ST_ShownPicture stPicture;
    if (!pControl->GetShownPicture(stPicture, true)) {
        m_pControlBar->SetExceptionInfo(tr("msg_snapshot_failed"));
        return QString();
    }
    QString qstrDir = ModuleParam(kSnapshotDir);
    if (qstrDir.isEmpty() || !QDir(qstrDir).exists()) {
        SlotChooseSnapshotFolder();
        qstrDir = ModuleParam(kSnapshotDir);
        if (qstrDir.isEmpty()) return QString();
    }
    const QString qstrPath = CLS_SnapshotWriter::Write(stPicture, qstrDir, m_fnPath());
    if (qstrPath.isEmpty()) {
        PLAYER_LOG(3) << "CLS_VideoAreaTools snapshot not written into " << qstrDir;
        m_pControlBar->SetExceptionInfo(tr("msg_snapshot_failed"));
        return QString();
    }
    PLAYER_LOG(1) << "CLS_VideoAreaTools snapshot " << qstrPath;
    // The name alone: a status line that grows with a long folder would
    // widen the whole window.
    m_pControlBar->SetExceptionInfo(tr("msg_snapshot_saved") + QLatin1Char(' ') +
                                    QFileInfo(qstrPath).fileName());
    return qstrPath;
}

void CLS_VideoAreaTools::SlotChooseSnapshotFolder()
{
    QString qstrStart = ModuleParam(kSnapshotDir);
    if (qstrStart.isEmpty()) qstrStart = QDir::homePath();
    const QString qstrDir =
        QFileDialog::getExistingDirectory(m_pArea, tr("lab_snapshot_folder"), qstrStart);
    if (qstrDir.isEmpty()) return;
    KoService::SetParam(kModuleKoPlayerCode, kSnapshotDir, QDir(qstrDir).absolutePath().toStdString());
}

void CLS_VideoAreaTools::SlotResetZoom()
{
    m_pZoom->Reset();
}

void CLS_VideoAreaTools::SlotShowRecordedTime(bool _blShow)
{
    KoService::SetParam(kModuleKoPlayerCode, kShowRecordedTime, _blShow ? "1" : "0");
    RefreshClock();
}
