#include "CLS_ClipCutController.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>
#include <QProgressDialog>
#include <QWidget>

#include <algorithm>
#include <limits>

#include "CLS_ClipExportRunner.h"
#include "CLS_DlgClipExport.h"
#include "CLS_VideoContextMenu.h"
#include "CLS_WgtPlayerSlider.h"

using namespace RK_Framework::ClipExport;

CLS_ClipCutController::CLS_ClipCutController(QWidget* _pWindow, CLS_WgtPlayerSlider* _pSlider,
                                             PlayedTimeFunc _fnPlayedTime, QObject* _pParent)
    : QObject(_pParent),
      m_pWindow(_pWindow),
      m_pSlider(_pSlider),
      m_fnPlayedTime(std::move(_fnPlayedTime)),
      m_pRunner(new CLS_ClipExportRunner(this))
{
    m_pActFirst = MakeAction(QT_TR_NOOP("lab_set_first_mark"), QStringLiteral("actionSetFirstMark"),
                             QKeySequence(Qt::Key_BracketLeft));
    m_pActSecond =
        MakeAction(QT_TR_NOOP("lab_set_second_mark"), QStringLiteral("actionSetSecondMark"),
                   QKeySequence(Qt::Key_BracketRight));
    m_pActClear = MakeAction(QT_TR_NOOP("lab_clear_marks"), QStringLiteral("actionClearMarks"),
                             QKeySequence(Qt::Key_Backslash));
    m_pActExport = MakeAction(QT_TR_NOOP("lab_export_clip"), QStringLiteral("actionExportClip"),
                              QKeySequence(Qt::CTRL | Qt::Key_E));
    connect(m_pActFirst, &QAction::triggered, this, &CLS_ClipCutController::SlotSetFirstMark);
    connect(m_pActSecond, &QAction::triggered, this, &CLS_ClipCutController::SlotSetSecondMark);
    connect(m_pActClear, &QAction::triggered, this, &CLS_ClipCutController::SlotClearMarks);
    connect(m_pActExport, &QAction::triggered, this, &CLS_ClipCutController::SlotExport);
    connect(m_pRunner, &CLS_ClipExportRunner::SignFinished, this,
            &CLS_ClipCutController::SlotExportFinished);
    RefreshActions();
}

CLS_ClipCutController::~CLS_ClipCutController()
{
    delete m_pProgress;
}

QAction* CLS_ClipCutController::MakeAction(const char* _pText, const QString& _qstrName,
                                           const QKeySequence& _qKeys)
{
    auto* pAction = new QAction(tr(_pText), this);
    pAction->setObjectName(_qstrName);
    pAction->setShortcut(_qKeys);
    pAction->setShortcutContext(Qt::WindowShortcut);
    if (m_pWindow) m_pWindow->addAction(pAction);
    return pAction;
}

void CLS_ClipCutController::SetFile(const QString& _qstrPath, int _iTotalSeconds)
{
    if (_qstrPath != m_qstrFile) {
        m_iFirst = -1;
        m_iSecond = -1;
    }
    m_qstrFile = _qstrPath;
    m_iTotal = std::max(0, _iTotalSeconds);
    ShowMarks();
}

void CLS_ClipCutController::AddActions(QMenu* _pMenu)
{
    if (!_pMenu) return;
    RefreshActions();
    _pMenu->addAction(m_pActFirst);
    _pMenu->addAction(m_pActSecond);
    _pMenu->addAction(m_pActClear);
    _pMenu->addAction(m_pActExport);
}

void CLS_ClipCutController::AttachContextMenu(CLS_VideoContextMenu* _pMenu, QWidget* _pArea)
{
    if (!_pMenu || !_pArea) return;
    // Its own window, in full screen, keeps the shortcuts working too.
    _pArea->addActions({m_pActFirst, m_pActSecond, m_pActClear, m_pActExport});
    _pMenu->AddSeparator();
    AddActions(_pMenu->Menu());
    connect(_pMenu, &CLS_VideoContextMenu::SignAboutToShow, this, [this] { RefreshActions(); });
}

bool CLS_ClipCutController::IsExporting() const
{
    return m_pRunner->IsRunning();
}

bool CLS_ClipCutController::MarkHere(int& _iMark)
{
    int iPlayed = 0;
    if (m_qstrFile.isEmpty() || !m_fnPlayedTime || !m_fnPlayedTime(iPlayed) || iPlayed < 0)
        return false;
    _iMark = m_iTotal > 0 ? std::min(iPlayed, m_iTotal) : iPlayed;
    ShowMarks();
    return true;
}

void CLS_ClipCutController::SlotSetFirstMark()
{
    MarkHere(m_iFirst);
}

void CLS_ClipCutController::SlotSetSecondMark()
{
    MarkHere(m_iSecond);
}

