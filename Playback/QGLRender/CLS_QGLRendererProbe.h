#pragma once

#include <QString>

// Whether OpenGL is worth using for video on this machine. A renderer that
// rasterises on the CPU (Mesa's llvmpipe and kin) costs more than scaling the
// picture straight into the window: it draws into a framebuffer object and
// the toolkit composes that again into the window, two full passes per frame.
class CLS_QGLRendererProbe
{
public:
    // GUI thread. True when render widgets should hand the engine a native
    // window instead: the renderer is a software one, or there is no OpenGL
    // at all. The renderer is probed once per process; QUILL_RENDER_GL=1
    // (read on every call) keeps OpenGL whatever it is.
    static bool PreferNativeWindow();
    static bool IsSoftwareRenderer(const QString& _qstrRenderer);
};
