#include "FrameworkTestUtil.h"

#include "KoLogApi.h"
#include "KoParamApi.h"
#include "KoTaskPoolApi.h"
#include "QuillTestSupport.h"

#include <QFile>
#include <QLibrary>
#include <QRegularExpression>

namespace FrameworkTest {

bool StartLogging(const QString& _qstrDir)
{
    auto pfnInit = reinterpret_cast<KoLogApi::InitFn>(
        QLibrary::resolve(QuillTest::LibraryPath(QStringLiteral("KoLog")), "Init"));
    return pfnInit && pfnInit(_qstrDir.toStdString(), 0);
}

QStringList ReadLog(const QString& _qstrDir, const QString& _qstrChannel)
{
    QFile file(_qstrDir + QLatin1Char('/') + _qstrChannel + QStringLiteral(".log"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    // A record starts with its time stamp; JSON maps continue it on the
    // following lines.
    static const QRegularExpression s_reRecordStart(QStringLiteral("^\\[?\\d{4}-\\d{2}-\\d{2}"));
    QStringList qlstRecords;
    const QStringList qlstLines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& qstrLine : qlstLines) {
        if (qlstRecords.isEmpty() || s_reRecordStart.match(qstrLine).hasMatch())
            qlstRecords << qstrLine;
        else
            qlstRecords.last() += QLatin1Char('\n') + qstrLine;
    }
    qlstRecords.removeAll(QString());
    return qlstRecords;
}

bool StartParams(const QString& _qstrPath)
{
    auto pfnInit = reinterpret_cast<KoParamApi::InitFn>(
        QLibrary::resolve(QuillTest::LibraryPath(QStringLiteral("KoParam")), "Init"));
    return pfnInit && pfnInit(_qstrPath.toStdString());
}

void StopTaskPool()
{
    auto pfnUnInit = reinterpret_cast<KoTaskPoolApi::UnInitFn>(
        QLibrary::resolve(QuillTest::LibraryPath(QStringLiteral("KoTaskPool")), "UnInit"));
    if (pfnUnInit) pfnUnInit();
}

}  // namespace FrameworkTest
