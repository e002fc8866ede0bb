// The engine's video outputs, fed with AVFrames as the decoder makes them:
// into a QGLRender widget, into a plain native window, and into nothing.

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QOpenGLWidget>
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

#include "IVideoOutput.h"
#include "QGLRenderApi.h"
#include "RenderTestSupport.h"

using RenderTest::Mismatch;
using RenderTest::Yuv;
using RK_Framework::VideoPlayer::CreateVideoOutput;
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

// A render widget made by QGL_Create, shown at _size; null if it is not.
QOpenGLWidget* ShownRenderWidget(const QSize& _size, void*& _pHandle)
{
    _pHandle = QGL_Create(nullptr);
    auto* pWidget = qobject_cast<QOpenGLWidget*>(static_cast<QWidget*>(_pHandle));
    if (!pWidget) return nullptr;
    pWidget->resize(_size);
    pWidget->show();
    return QTest::qWaitForWindowExposed(pWidget) ? pWidget : nullptr;
}

std::unique_ptr<IVideoOutput> OutputFor(const void* _pHandle)
{
    return CreateVideoOutput(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(_pHandle)));
}

const Yuv g_yuvRed601{81, 90, 240};
const Yuv g_yuvBlue601{41, 240, 110};
const Yuv g_yuvRed709{63, 102, 240};
const QColor g_red(255, 0, 0), g_blue(0, 0, 255), g_black(0, 0, 0);

}  // namespace

class TestVideoOutput : public QObject
{
    Q_OBJECT

private slots:
    void renderWidget_data();
    void renderWidget();
    void renderWidgetAspectAndRelease();
    void nativeWindowFollowsSize();
    void nativeWindowFailures();
};

void TestVideoOutput::renderWidget_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("colorspace");
    QTest::addColumn<int>("range");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("u");
    QTest::addColumn<int>("v");
    QTest::addColumn<QColor>("expected");

    const QSize sd(320, 240), hd(1280, 720);
    const int untagged = AVCOL_SPC_UNSPECIFIED, bt709 = AVCOL_SPC_BT709,
              bt601 = AVCOL_SPC_SMPTE170M;
    const int limited = AVCOL_RANGE_MPEG, full = AVCOL_RANGE_JPEG,
              norange = AVCOL_RANGE_UNSPECIFIED;
    QTest::newRow("yuv420p untagged HD is 709")
        << int(AV_PIX_FMT_YUV420P) << hd << untagged << norange << 63 << 102 << 240 << g_red;
    QTest::newRow("HD tagged 601 stays 601")
        << int(AV_PIX_FMT_YUV420P) << hd << bt601 << limited << 81 << 90 << 240 << g_red;
    QTest::newRow("SD tagged 709 stays 709")
        << int(AV_PIX_FMT_NV12) << sd << bt709 << limited << 63 << 102 << 240 << g_red;
    QTest::newRow("yuvj420p is full range")
        << int(AV_PIX_FMT_YUVJ420P) << sd << untagged << norange << 76 << 85 << 255 << g_red;
    QTest::newRow("range tag full on yuv420p") << int(AV_PIX_FMT_YUV420P) << sd << bt601 << full
                                               << 200 << 128 << 128 << QColor(200, 200, 200);
    QTest::newRow("yuv422p odd size") << int(AV_PIX_FMT_YUV422P) << QSize(317, 239) << untagged
                                      << norange << 41 << 240 << 110 << g_blue;
    QTest::newRow("10-bit HD converted keeps 709")
        << int(AV_PIX_FMT_YUV420P10LE) << hd << untagged << limited << 63 << 102 << 240 << g_red;
    QTest::newRow("10-bit full range keeps its range")
        << int(AV_PIX_FMT_YUV420P10LE) << sd << bt601 << full << 200 << 128 << 128
        << QColor(200, 200, 200);
    QTest::newRow("rgb24 converted") << int(AV_PIX_FMT_RGB24) << sd << untagged << norange << 40
                                     << 200 << 90 << QColor(40, 200, 90);
    QTest::newRow("gray converted") << int(AV_PIX_FMT_GRAY8) << sd << untagged << norange << 126
                                    << 0 << 0 << QColor(128, 128, 128);
}

void TestVideoOutput::renderWidget()
{
    QFETCH(int, format);
    QFETCH(QSize, size);
    QFETCH(int, colorspace);
    QFETCH(int, range);
    QFETCH(int, y);
    QFETCH(int, u);
    QFETCH(int, v);
    QFETCH(QColor, expected);

    void* pHandle = nullptr;
    QOpenGLWidget* pWidget = ShownRenderWidget(QSize(320, 240), pHandle);
    QVERIFY(pWidget);
    std::unique_ptr<IVideoOutput> pOutput = OutputFor(pHandle);
    FramePtr pFrame =
        MakeFrame(AVPixelFormat(format), size.width(), size.height(), {y, u, v}, {y, u, v});
    QVERIFY(pFrame);
    pFrame->colorspace = AVColorSpace(colorspace);
    pFrame->color_range = AVColorRange(range);
    QVERIFY(pOutput->Show(pFrame.get()));
    const QImage image = pWidget->grabFramebuffer();
    QCOMPARE(QGL_Release(pHandle), 0);
    VERIFY_PIXELS(image, {{{160, 120}, expected}});
}

