#pragma once

#include <QWidget>

// The render widget handed out when OpenGL would draw on the CPU anyway: a
// bare native child window that the engine scales pictures into itself. The
// toolkit never paints it, so it cannot overwrite a picture; the engine
// redraws on expose and resize.
class CLS_QGLNativeVideoWidget : public QWidget
{
    Q_OBJECT

public:
    explicit CLS_QGLNativeVideoWidget(QWidget* _pParent = nullptr);
    ~CLS_QGLNativeVideoWidget() override;

    QPaintEngine* paintEngine() const override { return nullptr; }

protected:
    bool event(QEvent* _pEvent) override;
    void paintEvent(QPaintEvent*) override {}
};
