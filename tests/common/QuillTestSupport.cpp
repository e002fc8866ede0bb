#include "QuillTestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QProcess>

namespace QuillTest {

QString BinDir()
{
    return QStringLiteral(QUILL_BIN_DIR);
}

QString BinPath(const QString& _qstrName)
{
    return BinDir() + QLatin1Char('/') + _qstrName;
}

QString LibraryPath(const QString& _qstrBaseName)
{
#if defined(_WIN32)
    return BinPath(_qstrBaseName + QStringLiteral(".dll"));
#else
    return BinPath(QStringLiteral("lib") + _qstrBaseName + QStringLiteral(".so"));
#endif
}

ScopedWorkDir::ScopedWorkDir() : m_qstrPrevious(QDir::currentPath())
{
    QDir::setCurrent(m_tmpDir.path());
}

ScopedWorkDir::~ScopedWorkDir()
{
    QDir::setCurrent(m_qstrPrevious);
}

QString ScopedWorkDir::Path() const
{
    return m_tmpDir.path();
}

QString ScopedWorkDir::FilePath(const QString& _qstrRelative) const
{
    return m_tmpDir.filePath(_qstrRelative);
}

bool ScopedWorkDir::LinkFromBin(const QString& _qstrName)
{
    const QString qstrTarget = FilePath(_qstrName);
    QDir().mkpath(QFileInfo(qstrTarget).absolutePath());
    return QFile::link(BinPath(_qstrName), qstrTarget);
}

bool ScopedWorkDir::WriteFile(const QString& _qstrRelative, const QByteArray& _qbaContent)
{
    const QString qstrTarget = FilePath(_qstrRelative);
    QDir().mkpath(QFileInfo(qstrTarget).absolutePath());
    return QuillTest::WriteFile(qstrTarget, _qbaContent);
}

QJsonObject NewestHistroyEntry(const QString& _qstrDir)
{
    QFile file(_qstrDir + QStringLiteral("/HistroyInfo.json"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QJsonDocument::fromJson(file.readAll())[QLatin1String("History")][0].toObject();
}

int RunProgram(const QString& _qstrProgram, const QStringList& _qlstArgs, QByteArray* _pOutput,
               int _iTimeoutMs)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(_qstrProgram, _qlstArgs);
    if (!process.waitForStarted(10000)) return -1;
    const bool blFinished = process.waitForFinished(_iTimeoutMs);
    if (_pOutput) *_pOutput = process.readAll();
    if (!blFinished) {
        process.kill();
        process.waitForFinished(5000);
        return -1;
    }
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QByteArray ReadFile(const QString& _qstrPath)
{
    QFile file(_qstrPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool WriteFile(const QString& _qstrPath, const QByteArray& _qbaData)
{
    QFile file(_qstrPath);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(_qbaData) == _qbaData.size();
}

}  // namespace QuillTest
