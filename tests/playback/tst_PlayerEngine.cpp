#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QtMath>

#include <algorithm>
#include <climits>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

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

// What one player showed and reported, written from its threads.
struct ST_Probe
{
    std::atomic<int> m_iLast{-1};
    std::atomic<int> m_iShown{0};
    std::atomic<int> m_iLowest{INT_MAX};  // the lowest picture number shown
    std::atomic<int> m_iEnds{0};
    std::atomic<int> m_iAsked{0};    // 55: password needed
    std::atomic<int> m_iRefused{0};  // 56: wrong password
    std::atomic<bool> m_blOnCallerThread{false};
    std::atomic<CLS_Player_Rk*> m_pRaisedBy{nullptr};
};

// The password the sealed clips carry; more bytes than characters.
const char kPassword[] = "Pass w\xc3\xb6rd 7";
constexpr int kPasswordChars = 11;

void OnEvent(void* _pUser, CLS_Player_Rk* _pPlayer, int _iType)
{
    auto* pProbe = static_cast<ST_Probe*>(_pUser);
    pProbe->m_pRaisedBy = _pPlayer;
    if (QThread::currentThread() == QCoreApplication::instance()->thread())
        pProbe->m_blOnCallerThread = true;
    if (_iType == 81) ++pProbe->m_iEnds;
    if (_iType == 55) ++pProbe->m_iAsked;
    if (_iType == 56) ++pProbe->m_iRefused;
}

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

QStringList ThreadNames()
{
    QStringList qlstNames;
    const QDir qTasks(QStringLiteral("/proc/self/task"));
    for (const QString& qstrTask : qTasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile qfComm(qTasks.filePath(qstrTask + QStringLiteral("/comm")));
        if (qfComm.open(QIODevice::ReadOnly))
            qlstNames << QString::fromUtf8(qfComm.readAll()).trimmed();
    }
    return qlstNames;
}

ST_VideoFrame Picture(int _iSerial)
{
    ST_VideoFrame stFrame;
    stFrame.m_pFrame = av_frame_alloc();
    stFrame.m_iSerial = _iSerial;
    return stFrame;
}

}  // namespace

class TestPlayerEngine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void refusesBadFiles();
    void seeksAndStepsFrameExactly_data();
    void seeksAndStepsFrameExactly();
    void speedSteps();
    void endOfFileOnce_data();
    void endOfFileOnce();
    void joinedRecordingsCountRecordedTime_data();
    void joinedRecordingsCountRecordedTime();
    void destroyWhilePlayingIsPrompt();
    void stepCacheStaysWithinBudget();
    void frameQueueWaiterNeverQueuesStale_data();
    void frameQueueWaiterNeverQueuesStale();
    void scannerSamplesLargeFiles_data();
    void scannerSamplesLargeFiles();
    void sealedFileWaitsForItsKey();
    void sealedFileDamage_data();
    void sealedFileDamage();

private:
    // A player reporting into _stProbe, with _qstrName open (when given).
    std::unique_ptr<CLS_VideoPlayerEngine> MakePlayer(ST_Probe& _stProbe,
                                                      const QString& _qstrName = QString());
    std::string Clip(const QString& _qstrName) const
    {
        return m_qtmpDir.filePath(_qstrName).toStdString();
    }

    QTemporaryDir m_qtmpDir;
    ST_PlayerEventCallback m_stCallback;
};

