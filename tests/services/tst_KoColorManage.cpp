#include "KoColorManageApi.h"
#include "KoParamApi.h"
#include "ServiceFixture.h"

#include <QtTest>

using QuillTest::Service;
using QuillTest::ServiceFunction;

// Which keys each skin's palette holds is pinned by the skins regeneration test.
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

    void namedColorsFollowTheSkin()
    {
        // Unknown keys, groups and skins, and skins that would leave the skin tree.
        QCOMPARE(Get("Common", "<NoSuchKey>", "dark"), "");
        QCOMPARE(Get("Common", "<BgColor_Common>", "no-such-skin"), "");
        QCOMPARE(Get("Common", "<BgColor_Common>", "../skin/dark"), "");
        QCOMPARE(Get("Common", "<BgColor_Common>", "light"), "#f5f6f8");

        // No skin given: the skin parameter's, dark without one. The parameter
        // library is loaded by path first: the colour library then finds this
        // very instance by its bare name, even where a sanitizer's dlopen hides
        // the library's RUNPATH.
        const auto pfnInit = ServiceFunction<KoParamApi::InitFn>(Service::Param, "Init");
        const auto pfnSet = ServiceFunction<KoParamApi::SetParamFn>(Service::Param, "SetParam");
        QVERIFY(pfnInit && pfnSet);
        QCOMPARE(Get("Common", "<BgColor_Common>", ""), "#1e1f22");
        QVERIFY(pfnInit(m_services.WorkDir().FilePath("settings.json").toStdString()));
        QVERIFY(pfnSet("SystemConfig", "skin", "light"));
        QCOMPARE(Get("Common", "<BgColor_Common>", ""), "#f5f6f8");
        ServiceFunction<KoParamApi::UnInitFn>(Service::Param, "UnInit")();
    }

private:
    static QString Get(const char* _pGroup, const char* _pKey, const char* _pSkin)
    {
        const auto pfnGet = ServiceFunction<KoColorManageApi::GetNamedColorFn>(Service::ColorManage,
                                                                               "GetNamedColor");
        return QString::fromStdString(pfnGet(_pGroup, _pKey, _pSkin));
    }

    QuillTest::ServiceFixture m_services{Service::ColorManage};
};

QTEST_GUILESS_MAIN(tst_KoColorManage)
#include "tst_KoColorManage.moc"
