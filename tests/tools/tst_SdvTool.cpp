#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include "EngineTestMedia.h"
#include "QuillTestSupport.h"

namespace {
const QByteArray kPassword = "correct horse";
constexpr int kHeader = 192;
constexpr int kChunk = 65536 + 16;

// Runs sdvtool with _qbaInput on standard input.
int Run(const QStringList& _qlstArgs, const QByteArray& _qbaInput = QByteArray(),
        QByteArray* _pOutput = nullptr)
{
    QProcess qProcess;
    qProcess.start(QuillTest::BinPath(QStringLiteral("sdvtool")), _qlstArgs);
    qProcess.write(_qbaInput);
    qProcess.closeWriteChannel();
    if (!qProcess.waitForFinished(60000)) return -1;
    const QByteArray qbaOutput = qProcess.readAllStandardOutput() + qProcess.readAllStandardError();
    // Whatever happened, the password is never repeated back.
    if (qbaOutput.contains(kPassword) || qbaOutput.contains("new secret")) return -2;
    if (_pOutput) *_pOutput = qbaOutput;
    return qProcess.exitStatus() == QProcess::NormalExit ? qProcess.exitCode() : -1;
}

}  // namespace

class TestSdvTool : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void roundTrip_data();
    void roundTrip();
    void failuresHaveTheirOwnStatus_data();
    void failuresHaveTheirOwnStatus();
    void passwdRewrapsTheKeyOnly();

private:
    // Every file of the tests lives in this working directory.
    QuillTest::ScopedWorkDir m_workDir;
};

void TestSdvTool::initTestCase()
{
    const QStringList qlstX264{"-c:v", "libx264", "-preset", "veryfast", "-g", "10"};
    QVERIFY(!QuillTest::MakeClip(".", {"clip.mp4", qlstX264, {"-c:a", "aac"}, {}, 320, 240, 25, 2})
                 .isEmpty());
    const QStringList qlstMpeg2{"-c:v", "mpeg2video", "-q:v", "2"};
    QVERIFY(!QuillTest::MakeClip(".", {"clip.ps", qlstMpeg2, {}, {"-f", "mpeg"}, 320, 240, 25, 2})
                 .isEmpty());
    QCOMPARE(QuillTest::SealClip("clip.ps", "sealed.sdv", kPassword), 0);
    const QByteArray qbaSealed = QuillTest::ReadFile("sealed.sdv");
    QVERIFY(qbaSealed.size() > kHeader + 2 * kChunk);
    QByteArray qbaBadHeader = qbaSealed, qbaBadChunk = qbaSealed;
    qbaBadHeader[30] = static_cast<char>(qbaBadHeader[30] ^ 1);
    qbaBadChunk[kHeader + kChunk + 5] = static_cast<char>(qbaBadChunk[kHeader + kChunk + 5] ^ 1);
    QVERIFY(QuillTest::WriteFile("bad_header.sdv", qbaBadHeader));
    QVERIFY(QuillTest::WriteFile("bad_chunk.sdv", qbaBadChunk));
    QVERIFY(QuillTest::WriteFile("cut.sdv", qbaSealed.left(kHeader + kChunk + 100)));
    QVERIFY(QuillTest::WriteFile("extended.sdv", qbaSealed + QByteArray(100, 'x')));
    QVERIFY(QuillTest::WriteFile("password.txt", kPassword + "\r\n"));
}

void TestSdvTool::roundTrip_data()
{
    QTest::addColumn<QString>("media");
    QTest::addColumn<QStringList>("sealArgs");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("info");
    QTest::newRow("mp4 sealed") << "clip.mp4" << QStringList() << kPassword + '\n'
                                << QByteArray("payload: sealed");
    QTest::newRow("ps sealed, password file")
        << "clip.ps" << QStringList{"--password-file", "password.txt"} << QByteArray()
        << QByteArray("codec: mpeg2video");
    QTest::newRow("mp4 plain") << "clip.mp4" << QStringList{"--plain"} << QByteArray()
                               << QByteArray("payload: plain");
}

