#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QtMath>

#include <algorithm>
#include <atomic>
#include <climits>
#include <functional>
#include <memory>
#include <thread>

#include "CLS_FrameQueue.h"
#include "CLS_MediaSource.h"
#include "CLS_StepCache.h"
#include "CLS_Timeline.h"
#include "CLS_TimelineScanner.h"
#include "CLS_VideoPlayerEngine.h"
#include "EngineTestMedia.h"
#include "QuillTestSupport.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
}

using namespace RK_Framework::VideoPlayer;

namespace {

using QuillTest::ST_Probe;

// The password the sealed clips carry; more bytes than characters.
const char kPassword[] = "Pass w\xc3\xb6rd 7";
constexpr int kPasswordChars = 11;

// Appends 64x64 pictures (about 6 KiB each) stamped _llFrom.._llTo, each
// following the one before.
void Fill(CLS_StepCache& _stCache, long long _llFrom, long long _llTo)
{
    for (long long llPts = _llFrom; llPts <= _llTo; ++llPts) {
        ST_VideoFrame stFrame;
        stFrame.m_pFrame = av_frame_alloc();
        stFrame.m_pFrame->format = AV_PIX_FMT_YUV420P;
        stFrame.m_pFrame->width = stFrame.m_pFrame->height = 64;
        QVERIFY(av_frame_get_buffer(stFrame.m_pFrame, 0) == 0);
        stFrame.m_llPts = llPts;
        _stCache.Append(stFrame, llPts != _llFrom);
        FreeVideoFrame(stFrame);
    }
}

int ThreadCount()
{
    const QDir qTasks(QStringLiteral("/proc/self/task"));
    return qTasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

// Steps from the picture shown to _iTo one at a time: each step shows the
// neighbour and reports its time (the file leaves _iLate slots empty after
// picture 0).
void StepTo(CLS_VideoPlayerEngine& _player, const ST_Probe& _stProbe, int _iTo, int _iFps,
            int _iLate = 0)
{
    for (int iShown = _stProbe.m_iLast.load(); iShown != _iTo;) {
        const bool blForward = iShown < _iTo;
        iShown += blForward ? 1 : -1;
        QVERIFY(blForward ? _player.StepForward() : _player.StepBack());
        QCOMPARE(_stProbe.m_iLast.load(), iShown);
        QCOMPARE(qRound(_player.ShownTime() * _iFps), iShown + (iShown > 0 ? _iLate : 0));
    }
}

// The number in a still's top band (see EngineTestMedia), from its RGB.
int NumberOf(const ST_ShownPicture& _stPicture)
{
    const int iStride = _stPicture.m_iWidth * 3;
    int iNumber = 0;
    for (int iBit = 0; iBit < 10; ++iBit) {
        const int iX = (iBit * 32 + 16) * _stPicture.m_iWidth / 320;
        if (_stPicture.m_vecRgb[16 * iStride + iX * 3] > 128) iNumber |= 1 << iBit;
    }
    return iNumber;
}

}  // namespace

class TestPlayerEngine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void seeksAndStepsFrameExactly_data();
    void seeksAndStepsFrameExactly();
    void joinedRecordingsCountRecordedTime_data();
    void joinedRecordingsCountRecordedTime();
    void stepCacheStaysWithinBudget();
    void frameQueueWaiterNeverQueuesStale_data();
    void frameQueueWaiterNeverQueuesStale();
    void scannerSamplesLargeFiles_data();
    void scannerSamplesLargeFiles();
    void opensOnlyWhatPlays_data();
    void opensOnlyWhatPlays();
    void shownPicture_data();
    void shownPicture();

private:
    // A player reporting into _stProbe, with _qstrName open (when given).
    std::unique_ptr<CLS_VideoPlayerEngine> MakePlayer(ST_Probe& _stProbe,
                                                      const QString& _qstrName = QString());
    std::string Clip(const QString& _qstrName) const
    {
        return m_qtmpDir.filePath(_qstrName).toStdString();
    }

    QTemporaryDir m_qtmpDir;
    // When sealed.mp4 was made: its header's clock lies in between.
    qint64 m_i64SealedFromMs = 0;
    qint64 m_i64SealedToMs = 0;
};

std::unique_ptr<CLS_VideoPlayerEngine> TestPlayerEngine::MakePlayer(ST_Probe& _stProbe,
                                                                    const QString& _qstrName)
{
    auto pPlayer = QuillTest::MakeProbedPlayer(_stProbe);
    if (!_qstrName.isEmpty() && !pPlayer->OpenFile(Clip(_qstrName)))
        qWarning("cannot open %s: %s", qPrintable(_qstrName), pPlayer->LastError().c_str());
    if (_qstrName.startsWith(QLatin1String("sealed")) &&
        pPlayer->SetDecryptKey(kPassword, kPasswordChars) != 0)
        qWarning("%s refuses its key", qPrintable(_qstrName));
    return pPlayer;
}

