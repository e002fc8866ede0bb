#include "CLS_QGLYuvRenderer.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include <QGenericMatrix>
#include <QOpenGLContext>
#include <QVector3D>
#include <QtDebug>

#include "CLS_QGLPicture.h"

#ifndef GL_UNPACK_ROW_LENGTH
#define GL_UNPACK_ROW_LENGTH 0x0CF2
#endif

// GLES 2 headers lack the sized single- and two-channel formats; they are only
// used on desktop core contexts, where the values are fixed by the standard.
#ifndef GL_R8
#define GL_R8 0x8229
#endif
#ifndef GL_RG8
#define GL_RG8 0x822B
#endif
#ifndef GL_RED
#define GL_RED 0x1903
#endif
#ifndef GL_RG
#define GL_RG 0x8227
#endif

namespace {

// Quad over the whole viewport; t = 0 is the picture's first row, which
// belongs at the top.
const GLfloat g_afQuad[] = {
    -1.f, -1.f, 0.f, 1.f,  //
    1.f,  -1.f, 1.f, 1.f,  //
    -1.f, 1.f,  0.f, 0.f,  //
    1.f,  1.f,  1.f, 0.f,
};

const char* const g_szVertex = R"(
IN_ATTR vec2 a_position;
IN_ATTR vec2 a_texCoord;
OUT_VARY vec2 v_texCoord;
void main()
{
    v_texCoord = a_texCoord;
    gl_Position = vec4(a_position, 0.0, 1.0);
}
)";

const char* const g_szFragment = R"(
IN_VARY vec2 v_texCoord;
uniform sampler2D u_texY;
uniform sampler2D u_texU;
uniform sampler2D u_texV;
uniform mat3 u_yuvToRgb;
uniform vec3 u_offset;
void main()
{
    vec3 yuv;
    yuv.x = SAMPLE(u_texY, v_texCoord).r;
#ifdef INTERLEAVED_CHROMA
    vec4 uv = SAMPLE(u_texU, v_texCoord);
    yuv.yz = vec2(uv.r, uv.SECOND_CHANNEL);
#else
    yuv.y = SAMPLE(u_texU, v_texCoord).r;
    yuv.z = SAMPLE(u_texV, v_texCoord).r;
#endif
    FRAG_OUT = vec4(clamp(u_yuvToRgb * (yuv - u_offset), 0.0, 1.0), 1.0);
}
)";

// Luma and chroma weights of the two matrices recorders use.
struct LumaWeights
{
    double dKr;
    double dKb;
};

}  // namespace

QRect CLS_QGLYuvRenderer::FitRect(int _iWidth, int _iHeight, int _iSarNum, int _iSarDen,
                                  const QSize& _sizeTarget)
{
    if (_iWidth <= 0 || _iHeight <= 0 || _sizeTarget.isEmpty()) return QRect();
    if (_iSarNum <= 0 || _iSarDen <= 0) _iSarNum = _iSarDen = 1;
    const double dAspect =
        (static_cast<double>(_iWidth) * _iSarNum) / (static_cast<double>(_iHeight) * _iSarDen);
    const int iTw = _sizeTarget.width(), iTh = _sizeTarget.height();
    int iW = iTw, iH = iTh;
    if (static_cast<double>(iTw) / iTh > dAspect) {
        iW = qBound(1, static_cast<int>(std::lround(iTh * dAspect)), iTw);
    } else {
        iH = qBound(1, static_cast<int>(std::lround(iTw / dAspect)), iTh);
    }
    return QRect((iTw - iW) / 2, (iTh - iH) / 2, iW, iH);
}

bool CLS_QGLYuvRenderer::Initialize()
{
    Release();
    QOpenGLContext* pContext = QOpenGLContext::currentContext();
    if (!pContext) return false;
    initializeOpenGLFunctions();
    m_blGles = pContext->isOpenGLES();
    const QSurfaceFormat fmt = pContext->format();
    m_blCoreProfile = !m_blGles && fmt.profile() == QSurfaceFormat::CoreProfile &&
                      fmt.version() >= qMakePair(3, 2);
    m_blRowLength = !m_blGles || fmt.majorVersion() >= 3;

    m_pProgramPlanar = std::make_unique<QOpenGLShaderProgram>();
    m_pProgramNv12 = std::make_unique<QOpenGLShaderProgram>();
    if (!BuildProgram(*m_pProgramPlanar, false) || !BuildProgram(*m_pProgramNv12, true)) {
        Release();
        return false;
    }
    // Without a VAO (GL 2.1, GLES 2) the attributes are set on each draw anyway.
    if (m_vao.create()) m_vao.bind();
    m_bufQuad.create();
    m_bufQuad.bind();
    m_bufQuad.allocate(g_afQuad, static_cast<int>(sizeof(g_afQuad)));
    m_bufQuad.release();
    if (m_vao.isCreated()) m_vao.release();

    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &m_iMaxTextureSize);
    glGenTextures(3, m_auTextures);
    for (GLuint uTexture : m_auTextures) {
        glBindTexture(GL_TEXTURE_2D, uTexture);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        // Picture sizes are rarely powers of two; GLES 2 accepts those only
        // with clamping and without mipmaps.
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    }
    glBindTexture(GL_TEXTURE_2D, 0);
    m_blInitialized = true;
    return true;
}

