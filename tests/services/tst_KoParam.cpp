#include "CLS_ParamStore.h"
#include "KoParamApi.h"
#include "KoServices.h"
#include "QuillTestSupport.h"
#include "ServiceFixture.h"
#include "WriteFaults.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <optional>
#include <thread>
#include <vector>

using QuillTest::ReadFile;
using QuillTest::WriteFile;

class tst_KoParam : public QObject
{
    Q_OBJECT

private slots:
    void valuesPersistAcrossUnInitAndInit()
    {
        // Started and stopped by hand; values go through the suite's own wrappers.
        using QuillTest::Service;
        const auto pfnInit = QuillTest::ServiceFunction<KoParamApi::InitFn>(Service::Param, "Init");
        const auto pfnUnInit =
            QuillTest::ServiceFunction<KoParamApi::UnInitFn>(Service::Param, "UnInit");
        QVERIFY(m_tmpDir.isValid() && pfnInit && pfnUnInit);
        QVERIFY(!KoService::SetParam("SystemConfig", "skin", "light"));

        // A missing file, even in a missing folder, starts empty.
        const QString qstrPath = m_tmpDir.filePath(QStringLiteral("user/settings.json"));
        QVERIFY(pfnInit(qstrPath.toStdString()));
        QCOMPARE(KoService::GetParam("SystemConfig", "skin", "dark"), "dark");
        QVERIFY(KoService::SetParam("SystemConfig", "skin", "light"));
        QVERIFY(KoService::SetParam("ModuleKoPlayer", "Title", "Überwachung – 監視"));
        QVERIFY(KoService::SetParam("ModuleKoPlayer", "OpenSound", "1"));
        QVERIFY(KoService::DeleteParam("ModuleKoPlayer", "OpenSound"));
        QVERIFY(ReadFile(qstrPath).contains("light"));  // written at once, not only at UnInit

        pfnUnInit();
        QCOMPARE(KoService::GetParam("SystemConfig", "skin", "dark"), "dark");
        QVERIFY(pfnInit(qstrPath.toStdString()));
        QCOMPARE(KoService::GetParam("SystemConfig", "skin", "dark"), "light");
        QCOMPARE(KoService::GetParam("ModuleKoPlayer", "Title", ""), "Überwachung – 監視");
        QCOMPARE(KoService::GetParam("ModuleKoPlayer", "OpenSound", "gone"), "gone");
        pfnUnInit();
    }

    void unreadableFileIsKeptAsBackup_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("garbage") << QByteArray("\x01\x02 not json at all");
        QTest::newRow("truncated") << QByteArray("{ \"SystemConfig\": { \"skin\": \"li");
        QTest::newRow("array at top") << QByteArray("[ \"SystemConfig\" ]");
    }

    void unreadableFileIsKeptAsBackup()
    {
        QFETCH(QByteArray, content);
        const QDir dir(m_tmpDir.filePath(QTest::currentDataTag()));
        QVERIFY(dir.mkpath(QStringLiteral(".")));
        const QString qstrPath = dir.filePath(QStringLiteral("settings.json"));
        CLS_ParamStore store;
        // A second broken file in the same second gets a backup of its own.
        for (int iRound = 1; iRound <= 2; ++iRound) {
            QVERIFY(WriteFile(qstrPath, content));
            QVERIFY(store.Init(qstrPath.toStdString()));
            QCOMPARE(store.GetParam("SystemConfig", "skin", "dark"), std::string("dark"));
            // New settings go to a fresh file and leave the backups alone.
            QVERIFY(store.SetParam("SystemConfig", "skin", "light"));
            QVERIFY(QJsonDocument::fromJson(ReadFile(qstrPath)).isObject());
            const QStringList qlstBackups =
                dir.entryList({QStringLiteral("settings.json.corrupt-*")});
            QCOMPARE(qlstBackups.size(), iRound);
            for (const QString& qstrName : qlstBackups)
                QCOMPARE(ReadFile(dir.filePath(qstrName)), content);
            store.UnInit();
        }
    }

    void concurrentSetAndGet()
    {
        const std::string strPath =
            m_tmpDir.filePath(QStringLiteral("concurrent.json")).toStdString();
        constexpr int kThreads = 8, kKeys = 60;
        const auto section = [](int t) { return "Section" + std::to_string(t % 3); };
        const auto key = [](int t, int k) { return std::to_string(t) + "_" + std::to_string(k); };
        CLS_ParamStore store;
        QVERIFY(store.Init(strPath));
        std::atomic<int> iMismatches{0};
        std::vector<std::thread> vecThreads;
        for (int t = 0; t < kThreads; ++t) {
            vecThreads.emplace_back([&, t] {
                for (int k = 0; k < kKeys; ++k) {
                    store.SetParam(section(t), key(t, k), key(k, t));
                    if (store.GetParam(section(t), key(t, k), "") != key(k, t)) ++iMismatches;
                }
            });
        }
        for (std::thread& thread : vecThreads)
            thread.join();
        QCOMPARE(iMismatches.load(), 0);

        // Every value reached the file.
        store.UnInit();
        QVERIFY(store.Init(strPath));
        for (int t = 0; t < kThreads; ++t) {
            for (int k = 0; k < kKeys; ++k)
                QCOMPARE(store.GetParam(section(t), key(t, k), ""), key(k, t));
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
        const QDir dir(m_tmpDir.filePath(QTest::currentDataTag()));
        QVERIFY(dir.mkpath(QStringLiteral(".")));
        const QString qstrPath = dir.filePath(QStringLiteral("settings.json"));
        CLS_ParamStore store;
        QVERIFY(store.Init(qstrPath.toStdString()));
        QVERIFY(store.SetParam("SystemConfig", "skin", "light"));
        const QByteArray qbaOld = ReadFile(qstrPath);
        {
            std::optional<QuillTest::ScopedReadOnlyDir> readOnly;
            std::optional<QuillTest::ScopedDiskFull> full;
            if (folderReadOnly) readOnly.emplace(dir.path());
            else full.emplace();
            if (readOnly && !readOnly->IsReadOnly())
                QSKIP("this file system lets the test write into a read-only folder");
            QVERIFY(!store.SetParam("SystemConfig", "skin", "a value long enough to fill a buffer"));
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
    QTemporaryDir m_tmpDir;
};

QTEST_GUILESS_MAIN(tst_KoParam)
#include "tst_KoParam.moc"
