// sdvtool as its users run it, and the clip exporter behind its export
// command as the player calls it. Every file lives in the working directory.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <memory>

#include "CLS_ClipExporter.h"
#include "CLS_SdvIoContext.h"
#include "CLS_SdvReader.h"
#include "EngineTestMedia.h"
#include "QuillTestSupport.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

using namespace RK_Framework::ClipExport;
using RK_Framework::VideoPlayer::CLS_SdvIoContext;
using RK_Framework::VideoPlayer::CLS_SdvReader;

Q_DECLARE_METATYPE(RK_Framework::ClipExport::EM_ClipResult)

namespace {

const QByteArray kPassword = "correct horse";
const QByteArray kClipPassword = "clip secret";
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
    // Whatever happened, no password is ever repeated back.
    for (const QByteArray& qbaSecret : {kPassword, kClipPassword, QByteArray("new secret")})
        if (qbaOutput.contains(qbaSecret)) return -2;
    if (_pOutput) *_pOutput = qbaOutput;
    return qProcess.exitStatus() == QProcess::NormalExit ? qProcess.exitCode() : -1;
}

// What a player gets out of a clip: the number every decoded picture
// carries, in the order shown, and how many video packets it holds.
struct ST_Decoded
{
    QVector<int> m_vecNumbers;
    int m_iPackets = 0;
    bool m_blOpened = false;
};

ST_Decoded Decode(const QString& _qstrPath, const QByteArray& _qbaPassword)
{
    ST_Decoded stDecoded;
    std::unique_ptr<CLS_SdvIoContext> pIo;
    AVFormatContext* pFormat = avformat_alloc_context();
    auto pReader = std::make_unique<CLS_SdvReader>();
    if (pReader->Open(_qstrPath.toStdString()) == CLS_SdvReader::OPEN_OK) {
        if (!pReader->Unlock(_qbaPassword.constData(),
                             static_cast<std::size_t>(_qbaPassword.size())))
            return stDecoded;
        pIo = std::make_unique<CLS_SdvIoContext>(std::move(pReader), _qstrPath.toStdString());
        pFormat->pb = pIo->Context();
        pFormat->flags |= AVFMT_FLAG_CUSTOM_IO;
    }
    if (avformat_open_input(&pFormat, _qstrPath.toUtf8().constData(), nullptr, nullptr) < 0 ||
        avformat_find_stream_info(pFormat, nullptr) < 0) {
        avformat_close_input(&pFormat);
        return stDecoded;
    }
    const AVCodec* pCodec = nullptr;
    const int iVideo = av_find_best_stream(pFormat, AVMEDIA_TYPE_VIDEO, -1, -1, &pCodec, 0);
    AVCodecContext* pContext = avcodec_alloc_context3(pCodec);
    avcodec_parameters_to_context(pContext, pFormat->streams[iVideo]->codecpar);
    stDecoded.m_blOpened = avcodec_open2(pContext, pCodec, nullptr) == 0;
    AVPacket* pPacket = av_packet_alloc();
    AVFrame* pFrame = av_frame_alloc();
    auto fnDrain = [&]() {
        while (avcodec_receive_frame(pContext, pFrame) == 0)
            stDecoded.m_vecNumbers << QuillTest::FrameNumberOf(pFrame);
    };
    while (stDecoded.m_blOpened && av_read_frame(pFormat, pPacket) >= 0) {
        if (pPacket->stream_index == iVideo) {
            ++stDecoded.m_iPackets;
            avcodec_send_packet(pContext, pPacket);
            fnDrain();
        }
        av_packet_unref(pPacket);
    }
    avcodec_send_packet(pContext, nullptr);
    fnDrain();
    av_frame_free(&pFrame);
    av_packet_free(&pPacket);
    avcodec_free_context(&pContext);
    avformat_close_input(&pFormat);
    return stDecoded;
}