std::unique_ptr<CLS_VideoPlayerEngine> TestPlayerEngine::MakePlayer(ST_Probe& _stProbe,
                                                                    const QString& _qstrName)
{
    auto pPlayer = std::make_unique<CLS_VideoPlayerEngine>();
    m_stCallback = ST_PlayerEventCallback{&_stProbe, &OnEvent};
    pPlayer->SetEventCallback(&m_stCallback);
    pPlayer->Init();
    pPlayer->SetFrameObserver([&_stProbe](const AVFrame* _pFrame) {
        const int iNumber = QuillTest::FrameNumberOf(_pFrame);
        _stProbe.m_iLast = iNumber;
        ++_stProbe.m_iShown;
        int iLowest = _stProbe.m_iLowest.load();
        while (iNumber < iLowest && !_stProbe.m_iLowest.compare_exchange_weak(iLowest, iNumber)) {
        }
    });
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
    const QStringList qlstX264{"-c:v", "libx264",     "-preset",  "veryfast",      "-g",
                               "10",   "-keyint_min", "10",       "-sc_threshold", "0",
                               "-bf",  "2",           "-pix_fmt", "yuv420p"};
    const QStringList qlstAac{"-c:a", "aac"}, qlstPs{"-f", "mpeg"};
    const QStringList qlstPsHourIn{"-output_ts_offset", "3600", "-f", "mpeg"};
    auto make = [&](const QString& _qstrName, const QStringList& _qlstVideo,
                    const QStringList& _qlstAudio, const QStringList& _qlstFormat,
                    double _dSeconds = 4.0, int _iFirst = 0) {
        return !QuillTest::MakeClip(m_qtmpDir.path(),
                                    {_qstrName, _qlstVideo, _qlstAudio, _qlstFormat, 320, 240, 25,
                                     _dSeconds, _iFirst})
                    .isEmpty();
    };
    QVERIFY(make("h264.mp4", qlstX264, qlstAac, {}));
    QVERIFY(make("hevc.mp4",
                 {"-c:v", "libx265", "-preset", "ultrafast", "-x265-params",
                  "keyint=10:min-keyint=10:scenecut=0:log-level=error", "-pix_fmt", "yuv420p",
                  "-tag:v", "hvc1"},
                 qlstAac, {}));
    QVERIFY(
        make("mpeg4.avi", {"-c:v", "mpeg4", "-q:v", "3", "-g", "10"}, {"-c:a", "libmp3lame"}, {}));
    QVERIFY(make("mjpeg.avi", {"-c:v", "mjpeg", "-q:v", "3"}, {"-c:a", "pcm_s16le"}, {}));
    QVERIFY(make("mpeg2.ps", {"-c:v", "mpeg2video", "-q:v", "3", "-g", "10", "-bf", "2"},
                 {"-c:a", "mp2"}, qlstPs));
    QVERIFY(make("short.mp4", qlstX264, qlstAac, {}, 2.0));
    QVERIFY(make("g711.avi", qlstX264, {"-c:a", "pcm_mulaw", "-ar", "8000"}, {}));
    // Recorder exports: a clock ten hours in; no container and no timestamps.
    const QStringList qlstPsHoursIn{"-output_ts_offset", "36000", "-f", "mpeg"};
    QVERIFY(make("rec_offset.ps", qlstX264, {"-c:a", "mp2"}, qlstPsHoursIn, 2.0));
    QVERIFY(make("rec_hours.ps", qlstX264, {"-c:a", "mp2"}, qlstPsHoursIn));
    QVERIFY(make("rec_hours.mp4", qlstX264, qlstAac, {"-output_ts_offset", "36000"}));
    QVERIFY(make(
        "rec_hevc.mp4",
        {"-c:v", "libx265", "-preset", "ultrafast", "-x265-params",
         "keyint=10:min-keyint=10:scenecut=0:bframes=2:log-level=error", "-pix_fmt", "yuv420p"},
        {}, qlstPsHoursIn));
    QVERIFY(make("rec_bare.h264", qlstX264, {}, {"-f", "h264"}, 2.0));
    // Parts of joined recordings, numbered on across the join: the clock
    // jumps an hour forward, or back from an hour in to zero.
    QVERIFY(make("rec_part1.ps", qlstX264, {}, qlstPs, 2.0));
    QVERIFY(make("rec_part2.ps", qlstX264, {}, qlstPsHourIn, 2.0, 50));
    QVERIFY(make("rec_back1.ps", qlstX264, {}, qlstPsHourIn, 2.0));
    QVERIFY(make("rec_back2.ps", qlstX264, {}, qlstPs, 2.0, 50));
    QVERIFY(make("rec_part3.ps", qlstX264, {}, qlstPs, 2.0, 100));
    // Two 70 s recordings 30 s apart, 19 MB: so large that the scan before
    // playing samples it, and so long that the jump hides between samples.
    for (int iPart : {0, 1}) {
        const QStringList qlstFormat{"-output_ts_offset", QString::number(iPart * 100), "-f",
                                     "mpeg"};
        QuillTest::ST_Clip stClip{QStringLiteral("rec_long%1.ps").arg(iPart),
                                  {"-c:v", "libx264", "-preset", "ultrafast", "-qp", "0", "-g",
                                   "10", "-pix_fmt", "yuv420p"},
                                  {"-c:a", "mp2"},
                                  qlstFormat};
        stClip.m_iWidth = 640, stClip.m_iHeight = 480, stClip.m_iFps = 5;
        stClip.m_dSeconds = 70.0, stClip.m_iFirstNumber = iPart * 350;
        QVERIFY(!QuillTest::MakeClip(m_qtmpDir.path(), stClip).isEmpty());
    }

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
    QVERIFY(seal("h264.mp4", "sealed.mp4", kPassword));
    QVERIFY(seal("mpeg2.ps", "sealed_ps.sdv", kPassword));
    QVERIFY(seal("short.mp4", "sealed_short.avi", kPassword));
    QVERIFY(seal("h264.mp4", "plain_header.sdv", QByteArray()));
    // Damage: a byte of the header, of the wrapped key (also forged, with the
    // header's checksum made right again), of a middle chunk, and a file cut
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
    QVERIFY(write("sealed_bad_key.mp4", flipped(qbaSealed, 120)));
    QVERIFY(write("sealed_forged_key.mp4", qbaForged));
    QVERIFY(write("sealed_bad_chunk.mp4", flipped(qbaSealed, 192 + iChunk + 1000)));
    QVERIFY(write("sealed_cut.sdv", qbaSealedPs.left(192 + 2 * iChunk + 30000)));
}

