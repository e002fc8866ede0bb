#pragma once

#include "KoLogApi.h"
#include "KoParamApi.h"
#include "QuillTestSupport.h"

#include <QColor>
#include <QImage>
#include <QLibrary>
#include <QString>

namespace ChromeTest {

// Starts the parameter service on a settings file of the test's own, as the
// host would at start-up. The library stays loaded for the process.
inline bool InitParamService(const QString& _qstrSettingsPath)
{
    static QLibrary s_library(QuillTest::LibraryPath(KoParamApi::kLibraryName));
    const auto pInit = reinterpret_cast<KoParamApi::InitFn>(s_library.resolve("Init"));
    return pInit && pInit(_qstrSettingsPath.toStdString());
}

// Starts the logging service writing "<dir>/<channel>.log" from trace level on.
inline bool InitLogService(const QString& _qstrLogDir)
{
    static QLibrary s_library(QuillTest::LibraryPath(KoLogApi::kLibraryName));
    const auto pInit = reinterpret_cast<KoLogApi::InitFn>(s_library.resolve("Init"));
    return pInit && pInit(_qstrLogDir.toStdString(), KoLogApi::Trace);
}

// Flushes and closes the log files so a test can read them.
inline void UnInitLogService()
{
    static QLibrary s_library(QuillTest::LibraryPath(KoLogApi::kLibraryName));
    if (const auto pUnInit = reinterpret_cast<KoLogApi::UnInitFn>(s_library.resolve("UnInit")))
        pUnInit();
}

inline int CountPixels(const QImage& _img, const QRect& _rc, QRgb _rgb)
{
    int iCount = 0;
    const QRect rcClip = _rc.intersected(_img.rect());
    for (int y = rcClip.top(); y <= rcClip.bottom(); ++y)
        for (int x = rcClip.left(); x <= rcClip.right(); ++x)
            if ((_img.pixel(x, y) & 0xffffff) == (_rgb & 0xffffff)) ++iCount;
    return iCount;
}

}  // namespace ChromeTest
