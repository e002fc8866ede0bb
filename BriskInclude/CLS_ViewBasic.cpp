#include "CLS_ViewBasic.h"

#include "CLS_PresenterBasic.h"
#include "KoServices.h"
#include "LoadDll.h"
#include "Logger.h"
#include "ModuleExports.h"
#include "ModuleKeys.h"
#include "PlatformLibrary.h"
#include "StyleSheet.h"
#include "TaskTag.h"

#include <QShowEvent>

#include <exception>

CLS_ViewBasic::CLS_ViewBasic(QWidget* _pParent, Qt::WindowFlags _flags) : QWidget(_pParent, _flags)
{}

CLS_ViewBasic::~CLS_ViewBasic()
{
    try {
        KOLOG(0, GetModuleCode()) << "destroy view " << objectName();
        KoService::RemoveTmpTask(this, KO_TASK_TAG("CLS_ViewBasic::~CLS_ViewBasic"));
    } catch (...) {
    }
}

void CLS_ViewBasic::Init()
{
    try {
        setAttribute(Qt::WA_StyledBackground);
        InitUi();
        LoadStyle();
        InitConnect();
        m_blInitialized.exchange(true);

        CLS_PresenterBasic* pPresenter = GetPresenter();
        if (pPresenter) {
            connect(pPresenter, &CLS_PresenterBasic::SignTaskResult, this,
                    &CLS_ViewBasic::CallTaskHandler, Qt::UniqueConnection);
        } else {
            KOLOG(3, GetModuleCode()) << "nullptr == pPresenter Init Fail";
        }
    } catch (const std::exception& e) {
        KOLOG(3, GetModuleCode()) << "Init Fail " << e.what();
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "Init Fail ...";
    }
}

void CLS_ViewBasic::LoadStyle()
{
    try {
        QString qstrClassName = QString::fromLatin1(metaObject()->className());
        const int iScope = qstrClassName.lastIndexOf(QLatin1String("::"));
        if (iScope >= 0) qstrClassName = qstrClassName.mid(iScope + 2);
        setObjectName(qstrClassName);

        if (m_qstrStyleSheet.isEmpty())
            m_qstrStyleSheet =
                GetModuleStyleSheet(QString::fromLatin1(GetModuleCode()), objectName());
        setStyleSheet(m_qstrStyleSheet);
    } catch (const std::exception& e) {
        KOLOG(3, GetModuleCode()) << "LoadStyle Fail " << e.what();
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "LoadStyle Fail";
    }
}

void CLS_ViewBasic::SendPresenterRequest(const QString& _qstrBusinessKey,
                                         const QVariantMap& _qmapParam,
                                         const QString& _qstrBusinessUUID)
{
    try {
        CLS_PresenterBasic* pPresenter = GetPresenter();
        if (!pPresenter) return;
        QVariantMap qmapRequest = _qmapParam;
        qmapRequest[ModuleKeys::kObject] = QVariant::fromValue(static_cast<void*>(this));
        pPresenter->TaskRequest(_qstrBusinessKey, qmapRequest, _qstrBusinessUUID);
    } catch (const std::exception& e) {
        KOLOG(3, GetModuleCode()) << "SendPresenterRequest Fail " << e.what() << " key:["
                                  << _qstrBusinessKey << "]";
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "SendPresenterRequest Fail key:[" << _qstrBusinessKey << "]";
    }
}

bool CLS_ViewBasic::TaskRequest(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                                const QString& _qstrBusinessUUID)
{
    try {
        KOLOG(0, GetModuleCode()) << "run TaskRequest key:[" << _qstrBusinessKey << "] param:["
                                  << _qmapParam << "]";
        m_qstrBusinessUUID = _qstrBusinessUUID;
        QVariantMap qmapResult;
        const bool blHandled = HandleTask(_qstrBusinessKey, _qmapParam, qmapResult);
        KOLOG(1, GetModuleCode()) << "handle " << blHandled << " key:[" << _qstrBusinessKey
                                  << "] result:[" << qmapResult << "]";
        return blHandled;
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "Request Fail key:[" << _qstrBusinessKey << "]";
        return false;
    }
}

