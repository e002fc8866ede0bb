#pragma once

#include <QMap>
#include <QString>
#include <QVector>

// The play history file: paths in display order, newest first, each with the
// whole second it was left at. The store itself lives in the history panel;
// this is only its form on disk, kept apart from the widgets so it can be
// checked on its own.
class CLS_HistroyFile
{
public:
    enum class ReadResult {
        Loaded,
        Unreadable,  // absent, unreadable or not JSON: an empty history
        NoHistory,   // JSON, but without the "History" member
    };

    // "./HistroyInfo.json". Resolved against the current directory at each
    // use, on purpose: the host picks the working directory, and each one
    // keeps its own history.
    static QString DefaultPath();

    // Appends the file's paths to _vecPath in file order, repeats included,
    // and records their positions in _mapPos, a later repeat of a path
    // overriding an earlier one. Damaged entries read as an empty path or a
    // position of 0.
    static ReadResult Read(const QString& _qstrPath, QMap<QString, int>& _mapPos,
                           QVector<QString>& _vecPath);

    // Replaces the file with every path of _vecPath that has a position in
    // _mapPos. False, with the reason in *_pqstrError, when it could not be
    // written; the old file is then left as it was.
    static bool Write(const QString& _qstrPath, const QMap<QString, int>& _mapPos,
                      const QVector<QString>& _vecPath, QString* _pqstrError = nullptr);
};
