#include "ServiceFixture.h"

#include "KoLogApi.h"
#include "KoParamApi.h"
#include "KoServices.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>

namespace QuillTest {

void* ServiceFunction(Service _service, const char* _pName)
{
    using Lookup = void* (*)(const std::string&, const std::string&);
    static const Lookup s_lookups[] = {GetKoLogFunc, GetKoParamFunc, GetKoTaskPoolFunc,
                                       GetKoAppManagerFunc, GetKoColorManageFunc};
    return s_lookups[static_cast<int>(_service)](_pName, BinDir().toStdString());
}

namespace {

bool Start(Service _service, const QString& _qstrWorkDir)
{
    const std::string strWorkDir = _qstrWorkDir.toStdString();
    if (_service == Service::Log) {
        const auto pfnInit = ServiceFunction<KoLogApi::InitFn>(_service, "Init");
        return pfnInit && pfnInit(strWorkDir + "/log", KoLogApi::Trace);
    }
    if (_service == Service::Param) {
        const auto pfnInit = ServiceFunction<KoParamApi::InitFn>(_service, "Init");
        return pfnInit && pfnInit(strWorkDir + "/settings.json");
    }
    // The pool starts with its first task; the others have nothing to start.
    static const char* const s_probes[] = {"", "", "AddTmpTask", "GetAppSignals", "GetNamedColor"};
    return ServiceFunction(_service, s_probes[static_cast<int>(_service)]) != nullptr;
}

void Stop(Service _service)
{
    using UnInitFn = void (*)();
    if (_service == Service::Log || _service == Service::Param || _service == Service::TaskPool) {
        if (const auto pfnUnInit = ServiceFunction<UnInitFn>(_service, "UnInit")) pfnUnInit();
    }
}

}  // namespace

ServiceFixture::ServiceFixture(std::initializer_list<Service> _lstServices)
{
    for (Service service : _lstServices) {
        if (!Start(service, m_workDir.Path())) {
            qWarning("service %d could not be started", static_cast<int>(service));
            m_blReady = false;
            break;
        }
        m_vecStarted << service;
    }
}

ServiceFixture::~ServiceFixture()
{
    std::for_each(m_vecStarted.rbegin(), m_vecStarted.rend(), Stop);
}

QString ServiceFixture::LogText(const QString& _qstrChannel) const
{
    return QString::fromUtf8(ReadFile(m_workDir.FilePath("log/" + _qstrChannel + ".log")));
}

QString ServiceFixture::AllLogText() const
{
    QString qstrText;
    for (const QFileInfo& info :
         QDir(m_workDir.FilePath("log")).entryInfoList({"*.log"}, QDir::Files))
        qstrText += LogText(info.completeBaseName());
    return qstrText;
}

QStringList ServiceFixture::LogRecords(const QString& _qstrChannel) const
{
    // A record starts with its time stamp; JSON maps continue it on the
    // following lines.
    static const QRegularExpression s_reRecordEnd(
        QStringLiteral("\n(?=\\[\\d{4}-\\d\\d-\\d\\d|$)"));
    return LogText(_qstrChannel).split(s_reRecordEnd, Qt::SkipEmptyParts);
}

}  // namespace QuillTest
