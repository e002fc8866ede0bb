// The render widget library through its C entry points, drawing under Xvfb:
// what the engine and the module see, checked on the pixels.

#include <QOpenGLContext>
#include <QOpenGLWidget>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

#include "QGLRenderApi.h"
#include "RenderTestSupport.h"

using RenderTest::Yuv;

namespace {

// A picture in one of the four layouts, split into four quadrants of given
// colours (top left, top right, bottom left, bottom right).
class TestPicture
{
public:
    TestPicture(int _iFormat, int _iWidth, int _iHeight, const Yuv (&_aQuad)[4])
    {
        m_frame.format = _iFormat;
        m_frame.width = _iWidth;
        m_frame.height = _iHeight;
        const int iCw = (_iFormat == QGL_PIX_YUV444P) ? _iWidth : (_iWidth + 1) / 2;
        const int iCh = (_iFormat == QGL_PIX_YUV420P || _iFormat == QGL_PIX_NV12)
                            ? (_iHeight + 1) / 2
                            : _iHeight;
        // Padded rows, as a decoder hands them out.
        const int iYStride = _iWidth + 32;
        const int iCStride = (_iFormat == QGL_PIX_NV12 ? 2 * iCw : iCw) + 16;
        m_vecPlanes[0].assign(static_cast<size_t>(iYStride) * _iHeight, 0);
        for (int r = 0; r < _iHeight; ++r) {
            for (int c = 0; c < _iWidth; ++c) {
                m_vecPlanes[0][r * iYStride + c] =
                    uint8_t(Quad(_aQuad, c * 2 >= _iWidth, r * 2 >= _iHeight).y);
            }
        }
        const int iChromaPlanes = _iFormat == QGL_PIX_NV12 ? 1 : 2;
        for (int p = 1; p <= iChromaPlanes; ++p) {
            m_vecPlanes[p].assign(static_cast<size_t>(iCStride) * iCh, 0);
            for (int r = 0; r < iCh; ++r) {
                for (int c = 0; c < iCw; ++c) {
                    const Yuv& q = Quad(_aQuad, c * 2 >= iCw, r * 2 >= iCh);
                    if (_iFormat == QGL_PIX_NV12) {
                        m_vecPlanes[p][r * iCStride + 2 * c] = uint8_t(q.u);
                        m_vecPlanes[p][r * iCStride + 2 * c + 1] = uint8_t(q.v);
                    } else {
                        m_vecPlanes[p][r * iCStride + c] = uint8_t(p == 1 ? q.u : q.v);
                    }
                }
            }
        }
        m_frame.data[0] = m_vecPlanes[0].data();
        m_frame.linesize[0] = iYStride;
        for (int p = 1; p <= iChromaPlanes; ++p) {
            m_frame.data[p] = m_vecPlanes[p].data();
            m_frame.linesize[p] = iCStride;
        }
        m_frame.sarNum = m_frame.sarDen = 1;
    }

    QGL_Frame& Frame() { return m_frame; }

private:
    static const Yuv& Quad(const Yuv (&_aQuad)[4], bool _blRight, bool _blBottom)
    {
        return _aQuad[(_blBottom ? 2 : 0) + (_blRight ? 1 : 0)];
    }

    QGL_Frame m_frame{};
    std::vector<uint8_t> m_vecPlanes[3];
};

TestPicture Uniform(const Yuv& _yuv, int _iWidth = 320, int _iHeight = 240,
                    int _iFormat = QGL_PIX_YUV420P)
{
    const Yuv aQuad[4] = {_yuv, _yuv, _yuv, _yuv};
    return TestPicture(_iFormat, _iWidth, _iHeight, aQuad);
}

const Yuv g_yuvRed601{81, 90, 240};
const Yuv g_yuvGreen601{145, 54, 34};
const Yuv g_yuvBlue601{41, 240, 110};
const Yuv g_yuvWhite{235, 128, 128};
const QColor g_red(254, 0, 0), g_green(0, 255, 1), g_blue(0, 0, 255), g_white(Qt::white),
    g_black(Qt::black);

// A widget made by QGL_Create, shown at a known size, released at the end
// unless the test did so already.
class ShownWidget
{
public:
    explicit ShownWidget(const QSize& _size)
        : m_pHandle(QGL_Create(nullptr)),
          m_pWidget(qobject_cast<QOpenGLWidget*>(static_cast<QWidget*>(m_pHandle)))
    {
        if (!m_pWidget) return;
        m_pWidget->resize(_size);
        m_pWidget->show();
    }
    ~ShownWidget()
    {
        if (QGL_IsRenderWidget(m_pHandle)) QGL_Release(m_pHandle);
    }
    bool Ready() { return m_pWidget && QTest::qWaitForWindowExposed(m_pWidget); }
    void* Handle() const { return m_pHandle; }
    QOpenGLWidget* Widget() const { return m_pWidget; }
    QImage Grab() const { return m_pWidget->grabFramebuffer(); }

private:
    void* m_pHandle;
    QOpenGLWidget* m_pWidget;
};

}  // namespace

