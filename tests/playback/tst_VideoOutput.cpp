// The engine's video outputs and the render widget library they draw into,
// under Xvfb and checked on the pixels: the widget through its C entry points
// as the engine and the module see them, the outputs fed with AVFrames as the
// decoder makes them.

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QOpenGLContext>
#include <QOpenGLWidget>
#include <QScreen>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

#include <atomic>
#include <cstdint>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
}

#include "CLS_VideoView.h"
#include "IVideoOutput.h"
#include "QGLRenderApi.h"

using RK_Framework::VideoPlayer::CLS_VideoView;
using RK_Framework::VideoPlayer::CreateVideoOutput;
using RK_Framework::VideoPlayer::IVideoOutput;
using RK_Framework::VideoPlayer::SVideoView;

namespace {

struct Yuv
{
    int y, u, v;
};

// Limited-range BT.601 primaries and white, BT.709 red, and how they show.
constexpr Yuv g_yuvRed601{81, 90, 240}, g_yuvGreen601{145, 54, 34}, g_yuvBlue601{41, 240, 110},
    g_yuvWhite{235, 128, 128}, g_yuvRed709{63, 102, 240};
const QColor g_red(255, 0, 0), g_green(0, 255, 0), g_blue(0, 0, 255), g_white(Qt::white),
    g_black(Qt::black);

struct Expect
{
    QPoint pt;
    QColor color;
};

// Empty when every listed pixel has its colour within _iTolerance per
// channel, else a description of the first that has not.
QString Mismatch(const QImage& _image, const std::vector<Expect>& _vecExpected, int _iTolerance = 6)
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

// Pixels of an image taken until they have their colours (a native window
// shows what was sent once the display has taken it, which nothing waits for):
// TRY_PIXELS(image, {{{x, y}, colour}, ...}[, tolerance]).
#define TRY_PIXELS(image, ...) QTRY_COMPARE(Mismatch((image), __VA_ARGS__), QString())

struct FrameDeleter
{
    void operator()(AVFrame* _pFrame) const { av_frame_free(&_pFrame); }
};
using FramePtr = std::unique_ptr<AVFrame, FrameDeleter>;

// A decoded-looking frame in four quadrants of given colours (top left, top
// right, bottom left, bottom right), its rows padded as a decoder hands them
// out. Colours are 8-bit YUV, scaled to the format's depth.
FramePtr MakeFrame(AVPixelFormat _eFormat, int _iWidth, int _iHeight, const Yuv (&_aQuad)[4])
{
    FramePtr pFrame(av_frame_alloc());
    pFrame->format = _eFormat;
    pFrame->width = _iWidth + 32;
    pFrame->height = _iHeight;
    if (av_frame_get_buffer(pFrame.get(), 0) < 0) return nullptr;
    pFrame->width = _iWidth;
    const AVPixFmtDescriptor* pDesc = av_pix_fmt_desc_get(_eFormat);
    for (int c = 0; c < pDesc->nb_components; ++c) {
        const AVComponentDescriptor& comp = pDesc->comp[c];
        const bool blChroma = c == 1 || c == 2;
        const int iCw = blChroma ? AV_CEIL_RSHIFT(_iWidth, pDesc->log2_chroma_w) : _iWidth;
        const int iCh = blChroma ? AV_CEIL_RSHIFT(_iHeight, pDesc->log2_chroma_h) : _iHeight;
        for (int r = 0; r < iCh; ++r) {
            uint8_t* pRow = pFrame->data[comp.plane] + r * pFrame->linesize[comp.plane];
            for (int x = 0; x < iCw; ++x) {
                const Yuv& q = _aQuad[(r * 2 >= iCh ? 2 : 0) + (x * 2 >= iCw ? 1 : 0)];
                const int iValue8 = c == 0 ? q.y : (c == 1 ? q.u : q.v);
                uint8_t* p = pRow + x * comp.step + comp.offset;
                if (comp.depth > 8) {
                    const uint16_t u16 = uint16_t(iValue8 << (comp.depth - 8));
                    std::memcpy(p, &u16, 2);  // little-endian formats only
                } else {
                    *p = uint8_t(iValue8);
                }
            }
        }
    }
    return pFrame;
}

// The top half one colour, the bottom half another.
FramePtr MakeFrame(AVPixelFormat _eFormat, int _iWidth, int _iHeight, Yuv _top, Yuv _bottom)
{
    const Yuv aQuad[4] = {_top, _top, _bottom, _bottom};
    return MakeFrame(_eFormat, _iWidth, _iHeight, aQuad);
}

const Yuv g_aQuadrants[4] = {g_yuvRed601, g_yuvGreen601, g_yuvBlue601, g_yuvWhite};
// The centres of the four quadrants of a 320x240 widget.
const std::vector<Expect> g_vecQuadrants = {
    {{80, 60}, g_red}, {{240, 60}, g_green}, {{80, 180}, g_blue}, {{240, 180}, g_white}};

// The frame as the widget takes it, planes where they are: 4:2:0, NV12,
// 4:2:2 or 4:4:4.
QGL_Frame WidgetFrame(const AVFrame* _pFrame)
{
    QGL_Frame stFrame{};
    const std::pair<AVPixelFormat, int> aLayouts[] = {{AV_PIX_FMT_YUV420P, QGL_PIX_YUV420P},
                                                      {AV_PIX_FMT_NV12, QGL_PIX_NV12},
                                                      {AV_PIX_FMT_YUV422P, QGL_PIX_YUV422P},
                                                      {AV_PIX_FMT_YUV444P, QGL_PIX_YUV444P}};
    for (const auto& layout : aLayouts) {
        if (layout.first == _pFrame->format) stFrame.format = layout.second;
    }
    stFrame.width = _pFrame->width;
    stFrame.height = _pFrame->height;
    for (int p = 0; p < 3; ++p) {
        stFrame.data[p] = _pFrame->data[p];
        stFrame.linesize[p] = _pFrame->linesize[p];
    }
    stFrame.sarNum = stFrame.sarDen = 1;
    return stFrame;
}

// An OpenGL render widget made by QGL_Create, shown at a known size,
// released at the end unless the test did so already.
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
    Q_DISABLE_COPY(ShownWidget)
    bool Ready() { return m_pWidget && QTest::qWaitForWindowExposed(m_pWidget); }
    void* Handle() const { return m_pHandle; }
    QOpenGLWidget* Widget() const { return m_pWidget; }
    QImage Grab() const { return m_pWidget->grabFramebuffer(); }
    int Push(const AVFrame* _pFrame) const
    {
        const QGL_Frame stFrame = WidgetFrame(_pFrame);
        return QGL_PushFrame(m_pHandle, &stFrame);
    }

private:
    void* m_pHandle;
    QOpenGLWidget* m_pWidget;
};

}  // namespace

