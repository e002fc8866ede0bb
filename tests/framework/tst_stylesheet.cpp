// Skin style-sheet resolution. The scale factor is read once per process, so
// ctest runs this program once per QT_SCALE_FACTOR setting; QUILL_SCALE_CASE
// names the setting and what it must resolve to.
#include "KoServices.h"
#include "ServiceFixture.h"
#include "StyleSheet.h"

#include <QtTest>

class TestStyleSheet : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        m_qstrCase = qEnvironmentVariable("QUILL_SCALE_CASE", QStringLiteral("unset"));
        if (m_qstrCase == QLatin1String("unset"))
            QVERIFY(!qEnvironmentVariableIsSet("QT_SCALE_FACTOR"));
        QVERIFY(m_services.IsReady());
        QuillTest::ScopedWorkDir& dir = m_services.WorkDir();
        const QString qstrCommon = QStringLiteral("resource/skin/light/Common/");
        QVERIFY(dir.WriteFile(qstrCommon + "b.qss", "B{}") &&
                dir.WriteFile(qstrCommon + "a.qss", "A{}") &&
                dir.WriteFile(qstrCommon + "C.qss", "C{}") &&
                dir.WriteFile(qstrCommon + "readme.txt", "not a style"));
        for (const QString qstrSkin : {"dark", "light"}) {
            for (const QString qstrVariant : {"", "_3K", "_4K", "_2.5K"}) {
                if (m_qstrCase == QLatin1String("1.5-no3k") && qstrVariant == QLatin1String("_3K"))
                    continue;
                const QString qstrText =
                    qstrSkin + ' ' +
                    (qstrVariant.isEmpty() ? "plain" : qstrVariant.mid(1).toLower());
                QVERIFY(dir.WriteFile(
                    "resource/skin/" + qstrSkin + "/ModulePlayer/qss/View" + qstrVariant + ".qss",
                    qstrText.toUtf8()));
            }
        }
        // The skin comes from the parameter service: choose the light one.
        QVERIFY(KoService::SetParam("SystemConfig", "skin", "light"));
    }

    void normalisesModuleNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("folder");
        const char* const rows[][3] = {{"bare", "Player", "ModulePlayer"},
                                       {"module", "ModuleKoPlayer", "ModuleKoPlayer"},
                                       {"widget", "WgtMsgBox", "WgtMsgBox"},
                                       {"service", "KoColorManage", "KoColorManage"},
                                       {"case matters", "wgtBox", "ModulewgtBox"},
                                       {"prefix only inside", "MyModule", "ModuleMyModule"}};
        for (const auto& row : rows)
            QTest::newRow(row[0]) << QString(row[1]) << QString(row[2]);
    }

    void normalisesModuleNames()
    {
        QFETCH(QString, name);
        QFETCH(QString, folder);
        QCOMPARE(NormaliseModuleName(name), folder);
    }

    // The variant for the scale, and the shared files in name order, case
    // ignored, text files left out, then the view's own; all read once.
    void picksTheVariantAndReadsOnce()
    {
        QString qstrPath;
        QVERIFY(GetQssFilePath(QStringLiteral("ModulePlayer"), QStringLiteral("View"), qstrPath));
        const QString qstrSuffix = Expected() == QLatin1String("plain")
                                       ? QStringLiteral(".qss")
                                       : QStringLiteral("_%1.qss").arg(Expected().toUpper());
        QCOMPARE(qstrPath, "./resource/skin/light/ModulePlayer/qss/View" + qstrSuffix);
        QCOMPARE(GetModuleStyleSheet(QStringLiteral("Player"), QStringLiteral("View")),
                 "A{}B{}C{}light " + Expected());

        QVERIFY(m_services.WorkDir().WriteFile(qstrPath.mid(2), "changed"));
        QVERIFY(m_services.WorkDir().WriteFile("resource/skin/light/Common/a.qss", "changed"));
        QVERIFY(KoService::SetParam("SystemConfig", "skin", "dark"));
        qputenv("QT_SCALE_FACTOR", "2");
        QCOMPARE(GetModuleStyleSheet(QStringLiteral("Player"), QStringLiteral("View")),
                 "A{}B{}C{}light " + Expected());
        // The path itself follows the skin, but never a new scale factor.
        QVERIFY(GetQssFilePath(QStringLiteral("ModulePlayer"), QStringLiteral("View"), qstrPath));
        QCOMPARE(qstrPath, "./resource/skin/dark/ModulePlayer/qss/View" + qstrSuffix);
    }

private:
    QString Expected() const
    {
        if (m_qstrCase == QLatin1String("1.5")) return QStringLiteral("3k");
        if (m_qstrCase == QLatin1String("1.25")) return QStringLiteral("2.5k");
        return QStringLiteral("plain");  // unset, and 1.5 without a _3K file
    }

    QuillTest::ServiceFixture m_services{QuillTest::Service::Param};
    QString m_qstrCase;
};

QTEST_GUILESS_MAIN(TestStyleSheet)
#include "tst_stylesheet.moc"
