#include "CLS_WgtPlayerSlider.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// The stretch between two cuts leaves this much of the groove visible above
// and below it, so the yellow marks still stand out at their ends.
constexpr int kStretchInset = 7;

}  // namespace

CLS_WgtPlayerSlider::CLS_WgtPlayerSlider(QWidget* _pParent) : QSlider(_pParent) {}

void CLS_WgtPlayerSlider::SetCutPos(double _dFirstRatio, int _iFirstValue, double _dSecondRatio,
                                    int _iSecondValue)
{
    // A NaN would make the pixel position undefined; such a mark is not placed.
    m_blFirstCut = std::isfinite(_dFirstRatio);
    m_dFirstCutRatio = m_blFirstCut ? std::clamp(_dFirstRatio, 0.0, 1.0) : 0.0;
    m_iFirstCutValue = m_blFirstCut ? _iFirstValue : 0;
    m_blSecondCut = std::isfinite(_dSecondRatio);
    m_dSecondCutRatio = m_blSecondCut ? std::clamp(_dSecondRatio, 0.0, 1.0) : 0.0;
    m_iSecondCutValue = m_blSecondCut ? _iSecondValue : 0;
    update();
}

void CLS_WgtPlayerSlider::ClearCutPos()
{
    m_blFirstCut = false;
    m_dFirstCutRatio = 0.0;
    m_iFirstCutValue = 0;
    m_blSecondCut = false;
    m_dSecondCutRatio = 0.0;
    m_iSecondCutValue = 0;
    update();
}

double CLS_WgtPlayerSlider::RatioAt(double _dX) const
{
    const int iWidth = std::max(1, width());
    return _dX / iWidth;
}

int CLS_WgtPlayerSlider::ValueAtRatio(double _dRatio) const
{
    const double dValue =
        minimum() + (static_cast<double>(maximum()) - static_cast<double>(minimum())) * _dRatio;
    // Widget coordinates keep this far inside int; the clamp only guards
    // against synthetic events from very far away.
    return static_cast<int>(std::clamp(dValue, -2147483648.0, 2147483647.0));
}

void CLS_WgtPlayerSlider::mousePressEvent(QMouseEvent* _pEvent)
{
    QSlider::mousePressEvent(_pEvent);
    setValue(ValueAtRatio(RatioAt(_pEvent->localPos().x())));
}

void CLS_WgtPlayerSlider::mouseReleaseEvent(QMouseEvent* _pEvent)
{
    QSlider::mouseReleaseEvent(_pEvent);
    // Computed from where the button came up, not from the slider's value: a
    // drag ends where the user let go, and a release beyond either end passes
    // its out-of-range value on for the receiver to judge.
    m_dLastClickRatio = RatioAt(_pEvent->localPos().x());
    m_iLastClickValue = ValueAtRatio(m_dLastClickRatio);
    emit SliderClick(m_iLastClickValue);
}

void CLS_WgtPlayerSlider::paintEvent(QPaintEvent* _pEvent)
{
    QSlider::paintEvent(_pEvent);
    if (!m_blFirstCut && !m_blSecondCut) return;

    QPainter painter(this);
    const int iWidth = width();
    const int iHeight = height();
    const auto fnMark = [&](double _dRatio) {
        const int iPx = static_cast<int>(iWidth * _dRatio);
        painter.fillRect(QRect(QPoint(iPx, 0), QPoint(iPx + 1, iHeight - 1)), Qt::yellow);
        return iPx;
    };
    const int iPx1 = m_blFirstCut ? fnMark(m_dFirstCutRatio) : -1;
    const int iPx2 = m_blSecondCut ? fnMark(m_dSecondCutRatio) : -1;
    if (m_blFirstCut && m_blSecondCut && iPx1 >= 0 && iPx2 >= 0 && iPx1 != iPx2) {
        painter.fillRect(QRect(QPoint(std::min(iPx1, iPx2), kStretchInset),
                               QPoint(std::max(iPx1, iPx2) + 1, iHeight - 1 - kStretchInset)),
                         Qt::red);
    }
}
