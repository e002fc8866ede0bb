#pragma once

#include <QString>
#include <QWidget>

class MainWindow;

namespace Ui {
class CLS_WgtPlayerMainBody;
}

// The dialog's video area: hosts the playback controller, passes the
// dialog's requests on to it, and is the widget that goes full screen on its
// own. It swallows every key that reaches it.
class CLS_WgtPlayerMainBody : public QWidget
{
    Q_OBJECT
public:
    explicit CLS_WgtPlayerMainBody(QWidget* _pParent = nullptr);
    ~CLS_WgtPlayerMainBody() override;

    void PlayOrPause();
    void SetFullScreen(bool _blFullScreen);
    void OpenVideoFile(const QString& _qstrFilePath, long _lStartTime);

signals:
    void SignDealCloseAppFinished();
    void SignCloseApp();
    void SignFullScreen();
    void SignEscapeFullScreen();

protected:
    void keyPressEvent(QKeyEvent* _pEvent) override;

private:
    Ui::CLS_WgtPlayerMainBody* ui;
    bool m_blFullScreen = false;
    MainWindow* m_pMainWindow = nullptr;
};
