// The player when its surroundings fail: a source that stalls while it
// plays, and a storm of commands from the user. Nothing crashes, the GUI
// thread is never held for a second, and the player still plays afterwards.

#include "PlayerRig.h"

#include <random>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using QuillTest::kHangMs;
constexpr int kStallMs = 1000;

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
        m_qstrClip = m_pRig->MakeClip(
            "clip.ts", {"-c:v", "libx264", "-preset", "ultrafast", "-g", "50"}, {"-c:a", "aac"});
        QVERIFY(!m_qstrClip.isEmpty());
        m_pRig->CreateDialog();
    }

    void cleanupTestCase() { m_pRig.reset(); }

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

    // Random commands of the control bar, now and then a new file: each
    // holds the GUI thread for less than the limit, and so does each round of
    // the events they leave behind.
    void randomOperations()
    {
        const int iOperations = qEnvironmentVariableIntValue("QUILL_FAULT_OPERATIONS") > 0
                                    ? qEnvironmentVariableIntValue("QUILL_FAULT_OPERATIONS")
                                    : 2000;
        QVERIFY(m_pRig->Open(m_qstrClip));
        QTRY_VERIFY_WITH_TIMEOUT(m_pRig->PlayedShown() >= 1, kHangMs);
        // Each signal with the range of its argument; 0 for none.
        const struct { const char* pName; int iRange; } arrSignals[] = {
            {"SignVideoPlayOrPause", 0}, {"SignFastPlay", 0},       {"SignSlowPlay", 0},
            {"SignStepUp", 0},           {"SignStop", 0},           {"SignSliderClicked", 101},
            {"SignSliderMoved", 101},    {"SignSpeedChange", 9},    {"SignStepBack", 0},
            {"SignSoundOpenOrClose", 0}, {"SignSoundSliderMoved", 101}};
        std::mt19937 random(20261125);
        QElapsedTimer timer;
        qint64 iLongest = 0;
        const char* pLongest = "";
        const auto measure = [&](const char* _pWhat) {
            const qint64 iMs = timer.restart();
            if (iMs > iLongest) {
                iLongest = iMs;
                pLongest = _pWhat;
            }
        };
        for (int i = 0; i < iOperations; ++i) {
            const auto& stSignal = arrSignals[random() % std::size(arrSignals)];
            const bool blOpen = i % 97 == 96;
            timer.start();
            if (blOpen)
                m_pRig->Open(m_qstrClip);
            else
                m_pRig->Bar(stSignal.pName, stSignal.iRange ? int(random() % stSignal.iRange) : -1);
            measure(blOpen ? "OpenVideoFile" : stSignal.pName);
            if (i % 5 == 0) {
                QCoreApplication::processEvents();
                measure("events");
            }
        }
        qInfo("longest command: %s, %lld ms", pLongest, iLongest);
        QVERIFY(iLongest < kStallMs);
        PlaysAgain();
    }
};

QTEST_MAIN(tst_Faults)
#include "tst_Faults.moc"
