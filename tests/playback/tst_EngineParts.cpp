#include <QTest>

#include <atomic>
#include <chrono>
#include <thread>

#include "CLS_FrameQueue.h"
#include "CLS_PlayClock.h"
#include "CLS_StepCache.h"

extern "C" {
#include <libavutil/frame.h>
}

using namespace RK_Framework::VideoPlayer;

namespace {

// A 64x64 picture whose buffer costs about 6 KiB, stamped with _llPts.
ST_VideoFrame MakeFrame(long long _llPts, int _iSerial = 0)
{
    ST_VideoFrame stFrame;
    stFrame.m_pFrame = av_frame_alloc();
    stFrame.m_pFrame->format = AV_PIX_FMT_YUV420P;
    stFrame.m_pFrame->width = 64;
    stFrame.m_pFrame->height = 64;
    av_frame_get_buffer(stFrame.m_pFrame, 0);
    stFrame.m_llPts = _llPts;
    stFrame.m_iSerial = _iSerial;
    return stFrame;
}

}  // namespace

class TestEngineParts : public QObject
{
    Q_OBJECT

private slots:
    void stepCacheKeepsOneUnbrokenRun();
    void stepCacheStaysWithinBudget();
    void frameQueueDropsStaleWaiters();
    void clockFollowsSpeedAndPause();
};

void TestEngineParts::stepCacheKeepsOneUnbrokenRun()
{
    CLS_StepCache stCache(64u * 1024u * 1024u);
    for (long long llPts = 10; llPts <= 14; ++llPts) {
        ST_VideoFrame stFrame = MakeFrame(llPts);
        stCache.Append(stFrame, llPts != 10);
        FreeVideoFrame(stFrame);
    }
    ST_VideoFrame stOut;
    QVERIFY(stCache.Previous(12, stOut));
    QCOMPARE(stOut.m_llPts, 11LL);
    FreeVideoFrame(stOut);
    QVERIFY(stCache.Next(12, stOut));
    QCOMPARE(stOut.m_llPts, 13LL);
    FreeVideoFrame(stOut);
    // The ends of the run have no neighbour outside it.
    QVERIFY(!stCache.Previous(10, stOut));
    QVERIFY(!stCache.Next(14, stOut));
    QVERIFY(stCache.IsNewest(14));
    // A picture that does not follow on starts a new run: nothing from the
    // old one may pass for its neighbour.
    ST_VideoFrame stJump = MakeFrame(40);
    stCache.Append(stJump, false);
    FreeVideoFrame(stJump);
    QCOMPARE(stCache.Count(), std::size_t(1));
    QVERIFY(!stCache.Previous(40, stOut));
    QVERIFY(!stCache.Contains(12));
    // Nor may an older stamp claim to follow.
    ST_VideoFrame stOlder = MakeFrame(39);
    stCache.Append(stOlder, true);
    FreeVideoFrame(stOlder);
    QCOMPARE(stCache.Count(), std::size_t(1));
    QVERIFY(stCache.Contains(39));
}

void TestEngineParts::stepCacheStaysWithinBudget()
{
    // Room for about four of these pictures: the oldest go first.
    CLS_StepCache stCache(4 * 64 * 64 * 3 / 2 + 1024);
    for (long long llPts = 0; llPts < 20; ++llPts) {
        ST_VideoFrame stFrame = MakeFrame(llPts);
        stCache.Append(stFrame, llPts > 0);
        FreeVideoFrame(stFrame);
    }
    QVERIFY(stCache.Count() >= 2 && stCache.Count() <= 5);
    QVERIFY(stCache.Contains(19));
    QVERIFY(!stCache.Contains(0));
    ST_VideoFrame stOut;
    QVERIFY(stCache.Previous(19, stOut));
    QCOMPARE(stOut.m_llPts, 18LL);
    FreeVideoFrame(stOut);
    // Even a budget too small for one picture keeps a step back possible.
    CLS_StepCache stTiny(1);
    for (long long llPts = 0; llPts < 3; ++llPts) {
        ST_VideoFrame stFrame = MakeFrame(llPts);
        stTiny.Append(stFrame, llPts > 0);
        FreeVideoFrame(stFrame);
    }
    QCOMPARE(stTiny.Count(), std::size_t(2));
    QVERIFY(stTiny.Previous(2, stOut));
    FreeVideoFrame(stOut);
}

void TestEngineParts::frameQueueDropsStaleWaiters()
{
    std::atomic<int> iSerial{1};
    CLS_FrameQueue stQueue(2, iSerial);
    QVERIFY(stQueue.Put(MakeFrame(1, 1)));
    QVERIFY(stQueue.Put(MakeFrame(2, 1)));
    // A full queue holds the producer until a seek makes its picture stale.
    std::atomic<int> iResult{-1};
    std::thread stProducer([&] { iResult = stQueue.Put(MakeFrame(3, 1)) ? 1 : 0; });
    QTest::qWait(50);
    QCOMPARE(iResult.load(), -1);
    iSerial = 2;
    stQueue.Wake();
    stProducer.join();
    QCOMPARE(iResult.load(), 0);
    QCOMPARE(stQueue.Count(), std::size_t(2));
    // Picture of the new position get in once there is room.
    ST_VideoFrame stHead;
    QVERIFY(stQueue.Pop(stHead));
    FreeVideoFrame(stHead);
    QVERIFY(stQueue.Put(MakeFrame(7, 2)));
    QVERIFY(!stQueue.Put(MakeFrame(8, 1)));
    stQueue.Abort();
    QVERIFY(!stQueue.Put(MakeFrame(9, 2)));
}

void TestEngineParts::clockFollowsSpeedAndPause()
{
    using Clock = CLS_PlayClock::Clock;
    CLS_PlayClock stClock;
    QVERIFY(stClock.Paused());
    stClock.Set(10.0);
    QCOMPARE(stClock.Get(Clock::now() + std::chrono::seconds(5)), 10.0);
    stClock.SetPaused(false);
    stClock.SetSpeed(4.0);
    const auto tpNow = Clock::now();
    const double dNow = stClock.Get(tpNow);
    // One wall second later, four media seconds have passed.
    QVERIFY(qAbs(stClock.Get(tpNow + std::chrono::seconds(1)) - dNow - 4.0) < 1e-6);
    stClock.SetSpeed(1.0 / 16);
    const double dSlow = stClock.Get();
    QVERIFY(dSlow >= dNow && dSlow < dNow + 0.1);
    QVERIFY(qAbs(stClock.Get(Clock::now() + std::chrono::seconds(16)) - dSlow - 1.0) < 0.01);
    stClock.SetPaused(true);
    const double dHeld = stClock.Get();
    QCOMPARE(stClock.Get(Clock::now() + std::chrono::seconds(60)), dHeld);
}

QTEST_GUILESS_MAIN(TestEngineParts)
#include "tst_EngineParts.moc"
