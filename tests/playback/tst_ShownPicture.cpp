// The picture on screen as the engine answers it: the still's pixels against
// the decoded picture, and the recording's clock of that picture.

#include <QDateTime>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <memory>

#include "CLS_VideoPlayerEngine.h"
#include "EngineTestMedia.h"
#include "QuillTestSupport.h"

extern "C" {
#include <libavutil/frame.h>
}

using RK_Framework::VideoPlayer::CLS_VideoPlayerEngine;
using RK_Framework::VideoPlayer::ST_ShownPicture;

namespace {

constexpr int kFps = 25;

// The number in the still's top band (see EngineTestMedia), from its RGB.
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

class TestShownPicture : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void stillIsThePictureOnScreen_data();
    void stillIsThePictureOnScreen();
    void recordedClock_data();
    void recordedClock();

private:
    // Opened, playing into nothing, paused; m_iShown follows the screen.
    std::unique_ptr<CLS_VideoPlayerEngine> PausedPlayer(const QString& _qstrName);
    QString Clip(const QString& _qstrName) const { return m_qtmpDir.filePath(_qstrName); }

    QTemporaryDir m_qtmpDir;
    std::atomic<int> m_iShown{-1};
    // When the sealed file was made: its header's clock lies in between.
    qint64 m_i64SealedFromMs = 0;
    qint64 m_i64SealedToMs = 0;
};

void TestShownPicture::initTestCase()
{
    QVERIFY(m_qtmpDir.isValid());
    const QStringList qlstX264{"-c:v", "libx264", "-preset", "veryfast", "-g", "10", "-bf", "2",
                               "-pix_fmt", "yuv420p"};
    auto make = [&](const QString& _qstrName, QStringList _qlstFormat, int _iFirst = 0) {
        return !QuillTest::MakeClip(m_qtmpDir.path(), {_qstrName, qlstX264, {}, _qlstFormat, 320,
                                                       240, kFps, 2.0, _iFirst})
                    .isEmpty();
    };
    QVERIFY(make("square.mp4", {}));
    // Pixels twice as wide as high on screen.
    QVERIFY(make("wide.mp4", {"-aspect", "8:3"}));
    QVERIFY(make("created.mp4", {"-metadata", "creation_time=2024-03-15T10:23:45Z"}));
    // Two recordings of a recorder that stamps the time of day, an hour
    // apart, joined into one file and numbered on across the join.
    QVERIFY(make("ten.ps", {"-output_ts_offset", "36000", "-f", "mpeg"}));
    QVERIFY(make("eleven.ps", {"-output_ts_offset", "39600", "-f", "mpeg"}, 50));
    m_i64SealedFromMs = QDateTime::currentSecsSinceEpoch() * 1000;
    QCOMPARE(QuillTest::SealClip(Clip("square.mp4"), Clip("sealed.sdv"), "still-key"), 0);
    m_i64SealedToMs = QDateTime::currentSecsSinceEpoch() * 1000;
    QFile qfJoined(Clip("joined.ps"));
    QVERIFY(qfJoined.open(QIODevice::WriteOnly));
    for (const char* pPart : {"ten.ps", "eleven.ps"}) {
        QFile qfPart(Clip(pPart));
        QVERIFY(qfPart.open(QIODevice::ReadOnly));
        qfJoined.write(qfPart.readAll());
    }
}

std::unique_ptr<CLS_VideoPlayerEngine> TestShownPicture::PausedPlayer(const QString& _qstrName)
{
    auto pPlayer = std::make_unique<CLS_VideoPlayerEngine>();
    m_iShown = -1;
    pPlayer->SetFrameObserver(
        [this](const AVFrame* _pFrame) { m_iShown = QuillTest::FrameNumberOf(_pFrame); });
    if (!pPlayer->OpenFile(Clip(_qstrName).toStdString())) return nullptr;
    if (_qstrName.endsWith(QLatin1String(".sdv")) && pPlayer->SetDecryptKey("still-key", 9) != 0)
        return nullptr;
    if (!pPlayer->Play(0)) return nullptr;
    pPlayer->Pause(true);
    return pPlayer;
}