class TestQGLRenderWidget : public QObject
{
    Q_OBJECT

private slots:
    void lifecycleAndRegistry();
    void letterbox_data();
    void letterbox();
    void colourConversion_data();
    void colourConversion();
    void layoutsAgree();
    void bottomUpRowsAndRefusedFrames();
    void clearAndResize();
    void sharedPicturesGoBackOnce();
    void reparentKeepsPicture();
    void pushFromWorkerRepaints();
    void pushRacingRelease();
    void cleanupTestCase() { m_pColourWidget.reset(); }

private:
    std::unique_ptr<ShownWidget> m_pColourWidget;
};

void TestQGLRenderWidget::lifecycleAndRegistry()
{
    void* pHandle = QGL_Create(nullptr);
    QVERIFY(pHandle);
    QVERIFY(qobject_cast<QOpenGLWidget*>(static_cast<QWidget*>(pHandle)));
    QCOMPARE(QGL_IsRenderWidget(pHandle), 1);
    QCOMPARE(QGL_Release(pHandle), 0);
    QCOMPARE(QGL_IsRenderWidget(pHandle), 0);
    QCOMPARE(QGL_Release(pHandle), -1);
    TestPicture picture = Uniform(g_yuvWhite);
    QCOMPARE(QGL_PushFrame(pHandle, &picture.Frame()), -1);
    QCOMPARE(QGL_Clear(pHandle), -1);
    QCOMPARE(QGL_IsRenderWidget(nullptr), 0);
    QCOMPARE(QGL_Release(nullptr), -1);

    // The module hands its plain render surface to QGL_Release as well: it
    // must be refused and left alone.
    QWidget plain;
    QCOMPARE(QGL_Release(&plain), -1);
    QCOMPARE(QGL_IsRenderWidget(&plain), 0);

    // A widget deleted by its parent leaves the registry too, so the engine
    // cannot push into freed memory.
    auto* pParent = new QWidget;
    void* pChild = QGL_Create(pParent);
    QVERIFY(pChild);
    QCOMPARE(static_cast<QWidget*>(pChild)->parentWidget(), pParent);
    delete pParent;
    QCOMPARE(QGL_IsRenderWidget(pChild), 0);
    QCOMPARE(QGL_PushFrame(pChild, &picture.Frame()), -1);
    QCOMPARE(QGL_Release(pChild), -1);
}

void TestQGLRenderWidget::letterbox_data()
{
    QTest::addColumn<QSize>("pictureSize");
    QTest::addColumn<int>("sarNum");
    QTest::addColumn<int>("sarDen");
    QTest::addColumn<QSize>("widgetSize");
    QTest::addColumn<QRect>("expected");

    QTest::newRow("4:3 in 16:9, bars left and right")
        << QSize(320, 240) << 1 << 1 << QSize(640, 360) << QRect(80, 0, 480, 360);
    QTest::newRow("4:3 coded, 4:3 pixels fill 16:9")
        << QSize(320, 240) << 4 << 3 << QSize(640, 360) << QRect(0, 0, 640, 360);
    QTest::newRow("704x576 with 12:11 pixels in 16:9")
        << QSize(704, 576) << 12 << 11 << QSize(640, 360) << QRect(80, 0, 480, 360);
    QTest::newRow("16:9 in a square, bars top and bottom")
        << QSize(640, 360) << 1 << 1 << QSize(400, 400) << QRect(0, 88, 400, 225);
    QTest::newRow("unknown aspect 0/0 counts as square")
        << QSize(320, 240) << 0 << 0 << QSize(640, 360) << QRect(80, 0, 480, 360);
}

