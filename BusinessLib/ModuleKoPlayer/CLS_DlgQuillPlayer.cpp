#include "CLS_DlgQuillPlayer.h"

#include "CLS_WgtPlayerMainBody.h"
#include "CLS_WgtPlayerTopBar.h"
#include "ModuleKeys.h"
#include "ModuleKoPlayerLog.h"
#include "PlayerLanguages.h"
#include "ui_CLS_DlgQuillPlayer.h"

#include <QApplication>
#include <QCursor>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include <cstdlib>

namespace {

using SetHasBorderFn = void (*)(QWindow*, bool);

}  // namespace

CLS_DlgQuillPlayer::CLS_DlgQuillPlayer(QWidget* _pParent) : CLS_ViewBasic(_pParent)
{
    Construct();
}

CLS_DlgQuillPlayer::CLS_DlgQuillPlayer(QWidget* _pParent, const QJsonObject& _jsonStartParams)
    : CLS_ViewBasic(_pParent)
{
    ApplyStartParams(_jsonStartParams);
    Construct();
}

CLS_DlgQuillPlayer::~CLS_DlgQuillPlayer()
{
    delete ui;
}

void CLS_DlgQuillPlayer::Construct()
{
    LoadLanuage();
    ui = new Ui::CLS_DlgQuillPlayer;
    ui->setupUi(this);
    setWindowFlags(Qt::FramelessWindowHint);

    m_pTopBar = new CLS_WgtPlayerTopBar(this);
    m_pMainBody = new CLS_WgtPlayerMainBody(this);
    InitLayout();

    if (m_pTopBar) {
        connect(m_pTopBar, &CLS_WgtPlayerTopBar::SignMiniSize, this, &CLS_DlgQuillPlayer::SlotMiniSize,
                Qt::UniqueConnection);
        connect(m_pTopBar, &CLS_WgtPlayerTopBar::SignMaxSize, this, &CLS_DlgQuillPlayer::SlotMaxSize,
                Qt::UniqueConnection);
        // Closing goes through the video area first, so playback is stopped
        // before the application ends.
        connect(m_pTopBar, &CLS_WgtPlayerTopBar::SignAppClose, m_pMainBody,
                &CLS_WgtPlayerMainBody::SignCloseApp, Qt::UniqueConnection);
        connect(m_pMainBody, &CLS_WgtPlayerMainBody::SignDealCloseAppFinished, this,
                &CLS_DlgQuillPlayer::SlotAppClose);
    }
    if (m_pMainBody) {
        connect(m_pMainBody, &CLS_WgtPlayerMainBody::SignFullScreen, this,
                &CLS_DlgQuillPlayer::SlotFullScreen, Qt::UniqueConnection);
        connect(m_pMainBody, &CLS_WgtPlayerMainBody::SignEscapeFullScreen, this,
                &CLS_DlgQuillPlayer::SlotEscapeFullScreen, Qt::UniqueConnection);
    }
}

void CLS_DlgQuillPlayer::ApplyStartParams(const QJsonObject& _jsonStartParams)
{
    int iLanguage = 0;
    if (_jsonStartParams.contains(QLatin1String("Language"))) {
        const QString qstrLanguage =
            _jsonStartParams.value(QLatin1String("Language")).toVariant().toString().toLower();
        for (const auto& row : PlayerLanguages::kKeys) {
            if (qstrLanguage == QLatin1String(row.pKey)) {
                iLanguage = row.iIndex;
                break;
            }
        }
    }
    if (_jsonStartParams.contains(QLatin1String("Skin"))) {
        const QString qstrSkin =
            _jsonStartParams.value(QLatin1String("Skin")).toVariant().toString().toLower();
        qApp->setProperty("Skin", qstrSkin == QLatin1String("dark") ? 0 : 1);
    }
    if (_jsonStartParams.contains(QLatin1String("InPlayBack")))
        InPlayBack = _jsonStartParams.value(QLatin1String("InPlayBack")).toVariant().toBool();
    qApp->setProperty("Language", iLanguage);
}

