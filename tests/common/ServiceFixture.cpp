#include "ServiceFixture.h"

#include "KoLogApi.h"
#include "KoParamApi.h"
#include "KoServices.h"
#include "KoTaskPoolApi.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace QuillTest {

void* ServiceFunction(Service _service, const char* _pName)
{
    const std::string strDir = BinDir().toStdString();
    switch (_service) {
        case Service::Log:
            return GetKoLogFunc(_pName, strDir);
        case Service::Param:
            return GetKoParamFunc(_pName, strDir);
        case Service::TaskPool:
            return GetKoTaskPoolFunc(_pName, strDir);
        case Service::AppManager:
            return GetKoAppManagerFunc(_pName, strDir);
        case Service::ColorManage:
            return GetKoColorManageFunc(_pName, strDir);
    }
    return nullptr;
}

namespace {

bool Start(Service _service, const QString& _qstrWorkDir)
{
    switch (_service) {
        case Service::Log: {
            const auto pfnInit = ServiceFunction<KoLogApi::InitFn>(_service, "Init");
            return pfnInit && pfnInit(_qstrWorkDir.toStdString() + "/log", KoLogApi::Trace);
        }
        case Service::Param: {
            const auto pfnInit = ServiceFunction<KoParamApi::InitFn>(_service, "Init");
            return pfnInit && pfnInit(_qstrWorkDir.toStdString() + "/settings.json");
        }
        // The pool starts with its first task; these two have nothing to start.
        case Service::TaskPool:
            return ServiceFunction(_service, "AddTmpTask") != nullptr;
        case Service::AppManager:
            return ServiceFunction(_service, "GetAppSignals") != nullptr;
        case Service::ColorManage:
            return ServiceFunction(_service, "GetNamedColor") != nullptr;
    }
    return false;
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

QString ServiceFixture::LogDir() const
{
    return m_workDir.FilePath(QStringLiteral("log"));
}

QString ServiceFixture::LogText(const QString& _qstrChannel) const
{
    QFile file(LogDir() + QLatin1Char('/') + _qstrChannel + QStringLiteral(".log"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString ServiceFixture::AllLogText() const
{
    QString qstrText;
    for (const QFileInfo& info : QDir(LogDir()).entryInfoList({"*.log"}, QDir::Files))
        qstrText += LogText(info.completeBaseName());
    return qstrText;
}

QStringList ServiceFixture::LogRecords(const QString& _qstrChannel) const
{
    // A record starts with its time stamp; JSON maps continue it on the
    // following lines.
    static const QRegularExpression s_reRecordStart(QStringLiteral("^\\[\\d{4}-\\d{2}-\\d{2}"));
    QStringList qlstRecords;
    for (const QString& qstrLine : LogText(_qstrChannel).split(QLatin1Char('\n'))) {
        if (qlstRecords.isEmpty() || s_reRecordStart.match(qstrLine).hasMatch())
            qlstRecords << qstrLine;
        else
            qlstRecords.last() += QLatin1Char('\n') + qstrLine;
    }
    qlstRecords.removeAll(QString());
    return qlstRecords;
}

}  // namespace QuillTest
