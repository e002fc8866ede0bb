#include "CLS_WgtPlayerTopBar.h"

#include "FixedSkinFile.h"
#include "ModuleKoPlayerLog.h"
#include "ui_CLS_WgtPlayerTopBar.h"

#include <QDateTime>
#include <QStyle>
#include <QTimer>
#include <QVariant>

namespace {

constexpr int kClockIntervalMs = 1000;

}  // namespace

CLS_WgtPlayerTopBar::CLS_WgtPlayerTopBar(QWidget* _pParent)
    : QWidget(_pParent), ui(new Ui::CLS_WgtPlayerTopBar)
{
    ui->setupUi(this);
    m_pTimer = new QTimer(this);
    m_pTimer->setInterval(kClockIntervalMs);
    m_pTimer->start();
    InitTopBarUI();

    connect(ui->pushButton_small, &QAbstractButton::clicked, this,
            &CLS_WgtPlayerTopBar::SignMiniSize);
    connect(ui->pushButton_big, &QAbstractButton::clicked, this, &CLS_WgtPlayerTopBar::SignMaxSize);
    connect(ui->pushButton_closeapp, &QAbstractButton::clicked, this,
            &CLS_WgtPlayerTopBar::SignAppClose);
    connect(m_pTimer, &QTimer::timeout, this, &CLS_WgtPlayerTopBar::SlotHandleTimerEvent,
            Qt::UniqueConnection);
}

CLS_WgtPlayerTopBar::~CLS_WgtPlayerTopBar()
{
    m_pTimer->stop();
    delete ui;
}

void CLS_WgtPlayerTopBar::InitTopBarUI()
{
    ui->pushButton_small->setText(QString());
    ui->pushButton_big->setText(QString());
    ui->pushButton_closeapp->setText(QString());

    ui->pushButton_big->setToolTip(tr("btn_maximize"));
    ui->pushButton_big->setProperty("blMax", false);
    ui->pushButton_closeapp->setToolTip(tr("btn_close_down"));
    ui->pushButton_small->setToolTip(tr("btn_minimize"));

    const QString qstrPath = FixedSkinFilePath(QStringLiteral("TopBar.qss"));
    if (!SetStyleSheetFromFile(this, qstrPath)) {
        // Worded as the suite's other bars word it; log readers search for it.
        PLAYER_LOG(2) << "CLS_WgtToolboxBar COMMON_PLATFORM_WIN SetStyleSheetByFile Loading "
                         "Failed,Path = "
                      << qstrPath;
    }
}

void CLS_WgtPlayerTopBar::SlotHandleTimerEvent()
{
    const QString qstrTime = QDateTime::currentDateTime().toString(QStringLiteral("hh:mm:ss"));
    ui->label_time->setText(qstrTime);
    ui->label_time->setToolTip(qstrTime);
}

void CLS_WgtPlayerTopBar::SlotSetWindowStatus(bool _blMaxSize)
{
    ui->pushButton_big->setToolTip(_blMaxSize ? tr("lab_recover") : tr("btn_maximize"));
    ui->pushButton_big->setProperty("blMax", _blMaxSize);
    // The skin picks the restore or maximise icon by this property, and style
    // sheets only read it again on a re-polish.
    ui->pushButton_big->style()->unpolish(ui->pushButton_big);
    ui->pushButton_big->style()->polish(ui->pushButton_big);
}
