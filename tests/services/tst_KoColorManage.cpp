#include "CLS_PaletteStore.h"
#include "KoColorManageApi.h"
#include "KoParamApi.h"
#include "ServiceLibrary.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

QJsonObject ReadPalette(const QString& _qstrSkin)
{
    QFile file(QuillTest::BinPath(QStringLiteral("resource/skin/%1/palette.json").arg(_qstrSkin)));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

}  // namespace

class tst_KoColorManage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void namedColoursOfEachSkin_data();
    void namedColoursOfEachSkin();
    void unknownNamesGiveEmpty();
    void skinsOfferTheSameValidColours();
    void emptySkinFollowsTheSkinParameter();
    void paletteIsReadOncePerFile();

private:
    QuillTest::ScopedWorkDir m_workDir;
    ServiceLibrary m_library{KoColorManageApi::kLibraryName};
    KoColorManageApi::GetNamedColorFn m_pfnGet = nullptr;
};

void tst_KoColorManage::initTestCase()
{
    // The library reads palettes relative to the working folder, like the player.
    QVERIFY(m_workDir.LinkFromBin(QStringLiteral("resource")));
    QVERIFY(m_library.Load());
    m_pfnGet = m_library.Get<KoColorManageApi::GetNamedColorFn>("GetNamedColor");
    QVERIFY(m_pfnGet);
}

void tst_KoColorManage::namedColoursOfEachSkin_data()
{
    QTest::addColumn<QString>("skin");
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("colour");
    const QString qstrCommon = QStringLiteral("Common");
    const QString qstrPass = QStringLiteral("ModulePassengerFlowStatistic");
    QTest::newRow("dark background") << "dark" << qstrCommon << "<BgColor_Common>"
                                     << "#1e1f22";
    QTest::newRow("dark font") << "dark" << qstrCommon << "<FontColor_Common>"
                               << "#e6e6e6";
    QTest::newRow("dark highlight") << "dark" << qstrPass << "<FontColor_Pass>"
                                    << "#3d8bfd";
    QTest::newRow("light background") << "light" << qstrCommon << "<BgColor_Common>"
                                      << "#f5f6f8";
    QTest::newRow("light font") << "light" << qstrCommon << "<FontColor_Common>"
                                << "#1f2329";
    QTest::newRow("light highlight") << "light" << qstrPass << "<FontColor_Pass>"
                                     << "#1a73e8";
}

void tst_KoColorManage::namedColoursOfEachSkin()
{
    QFETCH(QString, skin);
    QFETCH(QString, group);
    QFETCH(QString, key);
    QFETCH(QString, colour);
    QCOMPARE(QString::fromStdString(
                 m_pfnGet(group.toStdString(), key.toStdString(), skin.toStdString())),
             colour);
}

void tst_KoColorManage::unknownNamesGiveEmpty()
{
    QCOMPARE(m_pfnGet("Common", "<NoSuchKey>", "dark"), std::string());
    QCOMPARE(m_pfnGet("NoSuchGroup", "<BgColor_Common>", "dark"), std::string());
    QCOMPARE(m_pfnGet("Common", "<BgColor_Common>", "no-such-skin"), std::string());
    // A skin name that would leave the skin tree is not a skin.
    QCOMPARE(m_pfnGet("Common", "<BgColor_Common>", "../skin/dark"), std::string());
    QCOMPARE(m_pfnGet("", "", "dark"), std::string());
}

void tst_KoColorManage::skinsOfferTheSameValidColours()
{
    // Whatever a widget asks of one skin, the other must answer too.
    const QJsonObject dark = ReadPalette(QStringLiteral("dark"));
    const QJsonObject light = ReadPalette(QStringLiteral("light"));
    QVERIFY(!dark.isEmpty());
    QCOMPARE(dark.keys(), light.keys());
    for (const QString& qstrGroup : dark.keys()) {
        const QJsonObject darkGroup = dark.value(qstrGroup).toObject();
        const QJsonObject lightGroup = light.value(qstrGroup).toObject();
        QCOMPARE(darkGroup.keys(), lightGroup.keys());
        for (const QString& qstrKey : darkGroup.keys()) {
            for (const char* pSkin : {"dark", "light"}) {
                const std::string strColour =
                    m_pfnGet(qstrGroup.toStdString(), qstrKey.toStdString(), pSkin);
                QVERIFY2(QColor(QString::fromStdString(strColour)).isValid(),
                         qPrintable(qstrGroup + QLatin1Char(' ') + qstrKey));
            }
        }
    }
}

void tst_KoColorManage::emptySkinFollowsTheSkinParameter()
{
    // Without parameters the active skin is the dark one.
    QCOMPARE(m_pfnGet("Common", "<BgColor_Common>", ""), std::string("#1e1f22"));

    ServiceLibrary param(KoParamApi::kLibraryName);
    QVERIFY(param.Load());
    const auto pfnInit = param.Get<KoParamApi::InitFn>("Init");
    const auto pfnSet = param.Get<KoParamApi::SetParamFn>("SetParam");
    const auto pfnUnInit = param.Get<KoParamApi::UnInitFn>("UnInit");
    QVERIFY(pfnInit && pfnSet && pfnUnInit);
    QVERIFY(pfnInit(m_workDir.FilePath(QStringLiteral("settings.json")).toStdString()));
    QVERIFY(pfnSet("SystemConfig", "skin", "light"));
    QCOMPARE(m_pfnGet("Common", "<BgColor_Common>", ""), std::string("#f5f6f8"));
    QVERIFY(pfnSet("SystemConfig", "skin", ""));
    QCOMPARE(m_pfnGet("Common", "<BgColor_Common>", ""), std::string("#1e1f22"));
    pfnUnInit();
}

void tst_KoColorManage::paletteIsReadOncePerFile()
{
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.WriteFile(QStringLiteral("resource/skin/dark/palette.json"),
                              R"({ "Common": { "<BgColor_Common>": "#010203", "<Bad>": 5 } })"));
    QVERIFY(workDir.WriteFile(QStringLiteral("resource/skin/broken/palette.json"), "{ not json"));
    QString qstrAsked;
    CLS_PaletteStore store([&] {
        qstrAsked = QStringLiteral("asked");
        return std::string();
    });
    QCOMPARE(store.GetNamedColor("Common", "<BgColor_Common>", ""), std::string("#010203"));
    QCOMPARE(qstrAsked, QStringLiteral("asked"));
    QCOMPARE(store.GetNamedColor("Common", "<Bad>", "dark"), std::string());
    QCOMPARE(store.GetNamedColor("Common", "<BgColor_Common>", "broken"), std::string());

    QVERIFY(workDir.WriteFile(QStringLiteral("resource/skin/dark/palette.json"),
                              R"({ "Common": { "<BgColor_Common>": "#ffffff" } })"));
    QCOMPARE(store.GetNamedColor("Common", "<BgColor_Common>", "dark"), std::string("#010203"));
}

QTEST_GUILESS_MAIN(tst_KoColorManage)
#include "tst_KoColorManage.moc"
