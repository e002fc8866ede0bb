#include "CLS_ParamStore.h"
#include "QuillTestSupport.h"
#include "WriteFaults.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <optional>

using QuillTest::ReadFile;

class tst_KoParam : public QObject
{
    Q_OBJECT

private slots:
    void valuesPersistAcrossUnInitAndInit()
    {
        // A missing file, even in a missing folder, starts empty.
        const std::string strPath =
            m_tmpDir.filePath(QStringLiteral("user/settings.json")).toStdString();
        CLS_ParamStore store;
        QVERIFY(!store.SetParam("SystemConfig", "skin", "light"));
        QVERIFY(store.Init(strPath));
        QCOMPARE(store.GetParam("SystemConfig", "skin", "dark"), "dark");
        QVERIFY(store.SetParam("ModuleKoPlayer", "Title", "Überwachung – 監視"));
        QVERIFY(store.SetParam("ModuleKoPlayer", "OpenSound", "1"));
        QVERIFY(store.DeleteParam("ModuleKoPlayer", "OpenSound"));

        store.UnInit();
        QCOMPARE(store.GetParam("ModuleKoPlayer", "Title", "none"), "none");
        QVERIFY(store.Init(strPath));
        QCOMPARE(store.GetParam("ModuleKoPlayer", "Title", ""), "Überwachung – 監視");
        QCOMPARE(store.GetParam("ModuleKoPlayer", "OpenSound", "gone"), "gone");
    }

    void unreadableFileIsKeptAsBackup_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("truncated") << QByteArray("{ \"SystemConfig\": { \"skin\": \"li");
        QTest::newRow("array at top") << QByteArray("[ \"SystemConfig\" ]");
    }

    void unreadableFileIsKeptAsBackup()
    {
        QFETCH(QByteArray, content);
        const QDir dir = RowDir();
        const QString qstrPath = dir.filePath(QStringLiteral("settings.json"));
        CLS_ParamStore store;
        // A second broken file in the same second gets a backup of its own.
        for (int iRound = 1; iRound <= 2; ++iRound) {
            QVERIFY(QuillTest::WriteFile(qstrPath, content));
            QVERIFY(store.Init(qstrPath.toStdString()));
            QCOMPARE(store.GetParam("SystemConfig", "skin", "dark"), std::string("dark"));
            // New settings go to a fresh file and leave the backups alone.
            QVERIFY(store.SetParam("SystemConfig", "skin", "light"));
            QVERIFY(QJsonDocument::fromJson(ReadFile(qstrPath)).isObject());
            const QStringList qlstBackups = dir.entryList({"settings.json.corrupt-*"});
            QCOMPARE(qlstBackups.size(), iRound);
            for (const QString& qstrName : qlstBackups)
                QCOMPARE(ReadFile(dir.filePath(qstrName)), content);
            store.UnInit();
        }
    }

    void failedWriteKeepsTheOldFile_data()
    {
        QTest::addColumn<bool>("folderReadOnly");
        QTest::newRow("read-only folder") << true;
        QTest::newRow("disk full mid-write") << false;
    }

    void failedWriteKeepsTheOldFile()
    {
        QFETCH(bool, folderReadOnly);
        const QDir dir = RowDir();
        const QString qstrPath = dir.filePath(QStringLiteral("settings.json"));
        CLS_ParamStore store;
        QVERIFY(store.Init(qstrPath.toStdString()));
        QVERIFY(store.SetParam("SystemConfig", "skin", "light"));
        const QByteArray qbaOld = ReadFile(qstrPath);
        {
            std::optional<QuillTest::ScopedReadOnlyDir> readOnly;
            std::optional<QuillTest::ScopedDiskFull> full;
            if (folderReadOnly)
                readOnly.emplace(dir.path());
            else
                full.emplace();
            if (readOnly && !readOnly->IsReadOnly())
                QSKIP("this file system lets the test write into a read-only folder");
            QVERIFY(
                !store.SetParam("SystemConfig", "skin", "a value long enough to fill a buffer"));
        }
        QCOMPARE(ReadFile(qstrPath), qbaOld);
        QCOMPARE(dir.entryList(QDir::Files), QStringList{"settings.json"});
        // The change was kept and reaches the disk once it can.
        store.UnInit();
        QVERIFY(ReadFile(qstrPath).contains("a value long enough"));
    }

    void killedWriterLeavesAWholeFile()
    {
        const QString qstrPath = m_tmpDir.filePath(QStringLiteral("killed.json"));
        // Version i: a value of i % 97 * 40 characters that ends in i.
        const auto value = [](int i) {
            return std::string(size_t(i % 97) * 40, 'x') + std::to_string(i);
        };
        CLS_ParamStore store;
        QVERIFY(store.Init(qstrPath.toStdString()));
        QVERIFY(store.SetParam("S", "v", value(0)));
        const auto write = [&](int i) { store.SetParam("S", "v", value(i)); };
        const auto check = [&]() -> QString {
            const QJsonObject jsonRoot = QJsonDocument::fromJson(ReadFile(qstrPath)).object();
            const QString qstrValue = jsonRoot["S"]["v"].toString();
            const int i = qstrValue.mid(qstrValue.lastIndexOf('x') + 1).toInt();
            if (qstrValue.toStdString() != value(i)) return "torn or empty: " + qstrValue.right(20);
            return {};
        };
        QCOMPARE(QuillTest::KillDuringWrites(write, check), QString());
    }

private:
    // A fresh folder for the current data row.
    QDir RowDir() const
    {
        const QDir dir(m_tmpDir.filePath(QTest::currentDataTag()));
        dir.mkpath(QStringLiteral("."));
        return dir;
    }

    QTemporaryDir m_tmpDir;
};

QTEST_GUILESS_MAIN(tst_KoParam)
#include "tst_KoParam.moc"
