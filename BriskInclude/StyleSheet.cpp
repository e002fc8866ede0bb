#include "StyleSheet.h"

#include "KoServices.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QMutex>

namespace {

const QString kSkinRoot = QStringLiteral(".");

struct StyleCache
{
    QMutex mutex;
    double dScaleFactor = -1.0;
    QString qstrShared;
    QHash<QString, QString> hashModuleFiles;  // "<module>/<file>" -> text
};

StyleCache& Cache()
{
    static StyleCache s_cache;
    return s_cache;
}

QString SkinName()
{
    const QString qstrSkin =
        QString::fromStdString(KoService::GetParam("SystemConfig", "skin", "dark"));
    return qstrSkin.isEmpty() ? QStringLiteral("dark") : qstrSkin;
}

// QT_SCALE_FACTOR, read on first use only. Caller holds the cache lock.
double ScaleFactor(StyleCache& _cache)
{
    if (_cache.dScaleFactor < 0.0) {
        const QByteArray qbaValue = qgetenv("QT_SCALE_FACTOR");
        _cache.dScaleFactor = qbaValue.isEmpty() ? 0.0 : qbaValue.toDouble();
    }
    return _cache.dScaleFactor;
}

QString ReadAll(const QString& _qstrPath)
{
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(file.readAll());
}

}  // namespace

QString NormaliseModuleName(const QString& _qstrModuleName)
{
    if (_qstrModuleName.startsWith(QLatin1String("Wgt")) ||
        _qstrModuleName.startsWith(QLatin1String("Module")) ||
        _qstrModuleName.startsWith(QLatin1String("Ko")))
        return _qstrModuleName;
    return QStringLiteral("Module%1").arg(_qstrModuleName);
}

bool GetQssFilePath(const QString& _qstrModuleName, const QString& _qstrFileName,
                    QString& _qstrPath)
{
    if (_qstrModuleName.isEmpty() || _qstrFileName.isEmpty()) return false;

    const QString qstrBase = QStringLiteral("%1/resource/skin/%2/%3/qss/%4")
                                 .arg(kSkinRoot, SkinName(), _qstrModuleName, _qstrFileName);
    double dFactor = 0.0;
    {
        StyleCache& cache = Cache();
        QMutexLocker locker(&cache.mutex);
        dFactor = ScaleFactor(cache);
    }

    QString qstrResult;
    if (dFactor > 1.0) {
        const QString qstrCandidate =
            QStringLiteral("%1_%2K.qss").arg(qstrBase, QString::number(dFactor * 2, 'g'));
        if (QFile::exists(qstrCandidate)) qstrResult = qstrCandidate;
    }
    if (qstrResult.isEmpty()) qstrResult = qstrBase + QStringLiteral(".qss");

    _qstrPath = qstrResult;
    return QFile::exists(qstrResult);
}

QString GetModuleStyleSheet(const QString& _qstrModuleName, const QString& _qstrFileName)
{
    const QString qstrModule = NormaliseModuleName(_qstrModuleName);
    StyleCache& cache = Cache();

    QString qstrShared;
    {
        QMutexLocker locker(&cache.mutex);
        qstrShared = cache.qstrShared;
    }
    if (qstrShared.isEmpty()) {
        const QString qstrFolder =
            QStringLiteral("%1/resource/skin/%2/Common").arg(kSkinRoot, SkinName());
        // QDir's own order (by name, case ignored): the order in which every
        // module of the suite cascades the shared sheets.
        const QStringList qlstEntries =
            QDir(qstrFolder).entryList({QStringLiteral("*.qss")}, QDir::Files);
        for (const QString& qstrEntry : qlstEntries)
            qstrShared += ReadAll(qstrFolder + QLatin1Char('/') + qstrEntry);
        if (!qstrShared.isEmpty()) {
            QMutexLocker locker(&cache.mutex);
            cache.qstrShared = qstrShared;
        }
    }

    const QString qstrFile = _qstrFileName.isEmpty() ? qstrModule : _qstrFileName;
    const QString qstrKey = qstrModule + QLatin1Char('/') + qstrFile;
    {
        QMutexLocker locker(&cache.mutex);
        auto it = cache.hashModuleFiles.constFind(qstrKey);
        if (it != cache.hashModuleFiles.constEnd()) return qstrShared + it.value();
    }
    QString qstrPath;
    GetQssFilePath(qstrModule, qstrFile, qstrPath);
    const QString qstrOwn = ReadAll(qstrPath);
    {
        QMutexLocker locker(&cache.mutex);
        cache.hashModuleFiles.insert(qstrKey, qstrOwn);
    }
    return qstrShared + qstrOwn;
}