void TestQGLRenderWidget::letterbox()
{
    QFETCH(QSize, pictureSize);
    QFETCH(int, sarNum);
    QFETCH(int, sarDen);
    QFETCH(QSize, widgetSize);
    QFETCH(QRect, expected);

    ShownWidget shown(widgetSize);
    QVERIFY(shown.Ready());
    TestPicture picture = Uniform(g_yuvWhite, pictureSize.width(), pictureSize.height());
    picture.Frame().sarNum = sarNum;
    picture.Frame().sarDen = sarDen;
    QCOMPARE(QGL_PushFrame(shown.Handle(), &picture.Frame()), 0);
    const QImage image = shown.Grab();
    QCOMPARE(image.size(), widgetSize);

    // Two pixels either side of each edge of the expected picture area: one
    // pixel of rounding is allowed, a wrong aspect is not.
    const int m = 2;
    const QPoint c = expected.center();
    std::vector<RenderTest::Expect> vecExpected = {{c, g_white},
                                                   {{expected.left() + m, c.y()}, g_white},
                                                   {{expected.right() - m, c.y()}, g_white},
                                                   {{c.x(), expected.top() + m}, g_white},
                                                   {{c.x(), expected.bottom() - m}, g_white}};
    const QPoint aOutside[] = {{expected.left() - 1 - m, c.y()},
                               {expected.right() + 1 + m, c.y()},
                               {c.x(), expected.top() - 1 - m},
                               {c.x(), expected.bottom() + 1 + m}};
    for (const QPoint& pt : aOutside) {
        if (image.rect().contains(pt)) vecExpected.push_back({pt, g_black});
    }
    VERIFY_PIXELS(image, vecExpected, 4);
}

void TestQGLRenderWidget::colourConversion_data()
{
    QTest::addColumn<int>("matrix");
    QTest::addColumn<int>("fullRange");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("u");
    QTest::addColumn<int>("v");
    QTest::addColumn<QColor>("expected");

    const int b601 = QGL_MATRIX_BT601, b709 = QGL_MATRIX_BT709;
    QTest::newRow("601 limited red") << b601 << 0 << 81 << 90 << 240 << QColor(254, 0, 0);
    QTest::newRow("601 limited blue") << b601 << 0 << 41 << 240 << 110 << QColor(0, 0, 255);
    QTest::newRow("601 limited white") << b601 << 0 << 235 << 128 << 128 << QColor(255, 255, 255);
    QTest::newRow("601 limited black") << b601 << 0 << 16 << 128 << 128 << QColor(0, 0, 0);
    QTest::newRow("601 limited mid") << b601 << 0 << 120 << 100 << 160 << QColor(172, 106, 65);
    QTest::newRow("709 limited red") << b709 << 0 << 63 << 102 << 240 << QColor(255, 1, 0);
    QTest::newRow("709 limited blue") << b709 << 0 << 32 << 240 << 118 << QColor(1, 0, 255);
    QTest::newRow("601 full red") << b601 << 1 << 76 << 85 << 255 << QColor(254, 0, 0);
    QTest::newRow("601 full grey") << b601 << 1 << 200 << 128 << 128 << QColor(200, 200, 200);
    QTest::newRow("709 full mid") << b709 << 1 << 120 << 100 << 160 << QColor(170, 110, 68);
}

void TestQGLRenderWidget::colourConversion()
{
    QFETCH(int, matrix);
    QFETCH(int, fullRange);
    QFETCH(int, y);
    QFETCH(int, u);
    QFETCH(int, v);
    QFETCH(QColor, expected);

    // One widget for all rows keeps this quick.
    if (!m_pColourWidget) {
        m_pColourWidget = std::make_unique<ShownWidget>(QSize(160, 120));
        QVERIFY(m_pColourWidget->Ready());
        const QSurfaceFormat format = m_pColourWidget->Widget()->context()->format();
        qInfo() << "context:"
                << (m_pColourWidget->Widget()->context()->isOpenGLES() ? "GLES" : "GL")
                << format.majorVersion() << format.minorVersion() << format.profile();
    }
    ShownWidget* pShown = m_pColourWidget.get();
    TestPicture picture = Uniform({y, u, v}, 64, 48);
    picture.Frame().matrix = matrix;
    picture.Frame().fullRange = fullRange;
    QCOMPARE(QGL_PushFrame(pShown->Handle(), &picture.Frame()), 0);
    VERIFY_PIXELS(pShown->Grab(), {{{80, 60}, expected}}, 4);
}