void TestPlayerEngine::initTestCase()
{
    QVERIFY(m_qtmpDir.isValid());
    const QStringList x264{"-c:v", "libx264",     "-preset",  "veryfast",      "-g",
                           "10",   "-keyint_min", "10",       "-sc_threshold", "0",
                           "-bf",  "2",           "-pix_fmt", "yuv420p"};
    const QStringList x265{"-c:v",     "libx265", "-preset",     "ultrafast",
                           "-pix_fmt", "yuv420p", "-x265-params"};
    const QString x265Gop = QStringLiteral("keyint=10:min-keyint=10:scenecut=0:log-level=error");
    const QStringList lossless{"-c:v", "libx264", "-preset", "ultrafast", "-qp",
                               "0",    "-g",      "10",      "-pix_fmt",  "yuv420p"};
    const QStringList aac{"-c:a", "aac"}, mp2{"-c:a", "mp2"}, ps{"-f", "mpeg"};
    const auto psAt = [](int _iSeconds) {
        return QStringList{"-output_ts_offset", QString::number(_iSeconds), "-f", "mpeg"};
    };
    // 320x240 at 25 fps, 4 s unless told: name, video, sound, container, size, fps, seconds,
    // number of the first picture.
    const QuillTest::ST_Clip aClips[] = {
        {"h264.mp4", x264, aac, {}},
        {"hevc.mp4", x265 + QStringList{x265Gop, "-tag:v", "hvc1"}, aac, {}},
        {"mpeg4.avi", {"-c:v", "mpeg4", "-q:v", "3", "-g", "10"}, {"-c:a", "libmp3lame"}, {}},
        {"mjpeg.avi", {"-c:v", "mjpeg", "-q:v", "3"}, {"-c:a", "pcm_s16le"}, {}},
        {"mpeg2.ps", {"-c:v", "mpeg2video", "-q:v", "3", "-g", "10", "-bf", "2"}, mp2, ps},
        {"g711.avi", x264, {"-c:a", "pcm_mulaw", "-ar", "8000"}, {}},
        // Pixels twice as wide as high on screen.
        {"wide.mp4", x264, {}, {"-aspect", "8:3"}, 320, 240, 25, 2.0},
        // Recorder exports: a clock ten hours in; no container and no timestamps.
        {"rec_hours.ps", x264, mp2, psAt(36000)},
        {"rec_hours.mp4", x264, aac, {"-output_ts_offset", "36000"}},
        {"rec_hevc.mp4", x265 + QStringList{"bframes=2:" + x265Gop}, {}, psAt(36000)},
        {"rec_bare.h264", x264, {}, {"-f", "h264"}, 320, 240, 25, 2.0},
        // Parts of joined recordings, numbered on across the join: the time
        // of day jumps an hour forward from ten o'clock, or back from an hour
        // in to zero.
        {"rec_part1.ps", x264, {}, psAt(36000), 320, 240, 25, 2.0},
        {"rec_part2.ps", x264, {}, psAt(39600), 320, 240, 25, 2.0, 50},
        {"rec_back1.ps", x264, {}, psAt(3600), 320, 240, 25, 2.0},
        {"rec_back2.ps", x264, {}, ps, 320, 240, 25, 2.0, 50},
        {"rec_part3.ps", x264, {}, ps, 320, 240, 25, 2.0, 100},
        // Two 70 s recordings 30 s apart, 19 MB: so large that the scan before
        // playing samples it, and so long that the jump hides between samples.
        {"rec_long0.ps", lossless, mp2, psAt(0), 640, 480, 5, 70.0},
        {"rec_long1.ps", lossless, mp2, psAt(100), 640, 480, 5, 70.0, 350}};
    for (const QuillTest::ST_Clip& stClip : aClips)
        QVERIFY2(!QuillTest::MakeClip(m_qtmpDir.path(), stClip).isEmpty(),
                 qPrintable(stClip.m_qstrName));

    auto readAll = [this](const char* _pName) {
        return QuillTest::ReadFile(m_qtmpDir.filePath(_pName));
    };
    auto write = [this](const char* _pName, const QByteArray& _qbaData) {
        return QuillTest::WriteFile(m_qtmpDir.filePath(_pName), _qbaData);
    };
    QByteArray qbaNoise(64 * 1024, Qt::Uninitialized);
    for (int i = 0; i < qbaNoise.size(); ++i)
        qbaNoise[i] = static_cast<char>((i * 7919 + 13) >> 3);
    const QByteArray qbaH264 = readAll("h264.mp4");
    QVERIFY(write("plain.sdv", qbaH264));
    QVERIFY(write("rec_joined.ps", readAll("rec_part1.ps") + readAll("rec_part2.ps")));
    QVERIFY(write("rec_reset.ps", readAll("rec_back1.ps") + readAll("rec_back2.ps")));
    QVERIFY(write("rec_three.ps",
                  readAll("rec_part1.ps") + readAll("rec_part2.ps") + readAll("rec_part3.ps")));
    QVERIFY(write("rec_long.ps", readAll("rec_long0.ps") + readAll("rec_long1.ps")));
    QVERIFY(write("truncated.mp4", qbaH264.left(qbaH264.size() / 2)));
    QVERIFY(write("garbage.mp4", qbaNoise));
    QVERIFY(write("empty.avi", QByteArray()));

    // Sealed and plain .sdv files, recognised by content whatever their name.
    auto seal = [this](const char* _pIn, const char* _pOut, const QByteArray& _qbaPassword) {
        return QuillTest::SealClip(m_qtmpDir.filePath(_pIn), m_qtmpDir.filePath(_pOut),
                                   _qbaPassword) == 0;
    };
    m_i64SealedFromMs = QDateTime::currentSecsSinceEpoch() * 1000;
    QVERIFY(seal("h264.mp4", "sealed.mp4", kPassword));
    m_i64SealedToMs = QDateTime::currentSecsSinceEpoch() * 1000;
    QVERIFY(seal("mpeg2.ps", "sealed_ps.sdv", kPassword));
    QVERIFY(seal("h264.mp4", "plain_header.sdv", QByteArray()));
    // Damage: a byte of the header, the wrapped key forged (with the header's
    // checksum made right again), a byte of a middle chunk, and a file cut
    // inside a chunk. Chunks are 64 KiB and a 16-byte tag after a 192-byte header.
    const QByteArray qbaSealed = readAll("sealed.mp4"), qbaSealedPs = readAll("sealed_ps.sdv");
    const int iChunk = 65536 + 16;
    QVERIFY(qbaSealed.size() > 192 + 2 * iChunk && qbaSealedPs.size() > 192 + 3 * iChunk);
    auto flipped = [](QByteArray _qbaData, int _iAt) {
        _qbaData[_iAt] = static_cast<char>(_qbaData[_iAt] ^ 0x10);
        return _qbaData;
    };
    QByteArray qbaForged = flipped(qbaSealed, 120);
    qbaForged.replace(160, 32,
                      QCryptographicHash::hash(qbaForged.left(160), QCryptographicHash::Sha256));
    QVERIFY(write("sealed_bad_header.mp4", flipped(qbaSealed, 50)));
    QVERIFY(write("sealed_forged_key.mp4", qbaForged));
    QVERIFY(write("sealed_bad_chunk.mp4", flipped(qbaSealed, 192 + iChunk + 1000)));
    QVERIFY(write("sealed_cut.sdv", qbaSealedPs.left(192 + 2 * iChunk + 30000)));
}

