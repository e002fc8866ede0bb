#pragma once

#include <cstdint>
#include <unordered_map>

#include <QMutex>
#include <QMutexLocker>

class CLS_QGLRenderWidget;
class QWidget;

// Every live render widget of the process, keyed by the handle QGL_Create gave
// out. The engine holds handles that may already be released, so nothing
// outside this library dereferences one before the registry vouches for it.
// A widget is either an OpenGL one fed with pictures, or a native window the
// engine draws into itself.
class CLS_QGLWidgetRegistry
{
public:
    static CLS_QGLWidgetRegistry& Instance();

    static void* HandleOf(QWidget* _pWidget) { return _pWidget; }

    void Add(CLS_QGLRenderWidget* _pWidget);
    void AddNative(QWidget* _pWidget, std::int64_t _i64Window);
    void SetNativeWindow(const void* _pHandle, std::int64_t _i64Window);
    // Forgets the widget behind _pHandle and answers it; null when unknown.
    QWidget* Remove(const void* _pHandle);
    bool Contains(const void* _pHandle) const;
    // The native window of a native widget; 0 for an OpenGL or unknown one.
    std::int64_t NativeWindow(const void* _pHandle) const;

    // Runs _fn(widget) for an OpenGL widget with the registry locked, so the
    // widget cannot be deleted meanwhile. False, without calling _fn, for an
    // unknown handle; true without calling it for a native widget.
    template <typename Fn>
    bool WithWidget(const void* _pHandle, Fn&& _fn)
    {
        QMutexLocker locker(&m_mutex);
        const auto it = m_mapWidgets.find(_pHandle);
        if (it == m_mapWidgets.end()) return false;
        if (it->second.pGl) _fn(it->second.pGl);
        return true;
    }

private:
    struct SEntry
    {
        QWidget* pWidget = nullptr;
        CLS_QGLRenderWidget* pGl = nullptr;
        std::int64_t i64Window = 0;
    };

    CLS_QGLWidgetRegistry() = default;

    mutable QMutex m_mutex;
    std::unordered_map<const void*, SEntry> m_mapWidgets;
};