void TestShownPicture::stillIsThePictureOnScreen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    // Mean difference per channel allowed against FFmpeg's own conversion.
    QTest::addColumn<double>("tolerance");
    QTest::newRow("square pixels") << "square.mp4" << QSize(320, 240) << 1.5;
    QTest::newRow("wide pixels") << "wide.mp4" << QSize(640, 240) << 3.0;
}

// Paused and after steps, the still is the picture on screen, pixel for
// pixel as FFmpeg decodes and converts it, at the display aspect.
void TestShownPicture::stillIsThePictureOnScreen()
{
    QFETCH(QString, name);
    QFETCH(QSize, size);
    QFETCH(double, tolerance);
    auto pPlayer = PausedPlayer(name);
    QVERIFY(pPlayer);
    QTRY_VERIFY(m_iShown.load() >= 0);
    for (int i = 0; i < 7; ++i)
        QVERIFY(pPlayer->StepForward());
    const int iShown = m_iShown.load();

    ST_ShownPicture stPicture;
    QVERIFY(pPlayer->GetShownPicture(stPicture, true));
    QCOMPARE(QSize(stPicture.m_iWidth, stPicture.m_iHeight), size);
    QCOMPARE(NumberOf(stPicture), iShown);
    QCOMPARE(stPicture.m_dTime, iShown / double(kFps));

    QByteArray qbaReference;
    const QString qstrFilter = QStringLiteral("select=eq(n\\,%1),scale=%2:%3:flags=bicubic")
                                   .arg(iShown)
                                   .arg(size.width())
                                   .arg(size.height());
    QCOMPARE(QuillTest::RunProgram(QStringLiteral("ffmpeg"),
                                   {"-v", "error", "-i", Clip(name), "-vf", qstrFilter,
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

void TestShownPicture::recordedClock_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("hasClock");
    QTest::addColumn<bool>("dated");
    QTest::newRow("no clock") << "square.mp4" << false << false;
    QTest::newRow("creation time") << "created.mp4" << true << true;
    QTest::newRow("sealed header") << "sealed.sdv" << true << true;
    QTest::newRow("time of day across a join") << "joined.ps" << true << false;
}

// The clock of the picture on screen follows the recorder's, an hour's jump
// between joined recordings included, wherever a seek or a step lands.
void TestShownPicture::recordedClock()
{
    QFETCH(QString, name);
    QFETCH(bool, hasClock);
    QFETCH(bool, dated);
    auto pPlayer = PausedPlayer(name);
    QVERIFY(pPlayer);
    QTRY_COMPARE(m_iShown.load(), 0);
    ST_ShownPicture stFirst;
    QVERIFY(pPlayer->GetShownPicture(stFirst, false));
    QCOMPARE(stFirst.m_i64RecordedMs != ST_ShownPicture::kNoRecordedTime, hasClock);
    if (!hasClock) return;
    QCOMPARE(stFirst.m_blRecordedDate, dated);
    if (name == QLatin1String("sealed.sdv")) {
        QVERIFY(stFirst.m_i64RecordedMs >= m_i64SealedFromMs &&
                stFirst.m_i64RecordedMs <= m_i64SealedToMs);
    } else if (dated) {
        QCOMPARE(stFirst.m_i64RecordedMs,
                 QDateTime(QDate(2024, 3, 15), QTime(10, 23, 45), Qt::UTC).toMSecsSinceEpoch());
    } else {
        // Ten o'clock, give or take the muxer's lead-in.
        QVERIFY(stFirst.m_i64RecordedMs >= 36000000 && stFirst.m_i64RecordedMs < 36001000);
    }

    const int iTotal = pPlayer->GetTotalTime();
    QVERIFY(pPlayer->SetPlayPos(75));
    QTRY_VERIFY(m_iShown.load() >= iTotal * kFps * 70 / 100);
    QVERIFY(pPlayer->StepForward());
    const int iShown = m_iShown.load();
    ST_ShownPicture stLater;
    QVERIFY(pPlayer->GetShownPicture(stLater, false));
    // Pictures 50 on were recorded an hour after the first ones began.
    const qint64 i64Expected =
        iShown * 1000LL / kFps + (name == QLatin1String("joined.ps") ? 3600000LL - 2000 : 0);
    QCOMPARE(stLater.m_i64RecordedMs - stFirst.m_i64RecordedMs, i64Expected);
}

QTEST_GUILESS_MAIN(TestShownPicture)
#include "tst_ShownPicture.moc"