void TestSdvTool::roundTrip()
{
    QFETCH(QString, media);
    QFETCH(QStringList, sealArgs);
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, info);
    QFile::remove("out.sdv");
    QFile::remove("back");
    QCOMPARE(Run(sealArgs + QStringList{"seal", media, "out.sdv"}, input), 0);
    QByteArray qbaOutput;
    QCOMPARE(Run({"info", "out.sdv"}, {}, &qbaOutput), 0);
    for (const QByteArray& qbaField :
         {info, QByteArray("duration ms: 2000"), QByteArray("picture: 320x240")})
        QVERIFY2(qbaOutput.contains(qbaField), qbaOutput.constData());
    QCOMPARE(Run(sealArgs + QStringList{"verify", "out.sdv"}, input), 0);
    QCOMPARE(Run(sealArgs + QStringList{"unseal", "out.sdv", "back"}, input), 0);
    QCOMPARE(QuillTest::ReadFile("back"), QuillTest::ReadFile(media));
}

void TestSdvTool::failuresHaveTheirOwnStatus_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("status");
    const QByteArray qbaRight = kPassword + '\n';
    QTest::newRow("no command") << QStringList() << QByteArray() << 1;
    QTest::newRow("password as an option")
        << QStringList{"--password", "x", "verify", "sealed.sdv"} << QByteArray() << 1;
    QTest::newRow("empty password")
        << QStringList{"seal", "clip.mp4", "out"} << QByteArray("\n") << 1;
    QTest::newRow("wrong password")
        << QStringList{"unseal", "sealed.sdv", "out"} << QByteArray("wrong\n") << 2;
    QTest::newRow("not an sdv file") << QStringList{"info", "clip.mp4"} << QByteArray() << 3;
    QTest::newRow("damaged header") << QStringList{"info", "bad_header.sdv"} << QByteArray() << 3;
    QTest::newRow("damaged chunk")
        << QStringList{"unseal", "bad_chunk.sdv", "out"} << qbaRight << 3;
    QTest::newRow("cut short") << QStringList{"verify", "cut.sdv"} << qbaRight << 3;
    QTest::newRow("extended") << QStringList{"verify", "extended.sdv"} << qbaRight << 3;
    QTest::newRow("missing") << QStringList{"unseal", "missing.sdv", "out"} << qbaRight << 4;
}

void TestSdvTool::failuresHaveTheirOwnStatus()
{
    QFETCH(QStringList, args);
    QFETCH(QByteArray, input);
    QFETCH(int, status);
    const QStringList qlstBefore = QDir().entryList(QDir::Files);
    QByteArray qbaOutput;
    QCOMPARE(Run(args, input, &qbaOutput), status);
    QVERIFY(!qbaOutput.isEmpty());
    // No output file, not even a part of one.
    QCOMPARE(QDir().entryList(QDir::Files), qlstBefore);
}

void TestSdvTool::passwdRewrapsTheKeyOnly()
{
    QVERIFY(QFile::copy("sealed.sdv", "passwd.sdv"));
    const QByteArray qbaBefore = QuillTest::ReadFile("passwd.sdv");
    QCOMPARE(Run({"passwd", "passwd.sdv"}, "wrong\nnew secret\n"), 2);
    QCOMPARE(QuillTest::ReadFile("passwd.sdv"), qbaBefore);
    QCOMPARE(Run({"passwd", "passwd.sdv"}, kPassword + "\nnew secret\n"), 0);
    const QByteArray qbaAfter = QuillTest::ReadFile("passwd.sdv");
    QVERIFY(qbaAfter.left(kHeader) != qbaBefore.left(kHeader));
    QCOMPARE(qbaAfter.mid(kHeader), qbaBefore.mid(kHeader));
    QCOMPARE(Run({"verify", "passwd.sdv"}, kPassword + '\n'), 2);
    QCOMPARE(Run({"verify", "passwd.sdv"}, "new secret\n"), 0);
}

QTEST_GUILESS_MAIN(TestSdvTool)
#include "tst_SdvTool.moc"
