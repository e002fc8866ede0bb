#include "CLS_HistroyFile.h"
#include "QuillTestSupport.h"
#include "WriteFaults.h"

#include <QDir>
#include <QtTest>

#include <optional>

namespace {

const QString kFile = QStringLiteral("HistroyInfo.json");

// The file as read: the outcome, then "path:pos" in display order.
QString ReadBack()
{
    QMap<QString, int> mapPos;
    QVector<QString> vecPath;
    const auto result = CLS_HistroyFile::Read(kFile, mapPos, vecPath);
    QStringList qlstEntries{QString::number(int(result))};
    for (const QString& qstrPath : vecPath)
        qlstEntries << qstrPath + ':' + QString::number(mapPos.value(qstrPath, -1));
    return qlstEntries.join(' ');
}

}  // namespace

class tst_HistroyFile : public QObject
{
    Q_OBJECT
private slots:
    void readsTolerantly_data()
    {
        QTest::addColumn<QByteArray>("content");  // empty: no file
        QTest::addColumn<QString>("read");        // 0 loaded, 1 unreadable, 2 no "History"
        QTest::newRow("positions: whole numbers only")
            << QByteArray(R"({"History": [{"path": "a", "pos": 12.9}, {"path": "b", "pos": 12.0},
                {"path": "c", "pos": "12"}, {"path": "d", "pos": 3e10}, {"path": "e", "x": 1}],
                "Other": 1})")
            << "0 a:0 b:12 c:0 d:0 e:0";
        QTest::newRow("repeated path: both kept, the later position")
            << QByteArray(R"({"History": [{"path": "a", "pos": 5}, {"path": "b", "pos": 7},
                {"path": "a", "pos": 9}]})")
            << "0 a:9 b:7 a:9";
        QTest::newRow("elements not objects")
            << QByteArray(R"({"History": [1, "a", {"pos": 4}]})") << "0 :4 :4 :4";
        QTest::newRow("History not an array")
            << QByteArray(R"({"History": {"path": "/x"}})") << "0";
        QTest::newRow("no History") << QByteArray(R"({"history": []})") << "2";
        QTest::newRow("invalid json") << QByteArray(R"({"History": [)") << "1";
        QTest::newRow("no file") << QByteArray() << "1";
    }

    void readsTolerantly()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, read);
        QuillTest::ScopedWorkDir workDir;
        if (!content.isEmpty()) QVERIFY(workDir.WriteFile(kFile, content));
        QCOMPARE(ReadBack(), read);
    }

    void writesTheStoreInDisplayOrder()
    {
        QuillTest::ScopedWorkDir workDir;
        QVERIFY(CLS_HistroyFile::Write(kFile, {{"D:\\v\\录像.sdv", 75}}, {"D:\\v\\录像.sdv"}));
        QCOMPARE(QuillTest::ReadFile(kFile), QStringLiteral(R"({
    "History": [
        {
            "path": "D:\\v\\录像.sdv",
            "pos": 75
        }
    ]
}
)").toUtf8());
        // A path without a position is left out; a repeated one is written each time.
        QVERIFY(CLS_HistroyFile::Write(kFile, {{"/v/b.mp4", 75}, {"/v/c.mp4", 0}},
                                       {"/v/b.mp4", "/v/x.mp4", "/v/c.mp4", "/v/b.mp4"}));
        QCOMPARE(ReadBack(), QStringLiteral("0 /v/b.mp4:75 /v/c.mp4:0 /v/b.mp4:75"));
        QVERIFY(CLS_HistroyFile::Write(kFile, {}, {}));
        QCOMPARE(ReadBack(), QStringLiteral("0"));
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
        QVERIFY(workDir.WriteFile(kFile, R"({"History": [{"path": "/v/a-longer-name.mp4",
                                             "pos": 5}]})"));
        if (fileReadOnly) QFile::setPermissions(kFile, QFile::ReadOwner);
        {
            std::optional<QuillTest::ScopedReadOnlyDir> readOnly;
            if (folderReadOnly) readOnly.emplace(workDir.Path());
            if (readOnly && !readOnly->IsReadOnly())
                QSKIP("this file system lets the test write into a read-only folder");
            std::optional<QuillTest::ScopedDiskFull> full;
            if (diskFull) full.emplace();
            QString qstrError;
            const bool blWritten =
                CLS_HistroyFile::Write(kFile, {{"/v/b.mp4", 8}}, {"/v/b.mp4"}, &qstrError);
            full.reset();
            QCOMPARE(blWritten, written);
            QCOMPARE(qstrError.isEmpty(), written);
        }
        QCOMPARE(ReadBack(), written ? "0 /v/b.mp4:8" : "0 /v/a-longer-name.mp4:5");
        // No temporary file left beside it.
        QCOMPARE(QDir().entryList(QDir::Files), QStringList{kFile});
    }

    void killedWriterLeavesAWholeFile()
    {
        QuillTest::ScopedWorkDir workDir;
        // Version i: i % 7 + 1 entries "/v/<i>/<k>" at position i, so a torn
        // file, a mix of two versions or an empty one all show.
        const auto version = [](int i) {
            QStringList qlstEntries{QStringLiteral("0")};
            for (int k = 0; k <= i % 7; ++k)
                qlstEntries << QStringLiteral("/v/%1/%2:%1").arg(i).arg(k);
            return qlstEntries.join(' ');
        };
        const auto write = [](int i) {
            QMap<QString, int> mapPos;
            QVector<QString> vecPath;
            for (int k = 0; k <= i % 7; ++k) {
                vecPath << QStringLiteral("/v/%1/%2").arg(i).arg(k);
                mapPos.insert(vecPath.back(), i);
            }
            CLS_HistroyFile::Write(kFile, mapPos, vecPath);
        };
        const auto check = [&]() -> QString {
            const QString qstrRead = ReadBack();
            const int i = qstrRead.section(':', 1, 1).section(' ', 0, 0).toInt();
            return qstrRead == version(i) ? QString() : qstrRead;
        };
        write(0);
        QCOMPARE(QuillTest::KillDuringWrites(write, check), QString());
    }
};

QTEST_GUILESS_MAIN(tst_HistroyFile)
#include "tst_HistroyFile.moc"
