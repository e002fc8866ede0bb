#include "CLS_ParamStore.h"
#include "KoParamApi.h"
#include "ServiceLibrary.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>
#include <vector>

namespace {

QByteArray ReadAll(const QString& _qstrPath)
{
    QFile file(_qstrPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool Write(const QString& _qstrPath, const QByteArray& _qbaData)
{
    QFile file(_qstrPath);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(_qbaData) == _qbaData.size();
}

QStringList Backups(const QString& _qstrPath)
{
    const QFileInfo info(_qstrPath);
    return info.dir().entryList({info.fileName() + QStringLiteral(".corrupt-*")}, QDir::Files,
                                QDir::Name);
}

}  // namespace

class tst_KoParam : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void valuesPersistAcrossUnInitAndInit();
    void unreadableFileIsKeptAsBackup_data();
    void unreadableFileIsKeptAsBackup();
    void handEditedValuesReadAsText();
    void concurrentSetAndGet();

private:
    ServiceLibrary m_library{KoParamApi::kLibraryName};
    QTemporaryDir m_tmpDir;
};

void tst_KoParam::initTestCase()
{
    QVERIFY(m_tmpDir.isValid());
    QVERIFY(m_library.Load());
}

void tst_KoParam::valuesPersistAcrossUnInitAndInit()
{
    const auto pfnInit = m_library.Get<KoParamApi::InitFn>("Init");
    const auto pfnIsInit = m_library.Get<KoParamApi::IsInitFn>("IsInit");
    const auto pfnSet = m_library.Get<KoParamApi::SetParamFn>("SetParam");
    const auto pfnGet = m_library.Get<KoParamApi::GetParamFn>("GetParam");
    const auto pfnDelete = m_library.Get<KoParamApi::DeleteParamFn>("DeleteParam");
    const auto pfnUnInit = m_library.Get<KoParamApi::UnInitFn>("UnInit");
    QVERIFY(pfnInit && pfnIsInit && pfnSet && pfnGet && pfnDelete && pfnUnInit);

    // Before Init every call answers its neutral value.
    QVERIFY(!pfnIsInit());
    QCOMPARE(pfnGet("SystemConfig", "skin", "dark"), std::string("dark"));
    QVERIFY(!pfnSet("SystemConfig", "skin", "light"));
    QVERIFY(!pfnInit(""));

    // A missing file, even in a missing folder, starts empty.
    const std::string strPath =
        m_tmpDir.filePath(QStringLiteral("user/settings.json")).toStdString();
    QVERIFY(pfnInit(strPath));
    QVERIFY(pfnIsInit());
    QCOMPARE(pfnGet("SystemConfig", "skin", "dark"), std::string("dark"));
    QVERIFY(pfnSet("SystemConfig", "skin", "light"));
    QVERIFY(pfnSet("ModuleKoPlayer", "SoundSet", "50"));
    QVERIFY(pfnSet("ModuleKoPlayer", "OpenSound", "1"));
    QVERIFY(pfnSet("ModuleKoPlayer", "Title", "Überwachung – 監視"));
    QVERIFY(pfnSet("ModuleKoPlayer", "Empty", ""));
    QVERIFY(pfnDelete("ModuleKoPlayer", "OpenSound"));
    QVERIFY(!pfnDelete("ModuleKoPlayer", "OpenSound"));
    QVERIFY(!pfnDelete("NoSection", "key"));

    // Written at once: another reader sees the file before UnInit.
    const QJsonObject root =
        QJsonDocument::fromJson(ReadAll(QString::fromStdString(strPath))).object();
    QCOMPARE(root.value(QStringLiteral("SystemConfig"))
                 .toObject()
                 .value(QStringLiteral("skin"))
                 .toString(),
             QStringLiteral("light"));

    pfnUnInit();
    QVERIFY(!pfnIsInit());
    QCOMPARE(pfnGet("SystemConfig", "skin", "dark"), std::string("dark"));

    QVERIFY(pfnInit(strPath));
    QCOMPARE(pfnGet("SystemConfig", "skin", "dark"), std::string("light"));
    QCOMPARE(pfnGet("ModuleKoPlayer", "SoundSet", "0"), std::string("50"));
    QCOMPARE(pfnGet("ModuleKoPlayer", "Title", ""), std::string("Überwachung – 監視"));
    QCOMPARE(pfnGet("ModuleKoPlayer", "Empty", "x"), std::string());
    QCOMPARE(pfnGet("ModuleKoPlayer", "OpenSound", "gone"), std::string("gone"));
    pfnUnInit();
}

void tst_KoParam::unreadableFileIsKeptAsBackup_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("garbage") << QByteArray("\x01\x02 not json at all");
    QTest::newRow("truncated") << QByteArray("{ \"SystemConfig\": { \"skin\": \"li");
    QTest::newRow("array at top") << QByteArray("[ \"SystemConfig\" ]");
}

