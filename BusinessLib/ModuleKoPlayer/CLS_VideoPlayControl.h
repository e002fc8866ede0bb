#pragma once

#include <QObject>
#include <QString>

#include "CLS_Player_Rk.h"

class CLS_LoadLibrary;

// One player of the playback library for one playback. Every operation
// forwards to the player; without a player (library or factory missing) the
// forwarders answer false or -1, leave output arguments alone and call
// nothing. The player's events arrive on a thread of the library and leave
// here only as the two signals.
class CLS_VideoPlayControl : public QObject
{
    Q_OBJECT
public:
    explicit CLS_VideoPlayControl(QObject* _pParent = nullptr);
    ~CLS_VideoPlayControl() override;

    bool HasPlayer() const { return m_pPlayer != nullptr; }

    qlonglong GetPlayHandle();
    bool OpenFile(const QString& _qstrFilePath);
    bool Stop();
    bool Play(qlonglong _qi64PlayHandle);
    bool Pause(bool _blPause);
    int Fast();
    int Slow();
    int NormalSpeed();
    bool SetPlayPos(int _iPercent);
    bool SetVolume(qlonglong _qi64Volume);
    bool OpenSound();
    bool CloseSound();
    bool GetTotalTime(int& _iTotalTime);
    bool GetPlayedTime(int& _iPlayedTime);
    bool StepForward();
    bool StepBack();
    int IsBusy();
    bool GetShownPicture(RK_Framework::VideoPlayer::ST_ShownPicture& _stPicture, bool _blPixels);
    bool SetShownPart(double _dX, double _dY, double _dWidth, double _dHeight);

    // Stops a playback the player still holds, opens the file and, when that
    // worked, plays it into the window. True whenever there is a player: a
    // failed open shows up in the total time asked next.
    bool OpenAndPlay(qlonglong _qi64PlayHandle, const QString& _qstrFilePath);

signals:
    void SignPlaybackDecryptCallback(int _iDecrytStatusType, qlonglong _qi64PlayHandle);
    void SignDealVideoHostPlayOver(int _iPlayType, qlonglong _qi64PlayHandle);

public slots:
    // Hands the password to the player; an accepted key resumes playback in
    // the window it was started in. A refused one comes back as event 56.
    void SlotSetVideoDecryptKey(QString _qstrPassword);

private:
    void GetCreateVideoPlayerFunc();
    static void PlayerEventCallback(void* _pUser, RK_Framework::VideoPlayer::CLS_Player_Rk* _pPlayer,
                                    int _iType);

    CLS_LoadLibrary* m_pLoadLibrary = nullptr;
    QString m_qstrLibraryDir;
    RK_Framework::VideoPlayer::CLS_Player_Rk* m_pPlayer = nullptr;
    // Kept by the player for its whole life, so it lives as long as this object.
    RK_Framework::VideoPlayer::ST_PlayerEventCallback m_stEventCallback;
};