void CLS_DlgQuillPlayer::LoadLanuage()
{
    bool blOk = false;
    int iLanguage = qApp->property("Language").toInt(&blOk);
    if (!blOk || iLanguage < 0 || iLanguage >= PlayerLanguages::kFileCount) iLanguage = 0;
    const QString qstrPath = QStringLiteral(".") + QStringLiteral("/Lang/QuillPlayer/") +
                             QLatin1String(PlayerLanguages::kFiles[iLanguage]);
    PLAYER_LOG(1) << "CLS_DlgQuillPlayer qmPath = " << qstrPath;
    if (!QFileInfo::exists(qstrPath)) PLAYER_LOG(2) << "CLS_DlgQuillPlayer Not Exit";
    if (m_translator.load(qstrPath, QString(), QString(), QString()))
        QCoreApplication::installTranslator(&m_translator);
    else
        PLAYER_LOG(2) << "CLS_DlgQuillPlayer Load qm filr Failed";
}

void CLS_DlgQuillPlayer::InitLayout()
{
    m_pOuterLayout = new QVBoxLayout();
    m_pOuterLayout->addWidget(m_pTopBar);

    m_pLabelLeft = new QLabel(this);
    m_pLabelLeft->setObjectName(QStringLiteral("label_left"));
    m_pLabelLeft->setFixedWidth(0);
    m_pLabelRight = new QLabel(this);
    m_pLabelRight->setObjectName(QStringLiteral("label_right"));
    m_pLabelRight->setFixedWidth(0);
    m_pInnerLayout = new QHBoxLayout();
    m_pInnerLayout->addWidget(m_pLabelLeft);
    m_pInnerLayout->addWidget(m_pMainBody);
    m_pInnerLayout->addWidget(m_pLabelRight);
    m_pInnerLayout->setContentsMargins(0, 0, 0, 0);
    m_pInnerLayout->setSpacing(0);
    m_pOuterLayout->addLayout(m_pInnerLayout);

    m_pLabelBottom = new QLabel(this);
    m_pLabelBottom->setObjectName(QStringLiteral("label_bottom"));
    m_pLabelBottom->setFixedHeight(0);
    m_pOuterLayout->addWidget(m_pLabelBottom);
    m_pOuterLayout->setContentsMargins(0, 0, 0, 0);
    m_pOuterLayout->setSpacing(0);
    setLayout(m_pOuterLayout);

    resize(1000, 600);
    if (qApp->property("Skin").toInt() == 0)
        setStyleSheet(QStringLiteral(
            "QLabel#label_bottom,QLabel#label_right,QLabel#label_left{background-color:#151A2F;}"));
    else
        setStyleSheet(QStringLiteral(
            "QLabel#label_bottom,QLabel#label_right,QLabel#label_left{background-color:#EAEAEA;}"));
    setObjectName(QStringLiteral("DlgQuillPlayer"));
    setWindowTitle(QStringLiteral("Player"));
}

const char* CLS_DlgQuillPlayer::GetModuleCode()
{
    return kModuleKoPlayerCode;
}

void CLS_DlgQuillPlayer::InitUi() {}

void CLS_DlgQuillPlayer::InitConnect() {}

bool CLS_DlgQuillPlayer::HandleTask(const QString&, const QVariantMap&, QVariantMap&)
{
    return true;
}

bool CLS_DlgQuillPlayer::DoBusinessRequest(const QString& _qstrBusinessKey,
                                           const QVariantMap& _qmapParam, const QString&)
{
    if (_qstrBusinessKey != QLatin1String(ModuleKeys::kSetLocalVideoToPlayUrl) &&
        _qstrBusinessKey != QLatin1String(ModuleKeys::kOpenVideoFile))
        return false;
    const auto it = _qmapParam.constFind(QLatin1String(ModuleKeys::kPlayUrl));
    if (it == _qmapParam.constEnd()) return false;
    const QString qstrPath = it.value().toString();
    if (m_pMainBody && !qstrPath.isEmpty()) m_pMainBody->OpenVideoFile(qstrPath, 0);
    return false;
}

void CLS_DlgQuillPlayer::SlotOpenVideoFile(QString _qstrFilePath)
{
    if (m_pMainBody && !_qstrFilePath.isEmpty()) m_pMainBody->OpenVideoFile(_qstrFilePath, 0);
}

void CLS_DlgQuillPlayer::SlotMiniSize()
{
    showMinimized();
}

void CLS_DlgQuillPlayer::SlotMaxSize()
{
    const bool blMaximize = !isMaximized();
    if (blMaximize)
        showMaximized();
    else
        showNormal();
    if (m_pTopBar)
        QMetaObject::invokeMethod(m_pTopBar, "SlotSetWindowStatus", Qt::AutoConnection,
                                  Q_ARG(bool, blMaximize));
}

