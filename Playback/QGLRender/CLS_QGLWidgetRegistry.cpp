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

void CLS_QGLWidgetRegistry::Add(CLS_QGLRenderWidget* _pWidget)
{
    QMutexLocker locker(&m_mutex);
    m_mapWidgets[HandleOf(_pWidget)] = SEntry{_pWidget, _pWidget, 0};
}

void CLS_QGLWidgetRegistry::AddNative(QWidget* _pWidget, std::int64_t _i64Window)
{
    QMutexLocker locker(&m_mutex);
    m_mapWidgets[HandleOf(_pWidget)] = SEntry{_pWidget, nullptr, _i64Window};
}

void CLS_QGLWidgetRegistry::SetNativeWindow(const void* _pHandle, std::int64_t _i64Window)
{
    QMutexLocker locker(&m_mutex);
    const auto it = m_mapWidgets.find(_pHandle);
    if (it != m_mapWidgets.end() && !it->second.pGl) it->second.i64Window = _i64Window;
}

QWidget* CLS_QGLWidgetRegistry::Remove(const void* _pHandle)
{
    QMutexLocker locker(&m_mutex);
    const auto it = m_mapWidgets.find(_pHandle);
    if (it == m_mapWidgets.end()) return nullptr;
    QWidget* pWidget = it->second.pWidget;
    m_mapWidgets.erase(it);
    return pWidget;
}

bool CLS_QGLWidgetRegistry::Contains(const void* _pHandle) const
{
    QMutexLocker locker(&m_mutex);
    return m_mapWidgets.count(_pHandle) != 0;
}

std::int64_t CLS_QGLWidgetRegistry::NativeWindow(const void* _pHandle) const
{
    QMutexLocker locker(&m_mutex);
    const auto it = m_mapWidgets.find(_pHandle);
    return it == m_mapWidgets.end() ? 0 : it->second.i64Window;
}
