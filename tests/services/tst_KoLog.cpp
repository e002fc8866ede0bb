#include "CLS_LogService.h"
#include "KoLogApi.h"
#include "ServiceLibrary.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

namespace {

QString ReadAll(const QString& _qstrPath)
{
    QFile file(_qstrPath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace

class tst_KoLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void callsBeforeInitAreDropped();
    void recordCarriesEveryField();
    void levelsFilterPerChannelAndForAll();
    void channelNamesStayInsideTheFolder();
    void concurrentRecordsAreAllWritten();
    void printLogRacingUnInitIsSafe();
    void initOnUnwritableFolderKeepsTheOldOne();
    void callsAfterUnInitAreDropped();
    void filesRotatePastTheSizeLimit();

private:
    void Print(unsigned _uiLevel, const char* _pChannel, const std::string& _strText)
    {
        m_pfnPrint(_uiLevel, _pChannel, __FILE__, 7, "tst_KoLog::Print", &_strText);
    }

    ServiceLibrary m_library{KoLogApi::kLibraryName};
    KoLogApi::InitFn m_pfnInit = nullptr;
    KoLogApi::SetLoggerConfigFn m_pfnSetConfig = nullptr;
    KoLogApi::SetLoggerConfigAllFn m_pfnSetConfigAll = nullptr;
    KoLogApi::PrintLogFn m_pfnPrint = nullptr;
    KoLogApi::UnInitFn m_pfnUnInit = nullptr;
    QTemporaryDir m_tmpDir;
};

void tst_KoLog::initTestCase()
{
    QVERIFY(m_tmpDir.isValid());
    QVERIFY(m_library.Load());
    m_pfnInit = m_library.Get<KoLogApi::InitFn>("Init");
    m_pfnSetConfig = m_library.Get<KoLogApi::SetLoggerConfigFn>("SetLoggerConfig");
    m_pfnSetConfigAll = m_library.Get<KoLogApi::SetLoggerConfigAllFn>("SetLoggerConfigAll");
    m_pfnPrint = m_library.Get<KoLogApi::PrintLogFn>("PrintLog");
    m_pfnUnInit = m_library.Get<KoLogApi::UnInitFn>("UnInit");
    QVERIFY(m_pfnInit && m_pfnSetConfig && m_pfnSetConfigAll && m_pfnPrint && m_pfnUnInit);
}

void tst_KoLog::callsBeforeInitAreDropped()
{
    Print(3, "Early", "nobody listens");
    QVERIFY(!m_pfnSetConfig("Early", 0));
    QVERIFY(!m_pfnSetConfigAll(0));
    const QString qstrDir = m_tmpDir.filePath(QStringLiteral("early"));
    QVERIFY(m_pfnInit(qstrDir.toStdString(), 0));
    QVERIFY(!QFile::exists(qstrDir + QStringLiteral("/Early.log")));
}

void tst_KoLog::recordCarriesEveryField()
{
    const QString qstrDir = m_tmpDir.filePath(QStringLiteral("fields/nested"));
    QVERIFY(m_pfnInit(qstrDir.toStdString(), 0));

    const std::string strText = "request key:[\n{\n    \"PlayUrl\": \"a.mp4\"\n}\n]";
    m_pfnPrint(1, "ModuleKoPlayer", "/src/BusinessLib/MainWindow.cpp", 321, "MainWindow::SlotStop",
               &strText);
    const QString qstrLog = ReadAll(qstrDir + QStringLiteral("/ModuleKoPlayer.log"));
    const QRegularExpression header(QStringLiteral(
        R"(^\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] \[info\] .*\[ModuleKoPlayer\] )"
        R"(\[MainWindow\.cpp:321\] \[MainWindow::SlotStop\] request key:\[\n\{\n    "PlayUrl": "a\.mp4"\n\}\n\]\n$)"));
    QVERIFY2(header.match(qstrLog).hasMatch(), qPrintable(qstrLog));

    // Each level number has its own name; null parts of a record are tolerated.
    Print(0, "Levels", "t");
    Print(2, "Levels", "w");
    Print(3, "Levels", "e");
    Print(9, "Levels", "c");
    m_pfnPrint(3, nullptr, nullptr, 0, nullptr, nullptr);
    const QString qstrLevels = ReadAll(qstrDir + QStringLiteral("/Levels.log"));
    QVERIFY2(qstrLevels.contains(QStringLiteral("[trace]")) &&
                 qstrLevels.contains(QStringLiteral("[warning]")) &&
                 qstrLevels.contains(QStringLiteral("[error]")) &&
                 qstrLevels.contains(QStringLiteral("[critical]")),
             qPrintable(qstrLevels));
    QVERIFY(
        ReadAll(qstrDir + QStringLiteral("/Default.log")).contains(QStringLiteral("[?:0] [?]")));
}

void tst_KoLog::levelsFilterPerChannelAndForAll()
{
    const QString qstrDir = m_tmpDir.filePath(QStringLiteral("levels"));
    QVERIFY(m_pfnInit(qstrDir.toStdString(), 1));
    Print(0, "Quiet", "trace-dropped");
    // A channel whose records are all filtered gets no file at all.
    QVERIFY(!QFile::exists(qstrDir + QStringLiteral("/Quiet.log")));

    QVERIFY(m_pfnSetConfig("Strict", 3));
    Print(1, "Strict", "info-dropped");
    Print(3, "Strict", "error-kept");
    Print(1, "Other", "info-kept");

    QVERIFY(m_pfnSetConfigAll(0));
    Print(0, "Strict", "trace-kept");
    Print(0, "Quiet", "trace-kept-too");

    const QString qstrStrict = ReadAll(qstrDir + QStringLiteral("/Strict.log"));
    QVERIFY(!qstrStrict.contains(QStringLiteral("info-dropped")));
    QVERIFY(qstrStrict.contains(QStringLiteral("error-kept")));
    QVERIFY(qstrStrict.contains(QStringLiteral("trace-kept")));
    QVERIFY(ReadAll(qstrDir + QStringLiteral("/Other.log")).contains(QStringLiteral("info-kept")));
    const QString qstrQuiet = ReadAll(qstrDir + QStringLiteral("/Quiet.log"));
    QVERIFY(!qstrQuiet.contains(QStringLiteral("trace-dropped")));
    QVERIFY(qstrQuiet.contains(QStringLiteral("trace-kept-too")));
}

void tst_KoLog::channelNamesStayInsideTheFolder()
{
    const QString qstrRoot = m_tmpDir.filePath(QStringLiteral("escape"));
    const QString qstrDir = qstrRoot + QStringLiteral("/logs");
    QVERIFY(m_pfnInit(qstrDir.toStdString(), 0));
    Print(1, "../../evil", "contained");
    Print(1, "/etc/passwd", "contained");
    QCOMPARE(QDir(qstrRoot).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("logs")});
    const QStringList qlstLogs = QDir(qstrDir).entryList(QDir::Files);
    QCOMPARE(qlstLogs.size(), 2);
    for (const QString& qstrName : qlstLogs)
        QVERIFY(
            ReadAll(qstrDir + QLatin1Char('/') + qstrName).contains(QStringLiteral("contained")));
}

void tst_KoLog::concurrentRecordsAreAllWritten()
{
    const QString qstrDir = m_tmpDir.filePath(QStringLiteral("concurrent"));
    QVERIFY(m_pfnInit(qstrDir.toStdString(), 0));
    constexpr int kThreads = 8;
    constexpr int kRecords = 1000;
    std::vector<std::thread> vecThreads;
    for (int t = 0; t < kThreads; ++t) {
        vecThreads.emplace_back([this, t] {
            // Two channels per thread pair, so files are also created concurrently.
            const std::string strChannel = "Busy" + std::to_string(t % 2);
            for (int i = 0; i < kRecords; ++i)
                Print(1, strChannel.c_str(), "rec-" + std::to_string(t) + "-" + std::to_string(i));
        });
    }
    for (std::thread& thread : vecThreads)
        thread.join();

    const QString qstrAll = ReadAll(qstrDir + QStringLiteral("/Busy0.log")) +
                            ReadAll(qstrDir + QStringLiteral("/Busy1.log"));
    const QStringList qlstLines = qstrAll.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(qlstLines.size(), kThreads * kRecords);
    QSet<QString> setSeen;
    const QRegularExpression text(QStringLiteral(R"( (rec-\d+-\d+)$)"));
    for (const QString& qstrLine : qlstLines) {
        const QRegularExpressionMatch match = text.match(qstrLine);
        QVERIFY2(match.hasMatch(), qPrintable(qstrLine));  // no torn or interleaved record
        setSeen.insert(match.captured(1));
    }
    QCOMPARE(setSeen.size(), kThreads * kRecords);
}

void tst_KoLog::printLogRacingUnInitIsSafe()
{
    const std::string strDir = m_tmpDir.filePath(QStringLiteral("race")).toStdString();
    QVERIFY(m_pfnInit(strDir, 0));
    std::atomic<bool> blStop{false};
    std::vector<std::thread> vecThreads;
    for (int t = 0; t < 4; ++t) {
        vecThreads.emplace_back([&] {
            while (!blStop.load()) {
                Print(1, "Race", "while the service comes and goes");
                m_pfnSetConfig("Race", 0);
            }
        });
    }
    for (int i = 0; i < 200; ++i) {
        m_pfnUnInit();
        QVERIFY(m_pfnInit(strDir, 0));
    }
    const QString qstrLog = QString::fromStdString(strDir) + QStringLiteral("/Race.log");
    QTRY_VERIFY(ReadAll(qstrLog).count(QLatin1Char('\n')) >= 100);
    blStop = true;
    for (std::thread& thread : vecThreads)
        thread.join();
    // Every record that made it is whole: none was cut by a file closing under it.
    for (const QString& qstrLine : ReadAll(qstrLog).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        QVERIFY2(qstrLine.endsWith(QStringLiteral("] while the service comes and goes")),
                 qPrintable(qstrLine));
}

void tst_KoLog::initOnUnwritableFolderKeepsTheOldOne()
{
    const QString qstrDir = m_tmpDir.filePath(QStringLiteral("kept"));
    QVERIFY(m_pfnInit(qstrDir.toStdString(), 0));
    const QString qstrBlocker = m_tmpDir.filePath(QStringLiteral("a-file"));
    QFile blocker(qstrBlocker);
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();

    QVERIFY(!m_pfnInit(QString(qstrBlocker + QStringLiteral("/logs")).toStdString(), 0));
    QVERIFY(!m_pfnInit(std::string(), 0));
    Print(1, "Kept", "still here");
    QVERIFY(ReadAll(qstrDir + QStringLiteral("/Kept.log")).contains(QStringLiteral("still here")));
}

void tst_KoLog::callsAfterUnInitAreDropped()
{
    const QString qstrDir = m_tmpDir.filePath(QStringLiteral("after"));
    QVERIFY(m_pfnInit(qstrDir.toStdString(), 0));
    Print(1, "After", "before-uninit");
    m_pfnUnInit();
    m_pfnUnInit();  // twice is harmless
    Print(1, "After", "after-uninit");
    Print(1, "Fresh", "after-uninit");
    QVERIFY(!m_pfnSetConfigAll(0));
    const QString qstrLog = ReadAll(qstrDir + QStringLiteral("/After.log"));
    QVERIFY(qstrLog.contains(QStringLiteral("before-uninit")));
    QVERIFY(!qstrLog.contains(QStringLiteral("after-uninit")));
    QVERIFY(!QFile::exists(qstrDir + QStringLiteral("/Fresh.log")));
}

void tst_KoLog::filesRotatePastTheSizeLimit()
{
    CLS_LogService::Options options;
    options.m_sizeMaxFileBytes = 4096;
    options.m_sizeMaxFiles = 3;
    CLS_LogService service(options);
    const QString qstrDir = m_tmpDir.filePath(QStringLiteral("rotate"));
    QVERIFY(service.Init(qstrDir.toStdString(), 0));
    const std::string strPadding(100, 'p');
    for (int i = 0; i < 400; ++i) {
        const std::string strText = "n" + std::to_string(i) + " " + strPadding;
        service.PrintLog(1, "Roll", "f.cpp", 1, "f", &strText);
    }

    QDir dir(qstrDir);
    QCOMPARE(dir.entryList(QDir::Files, QDir::Name),
             (QStringList{QStringLiteral("Roll.1.log"), QStringLiteral("Roll.2.log"),
                          QStringLiteral("Roll.log")}));
    for (const QString& qstrName : dir.entryList(QDir::Files))
        QVERIFY(QFileInfo(dir.filePath(qstrName)).size() <= 4096);
    // The newest record is in the live file, older ones in the rotated files.
    QVERIFY(ReadAll(dir.filePath(QStringLiteral("Roll.log"))).contains(QStringLiteral("n399 ")));
    QVERIFY(!ReadAll(dir.filePath(QStringLiteral("Roll.2.log"))).contains(QStringLiteral("n399 ")));
    service.UnInit();
}

QTEST_GUILESS_MAIN(tst_KoLog)
#include "tst_KoLog.moc"
