// quillplayer as a user starts it: its command line, its screenshot mode, a
// clean end on SIGTERM and a clear message when the module cannot be loaded.

#include "QuillTestSupport.h"

#include <QColor>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QtTest>

namespace {

constexpr int kHangMs = 60000;

QString Host()
{
    return QuillTest::BinPath(QStringLiteral("quillplayer"));
}

}  // namespace

class tst_Host : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_tmpDir;
    QString m_qstrClip;

private slots:
    void initTestCase()
    {
        m_qstrClip = m_tmpDir.filePath(QStringLiteral("clip with spaces é.mp4"));
        QCOMPARE(QuillTest::RunProgram(QStringLiteral("ffmpeg"),
                                       {"-v", "error", "-f", "lavfi", "-i",
                                        "testsrc2=size=640x360:rate=25:duration=30", "-c:v", "libx264",
                                        "-preset", "ultrafast", m_qstrClip}),
                 0);
    }

    void usage_data()
    {
        QTest::addColumn<QStringList>("qlstArgs");
        QTest::addColumn<int>("iExit");
        QTest::newRow("version") << QStringList{"--version"} << 0;
        QTest::newRow("unknown option") << QStringList{"--bogus"} << 2;
        QTest::newRow("skin") << QStringList{"--skin", "blue"} << 2;
        QTest::newRow("language") << QStringList{"--language", "klingon"} << 2;
        QTest::newRow("rendering") << QStringList{"--rendering", "vulkan"} << 2;
        QTest::newRow("two files") << QStringList{"a.mp4", "b.mp4"} << 2;
        QTest::newRow("after without screenshot") << QStringList{"--after", "10"} << 2;
    }
    void usage()
    {
        QFETCH(QStringList, qlstArgs);
        QFETCH(int, iExit);
        QByteArray qbaOutput;
        QCOMPARE(QuillTest::RunProgram(Host(), qlstArgs, &qbaOutput), iExit);
        QCOMPARE(qbaOutput.count('\n'), 1);
    }

    // Both skins and both render surfaces: the window shows the picture, in
    // the skin asked for, and the position is kept when it closes.
    void screenshot_data()
    {
        QTest::addColumn<QStringList>("qlstOptions");
        QTest::addColumn<bool>("blLight");
        QTest::newRow("dark, gl") << QStringList{"--rendering", "gl"} << false;
        QTest::newRow("light, native, de") << QStringList{"--skin", "light", "--rendering", "native", "--language", "DE"}
                                           << true;
    }
    void screenshot()
    {
        QFETCH(QStringList, qlstOptions);
        QFETCH(bool, blLight);
        QTemporaryDir workDir;
        const QString qstrShot = workDir.filePath(QStringLiteral("shot.png"));
        QByteArray qbaOutput;
        QCOMPARE(QuillTest::RunProgram(Host(),
                                       QStringList{m_qstrClip, "--workdir", workDir.path(), "--screenshot",
                                                   qstrShot, "--after", "3000"} +
                                           qlstOptions,
                                       &qbaOutput, kHangMs),
                 0);
        const QImage image(qstrShot);
        QVERIFY2(!image.isNull(), qbaOutput.constData());
        // The middle of the video area shows the test picture, not black.
        const QColor colorMiddle = image.pixelColor(image.width() / 2, image.height() / 2);
        QVERIFY(colorMiddle.lightness() > 40);
        // The title bar's corner follows the skin.
        QCOMPARE(image.pixelColor(4, 4).lightness() > 128, blLight);
        QVERIFY(QuillTest::NewestHistroyEntry(workDir.path())["pos"].toInt(-1) >= 1);
    }

    void endsCleanlyOnSigterm()
    {
        QTemporaryDir workDir;
        QProcess process;
        process.start(Host(), {m_qstrClip, "--workdir", workDir.path()});
        QVERIFY(process.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(workDir.filePath(QStringLiteral("HistroyInfo.json"))), kHangMs);
        QTest::qWait(2500);  // a couple of seconds of playback to keep
        process.terminate();
        QVERIFY(process.waitForFinished(kHangMs));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
        QVERIFY(QuillTest::NewestHistroyEntry(workDir.path())["pos"].toInt(-1) >= 1);
    }

    void brokenModule()
    {
        QTemporaryDir workDir;
        QFile module(workDir.filePath(QStringLiteral("libModuleKoPlayer.so")));
        QVERIFY(module.open(QIODevice::WriteOnly));
        module.write("not a library");
        module.close();
        QByteArray qbaOutput;
        QCOMPARE(QuillTest::RunProgram(Host(), {"--workdir", workDir.path()}, &qbaOutput, kHangMs), 1);
        QVERIFY(qbaOutput.contains("player module"));
    }
};

QTEST_GUILESS_MAIN(tst_Host)
#include "tst_Host.moc"
