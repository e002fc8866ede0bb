#include "CLS_WgtHistroyList.h"

#include "CLS_HistroyFile.h"
#include "CLS_MsgBoxRequest.h"
#include "CLS_WgtPlayer7ToolboxBar.h"
#include "CLS_WgtPlayerListItem.h"
#include "FixedSkinFile.h"
#include "ModuleKoPlayerLog.h"
#include "ui_CLS_WgtHistroyList.h"

#include <QFile>
#include <QFileInfo>
#include <QListWidgetItem>
#include <QSettings>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kMaxHistroyCount = 20;

// Paths are kept as the player received them, Windows separators included.
QString FileNameOf(const QString& _qstrPath)
{
    const int iSlash =
        std::max(_qstrPath.lastIndexOf(QLatin1Char('/')), _qstrPath.lastIndexOf(QLatin1Char('\\')));
    return _qstrPath.mid(iSlash + 1);
}

}  // namespace

CLS_WgtHistroyList::CLS_WgtHistroyList(QWidget* _pParent)
    : QWidget(_pParent), ui(new Ui::CLS_WgtHistroyList)
{
    ui->setupUi(this);
    m_pSettings = new QSettings(QStringLiteral("LocalPlayHistory.ini"), QSettings::IniFormat, this);

    m_pToolboxBar = new CLS_WgtPlayer7ToolboxBar(ui->widget_title);
    m_pToolboxBar->SetText(tr("lab_history_playback"));
    connect(m_pToolboxBar, &CLS_WgtPlayer7ToolboxBar::SignClicked, this,
            &CLS_WgtHistroyList::SlotToolBarClicked, Qt::UniqueConnection);

    InitHistroyLog();

    const QString qstrQssPath = FixedSkinFilePath(QStringLiteral("ModuleKoPlayer.qss"));
    auto* pTitleLayout = new QVBoxLayout(ui->widget_title);
    pTitleLayout->setContentsMargins(0, 0, 0, 0);
    pTitleLayout->setSpacing(0);
    pTitleLayout->addWidget(m_pToolboxBar);
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    setContentsMargins(0, 0, 0, 0);
    SetStyleSheetByFile(qstrQssPath);
}

CLS_WgtHistroyList::~CLS_WgtHistroyList()
{
    delete ui;
}

QString CLS_WgtHistroyList::CurrentHistroyPath() const
{
    // Rows are built in the order of the path list.
    const int iRow = ui->listWidget->currentRow();
    return iRow >= 0 && iRow < m_vecHistroyPath.size() ? m_vecHistroyPath.at(iRow) : QString();
}

void CLS_WgtHistroyList::InitHistroyLog()
{
    const CLS_HistroyFile::ReadResult result =
        CLS_HistroyFile::Read(CLS_HistroyFile::DefaultPath(), m_mapHistroyPos, m_vecHistroyPath);
    if (result == CLS_HistroyFile::ReadResult::NoHistory)
        PLAYER_LOG(3) << "CLS_WgtHistroyList::InitHistroyLog  not Histroy";
    for (const QString& qstrPath : qAsConst(m_vecHistroyPath))
        AddRow(qstrPath);
}

void CLS_WgtHistroyList::AddHistroy(const QString& _qstrPath, int _iPos)
{
    if (_qstrPath.isEmpty() || _iPos < 0) return;
    if (!QFileInfo::exists(_qstrPath)) {
        CLS_MsgBoxRequest::Show(Notice(tr("msg_path_error"), false));
        return;
    }
    if (!m_pSettings || _qstrPath == QString()) return;

    if (m_mapHistroyPos.contains(_qstrPath)) {
        m_vecHistroyPath.removeAll(_qstrPath);
        m_vecHistroyPath.prepend(_qstrPath);
        m_mapHistroyPos[_qstrPath] = _iPos;
    } else {
        // Keep room for the new entry: at most 19 old ones stay, the least
        // recently played go.
        const int iDropCount = m_vecHistroyPath.size() - (kMaxHistroyCount - 1);
        for (int i = 0; i < iDropCount; ++i) {
            const QString qstrLast = m_vecHistroyPath.last();
            if (!qstrLast.isEmpty()) {
                m_mapHistroyPos.remove(qstrLast);
                m_vecHistroyPath.removeLast();
            }
        }
        m_vecHistroyPath.prepend(_qstrPath);
        m_mapHistroyPos.insert(_qstrPath, _iPos);
    }
    RebuildRows();
    UpdateResult();
}

void CLS_WgtHistroyList::UpdateResult()
{
    QString qstrReason;
    if (CLS_HistroyFile::Write(CLS_HistroyFile::DefaultPath(), m_mapHistroyPos, m_vecHistroyPath,
                               &qstrReason)) {
        PLAYER_LOG(1) << " Add Histroy Success!";
        return;
    }
    // The store in memory keeps the change and the next write tries again.
    PLAYER_LOG(3) << "CLS_WgtHistroyList::UpdateResult open File Erroe";
    PLAYER_LOG(3) << "HistroyInfo.json not written: " << qstrReason;
}

