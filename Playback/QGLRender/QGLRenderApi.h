#pragma once

// C entry points of the QGLRender library.
//
// The module side creates and releases render widgets ("QGL_Create",
// "QGL_Release"). The playback engine, which has no Qt of its own, hands
// decoded pictures to a widget through the frame-sink functions below; it
// resolves them by name at run time and never dereferences a handle it was
// given: it asks QGL_IsRenderWidget first. Every function is safe to call from
// any thread; a handle that is not (or no longer) a live render widget is
// answered with a refusal, never a crash.

#include <stdint.h>

#if defined(_WIN32)
#define QGL_EXPORT __declspec(dllexport)
#else
#define QGL_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

// Pixel layouts a render widget accepts; anything else the engine converts.
enum QGL_PixelFormat {
    QGL_PIX_YUV420P = 0,  // three planes, chroma halved both ways
    QGL_PIX_NV12 = 1,     // luma plane + interleaved UV plane
    QGL_PIX_YUV422P = 2,  // three planes, chroma halved horizontally
    QGL_PIX_YUV444P = 3,  // three full planes
};

enum QGL_ColorMatrix {
    QGL_MATRIX_BT601 = 0,
    QGL_MATRIX_BT709 = 1,
};

// One picture. Planes are copied before QGL_PushFrame returns.
typedef struct QGL_Frame
{
    int32_t format;  // QGL_PixelFormat
    int32_t width;   // coded picture size in pixels
    int32_t height;
    const uint8_t* data[3];
    int32_t linesize[3];  // bytes per row of each plane; negative: bottom-up rows
    int32_t sarNum;       // sample (pixel) aspect ratio; 0/0 or 1/1 for square
    int32_t sarDen;
    int32_t matrix;     // QGL_ColorMatrix
    int32_t fullRange;  // 1: 0..255 (JPEG); 0: 16..235 limited
} QGL_Frame;

// Creates a render widget and registers it. The argument is the parent widget
// and is always passed null by the module. The widget is a QOpenGLWidget fed
// through the frame-sink functions; where OpenGL would draw on the CPU anyway
// it is a bare native window instead, which QGL_NativeWindow names and the
// engine draws into itself.
QGL_EXPORT void* QGL_Create(void* parent);
// Unregisters and deletes a widget made by QGL_Create: 0, or -1 for a pointer
// it does not know (which is left alone). Called off the widget's thread, the
// deletion is deferred to that thread.
QGL_EXPORT int QGL_Release(void* widget);

// 1 when handle is a live render widget of this library, else 0.
QGL_EXPORT int QGL_IsRenderWidget(void* handle);
// Hands the widget a picture to show (it repaints on its own thread). 0 on
// success, -1 for an unknown handle, -2 for a frame it cannot show (a widget
// that QGL_NativeWindow names takes none).
QGL_EXPORT int QGL_PushFrame(void* handle, const QGL_Frame* frame);
// Like QGL_PushFrame, but the widget keeps the planes where they are instead
// of copying them (line sizes must be positive). It calls release(opaque)
// exactly once, on any thread, when it no longer needs them: at once when the
// frame is refused or the handle unknown, else when a newer picture replaces
// this one on screen or the widget goes away.
typedef void (*QGL_ReleaseFunc)(void* opaque);
QGL_EXPORT int QGL_PushSharedFrame(void* handle, const QGL_Frame* frame, QGL_ReleaseFunc release,
                                   void* opaque);
// Drops the picture: the widget shows black. 0, or -1 for an unknown handle.
QGL_EXPORT int QGL_Clear(void* handle);
// The native window id of a render widget that wants pictures drawn into its
// window rather than pushed; 0 for an OpenGL widget or an unknown handle.
// Asked again before drawing: the id changes when the widget moves into
// another top-level window, and is 0 while it has none.
QGL_EXPORT int64_t QGL_NativeWindow(void* handle);

#ifdef __cplusplus
}
#endif