void TestPlayerEngine::seeksAndStepsFrameExactly_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("late");  // slots the file leaves empty after picture 0
    QTest::newRow("mp4 H.264 AAC, B-frames") << "h264.mp4" << 0;
    QTest::newRow("mp4 H.265 AAC") << "hevc.mp4" << 0;
    QTest::newRow("mp4 H.264, clock ten hours in") << "rec_hours.mp4" << 0;
    QTest::newRow("ps MPEG-2 MP2") << "mpeg2.ps" << 0;
    QTest::newRow("ps H.264, clock ten hours in") << "rec_hours.ps" << 0;
    QTest::newRow("ps H.265 named mp4, clock ten hours in") << "rec_hevc.mp4" << 0;
    QTest::newRow("avi MPEG-4 MP3") << "mpeg4.avi" << 1;
    QTest::newRow("avi MJPEG PCM") << "mjpeg.avi" << 0;
    // Stored in decode order only: no picture times to go by.
    QTest::newRow("avi H.264 G.711, B-frames") << "g711.avi" << 0;
    QTest::newRow("bare H.264, no timestamps") << "rec_bare.h264" << 0;
    QTest::newRow("sdv plain") << "plain.sdv" << 0;
    QTest::newRow("sdv plain with header") << "plain_header.sdv" << 0;
    QTest::newRow("sdv sealed mp4") << "sealed.mp4" << 0;
    QTest::newRow("sdv sealed ps") << "sealed_ps.sdv" << 0;
}

