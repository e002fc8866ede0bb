// The render widget library through its C entry points, drawing under Xvfb:
// what the engine and the module see, checked on the pixels.

#include <QOpenGLContext>
#include <QOpenGLWidget>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "QGLRenderApi.h"
#include "RenderTestSupport.h"

using RenderTest::Yuv;

namespace {

// A picture in one of the four layouts, split into four quadrants of given
// colours (top left, top right, bottom left, bottom right), its rows padded
// as a decoder hands them out.
class TestPicture
{
public:
    TestPicture(int _iFormat, int _iWidth, int _iHeight, const Yuv (&_aQuad)[4])
    {
        const bool blNv12 = _iFormat == QGL_PIX_NV12;
        const int iCw = (_iFormat == QGL_PIX_YUV444P) ? _iWidth : (_iWidth + 1) / 2;
        const int iCh = (_iFormat == QGL_PIX_YUV420P || blNv12) ? (_iHeight + 1) / 2 : _iHeight;
        const int aWidth[3] = {_iWidth, iCw, iCw}, aHeight[3] = {_iHeight, iCh, iCh};
        for (int p = 0; p < (blNv12 ? 2 : 3); ++p) {
            const int iStride = (blNv12 && p ? 2 * iCw : aWidth[p]) + 32;
            m_vecPlanes[p].assign(static_cast<size_t>(iStride) * aHeight[p], 0);
            for (int r = 0; r < aHeight[p]; ++r) {
                for (int c = 0; c < aWidth[p]; ++c) {
                    const Yuv& q = _aQuad[(r * 2 >= aHeight[p] ? 2 : 0) + (c * 2 >= aWidth[p])];
                    uint8_t* pAt = &m_vecPlanes[p][r * iStride + (blNv12 && p ? 2 * c : c)];
                    pAt[0] = uint8_t(p == 0 ? q.y : (p == 1 ? q.u : q.v));
                    if (blNv12 && p) pAt[1] = uint8_t(q.v);
                }
            }
            m_frame.data[p] = m_vecPlanes[p].data();
            m_frame.linesize[p] = iStride;
        }
        m_frame.format = _iFormat;
        m_frame.width = _iWidth;
        m_frame.height = _iHeight;
        m_frame.sarNum = m_frame.sarDen = 1;
    }

