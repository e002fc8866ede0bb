#include "CLS_QuitOnSignal.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <windows.h>

namespace {

std::function<void()> g_fnOnQuit;

BOOL WINAPI OnConsoleEvent(DWORD _dwType)
{
    if (_dwType != CTRL_C_EVENT && _dwType != CTRL_BREAK_EVENT && _dwType != CTRL_CLOSE_EVENT)
        return FALSE;
    // Runs on a thread of its own: hand the work to the GUI thread.
    QMetaObject::invokeMethod(QCoreApplication::instance(), [] { g_fnOnQuit(); },
                              Qt::QueuedConnection);
    return TRUE;
}

}  // namespace

void CLS_QuitOnSignal::Install(std::function<void()> _fnOnQuit)
{
    g_fnOnQuit = std::move(_fnOnQuit);
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}
