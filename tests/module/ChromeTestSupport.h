#pragma once

#include "KoParamApi.h"
#include "QuillTestSupport.h"

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
