#include "CLS_WgtPlayerTopBar.h"
#include "ChromeTestSupport.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTime>

class TestTopBar : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void formAndButtons_data();
    void formAndButtons();
    void clockTicksEverySecond();
    void windowStatusFlipsIconAndTooltip();
    void styleFileBySkin_data();
    void styleFileBySkin();
    void skinShowsRestoreIcon_data();
    void skinShowsRestoreIcon();

private:
    static QString LogText(const QString& _qstrDir);

    QuillTest::ScopedWorkDir m_workDir;
    QString m_qstrLogDir;
};

void TestTopBar::initTestCase()
{
    m_qstrLogDir = m_workDir.FilePath(QStringLiteral("log"));
    QVERIFY(ChromeTest::InitLogService(m_qstrLogDir));
}

void TestTopBar::cleanup()
{
    qApp->setProperty("Skin", QVariant());
}

QString TestTopBar::LogText(const QString& _qstrDir)
{
    QString qstrText;
    const QDir dir(_qstrDir);
    for (const QString& qstrName : dir.entryList({QStringLiteral("*.log")}, QDir::Files)) {
        QFile file(dir.filePath(qstrName));
        if (file.open(QIODevice::ReadOnly)) qstrText += QString::fromUtf8(file.readAll());
    }
    return qstrText;
}

void TestTopBar::formAndButtons_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QByteArray>("signal");

    QTest::newRow("minimise") << "pushButton_small"
                              << "btn_minimize" << QByteArray(SIGNAL(SignMiniSize()));
    QTest::newRow("maximise") << "pushButton_big"
                              << "btn_maximize" << QByteArray(SIGNAL(SignMaxSize()));
    QTest::newRow("close") << "pushButton_closeapp"
                           << "btn_close_down" << QByteArray(SIGNAL(SignAppClose()));
}

void TestTopBar::formAndButtons()
{
    QFETCH(QString, button);
    QFETCH(QString, toolTip);
    QFETCH(QByteArray, signal);

    CLS_WgtPlayerTopBar bar;
    auto* pButton = bar.findChild<QPushButton*>(button);
    QVERIFY(pButton);
    QVERIFY(pButton->text().isEmpty());
    QCOMPARE(pButton->toolTip(), toolTip);
    QCOMPARE(pButton->focusPolicy(), Qt::NoFocus);

    QSignalSpy spyMini(&bar, &CLS_WgtPlayerTopBar::SignMiniSize);
    QSignalSpy spyMax(&bar, &CLS_WgtPlayerTopBar::SignMaxSize);
    QSignalSpy spyClose(&bar, &CLS_WgtPlayerTopBar::SignAppClose);
    QSignalSpy spyWatched(&bar, signal.constData());
    pButton->click();
    QCOMPARE(spyWatched.count(), 1);
    QCOMPARE(spyMini.count() + spyMax.count() + spyClose.count(), 1);
}