void TestPlayerEngine::refusesBadFiles()
{
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe);
    QVERIFY(pPlayer->Stop());  // nothing open is not a failure
    for (const char* pName : {"missing.mp4", "garbage.mp4", "truncated.mp4", "empty.avi", ""}) {
        QVERIFY2(!pPlayer->OpenFile(*pName ? Clip(pName) : std::string()), pName);
        QVERIFY2(!pPlayer->LastError().empty(), pName);
        QCOMPARE(pPlayer->IsBusy(), 0);
        QCOMPARE(pPlayer->GetTotalTime(), -1);
        QVERIFY(!pPlayer->SetPlayPos(50));
    }
    // A bad file after a good one leaves nothing open.
    QVERIFY(pPlayer->OpenFile(Clip("short.mp4")));
    QVERIFY(!pPlayer->StepBack());  // nothing on screen before Play
    QVERIFY(!pPlayer->OpenFile(Clip("garbage.mp4")));
    QCOMPARE(pPlayer->IsBusy(), 0);
    QCOMPARE(stProbe.m_iShown.load(), 0);
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
    // Pictures 0..99 over 4 s (0..49 over 2 s for the bare stream); every
    // step must show its neighbour and report that picture's time.
    QFETCH(QString, name);
    QFETCH(int, late);
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe, name);
    CLS_VideoPlayerEngine* p = pPlayer.get();
    const auto shows = [&](int _iPicture) {
        return stProbe.m_iLast.load() == _iPicture &&
               qRound(p->ShownTime() * 25) == _iPicture + (_iPicture > 0 ? late : 0);
    };
    const auto where = [&] {
        return QStringLiteral("picture %1 at %2 s")
            .arg(stProbe.m_iLast.load())
            .arg(p->ShownTime())
            .toUtf8();
    };
    QCOMPARE(p->IsBusy(), 1);
    QCOMPARE(p->GetPlayedTime(), 0);
    QVERIFY(p->Play(0));
    QTRY_VERIFY(stProbe.m_iLast.load() >= 3);
    QVERIFY(p->Pause(true));
    QVERIFY(!p->Pause(true));

    // A few pictures in: three on, three back, and on down to the first
    // picture, where stepping back is refused.
    QVERIFY(p->StepForward());
    const int iStart = stProbe.m_iLast.load() - 1;
    for (int iExpected : {iStart + 2, iStart + 3})
        QVERIFY2(p->StepForward() && shows(iExpected), where().constData());
    for (int iExpected = iStart + 2; iExpected >= 0; --iExpected)
        QVERIFY2(p->StepBack() && shows(iExpected), where().constData());
    QVERIFY(!p->StepBack());
    QVERIFY(shows(0));
    if (p->GetTotalTime() <= 0) return;  // nothing to seek in without timestamps
    QCOMPARE(p->GetTotalTime(), 4);

    // Paused, the picture at p % is number p within one, the very last
    // included; of a dragged slider only the last position counts.
    for (int iPercent : {25, 99, 7}) {
        QVERIFY(p->SetPlayPos(iPercent));
        QTRY_VERIFY2(qAbs(stProbe.m_iLast.load() - iPercent) <= 1, where().constData());
    }
    for (int iPercent = 10; iPercent <= 90; iPercent += 4)
        QVERIFY(p->SetPlayPos(iPercent));
    QVERIFY(p->SetPlayPos(75));
    QCOMPARE(p->GetPlayedTime(), 3);
    QTRY_COMPARE(stProbe.m_iLast.load(), 75);

    // The middle: from the keyframe at 2 s (picture 50) back over the group
    // boundary and forward again.
    QVERIFY(p->SetPlayPos(50));
    QTRY_COMPARE(stProbe.m_iLast.load(), 50);
    for (int iExpected = 49; iExpected >= 37; --iExpected)
        QVERIFY2(p->StepBack() && shows(iExpected), where().constData());
    for (int iExpected = 38; iExpected <= 52; ++iExpected)
        QVERIFY2(p->StepForward() && shows(iExpected), where().constData());
    QCOMPARE(p->GetPlayedTime(), 2);
    // The end: back from the last picture.
    QVERIFY(p->SetPlayPos(100));
    QTRY_COMPARE(stProbe.m_iLast.load(), 99);
    for (int iExpected = 98; iExpected >= 88; --iExpected)
        QVERIFY2(p->StepBack() && shows(iExpected), where().constData());

    // Stepping left the player paused: nothing moves on by itself...
    const int iShown = stProbe.m_iShown.load();
    QTest::qWait(200);
    QCOMPARE(stProbe.m_iShown.load(), iShown);
    // ...until it resumes from where the steps left it, up to the end.
    QVERIFY(p->Pause(false));
    QTRY_COMPARE_WITH_TIMEOUT(stProbe.m_iEnds.load(), 1, 5000);
    QCOMPARE(stProbe.m_iLast.load(), 99);
    QVERIFY(p->Stop());
    QCOMPARE(p->IsBusy(), 0);
    QCOMPARE(p->GetPlayHandle(), 0);
    QCOMPARE(p->GetTotalTime(), -1);
}

