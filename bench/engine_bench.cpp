// Measures the playback engine on a 1080p30 H.264 clip (AAC, GOP 60,
// B-frames) and prints one "name: value" per line. Run it under a display
// (scripts/with-xvfb.sh) so the 1X run draws into a real render widget;
// without one it plays into the null output and says so.
//
//   engine_bench [--clip FILE] [--seconds-1x N] [--only-1x | --only-decode | --only-sealed]
//
// Sealed figures compare the clip with a sealed copy of it made by sdvtool
// (from the same folder as this program).

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QProcess>
#include <QStandardPaths>
#include <QWidget>

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "CLS_Demuxer.h"
#include "CLS_FrameQueue.h"
#include "CLS_MediaSource.h"
#include "CLS_PacketQueue.h"
#include "CLS_SdvIoContext.h"
#include "CLS_SdvReader.h"
#include "CLS_SessionState.h"
#include "CLS_StepCache.h"
#include "CLS_VideoDecoder.h"
#include "CLS_VideoPlayerEngine.h"
#include "PlatformLibrary.h"

extern "C" {
#include <libavcodec/packet.h>
}

using namespace RK_Framework::VideoPlayer;

namespace {

constexpr int kDecodeFrames = 1800;
constexpr double kClipSeconds = 200.0;
constexpr char kSealPassword[] = "bench password";

void Report(const char* _pName, double _dValue, int _iDecimals = 1)
{
    std::printf("%s: %.*f\n", _pName, _iDecimals, _dValue);
    std::fflush(stdout);
}

void Note(const QString& _qstrText)
{
    std::fprintf(stderr, "# %s\n", qPrintable(_qstrText));
}

double Median(std::vector<double> _vecValues)
{
    if (_vecValues.empty()) return -1.0;
    std::sort(_vecValues.begin(), _vecValues.end());
    return _vecValues[_vecValues.size() / 2];
}

double Percentile(std::vector<double> _vecValues, double _dShare)
{
    if (_vecValues.empty()) return -1.0;
    std::sort(_vecValues.begin(), _vecValues.end());
    const auto sizeIndex = static_cast<std::size_t>(_dShare * (_vecValues.size() - 1) + 0.5);
    return _vecValues[std::min(sizeIndex, _vecValues.size() - 1)];
}

double CpuSeconds()
{
    rusage stUsage{};
    getrusage(RUSAGE_SELF, &stUsage);
    return stUsage.ru_utime.tv_sec + stUsage.ru_stime.tv_sec +
           (stUsage.ru_utime.tv_usec + stUsage.ru_stime.tv_usec) / 1e6;
}

double RssMb()
{
    QFile qfStatus(QStringLiteral("/proc/self/status"));
    if (!qfStatus.open(QIODevice::ReadOnly)) return -1.0;
    for (const QByteArray& qbaLine : qfStatus.readAll().split('\n')) {
        if (qbaLine.startsWith("VmRSS:"))
            return qbaLine.mid(6).trimmed().split(' ').value(0).toDouble() / 1024.0;
    }
    return -1.0;
}

QString MakeClip()
{
    const QString qstrDir =
        QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/quill-bench";
    QDir().mkpath(qstrDir);
    const QString qstrPath = qstrDir + "/bench_1080p30_gop60.mp4";
    if (QFileInfo(qstrPath).size() > 0) return qstrPath;
    Note(QStringLiteral("generating %1 (once)").arg(qstrPath));
    const QString qstrSeconds = QString::number(kClipSeconds);
    QProcess qProcess;
    qProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    qProcess.start(QStringLiteral("ffmpeg"),
                   {"-v",
                    "error",
                    "-y",
                    "-f",
                    "lavfi",
                    "-i",
                    "testsrc2=size=1920x1080:rate=30:duration=" + qstrSeconds,
                    "-f",
                    "lavfi",
                    "-i",
                    "sine=frequency=440:sample_rate=48000:duration=" + qstrSeconds,
                    "-c:v",
                    "libx264",
                    "-preset",
                    "veryfast",
                    "-g",
                    "60",
                    "-keyint_min",
                    "60",
                    "-sc_threshold",
                    "0",
                    "-bf",
                    "2",
                    "-pix_fmt",
                    "yuv420p",
                    "-b:v",
                    "6M",
                    "-c:a",
                    "aac",
                    "-ac",
                    "2",
                    qstrPath + ".part.mp4"});
    if (!qProcess.waitForFinished(-1) || qProcess.exitCode() != 0) return QString();
    QFile::rename(qstrPath + ".part.mp4", qstrPath);
    return qstrPath;
}

// A sealed copy of _qstrClip beside it, made once.
QString MakeSealed(const QString& _qstrClip)
{
    const QString qstrPath = _qstrClip + ".sealed.sdv";
    if (QFileInfo(qstrPath).size() > 0) return qstrPath;
    QProcess qProcess;
    qProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    qProcess.start(QCoreApplication::applicationDirPath() + "/sdvtool",
                   {"seal", _qstrClip, qstrPath});
    qProcess.write(QByteArray(kSealPassword) + '\n');
    qProcess.closeWriteChannel();
    if (!qProcess.waitForFinished(-1) || qProcess.exitCode() != 0) return QString();
    return qstrPath;
}

// A player whose shown pictures can be waited for.
struct ST_Watched
{
    std::unique_ptr<CLS_VideoPlayerEngine> m_pPlayer = std::make_unique<CLS_VideoPlayerEngine>();
    std::atomic<std::uint64_t> m_u64Shown{0};
    std::atomic<int> m_iEnds{0};
    ST_PlayerEventCallback m_stCallback;

