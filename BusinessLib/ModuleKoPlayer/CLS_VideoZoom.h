#pragma once

#include <QObject>
#include <QPoint>
#include <QRectF>
#include <QSize>

#include <functional>

class QWidget;

// Digital zoom of the video area: the wheel zooms around the cursor (1x to
// 8x), a drag pans while zoomed. The state is the part of the picture on
// show, in fractions of its width and height; the player magnifies that part
// into the place the whole picture takes, so the bars never move.
//
// Unzoomed, mouse events pass on untouched (the dialog is dragged by them).
class CLS_VideoZoom : public QObject
{
    Q_OBJECT
public:
    static constexpr double kMaxScale = 8.0;
    // One wheel notch (120 units) multiplies the scale by this.
    static constexpr double kNotchFactor = 1.25;

    // _fnPictureSize: the display size of the picture on screen, empty when none.
    CLS_VideoZoom(QWidget* _pArea, std::function<QSize()> _fnPictureSize);

    double Scale() const { return 1.0 / m_rectView.width(); }
    QRectF View() const { return m_rectView; }

    // Zooms by _iAngle wheel units (120 a notch; negative zooms out) keeping
    // the picture point under _posArea (area coordinates) where it is.
    void ZoomAt(const QPoint& _posArea, int _iAngle);
    // Moves the picture by _delta pixels of the area.
    void Pan(const QPoint& _delta);
    void Reset();

signals:
    void SignViewChanged(QRectF _rectView);

protected:
    bool eventFilter(QObject* _pWatched, QEvent* _pEvent) override;

private:
    // Where the whole picture lies in the area; the area itself when unknown.
    QRectF PictureRect() const;
    void SetView(const QRectF& _rectView);

    QWidget* m_pArea = nullptr;
    std::function<QSize()> m_fnPictureSize;
    QRectF m_rectView{0.0, 0.0, 1.0, 1.0};
    bool m_blDragging = false;
    QPoint m_posLast;
};