void TestPlayerEngine::speedSteps()
{
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe, "h264.mp4");
    QVERIFY(pPlayer->Play(0));
    for (int i = 0; i < 4; ++i)
        QCOMPARE(pPlayer->Fast(), 0);
    QVERIFY(pPlayer->Fast() != 0);
    QCOMPARE(pPlayer->SpeedIndex(), 8);
    for (int i = 0; i < 8; ++i)
        QCOMPARE(pPlayer->Slow(), 0);
    QVERIFY(pPlayer->Slow() != 0);
    QCOMPARE(pPlayer->SpeedIndex(), 0);
    QCOMPARE(pPlayer->NormalSpeed(), 0);
    QCOMPARE(pPlayer->SpeedIndex(), 4);
    // Pausing returns to 1X, as the window assumes.
    QCOMPARE(pPlayer->Fast(), 0);
    QVERIFY(pPlayer->Pause(true));
    QCOMPARE(pPlayer->SpeedIndex(), 4);
}

void TestPlayerEngine::endOfFileOnce_data()
{
    // Pictures 0..49 over 2 s, the last two as recorders export them.
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("fastSteps");
    QTest::newRow("1X") << "short.mp4" << 0;
    QTest::newRow("16X") << "short.mp4" << 4;
    QTest::newRow("16X sealed") << "sealed_short.avi" << 4;
    QTest::newRow("clock ten hours in") << "rec_offset.ps" << 0;
    QTest::newRow("no timestamps") << "rec_bare.h264" << 0;
}

