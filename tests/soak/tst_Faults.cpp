// The player when its surroundings fail: a library of the installation
// missing, and files that change, vanish or stall while they play, and a
// storm of commands from the user. Nothing crashes, the GUI thread is never
// held for a second, and the player still plays afterwards.

#include "PlayerRig.h"
#include "QuillTestSupport.h"

#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QtTest>

#include <random>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kHangMs = 20000;
constexpr int kStallMs = 1000;
constexpr int kClipSeconds = 20;

// build/bin with one library left out; the host binary is a real copy so
// that it takes this folder as its installation.
bool CopyInstallationWithout(const QString& _qstrDir, const QString& _qstrLeftOut)
{
    const QDir dirBin(QuillTest::BinDir());
    for (const QString& qstrName : dirBin.entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        if (qstrName == _qstrLeftOut) continue;
        const QString qstrTarget = _qstrDir + QLatin1Char('/') + qstrName;
        const bool blDone = qstrName == QLatin1String("quillplayer")
                                ? QFile::copy(dirBin.filePath(qstrName), qstrTarget)
                                : QFile::link(dirBin.filePath(qstrName), qstrTarget);
        if (!blDone) return false;
    }
    return QFile::setPermissions(_qstrDir + QStringLiteral("/quillplayer"),
                                 QFile::ExeOwner | QFile::ReadOwner | QFile::WriteOwner);
}

}  // namespace

class tst_Faults : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QuillTest::PlayerRig> m_pRig;
    QString m_qstrClip;

    // The player stopped what it was doing or still plays, and plays a good
    // file from the start afterwards.
    void PlaysAgain()
    {
        QVERIFY(m_pRig->Bar("SignStop"));
        QVERIFY(m_pRig->Open(m_qstrClip));
        QTRY_VERIFY_WITH_TIMEOUT(m_pRig->PlayedShown() >= 2, kHangMs);
    }

