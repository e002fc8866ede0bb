#pragma once

#include <unordered_map>

#include <QMutex>
#include <QMutexLocker>

class CLS_QGLRenderWidget;

// Every live render widget of the process, keyed by the handle QGL_Create gave
// out. The engine holds handles that may already be released, so nothing
// outside this library dereferences one before the registry vouches for it.
class CLS_QGLWidgetRegistry
{
public:
    static CLS_QGLWidgetRegistry& Instance();

    static void* HandleOf(CLS_QGLRenderWidget* _pWidget);

    void Add(CLS_QGLRenderWidget* _pWidget);
    // Forgets the widget behind _pHandle and answers it; null when unknown.
    CLS_QGLRenderWidget* Remove(const void* _pHandle);
    bool Contains(const void* _pHandle) const;

    // Runs _fn(widget) with the registry locked, so the widget cannot be
    // deleted meanwhile. False, without calling _fn, for an unknown handle.
    template <typename Fn>
    bool WithWidget(const void* _pHandle, Fn&& _fn)
    {
        QMutexLocker locker(&m_mutex);
        const auto it = m_mapWidgets.find(_pHandle);
        if (it == m_mapWidgets.end()) return false;
        _fn(it->second);
        return true;
    }

private:
    CLS_QGLWidgetRegistry() = default;

    mutable QMutex m_mutex;
    std::unordered_map<const void*, CLS_QGLRenderWidget*> m_mapWidgets;
};