void CLS_WgtHistroyList::RebuildRows()
{
    while (ui->listWidget->count() > 0)
        delete ui->listWidget->takeItem(0);
    for (const QString& qstrPath : qAsConst(m_vecHistroyPath))
        AddRow(qstrPath);
}

void CLS_WgtHistroyList::AddRow(const QString& _qstrPath)
{
    auto* pItem = new QListWidgetItem(ui->listWidget);
    auto* pRow = new CLS_WgtPlayerListItem(ui->listWidget);
    pRow->SetFilePath(_qstrPath);
    pRow->SetFileName(FileNameOf(_qstrPath));
    connect(pRow, &CLS_WgtPlayerListItem::SignItemBtnClicked, this,
            &CLS_WgtHistroyList::SlotItelBtnClicked, Qt::UniqueConnection);
    connect(pRow, &CLS_WgtPlayerListItem::SignTextDoubleCliced, this,
            &CLS_WgtHistroyList::SlotTextDoubleClicked);
    // The row's size comes from the skin: polish first, or the text edit's
    // unstyled size hint (some 190 px tall) would size the item.
    pRow->ensurePolished();
    pItem->setSizeHint(pRow->sizeHint());
    ui->listWidget->setItemWidget(pItem, pRow);
}

void CLS_WgtHistroyList::SlotTextDoubleClicked(QString _qstrVideoPath, bool _blIsExit)
{
    try {
        if (_qstrVideoPath.isEmpty()) return;
        if (!_blIsExit) {
            AskForgetMissingFile(_qstrVideoPath);
            return;
        }
        // Unlike the button, a double-click plays again from the start.
        if (m_mapHistroyPos.contains(_qstrVideoPath)) emit SignContinuePlay(_qstrVideoPath, 0);
    } catch (...) {
        PLAYER_LOG(3) << "SlotTextDoubleClicked Fail";
    }
}

void CLS_WgtHistroyList::SlotItelBtnClicked(QString _qstrFilePath)
{
    try {
        if (_qstrFilePath.isEmpty()) return;
        if (!QFileInfo::exists(_qstrFilePath)) {
            SlotTextDoubleClicked(_qstrFilePath, false);
            return;
        }
        auto it = m_mapHistroyPos.find(_qstrFilePath);
        if (it == m_mapHistroyPos.end()) it = m_mapHistroyPos.insert(_qstrFilePath, 0);
        emit SignContinuePlay(_qstrFilePath, it.value());
    } catch (...) {
        PLAYER_LOG(3) << "SlotItelBtnClicked Fail";
    }
}

void CLS_WgtHistroyList::SlotToolBarClicked(bool _blChecked)
{
    Q_UNUSED(_blChecked)
    emit SignHideHistrouListWgt();
}

void CLS_WgtHistroyList::ForgetHistroy(const QString& _qstrPath)
{
    m_vecHistroyPath.removeAll(_qstrPath);
    m_mapHistroyPos.remove(_qstrPath);
    RebuildRows();
    UpdateResult();
}

void CLS_WgtHistroyList::AskForgetMissingFile(const QString& _qstrPath)
{
    // Bound to this panel: an answer that comes after the panel is gone is
    // dropped with the connection.
    CLS_MsgBoxRequest::Show(Notice(tr("msg_videopath_notexist"), true), this,
                            [this, _qstrPath](int _iButton, QString&) {
                                if (_iButton == CLS_MsgBoxRequest::kButtonOk) ForgetHistroy(_qstrPath);
                            });
}

CLS_MsgBoxRequest::ST_Request CLS_WgtHistroyList::Notice(const QString& _qstrContent, bool _blAsk)
{
    CLS_MsgBoxRequest::ST_Request stRequest;
    stRequest.qstrTitle = tr("lab_notice");
    stRequest.qstrContent = _qstrContent;
    if (_blAsk) stRequest.iButtons = CLS_MsgBoxRequest::kButtonOk | CLS_MsgBoxRequest::kButtonCancel;
    return stRequest;
}

void CLS_WgtHistroyList::SetStyleSheetByFile(const QString& _qstrPath)
{
    if (SetStyleSheetFromFile(this, _qstrPath)) {
        // Rows built before the sheet was set take their size from it now.
        for (int i = 0; i < ui->listWidget->count(); ++i) {
            QListWidgetItem* pItem = ui->listWidget->item(i);
            if (QWidget* pRow = ui->listWidget->itemWidget(pItem)) {
                pRow->ensurePolished();
                pItem->setSizeHint(pRow->sizeHint());
            }
        }
        PLAYER_LOG(1) << "COMMON_PLATFORM_WIN SetStyleSheetByFile Loading finished";
    } else {
        PLAYER_LOG(3) << "SetStyleSheetByFile Loading Failed,Path = " << _qstrPath;
    }
}
