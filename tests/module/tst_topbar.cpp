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

    // Without the light skin's sheet the bar stays unstyled, rather than
    // borrowing the dark one, and says why. Which sheet each skin picks shows
    // in the host's screenshots.
    void missingSheetLeavesTheBarUnstyled()
    {
        QuillTest::ScopedWorkDir workDir;
        QVERIFY(workDir.WriteFile("resource/skin/dark/ModuleKoPlayer/qss/TopBar.qss", "QLabel {}"));
        qApp->setProperty("Skin", 1);
        CLS_WgtPlayerTopBar bar;
        QVERIFY(bar.styleSheet().isEmpty());
        QVERIFY(m_services.LogText(QStringLiteral("ModuleKoPlayer"))
                    .contains("CLS_WgtToolboxBar COMMON_PLATFORM_WIN SetStyleSheetByFile Loading "
                              "Failed,Path = ./resource/skin/light/ModuleKoPlayer/qss/TopBar.qss"));
    }

private:
    QuillTest::ServiceFixture m_services{QuillTest::Service::Log};
};

QTEST_MAIN(TestTopBar)
#include "tst_topbar.moc"