void CLS_DlgQuillPlayer::SlotAppClose()
{
    if (!InPlayBack)
        QCoreApplication::quit();
    else
        close();
}

void CLS_DlgQuillPlayer::SlotFullScreen()
{
    if (m_blFullScreen)
        ExitFullScreen();
    else
        EnterFullScreen();
}

void CLS_DlgQuillPlayer::SlotEscapeFullScreen()
{
    if (m_blFullScreen) ExitFullScreen();
}

void CLS_DlgQuillPlayer::EnterFullScreen()
{
    // The cursor's screen is only the condition; the geometry is the dialog's.
    const QPoint ptCursor = QCursor::pos();
    bool blOnScreen = false;
    for (QScreen* pScreen : QGuiApplication::screens()) {
        if (pScreen->geometry().contains(ptCursor)) {
            blOnScreen = true;
            break;
        }
    }
    if (!blOnScreen) return;

    if (m_pTopBar) m_pTopBar->hide();
    for (QLabel* pLabel : {m_pLabelLeft, m_pLabelRight, m_pLabelBottom})
        if (pLabel) pLabel->hide();

    if (m_pMainBody) {
        m_pMainBody->setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        QRect rectTarget;
        if (QScreen* pScreen = screen()) {
            rectTarget = pScreen->availableGeometry();
            // One pixel short of the screen, so the window system does not
            // treat it as an exclusive full-screen surface.
            rectTarget.setBottom(rectTarget.bottom() - 1);
        }
        m_pMainBody->showNormal();
        m_pMainBody->setGeometry(rectTarget);
        winId();
        if (auto pfnSetHasBorder = reinterpret_cast<SetHasBorderFn>(
                QGuiApplication::platformFunction("WindowsSetHasBorderInFullScreen"))) {
            if (QWindow* pWindow = m_pMainBody->windowHandle()) pfnSetHasBorder(pWindow, true);
        }
        m_pMainBody->showFullScreen();
        m_pMainBody->SetFullScreen(true);
    }
    m_blFullScreen = true;
}

void CLS_DlgQuillPlayer::ExitFullScreen()
{
    if (m_pMainBody) m_pMainBody->SetFullScreen(false);
    m_blFullScreen = false;
    if (m_pTopBar) m_pTopBar->show();
    for (QLabel* pLabel : {m_pLabelLeft, m_pLabelRight, m_pLabelBottom})
        if (pLabel) pLabel->show();
    if (m_pMainBody) {
        m_pMainBody->setWindowFlags(Qt::SubWindow);
        m_pMainBody->showNormal();
    }
}

bool CLS_DlgQuillPlayer::event(QEvent* _pEvent)
{
    if (_pEvent->type() == QEvent::KeyPress) {
        const int iKey = static_cast<QKeyEvent*>(_pEvent)->key();
        if (iKey == Qt::Key_Escape) {
            if (m_blFullScreen) ExitFullScreen();
            return true;
        }
        if (iKey == Qt::Key_Space && m_pMainBody) m_pMainBody->PlayOrPause();
    }
    return CLS_ViewBasic::event(_pEvent);
}

void CLS_DlgQuillPlayer::mousePressEvent(QMouseEvent* _pEvent)
{
    if (_pEvent->button() == Qt::LeftButton) {
        m_blDragging = true;
        m_ptDragOffset = _pEvent->globalPos() - pos();
    }
    CLS_ViewBasic::mousePressEvent(_pEvent);
}

void CLS_DlgQuillPlayer::mouseMoveEvent(QMouseEvent* _pEvent)
{
    if (m_blDragging && (_pEvent->buttons() & Qt::LeftButton)) {
        const QPoint ptTarget = _pEvent->globalPos() - m_ptDragOffset;
        // On the target itself, not on the distance moved: the window never
        // lands with its corner right at the origin.
        if (ptTarget.manhattanLength() > QApplication::startDragDistance()) {
            move(ptTarget);
            m_ptDragOffset = _pEvent->globalPos() - pos();
        }
    }
    CLS_ViewBasic::mouseMoveEvent(_pEvent);
}

void CLS_DlgQuillPlayer::mouseReleaseEvent(QMouseEvent*)
{
    m_blDragging = false;
}
