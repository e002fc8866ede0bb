#include "CLS_WgtHistroyList.h"
#include "QuillTestSupport.h"
#include "TestLogFiles.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QListWidget>
#include <QSaveFile>
#include <QTest>
#include <QTextEdit>

#include <sys/resource.h>
#include <csignal>
#if defined(__linux__)
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace {

const QString kHistroyFile = QStringLiteral("HistroyInfo.json");
const QString kWriteError = QStringLiteral("CLS_WgtHistroyList::UpdateResult open File Erroe");

QString MakeVideo(QuillTest::ScopedWorkDir& _workDir, const QString& _qstrName)
{
    _workDir.WriteFile(_qstrName, "video");
    return _workDir.FilePath(_qstrName);
}

QByteArray ReadHistroyBytes()
{
    QFile file(kHistroyFile);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonArray ReadHistroy()
{
    return QJsonDocument::fromJson(ReadHistroyBytes())
        .object()
        .value(QStringLiteral("History"))
        .toArray();
}

QString PathAt(const QJsonArray& _jsonHistory, int _iIndex)
{
    return _jsonHistory.at(_iIndex).toObject().value(QStringLiteral("path")).toString();
}

int PosAt(const QJsonArray& _jsonHistory, int _iIndex)
{
    return _jsonHistory.at(_iIndex).toObject().value(QStringLiteral("pos")).toInt(-1);
}

QByteArray HistroyJson(const QList<QPair<QString, QByteArray>>& _lstEntries)
{
    QByteArray qbaJson = "{\"History\": [";
    for (int i = 0; i < _lstEntries.size(); ++i) {
        if (i > 0) qbaJson += ',';
        qbaJson += "{\"path\": \"" + _lstEntries.at(i).first.toUtf8() +
                   "\", \"pos\": " + _lstEntries.at(i).second + '}';
    }
    return qbaJson + "]}";
}

QStringList RowNames(CLS_WgtHistroyList& _panel)
{
    QStringList qlstNames;
    auto* pList = _panel.findChild<QListWidget*>(QStringLiteral("listWidget"));
    for (int i = 0; pList && i < pList->count(); ++i) {
        QWidget* pRow = pList->itemWidget(pList->item(i));
        auto* pText = pRow ? pRow->findChild<QTextEdit*>(QStringLiteral("labelFileName")) : nullptr;
        qlstNames << (pText ? pText->toPlainText() : QStringLiteral("<no row widget>"));
    }
    return qlstNames;
}

int CountOf(const QString& _qstrText, const QString& _qstrNeedle)
{
    return _qstrText.count(_qstrNeedle);
}

// Root writes through directory permissions; without CAP_DAC_OVERRIDE on this
// thread a read-only directory is read-only for the test too.
class ScopedReadOnlyDir
{
public:
    explicit ScopedReadOnlyDir(const QString& _qstrPath) : m_qstrPath(_qstrPath)
    {
        QFile::setPermissions(m_qstrPath, QFile::ReadOwner | QFile::ExeOwner);
#if defined(__linux__)
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        if (syscall(SYS_capget, &header, m_capData) == 0) {
            __user_cap_data_struct capReduced[2] = {m_capData[0], m_capData[1]};
            capReduced[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
            m_blCapsChanged = syscall(SYS_capset, &header, capReduced) == 0;
        }
#endif
    }
    ~ScopedReadOnlyDir()
    {
#if defined(__linux__)
        if (m_blCapsChanged) {
            __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
            syscall(SYS_capset, &header, m_capData);
        }
#endif
        QFile::setPermissions(m_qstrPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    bool IsReadOnly() const
    {
        QFile probe(m_qstrPath + QStringLiteral("/probe"));
        if (!probe.open(QIODevice::WriteOnly)) return true;
        probe.remove();
        return false;
    }

private:
    QString m_qstrPath;
#if defined(__linux__)
    __user_cap_data_struct m_capData[2] = {};
    bool m_blCapsChanged = false;
#endif
};

}  // namespace

class tst_HistroyStore : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void keepsTwentyNewestFirst();
    void writesIndentedOrderedJson();
    void loadsLongFileWholeThenTrims();
    void repeatedPathLoadsTwiceAndWritesBoth();
    void readsWholeSecondsOnly_data();
    void readsWholeSecondsOnly();
    void toleratesDamagedFiles_data();
    void toleratesDamagedFiles();
    void unwritableDirectoryKeepsOldFile();
    void fullDiskKeepsOldFile();
    void interruptedWriteLeavesOldFile();

private:
    QuillTest::TestLogFiles* m_pLogs = nullptr;
};

void tst_HistroyStore::initTestCase()
{
    m_pLogs = new QuillTest::TestLogFiles();
    QVERIFY(m_pLogs->IsReady());
}

void tst_HistroyStore::keepsTwentyNewestFirst()
{
    QuillTest::ScopedWorkDir workDir;
    QStringList qlstPaths;
    for (int i = 1; i <= 21; ++i)
        qlstPaths << MakeVideo(workDir, QStringLiteral("v%1.mp4").arg(i, 2, 10, QLatin1Char('0')));
    {
        CLS_WgtHistroyList panel;
        for (int i = 0; i < qlstPaths.size(); ++i)
            panel.AddHistroy(qlstPaths.at(i), i + 1);

        QJsonArray jsonHistory = ReadHistroy();
        QCOMPARE(jsonHistory.size(), 20);
        QCOMPARE(PathAt(jsonHistory, 0), qlstPaths.at(20));
        QCOMPARE(PosAt(jsonHistory, 0), 21);
        QCOMPARE(PathAt(jsonHistory, 19), qlstPaths.at(1));
        QVERIFY(!ReadHistroyBytes().contains("v01.mp4"));
        QCOMPARE(RowNames(panel).size(), 20);
        QCOMPARE(RowNames(panel).first(), QStringLiteral("v21.mp4"));

        // The fifth entry played again: to the top, with its new position.
        panel.AddHistroy(qlstPaths.at(16), 300);
        jsonHistory = ReadHistroy();
        QCOMPARE(jsonHistory.size(), 20);
        QCOMPARE(PathAt(jsonHistory, 0), qlstPaths.at(16));
        QCOMPARE(PosAt(jsonHistory, 0), 300);
        QCOMPARE(PathAt(jsonHistory, 1), qlstPaths.at(20));
        QCOMPARE(PathAt(jsonHistory, 4), qlstPaths.at(17));
        QCOMPARE(PathAt(jsonHistory, 5), qlstPaths.at(15));
        QCOMPARE(ReadHistroyBytes().count("v17.mp4"), 1);
        QCOMPARE(RowNames(panel).mid(0, 2),
                 (QStringList{QStringLiteral("v17.mp4"), QStringLiteral("v21.mp4")}));
    }
    QVERIFY(!QFile::exists(QStringLiteral("LocalPlayHistory.ini")));
}

void tst_HistroyStore::writesIndentedOrderedJson()
{
    QuillTest::ScopedWorkDir workDir;
    const QString qstrA = MakeVideo(workDir, QStringLiteral("a.mp4"));
    const QString qstrB = MakeVideo(workDir, QStringLiteral("b.sdv"));
    CLS_WgtHistroyList panel;

    // Nothing to record: no path, a negative position, a file that is gone.
    panel.AddHistroy(QString(), 5);
    panel.AddHistroy(qstrA, -1);
    panel.AddHistroy(workDir.FilePath(QStringLiteral("gone.mp4")), 3);
    QVERIFY(!QFile::exists(kHistroyFile));
    QVERIFY(RowNames(panel).isEmpty());

    const int iSuccessBefore = CountOf(m_pLogs->Text(QStringLiteral("ModuleKoPlayer")),
                                       QStringLiteral(" Add Histroy Success!"));
    panel.AddHistroy(qstrA, 0);
    panel.AddHistroy(qstrB, 75);
    const QByteArray qbaExpected =
        "{\n"
        "    \"History\": [\n"
        "        {\n"
        "            \"path\": \"" +
        qstrB.toUtf8() +
        "\",\n"
        "            \"pos\": 75\n"
        "        },\n"
        "        {\n"
        "            \"path\": \"" +
        qstrA.toUtf8() +
        "\",\n"
        "            \"pos\": 0\n"
        "        }\n"
        "    ]\n"
        "}\n";
    QCOMPARE(ReadHistroyBytes(), qbaExpected);
    QCOMPARE(CountOf(m_pLogs->Text(QStringLiteral("ModuleKoPlayer")),
                     QStringLiteral(" Add Histroy Success!")),
             iSuccessBefore + 2);
}

void tst_HistroyStore::loadsLongFileWholeThenTrims()
{
    QuillTest::ScopedWorkDir workDir;
    QList<QPair<QString, QByteArray>> lstEntries;
    for (int i = 0; i < 25; ++i)
        lstEntries << qMakePair(MakeVideo(workDir, QStringLiteral("old%1.ps").arg(i)),
                                QByteArray::number(i));
    QVERIFY(workDir.WriteFile(kHistroyFile, HistroyJson(lstEntries)));

    CLS_WgtHistroyList panel;
    QCOMPARE(RowNames(panel).size(), 25);
    QCOMPARE(RowNames(panel).at(24), QStringLiteral("old24.ps"));

    const QString qstrNew = MakeVideo(workDir, QStringLiteral("new.avi"));
    panel.AddHistroy(qstrNew, 9);
    const QJsonArray jsonHistory = ReadHistroy();
    QCOMPARE(jsonHistory.size(), 20);
    QCOMPARE(PathAt(jsonHistory, 0), qstrNew);
    for (int i = 0; i < 19; ++i) {
        QCOMPARE(PathAt(jsonHistory, i + 1), lstEntries.at(i).first);
        QCOMPARE(PosAt(jsonHistory, i + 1), i);
    }
    QCOMPARE(RowNames(panel).size(), 20);
}

void tst_HistroyStore::repeatedPathLoadsTwiceAndWritesBoth()
{
    QuillTest::ScopedWorkDir workDir;
    const QString qstrA = MakeVideo(workDir, QStringLiteral("a.mp4"));
    const QString qstrB = MakeVideo(workDir, QStringLiteral("b.mp4"));
    const QString qstrC = MakeVideo(workDir, QStringLiteral("c.mp4"));
    QVERIFY(
        workDir.WriteFile(kHistroyFile, HistroyJson({{qstrA, "5"}, {qstrB, "7"}, {qstrA, "9"}})));

    CLS_WgtHistroyList panel;
    QCOMPARE(RowNames(panel), (QStringList{QStringLiteral("a.mp4"), QStringLiteral("b.mp4"),
                                           QStringLiteral("a.mp4")}));

    panel.AddHistroy(qstrC, 1);
    QJsonArray jsonHistory = ReadHistroy();
    QCOMPARE(jsonHistory.size(), 4);
    QCOMPARE(PathAt(jsonHistory, 1), qstrA);
    QCOMPARE(PosAt(jsonHistory, 1), 9);
    QCOMPARE(PathAt(jsonHistory, 3), qstrA);
    QCOMPARE(PosAt(jsonHistory, 3), 9);

    // Played again: both old rows go, one comes back on top.
    panel.AddHistroy(qstrA, 3);
    jsonHistory = ReadHistroy();
    QCOMPARE(jsonHistory.size(), 3);
    QCOMPARE(PathAt(jsonHistory, 0), qstrA);
    QCOMPARE(PosAt(jsonHistory, 0), 3);
    QCOMPARE(PathAt(jsonHistory, 1), qstrC);
    QCOMPARE(PathAt(jsonHistory, 2), qstrB);
    QCOMPARE(RowNames(panel).size(), 3);
}

void tst_HistroyStore::readsWholeSecondsOnly_data()
{
    QTest::addColumn<QByteArray>("pos");
    QTest::addColumn<int>("expected");
    QTest::newRow("fraction") << QByteArray("12.9") << 0;
    QTest::newRow("whole in decimal form") << QByteArray("12.0") << 12;
    QTest::newRow("text") << QByteArray("\"12\"") << 0;
    QTest::newRow("exponent") << QByteArray("1e3") << 1000;
    QTest::newRow("negative") << QByteArray("-7") << -7;
    QTest::newRow("largest") << QByteArray("2147483647") << 2147483647;
    QTest::newRow("too large") << QByteArray("2147483648") << 0;
    QTest::newRow("null") << QByteArray("null") << 0;
    QTest::newRow("object") << QByteArray("{\"s\": 5}") << 0;
}

void tst_HistroyStore::readsWholeSecondsOnly()
{
    QFETCH(QByteArray, pos);
    QFETCH(int, expected);
    QuillTest::ScopedWorkDir workDir;
    const QString qstrA = MakeVideo(workDir, QStringLiteral("a.mp4"));
    QVERIFY(workDir.WriteFile(kHistroyFile, HistroyJson({{qstrA, pos}})));
    CLS_WgtHistroyList panel;
    panel.AddHistroy(MakeVideo(workDir, QStringLiteral("b.mp4")), 1);

    const QJsonArray jsonHistory = ReadHistroy();
    QCOMPARE(jsonHistory.size(), 2);
    QCOMPARE(PathAt(jsonHistory, 1), qstrA);
    QCOMPARE(PosAt(jsonHistory, 1), expected);
}

void tst_HistroyStore::toleratesDamagedFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("logsNoHistroy");
    QTest::newRow("empty file") << QByteArray() << 0 << false;
    QTest::newRow("invalid json") << QByteArray("{\"History\": [") << 0 << false;
    QTest::newRow("no History") << QByteArray("{\"history\": []}") << 0 << true;
    QTest::newRow("top level array") << QByteArray("[{\"History\": []}]") << 0 << true;
    QTest::newRow("History not an array")
        << QByteArray("{\"History\": {\"path\": \"/x\"}}") << 0 << false;
    QTest::newRow("elements not objects")
        << QByteArray("{\"History\": [1, \"a\", {\"pos\": 4}]}") << 3 << false;
}

void tst_HistroyStore::toleratesDamagedFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(int, rows);
    QFETCH(bool, logsNoHistroy);
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.WriteFile(kHistroyFile, content));

    const QString qstrNoHistroy = QStringLiteral("CLS_WgtHistroyList::InitHistroyLog  not Histroy");
    const int iLogsBefore = CountOf(m_pLogs->Text(QStringLiteral("ModuleKoPlayer")), qstrNoHistroy);
    CLS_WgtHistroyList panel;
    QCOMPARE(RowNames(panel).size(), rows);
    QCOMPARE(CountOf(m_pLogs->Text(QStringLiteral("ModuleKoPlayer")), qstrNoHistroy),
             iLogsBefore + (logsNoHistroy ? 1 : 0));
    QCOMPARE(ReadHistroyBytes(), content);

    // The next entry replaces the damaged file with a sound one.
    const QString qstrNew = MakeVideo(workDir, QStringLiteral("new.mp4"));
    panel.AddHistroy(qstrNew, 2);
    const QJsonArray jsonHistory = ReadHistroy();
    QCOMPARE(jsonHistory.size(), rows + 1);
    QCOMPARE(PathAt(jsonHistory, 0), qstrNew);
}

