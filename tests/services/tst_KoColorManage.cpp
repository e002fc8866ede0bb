#include "KoColorManageApi.h"
#include "KoParamApi.h"
#include "ServiceFixture.h"

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
        QVERIFY(m_services.IsReady());
        QVERIFY(m_services.WorkDir().LinkFromBin(QStringLiteral("resource")));
    }

    void namedColors()
    {
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
        using QuillTest::Service;
        const auto pfnInit = QuillTest::ServiceFunction<KoParamApi::InitFn>(Service::Param, "Init");
        const auto pfnSet =
            QuillTest::ServiceFunction<KoParamApi::SetParamFn>(Service::Param, "SetParam");
        QVERIFY(pfnInit && pfnSet);
        QCOMPARE(Get("Common", "<BgColor_Common>", ""), "#1e1f22");  // dark without parameters
        QVERIFY(
            pfnInit(m_services.WorkDir().FilePath(QStringLiteral("settings.json")).toStdString()));
        QVERIFY(pfnSet("SystemConfig", "skin", "light"));
        QCOMPARE(Get("Common", "<BgColor_Common>", ""), "#f5f6f8");
        QuillTest::ServiceFunction<KoParamApi::UnInitFn>(Service::Param, "UnInit")();
    }

private:
    QString Get(const QString& _qstrGroup, const QString& _qstrKey, const QString& _qstrSkin)
    {
        const auto pfnGet = QuillTest::ServiceFunction<KoColorManageApi::GetNamedColorFn>(
            QuillTest::Service::ColorManage, "GetNamedColor");
        return QString::fromStdString(
            pfnGet(_qstrGroup.toStdString(), _qstrKey.toStdString(), _qstrSkin.toStdString()));
    }

    QuillTest::ServiceFixture m_services{QuillTest::Service::ColorManage};
};

QTEST_GUILESS_MAIN(tst_KoColorManage)
#include "tst_KoColorManage.moc"
