#include "KoColorManageApi.h"
#include "KoParamApi.h"
#include "ServiceLibrary.h"

#include <QColor>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

class tst_KoColorManage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The library reads palettes relative to the working folder, like the player.
        QVERIFY(m_workDir.LinkFromBin(QStringLiteral("resource")) && m_library.Load());
        m_pfnGet = m_library.Get<KoColorManageApi::GetNamedColorFn>("GetNamedColor");
        QVERIFY(m_pfnGet);
    }

    void namedColors()
    {
        QCOMPARE(Get("Common", "<BgColor_Common>", "dark"), "#1e1f22");
        QCOMPARE(Get("Common", "<FontColor_Common>", "light"), "#1f2329");
        QCOMPARE(Get("ModulePassengerFlowStatistic", "<FontColor_Pass>", "dark"), "#3d8bfd");
        // Unknown keys, groups and skins, and skins that would leave the skin tree.
        QCOMPARE(Get("Common", "<NoSuchKey>", "dark"), "");
        QCOMPARE(Get("Common", "<BgColor_Common>", "no-such-skin"), "");
        QCOMPARE(Get("Common", "<BgColor_Common>", "../skin/dark"), "");
    }

    void bothSkinsHoldTheSameValidKeys()
    {
        const auto palette = [](const QString& _qstrSkin) {
            QFile file(QuillTest::BinPath("resource/skin/" + _qstrSkin + "/palette.json"));
            return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                                  : QJsonObject();
        };
        const QJsonObject dark = palette("dark"), light = palette("light");
        QVERIFY(!dark.isEmpty());
        QCOMPARE(dark.keys(), light.keys());
        for (const QString& qstrGroup : dark.keys()) {
            const QStringList qlstKeys = dark.value(qstrGroup).toObject().keys();
            QCOMPARE(qlstKeys, light.value(qstrGroup).toObject().keys());
            for (const QString& qstrKey : qlstKeys) {
                for (const QString& qstrSkin : {QStringLiteral("dark"), QStringLiteral("light")})
                    QVERIFY2(QColor(Get(qstrGroup, qstrKey, qstrSkin)).isValid(),
                             qPrintable(qstrGroup + ' ' + qstrKey + ' ' + qstrSkin));
            }
        }
    }

    void emptySkinFollowsTheSkinParameter()
    {
        // Loaded by path first: the colour library then finds this very instance by
        // its bare name, even where a sanitizer's dlopen hides the library's RUNPATH.
        ServiceLibrary param(KoParamApi::kLibraryName);
        QVERIFY(param.Load());
        const auto pfnInit = param.Get<KoParamApi::InitFn>("Init");
        const auto pfnSet = param.Get<KoParamApi::SetParamFn>("SetParam");
        QVERIFY(pfnInit && pfnSet);
        QCOMPARE(Get("Common", "<BgColor_Common>", ""), "#1e1f22");  // dark without parameters
        QVERIFY(pfnInit(m_workDir.FilePath(QStringLiteral("settings.json")).toStdString()));
        QVERIFY(pfnSet("SystemConfig", "skin", "light"));
        QCOMPARE(Get("Common", "<BgColor_Common>", ""), "#f5f6f8");
        param.Get<KoParamApi::UnInitFn>("UnInit")();
    }

private:
    QString Get(const QString& _qstrGroup, const QString& _qstrKey, const QString& _qstrSkin)
    {
        return QString::fromStdString(
            m_pfnGet(_qstrGroup.toStdString(), _qstrKey.toStdString(), _qstrSkin.toStdString()));
    }

    QuillTest::ScopedWorkDir m_workDir;
    ServiceLibrary m_library{KoColorManageApi::kLibraryName};
    KoColorManageApi::GetNamedColorFn m_pfnGet = nullptr;
};

QTEST_GUILESS_MAIN(tst_KoColorManage)
#include "tst_KoColorManage.moc"
