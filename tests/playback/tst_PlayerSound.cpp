#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <cmath>
#include <cstring>

#include "CLS_VideoPlayerEngine.h"
#include "EngineTestMedia.h"

extern "C" {
#include <libavutil/frame.h>
}

using RK_Framework::VideoPlayer::CLS_VideoPlayerEngine;

namespace {

// The disk driver writes what the card would play: signed 16-bit samples at
// the rate the clip has (48 kHz, one channel), one buffer per callback.
constexpr qint64 kBytesPerSecond = 48000 * 2;
// Samples still on their way when a setting changes: two buffers, and what a
// busy machine lets the card's writer fall behind: a quarter of a second.
constexpr qint64 kSettle = kBytesPerSecond / 4;

}  // namespace

class TestPlayerSound : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void toneFollowsSoundSettings_data();
    void toneFollowsSoundSettings();
    void noSoundDeviceStillPlays();

private:
    // The level (root mean square) of what the card plays over the next _dSeconds.
    double Listen(double _dSeconds);

    QTemporaryDir m_qtmpDir;
    QString m_qstrClip;
    QString m_qstrSoundOnly;
    QString m_qstrOut;
};

void TestPlayerSound::initTestCase()
{
    QVERIFY(m_qtmpDir.isValid());
    QuillTest::ST_Clip stClip{"tone.mp4",
                              {"-c:v", "libx264", "-preset", "veryfast", "-pix_fmt", "yuv420p"},
                              {"-c:a", "aac"},
                              {}};
    stClip.m_dSeconds = 10.0;
    m_qstrClip = QuillTest::MakeClip(m_qtmpDir.path(), stClip);
    QVERIFY(!m_qstrClip.isEmpty());
    // The sound track of an export on its own.
    stClip.m_qstrName = QStringLiteral("tone_sound_only.mp4");
    stClip.m_qlstVideoArgs = QStringList{"-vn"};
    m_qstrSoundOnly = QuillTest::MakeClip(m_qtmpDir.path(), stClip);
    QVERIFY(!m_qstrSoundOnly.isEmpty());
    m_qstrOut = m_qtmpDir.filePath(QStringLiteral("card.raw"));
}

double TestPlayerSound::Listen(double _dSeconds)
{
    const qint64 i64From = (QFileInfo(m_qstrOut).size() + kSettle) & ~qint64(1);
    const qint64 i64To = i64From + qint64(_dSeconds * kBytesPerSecond);
    [&] { QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(m_qstrOut).size() >= i64To, 10000); }();
    QFile qfFile(m_qstrOut);
    if (!qfFile.open(QIODevice::ReadOnly) || !qfFile.seek(i64From)) return -1.0;
    const QByteArray qbaData = qfFile.read(i64To - i64From);
    const int iCount = qbaData.size() / 2;
    double dSum = 0.0;
    for (int i = 0; i < iCount; ++i) {
        qint16 sSample;
        std::memcpy(&sSample, qbaData.constData() + 2 * i, 2);
        dSum += double(sSample) * sSample;
    }
    return iCount > 0 ? std::sqrt(dSum / iCount) : -1.0;
}

void TestPlayerSound::toneFollowsSoundSettings_data()
{
    QTest::addColumn<bool>("pictures");
    QTest::newRow("with pictures") << true;
    QTest::newRow("sound only") << false;
}

void TestPlayerSound::toneFollowsSoundSettings()
{
    QFETCH(bool, pictures);
    qputenv("SDL_AUDIODRIVER", "disk");
    qputenv("SDL_DISKAUDIOFILE", m_qstrOut.toLocal8Bit());
    qunsetenv("SDL_DISKAUDIODELAY");  // the card's own pace, so the clock is real
    QuillTest::ST_Probe stProbe;
    const auto pPlayer = QuillTest::MakeProbedPlayer(stProbe);
    CLS_VideoPlayerEngine& stPlayer = *pPlayer;
    std::atomic<int> iLuma{-1};
    stPlayer.SetFrameObserver([&iLuma](const AVFrame* _pFrame) {
        iLuma = _pFrame->data[0][(_pFrame->height / 2) * _pFrame->linesize[0] + _pFrame->width / 2];
    });
    QVERIFY(stPlayer.OpenFile((pictures ? m_qstrClip : m_qstrSoundOnly).toStdString()));
    QCOMPARE(stPlayer.GetTotalTime(), 10);
    QVERIFY(stPlayer.OpenSound());
    QVERIFY(stPlayer.SetVolume(50));
    QVERIFY(stPlayer.Play(0));

    // A 1 kHz tone at an eighth of full scale, played at half volume.
    const double dLevel = Listen(0.5);
    QVERIFY2(dLevel > 800 && dLevel < 2500, qPrintable(QString::number(dLevel)));

    // Nothing at all once closed, at volume 0, paused, or at any other speed;
    // full volume doubles the level of half volume.
    QVERIFY(stPlayer.CloseSound());
    QCOMPARE(Listen(0.3), 0.0);
    QVERIFY(stPlayer.OpenSound());
    QVERIFY(stPlayer.SetVolume(0));
    QCOMPARE(Listen(0.3), 0.0);
    QVERIFY(stPlayer.SetVolume(100));
    QVERIFY(Listen(0.3) > 1600);
    QVERIFY(stPlayer.Pause(true));
    QCOMPARE(Listen(0.3), 0.0);
    QVERIFY(stPlayer.Pause(false));
    QCOMPARE(stPlayer.Fast(), 0);
    QCOMPARE(Listen(0.3), 0.0);
    QCOMPARE(stPlayer.NormalSpeed(), 0);
    QVERIFY(Listen(0.3) > 1600);
    // Black stands in for the pictures of a sound track.
    QVERIFY(pictures || iLuma.load() == 16);

    // Near the end, the sound plays out and the file ends once.
    QVERIFY(stPlayer.SetPlayPos(90));
    QTRY_VERIFY(stPlayer.ShownTime() >= 9.0);
    QCOMPARE(stPlayer.GetPlayedTime(), 9);
    QVERIFY(Listen(0.3) > 1600);
    QTRY_COMPARE_WITH_TIMEOUT(stProbe.m_iEnds.load(), 1, 5000);
    QTest::qWait(300);
    QCOMPARE(stProbe.m_iEnds.load(), 1);
}

void TestPlayerSound::noSoundDeviceStillPlays()
{
    qputenv("SDL_AUDIODRIVER", "no-such-driver");
    std::atomic<int> iShown{0};
    CLS_VideoPlayerEngine stPlayer;
    stPlayer.SetFrameObserver([&iShown](const AVFrame*) { ++iShown; });
    QVERIFY(stPlayer.OpenFile(m_qstrClip.toStdString()));
    QVERIFY(!stPlayer.OpenSound());
    QVERIFY(!stPlayer.SetVolume(50));
    QVERIFY(!stPlayer.CloseSound());
    QVERIFY(stPlayer.Play(0));
    QTRY_VERIFY(iShown.load() >= 10);
}

QTEST_GUILESS_MAIN(TestPlayerSound)
#include "tst_PlayerSound.moc"