bool CLS_QGLYuvRenderer::BuildProgram(QOpenGLShaderProgram& _program, bool _blInterleavedChroma)
{
    QByteArray qbaVertexHead, qbaFragmentHead;
    if (m_blGles) {
        // GLSL ES 1.00 runs on every GLES version, and GLES 3 still samples
        // luminance textures.
        qbaVertexHead = "#version 100\n#define IN_ATTR attribute\n#define OUT_VARY varying\n";
        qbaFragmentHead =
            "#version 100\nprecision mediump float;\n#define IN_VARY varying\n"
            "#define SAMPLE texture2D\n#define FRAG_OUT gl_FragColor\n"
            "#define SECOND_CHANNEL a\n";
    } else if (m_blCoreProfile) {
        qbaVertexHead = "#version 150\n#define IN_ATTR in\n#define OUT_VARY out\n";
        qbaFragmentHead =
            "#version 150\n#define IN_VARY in\n#define SAMPLE texture\n"
            "out vec4 fragColor;\n#define FRAG_OUT fragColor\n#define SECOND_CHANNEL g\n";
    } else {
        qbaVertexHead = "#version 120\n#define IN_ATTR attribute\n#define OUT_VARY varying\n";
        qbaFragmentHead =
            "#version 120\n#define IN_VARY varying\n#define SAMPLE texture2D\n"
            "#define FRAG_OUT gl_FragColor\n#define SECOND_CHANNEL a\n";
    }
    if (_blInterleavedChroma) qbaFragmentHead += "#define INTERLEAVED_CHROMA 1\n";

    if (!_program.addShaderFromSourceCode(QOpenGLShader::Vertex, qbaVertexHead + g_szVertex) ||
        !_program.addShaderFromSourceCode(QOpenGLShader::Fragment,
                                          qbaFragmentHead + g_szFragment)) {
        qWarning() << "QGLRender: shader compilation failed:" << _program.log();
        return false;
    }
    _program.bindAttributeLocation("a_position", 0);
    _program.bindAttributeLocation("a_texCoord", 1);
    if (!_program.link()) {
        qWarning() << "QGLRender: shader link failed:" << _program.log();
        return false;
    }
    _program.bind();
    _program.setUniformValue("u_texY", 0);
    _program.setUniformValue("u_texU", 1);
    _program.setUniformValue("u_texV", 2);
    _program.release();
    return true;
}

void CLS_QGLYuvRenderer::Release()
{
    if (m_auTextures[0] != 0 && QOpenGLContext::currentContext()) {
        glDeleteTextures(3, m_auTextures);
    }
    for (int i = 0; i < 3; ++i) {
        m_auTextures[i] = 0;
        m_aSizeTextures[i] = QSize();
        m_iBytesPerTexel[i] = 0;
    }
    m_pProgramPlanar.reset();
    m_pProgramNv12.reset();
    if (m_bufQuad.isCreated()) m_bufQuad.destroy();
    if (m_vao.isCreated()) m_vao.destroy();
    m_blHasPicture = false;
    m_blInitialized = false;
}

void CLS_QGLYuvRenderer::UploadPlane(int _iPlane, const CLS_QGLPicture& _picture)
{
    const int iBytes = _picture.BytesPerTexel(_iPlane);
    GLint iInternal;
    GLenum uFormat;
    if (m_blCoreProfile) {
        iInternal = iBytes == 2 ? GL_RG8 : GL_R8;
        uFormat = iBytes == 2 ? GL_RG : GL_RED;
    } else {
        iInternal = iBytes == 2 ? GL_LUMINANCE_ALPHA : GL_LUMINANCE;
        uFormat = static_cast<GLenum>(iInternal);
    }
    const QSize sizePlane(_picture.PlaneWidth(_iPlane), _picture.PlaneHeight(_iPlane));
    const std::uint8_t* pData = _picture.PlaneData(_iPlane);
    const int iStride = _picture.PlaneStride(_iPlane);
    const bool blPadded = iStride != sizePlane.width() * iBytes;
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(_iPlane));
    glBindTexture(GL_TEXTURE_2D, m_auTextures[_iPlane]);
    // Reallocating storage only when the geometry changes keeps a steady
    // stream on the cheaper sub-image path.
    const bool blNewStorage =
        sizePlane != m_aSizeTextures[_iPlane] || iBytes != m_iBytesPerTexel[_iPlane];
    if (blNewStorage) {
        glTexImage2D(GL_TEXTURE_2D, 0, iInternal, sizePlane.width(), sizePlane.height(), 0, uFormat,
                     GL_UNSIGNED_BYTE, blPadded ? nullptr : pData);
        m_aSizeTextures[_iPlane] = sizePlane;
        m_iBytesPerTexel[_iPlane] = iBytes;
        if (!blPadded) return;
    }
    if (!blPadded) {
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, sizePlane.width(), sizePlane.height(), uFormat,
                        GL_UNSIGNED_BYTE, pData);
    } else if (m_blRowLength) {
        // Shared decoder pictures have padded rows; the driver skips the
        // padding itself.
        glPixelStorei(GL_UNPACK_ROW_LENGTH, iStride / iBytes);
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, sizePlane.width(), sizePlane.height(), uFormat,
                        GL_UNSIGNED_BYTE, pData);
        glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    } else {
        // GLES 2 has no row length: one row at a time.
        for (int r = 0; r < sizePlane.height(); ++r) {
            glTexSubImage2D(GL_TEXTURE_2D, 0, 0, r, sizePlane.width(), 1, uFormat, GL_UNSIGNED_BYTE,
                            pData + static_cast<std::ptrdiff_t>(r) * iStride);
        }
    }
}

