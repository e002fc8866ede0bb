// The render widget library through its C entry points, drawing under Xvfb:
// what the engine and the module see, checked on the pixels.

#include <QOpenGLContext>
#include <QOpenGLWidget>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

#include "QGLRenderApi.h"
#include "RenderTestSupport.h"

using namespace RenderTest;

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

const Yuv g_aQuadrants[4] = {g_yuvRed601, g_yuvGreen601, g_yuvBlue601, g_yuvWhite};
// The centres of the four quadrants of a 320x240 widget.
const std::vector<RenderTest::Expect> g_vecQuadrants = {
    {{80, 60}, g_red}, {{240, 60}, g_green}, {{80, 180}, g_blue}, {{240, 180}, g_white}};

int Push(const ShownWidget& _shown, TestPicture& _picture)
{
    return QGL_PushFrame(_shown.Handle(), &_picture.Frame());
}

}  // namespace

class TestQGLRenderWidget : public QObject
{
    Q_OBJECT

private slots:
    void lifecycleAndRegistry();
    void layoutsAgree();
    void letterboxKeptOnResizeAndReparent();
    void sharedPicturesGoBackOnce();
    void pushRacingRelease();
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

void TestQGLRenderWidget::layoutsAgree()
{
    ShownWidget shown;
    QVERIFY(shown.Ready());
    const QOpenGLContext* pContext = shown.Widget()->context();
    qInfo() << "context:" << (pContext->isOpenGLES() ? "GLES" : "GL") << pContext->format();
    auto render = [&](int _iFormat) {
        TestPicture picture(_iFormat, 320, 240, g_aQuadrants);
        return Push(shown, picture) == 0 ? shown.Grab() : QImage();
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

void TestQGLRenderWidget::letterboxKeptOnResizeAndReparent()
{
    // Each edge of the picture is checked a few pixels either side: a pixel
    // of rounding is allowed, a wrong aspect is not.
    ShownWidget shown(QSize(640, 360));
    QVERIFY(shown.Ready());
    VERIFY_PIXELS(shown.Grab(), {{{320, 180}, g_black}}, 4);  // no picture yet
    TestPicture picture = Uniform(g_yuvWhite);
    QCOMPARE(Push(shown, picture), 0);
    // 4:3 in 16:9. Paused, no new picture arrives, yet a resize redraws the
    // last one letterboxed for the new shape (bars above and below, rows 88..312).
    shown.Widget()->resize(300, 400);
    QTRY_COMPARE(shown.Widget()->size(), QSize(300, 400));
    VERIFY_PIXELS(shown.Grab(),
                  {{{150, 84}, g_black},
                   {{150, 91}, g_white},
                   {{150, 309}, g_white},
                   {{150, 316}, g_black},
                   {{2, 200}, g_white},
                   {{297, 200}, g_white}},
                  4);

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
    VERIFY_PIXELS(
        image,
        {{{57, 135}, g_black}, {{62, 135}, g_white}, {{417, 135}, g_white}, {{422, 135}, g_black}},
        4);

    QCOMPARE(QGL_Clear(shown.Handle()), 0);
    VERIFY_PIXELS(shown.Grab(), {{{240, 135}, g_black}}, 4);
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
    int iNotAWidget = 0;
    QCOMPARE(push(&iNotAWidget, &planar.Frame()), -1);
    QCOMPARE(push(shown.Handle(), nullptr), -2);
    QCOMPARE(iReleased.load(), 5);
    QCOMPARE(blueShown(), QString());

    // Clearing gives the picture on screen back; so does the widget's end.
    QCOMPARE(QGL_Clear(shown.Handle()), 0);
    VERIFY_PIXELS(shown.Grab(), {{{160, 120}, g_black}}, 4);
    QCOMPARE(iReleased.load(), 6);
    QCOMPARE(push(shown.Handle(), &planar.Frame()), 0);
    QCOMPARE(blueShown(), QString());
    QCOMPARE(QGL_Release(shown.Handle()), 0);
    QCOMPARE(iReleased.load(), 7);
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
    // The widget under test is the OpenGL one, whatever renders it here.
    qputenv("QUILL_RENDER_GL", "1");
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