// The clip plays from _iFirst with no gap and every packet decodes; the last
// picture before _iToMs is in, and at most the rest of its group of pictures
// (where the container has no presentation times to cut by).
void CheckPictures(const QString& _qstrClip, int _iFirst, int _iToMs)
{
    const ST_Decoded stDecoded = Decode(_qstrClip, kClipPassword);
    QVERIFY(stDecoded.m_blOpened);
    QCOMPARE(stDecoded.m_vecNumbers.size(), stDecoded.m_iPackets);
    QCOMPARE(stDecoded.m_vecNumbers.value(0), _iFirst);
    for (int i = 1; i < stDecoded.m_vecNumbers.size(); ++i)
        QCOMPARE(stDecoded.m_vecNumbers[i], stDecoded.m_vecNumbers[i - 1] + 1);
    const int iLastMarked = _iToMs * 25 / 1000 - 1;
    QVERIFY2(stDecoded.m_vecNumbers.last() >= iLastMarked &&
                 stDecoded.m_vecNumbers.last() < (iLastMarked / 10 + 1) * 10,
             qPrintable(QString::number(stDecoded.m_vecNumbers.last())));
}

}  // namespace

class TestSdvTool : public QObject
{
    Q_OBJECT

    QuillTest::ScopedWorkDir m_workDir;
    QStringList m_qlstSources;  // the files the tests start from

    // The files a test made.
    QStringList Made() const
    {
        QStringList qlstFiles = QDir().entryList(QDir::Files);
        for (const QString& qstrSource : m_qlstSources)
            qlstFiles.removeAll(qstrSource);
        return qlstFiles;
    }

private slots:
    void initTestCase()
    {
        // 25 pictures a second, a keyframe every 10, two B-frames between.
        const QStringList qlstX264{"-c:v",          "libx264", "-preset", "ultrafast", "-g",
                                   "10",            "-bf",     "2",       "-keyint_min", "10",
                                   "-sc_threshold", "0",       "-pix_fmt", "yuv420p"};
        auto make = [&](const QString& _qstrName, const QStringList& _qlstAudio,
                        const QStringList& _qlstFormat, double _dSeconds, int _iFirst) {
            const QuillTest::ST_Clip stClip{_qstrName, qlstX264, _qlstAudio, _qlstFormat,
                                            320,       240,      25,         _dSeconds, _iFirst};
            return !QuillTest::MakeClip(".", stClip).isEmpty();
        };
        QVERIFY(make("clip.mp4", {"-c:a", "aac"}, {}, 6.0, 0));
        QVERIFY(make("g711.avi", {"-c:a", "pcm_alaw", "-ar", "8000"}, {}, 4.0, 0));
        // A recorder's clock hours in; then two recordings joined, the second's
        // clock an hour on, numbered on across the join.
        const QStringList qlstHoursIn{"-output_ts_offset", "36000", "-f", "mpeg"};
        QVERIFY(make("hours.ps", {"-c:a", "mp2"}, qlstHoursIn, 4.0, 0));
        QVERIFY(make("part1.ps", {}, {"-f", "mpeg"}, 2.0, 0));
        QVERIFY(make("part2.ps", {}, {"-output_ts_offset", "3600", "-f", "mpeg"}, 2.0, 50));
        QVERIFY(QuillTest::WriteFile(
            "joined.ps", QuillTest::ReadFile("part1.ps") + QuillTest::ReadFile("part2.ps")));
        QCOMPARE(QuillTest::SealClip("clip.mp4", "sealed.sdv", kPassword), 0);
        // Damaged copies: a bit of the header, a bit of the second chunk,
        // cut short within it, and bytes past the end.
        const QByteArray qbaSealed = QuillTest::ReadFile("sealed.sdv");
        QVERIFY(qbaSealed.size() > kHeader + 2 * kChunk);
        QByteArray qbaBadHeader = qbaSealed, qbaBadChunk = qbaSealed;
        qbaBadHeader[30] = static_cast<char>(qbaBadHeader[30] ^ 1);
        qbaBadChunk[kHeader + kChunk + 5] =
            static_cast<char>(qbaBadChunk[kHeader + kChunk + 5] ^ 1);
        QVERIFY(QuillTest::WriteFile("bad_header.sdv", qbaBadHeader));
        QVERIFY(QuillTest::WriteFile("bad_chunk.sdv", qbaBadChunk));
        QVERIFY(QuillTest::WriteFile("cut.sdv", qbaSealed.left(kHeader + kChunk + 100)));
        QVERIFY(QuillTest::WriteFile("extended.sdv", qbaSealed + QByteArray(100, 'x')));
        QVERIFY(QuillTest::WriteFile("password.txt", kPassword + "\r\n"));
        m_qlstSources = QDir().entryList(QDir::Files);
    }