QWidget* CLS_ViewBasic::GetWgtView(const QString& _qstrModuleName, const QVariantMap& _qmapParam)
{
    // Views created this way belong to no module of their own yet: their
    // lines go to the default channel.
    static const char* const kChannel = "default";
    try {
        KOLOG(0, kChannel) << "run function _strModuleName:[" << _qstrModuleName << "] param:["
                           << _qmapParam << "]";
        const std::string strPath =
            QStringLiteral("%1/%2")
                .arg(QStringLiteral("."), QString::fromStdString(BriskPlatform::LibraryFileName(
                                              _qstrModuleName.toStdString())))
                .toStdString();
        const std::map<std::string, void*> mapFunctions = LoadDll(strPath, {"CreateWgt"});
        // at() throws on the empty map of a library that did not load.
        auto pfnCreate = reinterpret_cast<CreateWgtFn>(mapFunctions.at("CreateWgt"));
        if (!pfnCreate) {
            KOLOG(3, kChannel) << "Request Fail _strModuleName:[" << _qstrModuleName << "]";
            return nullptr;
        }
        return pfnCreate(_qmapParam);
    } catch (...) {
        KOLOG(3, kChannel) << "Request Fail"
                           << "_strModuleName:[" << _qstrModuleName << "]";
        return nullptr;
    }
}

const char* CLS_ViewBasic::GetModuleCode()
{
    return "default";
}

CLS_PresenterBasic* CLS_ViewBasic::GetPresenter()
{
    return nullptr;
}

bool CLS_ViewBasic::DoBusinessRequest(const QString& _qstrBusinessKey,
                                      const QVariantMap& _qmapParam,
                                      const QString& _qstrBusinessUUID)
{
    SendPresenterRequest(_qstrBusinessKey, _qmapParam, _qstrBusinessUUID);
    return true;
}

void CLS_ViewBasic::CallTaskHandler(QString _qstrBusinessKey, QVariantMap _qmapParam,
                                    QString _qstrBusinessUUID)
{
    try {
        KOLOG(0, GetModuleCode()) << "call funtion key:[" << _qstrBusinessKey << "] param:["
                                  << _qmapParam << "] UUID:[" << _qstrBusinessUUID << "]";
        if (_qmapParam.contains(ModuleKeys::kObject) &&
            _qmapParam.value(ModuleKeys::kObject).value<void*>() != static_cast<void*>(this))
            return;

        m_qstrBusinessUUID = _qstrBusinessUUID;
        QVariantMap qmapResult;
        const bool blHandled = HandleTask(_qstrBusinessKey, _qmapParam, qmapResult);
        KOLOG(1, GetModuleCode()) << "call funtion " << blHandled << " key:[" << _qstrBusinessKey
                                  << "] result:[" << qmapResult << "]";
        if (!blHandled)
            KOLOG(3, GetModuleCode())
                << "key:[" << _qstrBusinessKey << "] result:[" << qmapResult << "]";
        // A handler with nothing to report stays silent.
        if (qmapResult.isEmpty()) return;
        qmapResult[ModuleKeys::kResult] = blHandled ? ModuleKeys::kSuccess : ModuleKeys::kFail;
        emit SignRequestTaskRsulted(_qstrBusinessKey, qmapResult, _qstrBusinessUUID);
    } catch (const std::exception& e) {
        KOLOG(3, GetModuleCode()) << "CallTaskHandler Fail " << e.what() << " key:["
                                  << _qstrBusinessKey << "]";
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "CallTaskHandler Fail key:[" << _qstrBusinessKey << "]";
    }
}

void CLS_ViewBasic::SlotInitData()
{
    KOLOG(0, GetModuleCode()) << "load initial data of " << objectName();
}

void CLS_ViewBasic::showEvent(QShowEvent* _pEvent)
{
    try {
        if (!m_blInitialized.load()) Init();
        if (GetPresenter()) {
            KoService::AddTmpTask([this]() { SlotInitData(); }, this,
                                  KO_TASK_TAG("CLS_ViewBasic::showEvent"));
        }
    } catch (...) {
        KOLOG(3, GetModuleCode()) << "showEvent Fail";
    }
    QWidget::showEvent(_pEvent);
}
