#include "CLS_QGLRendererProbe.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QtDebug>

namespace {

// Empty when no context could be made current.
QString ProbeRenderer()
{
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!surface.isValid() || !context.create() || !context.makeCurrent(&surface)) return {};
    const auto* pRenderer =
        reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
    QString qstrRenderer = pRenderer ? QString::fromLatin1(pRenderer) : QString();
    context.doneCurrent();
    return qstrRenderer;
}

}  // namespace

bool CLS_QGLRendererProbe::PreferNativeWindow()
{
    if (qEnvironmentVariableIntValue("QUILL_RENDER_GL") == 1) return false;
    static const bool s_blNative = [] {
        const QString qstrRenderer = ProbeRenderer();
        const bool blNative = qstrRenderer.isEmpty() || IsSoftwareRenderer(qstrRenderer);
        if (blNative) {
            qInfo().noquote() << "QGLRender: OpenGL renderer"
                              << (qstrRenderer.isEmpty() ? QStringLiteral("(none)") : qstrRenderer)
                              << "draws on the CPU; video goes straight to a native window";
        }
        return blNative;
    }();
    return s_blNative;
}

bool CLS_QGLRendererProbe::IsSoftwareRenderer(const QString& _qstrRenderer)
{
    for (const char* szName :
         {"llvmpipe", "softpipe", "swrast", "Software Rasterizer", "GDI Generic"}) {
        if (_qstrRenderer.contains(QLatin1String(szName), Qt::CaseInsensitive)) return true;
    }
    return false;
}
