#include "CLS_HistroyFile.h"
#include "QuillTestSupport.h"

#include <QDir>
#include <QtTest>

#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <csignal>
#include <optional>

namespace {

const QString kFile = QStringLiteral("HistroyInfo.json");

QByteArray FileBytes(const QString& _qstrPath)
{
    QFile file(_qstrPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Root writes through folder permissions; without CAP_DAC_OVERRIDE on this
// thread a read-only folder is read-only for the test too.
class ScopedReadOnlyDir
{
public:
    explicit ScopedReadOnlyDir(const QString& _qstrPath) : m_qstrPath(_qstrPath)
    {
        QFile::setPermissions(m_qstrPath, QFile::ReadOwner | QFile::ExeOwner);
        if (syscall(SYS_capget, &m_header, m_caps) == 0) {
            __user_cap_data_struct reduced[2] = {m_caps[0], m_caps[1]};
            reduced[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
            m_blCapsChanged = syscall(SYS_capset, &m_header, reduced) == 0;
        }
    }
    ~ScopedReadOnlyDir()
    {
        if (m_blCapsChanged) syscall(SYS_capset, &m_header, m_caps);
        QFile::setPermissions(m_qstrPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    bool IsReadOnly() const
    {
        QFile probe(m_qstrPath + QStringLiteral("/probe"));
        return !probe.open(QIODevice::WriteOnly);
    }

private:
    QString m_qstrPath;
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_caps[2] = {};
    bool m_blCapsChanged = false;
};

// A file size limit stops every write part-way, as a full disk does.
class ScopedDiskFull
{
public:
    ScopedDiskFull()
    {
        getrlimit(RLIMIT_FSIZE, &m_limitOld);
        m_pfnOldHandler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limitSmall{32, m_limitOld.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limitSmall);
    }
    ~ScopedDiskFull()
    {
        setrlimit(RLIMIT_FSIZE, &m_limitOld);
        std::signal(SIGXFSZ, m_pfnOldHandler);
    }

private:
    rlimit m_limitOld{};
    void (*m_pfnOldHandler)(int) = nullptr;
};

}  // namespace

class tst_HistroyFile : public QObject
{
    Q_OBJECT
private slots:
    void readsTolerantly_data()
    {
        QTest::addColumn<QByteArray>("content");  // empty: no file
        QTest::addColumn<int>("result");
        QTest::addColumn<QStringList>("paths");
        QTest::addColumn<QString>("positions");
        const int iLoaded = int(CLS_HistroyFile::ReadResult::Loaded);
        const int iUnreadable = int(CLS_HistroyFile::ReadResult::Unreadable);
        QTest::newRow("positions: whole numbers only")
            << QByteArray(R"({"History": [{"path": "a", "pos": 12.9}, {"path": "b", "pos": 12.0},
                {"path": "c", "pos": "12"}, {"path": "d", "pos": 3e10}, {"path": "e", "x": 1}],
                "Other": 1})")
            << iLoaded << QStringList{"a", "b", "c", "d", "e"} << "a:0 b:12 c:0 d:0 e:0";
        QTest::newRow("repeated path: both kept, the later position")
            << QByteArray(R"({"History": [{"path": "a", "pos": 5}, {"path": "b", "pos": 7},
                {"path": "a", "pos": 9}]})")
            << iLoaded << QStringList{"a", "b", "a"} << "a:9 b:7";
        QTest::newRow("elements not objects") << QByteArray(R"({"History": [1, "a", {"pos": 4}]})")
                                              << iLoaded << QStringList{"", "", ""} << ":4";
        QTest::newRow("History not an array")
            << QByteArray(R"({"History": {"path": "/x"}})") << iLoaded << QStringList() << "";
        QTest::newRow("no History")
            << QByteArray(R"({"history": []})") << int(CLS_HistroyFile::ReadResult::NoHistory)
            << QStringList() << "";
        QTest::newRow("invalid json")
            << QByteArray(R"({"History": [)") << iUnreadable << QStringList() << "";
        QTest::newRow("no file") << QByteArray() << iUnreadable << QStringList() << "";
    }

    void readsTolerantly()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, result);
        QFETCH(QStringList, paths);
        QFETCH(QString, positions);
        QuillTest::ScopedWorkDir workDir;
        if (!content.isEmpty()) QVERIFY(workDir.WriteFile(kFile, content));
        QMap<QString, int> mapPos;
        QVector<QString> vecPath;
        QCOMPARE(int(CLS_HistroyFile::Read(CLS_HistroyFile::DefaultPath(), mapPos, vecPath)),
                 result);
        QCOMPARE(QStringList(vecPath.toList()), paths);
        QStringList qlstPositions;
        for (auto it = mapPos.cbegin(); it != mapPos.cend(); ++it)
            qlstPositions << it.key() + ':' + QString::number(it.value());
        QCOMPARE(qlstPositions.join(' '), positions);
    }

    void writesTheStoreInDisplayOrder()
    {
        QuillTest::ScopedWorkDir workDir;
        const QMap<QString, int> mapPos{{"D:\\video\\b.mp4", 75}, {"/v/录像 a.sdv", 0}};
        // A path without a position is left out; a repeated one is written each time.
        const QVector<QString> vecPath{"D:\\video\\b.mp4", "/v/unknown.mp4", "/v/录像 a.sdv",
                                       "D:\\video\\b.mp4"};
        QVERIFY(CLS_HistroyFile::Write(kFile, mapPos, vecPath));
        const QByteArray qbaEntryB =
            "        {\n"
            "            \"path\": \"D:\\\\video\\\\b.mp4\",\n"
            "            \"pos\": 75\n"
            "        }";
        QByteArray qbaExpected = "{\n    \"History\": [\n";
        qbaExpected += qbaEntryB;
        qbaExpected +=
            ",\n        {\n"
            "            \"path\": \"/v/录像 a.sdv\",\n"
            "            \"pos\": 0\n"
            "        },\n";
        qbaExpected += qbaEntryB;
        qbaExpected += "\n    ]\n}\n";
        QCOMPARE(FileBytes(kFile), qbaExpected);

        QVERIFY(CLS_HistroyFile::Write(kFile, {}, {}));
        QMap<QString, int> mapRead;
        QVector<QString> vecRead;
        QCOMPARE(CLS_HistroyFile::Read(kFile, mapRead, vecRead),
                 CLS_HistroyFile::ReadResult::Loaded);
        QVERIFY(vecRead.isEmpty());
    }

    void rewritesOrKeepsTheOldFile_data()
    {
        QTest::addColumn<bool>("folderReadOnly");
        QTest::addColumn<bool>("fileReadOnly");
        QTest::addColumn<bool>("diskFull");
        QTest::addColumn<bool>("written");
        QTest::newRow("read-only folder, writable file: rewritten in place")
            << true << false << false << true;
        QTest::newRow("read-only folder and file") << true << true << false << false;
        QTest::newRow("disk full mid-write") << false << false << true << false;
    }

    void rewritesOrKeepsTheOldFile()
    {
        QFETCH(bool, folderReadOnly);
        QFETCH(bool, fileReadOnly);
        QFETCH(bool, diskFull);
        QFETCH(bool, written);
        QuillTest::ScopedWorkDir workDir;
        // Longer than the new file, so a rewrite in place that leaves a tail shows.
        const QByteArray qbaOld = R"({"History": [{"path": "/v/a-much-longer-old-name.mp4",
                                     "pos": 5}]})";
        QVERIFY(workDir.WriteFile(kFile, qbaOld));
        if (fileReadOnly) QFile::setPermissions(kFile, QFile::ReadOwner);
        const QMap<QString, int> mapPos{{"/v/b.mp4", 8}};
        bool blWritten = false;
        {
            std::optional<ScopedReadOnlyDir> readOnly;
            if (folderReadOnly) readOnly.emplace(workDir.Path());
            if (readOnly && !readOnly->IsReadOnly())
                QSKIP("this file system lets the test write into a read-only folder");
            std::unique_ptr<ScopedDiskFull> pDiskFull(diskFull ? new ScopedDiskFull : nullptr);
            QString qstrError;
            blWritten = CLS_HistroyFile::Write(kFile, mapPos, {"/v/b.mp4"}, &qstrError);
            QCOMPARE(qstrError.isEmpty(), written);
        }
        QCOMPARE(blWritten, written);
        QMap<QString, int> mapRead;
        QVector<QString> vecRead;
        if (written) {
            QCOMPARE(CLS_HistroyFile::Read(kFile, mapRead, vecRead),
                     CLS_HistroyFile::ReadResult::Loaded);
            QCOMPARE(mapRead, mapPos);
        } else {
            QCOMPARE(FileBytes(kFile), qbaOld);
        }
        // No temporary file left beside it.
        QCOMPARE(QDir().entryList(QDir::Files), QStringList{kFile});
    }
};

QTEST_GUILESS_MAIN(tst_HistroyFile)
#include "tst_HistroyFile.moc"