    QGL_Frame& Frame() { return m_frame; }

private:
    QGL_Frame m_frame{};
    std::vector<uint8_t> m_vecPlanes[3];
};

TestPicture Uniform(const Yuv& _yuv, int _iWidth = 320, int _iHeight = 240,
                    int _iFormat = QGL_PIX_YUV420P)
{
    const Yuv aQuad[4] = {_yuv, _yuv, _yuv, _yuv};
    return TestPicture(_iFormat, _iWidth, _iHeight, aQuad);
}

const Yuv g_yuvRed601{81, 90, 240}, g_yuvGreen601{145, 54, 34}, g_yuvBlue601{41, 240, 110},
    g_yuvWhite{235, 128, 128};
const Yuv g_aQuadrants[4] = {g_yuvRed601, g_yuvGreen601, g_yuvBlue601, g_yuvWhite};
const QColor g_red(254, 0, 0), g_green(0, 255, 1), g_blue(0, 0, 255), g_white(Qt::white),
    g_black(Qt::black);
// The centres of the four quadrants of a 320x240 widget.
const std::vector<RenderTest::Expect> g_vecQuadrants = {
    {{80, 60}, g_red}, {{240, 60}, g_green}, {{80, 180}, g_blue}, {{240, 180}, g_white}};

// A widget made by QGL_Create, shown at a known size, released at the end
// unless the test did so already.
class ShownWidget
{
public:
    explicit ShownWidget(const QSize& _size = QSize(320, 240))
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
    int Push(TestPicture& _picture) { return QGL_PushFrame(m_pHandle, &_picture.Frame()); }

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
    void pictureOutlivesResizeAndReparent();
    void sharedPicturesGoBackOnce();
    void pushRacingRelease();
    void cleanupTestCase() { m_pColourWidget.reset(); }

private:
    std::unique_ptr<ShownWidget> m_pColourWidget;
};

void TestQGLRenderWidget::lifecycleAndRegistry()
{
    void* pHandle = QGL_Create(nullptr);
    QVERIFY(qobject_cast<QOpenGLWidget*>(static_cast<QWidget*>(pHandle)));
    QCOMPARE(QGL_IsRenderWidget(pHandle), 1);
    QCOMPARE(QGL_Release(pHandle), 0);
    QCOMPARE(QGL_IsRenderWidget(pHandle), 0);
    QCOMPARE(QGL_Release(pHandle), -1);
    TestPicture picture = Uniform(g_yuvWhite);
    QCOMPARE(QGL_PushFrame(pHandle, &picture.Frame()), -1);
    QCOMPARE(QGL_Clear(pHandle), -1);
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
    QCOMPARE(shown.Push(picture), 0);
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
    for (const QPoint& pt :
         {QPoint(expected.left() - 1 - m, c.y()), QPoint(expected.right() + 1 + m, c.y()),
          QPoint(c.x(), expected.top() - 1 - m), QPoint(c.x(), expected.bottom() + 1 + m)}) {
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
    QTest::newRow("601 limited mid") << b601 << 0 << 120 << 100 << 160 << QColor(172, 106, 65);
    QTest::newRow("709 limited red") << b709 << 0 << 63 << 102 << 240 << QColor(255, 1, 0);
    QTest::newRow("601 full red") << b601 << 1 << 76 << 85 << 255 << QColor(254, 0, 0);
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

    // One widget for all rows keeps this quick. The 601 limited primaries are
    // checked by layoutsAgree.
    if (!m_pColourWidget) {
        m_pColourWidget = std::make_unique<ShownWidget>(QSize(160, 120));
        QVERIFY(m_pColourWidget->Ready());
        const QOpenGLContext* pContext = m_pColourWidget->Widget()->context();
        qInfo() << "context:" << (pContext->isOpenGLES() ? "GLES" : "GL") << pContext->format();
    }
    TestPicture picture = Uniform({y, u, v}, 64, 48);
    picture.Frame().matrix = matrix;
    picture.Frame().fullRange = fullRange;
    QCOMPARE(m_pColourWidget->Push(picture), 0);
    VERIFY_PIXELS(m_pColourWidget->Grab(), {{{80, 60}, expected}}, 4);
}

void TestQGLRenderWidget::layoutsAgree()
{
    ShownWidget shown;
    QVERIFY(shown.Ready());
    auto render = [&](int _iFormat) {
        TestPicture picture(_iFormat, 320, 240, g_aQuadrants);
        return shown.Push(picture) == 0 ? shown.Grab() : QImage();
    };
    const QImage image420 = render(QGL_PIX_YUV420P);
    VERIFY_PIXELS(image420, g_vecQuadrants, 4);

    // NV12 carries the same samples interleaved: the result must match
    // 4:2:0 planar everywhere, quadrant edges included.
    const QImage imageNv12 = render(QGL_PIX_NV12);
    QCOMPARE(imageNv12.size(), image420.size());
    int iWorst = 0;
    for (int r = 0; r < image420.height(); ++r) {
        for (int c = 0; c < image420.width(); ++c) {
            const QRgb a = image420.pixel(c, r), b = imageNv12.pixel(c, r);
            for (int iDiff : {qRed(a) - qRed(b), qGreen(a) - qGreen(b), qBlue(a) - qBlue(b)})
                iWorst = qMax(iWorst, qAbs(iDiff));
        }
    }
    QVERIFY2(iWorst <= 1, qPrintable(QStringLiteral("NV12 differs by %1").arg(iWorst)));

    // Other chroma resolutions differ only near the quadrant edges.
    VERIFY_PIXELS(render(QGL_PIX_YUV422P), g_vecQuadrants, 4);
    VERIFY_PIXELS(render(QGL_PIX_YUV444P), g_vecQuadrants, 4);
}

void TestQGLRenderWidget::bottomUpRowsAndRefusedFrames()
{
    ShownWidget shown;
    QVERIFY(shown.Ready());
    const Yuv aQuad[4] = {g_yuvRed601, g_yuvRed601, g_yuvBlue601, g_yuvBlue601};
    TestPicture picture(QGL_PIX_YUV420P, 320, 240, aQuad);

    // Negative line sizes walk the picture from its last row: the blue half
    // must come out on top.
    QGL_Frame flipped = picture.Frame();
    for (int p = 0; p < 3; ++p) {
        flipped.data[p] += ((p == 0 ? 240 : 120) - 1) * flipped.linesize[p];
        flipped.linesize[p] = -flipped.linesize[p];
    }
    QCOMPARE(QGL_PushFrame(shown.Handle(), &flipped), 0);
    VERIFY_PIXELS(shown.Grab(), {{{160, 40}, g_blue}, {{160, 200}, g_red}}, 4);

    // Refused frames are reported once each and leave the picture on screen
    // untouched.
    QCOMPARE(QGL_PushFrame(shown.Handle(), nullptr), -2);
    const std::pair<const char*, std::function<void(QGL_Frame&)>> aBad[] = {
        {"unsupported pixel format 9", [](QGL_Frame& f) { f.format = 9; }},
        {"unusable picture size 0x240", [](QGL_Frame& f) { f.width = 0; }},
        {"plane 2 missing", [](QGL_Frame& f) { f.data[2] = nullptr; }},
        // Shorter than the 160 chroma samples of a row.
        {"plane 1 .*shorter", [](QGL_Frame& f) { f.linesize[1] = 100; }},
        {"unusable picture size 320x100000", [](QGL_Frame& f) { f.height = 100000; }}};
    for (const auto& pairBad : aBad) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("frame refused: ") +
                                                              QLatin1String(pairBad.first)));
        QGL_Frame bad = picture.Frame();
        pairBad.second(bad);
        QCOMPARE(QGL_PushFrame(shown.Handle(), &bad), -2);
    }
    VERIFY_PIXELS(shown.Grab(), {{{160, 40}, g_blue}}, 4);
}

