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
    void everyKeyAnswersInBothSkins();
    void unknownNamesGiveEmpty();
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

void tst_KoColorManage::unknownNamesGiveEmpty()
{
    QCOMPARE(m_pfnGet("Common", "<NoSuchKey>", "dark"), std::string());
    QCOMPARE(m_pfnGet("NoSuchGroup", "<BgColor_Common>", "dark"), std::string());
    QCOMPARE(m_pfnGet("Common", "<BgColor_Common>", "no-such-skin"), std::string());
    // A skin name that would leave the skin tree is not a skin.
    QCOMPARE(m_pfnGet("Common", "<BgColor_Common>", "../skin/dark"), std::string());
    QCOMPARE(m_pfnGet("", "", "dark"), std::string());
}

void tst_KoColorManage::everyKeyAnswersInBothSkins()
{
    // The keys the player's widgets ask for, then every key either skin has:
    // whatever one skin answers, the other must answer too, as a valid colour.
    const QJsonObject dark = ReadPalette(QStringLiteral("dark"));
    const QJsonObject light = ReadPalette(QStringLiteral("light"));
    QCOMPARE(m_pfnGet("Common", "<BgColor_Common>", "dark"), std::string("#1e1f22"));
    QCOMPARE(m_pfnGet("Common", "<FontColor_Common>", "light"), std::string("#1f2329"));
    QCOMPARE(m_pfnGet("ModulePassengerFlowStatistic", "<FontColor_Pass>", "dark"),
             std::string("#3d8bfd"));
    QCOMPARE(dark.keys(), light.keys());
    for (const QString& qstrGroup : dark.keys()) {
        const QJsonObject darkGroup = dark.value(qstrGroup).toObject();
        QCOMPARE(darkGroup.keys(), light.value(qstrGroup).toObject().keys());
        for (const QString& qstrKey : darkGroup.keys()) {
            for (const auto& [pSkin, palette] :
                 {std::pair{"dark", dark}, std::pair{"light", light}}) {
                const QString qstrColour = QString::fromStdString(
                    m_pfnGet(qstrGroup.toStdString(), qstrKey.toStdString(), pSkin));
                QCOMPARE(qstrColour, palette.value(qstrGroup).toObject().value(qstrKey).toString());
                QVERIFY2(QColor(qstrColour).isValid(),
                         qPrintable(qstrGroup + QLatin1Char(' ') + qstrKey));
            }
        }
    }
}

void tst_KoColorManage::emptySkinFollowsTheSkinParameter()
{
    // Loaded by path first: the colour library then finds this very instance by
    // its bare name, even where a sanitizer's dlopen hides the library's RUNPATH.
    ServiceLibrary param(KoParamApi::kLibraryName);
    QVERIFY(param.Load());
    const auto pfnInit = param.Get<KoParamApi::InitFn>("Init");
    const auto pfnSet = param.Get<KoParamApi::SetParamFn>("SetParam");
    const auto pfnUnInit = param.Get<KoParamApi::UnInitFn>("UnInit");
    QVERIFY(pfnInit && pfnSet && pfnUnInit);

    // Without parameters the active skin is the dark one.
    QCOMPARE(m_pfnGet("Common", "<BgColor_Common>", ""), std::string("#1e1f22"));
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