void TestQGLRenderWidget::layoutsAgree()
{
    const Yuv aQuad[4] = {g_yuvRed601, g_yuvGreen601, g_yuvBlue601, g_yuvWhite};
    const std::vector<RenderTest::Expect> vecCentres = {
        {{80, 60}, g_red}, {{240, 60}, g_green}, {{80, 180}, g_blue}, {{240, 180}, g_white}};
    ShownWidget shown(QSize(320, 240));
    QVERIFY(shown.Ready());

    auto render = [&](int _iFormat) {
        TestPicture picture(_iFormat, 320, 240, aQuad);
        return QGL_PushFrame(shown.Handle(), &picture.Frame()) == 0 ? shown.Grab() : QImage();
    };
    const QImage image420 = render(QGL_PIX_YUV420P);
    VERIFY_PIXELS(image420, vecCentres, 4);

    // NV12 carries the same samples interleaved: the result must match
    // 4:2:0 planar everywhere, quadrant edges included.
    const QImage imageNv12 = render(QGL_PIX_NV12);
    QCOMPARE(imageNv12.size(), image420.size());
    int iWorst = 0;
    for (int r = 0; r < image420.height(); ++r) {
        for (int c = 0; c < image420.width(); ++c) {
            const QRgb a = image420.pixel(c, r), b = imageNv12.pixel(c, r);
            iWorst = qMax(iWorst, qMax(qAbs(qRed(a) - qRed(b)), qMax(qAbs(qGreen(a) - qGreen(b)),
                                                                     qAbs(qBlue(a) - qBlue(b)))));
        }
    }
    QVERIFY2(iWorst <= 1, qPrintable(QStringLiteral("NV12 differs by %1").arg(iWorst)));

    // Other chroma resolutions differ only near the quadrant edges.
    VERIFY_PIXELS(render(QGL_PIX_YUV422P), vecCentres, 4);
    VERIFY_PIXELS(render(QGL_PIX_YUV444P), vecCentres, 4);
}

void TestQGLRenderWidget::bottomUpRowsAndRefusedFrames()
{
    ShownWidget shown(QSize(320, 240));
    QVERIFY(shown.Ready());
    const Yuv aQuad[4] = {g_yuvRed601, g_yuvRed601, g_yuvBlue601, g_yuvBlue601};
    TestPicture picture(QGL_PIX_YUV420P, 320, 240, aQuad);

    // Negative line sizes walk the picture from its last row: the blue half
    // must come out on top.
    QGL_Frame flipped = picture.Frame();
    for (int p = 0; p < 3; ++p) {
        const int iRows = p == 0 ? 240 : 120;
        flipped.data[p] += (iRows - 1) * flipped.linesize[p];
        flipped.linesize[p] = -flipped.linesize[p];
    }
    QCOMPARE(QGL_PushFrame(shown.Handle(), &flipped), 0);
    VERIFY_PIXELS(shown.Grab(), {{{160, 40}, g_blue}, {{160, 200}, g_red}}, 4);

    // Refused frames are reported once each and leave the picture on screen
    // untouched.
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("frame refused: unsupported pixel format 9"));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("frame refused: unusable picture size 0x240"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("frame refused: plane 2 missing"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("frame refused: plane 1 .*shorter"));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("frame refused: unusable picture size 320x100000"));
    QCOMPARE(QGL_PushFrame(shown.Handle(), nullptr), -2);
    QGL_Frame bad = picture.Frame();
    bad.format = 9;
    QCOMPARE(QGL_PushFrame(shown.Handle(), &bad), -2);
    bad = picture.Frame();
    bad.width = 0;
    QCOMPARE(QGL_PushFrame(shown.Handle(), &bad), -2);
    bad = picture.Frame();
    bad.data[2] = nullptr;
    QCOMPARE(QGL_PushFrame(shown.Handle(), &bad), -2);
    bad = picture.Frame();
    bad.linesize[1] = 100;  // shorter than the 160 chroma samples of a row
    QCOMPARE(QGL_PushFrame(shown.Handle(), &bad), -2);
    bad = picture.Frame();
    bad.height = 100000;
    QCOMPARE(QGL_PushFrame(shown.Handle(), &bad), -2);
    VERIFY_PIXELS(shown.Grab(), {{{160, 40}, g_blue}}, 4);
}