void TestQGLRenderWidget::pictureOutlivesResizeAndReparent()
{
    ShownWidget shown(QSize(640, 360));
    QVERIFY(shown.Ready());
    VERIFY_PIXELS(shown.Grab(), {{{320, 180}, g_black}}, 4);  // no picture yet
    TestPicture picture = Uniform(g_yuvWhite);
    QCOMPARE(shown.Push(picture), 0);
    VERIFY_PIXELS(shown.Grab(), {{{320, 180}, g_white}}, 4);

    // Paused: no new picture arrives, yet a resize redraws the last one
    // letterboxed for the new shape (the picture on rows 87..312).
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

    // Going full screen moves the video area into another window, which gives
    // the widget a new context: the picture must come back without a push.
    QSignalSpy spyContextGone(shown.Widget()->context(), &QOpenGLContext::aboutToBeDestroyed);
    QWidget host;
    host.resize(480, 270);
    shown.Widget()->setParent(&host);
    shown.Widget()->setGeometry(0, 0, 480, 270);
    host.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    const QImage image = shown.Grab();
    QCOMPARE(spyContextGone.count(), 1);
    VERIFY_PIXELS(image, {{{240, 135}, g_white}, {{20, 135}, g_black}}, 4);

    QCOMPARE(QGL_Clear(shown.Handle()), 0);
    VERIFY_PIXELS(shown.Grab(), {{{240, 135}, g_black}}, 4);
    // And the next picture after a clear shows again.
    QCOMPARE(shown.Push(picture), 0);
    VERIFY_PIXELS(shown.Grab(), {{{240, 135}, g_white}}, 4);
    QCOMPARE(QGL_Release(shown.Handle()), 0);
}

