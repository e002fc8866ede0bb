#pragma once

#include <QString>
#include <QStringList>

#include <atomic>
#include <climits>
#include <memory>

#include "CLS_VideoPlayerEngine.h"

struct AVFrame;

namespace QuillTest {

// Clips for the engine tests, made with the ffmpeg command line. Every
// picture carries its own number in the top band (ten black/white blocks,
// least significant bit on the left), so a test can tell which picture is on
// screen from its pixels alone.
struct ST_Clip
{
    QString m_qstrName;            // file name, suffix included
    QStringList m_qlstVideoArgs;   // encoder options, e.g. {"-c:v", "libx264"}
    QStringList m_qlstAudioArgs;   // empty: no sound
    QStringList m_qlstFormatArgs;  // e.g. {"-f", "mpeg"}
    int m_iWidth = 320;
    int m_iHeight = 240;
    int m_iFps = 25;
    double m_dSeconds = 4.0;
    int m_iFirstNumber = 0;  // number carried by the first picture
};

// Makes the clip in _qstrDir; the path, or an empty string on failure.
QString MakeClip(const QString& _qstrDir, const ST_Clip& _stClip);

// Wraps _qstrIn into the .sdv file _qstrOut with build/bin/sdvtool: sealed
// under _qbaPassword (given on standard input), or plain when it is empty.
// The exit status of sdvtool.
int SealClip(const QString& _qstrIn, const QString& _qstrOut, const QByteArray& _qbaPassword);

// The number the picture carries; -1 when the band cannot be read.
int FrameNumberOf(const AVFrame* _pFrame);

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
    std::atomic<RK_Framework::VideoPlayer::CLS_Player_Rk*> m_pRaisedBy{nullptr};
    RK_Framework::VideoPlayer::ST_PlayerEventCallback m_stCallback{};
};

// An initialised player reporting into _stProbe, which must outlive it.
std::unique_ptr<RK_Framework::VideoPlayer::CLS_VideoPlayerEngine> MakeProbedPlayer(ST_Probe& _stProbe);

}  // namespace QuillTest