    void cleanup()
    {
        for (const QString& qstrFile : Made())
            QFile::remove(qstrFile);
    }

    void roundTrip_data()
    {
        QTest::addColumn<QString>("media");
        QTest::addColumn<QStringList>("sealArgs");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QByteArrayList>("info");
        QTest::newRow("mp4 sealed") << "clip.mp4" << QStringList() << kPassword + '\n'
                                    << QByteArrayList{"payload: sealed", "duration ms: 6000"};
        QTest::newRow("ps sealed, password file")
            << "part1.ps" << QStringList{"--password-file", "password.txt"} << QByteArray()
            << QByteArrayList{"codec: h264", "duration ms: 2000"};
        QTest::newRow("mp4 plain") << "clip.mp4" << QStringList{"--plain"} << QByteArray()
                                   << QByteArrayList{"payload: plain", "picture: 320x240"};
    }
    void roundTrip()
    {
        QFETCH(QString, media);
        QFETCH(QStringList, sealArgs);
        QFETCH(QByteArray, input);
        QFETCH(QByteArrayList, info);
        QCOMPARE(Run(sealArgs + QStringList{"seal", media, "out.sdv"}, input), 0);
        QByteArray qbaOutput;
        QCOMPARE(Run({"info", "out.sdv"}, {}, &qbaOutput), 0);
        for (const QByteArray& qbaField : info)
            QVERIFY2(qbaOutput.contains(qbaField), qbaOutput.constData());
        QCOMPARE(Run(sealArgs + QStringList{"verify", "out.sdv"}, input), 0);
        // Typed in, the password opens what a password file sealed.
        QCOMPARE(Run({"unseal", "out.sdv", "back"}, kPassword + '\n'), 0);
        QCOMPARE(QuillTest::ReadFile("back"), QuillTest::ReadFile(media));
    }

