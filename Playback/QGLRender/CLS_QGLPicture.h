#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <QString>

#include "QGLRenderApi.h"

// One picture of a render widget: either its own copy, with rows packed
// without padding, or planes it shares with the sender, kept alive by a
// holder and read with the sender's line sizes.
class CLS_QGLPicture
{
public:
    // Copies the planes of _frame, reusing this object's buffers. False, with
    // the reason in *_pqstrError, when the frame cannot be shown.
    bool Assign(const QGL_Frame& _frame, QString* _pqstrError);
    // Keeps _frame's planes without copying; _pHolder keeps them alive and is
    // dropped when this picture is replaced. False (holder dropped) when the
    // frame cannot be shown.
    bool Share(const QGL_Frame& _frame, std::shared_ptr<void> _pHolder, QString* _pqstrError);

    bool IsShared() const { return m_pShared != nullptr; }
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
    const std::uint8_t* PlaneData(int _iPlane) const { return m_apPlanes[_iPlane]; }
    // Bytes from one row of the plane to the next (at least a row's bytes).
    int PlaneStride(int _iPlane) const { return m_aiStrides[_iPlane]; }

    // Pictures larger than this are refused rather than risking a texture
    // the driver cannot hold.
    static constexpr int MaxDimension = 16384;

private:
    // Checks _frame and takes its geometry and colour; false leaves this
    // picture as it was.
    bool TakeGeometry(const QGL_Frame& _frame, bool _blShared, QString* _pqstrError);

    int m_iFormat = QGL_PIX_YUV420P;
    int m_iWidth = 0;
    int m_iHeight = 0;
    int m_iSarNum = 1;
    int m_iSarDen = 1;
    int m_iMatrix = QGL_MATRIX_BT601;
    bool m_blFullRange = false;
    std::vector<std::uint8_t> m_vecPlanes[3];
    std::shared_ptr<void> m_pShared;
    const std::uint8_t* m_apPlanes[3] = {nullptr, nullptr, nullptr};
    int m_aiStrides[3] = {0, 0, 0};
};