void TestPlayerEngine::seeksAndStepsFrameExactly()
{
    // Pictures 0..99 over 4 s (0..49 over 2 s for the bare stream).
    QFETCH(QString, name);
    QFETCH(int, late);
    const int iThreadsBefore = ThreadCount();
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe, name);
    CLS_VideoPlayerEngine* p = pPlayer.get();
    QVERIFY(p->Play(0));
    QTRY_VERIFY(stProbe.m_iLast.load() >= 3);
    QVERIFY(p->Pause(true));

    // A few pictures in: three on, and back down to the first picture,
    // where stepping back is refused.
    QVERIFY(p->StepForward());
    StepTo(*p, stProbe, stProbe.m_iLast.load() + 2, 25, late);
    StepTo(*p, stProbe, 0, 25, late);
    QVERIFY(!p->StepBack());
    QCOMPARE(stProbe.m_iLast.load(), 0);
    const bool blTimed = p->GetTotalTime() > 0;  // nothing to seek in without timestamps
    const int iLast = blTimed ? 99 : 49;
    if (blTimed) {
        QCOMPARE(p->GetTotalTime(), 4);
        // Paused, the picture at p % is number p; of a dragged slider only
        // the last position counts.
        for (int iPercent = 10; iPercent <= 90; iPercent += 4)
            QVERIFY(p->SetPlayPos(iPercent));
        QVERIFY(p->SetPlayPos(75));
        QCOMPARE(p->GetPlayedTime(), 3);
        QTRY_COMPARE(stProbe.m_iLast.load(), 75);

        // The middle: from the keyframe at 2 s (picture 50) back over the
        // group boundary and forward again; the end: back from the last picture.
        QVERIFY(p->SetPlayPos(50));
        QTRY_COMPARE(stProbe.m_iLast.load(), 50);
        StepTo(*p, stProbe, 37, 25, late);
        StepTo(*p, stProbe, 52, 25, late);
        QCOMPARE(p->GetPlayedTime(), 2);
        QVERIFY(p->SetPlayPos(100));
        QTRY_COMPARE(stProbe.m_iLast.load(), 99);
        StepTo(*p, stProbe, 88, 25, late);
    }

    // Stepping left the player paused: nothing moves on by itself...
    const int iFrom = stProbe.m_iLast.load(), iShown = stProbe.m_iShown.load();
    QTest::qWait(200);
    QCOMPARE(stProbe.m_iShown.load(), iShown);
    // ...until it resumes from where the steps left it, and at 1X shows
    // nearly every picture up to the end. The end is raised once, by this
    // player, and the last picture stays.
    QVERIFY(p->Pause(false));
    QTRY_COMPARE_WITH_TIMEOUT(stProbe.m_iEnds.load(), 1, 10000);
    QCOMPARE(stProbe.m_iLast.load(), iLast);
    QVERIFY(stProbe.m_iShown.load() - iShown >= (iLast - iFrom) * 4 / 5);
    QCOMPARE(stProbe.m_pRaisedBy.load(), p);
    QCOMPARE(p->GetPlayedTime(), (iLast + late) / 25);
    QTest::qWait(300);
    QCOMPARE(stProbe.m_iEnds.load(), 1);
    QCOMPARE(stProbe.m_iLast.load(), iLast);
    // Seeking back starts a new pass that ends once more; nothing lies beyond.
    if (blTimed) {
        QVERIFY(p->SetPlayPos(90));
        QTRY_COMPARE_WITH_TIMEOUT(stProbe.m_iEnds.load(), 2, 10000);
    }
    QVERIFY(!p->StepForward());
    QCOMPARE(stProbe.m_iLast.load(), iLast);

    QVERIFY(p->Stop());
    // Play starts the same file over; Stop forgot the key, so a sealed file
    // asks again.
    const int iShownBefore = stProbe.m_iShown.load();
    stProbe.m_iLowest = INT_MAX;
    QVERIFY(p->Play(0));
    if (name.startsWith(QLatin1String("sealed"))) {
        QTRY_COMPARE(stProbe.m_iAsked.load(), 2);
        QCOMPARE(p->SetDecryptKey(kPassword, kPasswordChars), 0);
        QVERIFY(p->Play(0));
    }
    QTRY_VERIFY(stProbe.m_iShown.load() > iShownBefore);
    QVERIFY(stProbe.m_iLowest.load() <= 3);
    // Destroyed while playing, it leaves no thread behind.
    pPlayer.reset();
    QCOMPARE(ThreadCount(), iThreadsBefore);
}

void TestPlayerEngine::joinedRecordingsCountRecordedTime_data()
{
    // Recordings numbered on across their joins; the time line holds what
    // was recorded, not the jumps between the clocks.
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("fps");
    QTest::addColumn<int>("partPictures");
    QTest::addColumn<int>("parts");
    QTest::newRow("clock an hour on") << "rec_joined.ps" << 25 << 50 << 2;
    QTest::newRow("on, then reset") << "rec_three.ps" << 25 << 50 << 3;
    // Found only while playing: the total is right once past the join.
    QTest::newRow("jump between the scan's samples") << "rec_long.ps" << 5 << 350 << 2;
}

