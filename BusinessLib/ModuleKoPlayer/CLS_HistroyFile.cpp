#include "CLS_HistroyFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QSaveFile>

#include <cmath>
#include <limits>

namespace {

// Whole seconds only: a fraction is not a position this player ever wrote, so
// it is not rounded into one.
int ReadPosition(const QJsonValue& _jsonValue)
{
    if (!_jsonValue.isDouble()) return 0;
    const double dValue = _jsonValue.toDouble();
    if (std::floor(dValue) != dValue || dValue < std::numeric_limits<int>::min() ||
        dValue > std::numeric_limits<int>::max())
        return 0;
    return static_cast<int>(dValue);
}

}  // namespace

QString CLS_HistroyFile::DefaultPath()
{
    return QStringLiteral(".") + QStringLiteral("/HistroyInfo.json");
}

CLS_HistroyFile::ReadResult CLS_HistroyFile::Read(const QString& _qstrPath,
                                                  QMap<QString, int>& _mapPos,
                                                  QVector<QString>& _vecPath)
{
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly)) return ReadResult::Unreadable;
    const QByteArray qbaContent = file.readAll();
    file.close();

    QJsonParseError jsonError;
    const QJsonDocument jsonDoc = QJsonDocument::fromJson(qbaContent, &jsonError);
    if (jsonError.error != QJsonParseError::NoError) return ReadResult::Unreadable;

    const QJsonObject jsonRoot = jsonDoc.object();
    if (!jsonRoot.contains(QLatin1String("History"))) return ReadResult::NoHistory;

    // No trimming here: a longer hand-made file is shown whole and only
    // shortened by the next new entry.
    const QJsonArray jsonHistory = jsonRoot.value(QLatin1String("History")).toArray();
    for (const QJsonValue& jsonValue : jsonHistory) {
        const QJsonObject jsonEntry = jsonValue.toObject();
        const QString qstrPath = jsonEntry.value(QLatin1String("path")).toString();
        _mapPos.insert(qstrPath, ReadPosition(jsonEntry.value(QLatin1String("pos"))));
        _vecPath.append(qstrPath);
    }
    return ReadResult::Loaded;
}

bool CLS_HistroyFile::Write(const QString& _qstrPath, const QMap<QString, int>& _mapPos,
                            const QVector<QString>& _vecPath, QString* _pqstrError)
{
    QJsonArray jsonHistory;
    for (const QString& qstrPath : _vecPath) {
        auto it = _mapPos.constFind(qstrPath);
        if (it == _mapPos.constEnd()) continue;
        QJsonObject jsonEntry;
        jsonEntry.insert(QLatin1String("path"), qstrPath);
        jsonEntry.insert(QLatin1String("pos"), static_cast<qint64>(it.value()));
        jsonHistory.append(jsonEntry);
    }
    QJsonObject jsonRoot;
    jsonRoot.insert(QLatin1String("History"), jsonHistory);
    const QByteArray qbaContent = QJsonDocument(jsonRoot).toJson(QJsonDocument::Indented);

    // Written beside the old file and renamed over it: a crash or a full disk
    // leaves the old history or the new one, never half of one. A folder that
    // takes no new file (a shared installation folder where only the history
    // file was made writable) still gets its file rewritten, in place. The
    // explicit flush matters: commit() misses a buffered tail that failed to
    // reach the disk and would rename a torn file into place.
    QSaveFile file(_qstrPath);
    file.setDirectWriteFallback(true);
    if (file.open(QIODevice::WriteOnly) && file.write(qbaContent) == qbaContent.size() &&
        file.flush() && file.commit())
        return true;
    if (_pqstrError) *_pqstrError = file.errorString();
    file.cancelWriting();
    return false;
}
