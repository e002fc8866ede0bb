#include "CLS_QGLWidgetRegistry.h"

#include <QWidget>

#include "CLS_QGLRenderWidget.h"

CLS_QGLWidgetRegistry& CLS_QGLWidgetRegistry::Instance()
{
    // Never destroyed: a widget still alive when static destructors run must
    // still find the registry to unregister from.
    static CLS_QGLWidgetRegistry* s_pRegistry = new CLS_QGLWidgetRegistry;
    return *s_pRegistry;
}

void* CLS_QGLWidgetRegistry::HandleOf(CLS_QGLRenderWidget* _pWidget)
{
    // The handle is the QWidget pointer, the type the module holds it as.
    return static_cast<QWidget*>(_pWidget);
}

void CLS_QGLWidgetRegistry::Add(CLS_QGLRenderWidget* _pWidget)
{
    QMutexLocker locker(&m_mutex);
    m_mapWidgets[HandleOf(_pWidget)] = _pWidget;
}

CLS_QGLRenderWidget* CLS_QGLWidgetRegistry::Remove(const void* _pHandle)
{
    QMutexLocker locker(&m_mutex);
    const auto it = m_mapWidgets.find(_pHandle);
    if (it == m_mapWidgets.end()) return nullptr;
    CLS_QGLRenderWidget* pWidget = it->second;
    m_mapWidgets.erase(it);
    return pWidget;
}

bool CLS_QGLWidgetRegistry::Contains(const void* _pHandle) const
{
    QMutexLocker locker(&m_mutex);
    return m_mapWidgets.count(_pHandle) != 0;
}
