#include "CLS_QGLRenderWidget.h"

#include <utility>

#include <QMutexLocker>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QSurfaceFormat>
#include <QtDebug>

#include "CLS_QGLWidgetRegistry.h"

CLS_QGLRenderWidget::CLS_QGLRenderWidget(QWidget* _pParent) : QOpenGLWidget(_pParent)
{
    setObjectName(QStringLiteral("QGLRenderWidget"));
    // Video needs neither depth nor stencil: at a full-screen size each would
    // cost as much memory as the picture itself.
    QSurfaceFormat fmt = format();
    fmt.setDepthBufferSize(0);
    fmt.setStencilBufferSize(0);
    setFormat(fmt);
    // paintGL clears every pixel it owns; letting Qt clear colour, depth and
    // stencil before it as well only touches buffers that are never read.
    setUpdateBehavior(QOpenGLWidget::PartialUpdate);
    // The widget may be deleted by its parent rather than through
    // QGL_Release; registering here and unregistering in the destructor keeps
    // the registry truthful either way.
    CLS_QGLWidgetRegistry::Instance().Add(this);
}

CLS_QGLRenderWidget::~CLS_QGLRenderWidget()
{
    // First, so that no pusher can reach a half-destroyed widget: a push in
    // progress holds the registry and finishes before this returns.
    CLS_QGLWidgetRegistry::Instance().Remove(CLS_QGLWidgetRegistry::HandleOf(this));
    // The context outlives this part of the widget; its signal must not call
    // back into a destroyed subclass.
    disconnect(m_connContext);
    if (m_renderer.IsInitialized() && context()) {
        makeCurrent();
        m_renderer.Release();
        doneCurrent();
    }
}

bool CLS_QGLRenderWidget::AcceptFrame(const QGL_Frame& _frame)
{
    QMutexLocker lockPush(&m_mutexPush);
    QString qstrError;
    if (!m_picSpare.Assign(_frame, &qstrError)) {
        ReportRefusal(qstrError);
        return false;
    }
    m_qstrLastRefusal.clear();
    {
        QMutexLocker lockIncoming(&m_mutexIncoming);
        std::swap(m_picSpare, m_picIncoming);
        m_blIncomingValid = true;
        ++m_u64IncomingSerial;
    }
    ScheduleRepaint();
    return true;
}

bool CLS_QGLRenderWidget::AcceptSharedFrame(const QGL_Frame& _frame, std::shared_ptr<void> _pHolder)
{
    CLS_QGLPicture picture;
    QString qstrError;
    if (!picture.Share(_frame, std::move(_pHolder), &qstrError)) {
        QMutexLocker lockPush(&m_mutexPush);
        ReportRefusal(qstrError);
        return false;
    }
    {
        QMutexLocker lockPush(&m_mutexPush);
        m_qstrLastRefusal.clear();
    }
    {
        QMutexLocker lockIncoming(&m_mutexIncoming);
        std::swap(picture, m_picIncoming);
        m_blIncomingValid = true;
        ++m_u64IncomingSerial;
    }
    // The picture it replaced, never shown, goes back to the sender here,
    // outside the lock the GUI thread takes.
    ScheduleRepaint();
    return true;
}

void CLS_QGLRenderWidget::ReportRefusal(const QString& _qstrError)
{
    // A broken stream would repeat the same complaint for every frame.
    if (_qstrError != m_qstrLastRefusal) {
        qWarning().noquote() << "QGLRender: frame refused:" << _qstrError;
        m_qstrLastRefusal = _qstrError;
    }
}

void CLS_QGLRenderWidget::ClearFrame()
{
    // A shared picture goes back to its sender now, not at the next frame:
    // after a stop there may be none.
    CLS_QGLPicture picDropped;
    {
        QMutexLocker lockIncoming(&m_mutexIncoming);
        if (m_picIncoming.IsShared()) std::swap(picDropped, m_picIncoming);
        m_blIncomingValid = false;
        ++m_u64IncomingSerial;
    }
    ScheduleRepaint();
}

void CLS_QGLRenderWidget::ScheduleRepaint()
{
    // One pending repaint is enough however fast frames come; the GUI thread
    // always takes the newest picture.
    if (m_blRepaintPosted.exchange(true)) return;
    QMetaObject::invokeMethod(
        this,
        [this]() {
            m_blRepaintPosted = false;
            update();
        },
        Qt::QueuedConnection);
}

void CLS_QGLRenderWidget::TakeIncoming()
{
    // A shared picture leaving the screen goes back to its sender at once,
    // after the lock; an own copy stays for its buffers to be reused.
    CLS_QGLPicture picDropped;
    QMutexLocker lockIncoming(&m_mutexIncoming);
    if (m_u64IncomingSerial == m_u64ShownSerial) return;
    m_u64ShownSerial = m_u64IncomingSerial;
    if (m_blIncomingValid) {
        std::swap(m_picIncoming, m_picShown);
        if (m_picIncoming.IsShared()) std::swap(picDropped, m_picIncoming);
        m_blIncomingValid = false;
        m_blHasShown = true;
        m_blShownUploaded = false;
    } else {
        m_blHasShown = false;
        if (m_picShown.IsShared()) std::swap(picDropped, m_picShown);
    }
}

void CLS_QGLRenderWidget::initializeGL()
{
    // Reparenting into another window (full screen) replaces the context;
    // GL objects of the old one must go before it does.
    disconnect(m_connContext);
    m_connContext =
        connect(context(), &QOpenGLContext::aboutToBeDestroyed, this,
                &CLS_QGLRenderWidget::SlotContextAboutToBeDestroyed, Qt::DirectConnection);
    if (!m_renderer.Initialize()) {
        qWarning() << "QGLRender: this OpenGL context cannot show video; the widget stays black";
    }
    m_blShownUploaded = false;
}

void CLS_QGLRenderWidget::SlotContextAboutToBeDestroyed()
{
    makeCurrent();
    m_renderer.Release();
    doneCurrent();
    m_blShownUploaded = false;
}

void CLS_QGLRenderWidget::paintGL()
{
    TakeIncoming();
    QOpenGLFunctions* pGl = context()->functions();
    pGl->glClearColor(0.f, 0.f, 0.f, 1.f);
    pGl->glClear(GL_COLOR_BUFFER_BIT);
    if (!m_blHasShown || !m_renderer.IsInitialized()) return;
    // Textures are refreshed only for a new picture; a repaint for a resize
    // or an expose draws what is already on the card.
    if (!m_blShownUploaded) {
        m_blShownUploaded = true;
        const bool blUploaded = m_renderer.Upload(m_picShown);
        if (!blUploaded && !m_blOversizeReported) {
            qWarning() << "QGLRender: a" << m_picShown.Width() << "x" << m_picShown.Height()
                       << "picture exceeds this GPU's texture size; it stays black";
        }
        m_blOversizeReported = !blUploaded;
    }
    const qreal dRatio = devicePixelRatioF();
    const QSize sizeTarget(qRound(width() * dRatio), qRound(height() * dRatio));
    const QRect rect =
        CLS_QGLYuvRenderer::FitRect(m_picShown.Width(), m_picShown.Height(), m_picShown.SarNum(),
                                    m_picShown.SarDen(), sizeTarget);
    m_renderer.Draw(QRect(rect.x(), sizeTarget.height() - rect.y() - rect.height(), rect.width(),
                          rect.height()));
}