void tst_HistroyStore::unwritableDirectoryKeepsOldFile()
{
    QuillTest::ScopedWorkDir workDir;
    const QString qstrA = MakeVideo(workDir, QStringLiteral("a.mp4"));
    const QString qstrB = MakeVideo(workDir, QStringLiteral("b.mp4"));
    const QByteArray qbaOld = HistroyJson({{qstrA, "5"}});
    QVERIFY(workDir.WriteFile(kHistroyFile, qbaOld));
    CLS_WgtHistroyList panel;

    const int iErrorsBefore = CountOf(m_pLogs->Text(QStringLiteral("ModuleKoPlayer")), kWriteError);
    {
        ScopedReadOnlyDir readOnly(workDir.Path());
        if (!readOnly.IsReadOnly())
            QSKIP("this file system lets the test write into a read-only folder");
        panel.AddHistroy(qstrB, 8);
    }
    QCOMPARE(CountOf(m_pLogs->Text(QStringLiteral("ModuleKoPlayer")), kWriteError),
             iErrorsBefore + 1);
    QCOMPARE(ReadHistroyBytes(), qbaOld);
    // The running program keeps the change and writes it out next time.
    QCOMPARE(RowNames(panel), (QStringList{QStringLiteral("b.mp4"), QStringLiteral("a.mp4")}));
    panel.AddHistroy(qstrA, 6);
    QCOMPARE(ReadHistroy().size(), 2);
}