private slots:
    void initTestCase()
    {
        m_pRig = std::make_unique<QuillTest::PlayerRig>();
        QVERIFY(m_pRig->IsReady());
        // The host's console is read line by line: no warning about the
        // environment of this machine in between.
        QVERIFY(QDir().mkpath(m_pRig->WorkDir().FilePath(QStringLiteral("runtime"))));
        QFile::setPermissions(m_pRig->WorkDir().FilePath(QStringLiteral("runtime")), QFile::ExeOwner | QFile::ReadOwner | QFile::WriteOwner);
        qputenv("XDG_RUNTIME_DIR", m_pRig->WorkDir().FilePath(QStringLiteral("runtime")).toLocal8Bit());
        m_qstrClip = m_pRig->MakeClip(QStringLiteral("clip.ts"), kClipSeconds);
        QVERIFY(!m_qstrClip.isEmpty());
        m_pRig->CreateDialog();
    }

    void cleanupTestCase() { m_pRig.reset(); }

    void missingLibrary_data()
    {
        QTest::addColumn<QString>("qstrLeftOut");
        QTest::addColumn<QStringList>("qlstOptions");
        // Whether playing a plain file asks for the library at all.
        QTest::addColumn<bool>("blAsked");
        for (const char* pService : {"KoLog", "KoParam", "KoTaskPool", "KoAppManager", "KoColorManage"})
            QTest::newRow(pService) << QStringLiteral("lib%1.so").arg(QLatin1String(pService)) << QStringList() << true;
        QTest::newRow("WgtMsgBox") << QStringLiteral("libWgtMsgBox.so") << QStringList() << false;
        QTest::newRow("QGLRender") << QStringLiteral("libQGLRender.so") << QStringList{"--rendering", "gl"} << true;
    }
    // The host starts, shows the picture, keeps the position and ends with 0;
    // the console says only what the library loader says.
    void missingLibrary()
    {
        QFETCH(QString, qstrLeftOut);
        QFETCH(QStringList, qlstOptions);
        QFETCH(bool, blAsked);
        QTemporaryDir installDir;
        QTemporaryDir workDir;
        QVERIFY(CopyInstallationWithout(installDir.path(), qstrLeftOut));
        const QString qstrShot = workDir.filePath(QStringLiteral("shot.png"));
        QByteArray qbaOutput;
        // A search path set for the build (the sanitized run sets one) would
        // find the library left out there.
        const QByteArray qbaSearchPath = qgetenv("LD_LIBRARY_PATH");
        qputenv("LD_LIBRARY_PATH", installDir.path().toLocal8Bit());
        const auto restore = qScopeGuard([&] { qputenv("LD_LIBRARY_PATH", qbaSearchPath); });
        QCOMPARE(QuillTest::RunProgram(installDir.filePath(QStringLiteral("quillplayer")),
                                       QStringList{m_qstrClip, "--workdir", workDir.path(), "--screenshot", qstrShot,
                                                   "--after", "2000"} +
                                           qlstOptions,
                                       &qbaOutput, 60000),
                 0);
        const QImage image(qstrShot);
        QVERIFY2(!image.isNull(), qbaOutput.constData());
        QVERIFY(image.pixelColor(image.width() / 2, image.height() / 2).lightness() > 40);
        QVERIFY(QuillTest::NewestHistroyEntry(workDir.path())["pos"].toInt(-1) >= 1);
        // The loader's lines, the render library's note on the renderer and
        // the host's word on the screenshot; nothing else.
        const QRegularExpression reKnown(
            QStringLiteral("^(load dll (- .*|\\[.*\\] sucess|\\[.*%1\\] fail !!! .*)|QGLRender: OpenGL renderer .*|"
                           "quillplayer: screenshot saved to .*)$")
                .arg(QRegularExpression::escape(qstrLeftOut)));
        for (const QString& qstrLine : QString::fromLocal8Bit(qbaOutput).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            QVERIFY2(reKnown.match(qstrLine).hasMatch(), qPrintable(qstrLine));
        QCOMPARE(qbaOutput.contains(qstrLeftOut.toLocal8Bit() + "] fail !!!"), blAsked);
    }

    // A source that stops delivering: the GUI thread keeps running, and the
    // player turns to the next file when asked.
    void stallingPipe()
    {
        const QString qstrPipe = m_pRig->WorkDir().FilePath(QStringLiteral("stalling.ts"));
        QVERIFY(::mkfifo(qstrPipe.toLocal8Bit().constData(), 0600) == 0);
        QFile qfClip(m_qstrClip);
        QVERIFY(qfClip.open(QIODevice::ReadOnly));
        // Less than a pipe holds, so the writer never waits for its reader.
        const QByteArray qbaHead = qfClip.read(32 * 1024);
        // The writer hands over the start of a stream and then goes silent
        // for a while, holding its end open (read and write, so that opening
        // it never waits and it stays open across the reader's reopening).
        std::thread writer([qstrPipe, qbaHead] {
            const int iFd = ::open(qstrPipe.toLocal8Bit().constData(), O_RDWR);
            if (iFd < 0) return;
            if (::write(iFd, qbaHead.constData(), qbaHead.size()) < 0) {}
            ::sleep(4);
            ::close(iFd);
        });
        QuillTest::GuiStallMeter meter;
        QVERIFY(m_pRig->Open(qstrPipe));
        QTest::qWait(3000);
        const qint64 iLongest = meter.LongestGapMs();
        writer.join();
        QVERIFY2(iLongest < kStallMs, qPrintable(QString::number(iLongest)));
        PlaysAgain();
    }

    void randomOperations()
    {
        const int iOperations = qEnvironmentVariableIntValue("QUILL_FAULT_OPERATIONS") > 0
                                    ? qEnvironmentVariableIntValue("QUILL_FAULT_OPERATIONS")
                                    : 2000;
        QVERIFY(m_pRig->Open(m_qstrClip));
        QTRY_VERIFY_WITH_TIMEOUT(m_pRig->PlayedShown() >= 1, kHangMs);
        const char* const arrSignals[] = {"SignVideoPlayOrPause", "SignFastPlay", "SignSlowPlay", "SignStepUp",
                                          "SignStop", "SignSliderClicked", "SignSliderMoved", "SignSpeedChange",
                                          "SignStepBack", "SignSoundOpenOrClose", "SignSoundSliderMoved"};
        std::mt19937 random(20261125);
        // Each command holds the GUI thread for less than the limit, and so
        // does each round of the events they leave behind.
        QElapsedTimer timer;
        qint64 iLongestCommand = 0;
        QByteArray qbaLongest;
        const auto measure = [&](const QByteArray& _qbaWhat) {
            if (timer.elapsed() > iLongestCommand) {
                iLongestCommand = timer.elapsed();
                qbaLongest = _qbaWhat;
            }
            timer.start();
        };
        for (int i = 0; i < iOperations; ++i) {
            QByteArray qbaSignal = arrSignals[random() % 11];
            timer.start();
            if (i % 97 == 96) {
                m_pRig->Open(m_qstrClip);
                qbaSignal = "OpenVideoFile";
            } else if (qbaSignal.contains("Slider")) {
                m_pRig->Bar(qbaSignal.constData(), static_cast<int>(random() % 101));
            } else if (qbaSignal == "SignSpeedChange") {
                m_pRig->Bar(qbaSignal.constData(), static_cast<int>(random() % 9));
            } else {
                m_pRig->Bar(qbaSignal.constData());
            }
            measure(qbaSignal);
            if (i % 5 == 0) {
                QCoreApplication::processEvents();
                measure("events");
            }
        }
        qInfo("longest command: %s, %lld ms", qbaLongest.constData(), iLongestCommand);
        QVERIFY(iLongestCommand < kStallMs);
        PlaysAgain();
    }
};

QTEST_MAIN(tst_Faults)
#include "tst_Faults.moc"
