#include "CLS_HostWorkDir.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

QString CLS_HostWorkDir::Choose(const QString& _qstrExplicitDir, const QString& _qstrInstallDir,
                                QString& _qstrError)
{
    const QString qstrInstallDir = QFileInfo(_qstrInstallDir).canonicalFilePath();
    QString qstrDir;
    if (!_qstrExplicitDir.isEmpty()) {
        qstrDir = QFileInfo(_qstrExplicitDir).absoluteFilePath();
    } else if (QFileInfo(qstrInstallDir).isWritable()) {
        return qstrInstallDir;
    } else {
        qstrDir = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                  QStringLiteral("/quillplayer");
    }

    if (!QDir().mkpath(qstrDir)) {
        _qstrError = QStringLiteral("cannot create the working directory %1").arg(qstrDir);
        return QString();
    }
    qstrDir = QFileInfo(qstrDir).canonicalFilePath();
    if (qstrDir != qstrInstallDir && !LinkInstallation(qstrDir, qstrInstallDir, _qstrError))
        return QString();
    return qstrDir;
}

bool CLS_HostWorkDir::LinkInstallation(const QString& _qstrDir, const QString& _qstrInstallDir,
                                       QString& _qstrError)
{
    const QDir dirInstall(_qstrInstallDir);
    QStringList qlstNames = dirInstall.entryList({QStringLiteral("*.so"), QStringLiteral("*.dll")},
                                                 QDir::Files);
    qlstNames << QStringLiteral("resource") << QStringLiteral("Lang");
    for (const QString& qstrName : qAsConst(qlstNames)) {
        const QString qstrTarget = dirInstall.filePath(qstrName);
        if (!QFileInfo::exists(qstrTarget)) continue;
        const QString qstrLink = _qstrDir + QLatin1Char('/') + qstrName;
        const QFileInfo linkInfo(qstrLink);
        if (linkInfo.isSymLink()) {
            if (linkInfo.symLinkTarget() == qstrTarget) continue;
            // An installation that moved: follow it.
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
