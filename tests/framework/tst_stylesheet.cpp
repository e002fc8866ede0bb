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
        for (const QString& qstrSkin : {QStringLiteral("dark"), QStringLiteral("light")}) {
            const QString qstrRoot = QStringLiteral("resource/skin/%1/").arg(qstrSkin);
            QVERIFY(dir.WriteFile(qstrRoot + QStringLiteral("Common/b.qss"), "B{}"));
            QVERIFY(dir.WriteFile(qstrRoot + QStringLiteral("Common/a.qss"), "A{}"));
            QVERIFY(dir.WriteFile(qstrRoot + QStringLiteral("Common/C.qss"), "C{}"));
            QVERIFY(dir.WriteFile(qstrRoot + QStringLiteral("Common/readme.txt"), "not a style"));
            for (const QString& qstrVariant : {"", "_3K", "_4K", "_2.5K"}) {
                if (m_qstrCase == QLatin1String("1.5-no3k") && qstrVariant == QLatin1String("_3K"))
                    continue;
                const QString qstrText =
                    qstrSkin + ' ' +
                    (qstrVariant.isEmpty() ? "plain" : qstrVariant.mid(1).toLower());
                QVERIFY(dir.WriteFile(qstrRoot + "ModulePlayer/qss/View" + qstrVariant + ".qss",
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

    void emptyNamesResolveNothing()
    {
        QString qstrPath = QStringLiteral("untouched");
        QVERIFY(!GetQssFilePath(QString(), QStringLiteral("View"), qstrPath));
        QVERIFY(!GetQssFilePath(QStringLiteral("ModulePlayer"), QString(), qstrPath));
        QCOMPARE(qstrPath, QStringLiteral("untouched"));
        QVERIFY(
            !GetQssFilePath(QStringLiteral("ModulePlayer"), QStringLiteral("Missing"), qstrPath));
        QCOMPARE(qstrPath, QStringLiteral("./resource/skin/light/ModulePlayer/qss/Missing.qss"));
    }

    void picksTheVariantForTheScale()
    {
        QString qstrPath;
        QVERIFY(GetQssFilePath(QStringLiteral("ModulePlayer"), QStringLiteral("View"), qstrPath));
        const QString qstrSuffix = Expected() == QLatin1String("plain")
                                       ? QStringLiteral(".qss")
                                       : QStringLiteral("_%1.qss").arg(Expected().toUpper());
        QCOMPARE(qstrPath,
                 QStringLiteral("./resource/skin/light/ModulePlayer/qss/View") + qstrSuffix);
        // Shared files in name order, case ignored, text files left out, then the
        // view's own.
        QCOMPARE(GetModuleStyleSheet(QStringLiteral("Player"), QStringLiteral("View")),
                 QStringLiteral("A{}B{}C{}light ") + Expected());
    }

    void textsAreReadOncePerProcess()
    {
        const QString qstrBefore =
            GetModuleStyleSheet(QStringLiteral("Player"), QStringLiteral("View"));
        QVERIFY(m_services.WorkDir().WriteFile(
            QStringLiteral("resource/skin/light/ModulePlayer/qss/View.qss"), "changed"));
        QVERIFY(m_services.WorkDir().WriteFile(QStringLiteral("resource/skin/light/Common/a.qss"),
                                               "changed"));
        QVERIFY(KoService::SetParam("SystemConfig", "skin", "dark"));
        qputenv("QT_SCALE_FACTOR", "2");
        QCOMPARE(GetModuleStyleSheet(QStringLiteral("Player"), QStringLiteral("View")), qstrBefore);

        // The path itself follows the skin, but never a new scale factor.
        QString qstrPath;
        QVERIFY(GetQssFilePath(QStringLiteral("ModulePlayer"), QStringLiteral("View"), qstrPath));
        QVERIFY2(qstrPath.startsWith(QStringLiteral("./resource/skin/dark/")),
                 qPrintable(qstrPath));
        if (Expected() == QLatin1String("plain"))
            QVERIFY2(qstrPath.endsWith(QStringLiteral("View.qss")), qPrintable(qstrPath));
    }

private:
    QString Expected() const
    {
        if (m_qstrCase == QLatin1String("1.5")) return QStringLiteral("3k");
        if (m_qstrCase == QLatin1String("2")) return QStringLiteral("4k");
        if (m_qstrCase == QLatin1String("1.25")) return QStringLiteral("2.5k");
        return QStringLiteral("plain");  // unset, 1, and 1.5 without a _3K file
    }

    QuillTest::ServiceFixture m_services{QuillTest::Service::Param};
    QString m_qstrCase;
};

QTEST_GUILESS_MAIN(TestStyleSheet)
#include "tst_stylesheet.moc"
