#pragma once

#include <QColor>
#include <QGuiApplication>
#include <QImage>
#include <QOpenGLWidget>
#include <QPoint>
#include <QScreen>
#include <QString>
#include <QtTest>

#include <vector>

#include "QGLRenderApi.h"

// Pixel checks and a shown render widget, shared by the render widget and
// video output tests.
namespace RenderTest {

struct Yuv
{
    int y, u, v;
};

// Limited-range BT.601 primaries and white, BT.709 red, and how they show.
constexpr Yuv g_yuvRed601{81, 90, 240}, g_yuvGreen601{145, 54, 34}, g_yuvBlue601{41, 240, 110},
    g_yuvWhite{235, 128, 128}, g_yuvRed709{63, 102, 240};
inline const QColor g_red(255, 0, 0), g_green(0, 255, 0), g_blue(0, 0, 255), g_white(Qt::white),
    g_black(Qt::black);

// A widget made by QGL_Create, shown at a known size, released at the end
// unless the test did so already. Either kind: an OpenGL widget, or the
// native window handed out where OpenGL would draw on the CPU.
class ShownWidget
{
public:
    explicit ShownWidget(const QSize& _size = QSize(320, 240))
        : m_pHandle(QGL_Create(nullptr)), m_pWidget(static_cast<QWidget*>(m_pHandle))
    {
        if (!m_pWidget) return;
        m_pWidget->resize(_size);
        m_pWidget->show();
    }
    ~ShownWidget()
    {
        if (QGL_IsRenderWidget(m_pHandle)) QGL_Release(m_pHandle);
    }
    Q_DISABLE_COPY(ShownWidget)
    bool Ready() { return m_pWidget && QTest::qWaitForWindowExposed(m_pWidget); }
    void* Handle() const { return m_pHandle; }
    QOpenGLWidget* Widget() const { return qobject_cast<QOpenGLWidget*>(m_pWidget); }
    QImage Grab() const
    {
        if (QOpenGLWidget* pGl = Widget()) return pGl->grabFramebuffer();
        return QGuiApplication::primaryScreen()->grabWindow(m_pWidget->winId()).toImage();
    }

private:
    void* m_pHandle;
    QWidget* m_pWidget;
};

struct Expect
{
    QPoint pt;
    QColor color;
};

// Empty when every listed pixel has its colour within _iTolerance per
// channel, else a description of the first that has not.
inline QString Mismatch(const QImage& _image, const std::vector<Expect>& _vecExpected,
                        int _iTolerance = 6)
{
    for (const Expect& e : _vecExpected) {
        if (!_image.rect().contains(e.pt)) return QStringLiteral("image too small");
        const QColor got = _image.pixelColor(e.pt);
        if (qAbs(got.red() - e.color.red()) > _iTolerance ||
            qAbs(got.green() - e.color.green()) > _iTolerance ||
            qAbs(got.blue() - e.color.blue()) > _iTolerance) {
            return QStringLiteral("pixel (%1,%2) is %3, expected %4")
                .arg(e.pt.x())
                .arg(e.pt.y())
                .arg(got.name(), e.color.name());
        }
    }
    return QString();
}

}  // namespace RenderTest

// QVERIFY for a list of pixels: VERIFY_PIXELS(image, {{{x, y}, colour}, ...}).
#define VERIFY_PIXELS(image, ...)                                                 \
    do {                                                                          \
        const QString qstrMismatch_ = RenderTest::Mismatch((image), __VA_ARGS__); \
        QVERIFY2(qstrMismatch_.isEmpty(), qPrintable(qstrMismatch_));             \
    } while (false)
