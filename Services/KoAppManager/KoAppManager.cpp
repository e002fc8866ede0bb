#include "I_AppSignals.h"
#include "KoAppManagerApi.h"
#include "KoServiceExport.h"

#include <QCoreApplication>
#include <QThread>

#include <type_traits>

namespace {

I_AppSignals* CreateHub()
{
    auto* pHub = new I_AppSignals();
    pHub->setObjectName(QStringLiteral("AppSignals"));
    // The first caller may be a short-lived worker thread; the hub must keep a
    // living thread, so it belongs to the application's thread when there is one.
    if (QCoreApplication* pApp = QCoreApplication::instance()) pHub->moveToThread(pApp->thread());
    return pHub;
}

}  // namespace

// Deliberately never deleted: modules stay connected to the hub until the very
// end of the process, after any static destructor would have run.
extern "C" KO_SERVICE_EXPORT I_AppSignals* GetAppSignals()
{
    try {
        static I_AppSignals* const s_pHub = CreateHub();
        return s_pHub;
    } catch (...) {
        return nullptr;
    }
}

static_assert(std::is_same_v<decltype(&GetAppSignals), KoAppManagerApi::GetAppSignalsFn>);
