#include "CLS_WgtPlayer7ToolboxBar.h"

#include "FixedSkinFile.h"
#include "ModuleKoPlayerLog.h"
#include "ui_CLS_WgtPlayer7ToolboxBar.h"

#include <QApplication>
#include <QMouseEvent>

namespace {

constexpr int kArrowWidth = 30;
constexpr int kArrowHeight = 40;

}  // namespace

CLS_WgtPlayer7ToolboxBar::CLS_WgtPlayer7ToolboxBar(QWidget* _pParent)
    : QWidget(_pParent), ui(new Ui::CLS_WgtPlayer7ToolboxBar)
{
    ui->setupUi(this);
    m_blChecked = false;

    // Logged from here, under the constructor's name, as the skin tools expect.
    const QString qstrPath = FixedSkinFilePath(QStringLiteral("ToolBar.qss"));
    if (SetStyleSheetFromFile(this, qstrPath)) {
        PLAYER_LOG(1)
            << " CLS_WgtPlayer7ToolboxBar COMMON_PLATFORM_WIN SetStyleSheetByFile Loading finished";
    } else {
        PLAYER_LOG(3) << "CLS_WgtPlayer7ToolboxBar COMMON_PLATFORM_WIN SetStyleSheetByFile Loading "
                         "Failed,Path = "
                      << qstrPath;
    }

    ApplyTextDirection();
}

CLS_WgtPlayer7ToolboxBar::~CLS_WgtPlayer7ToolboxBar()
{
    delete ui;
}

void CLS_WgtPlayer7ToolboxBar::SetText(const QString& _qstrText)
{
    ui->lbl_text->setText(_qstrText);
    ui->lbl_text->setToolTip(_qstrText);
}

void CLS_WgtPlayer7ToolboxBar::on_tlb_arrow_clicked()
{
    emit SignClicked(m_blChecked);
}

void CLS_WgtPlayer7ToolboxBar::mousePressEvent(QMouseEvent* _pEvent)
{
    // The whole bar is the close handle, not only the arrow.
    emit SignClicked(m_blChecked);
    _pEvent->accept();
}

void CLS_WgtPlayer7ToolboxBar::mouseMoveEvent(QMouseEvent* _pEvent)
{
    QWidget::mouseMoveEvent(_pEvent);
}

void CLS_WgtPlayer7ToolboxBar::resizeEvent(QResizeEvent* _pEvent)
{
    QWidget::resizeEvent(_pEvent);
    // No layout: the arrow sits over the label's right end so the caption can
    // use the bar's full width when it is short.
    ui->lbl_text->setGeometry(0, 0, width(), height());
    ui->tlb_arrow->setGeometry(width() - kArrowWidth, 0, kArrowWidth, kArrowHeight);
}

void CLS_WgtPlayer7ToolboxBar::ApplyTextDirection()
{
    // Exact, case-sensitive names: the suite stores the language under these.
    const QString qstrLanguage = qApp ? qApp->property("language").toString() : QString();
    if (qstrLanguage == QLatin1String("Hebrew") || qstrLanguage == QLatin1String("Farsi") ||
        qstrLanguage == QLatin1String("Arabic"))
        ui->lbl_text->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}