void TestPlayerEngine::endOfFileOnce()
{
    QFETCH(QString, name);
    QFETCH(int, fastSteps);
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe, name);
    for (int i = 0; i < fastSteps; ++i)
        QCOMPARE(pPlayer->Fast(), 0);
    QElapsedTimer qTimer;
    qTimer.start();
    QVERIFY(pPlayer->Play(0));
    QTRY_COMPARE_WITH_TIMEOUT(stProbe.m_iEnds.load(), 1, 10000);
    // Not before the last picture had its time (2 s at 1X, 1/8 s at 16X).
    QVERIFY(qTimer.elapsed() >= (fastSteps == 0 ? 1900 : 100));
    // At 16X a machine that cannot keep up decodes keyframes only (every
    // tenth picture here) and so ends on the last of them.
    const int iEnd = stProbe.m_iLast.load();
    QVERIFY2(iEnd == 49 || (fastSteps > 0 && iEnd == 40), qPrintable(QString::number(iEnd)));
    QVERIFY2(fastSteps > 0 || stProbe.m_iShown.load() >= 40,
             qPrintable(QString::number(stProbe.m_iShown)));
    QCOMPARE(stProbe.m_pRaisedBy.load(), pPlayer.get());
    QCOMPARE(pPlayer->GetPlayedTime(), 1);
    // The last picture stays and the event is not repeated.
    QTest::qWait(300);
    QCOMPARE(stProbe.m_iEnds.load(), 1);
    QCOMPARE(stProbe.m_iLast.load(), iEnd);
    // Seeking back starts a new pass that ends once more (a stream without
    // timestamps has no length to seek in); nothing lies beyond.
    if (pPlayer->GetTotalTime() > 0) {
        QVERIFY(pPlayer->SetPlayPos(90));
        QTRY_COMPARE_WITH_TIMEOUT(stProbe.m_iEnds.load(), 2, 10000);
    }
    QVERIFY(!pPlayer->StepForward());
    QVERIFY(stProbe.m_iLast.load() == 49 || stProbe.m_iLast.load() == iEnd);
    // After Stop, Play starts the same file over.
    QVERIFY(pPlayer->Stop());
    const int iShown = stProbe.m_iShown.load();
    stProbe.m_iLowest = INT_MAX;
    QVERIFY(pPlayer->Play(0));
    // Stop forgets a key: the sealed file asks again.
    if (name.startsWith(QLatin1String("sealed"))) {
        QTRY_COMPARE(stProbe.m_iAsked.load(), 2);
        QCOMPARE(pPlayer->SetDecryptKey(kPassword, kPasswordChars), 0);
        QVERIFY(pPlayer->Play(0));
    }
    QTRY_VERIFY(stProbe.m_iShown.load() > iShown);
    QVERIFY(stProbe.m_iLowest.load() <= 3);
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
    QTest::newRow("clock reset") << "rec_reset.ps" << 25 << 50 << 2;
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
    // then steps, each to the neighbour.
    const auto goTo = [&](int _iPicture) {
        const double dTotal = p->GetTotalTime();
        QVERIFY(p->SetPlayPos(qRound(_iPicture * 100.0 / fps / dTotal)));
        const int iNear = qCeil(dTotal * fps / 200.0) + 1;
        QTRY_VERIFY2(qAbs(stProbe.m_iLast.load() - _iPicture) <= iNear,
                     qPrintable(QString::number(stProbe.m_iLast.load())));
        for (int iShown = stProbe.m_iLast.load(); iShown != _iPicture;) {
            const bool blForward = iShown < _iPicture;
            iShown += blForward ? 1 : -1;
            QVERIFY(blForward ? p->StepForward() : p->StepBack());
            QCOMPARE(stProbe.m_iLast.load(), iShown);
        }
    };
    QVERIFY(p->Play(0));
    QVERIFY(p->Pause(true));
    const int iLastJoin = partPictures * (parts - 1);

    // 1X across the last join: each recording at its own pace, the played
    // time running on without a leap or a step back.
    goTo(iLastJoin - fps);
    if (QTest::currentTestFailed()) return;
    QVERIFY(p->Pause(false));
    QElapsedTimer qTimer;
    qTimer.start();
    double dPrevious = p->ShownTime();
    // A leap is more than the speed can cover in the time since the last
    // look: a busy machine may keep this thread away for a while.
    qint64 i64PreviousMs = 0;
    const auto noLeap = [&](double _dNow, double _dSpeed, double _dMargin) {
        const qint64 i64NowMs = qTimer.elapsed();
        const double dAllowed = _dMargin + _dSpeed * (i64NowMs - i64PreviousMs) / 1000.0;
        i64PreviousMs = i64NowMs;
        return _dNow >= dPrevious - 1e-6 && _dNow < dPrevious + dAllowed;
    };
    while (stProbe.m_iLast.load() < iLastJoin + fps && qTimer.elapsed() < 10000) {
        const double dNow = p->ShownTime();
        QVERIFY2(noLeap(dNow, 1.0, 0.5),
                 qPrintable(QStringLiteral("%1 after %2").arg(dNow).arg(dPrevious)));
        dPrevious = dNow;
        QThread::usleep(500);
    }
    QVERIFY2(qTimer.elapsed() > 1800, qPrintable(QString::number(qTimer.elapsed())));
    QVERIFY2(qAbs(p->ShownTime() * fps - stProbe.m_iLast.load()) < 1.5,
             qPrintable(QString::number(p->ShownTime())));
    QCOMPARE(p->GetTotalTime(), iSeconds);
    QVERIFY(p->Pause(true));

    // Seeks and steps over every join, both ways, picture by picture.
    for (int iJoin = partPictures; iJoin < iPictures; iJoin += partPictures) {
        goTo(iJoin - 1);
        if (QTest::currentTestFailed()) return;
        QVERIFY(p->StepForward());
        QCOMPARE(stProbe.m_iLast.load(), iJoin);
        for (int iExpected = iJoin - 1; iExpected >= iJoin - 3; --iExpected) {
            QVERIFY(p->StepBack());
            QCOMPARE(stProbe.m_iLast.load(), iExpected);
        }
        QCOMPARE(p->GetPlayedTime(), (iJoin - 3) / fps);
    }
    if (iSeconds > 10) return;

    // At 16X from the start the played time runs on through the joins.
    QVERIFY(p->SetPlayPos(0));
    QTRY_COMPARE(stProbe.m_iLast.load(), 0);
    QVERIFY(p->Pause(false));
    for (int i = 0; i < 4; ++i)
        QCOMPARE(p->Fast(), 0);
    dPrevious = p->ShownTime();
    qTimer.restart();
    i64PreviousMs = 0;
    while (stProbe.m_iEnds.load() == 0 && qTimer.elapsed() < 10000) {
        const double dNow = p->ShownTime();
        QVERIFY2(noLeap(dNow, 16.0, 1.0),
                 qPrintable(QStringLiteral("%1 after %2").arg(dNow).arg(dPrevious)));
        dPrevious = dNow;
        QThread::usleep(500);
    }
    QCOMPARE(stProbe.m_iEnds.load(), 1);
    QCOMPARE(stProbe.m_iLast.load(), iPictures - 1);
    QCOMPARE(p->GetPlayedTime(), iSeconds - 1);
}

