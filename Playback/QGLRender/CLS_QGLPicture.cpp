#include "CLS_QGLPicture.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace {

int HalfUp(int _iValue)
{
    return (_iValue + 1) / 2;
}

}  // namespace

int CLS_QGLPicture::PlaneCount() const
{
    return m_iFormat == QGL_PIX_NV12 ? 2 : 3;
}

int CLS_QGLPicture::PlaneWidth(int _iPlane) const
{
    if (_iPlane == 0 || m_iFormat == QGL_PIX_YUV444P) return m_iWidth;
    return HalfUp(m_iWidth);
}

int CLS_QGLPicture::PlaneHeight(int _iPlane) const
{
    if (_iPlane == 0 || m_iFormat == QGL_PIX_YUV444P || m_iFormat == QGL_PIX_YUV422P) {
        return m_iHeight;
    }
    return HalfUp(m_iHeight);
}

int CLS_QGLPicture::BytesPerTexel(int _iPlane) const
{
    return (m_iFormat == QGL_PIX_NV12 && _iPlane == 1) ? 2 : 1;
}

bool CLS_QGLPicture::TakeGeometry(const QGL_Frame& _frame, bool _blShared, QString* _pqstrError)
{
    auto fail = [_pqstrError](const QString& _qstrWhy) {
        if (_pqstrError) *_pqstrError = _qstrWhy;
        return false;
    };
    if (_frame.format < QGL_PIX_YUV420P || _frame.format > QGL_PIX_YUV444P) {
        return fail(QStringLiteral("unsupported pixel format %1").arg(_frame.format));
    }
    if (_frame.width <= 0 || _frame.height <= 0 || _frame.width > MaxDimension ||
        _frame.height > MaxDimension) {
        return fail(
            QStringLiteral("unusable picture size %1x%2").arg(_frame.width).arg(_frame.height));
    }

    // Geometry is checked in full before anything is overwritten, so a bad
    // frame leaves the previous picture intact.
    const int iOldFormat = m_iFormat, iOldWidth = m_iWidth, iOldHeight = m_iHeight;
    m_iFormat = _frame.format;
    m_iWidth = _frame.width;
    m_iHeight = _frame.height;
    for (int i = 0; i < PlaneCount(); ++i) {
        const int iRowBytes = PlaneWidth(i) * BytesPerTexel(i);
        const bool blStrideOk = _blShared ? (_frame.linesize[i] >= iRowBytes &&
                                             _frame.linesize[i] % BytesPerTexel(i) == 0)
                                          : std::abs(_frame.linesize[i]) >= iRowBytes;
        if (!_frame.data[i] || !blStrideOk) {
            m_iFormat = iOldFormat;
            m_iWidth = iOldWidth;
            m_iHeight = iOldHeight;
            return fail(QStringLiteral("plane %1 missing or shorter than a row").arg(i));
        }
    }
    const bool blSarKnown = _frame.sarNum > 0 && _frame.sarDen > 0;
    m_iSarNum = blSarKnown ? _frame.sarNum : 1;
    m_iSarDen = blSarKnown ? _frame.sarDen : 1;
    m_iMatrix = _frame.matrix == QGL_MATRIX_BT709 ? QGL_MATRIX_BT709 : QGL_MATRIX_BT601;
    m_blFullRange = _frame.fullRange != 0;
    return true;
}

bool CLS_QGLPicture::Assign(const QGL_Frame& _frame, QString* _pqstrError)
{
    if (!TakeGeometry(_frame, false, _pqstrError)) return false;
    m_pShared.reset();
    for (int i = 0; i < 3; ++i) {
        m_apPlanes[i] = nullptr;
        m_aiStrides[i] = 0;
    }
    for (int i = 0; i < PlaneCount(); ++i) {
        const int iRowBytes = PlaneWidth(i) * BytesPerTexel(i);
        const int iRows = PlaneHeight(i);
        std::vector<std::uint8_t>& vecPlane = m_vecPlanes[i];
        vecPlane.resize(static_cast<std::size_t>(iRowBytes) * iRows);
        // A negative line size walks a bottom-up picture; FFmpeg hands those out
        // after a vertical flip, so rows are copied one by one.
        const std::ptrdiff_t iStride = _frame.linesize[i];
        for (int r = 0; r < iRows; ++r) {
            std::memcpy(vecPlane.data() + static_cast<std::size_t>(r) * iRowBytes,
                        _frame.data[i] + r * iStride, static_cast<std::size_t>(iRowBytes));
        }
        m_apPlanes[i] = vecPlane.data();
        m_aiStrides[i] = iRowBytes;
    }
    if (PlaneCount() == 2) m_vecPlanes[2].clear();
    return true;
}

bool CLS_QGLPicture::Share(const QGL_Frame& _frame, std::shared_ptr<void> _pHolder,
                           QString* _pqstrError)
{
    if (!TakeGeometry(_frame, true, _pqstrError)) return false;
    // A shared picture needs no copy of its own: give the memory back.
    for (std::vector<std::uint8_t>& vecPlane : m_vecPlanes)
        std::vector<std::uint8_t>().swap(vecPlane);
    for (int i = 0; i < 3; ++i) {
        const bool blUsed = i < PlaneCount();
        m_apPlanes[i] = blUsed ? _frame.data[i] : nullptr;
        m_aiStrides[i] = blUsed ? _frame.linesize[i] : 0;
    }
    m_pShared = std::move(_pHolder);
    return true;
}
