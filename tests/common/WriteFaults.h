#pragma once

#include <QString>

#include <linux/capability.h>
#include <sys/resource.h>

#include <functional>

namespace QuillTest {

// While it lives, every write of this process stops after _iBytes bytes of a
// file, as on a full disk (the file size limit, with its signal ignored, so
// write() fails with EFBIG part-way through).
class ScopedDiskFull
{
public:
    explicit ScopedDiskFull(rlim_t _iBytes = 32);
    ~ScopedDiskFull();
    ScopedDiskFull(const ScopedDiskFull&) = delete;
    ScopedDiskFull& operator=(const ScopedDiskFull&) = delete;

private:
    rlimit m_limitOld{};
    void (*m_pfnOldHandler)(int) = nullptr;
};

// While it lives, _qstrPath is a folder that takes no new file. Root writes
// through folder permissions, so the effective capabilities that allow it are
// dropped for the time (tests run as root in containers).
class ScopedReadOnlyDir
{
public:
    explicit ScopedReadOnlyDir(const QString& _qstrPath);
    ~ScopedReadOnlyDir();
    ScopedReadOnlyDir(const ScopedReadOnlyDir&) = delete;
    ScopedReadOnlyDir& operator=(const ScopedReadOnlyDir&) = delete;
    // False on a file system that lets the test write there all the same.
    bool IsReadOnly() const;

private:
    QString m_qstrPath;
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_caps[2] = {};
    bool m_blCapsChanged = false;
};

// Runs _fnWrite(1 .. _iWrites) in a child process and kills it with SIGKILL
// at a random moment, _iRounds times, each round's kill falling somewhere in
// the time the whole series takes. After every kill _fnCheck looks at what is
// on disk and answers an empty string when it is acceptable, else what is
// wrong; the first complaint ends the run and is answered.
QString KillDuringWrites(const std::function<void(int)>& _fnWrite,
                         const std::function<QString()>& _fnCheck, int _iWrites = 200,
                         int _iRounds = 20);

}  // namespace QuillTest
