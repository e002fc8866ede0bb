#include "CLS_WgtPlayerTopBar.h"
#include "ServiceFixture.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QTime>

class TestTopBar : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_services.IsReady()); }
    void cleanup() { qApp->setProperty("Skin", QVariant()); }

    void clockShowsWallClockTime()
    {
        CLS_WgtPlayerTopBar bar;
        const auto* pTime = bar.findChild<QLabel*>(QStringLiteral("label_time"));
        QCOMPARE(pTime->text(), QStringLiteral("time"));
        const QTime before = QTime::currentTime();
        // The waits only catch a clock that never ticks; its pace is not asserted.
        QTRY_VERIFY_WITH_TIMEOUT(pTime->text() != QLatin1String("time"), 15000);
        // Local time, 24-hour, taken between the start of the wait and now.
        const QTime shown = QTime::fromString(pTime->text(), QStringLiteral("hh:mm:ss"));
        const auto fnSince = [&](const QTime& _time) {
            return (before.secsTo(_time) + 86400) % 86400;
        };
        QVERIFY2(shown.isValid() && fnSince(shown) <= fnSince(QTime::currentTime()),
                 qPrintable(pTime->text()));
        const QString qstrFirst = pTime->text();
        QTRY_VERIFY_WITH_TIMEOUT(pTime->text() != qstrFirst, 15000);
    }

    void styleFileBySkin_data()
    {
        QTest::addColumn<QVariant>("skin");
        QTest::addColumn<bool>("lightPresent");
        QTest::addColumn<QString>("sheet");  // empty: unstyled, failure logged
        QTest::newRow("unset means dark") << QVariant() << true << "dark";
        QTest::newRow("1 is light") << QVariant(1) << true << "light";
        QTest::newRow("other values stay dark") << QVariant(7) << true << "dark";
        QTest::newRow("light missing") << QVariant(1) << false << "";
    }

    void styleFileBySkin()
    {
        QFETCH(QVariant, skin);
        QFETCH(bool, lightPresent);
        QFETCH(QString, sheet);
        QuillTest::ScopedWorkDir workDir;
        const QString qstrFile = QStringLiteral("resource/skin/%1/ModuleKoPlayer/qss/TopBar.qss");
        QVERIFY(workDir.WriteFile(qstrFile.arg("dark"), "QLabel { color: #010203; } /* dark */"));
        if (lightPresent)
            QVERIFY(
                workDir.WriteFile(qstrFile.arg("light"), "QLabel { color: #040506; } /* light */"));
        qApp->setProperty("Skin", skin);

        const int iLogBefore = m_services.LogText(QStringLiteral("ModuleKoPlayer")).size();
        CLS_WgtPlayerTopBar bar;
        QCOMPARE(bar.styleSheet().section("/* ", 1).section(" */", 0, 0), sheet);
        const QString qstrFailure =
            "CLS_WgtToolboxBar COMMON_PLATFORM_WIN SetStyleSheetByFile Loading Failed,Path = ./" +
            qstrFile.arg("light");
        QCOMPARE(m_services.LogText(QStringLiteral("ModuleKoPlayer"))
                     .mid(iLogBefore)
                     .contains(qstrFailure),
                 sheet.isEmpty());
    }

private:
    QuillTest::ServiceFixture m_services{QuillTest::Service::Log};
};

QTEST_MAIN(TestTopBar)
#include "tst_topbar.moc"
