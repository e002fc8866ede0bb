#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include <QMetaObject>
#include <QMutex>
#include <QOpenGLWidget>
#include <QString>

#include "CLS_QGLPicture.h"
#include "CLS_QGLYuvRenderer.h"

// The surface the engine draws into when OpenGL rendering is chosen. Pictures
// arrive on the engine's video thread and are only copied there; everything
// that touches GL or the widget happens on the GUI thread when it repaints.
class CLS_QGLRenderWidget : public QOpenGLWidget
{
    Q_OBJECT

public:
    explicit CLS_QGLRenderWidget(QWidget* _pParent = nullptr);
    ~CLS_QGLRenderWidget() override;

    // Any thread. Copies the picture and schedules a repaint; false when the
    // frame cannot be shown (the previous picture then stays).
    bool AcceptFrame(const QGL_Frame& _frame);
    // Any thread. Like AcceptFrame, but keeps the sender's planes alive
    // through _pHolder instead of copying them.
    bool AcceptSharedFrame(const QGL_Frame& _frame, std::shared_ptr<void> _pHolder);
    // Any thread. Drops the picture; the widget turns black.
    void ClearFrame();

protected:
    void initializeGL() override;
    void paintGL() override;

private slots:
    void SlotContextAboutToBeDestroyed();

private:
    void ScheduleRepaint();
    void TakeIncoming();
    // With m_mutexPush held.
    void ReportRefusal(const QString& _qstrError);

    // Pushers write into the spare picture outside the hand-over lock, so the
    // GUI thread never waits for a copy; the three pictures rotate.
    QMutex m_mutexPush;
    CLS_QGLPicture m_picSpare;
    QString m_qstrLastRefusal;

    QMutex m_mutexIncoming;
    CLS_QGLPicture m_picIncoming;
    bool m_blIncomingValid = false;
    std::uint64_t m_u64IncomingSerial = 0;

    std::atomic<bool> m_blRepaintPosted{false};

    // GUI thread only.
    CLS_QGLPicture m_picShown;
    bool m_blHasShown = false;
    bool m_blShownUploaded = false;
    bool m_blOversizeReported = false;
    std::uint64_t m_u64ShownSerial = 0;
    CLS_QGLYuvRenderer m_renderer;
    QMetaObject::Connection m_connContext;
};