void TestPlayerEngine::joinedRecordingsCountRecordedTime()
{
    QFETCH(QString, name);
    QFETCH(int, fps);
    QFETCH(int, partPictures);
    QFETCH(int, parts);
    const int iPictures = partPictures * parts;
    const int iSeconds = iPictures / fps;
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe, name);
    CLS_VideoPlayerEngine* p = pPlayer.get();
    // Paused on picture _iPicture: a seek near it by the total known now,
    // then steps.
    const auto goTo = [&](int _iPicture) {
        const double dTotal = p->GetTotalTime();
        QVERIFY(p->SetPlayPos(qRound(_iPicture * 100.0 / fps / dTotal)));
        QTRY_VERIFY(qAbs(stProbe.m_iLast.load() - _iPicture) <= qCeil(dTotal * fps / 200.0) + 1);
        StepTo(*p, stProbe, _iPicture, fps);
    };
    QVERIFY(p->Play(0));
    QVERIFY(p->Pause(true));
    const int iLastJoin = partPictures * (parts - 1);

    // Plays on until _fnDone(), the played time running on without a leap
    // or a step back. A leap is more than the speed can cover in the time
    // since the last look: a busy machine may keep this thread away a while.
    QElapsedTimer qTimer;
    const auto playsOn = [&](double _dSpeed, double _dMargin,
                             const std::function<bool()>& _fnDone) {
        qTimer.start();
        double dPrevious = p->ShownTime();
        qint64 i64PreviousMs = 0;
        while (!_fnDone() && qTimer.elapsed() < 10000) {
            const double dNow = p->ShownTime();
            const qint64 i64NowMs = qTimer.elapsed();
            const double dAllowed = _dMargin + _dSpeed * (i64NowMs - i64PreviousMs) / 1000.0;
            QVERIFY2(dNow >= dPrevious - 1e-6 && dNow < dPrevious + dAllowed,
                     qPrintable(QStringLiteral("%1 after %2").arg(dNow).arg(dPrevious)));
            dPrevious = dNow;
            i64PreviousMs = i64NowMs;
            QThread::usleep(500);
        }
    };

    // 1X across the last join: each recording at its own pace.
    goTo(iLastJoin - fps);
    if (QTest::currentTestFailed()) return;
    QVERIFY(p->Pause(false));
    playsOn(1.0, 0.5, [&] { return stProbe.m_iLast.load() >= iLastJoin + fps; });
    QVERIFY2(qTimer.elapsed() > 1800, qPrintable(QString::number(qTimer.elapsed())));
    QCOMPARE(p->GetTotalTime(), iSeconds);
    QVERIFY(p->Pause(true));

    // Seeks and steps over every join, both ways, picture by picture.
    for (int iJoin = partPictures; iJoin < iPictures; iJoin += partPictures) {
        goTo(iJoin - 1);
        StepTo(*p, stProbe, iJoin, fps);
        StepTo(*p, stProbe, iJoin - 3, fps);
        if (QTest::currentTestFailed()) return;
        QCOMPARE(p->GetPlayedTime(), (iJoin - 3) / fps);
    }
    if (iSeconds > 10) return;

    // At 16X from the start through the joins to the last picture, not
    // before it had its time.
    QVERIFY(p->SetPlayPos(0));
    QTRY_COMPARE(stProbe.m_iLast.load(), 0);
    QVERIFY(p->Pause(false));
    for (int i = 0; i < 4; ++i)
        QCOMPARE(p->Fast(), 0);
    QVERIFY(p->Fast() != 0);  // 16X is the fastest
    playsOn(16.0, 1.0, [&] { return stProbe.m_iEnds.load() > 0; });
    QVERIFY(qTimer.elapsed() >= iSeconds * 1000 / 20);
    QCOMPARE(stProbe.m_iEnds.load(), 1);
    QCOMPARE(stProbe.m_iLast.load(), iPictures - 1);
    QCOMPARE(p->GetPlayedTime(), iSeconds - 1);
    // Pausing returns to 1X, as the window assumes.
    QVERIFY(p->SetPlayPos(50));
    QVERIFY(p->Pause(true));
    QCOMPARE(p->SpeedIndex(), 4);
}

