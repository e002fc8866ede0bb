#include "CLS_ClipExportRunner.h"

#include <QPointer>
#include <QThread>

#include "ModuleKoPlayerLog.h"

using namespace RK_Framework::ClipExport;

CLS_ClipExportRunner::CLS_ClipExportRunner(QObject* _pParent) : QObject(_pParent) {}

CLS_ClipExportRunner::~CLS_ClipExportRunner()
{
    if (!m_pThread) return;
    m_pCancel->store(true);
    m_pThread->wait();
    delete m_pThread;
}

bool CLS_ClipExportRunner::Start(const ST_ClipRequest& _stRequest)
{
    if (m_pThread) return false;
    m_pCancel = std::make_shared<std::atomic<bool>>(false);
    QPointer<CLS_ClipExportRunner> pSelf(this);
    // The thread holds its own copies: the request (secrets included, wiped
    // with it) and the cancel flag, whatever becomes of this object.
    m_pThread = QThread::create([pSelf, stRequest = _stRequest, pCancel = m_pCancel]() {
        const auto fnProgress = [pSelf](double _dShare) {
            const int iPermille = static_cast<int>(_dShare * 1000.0);
            QMetaObject::invokeMethod(
                pSelf.data(),
                [pSelf, iPermille]() {
                    if (pSelf) emit pSelf->SignProgress(iPermille);
                },
                Qt::QueuedConnection);
        };
        ST_ClipOutcome stOutcome;
        try {
            stOutcome = CLS_ClipExporter::Run(stRequest, fnProgress, pCancel.get());
        } catch (const std::exception&) {
            stOutcome.m_emResult = CLIP_WRITE_FAILED;
        }
        const QString qstrTarget = QString::fromStdString(stRequest.m_strTarget);
        const QString qstrMessage = QString::fromStdString(stOutcome.m_strMessage);
        QMetaObject::invokeMethod(
            pSelf.data(),
            [pSelf, stOutcome, qstrTarget, qstrMessage]() {
                if (CLS_ClipExportRunner* pThis = pSelf.data())
                    pThis->Finish(stOutcome.m_emResult, qstrTarget, qstrMessage,
                                  stOutcome.m_blSoundLeftOut);
            },
            Qt::QueuedConnection);
    });
    m_pThread->setObjectName(QStringLiteral("clip-export"));
    m_pThread->start();
    return true;
}

void CLS_ClipExportRunner::Finish(int _iResult, const QString& _qstrTarget,
                                  const QString& _qstrMessage, bool _blSoundLeftOut)
{
    PLAYER_LOG(_iResult == CLIP_OK ? 1 : 3) << "CLS_ClipExportRunner " << _qstrMessage;
    if (m_pThread) {
        m_pThread->wait();
        delete m_pThread;
        m_pThread = nullptr;
    }
    emit SignFinished(_iResult, _qstrTarget, _blSoundLeftOut);
}

void CLS_ClipExportRunner::SlotCancel()
{
    if (m_pCancel) m_pCancel->store(true);
}