void TestQGLRenderWidget::sharedPicturesGoBackOnce()
{
    std::atomic<int> iReleased{0};
    const QGL_ReleaseFunc fnRelease = [](void* _pCount) {
        ++*static_cast<std::atomic<int>*>(_pCount);
    };
    ShownWidget shown;
    QVERIFY(shown.Ready());
    auto push = [&](void* _pHandle, QGL_Frame* _pFrame) {
        return QGL_PushSharedFrame(_pHandle, _pFrame, fnRelease, &iReleased);
    };
    auto blueShown = [&] { return RenderTest::Mismatch(shown.Grab(), {{{160, 120}, g_blue}}, 4); };
    // Padded rows, read in place: NV12 and planar both land on the right
    // pixels (on GLES 2 row by row). Pushed from the engine's thread, nobody
    // asks for a repaint: the widget schedules its own on the GUI thread.
    TestPicture nv12(QGL_PIX_NV12, 320, 240, g_aQuadrants);
    TestPicture planar = Uniform(g_yuvBlue601);
    QSignalSpy spySwapped(shown.Widget(), &QOpenGLWidget::frameSwapped);
    std::atomic<int> iResult{1};
    std::thread([&] { iResult = push(shown.Handle(), &nv12.Frame()); }).join();
    QCOMPARE(iResult.load(), 0);
    QTRY_VERIFY(spySwapped.count() > 0);
    VERIFY_PIXELS(shown.Grab(), g_vecQuadrants, 4);
    QCOMPARE(iReleased.load(), 0);  // still on screen
    QCOMPARE(push(shown.Handle(), &planar.Frame()), 0);
    QCOMPARE(blueShown(), QString());
    QCOMPARE(iReleased.load(), 1);  // the NV12 picture, replaced on screen

    // A picture overtaken before it was drawn goes back as well.
    QCOMPARE(push(shown.Handle(), &nv12.Frame()), 0);
    QCOMPARE(push(shown.Handle(), &planar.Frame()), 0);
    QCOMPARE(iReleased.load(), 2);
    QCOMPARE(blueShown(), QString());
    QCOMPARE(iReleased.load(), 3);

    // Refused or unknown: handed back before the call returns.
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("frame refused: plane 0 .*shorter"));
    QGL_Frame bottomUp = planar.Frame();
    bottomUp.linesize[0] = -bottomUp.linesize[0];
    QCOMPARE(push(shown.Handle(), &bottomUp), -2);
    int iNotAWidget = 0;
    QCOMPARE(push(&iNotAWidget, &planar.Frame()), -1);
    QCOMPARE(push(shown.Handle(), nullptr), -2);
    QCOMPARE(iReleased.load(), 6);
    QCOMPARE(blueShown(), QString());

    // Clearing gives the picture on screen back; so does the widget's end.
    QCOMPARE(QGL_Clear(shown.Handle()), 0);
    VERIFY_PIXELS(shown.Grab(), {{{160, 120}, g_black}}, 4);
    QCOMPARE(iReleased.load(), 7);
    QCOMPARE(push(shown.Handle(), &planar.Frame()), 0);
    QCOMPARE(blueShown(), QString());
    QCOMPARE(QGL_Release(shown.Handle()), 0);
    QCOMPARE(iReleased.load(), 8);
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

// QUILL_GL_PROFILE=core or =gles runs the checks on a desktop core context or
// on OpenGL ES, the other shader dialects the widget speaks.
int main(int argc, char** argv)
{
    const QByteArray qbaProfile = qgetenv("QUILL_GL_PROFILE");
    QSurfaceFormat format = QSurfaceFormat::defaultFormat();
    if (qbaProfile == "core") {
        format.setVersion(3, 3);
        format.setProfile(QSurfaceFormat::CoreProfile);
    } else if (qbaProfile == "gles") {
        format.setRenderableType(QSurfaceFormat::OpenGLES);
        format.setVersion(2, 0);
    }
    QSurfaceFormat::setDefaultFormat(format);
    QApplication app(argc, argv);
    TestQGLRenderWidget test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_QGLRenderWidget.moc"
