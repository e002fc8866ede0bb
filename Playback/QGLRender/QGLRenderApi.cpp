#include "QGLRenderApi.h"

#include <exception>
#include <memory>

#include <QApplication>
#include <QThread>
#include <QtDebug>

#include "CLS_QGLNativeVideoWidget.h"
#include "CLS_QGLRenderWidget.h"
#include "CLS_QGLRendererProbe.h"
#include "CLS_QGLWidgetRegistry.h"

// Entry points are called from C and from the engine's threads: nothing may
// escape them, least of all an exception.

namespace {

bool OnGuiThread()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr &&
           QThread::currentThread() == QCoreApplication::instance()->thread();
}

}  // namespace

void* QGL_Create(void* parent)
{
    try {
        if (!OnGuiThread()) {
            qWarning() << "QGL_Create: needs a QApplication and its GUI thread";
            return nullptr;
        }
        auto* pParent = static_cast<QWidget*>(parent);
        if (CLS_QGLRendererProbe::PreferNativeWindow()) {
            return CLS_QGLWidgetRegistry::HandleOf(new CLS_QGLNativeVideoWidget(pParent));
        }
        return CLS_QGLWidgetRegistry::HandleOf(new CLS_QGLRenderWidget(pParent));
    } catch (const std::exception& e) {
        qWarning() << "QGL_Create failed:" << e.what();
    } catch (...) {
        qWarning() << "QGL_Create failed";
    }
    return nullptr;
}

int QGL_Release(void* widget)
{
    try {
        QWidget* pWidget = CLS_QGLWidgetRegistry::Instance().Remove(widget);
        if (!pWidget) return -1;
        if (QThread::currentThread() == pWidget->thread()) {
            delete pWidget;
        } else {
            pWidget->deleteLater();
        }
        return 0;
    } catch (...) {
        qWarning() << "QGL_Release failed";
        return -2;
    }
}

int QGL_IsRenderWidget(void* handle)
{
    try {
        return handle && CLS_QGLWidgetRegistry::Instance().Contains(handle) ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

int64_t QGL_NativeWindow(void* handle)
{
    try {
        return handle ? CLS_QGLWidgetRegistry::Instance().NativeWindow(handle) : 0;
    } catch (...) {
        return 0;
    }
}

int QGL_PushFrame(void* handle, const QGL_Frame* frame)
{
    try {
        if (!frame) return -2;
        bool blAccepted = false;
        if (!CLS_QGLWidgetRegistry::Instance().WithWidget(
                handle, [&](CLS_QGLRenderWidget* _pWidget) {
                    blAccepted = _pWidget->AcceptFrame(*frame);
                })) {
            return -1;
        }
        return blAccepted ? 0 : -2;
    } catch (...) {
        return -3;
    }
}

int QGL_PushSharedFrame(void* handle, const QGL_Frame* frame, QGL_ReleaseFunc release, void* opaque)
{
    // Whatever happens below, the planes are handed back exactly once: the
    // holder owns them from here on.
    std::shared_ptr<void> pHolder;
    try {
        pHolder = std::shared_ptr<void>(opaque, [release](void* _pOpaque) {
            if (release) release(_pOpaque);
        });
    } catch (...) {
        if (release) release(opaque);
        return -3;
    }
    try {
        if (!frame) return -2;
        bool blAccepted = false;
        if (!CLS_QGLWidgetRegistry::Instance().WithWidget(
                handle, [&](CLS_QGLRenderWidget* _pWidget) {
                    blAccepted = _pWidget->AcceptSharedFrame(*frame, std::move(pHolder));
                })) {
            return -1;
        }
        return blAccepted ? 0 : -2;
    } catch (...) {
        return -3;
    }
}

int QGL_Clear(void* handle)
{
    try {
        return CLS_QGLWidgetRegistry::Instance().WithWidget(
                   handle, [](CLS_QGLRenderWidget* _pWidget) { _pWidget->ClearFrame(); })
                   ? 0
                   : -1;
    } catch (...) {
        return -3;
    }
}