    ST_Watched()
    {
        m_stCallback = {this, [](void* _pUser, CLS_Player_Rk*, int _iType) {
                            if (_iType == 81) ++static_cast<ST_Watched*>(_pUser)->m_iEnds;
                        }};
        m_pPlayer->SetEventCallback(&m_stCallback);
        m_pPlayer->Init();
        m_pPlayer->SetFrameObserver([this](const AVFrame*) { ++m_u64Shown; });
    }
    bool WaitShownAbove(std::uint64_t _u64Count, int _iTimeoutMs = 5000)
    {
        const auto tpEnd =
            std::chrono::steady_clock::now() + std::chrono::milliseconds(_iTimeoutMs);
        while (m_u64Shown.load() <= _u64Count) {
            if (std::chrono::steady_clock::now() > tpEnd) return false;
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        return true;
    }
};

void RunEvents(double _dSeconds, const std::function<void()>& _fnTick = {})
{
    QElapsedTimer qTimer;
    qTimer.start();
    while (qTimer.elapsed() < _dSeconds * 1000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        if (_fnTick) _fnTick();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

// The engine's own demux and decode path, drained as fast as it goes.
// _pCpuFps: pictures per CPU-second of the process, which other load on a
// shared machine disturbs far less than the time on the clock.
double EngineDecodeFps(const QString& _qstrClip, bool _blSealed = false, double* _pCpuFps = nullptr)
{
    CLS_SessionState stState;
    std::unique_ptr<CLS_SdvIoContext> pIo;
    if (_blSealed) {
        auto pReader = std::make_unique<CLS_SdvReader>();
        if (pReader->Open(_qstrClip.toStdString()) != CLS_SdvReader::OPEN_OK ||
            !pReader->Unlock(kSealPassword, std::strlen(kSealPassword)))
            return -1.0;
        pIo = std::make_unique<CLS_SdvIoContext>(std::move(pReader), _qstrClip.toStdString());
    }
    CLS_MediaSource stSource;
    if (!stSource.Open(_qstrClip.toStdString(), pIo ? pIo->Context() : nullptr)) return -1.0;
    stState.m_blAudioActive = false;
    stState.m_dFrameDuration = stSource.NominalFrameDuration();
    // Up to 1X the engine decodes on one thread, which is plenty; beyond it,
    // and to land on a seek target, on two. Compared with ffmpeg on two
    // threads, so at a speed that still decodes every picture.
    stState.m_dSpeed = 2.0;
    CLS_PacketQueue stVideo;
    CLS_PacketQueue stAudio;
    CLS_FrameQueue stFrames(6, stState.m_iSerial);
    CLS_StepCache stCache(0);
    CLS_VideoDecoder stDecoder(stState, stVideo, stFrames, stCache);
    std::string strError;
    std::vector<AVPacket*> vecAudio;
    if (!stDecoder.Open(stSource.VideoStream(), strError)) return -1.0;
    QElapsedTimer qTimer;
    qTimer.start();
    const double dCpuStart = CpuSeconds();
    if (!stDecoder.DecodeFirst(stSource, vecAudio, strError)) return -1.0;
    for (AVPacket* pPacket : vecAudio)
        av_packet_free(&pPacket);
    CLS_Demuxer stDemuxer(stState, stSource, stVideo, stAudio);
    stDemuxer.Start();
    stDecoder.Start();
    int iFrames = 0;
    while (iFrames < kDecodeFrames) {
        ST_VideoFrame stFrame;
        if (!stFrames.Peek(stFrame, std::chrono::milliseconds(2000))) break;
        stFrames.Pop(stFrame);
        if (!stFrame.m_pFrame) break;
        FreeVideoFrame(stFrame);
        ++iFrames;
    }
    const double dSeconds = qTimer.nsecsElapsed() / 1e9;
    if (_pCpuFps) *_pCpuFps = iFrames / std::max(1e-9, CpuSeconds() - dCpuStart);
    stState.m_blAbort = true;
    stState.Wake();
    stVideo.Abort();
    stAudio.Abort();
    stFrames.Abort();
    stDemuxer.Join();
    stDecoder.Join();
    return iFrames / dSeconds;
}

double FfmpegDecodeFps(const QString& _qstrClip)
{
    QProcess qProcess;
    QElapsedTimer qTimer;
    qTimer.start();
    qProcess.start(QStringLiteral("ffmpeg"),
                   {"-v", "error", "-threads", "2", "-i", _qstrClip, "-an", "-frames:v",
                    QString::number(kDecodeFrames), "-f", "null", "-"});
    if (!qProcess.waitForFinished(-1) || qProcess.exitCode() != 0) return -1.0;
    return kDecodeFrames / (qTimer.nsecsElapsed() / 1e9);
}

// Exact seeks while paused, to scattered positions.
std::vector<double> SeekTimes(const QString& _qstrClip, bool _blSealed)
{
    std::vector<double> vecSeek;
    ST_Watched stWatched;
    CLS_VideoPlayerEngine& stPlayer = *stWatched.m_pPlayer;
    if (!stPlayer.OpenFile(_qstrClip.toStdString())) return vecSeek;
    if (_blSealed && stPlayer.SetDecryptKey(kSealPassword, int(std::strlen(kSealPassword))) != 0)
        return vecSeek;
    stPlayer.Play(0);
    stWatched.WaitShownAbove(0);
    stPlayer.Pause(true);
    for (int i = 0; i < 25; ++i) {
        const int iPercent = (i * 37) % 97 + 1;
        const std::uint64_t u64Before = stWatched.m_u64Shown.load();
        QElapsedTimer qTimer;
        qTimer.start();
        stPlayer.SetPlayPos(iPercent);
        if (stWatched.WaitShownAbove(u64Before)) vecSeek.push_back(qTimer.nsecsElapsed() / 1e6);
    }
    return vecSeek;
}

// The sealed copy against the clip: decoding speed, unlocking, seeking.
void ReportSealed(const QString& _qstrClip)
{
    const QString qstrSealed = MakeSealed(_qstrClip);
    if (qstrSealed.isEmpty()) {
        Note(QStringLiteral("no sealed copy (sdvtool missing?)"));
        return;
    }
    // Alternated and best of six, so that other load on the machine
    // weighs on both alike.
    double dPlain = 0.0, dSealed = 0.0, dPlainCpu = 0.0, dSealedCpu = 0.0;
    EngineDecodeFps(qstrSealed, true);  // the file into the page cache
    for (int i = 0; i < 6; ++i) {
        double dCpu = 0.0;
        dPlain = std::max(dPlain, EngineDecodeFps(_qstrClip, false, &dCpu));
        dPlainCpu = std::max(dPlainCpu, dCpu);
        dSealed = std::max(dSealed, EngineDecodeFps(qstrSealed, true, &dCpu));
        dSealedCpu = std::max(dSealedCpu, dCpu);
    }
    std::vector<double> vecUnlock;
    for (int i = 0; i < 7; ++i) {
        CLS_SdvReader stReader;
        if (stReader.Open(qstrSealed.toStdString()) != CLS_SdvReader::OPEN_OK) break;
        QElapsedTimer qTimer;
        qTimer.start();
        if (stReader.Unlock(kSealPassword, std::strlen(kSealPassword)))
            vecUnlock.push_back(qTimer.nsecsElapsed() / 1e6);
    }
    const double dPlainSeek = Median(SeekTimes(_qstrClip, false));
    const double dSealedSeek = Median(SeekTimes(qstrSealed, true));
    Report("plain_decode_fps", dPlain);
    Report("sealed_decode_fps", dSealed);
    Report("sealed_decode_ratio_wall", dPlain > 0 ? dSealed / dPlain : -1.0, 3);
    Report("sealed_decode_ratio", dPlainCpu > 0 ? dSealedCpu / dPlainCpu : -1.0, 3);
    Report("unlock_ms", Median(vecUnlock));
    Report("plain_seek_median_ms", dPlainSeek);
    Report("sealed_seek_median_ms", dSealedSeek);
}

}  // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("SDL_AUDIODRIVER")) qputenv("SDL_AUDIODRIVER", "dummy");
    QApplication qApplication(argc, argv);
    QCommandLineParser qParser;
    qParser.addHelpOption();
    qParser.addOption({"clip", "Clip to measure (default: a generated 1080p30 clip).", "file"});
    qParser.addOption({"seconds-1x", "Length of the 1X run (default 60).", "seconds", "60"});
    qParser.addOption({"only-1x", "Measure the 1X run alone."});
    qParser.addOption({"only-decode", "Measure decoding speed alone (engine, ffmpeg, engine)."});
    qParser.addOption({"only-sealed", "Measure a sealed copy of the clip against the clip alone."});
    qParser.process(qApplication);
    const QString qstrClip = qParser.isSet("clip") ? qParser.value("clip") : MakeClip();
    if (qstrClip.isEmpty() || !QFileInfo::exists(qstrClip)) {
        std::fprintf(stderr, "engine_bench: no clip\n");
        return 1;
    }
    const double dSeconds1x = std::max(1.0, qParser.value("seconds-1x").toDouble());

    if (qParser.isSet("only-sealed")) {
        ReportSealed(qstrClip);
        return 0;
    }
    if (qParser.isSet("only-decode")) {
        Report("decode_fps", EngineDecodeFps(qstrClip));
        Report("ffmpeg_decode_fps", FfmpegDecodeFps(qstrClip));
        Report("decode_fps", EngineDecodeFps(qstrClip));
        return 0;
    }

    // 1X into a real render widget first, so the memory peak is this run's.
    QWidget* pWidget = nullptr;
    QLibrary qRender(QCoreApplication::applicationDirPath() + QLatin1Char('/') +
                     QString::fromStdString(BriskPlatform::LibraryFileName("QGLRender")));
    using FnCreate = void* (*)(void*);
    using FnRelease = int (*)(void*);
    FnRelease pfnRelease = nullptr;
    if (QGuiApplication::platformName() == "xcb" && qRender.load()) {
        auto pfnCreate = reinterpret_cast<FnCreate>(qRender.resolve("QGL_Create"));
        pfnRelease = reinterpret_cast<FnRelease>(qRender.resolve("QGL_Release"));
        if (pfnCreate) pWidget = static_cast<QWidget*>(pfnCreate(nullptr));
    }
    if (pWidget) {
        pWidget->resize(1280, 720);
        pWidget->show();
        RunEvents(0.5);
    } else {
        Note("no render widget (needs a display and libQGLRender.so): 1X run uses the null output");
    }
    const auto i64Handle = static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(pWidget));
    double dDropped = -1.0;
    double dCpu = -1.0;
    double dPeakRss = -1.0;
    {
        Note(QStringLiteral("resident with the window up: %1 MB").arg(RssMb(), 0, 'f', 1));
        ST_Watched stWatched;
        if (stWatched.m_pPlayer->OpenFile(qstrClip.toStdString())) {
            stWatched.m_pPlayer->OpenSound();
            stWatched.m_pPlayer->SetVolume(50);
            Note(QStringLiteral("resident before playing: %1 MB").arg(RssMb(), 0, 'f', 1));
            const double dCpuStart = CpuSeconds();
            QElapsedTimer qTimer;
            qTimer.start();
            stWatched.m_pPlayer->Play(i64Handle);
            RunEvents(dSeconds1x, [&] { dPeakRss = std::max(dPeakRss, RssMb()); });
            dCpu = (CpuSeconds() - dCpuStart) / (qTimer.nsecsElapsed() / 1e9);
            dDropped = static_cast<double>(stWatched.m_pPlayer->DroppedFrames());
            Note(QStringLiteral("1X run showed %1 pictures in %2 s")
                     .arg(stWatched.m_pPlayer->ShownFrames())
                     .arg(qTimer.elapsed() / 1000.0));
            stWatched.m_pPlayer->Stop();
        }
    }

