#pragma once

#include <QSlider>

// A slider that jumps to the point clicked instead of paging, reports the value
// under the mouse when the button comes up, and can show two cut marks with the
// stretch between them. Used for both the progress and the volume of the
// control bar.
class CLS_WgtPlayerSlider : public QSlider
{
    Q_OBJECT

public:
    explicit CLS_WgtPlayerSlider(QWidget* _pParent = nullptr);

    // Places both cut marks at once: positions as ratios of the width (clamped
    // to 0..1), each with the slider value it stands for. Repaints.
    void SetCutPos(double _dFirstRatio, int _iFirstValue, double _dSecondRatio, int _iSecondValue);

    bool IsFirstCutSet() const { return m_blFirstCut; }
    bool IsSecondCutSet() const { return m_blSecondCut; }
    int GetFirstCutValue() const { return m_iFirstCutValue; }
    int GetSecondCutValue() const { return m_iSecondCutValue; }

signals:
    void SendCutPos(int _iFirstPos, int _SecondPos);
    void SliderClick(int _iPos);

public slots:
    void ClearCutPos();

protected:
    void mousePressEvent(QMouseEvent* _pEvent) override;
    void mouseReleaseEvent(QMouseEvent* _pEvent) override;
    void paintEvent(QPaintEvent* _pEvent) override;

private:
    // x as a share of the width; a zero-width slider counts as one pixel wide
    // so a synthetic event cannot divide by zero.
    double RatioAt(double _dX) const;
    int ValueAtRatio(double _dRatio) const;

    bool m_blFirstCut = false;
    double m_dFirstCutRatio = 0.0;
    int m_iFirstCutValue = 0;
    bool m_blSecondCut = false;
    double m_dSecondCutRatio = 0.0;
    int m_iSecondCutValue = 0;
    double m_dLastClickRatio = 0.0;
    int m_iLastClickValue = 0;
};