bool CLS_QGLYuvRenderer::Upload(const CLS_QGLPicture& _picture)
{
    m_blHasPicture = false;
    if (!m_blInitialized) return false;
    // Older integrated GPUs stop at 8192: a larger camera picture would
    // silently sample as black or garbage.
    if (_picture.Width() > m_iMaxTextureSize || _picture.Height() > m_iMaxTextureSize) return false;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (int i = 0; i < _picture.PlaneCount(); ++i)
        UploadPlane(i, _picture);
    glActiveTexture(GL_TEXTURE0);
    m_blInterleavedChroma = _picture.Format() == QGL_PIX_NV12;
    m_iMatrix = _picture.Matrix();
    m_blFullRange = _picture.FullRange();
    m_blHasPicture = true;
    return true;
}

void CLS_QGLYuvRenderer::Draw(const QRect& _rectGl)
{
    if (!m_blInitialized || !m_blHasPicture || _rectGl.isEmpty()) return;
    QOpenGLShaderProgram& program = m_blInterleavedChroma ? *m_pProgramNv12 : *m_pProgramPlanar;

    const LumaWeights weights =
        m_iMatrix == QGL_MATRIX_BT709 ? LumaWeights{0.2126, 0.0722} : LumaWeights{0.299, 0.114};
    const double dKg = 1.0 - weights.dKr - weights.dKb;
    // Limited range puts black at 16 and white at 235 (chroma 16..240), so the
    // samples are stretched before the matrix; full range needs no stretch.
    const double dScaleY = m_blFullRange ? 1.0 : 255.0 / 219.0;
    const double dScaleC = m_blFullRange ? 1.0 : 255.0 / 224.0;
    const double dRv = 2.0 * (1.0 - weights.dKr);
    const double dBu = 2.0 * (1.0 - weights.dKb);
    const double dGu = -dBu * weights.dKb / dKg;
    const double dGv = -dRv * weights.dKr / dKg;
    const float afRowMajor[9] = {
        float(dScaleY),
        0.f,
        float(dRv * dScaleC),  //
        float(dScaleY),
        float(dGu * dScaleC),
        float(dGv * dScaleC),  //
        float(dScaleY),
        float(dBu * dScaleC),
        0.f,
    };
    const QVector3D vecOffset(m_blFullRange ? 0.f : 16.f / 255.f, 128.f / 255.f, 128.f / 255.f);

    glViewport(_rectGl.x(), _rectGl.y(), _rectGl.width(), _rectGl.height());
    program.bind();
    program.setUniformValue("u_yuvToRgb", QMatrix3x3(afRowMajor));
    program.setUniformValue("u_offset", vecOffset);
    for (int i = 0; i < 3; ++i) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(i));
        glBindTexture(GL_TEXTURE_2D, m_auTextures[i]);
    }
    if (m_vao.isCreated()) m_vao.bind();
    m_bufQuad.bind();
    program.enableAttributeArray(0);
    program.enableAttributeArray(1);
    program.setAttributeBuffer(0, GL_FLOAT, 0, 2, 4 * sizeof(GLfloat));
    program.setAttributeBuffer(1, GL_FLOAT, 2 * sizeof(GLfloat), 2, 4 * sizeof(GLfloat));
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    program.disableAttributeArray(0);
    program.disableAttributeArray(1);
    m_bufQuad.release();
    if (m_vao.isCreated()) m_vao.release();
    for (int i = 2; i >= 0; --i) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(i));
        glBindTexture(GL_TEXTURE_2D, 0);
    }
    program.release();
}