    if (qParser.isSet("only-1x")) {
        Report("dropped_frames_1x_60s", dDropped, 0);
        Report("cpu_per_second_1x", dCpu, 3);
        Report("peak_rss_mb", dPeakRss);
        if (pWidget && pfnRelease) pfnRelease(pWidget);
        return 0;
    }
    const double dDecodeFps = EngineDecodeFps(qstrClip);
    const double dFfmpegFps = FfmpegDecodeFps(qstrClip);

    std::vector<double> vecOpen;
    for (int i = 0; i < 7; ++i) {
        ST_Watched stWatched;
        QElapsedTimer qTimer;
        qTimer.start();
        if (!stWatched.m_pPlayer->OpenFile(qstrClip.toStdString())) break;
        stWatched.m_pPlayer->Play(0);
        if (stWatched.WaitShownAbove(0)) vecOpen.push_back(qTimer.nsecsElapsed() / 1e6);
    }

    std::vector<double> vecSeek = SeekTimes(qstrClip, false);
    std::vector<double> vecBackInGop;
    std::vector<double> vecBackAcross;
    {
        ST_Watched stWatched;
        CLS_VideoPlayerEngine& stPlayer = *stWatched.m_pPlayer;
        stPlayer.OpenFile(qstrClip.toStdString());
        stPlayer.Play(0);
        stWatched.WaitShownAbove(0);
        stPlayer.Pause(true);
        // Paused in mid-group after playing: the first step decodes the
        // group again, the following ones come from the kept pictures.
        for (int iPercent : {30, 60}) {
            stPlayer.SetPlayPos(iPercent);
            stPlayer.Pause(false);
            std::this_thread::sleep_for(std::chrono::milliseconds(1400));
            stPlayer.Pause(true);
            for (int i = 0; i < 15; ++i) {
                QElapsedTimer qTimer;
                qTimer.start();
                if (stPlayer.StepBack()) vecBackInGop.push_back(qTimer.nsecsElapsed() / 1e6);
            }
        }
        // Multiples of 10 % of 200 s land on keyframes (every 2 s): one step
        // back needs the whole previous group.
        for (int iPercent = 10; iPercent <= 90; iPercent += 10) {
            const std::uint64_t u64Before = stWatched.m_u64Shown.load();
            stPlayer.SetPlayPos(iPercent);
            stWatched.WaitShownAbove(u64Before);
            QElapsedTimer qTimer;
            qTimer.start();
            if (stPlayer.StepBack()) vecBackAcross.push_back(qTimer.nsecsElapsed() / 1e6);
        }
    }

