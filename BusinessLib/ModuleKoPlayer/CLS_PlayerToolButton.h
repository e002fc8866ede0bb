#pragma once

#include <QToolButton>

// A tool button whose look follows an integer "state" property: the skin's
// rules on [state="..."] pick the icon (play/pause, sound on/off).
class CLS_PlayerToolButton : public QToolButton
{
    Q_OBJECT

public:
    explicit CLS_PlayerToolButton(QWidget* _pParent = nullptr);

    void SetState(int _iState);
    int GetState() const { return m_iState; }

private:
    int m_iState = 0;
};
