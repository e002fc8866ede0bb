#pragma once

#include "KoLogApi.h"
#include "QuillTestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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
            reinterpret_cast<KoLogApi::InitFn>(pLibrary ? dlsym(pLibrary, "Init") : nullptr);
        m_blReady = pfnInit && m_tmpDir.isValid() &&
                    pfnInit(m_tmpDir.path().toStdString(), KoLogApi::Trace);
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
        for (const QFileInfo& info : QDir(m_tmpDir.path()).entryInfoList({"*.log"}, QDir::Files))
            qstrText += Text(info.completeBaseName());
        return qstrText;
    }

private:
    QTemporaryDir m_tmpDir;
    bool m_blReady = false;
};

}  // namespace QuillTest
