#include "WriteFaults.h"

#include <QFile>

#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <random>
#include <thread>

namespace QuillTest {

ScopedDiskFull::ScopedDiskFull(rlim_t _iBytes)
{
    getrlimit(RLIMIT_FSIZE, &m_limitOld);
    m_pfnOldHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limitFull{_iBytes, m_limitOld.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limitFull);
}

ScopedDiskFull::~ScopedDiskFull()
{
    setrlimit(RLIMIT_FSIZE, &m_limitOld);
    std::signal(SIGXFSZ, m_pfnOldHandler);
}

ScopedReadOnlyDir::ScopedReadOnlyDir(const QString& _qstrPath) : m_qstrPath(_qstrPath)
{
    QFile::setPermissions(m_qstrPath, QFile::ReadOwner | QFile::ExeOwner);
    if (syscall(SYS_capget, &m_header, m_caps) == 0) {
        __user_cap_data_struct reduced[2] = {m_caps[0], m_caps[1]};
        reduced[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
        m_blCapsChanged = syscall(SYS_capset, &m_header, reduced) == 0;
    }
}

ScopedReadOnlyDir::~ScopedReadOnlyDir()
{
    if (m_blCapsChanged) syscall(SYS_capset, &m_header, m_caps);
    QFile::setPermissions(m_qstrPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

bool ScopedReadOnlyDir::IsReadOnly() const
{
    return !QFile(m_qstrPath + QStringLiteral("/probe")).open(QIODevice::WriteOnly);
}

namespace {

// Forks a child that runs _fnWrite(1 .. _iWrites); answers its pid, or -1.
pid_t StartWriter(const std::function<void(int)>& _fnWrite, int _iWrites)
{
    const pid_t pid = fork();
    if (pid == 0) {
        for (int i = 1; i <= _iWrites; ++i)
            _fnWrite(i);
        _exit(0);
    }
    return pid;
}

}  // namespace

QString KillDuringWrites(const std::function<void(int)>& _fnWrite,
                         const std::function<QString()>& _fnCheck, int _iWrites, int _iRounds)
{
    using namespace std::chrono;
    // One undisturbed series first: how long the writes take here, and a
    // check that the complete result is acceptable too.
    const auto tpStart = steady_clock::now();
    const pid_t pidTimed = StartWriter(_fnWrite, _iWrites);
    if (pidTimed < 0 || waitpid(pidTimed, nullptr, 0) != pidTimed)
        return QStringLiteral("cannot start the writer");
    const long long llSeriesUs = duration_cast<microseconds>(steady_clock::now() - tpStart).count();
    if (QString qstrFault = _fnCheck(); !qstrFault.isEmpty())
        return QStringLiteral("after a whole series: ") + qstrFault;

    std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution<long long> delay(0, std::max(llSeriesUs, 1LL));
    for (int iRound = 1; iRound <= _iRounds; ++iRound) {
        const pid_t pid = StartWriter(_fnWrite, _iWrites);
        if (pid < 0) return QStringLiteral("cannot start the writer");
        std::this_thread::sleep_for(microseconds(delay(random)));
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
        if (QString qstrFault = _fnCheck(); !qstrFault.isEmpty())
            return QStringLiteral("after kill %1: %2").arg(iRound).arg(qstrFault);
    }
    return {};
}

}  // namespace QuillTest
