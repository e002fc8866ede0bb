#include "CLS_HostServices.h"

#include "KoLogApi.h"
#include "KoParamApi.h"
#include "KoServices.h"
#include "KoTaskPoolApi.h"

#include <QDir>

namespace {

void SetDefaultParam(const char* _pSection, const char* _pKey, const char* _pValue)
{
    // A value the user already has wins; GetParam answers the default only
    // when none is stored.
    const std::string strMarker = "\x01unset";
    if (KoService::GetParam(_pSection, _pKey, strMarker) == strMarker)
        KoService::SetParam(_pSection, _pKey, _pValue);
}

}  // namespace

CLS_HostServices::~CLS_HostServices()
{
    Stop();
}

bool CLS_HostServices::Start(const QString& _qstrConfigDir, const QString& _qstrLogDir,
                             QString& _qstrError)
{
    // A service library that cannot be loaded is not fatal: the loader has
    // said so on the console, and every call into it answers its neutral value
    // (no log lines, default parameters, no pooled tasks, no colours). Only a
    // library that is present but cannot start stops the host.
    if (const auto pfnLogInit = reinterpret_cast<KoLogApi::InitFn>(GetKoLogFunc("Init"))) {
        if (!pfnLogInit(_qstrLogDir.toStdString(), KoLogApi::Info)) {
            _qstrError = QStringLiteral("cannot write logs below %1").arg(_qstrLogDir);
            return false;
        }
        m_blLogStarted = true;
    }

    if (const auto pfnParamInit = reinterpret_cast<KoParamApi::InitFn>(GetKoParamFunc("Init"))) {
        const QString qstrSettings = QDir(_qstrConfigDir).filePath(QStringLiteral("QuillPlayer.json"));
        if (!pfnParamInit(qstrSettings.toStdString())) {
            _qstrError = QStringLiteral("cannot open the settings %1").arg(qstrSettings);
            return false;
        }
        m_blParamStarted = true;
        SetDefaultParam("SystemConfig", "skin", "dark");
        SetDefaultParam("SystemConfig", "RenderingType", "0");
    }

    m_blTaskPoolStarted = GetKoTaskPoolFunc("AddTmpTask") != nullptr;
    return true;
}

void CLS_HostServices::Stop()
{
    if (m_blTaskPoolStarted) {
        if (auto pfn = reinterpret_cast<KoTaskPoolApi::UnInitFn>(GetKoTaskPoolFunc("UnInit"))) pfn();
        m_blTaskPoolStarted = false;
    }
    if (m_blParamStarted) {
        if (auto pfn = reinterpret_cast<KoParamApi::UnInitFn>(GetKoParamFunc("UnInit"))) pfn();
        m_blParamStarted = false;
    }
    if (m_blLogStarted) {
        if (auto pfn = reinterpret_cast<KoLogApi::UnInitFn>(GetKoLogFunc("UnInit"))) pfn();
        m_blLogStarted = false;
    }
}
