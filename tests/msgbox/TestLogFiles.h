#pragma once

#include "KoLogApi.h"
#include "QuillTestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <dlfcn.h>

namespace QuillTest {

// The real logging service writing into a private folder, one file per
// channel, so a test can read back what the code logged.
class TestLogFiles
{
public:
    TestLogFiles()
    {
        void* pLibrary = dlopen(QFile::encodeName(LibraryPath(QStringLiteral("KoLog"))).constData(),
                                RTLD_NOW | RTLD_GLOBAL);
        auto pfnInit =
            pLibrary ? reinterpret_cast<KoLogApi::InitFn>(dlsym(pLibrary, "Init")) : nullptr;
        m_blReady = pfnInit && m_tmpDir.isValid() && pfnInit(m_tmpDir.path().toStdString(), 0);
    }

    bool IsReady() const { return m_blReady; }

    QString Text(const QString& _qstrChannel) const
    {
        QFile file(m_tmpDir.filePath(_qstrChannel + QStringLiteral(".log")));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    // Every channel's lines together.
    QString AllText() const
    {
        QString qstrText;
        const QStringList qlstFiles = QDir(m_tmpDir.path()).entryList(QDir::Files);
        for (const QString& qstrFile : qlstFiles) {
            QFile file(m_tmpDir.filePath(qstrFile));
            if (file.open(QIODevice::ReadOnly)) qstrText += QString::fromUtf8(file.readAll());
        }
        return qstrText;
    }

private:
    QTemporaryDir m_tmpDir;
    bool m_blReady = false;
};

}  // namespace QuillTest