void tst_HistroyStore::fullDiskKeepsOldFile()
{
    QuillTest::ScopedWorkDir workDir;
    const QString qstrA = MakeVideo(workDir, QStringLiteral("a.mp4"));
    const QByteArray qbaOld = HistroyJson({{qstrA, "5"}});
    QVERIFY(workDir.WriteFile(kHistroyFile, qbaOld));
    CLS_WgtHistroyList panel;

    // A file size limit makes every write stop part-way, as a full disk does.
    rlimit limitOld{};
    QVERIFY(getrlimit(RLIMIT_FSIZE, &limitOld) == 0);
    auto pfnOldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limitSmall = limitOld;
    limitSmall.rlim_cur = 32;
    QVERIFY(setrlimit(RLIMIT_FSIZE, &limitSmall) == 0);
    panel.AddHistroy(MakeVideo(workDir, QStringLiteral("b.mp4")), 8);
    setrlimit(RLIMIT_FSIZE, &limitOld);
    std::signal(SIGXFSZ, pfnOldHandler);

    QCOMPARE(ReadHistroyBytes(), qbaOld);
    QCOMPARE(QDir().entryList({kHistroyFile + QStringLiteral("*")}, QDir::Files),
             QStringList{kHistroyFile});
    QCOMPARE(RowNames(panel).size(), 2);
}

