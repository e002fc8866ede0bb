#include "CLS_HostDirs.h"

#include "PlatformLibrary.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

QString UserDir(const char* _pVariable, const QString& _qstrFallback)
{
    const QString qstrBase = qEnvironmentVariable(_pVariable);
    // Only absolute values count, as the base directory rules say.
    return (QDir::isAbsolutePath(qstrBase) ? qstrBase : QDir::homePath() + _qstrFallback) +
           QStringLiteral("/quillplayer");
}

bool MakeDir(const QString& _qstrDir, QString& _qstrError)
{
    if (QDir().mkpath(_qstrDir)) return true;
    _qstrError = QStringLiteral("cannot create %1").arg(_qstrDir);
    return false;
}

}  // namespace

bool CLS_HostDirs::Resolve(const QString& _qstrExplicitDir, const QString& _qstrExeDir,
                           ST_HostDirs& _stDirs, QString& _qstrError)
{
    const QDir dirExe(QFileInfo(_qstrExeDir).canonicalFilePath());
    const bool blSideBySide = QFileInfo::exists(
        dirExe.filePath(QString::fromStdString(BriskPlatform::LibraryFileName("ModuleKoPlayer"))));
    _stDirs.qstrLibDir = blSideBySide ? dirExe.path()
                                      : QDir::cleanPath(dirExe.filePath(QStringLiteral(QUILL_LIBDIR_FROM_BINDIR)));
    _stDirs.qstrDataDir = blSideBySide
                              ? dirExe.path()
                              : QDir::cleanPath(dirExe.filePath(QStringLiteral(QUILL_DATADIR_FROM_BINDIR)));

    if (!_qstrExplicitDir.isEmpty() || (blSideBySide && QFileInfo(dirExe.path()).isWritable())) {
        const QString qstrDir =
            _qstrExplicitDir.isEmpty() ? dirExe.path() : QFileInfo(_qstrExplicitDir).absoluteFilePath();
        if (!MakeDir(qstrDir, _qstrError)) return false;
        _stDirs.qstrWorkDir = QFileInfo(qstrDir).canonicalFilePath();
        _stDirs.qstrConfigDir = _stDirs.qstrWorkDir + QStringLiteral("/Config");
        _stDirs.qstrLogDir = _stDirs.qstrWorkDir + QStringLiteral("/Log");
    } else {
        _stDirs.qstrWorkDir = UserDir("XDG_DATA_HOME", QStringLiteral("/.local/share"));
        _stDirs.qstrConfigDir = UserDir("XDG_CONFIG_HOME", QStringLiteral("/.config"));
        _stDirs.qstrLogDir = UserDir("XDG_STATE_HOME", QStringLiteral("/.local/state"));
        if (!MakeDir(_stDirs.qstrWorkDir, _qstrError)) return false;
        _stDirs.qstrWorkDir = QFileInfo(_stDirs.qstrWorkDir).canonicalFilePath();
    }
    if (!MakeDir(_stDirs.qstrConfigDir, _qstrError) || !MakeDir(_stDirs.qstrLogDir, _qstrError))
        return false;
    if (_stDirs.qstrWorkDir == _stDirs.qstrLibDir && _stDirs.qstrWorkDir == _stDirs.qstrDataDir) return true;
    return LinkInstallation(_stDirs.qstrWorkDir, _stDirs.qstrLibDir, _stDirs.qstrDataDir, _qstrError);
}

bool CLS_HostDirs::LinkInstallation(const QString& _qstrDir, const QString& _qstrLibDir,
                                    const QString& _qstrDataDir, QString& _qstrError)
{
    QStringList qlstTargets;
    const QDir dirLib(_qstrLibDir);
    for (const QString& qstrName :
         dirLib.entryList({QStringLiteral("*.so"), QStringLiteral("*.dll")}, QDir::Files))
        qlstTargets << dirLib.filePath(qstrName);
    qlstTargets << QDir(_qstrDataDir).filePath(QStringLiteral("resource"))
                << QDir(_qstrDataDir).filePath(QStringLiteral("Lang"));

    for (const QString& qstrTarget : qAsConst(qlstTargets)) {
        if (!QFileInfo::exists(qstrTarget)) continue;
        const QString qstrLink = _qstrDir + QLatin1Char('/') + QFileInfo(qstrTarget).fileName();
        const QFileInfo linkInfo(qstrLink);
        if (linkInfo.isSymLink()) {
            if (linkInfo.symLinkTarget() == qstrTarget) continue;
            // An installation that moved or was upgraded: follow it.
            QFile::remove(qstrLink);
        } else if (linkInfo.exists()) {
            continue;
        }
        if (!QFile::link(qstrTarget, qstrLink)) {
            _qstrError = QStringLiteral("cannot link %1 into %2").arg(qstrTarget, _qstrDir);
            return false;
        }
    }
    return true;
}
