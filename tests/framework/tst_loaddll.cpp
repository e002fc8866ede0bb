// The run-time loader: its console lines, its caching and the per-service
// function tables.
#include "KoServices.h"
#include "LoadDll.h"
#include "QuillTestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <iostream>
#include <sstream>

namespace {

// Captures what the loader writes to standard output and standard error.
class ConsoleCapture
{
public:
    ConsoleCapture()
        : m_pOut(std::cout.rdbuf(m_ossOut.rdbuf())), m_pErr(std::cerr.rdbuf(m_ossErr.rdbuf()))
    {}
    ~ConsoleCapture()
    {
        std::cout.rdbuf(m_pOut);
        std::cerr.rdbuf(m_pErr);
    }
    QStringList Out() const { return Lines(m_ossOut); }
    QStringList Err() const { return Lines(m_ossErr); }

private:
    static QStringList Lines(const std::ostringstream& _oss)
    {
        return QString::fromStdString(_oss.str()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    std::ostringstream m_ossOut;
    std::ostringstream m_ossErr;
    std::streambuf* m_pOut;
    std::streambuf* m_pErr;
};

}  // namespace

class TestLoadDll : public QObject
{
    Q_OBJECT
private slots:
    void missingLibraryIsTriedOnceAndReportedAtEveryUse()
    {
        ConsoleCapture capture;
        for (int i = 0; i < 3; ++i)
            QVERIFY(LoadDll("/nonexistent/quill/libMissing.so", {"Init", "PrintLog"}).empty());
        QCOMPARE(capture.Out(), QStringList{"load dll - /nonexistent/quill/libMissing.so"});
        // The reason stays with the path at every use, not only the first.
        const QRegularExpression reFail(
            "^load dll \\[/nonexistent/quill/libMissing.so\\] fail !!! .*libMissing.so: cannot "
            "open");
        QCOMPARE(capture.Err().filter(reFail).size(), 3);
        QCOMPARE(capture.Err().size(), 3);
    }

    void serviceTableFromDirectory_data()
    {
        // Rows share the process-wide KoTaskPool table and run in this order.
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("fromDirectory");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QStringList>("console");
        const QString qstrPath = QuillTest::BinDir() + QStringLiteral("/libKoTaskPool.so");
        QStringList qlstListed;
        for (const char* pName : {"AddTmpTask", "RemoveTmpTask", "AddLoopTask", "RemoveTask",
                                  "KillTask", "KillTaskAll", "UnInit"})
            qlstListed << QStringLiteral("load dll [%1: %2] sucess").arg(qstrPath, pName);
        // The first lookup loads "<dir>/libKoTaskPool.so" and fills the whole table.
        QTest::newRow("first name loads the list")
            << "AddTmpTask" << true << true << (QStringList{"load dll - " + qstrPath} + qlstListed);
        QTest::newRow("later name from the table")
            << "KillTaskAll" << true << true << QStringList();
        QTest::newRow("bare name, same table") << "RemoveTmpTask" << false << true << QStringList();
        // Not in the table, so the loader is asked again: its handle is cached,
        // its lines are not.
        QTest::newRow("name outside the list") << "NotInTheContract" << true << false << qlstListed;
    }

    void serviceTableFromDirectory()
    {
        QFETCH(QString, name);
        QFETCH(bool, fromDirectory);
        QFETCH(bool, found);
        QFETCH(QStringList, console);
        const std::string strDir =
            fromDirectory ? QuillTest::BinDir().toStdString() : std::string();
        ConsoleCapture capture;
        QCOMPARE(GetKoTaskPoolFunc(name.toStdString(), strDir) != nullptr, found);
        QCOMPARE(capture.Out(), console);
        QVERIFY(capture.Err().isEmpty());
    }

    void loadsThroughNonAsciiPath()
    {
        QTemporaryDir tmpDir;
        const QString qstrDir = tmpDir.filePath(QStringLiteral("видео-録画-é"));
        QVERIFY(QDir().mkpath(qstrDir));
        const QString qstrCopy = qstrDir + QStringLiteral("/libKoColorManage.so");
        QVERIFY(QFile::copy(QuillTest::LibraryPath(QStringLiteral("KoColorManage")), qstrCopy));

        ConsoleCapture capture;
        const auto mapFunctions = LoadDll(qstrCopy.toUtf8().toStdString(), {"GetNamedColor"});
        QCOMPARE(mapFunctions.size(), std::size_t(1));
        QVERIFY(mapFunctions.at("GetNamedColor") != nullptr);
        QVERIFY(capture.Err().isEmpty());
    }

    void concurrentCallersLoadOnce()
    {
        const std::string strPath =
            QuillTest::LibraryPath(QStringLiteral("KoAppManager")).toStdString();
        ConsoleCapture capture;
        QVector<QThread*> vecThreads;
        std::atomic<int> iFound{0};
        for (int i = 0; i < 8; ++i) {
            vecThreads << QThread::create([&]() {
                for (int j = 0; j < 50; ++j) {
                    if (LoadDll(strPath, {"GetAppSignals"}).at("GetAppSignals")) ++iFound;
                }
            });
            vecThreads.last()->start();
        }
        for (QThread* pThread : vecThreads) {
            QVERIFY(pThread->wait(30000));
            delete pThread;
        }
        QCOMPARE(iFound.load(), 400);
        QCOMPARE(
            capture.Out().count(QStringLiteral("load dll - ") + QString::fromStdString(strPath)),
            1);
    }
};

QTEST_GUILESS_MAIN(TestLoadDll)
#include "tst_loaddll.moc"
