// The run-time loader: its console lines, its caching and the per-service
// function tables.
#include "KoServices.h"
#include "LoadDll.h"
#include "QuillTestSupport.h"

#include <QtTest>

#include <iostream>
#include <sstream>

namespace {

// While it lives, what the loader writes to standard output and error is kept.
struct ConsoleCapture
{
    std::ostringstream ossOut, ossErr;
    std::streambuf* pOut = std::cout.rdbuf(ossOut.rdbuf());
    std::streambuf* pErr = std::cerr.rdbuf(ossErr.rdbuf());
    ~ConsoleCapture()
    {
        std::cout.rdbuf(pOut);
        std::cerr.rdbuf(pErr);
    }
};

QStringList Lines(const std::ostringstream& _oss)
{
    return QString::fromStdString(_oss.str()).split('\n', Qt::SkipEmptyParts);
}

}  // namespace

class TestLoadDll : public QObject
{
    Q_OBJECT
private slots:
    void missingLibraryIsTriedOnceAndReportedAtEveryUse()
    {
        ConsoleCapture console;
        for (int i = 0; i < 3; ++i)
            QVERIFY(LoadDll("/nonexistent/quill/libMissing.so", {"Init", "PrintLog"}).empty());
        QCOMPARE(Lines(console.ossOut), QStringList{"load dll - /nonexistent/quill/libMissing.so"});
        // The reason stays with the path at every use, not only the first.
        const QRegularExpression reFail(
            "^load dll \\[/nonexistent/quill/libMissing.so\\] fail !!! .*libMissing.so: cannot "
            "open");
        QCOMPARE(Lines(console.ossErr).filter(reFail).size(), 3);
        QCOMPARE(Lines(console.ossErr).size(), 3);
    }

    void serviceTableFromDirectory_data()
    {
        // Rows share the process-wide KoTaskPool table and run in this order.
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("fromDirectory");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QStringList>("expected");
        const QString qstrPath = QuillTest::BinPath(QStringLiteral("libKoTaskPool.so"));
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
        QFETCH(QStringList, expected);
        const std::string strDir =
            fromDirectory ? QuillTest::BinDir().toStdString() : std::string();
        ConsoleCapture console;
        QCOMPARE(GetKoTaskPoolFunc(name.toStdString(), strDir) != nullptr, found);
        QCOMPARE(Lines(console.ossOut), expected);
        QVERIFY(console.ossErr.str().empty());
    }
};

QTEST_GUILESS_MAIN(TestLoadDll)
#include "tst_loaddll.moc"