void TestPlayerEngine::stepCacheStaysWithinBudget()
{
    // Room for about four of these pictures: the oldest go first.
    CLS_StepCache stCache(4 * 64 * 64 * 3 / 2 + 1024);
    Fill(stCache, 0, 19);
    QVERIFY(stCache.Count() >= 2 && stCache.Count() <= 5);
    QVERIFY(stCache.Contains(19) && !stCache.Contains(0));
    ST_VideoFrame stOut;
    QVERIFY(stCache.Previous(19, stOut));
    QCOMPARE(stOut.m_llPts, 18LL);
    FreeVideoFrame(stOut);
    // Even a budget too small for one picture keeps a step back possible.
    CLS_StepCache stTiny(1);
    Fill(stTiny, 0, 2);
    QCOMPARE(stTiny.Count(), std::size_t(2));
    QVERIFY(stTiny.Previous(2, stOut));
    FreeVideoFrame(stOut);
}

void TestPlayerEngine::frameQueueWaiterNeverQueuesStale_data()
{
    // A decoder waits for room in a full queue when the position changes.
    QTest::addColumn<bool>("seek");
    QTest::addColumn<bool>("flush");
    QTest::addColumn<bool>("queued");  // the waiting picture went in
    QTest::addColumn<int>("count");
    QTest::newRow("seek wakes it") << true << false << false << 1;
    QTest::newRow("seek with flush") << true << true << false << 0;
    QTest::newRow("flush alone makes room") << false << true << true << 1;
}

void TestPlayerEngine::frameQueueWaiterNeverQueuesStale()
{
    QFETCH(bool, seek);
    QFETCH(bool, flush);
    QFETCH(bool, queued);
    QFETCH(int, count);
    std::atomic<int> iSerial{0};
    CLS_FrameQueue stQueue(1, iSerial);
    const auto picture = [] {
        ST_VideoFrame stFrame;
        stFrame.m_pFrame = av_frame_alloc();
        return stFrame;
    };
    QVERIFY(stQueue.Put(picture()));
    std::atomic<int> iPut{-1};
    std::thread thWaiter([&] { iPut = stQueue.Put(picture()) ? 1 : 0; });
    // Released whatever happens below, so a failure cannot hang the test.
    const auto release = qScopeGuard([&] {
        stQueue.Abort();
        thWaiter.join();
    });
    // Time to start waiting; the outcome is the same if it has not yet.
    QThread::msleep(20);
    if (seek) ++iSerial;
    if (flush)
        stQueue.Flush();
    else
        stQueue.Wake();
    QTRY_VERIFY_WITH_TIMEOUT(iPut.load() >= 0, 10000);
    QCOMPARE(iPut.load() == 1, queued);
    QCOMPARE(stQueue.Count(), std::size_t(count));
}

void TestPlayerEngine::scannerSamplesLargeFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("clock an hour on") << "rec_joined.ps";
    QTest::newRow("clock reset") << "rec_reset.ps";
}

void TestPlayerEngine::scannerSamplesLargeFiles()
{
    // Limits far below the clip's size take the way of large files: the ends
    // read through, a few samples in between, the pair around the
    // join narrowed down by bisection. It must come to what reading the whole
    // file gives, B-frames reordered around the join included.
    QFETCH(QString, name);
    CLS_MediaSource stSource;
    QVERIFY(stSource.Open(Clip(name)));
    const double dTimeBase = av_q2d(stSource.VideoStream()->time_base);
    const double dFrame = stSource.NominalFrameDuration();
    const ST_TimelineScanLimits stLimits{0, 16 * 1024, 1024, 4};
    CLS_Timeline stWhole, stSampled;
    CLS_TimelineScanner(stSource, dTimeBase, dFrame).Build(stWhole);
    CLS_TimelineScanner(stSource, dTimeBase, dFrame, stLimits).Build(stSampled);
    QVERIFY(stSampled.HasJoins());
    QCOMPARE(stSampled.LineEnd(), stWhole.LineEnd());

    // Every picture lands where the whole read puts it, on a line of the
    // 4 recorded seconds: the jump between the clocks is gone.
    std::int64_t i64First = INT64_MAX;
    int iPictures = 0;
    AVPacket* pPacket = av_packet_alloc();
    while (stSource.Read(pPacket) >= 0) {
        const std::int64_t i64Time = pPacket->pts != AV_NOPTS_VALUE ? pPacket->pts : pPacket->dts;
        if (pPacket->stream_index == stSource.VideoIndex() && i64Time != AV_NOPTS_VALUE) {
            const std::int64_t i64Line = stSampled.ToLine(i64Time, pPacket->pos);
            QCOMPARE(i64Line, stWhole.ToLine(i64Time, pPacket->pos));
            i64First = std::min(i64First, i64Line);
            ++iPictures;
        }
        av_packet_unref(pPacket);
    }
    av_packet_free(&pPacket);
    QVERIFY(iPictures >= 50);
    const double dSpan = (stSampled.LineEnd() - i64First) * dTimeBase;
    QVERIFY2(dSpan > 3.5 && dSpan <= 4.0 + dFrame / 2, qPrintable(QString::number(dSpan)));
}