void CLS_ClipCutController::SlotClearMarks()
{
    m_iFirst = -1;
    m_iSecond = -1;
    ShowMarks();
}

void CLS_ClipCutController::ShowMarks()
{
    RefreshActions();
    if (!m_pSlider) return;
    if ((m_iFirst < 0 && m_iSecond < 0) || m_iTotal <= 0) {
        m_pSlider->ClearCutPos();
        return;
    }
    const auto fnRatio = [this](int _iSeconds) {
        return static_cast<double>(std::min(_iSeconds, m_iTotal)) / m_iTotal;
    };
    const auto fnValue = [this](double _dRatio) {
        return static_cast<int>(m_pSlider->minimum() +
                                (m_pSlider->maximum() - m_pSlider->minimum()) * _dRatio);
    };
    // The earlier mark where its second begins, the later one where its
    // second ends: the red stretch is what the clip will hold.
    const bool blBoth = m_iFirst >= 0 && m_iSecond >= 0;
    const double dLow = fnRatio(blBoth ? std::min(m_iFirst, m_iSecond)
                                       : (m_iFirst >= 0 ? m_iFirst : m_iSecond + 1));
    const double dHigh = blBoth ? fnRatio(std::max(m_iFirst, m_iSecond) + 1)
                                : std::numeric_limits<double>::quiet_NaN();
    m_pSlider->SetCutPos(dLow, fnValue(dLow), dHigh, blBoth ? fnValue(dHigh) : 0);
}

void CLS_ClipCutController::RefreshActions()
{
    const bool blFile = !m_qstrFile.isEmpty();
    const bool blBusy = m_pRunner->IsRunning();
    m_pActFirst->setEnabled(blFile);
    m_pActSecond->setEnabled(blFile);
    m_pActClear->setEnabled(m_iFirst >= 0 || m_iSecond >= 0);
    m_pActExport->setEnabled(blFile && m_iFirst >= 0 && m_iSecond >= 0 && !blBusy);
}

void CLS_ClipCutController::SlotExport()
{
    if (m_pRunner->IsRunning()) return;
    if (m_qstrFile.isEmpty() || m_iFirst < 0 || m_iSecond < 0) {
        emit SignNotice(tr("msg_export_need_marks"));
        return;
    }
    CLS_DlgClipExport dlg(m_qstrFile, CLS_ClipExporter::NeedsPassword(m_qstrFile.toStdString()),
                          m_pWindow);
    if (dlg.exec() != QDialog::Accepted) return;
    ST_ClipRequest stRequest = dlg.Request();
    stRequest.m_i64FromMs = static_cast<std::int64_t>(std::min(m_iFirst, m_iSecond)) * 1000;
    stRequest.m_i64ToMs = (static_cast<std::int64_t>(std::max(m_iFirst, m_iSecond)) + 1) * 1000;
    if (!m_pRunner->Start(stRequest)) return;
    RefreshActions();

    m_pProgress = new QProgressDialog(tr("lab_exporting"), tr("btn_cancel"), 0, 1000, m_pWindow);
    m_pProgress->setObjectName(QStringLiteral("DlgClipExportProgress"));
    m_pProgress->setWindowTitle(tr("lab_export_clip"));
    m_pProgress->setWindowModality(Qt::WindowModal);
    m_pProgress->setAutoClose(false);
    m_pProgress->setAutoReset(false);
    m_pProgress->setMinimumDuration(0);
    m_pProgress->setValue(0);
    connect(m_pRunner, &CLS_ClipExportRunner::SignProgress, m_pProgress,
            &QProgressDialog::setValue);
    connect(m_pProgress, &QProgressDialog::canceled, m_pRunner, &CLS_ClipExportRunner::SlotCancel);
}

void CLS_ClipCutController::SlotExportFinished(int _iResult, QString _qstrTarget,
                                               bool _blSoundLeftOut)
{
    if (m_pProgress) m_pProgress->deleteLater();
    RefreshActions();
    const QString qstrName = QFileInfo(_qstrTarget).fileName();
    switch (_iResult) {
        case CLIP_OK:
            emit SignNotice(_blSoundLeftOut ? tr("msg_export_done_silent").arg(qstrName)
                                            : tr("msg_export_done").arg(qstrName));
            break;
        case CLIP_CANCELLED:
            emit SignNotice(tr("msg_export_cancelled"));
            break;
        case CLIP_WRONG_PASSWORD:
        case CLIP_PASSWORD_NEEDED:
            emit SignNotice(tr("msg_export_wrong_password"));
            break;
        case CLIP_EMPTY_RANGE:
            emit SignNotice(tr("msg_export_empty"));
            break;
        default:
            emit SignNotice(tr("msg_export_failed").arg(qstrName));
            break;
    }
}
