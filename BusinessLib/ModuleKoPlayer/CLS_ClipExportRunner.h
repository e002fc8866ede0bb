#pragma once

#include <QObject>
#include <QString>

#include <atomic>
#include <memory>

#include "CLS_ClipExporter.h"

class QThread;

// Runs one clip export on a thread of its own, so the window stays live, and
// reports back on the thread that created it: progress in thousandths, then
// the outcome once. Destroying it cancels a running export and waits for it;
// the exporter removes what it had written.
class CLS_ClipExportRunner : public QObject
{
    Q_OBJECT
public:
    explicit CLS_ClipExportRunner(QObject* _pParent = nullptr);
    ~CLS_ClipExportRunner() override;

    // False while another export runs.
    bool Start(const RK_Framework::ClipExport::ST_ClipRequest& _stRequest);
    bool IsRunning() const { return m_pThread != nullptr; }

signals:
    void SignProgress(int _iPermille);
    void SignFinished(int _iResult, QString _qstrTarget, bool _blSoundLeftOut);

public slots:
    void SlotCancel();

private:
    void Finish(int _iResult, const QString& _qstrTarget, const QString& _qstrMessage,
                bool _blSoundLeftOut);

    QThread* m_pThread = nullptr;
    std::shared_ptr<std::atomic<bool>> m_pCancel;
};