    double dPace = -1.0;
    {
        ST_Watched stWatched;
        CLS_VideoPlayerEngine& stPlayer = *stWatched.m_pPlayer;
        if (stPlayer.OpenFile(qstrClip.toStdString())) {
            stPlayer.Play(i64Handle);
            for (int i = 0; i < 4; ++i)
                stPlayer.Fast();
            RunEvents(0.5);
            const double dStart = stPlayer.ShownTime();
            QElapsedTimer qTimer;
            qTimer.start();
            RunEvents(10.0);
            const double dEnd = stPlayer.ShownTime();
            dPace = (dEnd - dStart) / (16.0 * qTimer.nsecsElapsed() / 1e9);
            stPlayer.Stop();
        }
    }
    if (pWidget && pfnRelease) pfnRelease(pWidget);

    Report("decode_fps", dDecodeFps);
    Report("ffmpeg_decode_fps", dFfmpegFps);
    Report("decode_ratio", dFfmpegFps > 0 ? dDecodeFps / dFfmpegFps : -1.0, 3);
    Report("open_to_first_frame_ms", Median(vecOpen));
    Report("exact_seek_median_ms", Median(vecSeek));
    Report("exact_seek_p90_ms", Percentile(vecSeek, 0.9));
    Report("stepback_in_gop_median_ms", Median(vecBackInGop));
    Report("stepback_across_gop_median_ms", Median(vecBackAcross));
    Report("pace_16x", dPace, 3);
    Report("dropped_frames_1x_60s", dDropped, 0);
    Report("cpu_per_second_1x", dCpu, 3);
    Report("peak_rss_mb", dPeakRss);
    ReportSealed(qstrClip);
    return 0;
}