void TestQGLRenderWidget::clearAndResize()
{
    ShownWidget shown(QSize(640, 360));
    QVERIFY(shown.Ready());
    VERIFY_PIXELS(shown.Grab(), {{{320, 180}, g_black}}, 4);  // no picture yet

    TestPicture picture = Uniform(g_yuvWhite);
    QCOMPARE(QGL_PushFrame(shown.Handle(), &picture.Frame()), 0);
    VERIFY_PIXELS(shown.Grab(), {{{320, 180}, g_white}}, 4);

    // Paused: no new picture arrives, yet a resize redraws the last one
    // letterboxed for the new shape (bars above and below, the picture on
    // rows 87..312).
    shown.Widget()->resize(300, 400);
    QTRY_COMPARE(shown.Widget()->size(), QSize(300, 400));
    VERIFY_PIXELS(
        shown.Grab(),
        {{{150, 200}, g_white}, {{2, 200}, g_white}, {{150, 60}, g_black}, {{150, 340}, g_black}},
        4);

    // Hiding and showing again keeps the picture as well.
    shown.Widget()->hide();
    shown.Widget()->show();
    QVERIFY(QTest::qWaitForWindowExposed(shown.Widget()));
    VERIFY_PIXELS(shown.Grab(), {{{150, 200}, g_white}}, 4);

    QCOMPARE(QGL_Clear(shown.Handle()), 0);
    VERIFY_PIXELS(shown.Grab(), {{{150, 200}, g_black}, {{2, 200}, g_black}, {{298, 100}, g_black}},
                  4);
    // And the next picture after a clear shows again.
    QCOMPARE(QGL_PushFrame(shown.Handle(), &picture.Frame()), 0);
    VERIFY_PIXELS(shown.Grab(), {{{150, 200}, g_white}}, 4);
}

void TestQGLRenderWidget::sharedPicturesGoBackOnce()
{
    std::atomic<int> iReleased{0};
    const QGL_ReleaseFunc fnRelease = [](void* _pCount) {
        ++*static_cast<std::atomic<int>*>(_pCount);
    };
    ShownWidget shown(QSize(320, 240));
    QVERIFY(shown.Ready());
    // Padded rows, read in place: NV12 and planar both land on the right
    // pixels (on GLES 2 row by row).
    const Yuv aQuad[4] = {g_yuvRed601, g_yuvGreen601, g_yuvBlue601, g_yuvWhite};
    TestPicture nv12(QGL_PIX_NV12, 320, 240, aQuad);
    TestPicture planar = Uniform(g_yuvBlue601);
    QCOMPARE(QGL_PushSharedFrame(shown.Handle(), &nv12.Frame(), fnRelease, &iReleased), 0);
    VERIFY_PIXELS(
        shown.Grab(),
        {{{80, 60}, g_red}, {{240, 60}, g_green}, {{80, 180}, g_blue}, {{240, 180}, g_white}}, 4);
    QCOMPARE(iReleased.load(), 0);  // still on screen
    QCOMPARE(QGL_PushSharedFrame(shown.Handle(), &planar.Frame(), fnRelease, &iReleased), 0);
    VERIFY_PIXELS(shown.Grab(), {{{160, 120}, g_blue}}, 4);
    QCOMPARE(iReleased.load(), 1);  // the NV12 picture, replaced on screen

    // A picture overtaken before it was drawn goes back as well.
    QCOMPARE(QGL_PushSharedFrame(shown.Handle(), &nv12.Frame(), fnRelease, &iReleased), 0);
    QCOMPARE(QGL_PushSharedFrame(shown.Handle(), &planar.Frame(), fnRelease, &iReleased), 0);
    QCOMPARE(iReleased.load(), 2);
    VERIFY_PIXELS(shown.Grab(), {{{160, 120}, g_blue}}, 4);
    QCOMPARE(iReleased.load(), 3);

    // Refused or unknown: handed back before the call returns.
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("frame refused: plane 0 .*shorter"));
    QGL_Frame bottomUp = planar.Frame();
    bottomUp.linesize[0] = -bottomUp.linesize[0];
    QCOMPARE(QGL_PushSharedFrame(shown.Handle(), &bottomUp, fnRelease, &iReleased), -2);
    QCOMPARE(iReleased.load(), 4);
    int iNotAWidget = 0;
    QCOMPARE(QGL_PushSharedFrame(&iNotAWidget, &planar.Frame(), fnRelease, &iReleased), -1);
    QCOMPARE(QGL_PushSharedFrame(shown.Handle(), nullptr, fnRelease, &iReleased), -2);
    QCOMPARE(iReleased.load(), 6);
    VERIFY_PIXELS(shown.Grab(), {{{160, 120}, g_blue}}, 4);

    // Clearing gives the picture on screen back; so does the widget's end.
    QCOMPARE(QGL_Clear(shown.Handle()), 0);
    VERIFY_PIXELS(shown.Grab(), {{{160, 120}, g_black}}, 4);
    QCOMPARE(iReleased.load(), 7);
    QCOMPARE(QGL_PushSharedFrame(shown.Handle(), &planar.Frame(), fnRelease, &iReleased), 0);
    VERIFY_PIXELS(shown.Grab(), {{{160, 120}, g_blue}}, 4);
    QCOMPARE(QGL_Release(shown.Handle()), 0);
    QCOMPARE(iReleased.load(), 8);
}

