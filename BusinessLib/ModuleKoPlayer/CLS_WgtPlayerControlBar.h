#pragma once

#include <QString>
#include <QWidget>

class CLS_Player7ListItemDelegate;

namespace Ui {
class CLS_WgtPlayerControlBar;
}

// The strip under the video: progress slider and time, the transport buttons,
// the speed list, full screen, sound with its volume, a status line and the
// history button. It holds no playback logic: every user action leaves as one
// of its signals, and the player window drives the display back through the
// Set... operations.
class CLS_WgtPlayerControlBar : public QWidget
{
    Q_OBJECT

public:
    explicit CLS_WgtPlayerControlBar(QWidget* _pParent = nullptr);
    ~CLS_WgtPlayerControlBar() override;

    CLS_WgtPlayerControlBar(const CLS_WgtPlayerControlBar&) = delete;
    CLS_WgtPlayerControlBar& operator=(const CLS_WgtPlayerControlBar&) = delete;

    void SetPlayState(bool _blPlaying);
    void SetSoundState(bool _blOpen);
    void RefreshButtonStates();
    void SetVideoStopped(bool _blStopped);
    void SetSpeedIndex(int _iIndex);
    void SetTotalTime(int _iSeconds);
    void SetCurrentTime(int _iSeconds);
    void SetPlaySliderValue(int _iValue);
    void SetPlaySliderValueChecked(int _iValue);
    void SetSoundValue(int _iValue);
    int GetPlaySliderMaximum() const;
    int GetSoundSliderMaximum() const;
    void SetPlaySliderEnabled(bool _blEnabled);
    void SetSoundSliderEnabled(bool _blEnabled);
    void SetExceptionInfo(const QString& _qstrInfo);
    // While not empty, the time label shows this (the recording's own clock)
    // instead of the played and total times.
    void SetRecordedTime(const QString& _qstrText);
    // The controls that act on an open file. Open, history, full screen and
    // play (which opens the selected history entry) stay usable without one;
    // the volume slider follows the sound state instead.
    void SetPlaybackControlsEnabled(bool _blEnabled);
    // False between the start of a playback and its stop.
    bool IsVideoStopped() const { return m_blReady; }

    // "hh:mm:ss" with hours not wrapped at 24 (100 hours give "100:00:00").
    static QString TimeText(int _iSeconds);

signals:
    void SignSpeedChange(int _iValue);
    void SignStepBack();
    void SignSlowPlay();
    void SignVideoPlayOrPause();
    void SignStop();
    void SignFastPlay();
    void SignStepUp();
    void SignFullScreen();
    void SignSoundOpenOrClose();
    void SignSliderMoved(int _iPosition);
    void SignSliderClicked(int _iValue);
    void SignSliderValueChanged(int _iValue);
    void SignSoundSliderMoved(int _iPosition);
    void SignSoundSliderPressed(int _iValue);
    void SignSoundSliderValueChanged(int _iValue);
    void SignShowHistroyLog();
    void SignOpenVideoFile();

public slots:
    void SlotDealComIndexChange(int _iValue);

private:
    void InitSpeedList();
    void MakeConnections();
    void RefreshSound();

    Ui::CLS_WgtPlayerControlBar* ui;
    CLS_Player7ListItemDelegate* m_pItemDelegate = nullptr;
    QString m_qstrTotalTime;
    QString m_qstrRecordedTime;
    bool m_blPlaying = false;
    bool m_blReady = true;
    bool m_blSoundOpen = false;
    int m_iTotalTime = 0;
    int m_iCurrentTime = 0;
    int m_iSpeedIndex = 4;
};
