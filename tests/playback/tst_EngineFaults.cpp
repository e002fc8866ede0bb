#include <QElapsedTimer>
#include <QFile>
#include <QScopeGuard>
#include <QThread>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "CLS_StallGuard.h"
#include "CLS_VideoPlayerEngine.h"
#include "EngineTestMedia.h"

using RK_Framework::VideoPlayer::CLS_StallGuard;
using RK_Framework::VideoPlayer::CLS_VideoPlayerEngine;

namespace {

// Longest a call from the window may take before the player counts as hung.
constexpr qint64 kHungMs = 1000;

// What the player showed and reported, and the slowest call from the window.
struct ST_Watch : QuillTest::ST_Probe
{
    qint64 m_i64SlowestMs = 0;
    QString m_qstrSlowest;
};

// Runs one call the way the window makes it, keeping the slowest.
template <typename Fn>
auto Timed(ST_Watch& _stWatch, const char* _pName, Fn&& _fn)
{
    QElapsedTimer qTimer;
    qTimer.start();
    auto result = _fn();
    if (qTimer.elapsed() > _stWatch.m_i64SlowestMs) {
        _stWatch.m_i64SlowestMs = qTimer.elapsed();
        _stWatch.m_qstrSlowest = QLatin1String(_pName);
    }
    return result;
}

}  // namespace

// What a recorder's files do to a player in a control room: grow while they
// play, vanish or shrink under it, or stop answering. Nothing may crash, no
// call from the window may hang, and the end is raised once at most.
class TestEngineFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fileChangesWhilePlaying_data();
    void fileChangesWhilePlaying();
    void sourceGoesSilent_data();
    void sourceGoesSilent();

private:
    // Hands a new player to _fnUse, then destroys it: no call may have hung,
    // and the end may have come once per pass.
    template <typename Fn>
    void RunPlayer(Fn&& _fnUse);
    QString m_qstrPs, m_qstrMp4;
    QTemporaryDir m_qtmpDir;
};

void TestEngineFaults::initTestCase()
{
    QVERIFY(m_qtmpDir.isValid());
    const QStringList qlstX264{"-c:v", "libx264", "-preset", "veryfast", "-g", "25",
                               "-pix_fmt", "yuv420p"};
    m_qstrPs = QuillTest::MakeClip(m_qtmpDir.path(), {"rec.ps", qlstX264, {"-c:a", "mp2"},
                                                      {"-f", "mpeg"}, 320, 240, 25, 6.0, 0});
    m_qstrMp4 = QuillTest::MakeClip(m_qtmpDir.path(), {"clip.mp4", qlstX264, {"-c:a", "aac"},
                                                       {}, 320, 240, 25, 6.0, 0});
    QVERIFY(!m_qstrPs.isEmpty() && !m_qstrMp4.isEmpty());
}

template <typename Fn>
void TestEngineFaults::RunPlayer(Fn&& _fnUse)
{
    ST_Watch stWatch;
    {
        std::unique_ptr<CLS_VideoPlayerEngine> pPlayer = QuillTest::MakeProbedPlayer(stWatch);
        _fnUse(pPlayer.get(), stWatch);
        Timed(stWatch, "destroy", [&] { pPlayer.reset(); return true; });
    }
    QVERIFY2(stWatch.m_i64SlowestMs < kHungMs,
             qPrintable(QStringLiteral("%1 took %2 ms").arg(stWatch.m_qstrSlowest).arg(stWatch.m_i64SlowestMs)));
    // One pass reaches the end at most once; a restart may begin another.
    QVERIFY2(stWatch.m_iEnds.load() <= 2, qPrintable(QString::number(stWatch.m_iEnds)));
}

void TestEngineFaults::fileChangesWhilePlaying_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("change");
    for (const char* pSource : {"rec.ps", "clip.mp4"}) {
        for (const char* pChange : {"grows", "truncated", "emptied", "deleted"})
            QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(pSource, pChange)))
                << pSource << pChange;
    }
}

