#include "CLS_VideoPlayControl.h"

#include "CLS_LoadLibrary.h"
#include "ModuleKoPlayerLog.h"

#include <algorithm>
#include <string>

using RK_Framework::VideoPlayer::CLS_Player_Rk;

namespace {
constexpr int kEventPasswordNeeded = 55;
constexpr int kEventWrongPassword = 56;
constexpr int kEventPlayOver = 81;
}  // namespace

CLS_VideoPlayControl::CLS_VideoPlayControl(QObject* _pParent) : QObject(_pParent)
{
    GetCreateVideoPlayerFunc();
}

CLS_VideoPlayControl::~CLS_VideoPlayControl()
{
    delete m_pPlayer;
    m_pPlayer = nullptr;
    delete m_pLoadLibrary;
    m_pLoadLibrary = nullptr;
}

void CLS_VideoPlayControl::GetCreateVideoPlayerFunc()
{
    m_qstrLibraryDir = QStringLiteral(".");
    const std::string strDirectory = m_qstrLibraryDir.toStdString();
    m_pLoadLibrary = new CLS_LoadLibrary(strDirectory);
    if (!m_pLoadLibrary->GetCreateVideoPlayer()) return;

    if (CLS_LoadLibrary::CreateVideoPlayerFn pfnCreate = m_pLoadLibrary->CreateVideoPlayerFunc())
        m_pPlayer = pfnCreate(strDirectory.c_str());
    if (!m_pPlayer) {
        PLAYER_LOG(3) << "TFCreateVideoPlayer error pFunction === nullptr";
        return;
    }
    m_stEventCallback.m_pUser = this;
    m_stEventCallback.m_pfnCallback = &CLS_VideoPlayControl::PlayerEventCallback;
    m_pPlayer->SetEventCallback(&m_stEventCallback);
    PLAYER_LOG(1) << "TFCreateVideoPlayer success";
    m_pPlayer->Init();
}

void CLS_VideoPlayControl::PlayerEventCallback(void* _pUser, CLS_Player_Rk* _pPlayer, int _iType)
{
    auto* pControl = static_cast<CLS_VideoPlayControl*>(_pUser);
    if (!pControl || !_pPlayer) return;
    if (_iType == kEventPasswordNeeded || _iType == kEventWrongPassword)
        emit pControl->SignPlaybackDecryptCallback(_iType, _pPlayer->GetPlayHandle());
    else if (_iType == kEventPlayOver)
        emit pControl->SignDealVideoHostPlayOver(_iType, _pPlayer->GetPlayHandle());
}

qlonglong CLS_VideoPlayControl::GetPlayHandle()
{
    return m_pPlayer ? m_pPlayer->GetPlayHandle() : -1;
}

bool CLS_VideoPlayControl::OpenFile(const QString& _qstrFilePath)
{
    return m_pPlayer && m_pPlayer->OpenFile(_qstrFilePath.toStdString());
}

bool CLS_VideoPlayControl::Stop()
{
    return m_pPlayer && m_pPlayer->Stop();
}

bool CLS_VideoPlayControl::Play(qlonglong _qi64PlayHandle)
{
    return m_pPlayer && m_pPlayer->Play(_qi64PlayHandle);
}

bool CLS_VideoPlayControl::Pause(bool _blPause)
{
    return m_pPlayer && m_pPlayer->Pause(_blPause);
}

int CLS_VideoPlayControl::Fast()
{
    return m_pPlayer ? m_pPlayer->Fast() : -1;
}

int CLS_VideoPlayControl::Slow()
{
    return m_pPlayer ? m_pPlayer->Slow() : -1;
}

int CLS_VideoPlayControl::NormalSpeed()
{
    return m_pPlayer ? m_pPlayer->NormalSpeed() : -1;
}

bool CLS_VideoPlayControl::SetPlayPos(int _iPercent)
{
    return m_pPlayer && m_pPlayer->SetPlayPos(_iPercent);
}

bool CLS_VideoPlayControl::SetVolume(qlonglong _qi64Volume)
{
    return m_pPlayer && m_pPlayer->SetVolume(_qi64Volume);
}

bool CLS_VideoPlayControl::OpenSound()
{
    return m_pPlayer && m_pPlayer->OpenSound();
}

bool CLS_VideoPlayControl::CloseSound()
{
    return m_pPlayer && m_pPlayer->CloseSound();
}

bool CLS_VideoPlayControl::GetTotalTime(int& _iTotalTime)
{
    if (!m_pPlayer) return false;
    _iTotalTime = m_pPlayer->GetTotalTime();
    return true;
}

bool CLS_VideoPlayControl::GetPlayedTime(int& _iPlayedTime)
{
    if (!m_pPlayer) return false;
    _iPlayedTime = m_pPlayer->GetPlayedTime();
    return true;
}

bool CLS_VideoPlayControl::StepForward()
{
    return m_pPlayer && m_pPlayer->StepForward();
}

bool CLS_VideoPlayControl::StepBack()
{
    return m_pPlayer && m_pPlayer->StepBack();
}

int CLS_VideoPlayControl::IsBusy()
{
    return m_pPlayer ? m_pPlayer->IsBusy() : -1;
}

bool CLS_VideoPlayControl::GetShownPicture(RK_Framework::VideoPlayer::ST_ShownPicture& _stPicture,
                                           bool _blPixels)
{
    return m_pPlayer && m_pPlayer->GetShownPicture(_stPicture, _blPixels);
}

bool CLS_VideoPlayControl::SetShownPart(double _dX, double _dY, double _dWidth, double _dHeight)
{
    return m_pPlayer && m_pPlayer->SetShownPart(_dX, _dY, _dWidth, _dHeight);
}

bool CLS_VideoPlayControl::OpenAndPlay(qlonglong _qi64PlayHandle, const QString& _qstrFilePath)
{
    if (!m_pPlayer) return false;
    if (m_pPlayer->IsBusy() != 0) m_pPlayer->Stop();
    if (m_pPlayer->OpenFile(_qstrFilePath.toStdString())) m_pPlayer->Play(_qi64PlayHandle);
    return true;
}

void CLS_VideoPlayControl::SlotSetVideoDecryptKey(QString _qstrPassword)
{
    if (!m_pPlayer) return;
    std::string strKey = _qstrPassword.toStdString();
    const int iResult = m_pPlayer->SetDecryptKey(strKey.c_str(), _qstrPassword.length());
    // The key is not kept in this process longer than the call needs it.
    std::fill(strKey.begin(), strKey.end(), '\0');
    _qstrPassword.fill(QChar(0));
    if (iResult != 0) return;
    const qlonglong qi64PlayHandle = m_pPlayer->GetPlayHandle();
    if (qi64PlayHandle != 0) m_pPlayer->Play(qi64PlayHandle);
}