void TestPlayerEngine::opensOnlyWhatPlays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<bool>("keyAccepted");
    for (const char* pName : {"missing.mp4", "garbage.mp4", "truncated.mp4", "empty.avi", ""})
        QTest::newRow(*pName ? pName : "no name") << pName << false << false;
    QTest::newRow("sealed") << "sealed.mp4" << true << true;
    // Accidental damage to the header reads as damage, not as a wrong password.
    QTest::newRow("sealed, header byte") << "sealed_bad_header.mp4" << false << false;
    QTest::newRow("sealed, wrapped key forged") << "sealed_forged_key.mp4" << true << false;
    QTest::newRow("sealed, middle chunk byte") << "sealed_bad_chunk.mp4" << true << true;
    QTest::newRow("sealed, cut inside a chunk") << "sealed_cut.sdv" << true << true;
}

// Files that cannot play are refused with a reason and leave nothing open,
// not even the file before; sealed ones ask for their key first.
void TestPlayerEngine::opensOnlyWhatPlays()
{
    QFETCH(QString, name);
    QFETCH(bool, opens);
    QFETCH(bool, keyAccepted);
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe);
    QVERIFY(pPlayer->Stop());  // nothing open is not a failure
    QVERIFY(pPlayer->OpenFile(Clip("h264.mp4")));
    QVERIFY(!pPlayer->StepBack());  // nothing on screen before Play
    // A plain file needs no key and refuses one without an event.
    QVERIFY(pPlayer->SetDecryptKey(kPassword, kPasswordChars) != 0);
    QCOMPARE(pPlayer->OpenFile(name.isEmpty() ? std::string() : Clip(name)), opens);
    if (!opens) {
        QVERIFY(!pPlayer->LastError().empty());
        QCOMPARE(pPlayer->IsBusy(), 0);
        QCOMPARE(pPlayer->GetTotalTime(), -1);
        QVERIFY(!pPlayer->SetPlayPos(50));
        QTest::qWait(100);
        QCOMPARE(stProbe.m_iShown.load(), 0);
        QCOMPARE(stProbe.m_iAsked.load() + stProbe.m_iRefused.load(), 0);
        return;
    }
    // Known before the password: it is open, and how long it is; nothing
    // plays yet.
    QCOMPARE(pPlayer->IsBusy(), 1);
    QCOMPARE(pPlayer->GetTotalTime(), 4);
    QTRY_COMPARE(stProbe.m_iAsked.load(), 1);
    QVERIFY(pPlayer->Play(0));
    QVERIFY(!pPlayer->SetPlayPos(50));
    QVERIFY(!pPlayer->StepForward());
    QTest::qWait(200);
    QCOMPARE(stProbe.m_iShown.load(), 0);

    // Every refused key says so once; a key the length of the password
    // in bytes, not characters, included.
    const QByteArray qbaPassword(kPassword);
    const QByteArray qbaWrong[] = {"wrong", "", qbaPassword.left(kPasswordChars),
                                   qbaPassword + ' '};
    int iRefused = 0;
    for (const QByteArray& qbaKey : qbaWrong) {
        QVERIFY(pPlayer->SetDecryptKey(qbaKey.constData(), qbaKey.size()) != 0);
        ++iRefused;
        QTRY_COMPARE(stProbe.m_iRefused.load(), iRefused);
    }
    QVERIFY(pPlayer->SetDecryptKey(nullptr, 5) != 0);
    QTRY_COMPARE(stProbe.m_iRefused.load(), iRefused + 1);
    QCOMPARE(pPlayer->SetDecryptKey(kPassword, kPasswordChars) == 0, keyAccepted);
    if (!keyAccepted) {
        QTRY_COMPARE(stProbe.m_iRefused.load(), iRefused + 2);
        return;
    }

    // Plays what authenticates, ends once before any damage, and shows
    // nothing from beyond it, not even after seeking back and playing on.
    QVERIFY(pPlayer->Play(0));
    QTRY_COMPARE_WITH_TIMEOUT(stProbe.m_iEnds.load(), 1, 10000);
    const int iLast = stProbe.m_iLast.load();
    QVERIFY2(name == QLatin1String("sealed.mp4") ? iLast == 99 : iLast > 10 && iLast < 99,
             qPrintable(QString::number(iLast)));
    QCOMPARE(stProbe.m_iAsked.load(), 1);
    QCOMPARE(stProbe.m_iRefused.load(), iRefused + 1);
    QVERIFY(!stProbe.m_blOnCallerThread.load());
    QVERIFY(pPlayer->SetPlayPos(0));
    QTRY_COMPARE_WITH_TIMEOUT(stProbe.m_iEnds.load(), 2, 10000);
    QCOMPARE(stProbe.m_iLast.load(), iLast);
}

