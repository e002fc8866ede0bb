#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace QuillTest {

// build/bin: the complete installation the build produces.
inline QString BinDir()
{
    return QStringLiteral(QUILL_BIN_DIR);
}

// Path of a file in build/bin.
inline QString BinPath(const QString& _qstrName)
{
    return BinDir() + QLatin1Char('/') + _qstrName;
}

// A fresh working directory for one test: the process changes into it, and
// back when the object goes away. Files the code looks for relative to "."
// (libraries it loads as "./name", skins, translations) are linked in from
// build/bin on request, so the test controls exactly what is present.
class ScopedWorkDir
{
public:
    ScopedWorkDir();
    ~ScopedWorkDir();
    ScopedWorkDir(const ScopedWorkDir&) = delete;
    ScopedWorkDir& operator=(const ScopedWorkDir&) = delete;

    QString Path() const { return m_tmpDir.path(); }
    QString FilePath(const QString& _qstrRelative) const
    {
        return m_tmpDir.filePath(_qstrRelative);
    }
    // Links build/bin/<name> (file or folder) into the working directory.
    bool LinkFromBin(const QString& _qstrName);
    // Writes a text file below the working directory, creating folders.
    bool WriteFile(const QString& _qstrRelative, const QByteArray& _qbaContent);

private:
    QTemporaryDir m_tmpDir;
    QString m_qstrPrevious;
};

// The newest entry of the play history file in _qstrDir; empty when there
// is none.
QJsonObject NewestHistroyEntry(const QString& _qstrDir = QStringLiteral("."));

// Runs a program to the end and answers its exit code (-1 when it could not
// start or did not finish within _iTimeoutMs). Output goes to _pOutput.
int RunProgram(const QString& _qstrProgram, const QStringList& _qlstArgs,
               QByteArray* _pOutput = nullptr, int _iTimeoutMs = 120000);

// The whole file; empty when it cannot be read.
QByteArray ReadFile(const QString& _qstrPath);
// Replaces the file with _qbaData; false when that fails.
bool WriteFile(const QString& _qstrPath, const QByteArray& _qbaData);

}  // namespace QuillTest
