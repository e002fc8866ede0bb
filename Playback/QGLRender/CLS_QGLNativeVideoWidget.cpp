#include "CLS_QGLNativeVideoWidget.h"

#include <QEvent>

#include "CLS_QGLWidgetRegistry.h"

CLS_QGLNativeVideoWidget::CLS_QGLNativeVideoWidget(QWidget* _pParent) : QWidget(_pParent)
{
    setObjectName(QStringLiteral("QGLRenderWidget"));
    // A window of its own, without dragging its ancestors into native
    // windows as well (each would be one more surface to compose).
    setAttribute(Qt::WA_DontCreateNativeAncestors);
    setAttribute(Qt::WA_NativeWindow);
    setAttribute(Qt::WA_PaintOnScreen);
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_OpaquePaintEvent);
    // The engine may be handed the widget before it is shown: the window id
    // must exist from the start.
    const WId id = winId();
    CLS_QGLWidgetRegistry::Instance().AddNative(this, static_cast<qint64>(id));
}

CLS_QGLNativeVideoWidget::~CLS_QGLNativeVideoWidget()
{
    CLS_QGLWidgetRegistry::Instance().Remove(this);
}

bool CLS_QGLNativeVideoWidget::event(QEvent* _pEvent)
{
    // Moving into another top-level window (full screen) may give the widget
    // a new window; the engine follows it through the registry.
    if (_pEvent->type() == QEvent::WinIdChange) {
        CLS_QGLWidgetRegistry::Instance().SetNativeWindow(
            this, testAttribute(Qt::WA_WState_Created) ? static_cast<qint64>(internalWinId()) : 0);
    }
    return QWidget::event(_pEvent);
}
