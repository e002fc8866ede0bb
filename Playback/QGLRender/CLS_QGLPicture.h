#pragma once

#include <cstdint>
#include <vector>

#include <QString>

#include "QGLRenderApi.h"

// A render widget's own copy of one picture. Rows are packed without padding,
// so every plane uploads with an unpack alignment of 1 and no row-length
// setting, which GLES 2 lacks.
class CLS_QGLPicture
{
public:
    // Copies the planes of _frame, reusing this object's buffers. False, with
    // the reason in *_pqstrError, when the frame cannot be shown.
    bool Assign(const QGL_Frame& _frame, QString* _pqstrError);

    int Format() const { return m_iFormat; }
    int Width() const { return m_iWidth; }
    int Height() const { return m_iHeight; }
    int SarNum() const { return m_iSarNum; }
    int SarDen() const { return m_iSarDen; }
    int Matrix() const { return m_iMatrix; }
    bool FullRange() const { return m_blFullRange; }

    // 2 for NV12 (luma, interleaved chroma), 3 for the planar layouts.
    int PlaneCount() const;
    // Plane size in texels; an NV12 chroma texel is a U,V byte pair.
    int PlaneWidth(int _iPlane) const;
    int PlaneHeight(int _iPlane) const;
    int BytesPerTexel(int _iPlane) const;
    const std::uint8_t* PlaneData(int _iPlane) const { return m_vecPlanes[_iPlane].data(); }

    // Pictures larger than this are refused rather than risking a texture
    // the driver cannot hold.
    static constexpr int MaxDimension = 16384;

private:
    int m_iFormat = QGL_PIX_YUV420P;
    int m_iWidth = 0;
    int m_iHeight = 0;
    int m_iSarNum = 1;
    int m_iSarDen = 1;
    int m_iMatrix = QGL_MATRIX_BT601;
    bool m_blFullRange = false;
    std::vector<std::uint8_t> m_vecPlanes[3];
};