class TestVideoOutput : public QObject
{
    Q_OBJECT

private slots:
    // The widget under test is the OpenGL one, whatever renders it here; the
    // outputs choose per row.
    void init() { qputenv("QUILL_RENDER_GL", "1"); }
    void deletedByParentLeavesRegistry();
    void layoutsAgree();
    void pictureBackAfterReparent();
    void sharedPicturesGoBackOnce();
    void outputs_data();
    void outputs();
};

// A widget deleted by its parent leaves the registry too, so the engine
// cannot push into freed memory.
void TestVideoOutput::deletedByParentLeavesRegistry()
{
    auto* pParent = new QWidget;
    void* pChild = QGL_Create(pParent);
    QCOMPARE(static_cast<QWidget*>(pChild)->parentWidget(), pParent);
    delete pParent;
    QCOMPARE(QGL_IsRenderWidget(pChild), 0);
    const FramePtr pFrame = MakeFrame(AV_PIX_FMT_YUV420P, 64, 48, g_yuvWhite, g_yuvWhite);
    const QGL_Frame stFrame = WidgetFrame(pFrame.get());
    QCOMPARE(QGL_PushFrame(pChild, &stFrame), -1);
    QCOMPARE(QGL_Release(pChild), -1);
}

void TestVideoOutput::layoutsAgree()
{
    ShownWidget shown;
    QVERIFY(shown.Ready());
    qInfo() << "context:" << shown.Widget()->context()->format();
    // Chroma at a half, the full or half the width only: the same quadrants
    // (NV12 is pushed by the shared-picture test).
    for (AVPixelFormat eFormat : {AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUV444P}) {
        const FramePtr pFrame = MakeFrame(eFormat, 320, 240, g_aQuadrants);
        QCOMPARE(shown.Push(pFrame.get()), 0);
        TRY_PIXELS(shown.Grab(), g_vecQuadrants, 4);
    }
}