void TestTopBar::clockTicksEverySecond()
{
    CLS_WgtPlayerTopBar bar;
    const auto* pTime = bar.findChild<QLabel*>(QStringLiteral("label_time"));
    QVERIFY(pTime);
    QCOMPARE(pTime->text(), QStringLiteral("time"));
    QVERIFY(pTime->alignment().testFlag(Qt::AlignRight));

    const QRegularExpression rxClock(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d$"));
    QTRY_VERIFY_WITH_TIMEOUT(rxClock.match(pTime->text()).hasMatch(), 3000);
    QCOMPARE(pTime->toolTip(), pTime->text());
    const QTime shown = QTime::fromString(pTime->text(), QStringLiteral("hh:mm:ss"));
    QVERIFY(shown.isValid());
    // Local wall-clock time (24-hour), give or take the tick just passed.
    const int iDrift = qAbs(shown.secsTo(QTime::currentTime()));
    QVERIFY2(iDrift <= 2 || iDrift >= 86398, qPrintable(pTime->text()));

    // And it keeps going.
    const QString qstrFirst = pTime->text();
    QTRY_VERIFY_WITH_TIMEOUT(pTime->text() != qstrFirst, 3000);
}

void TestTopBar::windowStatusFlipsIconAndTooltip()
{
    CLS_WgtPlayerTopBar bar;
    auto* pBig = bar.findChild<QPushButton*>(QStringLiteral("pushButton_big"));
    QVERIFY(pBig);
    pBig->setStyleSheet(
        QStringLiteral("QPushButton { border: none; background: #0000ff; }"
                       "QPushButton[blMax=\"true\"] { background: #00ff00; }"));
    pBig->setFixedSize(20, 20);
    QCOMPARE(pBig->property("blMax").toBool(), false);
    const QPoint center(10, 10);
    QCOMPARE(pBig->grab().toImage().pixel(center) & 0xffffff, QRgb(0x0000ff));

    // The dialog reaches the slot by name only.
    for (int iRound = 0; iRound < 2; ++iRound) {
        QVERIFY(QMetaObject::invokeMethod(&bar, "SlotSetWindowStatus", Q_ARG(bool, true)));
        QCOMPARE(pBig->toolTip(), QStringLiteral("lab_recover"));
        QCOMPARE(pBig->property("blMax").toBool(), true);
        QCOMPARE(pBig->grab().toImage().pixel(center) & 0xffffff, QRgb(0x00ff00));
    }
    QVERIFY(QMetaObject::invokeMethod(&bar, "SlotSetWindowStatus", Q_ARG(bool, false)));
    QCOMPARE(pBig->toolTip(), QStringLiteral("btn_maximize"));
    QCOMPARE(pBig->grab().toImage().pixel(center) & 0xffffff, QRgb(0x0000ff));
}

void TestTopBar::styleFileBySkin_data()
{
    QTest::addColumn<QVariant>("skin");
    QTest::addColumn<bool>("lightPresent");
    QTest::addColumn<QString>("sheet");  // empty: unstyled, failure logged
    QTest::addColumn<QString>("failedPath");

    const QString qstrDark = QStringLiteral("/resource/skin/dark/ModuleKoPlayer/qss/TopBar.qss");
    const QString qstrLight = QStringLiteral("/resource/skin/light/ModuleKoPlayer/qss/TopBar.qss");
    QTest::newRow("unset means dark") << QVariant() << true << "dark"
                                      << "";
    QTest::newRow("0 is dark") << QVariant(0) << true << "dark"
                               << "";
    QTest::newRow("1 is light") << QVariant(1) << true << "light"
                                << "";
    QTest::newRow("other values stay dark") << QVariant(7) << true << "dark"
                                            << "";
    QTest::newRow("light missing") << QVariant(1) << false << ""
                                   << "." + qstrLight;
}

void TestTopBar::styleFileBySkin()
{
    QFETCH(QVariant, skin);
    QFETCH(bool, lightPresent);
    QFETCH(QString, sheet);
    QFETCH(QString, failedPath);

    QuillTest::ScopedWorkDir workDir;
    const QByteArray qbaDark = "QLabel#label_title { color: #010203; }";
    const QByteArray qbaLight = "QLabel#label_title { color: #040506; }";
    QVERIFY(workDir.WriteFile(QStringLiteral("resource/skin/dark/ModuleKoPlayer/qss/TopBar.qss"),
                              qbaDark));
    if (lightPresent)
        QVERIFY(workDir.WriteFile(
            QStringLiteral("resource/skin/light/ModuleKoPlayer/qss/TopBar.qss"), qbaLight));
    qApp->setProperty("Skin", skin);

    const QString qstrLogBefore = LogText(m_qstrLogDir);
    CLS_WgtPlayerTopBar bar;
    const QString qstrExpected = sheet == QLatin1String("dark")    ? QString::fromUtf8(qbaDark)
                                 : sheet == QLatin1String("light") ? QString::fromUtf8(qbaLight)
                                                                   : QString();
    QCOMPARE(bar.styleSheet(), qstrExpected);

    const QString qstrNewLog = LogText(m_qstrLogDir).mid(qstrLogBefore.size());
    const QString qstrFailure = QStringLiteral(
        "CLS_WgtToolboxBar COMMON_PLATFORM_WIN SetStyleSheetByFile Loading Failed,Path = ");
    if (failedPath.isEmpty()) {
        QVERIFY(!qstrNewLog.contains(qstrFailure));
    } else {
        QVERIFY2(qstrNewLog.contains(qstrFailure + failedPath), qPrintable(qstrNewLog));
        QVERIFY(qstrNewLog.contains(QStringLiteral("CLS_WgtPlayerTopBar::InitTopBarUI")));
    }
}

void TestTopBar::skinShowsRestoreIcon_data()
{
    QTest::addColumn<int>("skinIndex");
    QTest::addColumn<QString>("skin");
    QTest::newRow("dark") << 0 << "dark";
    QTest::newRow("light") << 1 << "light";
}

void TestTopBar::skinShowsRestoreIcon()
{
    QFETCH(int, skinIndex);
    QFETCH(QString, skin);

    QuillTest::ScopedWorkDir workDir;
    QVERIFY(QFile::link(QStringLiteral(QUILL_SOURCE_DIR "/resource"),
                        workDir.FilePath(QStringLiteral("resource"))));
    qApp->setProperty("Skin", skinIndex);

    CLS_WgtPlayerTopBar bar;
    QVERIFY(!bar.styleSheet().isEmpty());
    bar.resize(600, 60);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    auto* pBig = bar.findChild<QPushButton*>(QStringLiteral("pushButton_big"));
    QVERIFY(pBig);
    const QImage imgMaximise = pBig->grab().toImage();
    QVERIFY(QMetaObject::invokeMethod(&bar, "SlotSetWindowStatus", Q_ARG(bool, true)));
    QVERIFY2(pBig->grab().toImage() != imgMaximise, "restore looks like maximise");

    const QByteArray qbaDir = qgetenv("QUILL_RENDER_DIR");
    if (!qbaDir.isEmpty())
        QVERIFY(bar.grab().save(QString::fromLocal8Bit(qbaDir) + "/topbar_" + skin + ".png"));
}

QTEST_MAIN(TestTopBar)
#include "tst_topbar.moc"
