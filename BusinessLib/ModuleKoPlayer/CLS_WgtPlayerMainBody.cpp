#include "CLS_WgtPlayerMainBody.h"

#include "MainWindow.h"
#include "ui_CLS_WgtPlayerMainBody.h"

#include <QKeyEvent>
#include <QVBoxLayout>

CLS_WgtPlayerMainBody::CLS_WgtPlayerMainBody(QWidget* _pParent)
    : QWidget(_pParent), ui(new Ui::CLS_WgtPlayerMainBody)
{
    ui->setupUi(this);
    m_pMainWindow = new MainWindow(this);
    auto* pLayout = new QVBoxLayout(ui->widget_video);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pMainWindow);

    connect(this, &CLS_WgtPlayerMainBody::SignCloseApp, m_pMainWindow, &MainWindow::SlotCloseApp);
    connect(m_pMainWindow, &MainWindow::SignDealCloseApp, this,
            &CLS_WgtPlayerMainBody::SignDealCloseAppFinished);
    connect(m_pMainWindow, &MainWindow::SignFullScreen, this, [this]() { emit SignFullScreen(); });
}

CLS_WgtPlayerMainBody::~CLS_WgtPlayerMainBody()
{
    delete ui;
}

void CLS_WgtPlayerMainBody::PlayOrPause()
{
    if (m_pMainWindow)
        QMetaObject::invokeMethod(m_pMainWindow, "SlotVideoPlayOrPause", Qt::DirectConnection);
}

void CLS_WgtPlayerMainBody::SetFullScreen(bool _blFullScreen)
{
    m_blFullScreen = _blFullScreen;
    if (m_pMainWindow) m_pMainWindow->SetFullScreen(_blFullScreen);
}

void CLS_WgtPlayerMainBody::OpenVideoFile(const QString& _qstrFilePath, long _lStartTime)
{
    if (m_pMainWindow)
        QMetaObject::invokeMethod(m_pMainWindow, "SlotContinuePlay", Qt::DirectConnection,
                                  Q_ARG(QString, _qstrFilePath), Q_ARG(long, _lStartTime));
}

void CLS_WgtPlayerMainBody::keyPressEvent(QKeyEvent* _pEvent)
{
    if (_pEvent->key() == Qt::Key_Escape)
        emit SignEscapeFullScreen();
    else if (_pEvent->key() == Qt::Key_Space)
        PlayOrPause();
    // Every key ends here: none reaches the dialog twice.
    _pEvent->accept();
}
