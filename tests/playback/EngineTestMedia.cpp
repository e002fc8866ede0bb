#include "EngineTestMedia.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include "QuillTestSupport.h"

extern "C" {
#include <libavutil/frame.h>
}

namespace QuillTest {

namespace {
constexpr int kBlock = 32;
constexpr int kBits = 10;
}  // namespace

QString MakeClip(const QString& _qstrDir, const ST_Clip& _stClip)
{
    const QString qstrPath = QDir(_qstrDir).filePath(_stClip.m_qstrName);
    if (QFileInfo::exists(qstrPath)) return qstrPath;
    const QString qstrSeconds = QString::number(_stClip.m_dSeconds);
    const QString qstrVideo =
        QString::asprintf("testsrc2=size=%dx%d:rate=%d:duration=%s", _stClip.m_iWidth,
                          _stClip.m_iHeight, _stClip.m_iFps, qPrintable(qstrSeconds));
    QStringList qlstArgs{"-v", "error", "-y", "-f", "lavfi", "-i", qstrVideo};
    if (!_stClip.m_qlstAudioArgs.isEmpty())
        qlstArgs << QStringList{"-f", "lavfi", "-i",
                                "sine=frequency=1000:sample_rate=48000:duration=" + qstrSeconds};
    // Bit b of the picture number decides the block at x = 32b..32b+31 of the
    // top 32 rows; chroma there is neutral so any pixel format reads alike.
    qlstArgs << "-vf"
             << QStringLiteral(
                    "geq=lum='if(lt(Y,%1),if(mod(floor((N+%3)/pow(2,floor(X/%1))),2),235,16),"
                    "lum(X,Y))':cb='if(lt(Y,%2),128,cb(X,Y))':cr='if(lt(Y,%2),128,cr(X,Y))'")
                    .arg(kBlock)
                    .arg(kBlock / 2)
                    .arg(_stClip.m_iFirstNumber);
    qlstArgs << _stClip.m_qlstVideoArgs << _stClip.m_qlstAudioArgs << _stClip.m_qlstFormatArgs
             << qstrPath;
    QByteArray qbaOutput;
    if (RunProgram(QStringLiteral("ffmpeg"), qlstArgs, &qbaOutput) != 0) {
        qWarning("ffmpeg failed for %s: %s", qPrintable(_stClip.m_qstrName), qbaOutput.constData());
        return QString();
    }
    return qstrPath;
}

int SealClip(const QString& _qstrIn, const QString& _qstrOut, const QByteArray& _qbaPassword)
{
    QProcess qProcess;
    QStringList qlstArgs{"seal", _qstrIn, _qstrOut};
    if (_qbaPassword.isEmpty()) qlstArgs.prepend("--plain");
    qProcess.start(BinPath(QStringLiteral("sdvtool")), qlstArgs);
    qProcess.write(_qbaPassword + '\n');
    qProcess.closeWriteChannel();
    if (!qProcess.waitForFinished(60000)) return -1;
    if (qProcess.exitCode() != 0)
        qWarning("sdvtool: %s", qProcess.readAllStandardError().constData());
    return qProcess.exitStatus() == QProcess::NormalExit ? qProcess.exitCode() : -1;
}

int FrameNumberOf(const AVFrame* _pFrame)
{
    if (!_pFrame || !_pFrame->data[0] || _pFrame->width < kBlock * kBits ||
        _pFrame->height < kBlock)
        return -1;
    const uint8_t* pRow =
        _pFrame->data[0] + static_cast<std::ptrdiff_t>(kBlock / 2) * _pFrame->linesize[0];
    int iNumber = 0;
    for (int iBit = 0; iBit < kBits; ++iBit) {
        if (pRow[iBit * kBlock + kBlock / 2] > 128) iNumber |= 1 << iBit;
    }
    return iNumber;
}

std::unique_ptr<RK_Framework::VideoPlayer::CLS_VideoPlayerEngine> MakeProbedPlayer(ST_Probe& _stProbe)
{
    using RK_Framework::VideoPlayer::CLS_Player_Rk;
    auto pPlayer = std::make_unique<RK_Framework::VideoPlayer::CLS_VideoPlayerEngine>();
    _stProbe.m_stCallback = {&_stProbe, [](void* _pUser, CLS_Player_Rk* _pPlayer, int _iType) {
                                 auto* pProbe = static_cast<ST_Probe*>(_pUser);
                                 pProbe->m_pRaisedBy = _pPlayer;
                                 if (QThread::currentThread() == QCoreApplication::instance()->thread())
                                     pProbe->m_blOnCallerThread = true;
                                 if (_iType == 81) ++pProbe->m_iEnds;
                                 if (_iType == 55) ++pProbe->m_iAsked;
                                 if (_iType == 56) ++pProbe->m_iRefused;
                             }};
    pPlayer->SetEventCallback(&_stProbe.m_stCallback);
    pPlayer->Init();
    pPlayer->SetFrameObserver([&_stProbe](const AVFrame* _pFrame) {
        const int iNumber = FrameNumberOf(_pFrame);
        _stProbe.m_iLast = iNumber;
        ++_stProbe.m_iShown;
        // Only the presenter's thread writes it.
        if (iNumber < _stProbe.m_iLowest.load()) _stProbe.m_iLowest = iNumber;
    });
    return pPlayer;
}

}  // namespace QuillTest
