#include "QuillTestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QProcess>

namespace QuillTest {

namespace {

// _qstrPath, after making the folder it goes into.
QString WithFolder(const QString& _qstrPath)
{
    QDir().mkpath(QFileInfo(_qstrPath).absolutePath());
    return _qstrPath;
}

}  // namespace

ScopedWorkDir::ScopedWorkDir() : m_qstrPrevious(QDir::currentPath())
{
    QDir::setCurrent(m_tmpDir.path());
}

ScopedWorkDir::~ScopedWorkDir()
{
    QDir::setCurrent(m_qstrPrevious);
}

bool ScopedWorkDir::LinkFromBin(const QString& _qstrName)
{
    return QFile::link(BinPath(_qstrName), WithFolder(FilePath(_qstrName)));
}

bool ScopedWorkDir::WriteFile(const QString& _qstrRelative, const QByteArray& _qbaContent)
{
    return QuillTest::WriteFile(WithFolder(FilePath(_qstrRelative)), _qbaContent);
}

QJsonObject NewestHistroyEntry(const QString& _qstrDir)
{
    const QByteArray qbaText = ReadFile(_qstrDir + QStringLiteral("/HistroyInfo.json"));
    return QJsonDocument::fromJson(qbaText)[QLatin1String("History")][0].toObject();
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