    void failuresHaveTheirOwnStatus_data()
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
        QTest::newRow("damaged header")
            << QStringList{"info", "bad_header.sdv"} << QByteArray() << 3;
        QTest::newRow("damaged chunk")
            << QStringList{"unseal", "bad_chunk.sdv", "out"} << qbaRight << 3;
        QTest::newRow("cut short") << QStringList{"verify", "cut.sdv"} << qbaRight << 3;
        QTest::newRow("extended") << QStringList{"verify", "extended.sdv"} << qbaRight << 3;
        QTest::newRow("missing") << QStringList{"unseal", "missing.sdv", "out"} << qbaRight << 4;
    }
    void failuresHaveTheirOwnStatus()
    {
        QFETCH(QStringList, args);
        QFETCH(QByteArray, input);
        QFETCH(int, status);
        QByteArray qbaOutput;
        QCOMPARE(Run(args, input, &qbaOutput), status);
        QVERIFY(!qbaOutput.isEmpty());
        // No output file, not even a part of one.
        QCOMPARE(Made(), QStringList());
    }

    void passwdRewrapsTheKeyOnly()
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

    void exportClip_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");  // its suffix picks the format
        QTest::addColumn<int>("fromMs");
        QTest::addColumn<int>("toMs");
        QTest::addColumn<QByteArray>("password");  // the source's
        QTest::addColumn<EM_ClipResult>("result");
        QTest::addColumn<int>("firstPicture");  // the keyframe at or before the start
        QTest::addColumn<bool>("soundLeftOut");

        // Picture n is at n/25 s; keyframes at multiples of 10.
        const QByteArray qbaRight = kPassword;
        QTest::newRow("mp4, start just before a keyframe")
            << "clip.mp4" << "out.mp4" << 3990 << 4400 << qbaRight << CLIP_OK << 90 << false;
        QTest::newRow("mp4, start on a keyframe")
            << "clip.mp4" << "out.mp4" << 2000 << 2400 << qbaRight << CLIP_OK << 50 << false;
        QTest::newRow("sealed in, sealed out")
            << "sealed.sdv" << "out.sdv" << 3000 << 6000 << qbaRight << CLIP_OK << 70 << false;
        QTest::newRow("G.711 sound stays behind")
            << "g711.avi" << "out.mp4" << 0 << 1000 << qbaRight << CLIP_OK << 0 << true;
        QTest::newRow("clock hours in")
            << "hours.ps" << "out.mp4" << 1000 << 2000 << qbaRight << CLIP_OK << 20 << false;
        QTest::newRow("across a join")
            << "joined.ps" << "out.sdv" << 1000 << 3000 << qbaRight << CLIP_OK << 20 << false;
        // Failed or cancelled (once some of the clip is written): nothing is left.
        QTest::newRow("cancelled mp4")
            << "clip.mp4" << "out.mp4" << 1000 << 5000 << qbaRight << CLIP_CANCELLED << 0 << false;
        QTest::newRow("cancelled sealed") << "sealed.sdv" << "out.sdv" << 1000 << 5000 << qbaRight
                                          << CLIP_CANCELLED << 0 << false;
        QTest::newRow("wrong password") << "sealed.sdv" << "out.mp4" << 1000 << 5000
                                        << QByteArray("guess") << CLIP_WRONG_PASSWORD << 0 << false;
        QTest::newRow("no password") << "sealed.sdv" << "out.mp4" << 1000 << 5000 << QByteArray()
                                     << CLIP_PASSWORD_NEEDED << 0 << false;
        QTest::newRow("not a video") << "missing.mp4" << "out.mp4" << 1000 << 5000 << qbaRight
                                     << CLIP_BAD_SOURCE << 0 << false;
        QTest::newRow("folder missing") << "clip.mp4" << "no/such/out.mp4" << 1000 << 5000
                                        << qbaRight << CLIP_WRITE_FAILED << 0 << false;
        QTest::newRow("over its own source") << "clip.mp4" << "./clip.mp4" << 1000 << 5000
                                             << qbaRight << CLIP_WRITE_FAILED << 0 << false;
        QTest::newRow("past the end") << "clip.mp4" << "out.mp4" << 60000 << 64000 << qbaRight
                                      << CLIP_EMPTY_RANGE << 0 << false;
    }
    void exportClip()
    {
        QFETCH(QString, source);
        QFETCH(QString, target);
        QFETCH(int, fromMs);
        QFETCH(int, toMs);
        QFETCH(QByteArray, password);
        QFETCH(EM_ClipResult, result);
        QFETCH(int, firstPicture);
        QFETCH(bool, soundLeftOut);

        ST_ClipRequest stRequest;
        stRequest.m_strSource = source.toStdString();
        stRequest.m_strTarget = target.toStdString();
        stRequest.m_i64FromMs = fromMs;
        stRequest.m_i64ToMs = toMs;
        stRequest.m_emFormat = target.endsWith(".sdv") ? CLIP_FORMAT_SDV : CLIP_FORMAT_MP4;
        stRequest.m_strSourcePassword = password.toStdString();
        stRequest.m_strTargetPassword = kClipPassword.toStdString();
        const QByteArray qbaSource = QuillTest::ReadFile(source);
        double dLastProgress = -1.0;
        std::atomic<bool> blCancel{false};
        const ST_ClipOutcome stOutcome = CLS_ClipExporter::Run(
            stRequest,
            [&](double _dShare) {
                dLastProgress = _dShare;
                blCancel = result == CLIP_CANCELLED && _dShare > 0.3;
            },
            &blCancel);
        QCOMPARE(stOutcome.m_emResult, result);
        QCOMPARE(QuillTest::ReadFile(source), qbaSource);
        QVERIFY(password.isEmpty() ||
                stOutcome.m_strMessage.find(password.constData()) == std::string::npos);
        if (result != CLIP_OK) {
            QVERIFY(!stOutcome.m_strMessage.empty());
            QCOMPARE(Made(), QStringList());
            return;
        }
        QCOMPARE(stOutcome.m_blSoundLeftOut, soundLeftOut);
        QCOMPARE(dLastProgress, 1.0);
        QCOMPARE(Made(), QStringList{target});
        CheckPictures(target, firstPicture, toMs);
    }

    void commandLineExportsASealedClip()
    {
        // Source password, then the clip's twice, one a line on standard input.
        const QByteArray qbaInput = kPassword + '\n' + kClipPassword + '\n' + kClipPassword + '\n';
        QCOMPARE(Run({"export", "sealed.sdv", "cli.sdv", "1.5", "2"}, qbaInput), 0);
        CheckPictures("cli.sdv", 30, 2000);
    }
};

QTEST_GUILESS_MAIN(TestSdvTool)
#include "tst_SdvTool.moc"