void TestQGLRenderWidget::reparentKeepsPicture()
{
    // Going full screen moves the video area into another window, which gives
    // the widget a new context: the picture must come back without a push.
    ShownWidget shown(QSize(320, 240));
    QVERIFY(shown.Ready());
    TestPicture picture = Uniform(g_yuvBlue601);
    QCOMPARE(QGL_PushFrame(shown.Handle(), &picture.Frame()), 0);
    VERIFY_PIXELS(shown.Grab(), {{{160, 120}, g_blue}}, 4);
    QSignalSpy spyContextGone(shown.Widget()->context(), &QOpenGLContext::aboutToBeDestroyed);

    QWidget host;
    host.resize(480, 270);
    shown.Widget()->setParent(&host);
    shown.Widget()->setGeometry(0, 0, 480, 270);
    host.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    const QImage image = shown.Grab();
    QCOMPARE(spyContextGone.count(), 1);
    VERIFY_PIXELS(image, {{{240, 135}, g_blue}, {{20, 135}, g_black}}, 4);
    QCOMPARE(QGL_Release(shown.Handle()), 0);
}

void TestQGLRenderWidget::pushFromWorkerRepaints()
{
    ShownWidget shown(QSize(320, 240));
    QVERIFY(shown.Ready());
    QSignalSpy spySwapped(shown.Widget(), &QOpenGLWidget::frameSwapped);
    TestPicture picture = Uniform(g_yuvGreen601);
    std::atomic<int> iResult{1};
    std::thread worker([&] { iResult = QGL_PushFrame(shown.Handle(), &picture.Frame()); });
    worker.join();
    QCOMPARE(iResult.load(), 0);
    // Nobody asks for a repaint: the widget schedules its own on the GUI thread.
    QTRY_VERIFY(spySwapped.count() > 0);
    VERIFY_PIXELS(shown.Grab(), {{{160, 120}, g_green}}, 4);
}

void TestQGLRenderWidget::pushRacingRelease()
{
    // The engine's video thread keeps pushing while the module releases the
    // widget under it; every push must either land or be refused cleanly.
    std::atomic<void*> pTarget{nullptr};
    std::atomic<bool> blStop{false};
    std::atomic<int> iAccepted{0}, iRefused{0};
    TestPicture picture = Uniform(g_yuvBlue601, 640, 480, QGL_PIX_NV12);
    std::thread worker([&] {
        while (!blStop) {
            void* pHandle = pTarget.load();
            if (!pHandle) continue;
            const int iResult = QGL_PushFrame(pHandle, &picture.Frame());
            (iResult == 0 ? iAccepted : iRefused)++;
            if (iResult != 0) QGL_Clear(pHandle);
        }
    });
    for (int i = 0; i < 15; ++i) {
        void* pHandle = QGL_Create(nullptr);
        auto* pWidget = static_cast<QWidget*>(pHandle);
        pWidget->resize(200, 150);
        pWidget->show();
        pTarget = pHandle;
        const int iBefore = iAccepted;
        QTRY_VERIFY(iAccepted > iBefore);
        QCoreApplication::processEvents();  // let some queued repaints run
        QCOMPARE(QGL_Release(pHandle), 0);  // the worker may still hold the old handle
    }
    QTRY_VERIFY(iRefused > 0);
    blStop = true;
    worker.join();
}

// QUILL_GL_PROFILE=core or =gles runs the same checks on a desktop core
// context or on OpenGL ES, the other shader dialects the widget speaks.
int main(int argc, char** argv)
{
    const QByteArray qbaProfile = qgetenv("QUILL_GL_PROFILE");
    if (!qbaProfile.isEmpty()) {
        QSurfaceFormat format = QSurfaceFormat::defaultFormat();
        if (qbaProfile == "core") {
            format.setVersion(3, 3);
            format.setProfile(QSurfaceFormat::CoreProfile);
        } else if (qbaProfile == "gles") {
            format.setRenderableType(QSurfaceFormat::OpenGLES);
            format.setVersion(2, 0);
        }
        QSurfaceFormat::setDefaultFormat(format);
    }
    QApplication app(argc, argv);
    TestQGLRenderWidget test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_QGLRenderWidget.moc"
