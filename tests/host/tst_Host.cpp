// quillplayer as a user starts it: its command line, its screenshot mode (in
// both skins and render surfaces, and with a library of the installation
// missing), a clean end on SIGTERM and a clear message when the module cannot
// be loaded.

#include "QuillTestSupport.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QtTest>

namespace {

constexpr int kHangMs = 60000;

// build/bin without _qstrLeftOut; the host binary is a real copy so that it
// takes this folder as its installation.
bool CopyInstallationWithout(const QString& _qstrDir, const QString& _qstrLeftOut)
{
    const QDir dirBin(QuillTest::BinDir());
    for (const QString& qstrName : dirBin.entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        const QString qstrFrom = dirBin.filePath(qstrName), qstrTo = _qstrDir + '/' + qstrName;
        if (qstrName != _qstrLeftOut && !(qstrName == "quillplayer" ? QFile::copy(qstrFrom, qstrTo)
                                                                      : QFile::link(qstrFrom, qstrTo)))
            return false;
    }
    return true;
}

}  // namespace

class tst_Host : public QObject
{
    Q_OBJECT

private:
    const QString m_qstrHost = QuillTest::BinPath(QStringLiteral("quillplayer"));
    QTemporaryDir m_tmpDir;
    QString m_qstrClip;

private slots:
    void initTestCase()
    {
        // The console is read line by line: no warning about the environment
        // of this machine in between.
        const QString qstrRuntime = m_tmpDir.filePath(QStringLiteral("runtime"));
        QVERIFY(QDir().mkpath(qstrRuntime));
        QFile::setPermissions(qstrRuntime, QFile::ExeOwner | QFile::ReadOwner | QFile::WriteOwner);
        qputenv("XDG_RUNTIME_DIR", qstrRuntime.toLocal8Bit());
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
        QCOMPARE(QuillTest::RunProgram(m_qstrHost, qlstArgs, &qbaOutput), iExit);
        QCOMPARE(qbaOutput.count('\n'), 1);
    }

    void screenshot_data()
    {
        QTest::addColumn<QString>("qstrLeftOut");  // a library of the installation
        QTest::addColumn<QStringList>("qlstOptions");
        QTest::addColumn<bool>("blLight");
        // Whether playing a plain file asks for the library left out at all.
        QTest::addColumn<bool>("blAsked");
        const QStringList qlstGl{"--rendering", "gl"};
        QTest::newRow("dark, gl") << QString() << qlstGl << false << false;
        QTest::newRow("light, native, de")
            << QString() << QStringList{"--skin", "light", "--rendering", "native", "--language", "DE"}
            << true << false;
        for (const char* pService :
             {"KoLog", "KoParam", "KoTaskPool", "KoAppManager", "KoColorManage"})
            QTest::newRow(pService) << QStringLiteral("lib%1.so").arg(pService) << QStringList()
                                    << false << true;
        QTest::newRow("WgtMsgBox") << "libWgtMsgBox.so" << QStringList() << false << false;
        QTest::newRow("QGLRender") << "libQGLRender.so" << qlstGl << false << true;
    }
    // The window shows the picture, in the skin asked for, the position is
    // kept when it closes and the host ends with 0, whatever library is
    // missing. The console says only what the library loader says.
    void screenshot()
    {
        QFETCH(QString, qstrLeftOut);
        QFETCH(QStringList, qlstOptions);
        QFETCH(bool, blLight);
        QFETCH(bool, blAsked);
        QTemporaryDir installDir, workDir;
        QVERIFY(CopyInstallationWithout(installDir.path(), qstrLeftOut));
        // A search path set for the build (the sanitized run sets one) would
        // find the library left out there.
        const QByteArray qbaSearchPath = qgetenv("LD_LIBRARY_PATH");
        qputenv("LD_LIBRARY_PATH", installDir.path().toLocal8Bit());
        const auto restore = qScopeGuard([&] { qputenv("LD_LIBRARY_PATH", qbaSearchPath); });
        const QString qstrShot = workDir.filePath(QStringLiteral("shot.png"));
        const QStringList qlstArgs{m_qstrClip, "--workdir", workDir.path(), "--screenshot",
                                   qstrShot,   "--after",   "3000"};
        QByteArray qbaOutput;
        QCOMPARE(QuillTest::RunProgram(installDir.filePath("quillplayer"), qlstArgs + qlstOptions,
                                       &qbaOutput, kHangMs),
                 0);
        const QImage image(qstrShot);
        QVERIFY2(!image.isNull(), qbaOutput.constData());
        // The middle of the video area shows the test picture, not black; the
        // title bar's corner follows the skin.
        QVERIFY(image.pixelColor(image.width() / 2, image.height() / 2).lightness() > 40);
        QCOMPARE(image.pixelColor(4, 4).lightness() > 128, blLight);
        QVERIFY(QuillTest::NewestHistroyEntry(workDir.path())["pos"].toInt(-1) >= 1);
        // The loader's lines, the render library's note on the renderer and
        // the host's word on the screenshot; nothing else.
        const QRegularExpression reKnown(
            QStringLiteral("^(load dll (- .*|\\[.*\\] sucess|\\[.*%1\\] fail !!! .*)|"
                           "QGLRender: OpenGL renderer .*|quillplayer: screenshot saved to .*)$")
                .arg(QRegularExpression::escape(qstrLeftOut)));
        for (const QString& qstrLine :
             QString::fromLocal8Bit(qbaOutput).split('\n', Qt::SkipEmptyParts))
            QVERIFY2(reKnown.match(qstrLine).hasMatch(), qPrintable(qstrLine));
        QCOMPARE(qbaOutput.contains("] fail !!!"), blAsked);
    }

    void endsCleanlyOnSigterm()
    {
        QTemporaryDir workDir;
        QProcess process;
        process.start(m_qstrHost, {m_qstrClip, "--workdir", workDir.path()});
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
        QVERIFY(QuillTest::WriteFile(workDir.filePath(QStringLiteral("libModuleKoPlayer.so")),
                                     "not a library"));
        QByteArray qbaOutput;
        QCOMPARE(QuillTest::RunProgram(m_qstrHost, {"--workdir", workDir.path()}, &qbaOutput, kHangMs), 1);
        QVERIFY(qbaOutput.contains("player module"));
    }
};

QTEST_GUILESS_MAIN(tst_Host)
#include "tst_Host.moc"
