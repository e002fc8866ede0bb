#include "CLS_ModuleBasic.h"

#include "CLS_BusinessHandler.h"
#include "KoServices.h"
#include "Logger.h"
#include "ModuleKeys.h"
#include "TaskTag.h"

#include <exception>

CLS_ModuleBasic::CLS_ModuleBasic() = default;

CLS_ModuleBasic::~CLS_ModuleBasic()
{
    try {
        KoService::RemoveTmpTask(this, KO_TASK_TAG("CLS_ModuleBasic::~CLS_ModuleBasic"));
    } catch (...) {
        // Nothing may leave a destructor; the pool logs its own failures.
    }
}

const char* CLS_ModuleBasic::GetModuleCode()
{
    return "default";
}

QString CLS_ModuleBasic::ModuleName()
{
    return tr("ModuleName");
}

QString CLS_ModuleBasic::ModuleExplain()
{
    return tr("ModuleExplain");
}

void CLS_ModuleBasic::InitModule(const QVariantMap& _qmapParam)
{
    try {
        KOLOG(0, GetModuleCode()) << "run function _qmapParam - [" << _qmapParam << "]";
        QMutexLocker locker(&m_mutexModule);
        if (CLS_BusinessHandler* pHandler = GetBusinessHandler(_qmapParam)) {
            pHandler->SetParamMap(_qmapParam);
            pHandler->Init();
        }
    } catch (const std::exception& e) {
        KOLOG(3, GetModuleCode()) << e.what() << " _qmapParam - [" << _qmapParam << "]";
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "... _qmapParam - [" << _qmapParam << "]";
    }
}

void CLS_ModuleBasic::UnInitModule(const QVariantMap& _qmapParam)
{
    try {
        QMutexLocker locker(&m_mutexModule);
        if (CLS_BusinessHandler* pHandler = GetBusinessHandler(_qmapParam)) {
            pHandler->SetParamMap(_qmapParam);
            pHandler->UnInit();
        }
    } catch (const std::exception& e) {
        KOLOG(3, GetModuleCode()) << e.what() << " _qmapParam - [" << _qmapParam << "]";
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "... _qmapParam - [" << _qmapParam << "]";
    }
}

void CLS_ModuleBasic::TaskRequest(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                                  const QString& _qstrBusinessUUID)
{
    try {
        KOLOG(0, GetModuleCode()) << "_qstrBusinessKey:[" << _qstrBusinessKey << "] _qmapParam:["
                                  << _qmapParam << "] _qstrBusinessUUID:[" << _qstrBusinessUUID
                                  << "]";
        QMutexLocker locker(&m_mutexModule);
        // The closure owns copies: the caller may change its own at once.
        auto task = [this, qstrKey = _qstrBusinessKey, qmapParam = _qmapParam,
                     qstrUUID = _qstrBusinessUUID]() { RunTask(qstrKey, qmapParam, qstrUUID); };
        KoService::AddTmpTask(task, this, KO_TASK_TAG("CLS_ModuleBasic::TaskRequest"));
    } catch (const std::exception& e) {
        KOLOG(3, GetModuleCode()) << e.what() << " key:[" << _qstrBusinessKey << "]";
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "... key:[" << _qstrBusinessKey << "]";
    }
}

void CLS_ModuleBasic::RunTask(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                              const QString& _qstrBusinessUUID)
{
    try {
        CLS_BusinessHandler* pHandler = GetBusinessHandler(_qmapParam);
        if (!pHandler) return;

        QVariantMap qmapResult;
        const bool blHandled = pHandler->Handle(_qstrBusinessKey, _qmapParam, qmapResult);
        KOLOG(1, GetModuleCode()) << "handle " << blHandled << " key:[" << _qstrBusinessKey
                                  << "] param:[" << _qmapParam << "] result:[" << qmapResult << "]";

        qmapResult[ModuleKeys::kResult] = blHandled ? ModuleKeys::kSuccess : ModuleKeys::kFail;
        if (!blHandled) {
            KOLOG(3, GetModuleCode())
                << "key:[" << _qstrBusinessKey << "] param:[" << _qmapParam << "] UUID:["
                << _qstrBusinessUUID << "] result:[" << qmapResult << "]";
        }
        emit SignHandlerRsulted(_qstrBusinessKey, qmapResult, _qstrBusinessUUID);
    } catch (const std::exception& e) {
        KOLOG(3, GetModuleCode()) << e.what() << " key:[" << _qstrBusinessKey << "]";
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "... key:[" << _qstrBusinessKey << "]";
    }
}