void TestPlayerEngine::destroyWhilePlayingIsPrompt()
{
    const int iThreadsBefore = ThreadNames().size();
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe, "h264.mp4");
    QVERIFY(pPlayer->Play(0));
    QTRY_VERIFY(stProbe.m_iShown.load() >= 5);
    const QStringList qlstNames = ThreadNames();
    for (const char* pName : {"quill-demux", "quill-vdecode", "quill-adecode", "quill-present"})
        QVERIFY2(qlstNames.contains(QLatin1String(pName)), qPrintable(qlstNames.join(' ')));
    QElapsedTimer qTimer;
    qTimer.start();
    pPlayer.reset();
    QVERIFY2(qTimer.elapsed() < 500, qPrintable(QString::number(qTimer.elapsed())));
    QCOMPARE(ThreadNames().size(), iThreadsBefore);
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
    QVERIFY(stQueue.Put(Picture(0)));
    std::atomic<int> iPut{-1};
    std::thread thWaiter([&] { iPut = stQueue.Put(Picture(0)) ? 1 : 0; });
    // Released whatever happens below, so a failure cannot hang the test.
    struct ST_Release
    {
        CLS_FrameQueue& m_queue;
        std::thread& m_thread;
        ~ST_Release()
        {
            m_queue.Abort();
            m_thread.join();
        }
    } stRelease{stQueue, thWaiter};
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
    ST_TimelineScanLimits stLimits;
    stLimits.m_i64FullScan = 0;
    stLimits.m_i64Edge = 16 * 1024;
    stLimits.m_i64Stretch = 1024;
    stLimits.m_iSamples = 4;
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

