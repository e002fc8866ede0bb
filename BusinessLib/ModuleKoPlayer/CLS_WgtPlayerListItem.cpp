#include "CLS_WgtPlayerListItem.h"

#include "ui_CLS_WgtPlayerListItem.h"

#include <QEvent>
#include <QFileInfo>

CLS_WgtPlayerListItem::CLS_WgtPlayerListItem(QWidget* _pParent)
    : QWidget(_pParent), ui(new Ui::CLS_WgtPlayerListItem)
{
    ui->setupUi(this);
    // The form's "..." only keeps the button visible in the designer; the skin
    // draws its icon.
    ui->toolButton_play->setText(QString());
    ui->toolButton_play->setToolTip(tr("btn_continuation"));
    // Double-clicks land on the viewport, not on the text edit itself.
    ui->labelFileName->viewport()->installEventFilter(this);
}

CLS_WgtPlayerListItem::~CLS_WgtPlayerListItem()
{
    delete ui;
}

void CLS_WgtPlayerListItem::SetFilePath(const QString& _qstrFilePath)
{
    m_qstrFilePath = _qstrFilePath;
}

void CLS_WgtPlayerListItem::SetFileName(const QString& _qstrFileName)
{
    if (_qstrFileName.isEmpty()) return;
    ui->labelFileName->adjustSize();
    ui->labelFileName->setReadOnly(true);
    ui->labelFileName->setText(_qstrFileName);
    ui->labelFileName->setToolTip(_qstrFileName);
}

bool CLS_WgtPlayerListItem::eventFilter(QObject* _pWatched, QEvent* _pEvent)
{
    if (_pEvent->type() == QEvent::MouseButtonDblClick && !m_qstrFilePath.isEmpty()) {
        // Asked now, not when the row was built: the file may have gone since.
        emit SignTextDoubleCliced(m_qstrFilePath, QFileInfo::exists(m_qstrFilePath));
    }
    // The text edit still gets the event (word selection on double-click).
    return QWidget::eventFilter(_pWatched, _pEvent);
}

void CLS_WgtPlayerListItem::on_toolButton_play_clicked()
{
    emit SignItemBtnClicked(m_qstrFilePath);
}
