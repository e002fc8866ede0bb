#include "CLS_QuitOnSignal.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int g_arrSignalPipe[2] = {-1, -1};

// Only async-signal-safe work here: one byte into the pipe.
void OnSignal(int)
{
    const char chByte = 1;
    [[maybe_unused]] const ssize_t iWritten = ::write(g_arrSignalPipe[0], &chByte, 1);
}

}  // namespace

void CLS_QuitOnSignal::Install(std::function<void()> _fnOnQuit)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, g_arrSignalPipe) != 0) return;
    auto* pNotifier =
        new QSocketNotifier(g_arrSignalPipe[1], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(pNotifier, &QSocketNotifier::activated, pNotifier, [pNotifier, _fnOnQuit]() {
        char chByte = 0;
        [[maybe_unused]] const ssize_t iRead = ::read(g_arrSignalPipe[1], &chByte, 1);
        // A second signal while the first is handled ends the process the
        // hard way, as users expect from a second Ctrl+C.
        pNotifier->setEnabled(false);
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
        _fnOnQuit();
    });

    struct sigaction action = {};
    action.sa_handler = OnSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}