void tst_KoParam::unreadableFileIsKeptAsBackup()
{
    QFETCH(QByteArray, content);
    const QString qstrPath =
        m_tmpDir.filePath(QStringLiteral("corrupt/%1.json").arg(QTest::currentDataTag()));
    QDir().mkpath(QFileInfo(qstrPath).absolutePath());
    QVERIFY(Write(qstrPath, content));

    CLS_ParamStore store;
    QVERIFY(store.Init(qstrPath.toStdString()));
    QCOMPARE(store.GetParam("SystemConfig", "skin", "dark"), std::string("dark"));
    QStringList qlstBackups = Backups(qstrPath);
    QCOMPARE(qlstBackups.size(), 1);
    const QString qstrBackup = QFileInfo(qstrPath).dir().filePath(qlstBackups.first());
    QCOMPARE(ReadAll(qstrBackup), content);

    // New settings go to a fresh file and leave the backup alone.
    QVERIFY(store.SetParam("SystemConfig", "skin", "light"));
    QCOMPARE(ReadAll(qstrBackup), content);
    QVERIFY(QJsonDocument::fromJson(ReadAll(qstrPath)).isObject());
    store.UnInit();

    // A second broken file in the same second gets its own backup.
    QVERIFY(Write(qstrPath, content));
    QVERIFY(store.Init(qstrPath.toStdString()));
    qlstBackups = Backups(qstrPath);
    QCOMPARE(qlstBackups.size(), 2);
    for (const QString& qstrName : qlstBackups)
        QCOMPARE(ReadAll(QFileInfo(qstrPath).dir().filePath(qstrName)), content);
}

void tst_KoParam::handEditedValuesReadAsText()
{
    const QString qstrPath = m_tmpDir.filePath(QStringLiteral("edited.json"));
    QVERIFY(Write(qstrPath, QByteArray(R"({ "S": { "int": 5, "real": 1.5, "on": true,
        "null": null, "list": [1, 2] }, "NotASection": 3 })")));
    CLS_ParamStore store;
    QVERIFY(store.Init(qstrPath.toStdString()));
    QVERIFY(Backups(qstrPath).isEmpty());
    QCOMPARE(store.GetParam("S", "int", ""), std::string("5"));
    QCOMPARE(store.GetParam("S", "real", ""), std::string("1.5"));
    QCOMPARE(store.GetParam("S", "on", ""), std::string("1"));
    QCOMPARE(store.GetParam("NotASection", "x", "d"), std::string("d"));

    // Changing one value keeps the others as they were written.
    QVERIFY(store.SetParam("S", "int", "6"));
    const QJsonObject section =
        QJsonDocument::fromJson(ReadAll(qstrPath)).object().value(QStringLiteral("S")).toObject();
    QCOMPARE(section.value(QStringLiteral("int")).toString(), QStringLiteral("6"));
    QCOMPARE(section.value(QStringLiteral("real")).toDouble(), 1.5);
    QCOMPARE(section.value(QStringLiteral("on")).toBool(), true);
}

void tst_KoParam::concurrentSetAndGet()
{
    const QString qstrPath = m_tmpDir.filePath(QStringLiteral("concurrent.json"));
    constexpr int kThreads = 8;
    constexpr int kKeys = 60;
    {
        CLS_ParamStore store;
        QVERIFY(store.Init(qstrPath.toStdString()));
        std::vector<std::thread> vecThreads;
        std::atomic<int> iMismatches{0};
        for (int t = 0; t < kThreads; ++t) {
            vecThreads.emplace_back([&store, &iMismatches, t] {
                const std::string strSection = "Section" + std::to_string(t % 3);
                for (int k = 0; k < kKeys; ++k) {
                    const std::string strKey = "k" + std::to_string(t) + "_" + std::to_string(k);
                    const std::string strValue = "v" + std::to_string(k * t);
                    store.SetParam(strSection, strKey, strValue);
                    if (store.GetParam(strSection, strKey, "") != strValue) ++iMismatches;
                    store.GetParam("Section0", "k0_0", "");
                }
            });
        }
        for (std::thread& thread : vecThreads)
            thread.join();
        QCOMPARE(iMismatches.load(), 0);
        store.UnInit();
    }
    CLS_ParamStore reread;
    QVERIFY(reread.Init(qstrPath.toStdString()));
    for (int t = 0; t < kThreads; ++t) {
        for (int k = 0; k < kKeys; ++k) {
            QCOMPARE(reread.GetParam("Section" + std::to_string(t % 3),
                                     "k" + std::to_string(t) + "_" + std::to_string(k), ""),
                     "v" + std::to_string(k * t));
        }
    }
}

QTEST_GUILESS_MAIN(tst_KoParam)
#include "tst_KoParam.moc"