void tst_HistroyStore::interruptedWriteLeavesOldFile()
{
    QuillTest::ScopedWorkDir workDir;
    const QString qstrA = MakeVideo(workDir, QStringLiteral("a.mp4"));
    const QByteArray qbaOld = HistroyJson({{qstrA, "5"}});
    QVERIFY(workDir.WriteFile(kHistroyFile, qbaOld));

    // What a crash leaves behind: a write that was never renamed into place,
    // and the torn temporary file of an earlier one.
    {
        QSaveFile unfinished(kHistroyFile);
        QVERIFY(unfinished.open(QIODevice::WriteOnly));
        unfinished.write("{\"History\": [{\"pa");
    }
    QVERIFY(workDir.WriteFile(kHistroyFile + QStringLiteral(".Xa12bC"), "{\"History\": [{\"pa"));
    QCOMPARE(ReadHistroyBytes(), qbaOld);

    CLS_WgtHistroyList panel;
    QCOMPARE(RowNames(panel), QStringList{QStringLiteral("a.mp4")});
    panel.AddHistroy(MakeVideo(workDir, QStringLiteral("b.mp4")), 8);
    QCOMPARE(ReadHistroy().size(), 2);
}

QTEST_MAIN(tst_HistroyStore)
#include "tst_HistroyStore.moc"
