#include "CLS_PlayerToolButton.h"

#include <QStyle>
#include <QVariant>

CLS_PlayerToolButton::CLS_PlayerToolButton(QWidget* _pParent) : QToolButton(nullptr)
{
    setParent(_pParent);
    // Present from the start, so the skin's state rules apply before the
    // player first reports anything.
    setProperty("state", m_iState);
}

void CLS_PlayerToolButton::SetState(int _iState)
{
    m_iState = _iState;
    setProperty("state", _iState);
    // Style sheets do not watch dynamic properties; without a re-polish the
    // old icon would stay until something else restyled the button.
    style()->unpolish(this);
    style()->polish(this);
}