void TestVideoOutput::pictureBackAfterReparent()
{
    ShownWidget shown(QSize(640, 360));
    QVERIFY(shown.Ready());
    TRY_PIXELS(shown.Grab(), {{{320, 180}, g_black}}, 4);  // no picture yet
    const FramePtr pFrame = MakeFrame(AV_PIX_FMT_YUV420P, 320, 240, g_yuvWhite, g_yuvWhite);
    QCOMPARE(shown.Push(pFrame.get()), 0);
    // Going full screen moves the video area into another window, which gives
    // the widget a new context: the picture must come back without a push,
    // letterboxed for the new shape (4:3 in 16:9, columns 60..419).
    QSignalSpy spyContextGone(shown.Widget()->context(), &QOpenGLContext::aboutToBeDestroyed);
    QWidget host;
    host.resize(480, 270);
    shown.Widget()->setParent(&host);
    shown.Widget()->setGeometry(0, 0, 480, 270);
    host.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    TRY_PIXELS(
        shown.Grab(),
        {{{57, 135}, g_black}, {{62, 135}, g_white}, {{417, 135}, g_white}, {{422, 135}, g_black}},
        4);
    QCOMPARE(spyContextGone.count(), 1);
}

void TestVideoOutput::sharedPicturesGoBackOnce()
{
    std::atomic<int> iReleased{0};
    const QGL_ReleaseFunc fnRelease = [](void* _pCount) {
        ++*static_cast<std::atomic<int>*>(_pCount);
    };
    ShownWidget shown;
    QVERIFY(shown.Ready());
    auto push = [&](void* _pHandle, const QGL_Frame* _pFrame) {
        return QGL_PushSharedFrame(_pHandle, _pFrame, fnRelease, &iReleased);
    };
    auto blueShown = [&] { return Mismatch(shown.Grab(), {{{160, 120}, g_blue}}, 4); };
    // Padded rows, read in place: NV12 and planar both land on the right
    // pixels (on GLES 2 row by row). Pushed from the engine's thread, nobody
    // asks for a repaint: the widget schedules its own on the GUI thread.
    const FramePtr pNv12 = MakeFrame(AV_PIX_FMT_NV12, 320, 240, g_aQuadrants);
    const FramePtr pPlanar = MakeFrame(AV_PIX_FMT_YUV420P, 320, 240, g_yuvBlue601, g_yuvBlue601);
    const QGL_Frame stNv12 = WidgetFrame(pNv12.get()), stPlanar = WidgetFrame(pPlanar.get());
    QSignalSpy spySwapped(shown.Widget(), &QOpenGLWidget::frameSwapped);
    std::atomic<int> iResult{1};
    std::thread([&] { iResult = push(shown.Handle(), &stNv12); }).join();
    QCOMPARE(iResult.load(), 0);
    QTRY_VERIFY(spySwapped.count() > 0);
    TRY_PIXELS(shown.Grab(), g_vecQuadrants, 4);
    QCOMPARE(iReleased.load(), 0);  // still on screen
    QCOMPARE(push(shown.Handle(), &stPlanar), 0);
    QCOMPARE(blueShown(), QString());
    QCOMPARE(iReleased.load(), 1);  // the NV12 picture, replaced on screen

    // A picture overtaken before it was drawn goes back as well.
    QCOMPARE(push(shown.Handle(), &stNv12), 0);
    QCOMPARE(push(shown.Handle(), &stPlanar), 0);
    QCOMPARE(iReleased.load(), 2);
    QCOMPARE(blueShown(), QString());
    QCOMPARE(iReleased.load(), 3);

    // Refused or unknown: handed back before the call returns.
    int iNotAWidget = 0;
    QCOMPARE(push(&iNotAWidget, &stPlanar), -1);
    QCOMPARE(push(shown.Handle(), nullptr), -2);
    QCOMPARE(iReleased.load(), 5);
    QCOMPARE(blueShown(), QString());

    // Clearing gives the picture on screen back; so does the widget's end.
    QCOMPARE(QGL_Clear(shown.Handle()), 0);
    TRY_PIXELS(shown.Grab(), {{{160, 120}, g_black}}, 4);
    QCOMPARE(iReleased.load(), 6);
    QCOMPARE(push(shown.Handle(), &stPlanar), 0);
    QCOMPARE(blueShown(), QString());
    QCOMPARE(QGL_Release(shown.Handle()), 0);
    QCOMPARE(iReleased.load(), 7);
}