void TestVideoOutput::renderWidgetAspectAndRelease()
{
    void* pHandle = nullptr;
    QOpenGLWidget* pWidget = ShownRenderWidget(QSize(640, 360), pHandle);
    QVERIFY(pWidget);
    std::unique_ptr<IVideoOutput> pOutput = OutputFor(pHandle);

    // The frame's pixel shape reaches the widget: 4:3 pixels widen a 4:3
    // picture to 16:9, filling the bars a square-pixel picture leaves.
    FramePtr pFrame = MakeFrame(AV_PIX_FMT_YUV420P, 320, 240, g_yuvRed601, g_yuvBlue601);
    QVERIFY(pOutput->Show(pFrame.get()));
    VERIFY_PIXELS(pWidget->grabFramebuffer(),
                  {{{40, 90}, g_black}, {{320, 90}, g_red}, {{320, 270}, g_blue}});
    pFrame->sample_aspect_ratio = AVRational{4, 3};
    QVERIFY(pOutput->Show(pFrame.get()));
    VERIFY_PIXELS(pWidget->grabFramebuffer(), {{{40, 90}, g_red}, {{600, 270}, g_blue}});

    pOutput->Clear();
    VERIFY_PIXELS(pWidget->grabFramebuffer(), {{{320, 90}, g_black}});

    // Once the module released the widget, the output refuses instead of
    // writing into freed memory.
    QCOMPARE(QGL_Release(pHandle), 0);
    QVERIFY(!pOutput->Show(pFrame.get()));
    pOutput->Clear();
    pOutput->Refresh();
}

void TestVideoOutput::nativeWindowFollowsSize()
{
    // As in the player: a plain child widget in a layout is the surface, and
    // its native window id is the play handle.
    QWidget top;
    auto* pLayout = new QHBoxLayout(&top);
    pLayout->setContentsMargins(0, 0, 0, 0);
    auto* pSurface = new QWidget(&top);
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

    std::unique_ptr<IVideoOutput> pOutput = CreateVideoOutput(static_cast<std::int64_t>(id));
    FramePtr pFrame = MakeFrame(AV_PIX_FMT_YUV420P, 320, 240, g_yuvRed601, g_yuvBlue601);
    QVERIFY(pOutput->Show(pFrame.get()));
    // 4:3 in 640x360: the picture spans x 80..559, red above blue.
    VERIFY_PIXELS(grab(), {{{40, 180}, g_black},
                           {{600, 180}, g_black},
                           {{84, 90}, g_red},
                           {{555, 270}, g_blue},
                           {{320, 2}, g_red},
                           {{320, 357}, g_blue}});

    QString qstrWrong;
    // Paused and resized taller than wide: a refresh redraws with bars above
    // and below (picture 360x270 from y 45).
    top.resize(360, 360);
    QTRY_COMPARE(pSurface->size(), QSize(360, 360));
    QTRY_VERIFY2((pOutput->Refresh(), qstrWrong = Mismatch(grab(), {{{180, 20}, g_black},
                                                                    {{180, 340}, g_black},
                                                                    {{180, 50}, g_red},
                                                                    {{180, 310}, g_blue},
                                                                    {{2, 100}, g_red}}))
                     .isEmpty(),
                 qPrintable(qstrWrong));

    // New pictures follow the new size too, with their pixel shape: 4:3
    // pixels make the same frame 16:9 (360x203 from y 79).
    pFrame->sample_aspect_ratio = AVRational{4, 3};
    QVERIFY(pOutput->Show(pFrame.get()));
    VERIFY_PIXELS(
        grab(),
        {{{180, 70}, g_black}, {{180, 84}, g_red}, {{180, 276}, g_blue}, {{180, 290}, g_black}});

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
    QTRY_VERIFY2((pOutput->Refresh(),
                  qstrWrong = Mismatch(
                      grab(), {{{180, 70}, g_black}, {{180, 84}, g_red}, {{180, 276}, g_blue}}))
                     .isEmpty(),
                 qPrintable(qstrWrong));

    // A 709 HD picture converts with its own matrix on the CPU path as well.
    FramePtr pHd = MakeFrame(AV_PIX_FMT_YUV420P, 1280, 720, g_yuvRed709, g_yuvRed709);
    QVERIFY(pOutput->Show(pHd.get()));
    VERIFY_PIXELS(grab(), {{{180, 180}, g_red}});

    pOutput->Clear();
    VERIFY_PIXELS(grab(), {{{180, 180}, g_black}, {{5, 5}, g_black}});
}

void TestVideoOutput::nativeWindowFailures()
{
    FramePtr pFrame = MakeFrame(AV_PIX_FMT_YUV420P, 64, 48, g_yuvRed601, g_yuvRed601);

    // Ids that name no window (one past 32 bits cannot be an X id at all).
    for (std::int64_t i64Id :
         {std::int64_t(0x7ffffff1), std::int64_t(0x100000001LL), std::int64_t(-5)}) {
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
    QVERIFY(!pOutput->Show(nullptr));
    QVERIFY(pOutput->Show(pFrame.get()));
    pWindow.reset();
    QTRY_VERIFY(!pOutput->Show(pFrame.get()));
    pOutput->Refresh();
}

QTEST_MAIN(TestVideoOutput)
#include "tst_VideoOutput.moc"
