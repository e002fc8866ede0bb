// The Debian package as a user gets it: built from this tree, unpacked into a
// scratch root, and started from there by a user with a fresh home.

#include "QuillTestSupport.h"

#include <QDirIterator>
#include <QImage>
#include <QProcess>
#include <QtTest>

namespace {

constexpr int kHangMs = 180000;

int Run(const QString& _qstrProgram, const QStringList& _qlstArgs, QByteArray* _pOutput = nullptr,
        const QProcessEnvironment& _env = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(_env);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(_qstrProgram, _qlstArgs);
    if (!process.waitForStarted() || !process.waitForFinished(kHangMs)) return -1;
    if (_pOutput) *_pOutput = process.readAll();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

}  // namespace

class tst_Package : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_tmpDir;
    QString m_qstrPackage;
    QString m_qstrRoot;

private slots:
    void initTestCase()
    {
        QByteArray qbaOutput;
        const QString qstrOut = m_tmpDir.filePath(QStringLiteral("out"));
        QCOMPARE(Run(QStringLiteral("cpack"), {"-G", "DEB", "-B", qstrOut, "--config",
                                               QStringLiteral(QUILL_BUILD_DIR "/CPackConfig.cmake")},
                     &qbaOutput),
                 0);
        const QStringList qlstDebs = QDir(qstrOut).entryList({"quillplayer_*.deb"});
        QVERIFY2(qlstDebs.size() == 1, qbaOutput.constData());
        m_qstrPackage = QDir(qstrOut).filePath(qlstDebs.first());
        m_qstrRoot = m_tmpDir.filePath(QStringLiteral("root"));
        QCOMPARE(Run(QStringLiteral("dpkg-deb"), {"-x", m_qstrPackage, m_qstrRoot}), 0);
    }

    void controlFields()
    {
        QByteArray qbaDepends;
        QCOMPARE(Run(QStringLiteral("dpkg-deb"), {"-f", m_qstrPackage, "Depends"}, &qbaDepends), 0);
        // Computed from the libraries, plus the plug-in nothing links.
        for (const char* pPackage : {"libavformat", "libsdl2", "libqt5widgets5", "libqt5svg5"})
            QVERIFY2(qbaDepends.contains(pPackage), qbaDepends.constData());
        QVERIFY(!qbaDepends.contains("quillplayer"));
    }

    void desktopFiles()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate")).isEmpty())
            QSKIP("desktop-file-validate is not installed");
        QByteArray qbaOutput;
        QCOMPARE(Run(QStringLiteral("desktop-file-validate"),
                     {m_qstrRoot + QStringLiteral("/usr/share/applications/quillplayer.desktop")}, &qbaOutput),
                 0);
        QVERIFY2(qbaOutput.trimmed().isEmpty(), qbaOutput.constData());
    }

    void lintianFindsNoError()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("lintian")).isEmpty())
            QSKIP("lintian is not installed");
        QByteArray qbaOutput;
        Run(QStringLiteral("lintian"), {m_qstrPackage}, &qbaOutput);
        for (const QByteArray& qbaLine : qbaOutput.split('\n'))
            QVERIFY2(!qbaLine.startsWith("E:"), qbaLine.constData());
    }

    // A new user starts the unpacked player on a clip: it plays, and
    // everything it keeps lands in that user's home, nothing in the tree.
    void playsForAFreshUser()
    {
        const QString qstrHome = m_tmpDir.filePath(QStringLiteral("home"));
        QVERIFY(QDir().mkpath(qstrHome));
        const QString qstrClip = m_tmpDir.filePath(QStringLiteral("clip.mp4"));
        QCOMPARE(Run(QStringLiteral("ffmpeg"), {"-v", "error", "-f", "lavfi", "-i",
                                                "testsrc2=size=640x360:rate=25:duration=20", "-c:v",
                                                "libx264", "-preset", "ultrafast", qstrClip}),
                 0);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("HOME"), qstrHome);
        for (const char* pName : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
            env.remove(QLatin1String(pName));
        const QDateTime timeBefore = QDateTime::currentDateTime().addSecs(-1);
        const QString qstrShot = m_tmpDir.filePath(QStringLiteral("shot.png"));
        QByteArray qbaOutput;
        QCOMPARE(Run(m_qstrRoot + QStringLiteral("/usr/bin/quillplayer"),
                     {qstrClip, "--screenshot", qstrShot, "--after", "3000"}, &qbaOutput, env),
                 0);
        const QImage image(qstrShot);
        QVERIFY2(!image.isNull(), qbaOutput.constData());
        QVERIFY(image.pixelColor(image.width() / 2, image.height() / 2).lightness() > 40);

        QVERIFY(QFile::exists(qstrHome + QStringLiteral("/.local/share/quillplayer/HistroyInfo.json")));
        QVERIFY(QFile::exists(qstrHome + QStringLiteral("/.config/quillplayer/QuillPlayer.json")));
        QVERIFY(!QDir(qstrHome + QStringLiteral("/.local/state/quillplayer")).isEmpty());
        // The tool beside it runs from the package as well.
        QByteArray qbaInfo;
        QCOMPARE(Run(m_qstrRoot + QStringLiteral("/usr/bin/sdvtool"), {"--help"}, &qbaInfo, env), 0);
        QVERIFY(qbaInfo.contains("seal"));
        QDirIterator it(m_qstrRoot, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            it.next();
            QVERIFY2(it.fileInfo().lastModified() < timeBefore, qPrintable(it.filePath()));
        }
    }
};

QTEST_GUILESS_MAIN(tst_Package)
#include "tst_Package.moc"