void TestVideoOutput::outputs_data()
{
    QTest::addColumn<bool>("blRenderWidget");
    QTest::addColumn<bool>("blOpenGl");
    QTest::addColumn<QByteArray>("qbaShm");
    QTest::newRow("render widget, opengl") << true << true << QByteArray("1");
    QTest::newRow("render widget, native window") << true << false << QByteArray("1");
    QTest::newRow("window, shared memory") << false << false << QByteArray("1");
    QTest::newRow("window, through the connection") << false << false << QByteArray("0");
}

void TestVideoOutput::outputs()
{
    QFETCH(bool, blRenderWidget);
    QFETCH(bool, blOpenGl);
    QFETCH(QByteArray, qbaShm);
    qputenv("QUILL_X11_SHM", qbaShm);
    // Render widgets made from here on: OpenGL (see init), or the native
    // window where OpenGL draws on the CPU.
    if (!blOpenGl) qunsetenv("QUILL_RENDER_GL");
    // As in the player: a child widget in a layout is the surface, a render
    // widget or a plain one whose native window id is the play handle.
    QWidget top;
    auto* pLayout = new QHBoxLayout(&top);
    pLayout->setContentsMargins(0, 0, 0, 0);
    void* pRenderHandle = blRenderWidget ? QGL_Create(&top) : nullptr;
    if (blRenderWidget && !blOpenGl && QGL_NativeWindow(pRenderHandle) == 0)
        QSKIP("OpenGL renders in hardware here: render widgets stay OpenGL");
    auto* pSurface = blRenderWidget ? static_cast<QWidget*>(pRenderHandle) : new QWidget(&top);
    auto* pGl = qobject_cast<QOpenGLWidget*>(pSurface);
    QCOMPARE(pGl != nullptr, blOpenGl);
    pLayout->addWidget(pSurface);
    if (!pGl) pSurface->winId();
    top.resize(640, 360);
    top.show();
    QVERIFY(QTest::qWaitForWindowExposed(&top));
    QTRY_COMPARE(pSurface->size(), QSize(640, 360));
    if (!pGl) {
        QVERIFY(QTest::qWaitForWindowExposed(pSurface->windowHandle()));
        // Once the engine draws, the toolkit must not paint over it.
        pSurface->setUpdatesEnabled(false);
    }
    auto grab = [pSurface, pGl] {
        return pGl ? pGl->grabFramebuffer()
                   : QGuiApplication::primaryScreen()->grabWindow(pSurface->winId()).toImage();
    };
    std::unique_ptr<IVideoOutput> pOutput = CreateVideoOutput(
        blRenderWidget ? reinterpret_cast<std::intptr_t>(pRenderHandle) : pSurface->winId());
    QVERIFY(!pOutput->Show(FramePtr(av_frame_alloc()).get()));  // a frame without a picture

    // Matrix and range as tagged; untagged pictures get the matrix of their
    // size and the range of their format; formats the output cannot take are
    // converted keeping both.
    const QSize sd(320, 240), hd(1280, 720);
    const Yuv yuvMid{120, 100, 160}, yuvRedFull601{76, 85, 255}, yuvGray{126, 0, 0};
    const AVColorSpace eNoSpace = AVCOL_SPC_UNSPECIFIED;
    const AVColorRange eNoRange = AVCOL_RANGE_UNSPECIFIED, eLimited = AVCOL_RANGE_MPEG;
    const struct
    {
        const char* pName;
        AVPixelFormat eFormat;
        QSize size;
        AVColorSpace eSpace;
        AVColorRange eRange;
        Yuv yuv;
        QColor expected;
    } aCases[] = {
        {"SD 601", AV_PIX_FMT_YUV420P, sd, AVCOL_SPC_SMPTE170M, eLimited, yuvMid,
         QColor(172, 106, 65)},
        {"HD 709 full", AV_PIX_FMT_YUV420P, hd, AVCOL_SPC_BT709, AVCOL_RANGE_JPEG, yuvMid,
         QColor(170, 110, 68)},
        {"untagged HD", AV_PIX_FMT_YUV420P, hd, eNoSpace, eNoRange, g_yuvRed709, g_red},
        {"NV12 SD tagged 709", AV_PIX_FMT_NV12, sd, AVCOL_SPC_BT709, eLimited, g_yuvRed709, g_red},
        {"yuvj420p", AV_PIX_FMT_YUVJ420P, sd, eNoSpace, eNoRange, yuvRedFull601, g_red},
        {"10-bit HD", AV_PIX_FMT_YUV420P10LE, hd, eNoSpace, eLimited, g_yuvRed709, g_red},
        {"gray", AV_PIX_FMT_GRAY8, sd, eNoSpace, eNoRange, yuvGray, QColor(128, 128, 128)}};
    for (const auto& c : aCases) {
        FramePtr pFrame = MakeFrame(c.eFormat, c.size.width(), c.size.height(), c.yuv, c.yuv);
        QVERIFY2(pFrame, c.pName);
        pFrame->colorspace = c.eSpace;
        pFrame->color_range = c.eRange;
        QVERIFY2(pOutput->Show(pFrame.get()), c.pName);
        QString qstrWrong;
        QTRY_VERIFY2((qstrWrong = Mismatch(grab(), {{{320, 180}, c.expected}})).isEmpty(),
                     qPrintable(c.pName + QStringLiteral(": ") + qstrWrong));
    }

    // A part of the picture fills the place of the whole one: the bars stay
    // where they were at every zoom, and the whole picture comes back exactly.
    // 4:3 in 640x360: the picture spans x 80..559.
    auto letterboxed = [](const QColor& _top, const QColor& _bottom) {
        return std::vector<Expect>{{{77, 180}, g_black},  {{83, 20}, _top}, {{556, 340}, _bottom},
                                   {{562, 180}, g_black}, {{320, 2}, _top}, {{320, 357}, _bottom}};
    };
    FramePtr pFrame = MakeFrame(AV_PIX_FMT_YUV420P, 320, 240, g_yuvRed601, g_yuvBlue601);
    QVERIFY(pOutput->Show(pFrame.get()));
    TRY_PIXELS(grab(), letterboxed(g_red, g_blue));
    const struct
    {
        SVideoView view;
        QColor top, bottom;
    } aZooms[] = {{{0.5, 0.5, 0.5, 0.5}, g_blue, g_blue},
                  {{0.0, 0.0, 0.25, 0.25}, g_red, g_red},
                  // 8x across the middle: the edge between the halves stays
                  // in the middle of the screen.
                  {{0.4375, 0.4375, 0.125, 0.125}, g_red, g_blue}};
    for (const auto& zoom : aZooms) {
        AVFrame* pPart = CLS_VideoView::Cut(pFrame.get(), zoom.view);
        QVERIFY(pPart);
        QVERIFY(pOutput->Show(pPart));
        av_frame_free(&pPart);
        TRY_PIXELS(grab(), letterboxed(zoom.top, zoom.bottom));
    }
    QVERIFY(pOutput->Show(pFrame.get()));
    TRY_PIXELS(grab(), letterboxed(g_red, g_blue));

    // Paused and resized taller than wide: a refresh redraws with bars above
    // and below (picture 360x270 from y 45).
    top.resize(360, 360);
    QTRY_COMPARE(pSurface->size(), QSize(360, 360));
    auto refreshed = [&](const std::vector<Expect>& _vecExpected) {
        pOutput->Refresh();
        return Mismatch(grab(), _vecExpected);
    };
    QTRY_COMPARE(refreshed({{{180, 20}, g_black},
                            {{180, 50}, g_red},
                            {{180, 310}, g_blue},
                            {{180, 340}, g_black},
                            {{2, 100}, g_red}}),
                 QString());

    // New pictures follow the new size too, with their pixel shape: 4:3
    // pixels make the same frame 16:9 (360x203 from y 79).
    pFrame->sample_aspect_ratio = AVRational{4, 3};
    QVERIFY(pOutput->Show(pFrame.get()));
    const std::vector<Expect> vecWide = {
        {{180, 70}, g_black}, {{180, 84}, g_red}, {{180, 276}, g_blue}, {{180, 290}, g_black}};
    TRY_PIXELS(grab(), vecWide);

    // Another window covers part of the picture and goes away: the window
    // system asks for the content again, and a refresh supplies it.
    {
        QWidget cover;
        cover.setStyleSheet(QStringLiteral("background: rgb(0, 255, 0)"));
        cover.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        cover.setGeometry(QRect(pSurface->mapToGlobal(QPoint(0, 0)), QSize(360, 360)));
        cover.show();
        QVERIFY(QTest::qWaitForWindowExposed(&cover));
    }
    QTRY_COMPARE(refreshed(vecWide), QString());

    pOutput->Clear();
    TRY_PIXELS(grab(), {{{180, 180}, g_black}, {{5, 5}, g_black}});
    if (!blRenderWidget) {
        // The window goes away under a playing engine; an id that never named
        // a window is refused alike.
        delete pSurface;
        QTRY_VERIFY(!pOutput->Show(pFrame.get()));
        pOutput->Refresh();
        pOutput = CreateVideoOutput(0x7ffffff1);
        QVERIFY(!pOutput->Show(pFrame.get()));
        pOutput->Refresh();
        pOutput->Clear();
        return;
    }

    // Full screen moves the render widget into another top-level window:
    // pictures follow it there.
    QWidget other;
    other.resize(200, 200);
    pSurface->setParent(&other);
    pSurface->setGeometry(0, 0, 200, 200);
    pSurface->show();
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    FramePtr pHd = MakeFrame(AV_PIX_FMT_YUV420P, 1280, 720, g_yuvRed709, g_yuvRed709);
    QVERIFY(pOutput->Show(pHd.get()));
    QTRY_COMPARE(refreshed({{{100, 100}, g_red}, {{100, 20}, g_black}}), QString());

    // Once the module released the widget, the output refuses instead of
    // writing into freed memory.
    QCOMPARE(QGL_Release(pRenderHandle), 0);
    QVERIFY(!pOutput->Show(pHd.get()));
    pOutput->Clear();
    pOutput->Refresh();
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
    TestVideoOutput test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_VideoOutput.moc"
