#pragma once

#include <QString>
#include <QStringList>

class QTemporaryDir;

namespace FrameworkTest {

// Starts the real logging service writing below _qstrDir at trace level.
// False when the library is not built.
bool StartLogging(const QString& _qstrDir);

// Records written so far to "<dir>/<channel>.log", one string per record.
QStringList ReadLog(const QString& _qstrDir, const QString& _qstrChannel);

// Starts the real parameter service on a settings file; false when missing.
bool StartParams(const QString& _qstrPath);

// Joins the task pool's workers, as the host does at exit, so no worker is
// still running while the process tears down.
void StopTaskPool();

}  // namespace FrameworkTest
