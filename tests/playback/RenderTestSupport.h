#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QString>
#include <QtTest>

#include <vector>

// Pixel checks shared by the render widget and video output tests.
namespace RenderTest {

struct Yuv
{
    int y, u, v;
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
            return QStringLiteral("pixel (%1,%2) is (%3,%4,%5), expected %6")
                .arg(e.pt.x())
                .arg(e.pt.y())
                .arg(got.red())
                .arg(got.green())
                .arg(got.blue())
                .arg(e.color.name());
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