void TestEngineFaults::fileChangesWhilePlaying()
{
    QFETCH(QString, source);
    QFETCH(QString, change);
    QFile qfSource(m_qtmpDir.filePath(source));
    QVERIFY(qfSource.open(QIODevice::ReadOnly));
    const QByteArray qbaWhole = qfSource.readAll();
    const QString qstrPath = m_qtmpDir.filePath(QStringLiteral("live_") + source);
    QFile qfLive(qstrPath);
    QVERIFY(qfLive.open(QIODevice::WriteOnly | QIODevice::Truncate));
    // A recording still being written starts with its first third.
    const bool blGrows = change == QLatin1String("grows");
    const QByteArray qbaStart = blGrows ? qbaWhole.left(qbaWhole.size() / 3) : qbaWhole;
    QVERIFY(qfLive.write(qbaStart) == qbaStart.size() && qfLive.flush());

    RunPlayer([&](CLS_VideoPlayerEngine* p, ST_Watch& stWatch) {
        // An MP4 cut short has no index yet: refusing it is as right as playing it.
        if (Timed(stWatch, "OpenFile", [&] { return p->OpenFile(qstrPath.toStdString()); })) {
            QVERIFY(Timed(stWatch, "Play", [&] { return p->Play(0); }));
            QTRY_VERIFY(stWatch.m_iShown.load() > 3);
        }
        if (blGrows) {
            QVERIFY(qfLive.write(qbaWhole.mid(qbaStart.size())) > 0 && qfLive.flush());
        } else if (change == QLatin1String("truncated")) {
            QVERIFY(qfLive.resize(qbaWhole.size() / 2));
        } else if (change == QLatin1String("emptied")) {
            QVERIFY(qfLive.resize(0));
        } else {
            QVERIFY(QFile::remove(qstrPath));
        }
        // Whatever is left is played, sought and stepped in, restarted.
        for (int iPercent : {90, 10, 60}) {
            Timed(stWatch, "SetPlayPos", [&] { return p->SetPlayPos(iPercent); });
            QTest::qWait(150);
        }
        Timed(stWatch, "Pause", [&] { return p->Pause(true); });
        Timed(stWatch, "StepForward", [&] { return p->StepForward(); });
        Timed(stWatch, "StepBack", [&] { return p->StepBack(); });
        Timed(stWatch, "Pause", [&] { return p->Pause(false); });
        Timed(stWatch, "Stop", [&] { return p->Stop(); });
        Timed(stWatch, "Play", [&] { return p->Play(0); });
        QTest::qWait(300);
    });
}

void TestEngineFaults::sourceGoesSilent_data()
{
    // How much of the recording comes before the source goes silent.
    QTest::addColumn<int>("iPercent");
    QTest::newRow("while opening") << 2;
    QTest::newRow("while playing") << 100;
}

// A source that stops answering (a pipe here, a hung network share for
// real) holds a read that cannot be called off: the window's calls return
// all the same, and the player plays the next file.
void TestEngineFaults::sourceGoesSilent()
{
    QFETCH(int, iPercent);
    const QString qstrPipe = m_qtmpDir.filePath(QStringLiteral("silent%1.ps").arg(iPercent));
    QVERIFY(::mkfifo(qstrPipe.toLocal8Bit().constData(), 0600) == 0);
    QFile qfSource(m_qstrPs);
    QVERIFY(qfSource.open(QIODevice::ReadOnly));
    const QByteArray qbaHead = qfSource.read(qfSource.size() * iPercent / 100);
    // Opened for reading too, so that opening never waits and the reader
    // never sees the end; what the player does not take in 3 s stays unsent.
    // (A program stream is read 5 s in before it counts as opened.)
    std::atomic<bool> blRelease{false};
    std::thread writer([qstrPipe, qbaHead, &blRelease] {
        const int iFd = ::open(qstrPipe.toLocal8Bit().constData(), O_RDWR | O_NONBLOCK);
        QElapsedTimer qTimer;
        qTimer.start();
        for (qint64 iDone = 0; iFd >= 0 && iDone < qbaHead.size() && qTimer.elapsed() < 3000;) {
            pollfd stPoll{iFd, POLLOUT, 0};
            if (::poll(&stPoll, 1, 100) > 0)
                iDone += std::max<qint64>(0, ::write(iFd, qbaHead.constData() + iDone, qbaHead.size() - iDone));
        }
        while (!blRelease && qTimer.elapsed() < 30000)
            QThread::msleep(50);
        if (iFd >= 0) ::close(iFd);
    });
    const auto releaseWriter = [&] {
        blRelease = true;
        if (writer.joinable()) writer.join();
    };
    const auto joinWriter = qScopeGuard(releaseWriter);
    RunPlayer([&](CLS_VideoPlayerEngine* p, ST_Watch& stWatch) {
        const bool blOpen = Timed(stWatch, "OpenFile", [&] { return p->OpenFile(qstrPipe.toStdString()); });
        QCOMPARE(blOpen, iPercent > 10);
        if (blOpen) {
            QVERIFY(p->Play(0));
            QTRY_VERIFY(stWatch.m_iShown.load() > 3);
            while (p->Fast() == 0) {}
            // The pictures run out (no new one for 300 ms; this waits for a
            // time without events, which no signal marks), and the demuxer
            // waits in its read.
            for (int i = 0, iShown = -1; i < 100 && iShown != stWatch.m_iShown.load(); ++i) {
                iShown = stWatch.m_iShown.load();
                QTest::qWait(300);
            }
        }
        Timed(stWatch, "Stop", [&] { return p->Stop(); });
        QVERIFY(Timed(stWatch, "OpenFile", [&] { return p->OpenFile(m_qstrMp4.toStdString()); }));
        const int iShown = stWatch.m_iShown.load();
        QVERIFY(p->Play(0));
        QTRY_VERIFY(stWatch.m_iShown.load() > iShown + 3);
    });
    // What was left waiting ends once the source answers.
    QVERIFY(CLS_StallGuard::Outstanding() > 0);
    releaseWriter();
    QTRY_COMPARE(CLS_StallGuard::Outstanding(), 0);
}

QTEST_GUILESS_MAIN(TestEngineFaults)
#include "tst_EngineFaults.moc"