void TestPlayerEngine::shownPicture_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    // Mean difference per channel allowed against FFmpeg's own conversion
    // (0: not compared).
    QTest::addColumn<double>("tolerance");
    // The recording's clock at the first picture in ms, within the muxer's
    // lead-in (none: -1; the date the file was sealed: 0).
    QTest::addColumn<qint64>("clock");
    QTest::newRow("square pixels, no clock") << "h264.mp4" << QSize(320, 240) << 1.5 << -1LL;
    QTest::newRow("wide pixels") << "wide.mp4" << QSize(640, 240) << 3.0 << -1LL;
    QTest::newRow("sealed header") << "sealed.mp4" << QSize(320, 240) << 0.0 << 0LL;
    QTest::newRow("time of day across a join")
        << "rec_joined.ps" << QSize(320, 240) << 0.0 << 36000000LL;
}

// The picture on screen as the engine answers it. Paused and after steps, the
// still is that picture, pixel for pixel as FFmpeg decodes and converts it, at
// the display aspect. Its clock follows the recorder's, an hour's jump between
// joined recordings included, wherever a seek or a step lands.
void TestPlayerEngine::shownPicture()
{
    QFETCH(QString, name);
    QFETCH(QSize, size);
    QFETCH(double, tolerance);
    QFETCH(qint64, clock);
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe, name);
    QVERIFY(pPlayer->Play(0));
    QVERIFY(pPlayer->Pause(true));
    QTRY_COMPARE(stProbe.m_iLast.load(), 0);
    ST_ShownPicture stFirst;
    QVERIFY(pPlayer->GetShownPicture(stFirst, false));
    const qint64 i64First = stFirst.m_i64RecordedMs;
    QCOMPARE(i64First != ST_ShownPicture::kNoRecordedTime, clock >= 0);
    QCOMPARE(stFirst.m_blRecordedDate, clock == 0);
    if (clock == 0)
        QVERIFY(i64First >= m_i64SealedFromMs && i64First <= m_i64SealedToMs);
    else if (clock > 0)
        QVERIFY2(i64First >= clock && i64First < clock + 1000,
                 qPrintable(QString::number(i64First)));

    for (int i = 0; i < 7; ++i)
        QVERIFY(pPlayer->StepForward());
    ST_ShownPicture stPicture;
    QVERIFY(pPlayer->GetShownPicture(stPicture, true));
    QCOMPARE(QSize(stPicture.m_iWidth, stPicture.m_iHeight), size);
    QCOMPARE(NumberOf(stPicture), 7);
    QCOMPARE(stPicture.m_dTime, 7 / 25.0);
    if (tolerance > 0) {
        QByteArray qbaReference;
        const QString qstrFilter = QStringLiteral("select=eq(n\\,7),scale=%1:%2:flags=bicubic")
                                       .arg(size.width())
                                       .arg(size.height());
        QCOMPARE(
            QuillTest::RunProgram(QStringLiteral("ffmpeg"),
                                  {"-v", "error", "-i", m_qtmpDir.filePath(name), "-vf", qstrFilter,
                                   "-frames:v", "1", "-pix_fmt", "rgb24", "-f", "rawvideo", "-"},
                                  &qbaReference),
            0);
        QCOMPARE(std::size_t(qbaReference.size()), stPicture.m_vecRgb.size());
        double dDiff = 0.0;
        for (std::size_t i = 0; i < stPicture.m_vecRgb.size(); ++i)
            dDiff += qAbs(int(stPicture.m_vecRgb[i]) - int(quint8(qbaReference[int(i)])));
        dDiff /= double(stPicture.m_vecRgb.size());
        QVERIFY2(dDiff <= tolerance, qPrintable(QString::number(dDiff)));
    }
    if (clock < 0) return;

    const int iTotal = pPlayer->GetTotalTime();
    QVERIFY(pPlayer->SetPlayPos(75));
    QTRY_VERIFY(stProbe.m_iLast.load() >= iTotal * 25 * 70 / 100);
    QVERIFY(pPlayer->StepForward());
    const int iShown = stProbe.m_iLast.load();
    ST_ShownPicture stLater;
    QVERIFY(pPlayer->GetShownPicture(stLater, false));
    // Pictures 50 on were recorded an hour after the first ones began.
    const qint64 i64Expected =
        iShown * 1000LL / 25 + (name == QLatin1String("rec_joined.ps") ? 3600000LL - 2000 : 0);
    QCOMPARE(stLater.m_i64RecordedMs - stFirst.m_i64RecordedMs, i64Expected);
}

QTEST_GUILESS_MAIN(TestPlayerEngine)
#include "tst_PlayerEngine.moc"
