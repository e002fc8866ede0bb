#pragma once

#include <memory>

#include <QOpenGLBuffer>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QRect>
#include <QSize>

class CLS_QGLPicture;

// GL side of a render widget: the YUV textures and the programs that turn them
// into RGB. Every call except FitRect needs the widget's context current.
class CLS_QGLYuvRenderer : protected QOpenGLFunctions
{
public:
    CLS_QGLYuvRenderer() = default;
    CLS_QGLYuvRenderer(const CLS_QGLYuvRenderer&) = delete;
    CLS_QGLYuvRenderer& operator=(const CLS_QGLYuvRenderer&) = delete;

    // Builds programs and buffers for the current context. False when the
    // context cannot run them; the widget then stays black.
    bool Initialize();
    bool IsInitialized() const { return m_blInitialized; }
    // Deletes every GL object; the next Initialize starts afresh.
    void Release();

    // False when the picture exceeds what this context's textures can hold.
    bool Upload(const CLS_QGLPicture& _picture);
    // Draws the uploaded picture into _rectGl (GL window coordinates, origin
    // bottom left) of the bound framebuffer.
    void Draw(const QRect& _rectGl);

    // The largest rectangle of _sizeTarget showing a _iWidth x _iHeight picture
    // of sample aspect _iSarNum:_iSarDen undistorted, centred (origin top left).
    static QRect FitRect(int _iWidth, int _iHeight, int _iSarNum, int _iSarDen,
                         const QSize& _sizeTarget);

private:
    bool BuildProgram(QOpenGLShaderProgram& _program, bool _blInterleavedChroma);
    void UploadPlane(int _iPlane, const CLS_QGLPicture& _picture);

    bool m_blInitialized = false;
    // Desktop GL 3.2+ core has no luminance textures and needs GLSL 1.50 and a VAO.
    bool m_blCoreProfile = false;
    bool m_blGles = false;
    // GL_UNPACK_ROW_LENGTH exists (all but GLES 2).
    bool m_blRowLength = false;
    std::unique_ptr<QOpenGLShaderProgram> m_pProgramPlanar;
    std::unique_ptr<QOpenGLShaderProgram> m_pProgramNv12;
    QOpenGLBuffer m_bufQuad{QOpenGLBuffer::VertexBuffer};
    QOpenGLVertexArrayObject m_vao;
    GLuint m_auTextures[3] = {0, 0, 0};
    QSize m_aSizeTextures[3];
    int m_iBytesPerTexel[3] = {0, 0, 0};

    GLint m_iMaxTextureSize = 0;
    bool m_blHasPicture = false;
    bool m_blInterleavedChroma = false;
    int m_iMatrix = 0;
    bool m_blFullRange = false;
};
