#include "CLS_VideoZoom.h"

#include <QEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <cmath>

CLS_VideoZoom::CLS_VideoZoom(QWidget* _pArea, std::function<QSize()> _fnPictureSize)
    : QObject(_pArea), m_pArea(_pArea), m_fnPictureSize(std::move(_fnPictureSize))
{
    // Events the render widget inside ignores come up to the area.
    m_pArea->installEventFilter(this);
}

QRectF CLS_VideoZoom::PictureRect() const
{
    const QSizeF sizeArea = m_pArea->size();
    const QSize sizePicture = m_fnPictureSize ? m_fnPictureSize() : QSize();
    if (sizePicture.isEmpty() || sizeArea.isEmpty()) return QRectF(QPointF(), sizeArea);
    const QSizeF sizeFit = QSizeF(sizePicture).scaled(sizeArea, Qt::KeepAspectRatio);
    return QRectF(QPointF((sizeArea.width() - sizeFit.width()) / 2,
                          (sizeArea.height() - sizeFit.height()) / 2),
                  sizeFit);
}

void CLS_VideoZoom::ZoomAt(const QPoint& _posArea, int _iAngle)
{
    const double dScale =
        std::clamp(Scale() * std::pow(kNotchFactor, _iAngle / 120.0), 1.0, kMaxScale);
    const QRectF rectPicture = PictureRect();
    if (rectPicture.isEmpty()) return;
    // The cursor's place in the part on show, and the picture point there.
    const double dFx = std::clamp((_posArea.x() - rectPicture.x()) / rectPicture.width(), 0.0, 1.0);
    const double dFy =
        std::clamp((_posArea.y() - rectPicture.y()) / rectPicture.height(), 0.0, 1.0);
    const double dPx = m_rectView.x() + dFx * m_rectView.width();
    const double dPy = m_rectView.y() + dFy * m_rectView.height();
    const double dSide = 1.0 / dScale;
    SetView(QRectF(dPx - dFx * dSide, dPy - dFy * dSide, dSide, dSide));
}

void CLS_VideoZoom::Pan(const QPoint& _delta)
{
    const QRectF rectPicture = PictureRect();
    if (rectPicture.isEmpty()) return;
    SetView(m_rectView.translated(-_delta.x() / rectPicture.width() * m_rectView.width(),
                                  -_delta.y() / rectPicture.height() * m_rectView.height()));
}

void CLS_VideoZoom::Reset()
{
    m_blDragging = false;
    SetView(QRectF(0.0, 0.0, 1.0, 1.0));
}

void CLS_VideoZoom::SetView(const QRectF& _rectView)
{
    QRectF rect = _rectView;
    // Within the picture; at 1x exactly the whole of it, so a reset letterboxes
    // as before any zoom.
    if (rect.width() >= 1.0 - 1e-9) {
        rect = QRectF(0.0, 0.0, 1.0, 1.0);
    } else {
        rect.moveLeft(std::clamp(rect.x(), 0.0, 1.0 - rect.width()));
        rect.moveTop(std::clamp(rect.y(), 0.0, 1.0 - rect.height()));
    }
    if (rect == m_rectView) return;
    m_rectView = rect;
    emit SignViewChanged(m_rectView);
}

bool CLS_VideoZoom::eventFilter(QObject* _pWatched, QEvent* _pEvent)
{
    if (_pWatched != m_pArea) return QObject::eventFilter(_pWatched, _pEvent);
    switch (_pEvent->type()) {
        case QEvent::Wheel: {
            auto* pWheel = static_cast<QWheelEvent*>(_pEvent);
            ZoomAt(pWheel->position().toPoint(), pWheel->angleDelta().y());
            return true;
        }
        case QEvent::MouseButtonPress: {
            auto* pMouse = static_cast<QMouseEvent*>(_pEvent);
            if (pMouse->button() != Qt::LeftButton || Scale() <= 1.0) break;
            m_blDragging = true;
            m_posLast = pMouse->pos();
            return true;
        }
        case QEvent::MouseMove: {
            if (!m_blDragging) break;
            auto* pMouse = static_cast<QMouseEvent*>(_pEvent);
            Pan(pMouse->pos() - m_posLast);
            m_posLast = pMouse->pos();
            return true;
        }
        case QEvent::MouseButtonRelease:
            if (!m_blDragging) break;
            m_blDragging = false;
            return true;
        default:
            break;
    }
    return QObject::eventFilter(_pWatched, _pEvent);
}
