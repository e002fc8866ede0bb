#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>
#include <utility>

#include "CLS_FrameQueue.h"
#include "CLS_MediaSource.h"
#include "CLS_StepCache.h"
#include "CLS_Timeline.h"
#include "CLS_TimelineScanner.h"
#include "EngineTestMedia.h"

extern "C" {
#include <libavformat/avformat.h>
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

// Appends pictures _llFrom.._llTo, each following the one before.
void Fill(CLS_StepCache& _stCache, long long _llFrom, long long _llTo)
{
    for (long long llPts = _llFrom; llPts <= _llTo; ++llPts) {
        ST_VideoFrame stFrame = MakeFrame(llPts);
        _stCache.Append(stFrame, llPts != _llFrom);
        FreeVideoFrame(stFrame);
    }
}

}  // namespace

class TestEngineParts : public QObject
{
    Q_OBJECT

private slots:
    void stepCacheStaysWithinBudget();
    void frameQueueDropsStaleWaiters();
    void scannerSamplingFindsTheJoin();
};

void TestEngineParts::stepCacheStaysWithinBudget()
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

void TestEngineParts::scannerSamplingFindsTheJoin()
{
    // Two recordings, the second one's clock an hour later. Read through and
    // sampled as if the file were large, the scan finds the same join.
    QTemporaryDir qtmpDir;
    QVERIFY(qtmpDir.isValid());
    const QStringList qlstX264{"-c:v", "libx264", "-preset", "veryfast", "-g", "10"};
    QByteArray qbaJoined;
    qint64 i64FirstSize = 0;
    for (const auto& pairPart : {std::pair{"a.ps", "0"}, std::pair{"b.ps", "3600"}}) {
        QFile qfPart(QuillTest::MakeClip(qtmpDir.path(),
                                         {pairPart.first,
                                          qlstX264,
                                          {},
                                          {"-output_ts_offset", pairPart.second, "-f", "mpeg"},
                                          320,
                                          240,
                                          25,
                                          4.0,
                                          qbaJoined.isEmpty() ? 0 : 100}));
        QVERIFY(qfPart.open(QIODevice::ReadOnly));
        qbaJoined += qfPart.readAll();
        if (i64FirstSize == 0) i64FirstSize = qbaJoined.size();
    }
    const QString qstrJoined = qtmpDir.filePath("joined.ps");
    QFile qfJoined(qstrJoined);
    QVERIFY(qfJoined.open(QIODevice::WriteOnly) && qfJoined.write(qbaJoined) == qbaJoined.size());
    qfJoined.close();

    CLS_MediaSource source;
    QVERIFY(source.Open(qstrJoined.toStdString()));
    const double dTimeBase = av_q2d(source.VideoStream()->time_base);
    const std::int64_t i64Frame = std::llround(0.04 / dTimeBase);
    CLS_Timeline timelineRead;
    CLS_TimelineScanner(source, dTimeBase, 0.04).Build(timelineRead);
    QCOMPARE(timelineRead.PartCount(), std::size_t{2});
    // 8 s recorded: 200 pictures on one unbroken line (the program stream
    // leaves the time of a part's last picture or so to be guessed).
    const std::int64_t i64Pictures =
        (timelineRead.LineEnd() - timelineRead.Part(0).m_i64RawStart + i64Frame / 2) / i64Frame;
    QVERIFY2(std::llabs(i64Pictures - 200) <= 1, qPrintable(QString::number(i64Pictures)));
    QVERIFY(timelineRead.Part(1).m_i64PosStart >= i64FirstSize - 4096);
    QVERIFY(timelineRead.Part(1).m_i64PosStart <= i64FirstSize + 4096);

    CLS_TimelineScanner::ST_Limits stSmall;
    stSmall.m_i64FullScan = 0;
    stSmall.m_i64Edge = 8 * 1024;
    stSmall.m_i64Stretch = 8 * 1024;
    CLS_Timeline timelineSampled;
    CLS_TimelineScanner(source, dTimeBase, 0.04, stSmall).Build(timelineSampled);
    QCOMPARE(timelineSampled.PartCount(), std::size_t{2});
    QCOMPARE(timelineSampled.Part(1).m_i64PosStart, timelineRead.Part(1).m_i64PosStart);
    QVERIFY(std::llabs(timelineSampled.LineEnd() - timelineRead.LineEnd()) <= 2 * i64Frame);
    // Either way the source is back at its first picture.
    AVPacket* pPacket = av_packet_alloc();
    while (source.Read(pPacket) >= 0 && pPacket->stream_index != source.VideoIndex())
        av_packet_unref(pPacket);
    QCOMPARE(pPacket->pts, timelineRead.Part(0).m_i64RawStart);
    av_packet_free(&pPacket);
}

QTEST_GUILESS_MAIN(TestEngineParts)
#include "tst_EngineParts.moc"
