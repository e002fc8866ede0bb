#pragma once

#include <cstdint>

#include "QGLRenderApi.h"

namespace RK_Framework::VideoPlayer {

// The frame-sink entry points of QGLRender, resolved at run time so that the
// engine carries no Qt of its own.
class CLS_QGLRenderLibrary
{
public:
    // The entry points when QGLRender is loaded in this process, else null.
    // A render widget cannot exist before its library is loaded, so a
    // process that never loaded it has nothing to hand frames to.
    static const CLS_QGLRenderLibrary* Find();

    bool IsRenderWidget(void* _pHandle) const { return m_fnIsRenderWidget(_pHandle) != 0; }
    int PushFrame(void* _pHandle, const QGL_Frame& _frame) const
    {
        return m_fnPushFrame(_pHandle, &_frame);
    }
    // Null when the loaded QGLRender predates shared pictures.
    bool CanShare() const { return m_fnPushShared != nullptr; }
    int PushSharedFrame(void* _pHandle, const QGL_Frame& _frame, QGL_ReleaseFunc _fnRelease,
                        void* _pOpaque) const
    {
        return m_fnPushShared(_pHandle, &_frame, _fnRelease, _pOpaque);
    }
    int Clear(void* _pHandle) const { return m_fnClear(_pHandle); }
    // The window to draw into for a widget that takes no pushed pictures;
    // 0 for one that does (always, from a QGLRender that predates them).
    std::int64_t NativeWindow(void* _pHandle) const
    {
        return m_fnNativeWindow ? m_fnNativeWindow(_pHandle) : 0;
    }

private:
    using FnIsRenderWidget = int (*)(void*);
    using FnPushFrame = int (*)(void*, const QGL_Frame*);
    using FnPushShared = int (*)(void*, const QGL_Frame*, QGL_ReleaseFunc, void*);
    using FnClear = int (*)(void*);
    using FnNativeWindow = int64_t (*)(void*);

    CLS_QGLRenderLibrary(FnIsRenderWidget _fnIs, FnPushFrame _fnPush, FnPushShared _fnPushShared,
                         FnClear _fnClear, FnNativeWindow _fnNativeWindow)
        : m_fnIsRenderWidget(_fnIs),
          m_fnPushFrame(_fnPush),
          m_fnPushShared(_fnPushShared),
          m_fnClear(_fnClear),
          m_fnNativeWindow(_fnNativeWindow)
    {}

    FnIsRenderWidget m_fnIsRenderWidget;
    FnPushFrame m_fnPushFrame;
    FnPushShared m_fnPushShared;
    FnClear m_fnClear;
    FnNativeWindow m_fnNativeWindow;
};

}  // namespace RK_Framework::VideoPlayer
