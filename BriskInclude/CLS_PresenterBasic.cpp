#include "CLS_PresenterBasic.h"

#include "KoServices.h"
#include "Logger.h"
#include "ModuleKeys.h"
#include "TaskTag.h"

#include <exception>

CLS_PresenterBasic::CLS_PresenterBasic(QObject* _pParent) : QObject(_pParent) {}

CLS_PresenterBasic::~CLS_PresenterBasic()
{
    try {
        KoService::RemoveTmpTask(this, KO_TASK_TAG("CLS_PresenterBasic::~CLS_PresenterBasic"));
    } catch (...) {
    }
}

const char* CLS_PresenterBasic::GetModuleCode()
{
    return "default";
}

void CLS_PresenterBasic::TaskRequest(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                                     const QString& _qstrBusinessUUID)
{
    try {
        KOLOG(0, GetModuleCode()) << "_qstrBusinessKey:[" << _qstrBusinessKey << "] _qmapParam:["
                                  << _qmapParam << "] _qstrBusinessUUID:[" << _qstrBusinessUUID
                                  << "]";
        auto task = [this, qstrKey = _qstrBusinessKey, qmapParam = _qmapParam,
                     qstrUUID = _qstrBusinessUUID]() { RunTask(qstrKey, qmapParam, qstrUUID); };
        KoService::AddTmpTask(task, this, KO_TASK_TAG("CLS_PresenterBasic::TaskRequest"));
    } catch (const std::exception& e) {
        KOLOG(3, GetModuleCode()) << e.what() << " key:[" << _qstrBusinessKey << "]";
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "... key:[" << _qstrBusinessKey << "]";
    }
}

void CLS_PresenterBasic::RunTask(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                                 const QString& _qstrBusinessUUID)
{
    try {
        QVariantMap qmapResult;
        const bool blHandled = HandleRequest(_qstrBusinessKey, _qmapParam, qmapResult);
        KOLOG(1, GetModuleCode()) << "handle " << blHandled << " key:[" << _qstrBusinessKey
                                  << "] result:[" << qmapResult << "]";
        if (_qmapParam.contains(ModuleKeys::kObject))
            qmapResult[ModuleKeys::kObject] = _qmapParam.value(ModuleKeys::kObject);
        emit SignTaskResult(_qstrBusinessKey, qmapResult, _qstrBusinessUUID);
    } catch (const std::exception& e) {
        KOLOG(3, GetModuleCode()) << e.what() << " key:[" << _qstrBusinessKey << "]";
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "... key:[" << _qstrBusinessKey << "]";
    }
}
