// The engine's video outputs, fed with AVFrames as the decoder makes them:
// into a QGLRender widget (OpenGL, or the native window it hands out where
// OpenGL draws on the CPU), into a plain native window, and into nothing.

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QWidget>
#include <QtTest>

#include <cstdint>
#include <cstring>
#include <memory>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
}

#include "CLS_VideoView.h"
#include "IVideoOutput.h"
#include "QGLRenderApi.h"
#include "RenderTestSupport.h"

using namespace RenderTest;
using RK_Framework::VideoPlayer::CLS_VideoView;
using RK_Framework::VideoPlayer::CreateVideoOutput;
using RK_Framework::VideoPlayer::SVideoView;
using RK_Framework::VideoPlayer::IVideoOutput;

namespace {

struct FrameDeleter
{
    void operator()(AVFrame* _pFrame) const { av_frame_free(&_pFrame); }
};
using FramePtr = std::unique_ptr<AVFrame, FrameDeleter>;

// A decoded-looking frame: the top half one colour, the bottom half another.
// Colours are given as 8-bit YUV (or RGB for packed RGB formats) and scaled to
// the format's depth.
FramePtr MakeFrame(AVPixelFormat _eFormat, int _iWidth, int _iHeight, Yuv _top, Yuv _bottom)
{
    FramePtr pFrame(av_frame_alloc());
    pFrame->format = _eFormat;
    pFrame->width = _iWidth;
    pFrame->height = _iHeight;
    if (av_frame_get_buffer(pFrame.get(), 0) < 0) return nullptr;
    const AVPixFmtDescriptor* pDesc = av_pix_fmt_desc_get(_eFormat);
    const bool blRgb = pDesc->flags & AV_PIX_FMT_FLAG_RGB;
    for (int c = 0; c < pDesc->nb_components; ++c) {
        const AVComponentDescriptor& comp = pDesc->comp[c];
        const bool blChroma = !blRgb && (c == 1 || c == 2);
        const int iCw = blChroma ? AV_CEIL_RSHIFT(_iWidth, pDesc->log2_chroma_w) : _iWidth;
        const int iCh = blChroma ? AV_CEIL_RSHIFT(_iHeight, pDesc->log2_chroma_h) : _iHeight;
        for (int r = 0; r < iCh; ++r) {
            const Yuv& colour = (r * 2 < iCh) ? _top : _bottom;
            const int iValue8 = c == 0 ? colour.y : (c == 1 ? colour.u : colour.v);
            uint8_t* pRow = pFrame->data[comp.plane] + r * pFrame->linesize[comp.plane];
            for (int x = 0; x < iCw; ++x) {
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

// A native window shows what the engine sent once the display has taken it,
// which nothing in the output waits for.
#define TRY_PIXELS(image, ...) QTRY_COMPARE(RenderTest::Mismatch((image), __VA_ARGS__), QString())

std::unique_ptr<IVideoOutput> OutputFor(const void* _pHandle)
{
    return CreateVideoOutput(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(_pHandle)));
}

}  // namespace

class TestVideoOutput : public QObject
{
    Q_OBJECT

private slots:
    void renderWidget_data();
    void renderWidget();
    void nativeWindowFollowsSize_data();
    void nativeWindowFollowsSize();
    void nativeWindowFailures();
    void zoomKeepsTheLetterbox_data() { renderWidget_data(); }
    void zoomKeepsTheLetterbox();
};

void TestVideoOutput::renderWidget_data()
{
    QTest::addColumn<bool>("blOpenGl");
    QTest::newRow("opengl") << true;
    QTest::newRow("native window") << false;
}

// The render widgets made from here on: OpenGL, or the native window where
// OpenGL draws on the CPU.
static void ChooseRenderPath(bool _blOpenGl)
{
    if (_blOpenGl)
        qputenv("QUILL_RENDER_GL", "1");
    else
        qunsetenv("QUILL_RENDER_GL");
}

void TestVideoOutput::renderWidget()
{
    QFETCH(bool, blOpenGl);
    ChooseRenderPath(blOpenGl);
    ShownWidget shown(QSize(640, 360));
    QVERIFY(shown.Ready());
    if (!blOpenGl && QGL_NativeWindow(shown.Handle()) == 0)
        QSKIP("OpenGL renders in hardware here: render widgets stay OpenGL");
    std::unique_ptr<IVideoOutput> pOutput = OutputFor(shown.Handle());

    // Matrix and range as tagged; untagged pictures get the matrix of their
    // size and the range of their format; formats the widget cannot take are
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
        QTRY_VERIFY2((qstrWrong = Mismatch(shown.Grab(), {{{320, 180}, c.expected}})).isEmpty(),
                     qPrintable(c.pName + QStringLiteral(": ") + qstrWrong));
    }

    // The frame's pixel shape reaches the widget: 4:3 pixels widen a 4:3
    // picture to fill 16:9.
    FramePtr pFrame = MakeFrame(AV_PIX_FMT_YUV420P, 320, 240, g_yuvRed601, g_yuvBlue601);
    pFrame->sample_aspect_ratio = AVRational{4, 3};
    QVERIFY(pOutput->Show(pFrame.get()));
    TRY_PIXELS(shown.Grab(), {{{40, 90}, g_red}, {{600, 270}, g_blue}});
    pOutput->Clear();
    TRY_PIXELS(shown.Grab(), {{{320, 90}, g_black}});

    // Once the module released the widget, the output refuses instead of
    // writing into freed memory.
    QCOMPARE(QGL_Release(shown.Handle()), 0);
    QVERIFY(!pOutput->Show(pFrame.get()));
    pOutput->Clear();
    pOutput->Refresh();
}

void TestVideoOutput::nativeWindowFollowsSize_data()
{
    QTest::addColumn<QByteArray>("qbaShm");
    QTest::addColumn<bool>("blRenderWidget");
    QTest::newRow("shared memory") << QByteArray("1") << false;
    QTest::newRow("through the connection") << QByteArray("0") << false;
    QTest::newRow("render widget") << QByteArray("1") << true;
}

void TestVideoOutput::nativeWindowFollowsSize()
{
    QFETCH(QByteArray, qbaShm);
    QFETCH(bool, blRenderWidget);
    qputenv("QUILL_X11_SHM", qbaShm);
    qunsetenv("QUILL_RENDER_GL");
    // As in the player: a child widget in a layout is the surface, a plain
    // one whose native window id is the play handle, or a render widget.
    QWidget top;
    auto* pLayout = new QHBoxLayout(&top);
    pLayout->setContentsMargins(0, 0, 0, 0);
    void* pRenderHandle = blRenderWidget ? QGL_Create(&top) : nullptr;
    if (blRenderWidget && QGL_NativeWindow(pRenderHandle) == 0)
        QSKIP("OpenGL renders in hardware here: render widgets stay OpenGL");
    auto* pSurface = blRenderWidget ? static_cast<QWidget*>(pRenderHandle) : new QWidget(&top);
    pLayout->addWidget(pSurface);
    const WId id = pSurface->winId();
    top.resize(640, 360);
    top.show();
    QVERIFY(QTest::qWaitForWindowExposed(&top));
    QTRY_COMPARE(pSurface->size(), QSize(640, 360));
    QVERIFY(QTest::qWaitForWindowExposed(pSurface->windowHandle()));
    // Once the engine draws, the toolkit must not paint over it.
    pSurface->setUpdatesEnabled(false);
    auto grab = [id] { return QGuiApplication::primaryScreen()->grabWindow(id).toImage(); };

    std::unique_ptr<IVideoOutput> pOutput = blRenderWidget
                                                ? OutputFor(pRenderHandle)
                                                : CreateVideoOutput(static_cast<std::int64_t>(id));
    // What a refresh leaves on screen: empty when it matches _vecExpected.
    auto refreshed = [&](const std::vector<Expect>& _vecExpected) {
        pOutput->Refresh();
        return Mismatch(grab(), _vecExpected);
    };
    FramePtr pFrame = MakeFrame(AV_PIX_FMT_YUV420P, 320, 240, g_yuvRed601, g_yuvBlue601);
    QVERIFY(pOutput->Show(pFrame.get()));
    // 4:3 in 640x360: the picture spans x 80..559, red above blue.
    TRY_PIXELS(grab(), {{{77, 180}, g_black},
                        {{83, 90}, g_red},
                        {{556, 270}, g_blue},
                        {{562, 180}, g_black},
                        {{320, 2}, g_red},
                        {{320, 357}, g_blue}});

    // Paused and resized taller than wide: a refresh redraws with bars above
    // and below (picture 360x270 from y 45).
    top.resize(360, 360);
    QTRY_COMPARE(pSurface->size(), QSize(360, 360));
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

    // Full screen moves the render widget into another top-level window:
    // pictures follow it there.
    if (!blRenderWidget) return;
    QWidget other;
    other.resize(200, 200);
    pSurface->setParent(&other);
    pSurface->setGeometry(0, 0, 200, 200);
    pSurface->show();
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    FramePtr pHd = MakeFrame(AV_PIX_FMT_YUV420P, 1280, 720, g_yuvRed709, g_yuvRed709);
    QVERIFY(pOutput->Show(pHd.get()));
    QTRY_COMPARE(
        (pOutput->Refresh(),
         Mismatch(QGuiApplication::primaryScreen()->grabWindow(pSurface->winId()).toImage(),
                  {{{100, 100}, g_red}, {{100, 20}, g_black}})),
        QString());
}

// A part of the picture fills the place of the whole one: the bars stay
// where they were at every zoom, and the whole picture comes back exactly.
void TestVideoOutput::zoomKeepsTheLetterbox()
{
    QFETCH(bool, blOpenGl);
    ChooseRenderPath(blOpenGl);
    ShownWidget shown(QSize(640, 360));
    QVERIFY(shown.Ready());
    if (!blOpenGl && QGL_NativeWindow(shown.Handle()) == 0)
        QSKIP("OpenGL renders in hardware here: render widgets stay OpenGL");
    std::unique_ptr<IVideoOutput> pOutput = OutputFor(shown.Handle());
    FramePtr pFrame = MakeFrame(AV_PIX_FMT_YUV420P, 320, 240, g_yuvRed601, g_yuvBlue601);
    // 4:3 in 640x360: the picture spans x 80..559.
    auto letterboxed = [](const QColor& _top, const QColor& _bottom) {
        return std::vector<Expect>{{{77, 180}, g_black},  {{83, 20}, _top},
                                   {{556, 340}, _bottom}, {{562, 180}, g_black},
                                   {{320, 2}, _top},      {{320, 357}, _bottom}};
    };
    const std::vector<Expect> vecWhole = letterboxed(g_red, g_blue);
    QVERIFY(pOutput->Show(pFrame.get()));
    TRY_PIXELS(shown.Grab(), vecWhole);

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
        TRY_PIXELS(shown.Grab(), letterboxed(zoom.top, zoom.bottom));
    }
    QVERIFY(pOutput->Show(pFrame.get()));
    TRY_PIXELS(shown.Grab(), vecWhole);
}

void TestVideoOutput::nativeWindowFailures()
{
    FramePtr pFrame = MakeFrame(AV_PIX_FMT_YUV420P, 64, 48, g_yuvRed601, g_yuvRed601);

    // Ids that name no window (one past 32 bits cannot be an X id at all).
    for (std::int64_t i64Id : {std::int64_t(0x7ffffff1), std::int64_t(0x100000001LL)}) {
        std::unique_ptr<IVideoOutput> pOutput = CreateVideoOutput(i64Id);
        QVERIFY(pOutput);
        QVERIFY(!pOutput->Show(pFrame.get()));
        pOutput->Refresh();
        pOutput->Clear();
    }

    // Frames without a picture are refused, not drawn; then the window goes
    // away under a playing engine.
    auto pWindow = std::make_unique<QWidget>();
    pWindow->resize(200, 150);
    pWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(pWindow.get()));
    std::unique_ptr<IVideoOutput> pOutput =
        CreateVideoOutput(static_cast<std::int64_t>(pWindow->winId()));
    FramePtr pEmpty(av_frame_alloc());
    QVERIFY(!pOutput->Show(pEmpty.get()));
    QVERIFY(pOutput->Show(pFrame.get()));
    pWindow.reset();
    QTRY_VERIFY(!pOutput->Show(pFrame.get()));
    pOutput->Refresh();
}

QTEST_MAIN(TestVideoOutput)
#include "tst_VideoOutput.moc"