void TestPlayerEngine::sealedFileWaitsForItsKey()
{
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe);
    QVERIFY(pPlayer->OpenFile(Clip("sealed.mp4")));
    // Known before the password: it is open, and how long it is.
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
    QVERIFY(pPlayer->SetDecryptKey(kPassword, 0) != 0);
    iRefused += 2;
    QTRY_COMPARE(stProbe.m_iRefused.load(), iRefused);

    QCOMPARE(pPlayer->SetDecryptKey(kPassword, kPasswordChars), 0);
    QVERIFY(pPlayer->Play(0));
    QTRY_VERIFY(stProbe.m_iLast.load() >= 5);
    QVERIFY(stProbe.m_iShown.load() > 0);
    QCOMPARE(stProbe.m_iAsked.load(), 1);
    QCOMPARE(stProbe.m_iRefused.load(), iRefused);
    QVERIFY(!stProbe.m_blOnCallerThread.load());

    // A plain file needs no key and refuses none with an event.
    QVERIFY(pPlayer->OpenFile(Clip("short.mp4")));
    QVERIFY(pPlayer->SetDecryptKey(kPassword, kPasswordChars) != 0);
    QTest::qWait(100);
    QCOMPARE(stProbe.m_iAsked.load(), 1);
    QCOMPARE(stProbe.m_iRefused.load(), iRefused);
}

void TestPlayerEngine::sealedFileDamage_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<bool>("keyAccepted");
    // Accidental damage to the header reads as damage, not as a wrong password.
    QTest::newRow("header byte") << "sealed_bad_header.mp4" << false << false;
    QTest::newRow("wrapped key byte") << "sealed_bad_key.mp4" << false << false;
    QTest::newRow("wrapped key forged") << "sealed_forged_key.mp4" << true << false;
    QTest::newRow("middle chunk byte") << "sealed_bad_chunk.mp4" << true << true;
    QTest::newRow("cut inside a chunk") << "sealed_cut.sdv" << true << true;
}

void TestPlayerEngine::sealedFileDamage()
{
    QFETCH(QString, name);
    QFETCH(bool, opens);
    QFETCH(bool, keyAccepted);
    ST_Probe stProbe;
    auto pPlayer = MakePlayer(stProbe);
    QCOMPARE(pPlayer->OpenFile(Clip(name)), opens);
    if (!opens) {
        QCOMPARE(pPlayer->IsBusy(), 0);
        QTest::qWait(100);
        QCOMPARE(stProbe.m_iAsked.load(), 0);
        return;
    }
    QCOMPARE(pPlayer->SetDecryptKey(kPassword, kPasswordChars) == 0, keyAccepted);
    if (!keyAccepted) {
        QTRY_COMPARE(stProbe.m_iRefused.load(), 1);
        return;
    }
    // Plays what authenticates, ends once before the damage, and shows
    // nothing from beyond it, not even after seeking back and playing on.
    QVERIFY(pPlayer->Play(0));
    QTRY_COMPARE_WITH_TIMEOUT(stProbe.m_iEnds.load(), 1, 10000);
    const int iLast = stProbe.m_iLast.load();
    QVERIFY2(iLast > 10 && iLast < 99, qPrintable(QString::number(iLast)));
    QVERIFY(pPlayer->SetPlayPos(0));
    QTRY_COMPARE_WITH_TIMEOUT(stProbe.m_iEnds.load(), 2, 10000);
    QCOMPARE(stProbe.m_iLast.load(), iLast);
}

QTEST_GUILESS_MAIN(TestPlayerEngine)
#include "tst_PlayerEngine.moc"
