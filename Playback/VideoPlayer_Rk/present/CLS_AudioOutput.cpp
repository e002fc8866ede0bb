#include "CLS_AudioOutput.h"

#include <SDL.h>

#include <algorithm>
#include <cstring>

#include "CLS_PlayClock.h"
#include "CLS_SessionState.h"

namespace RK_Framework::VideoPlayer {

namespace {
// How far sound may be off the picture before it is realigned (seconds).
constexpr double kAlignTolerance = 0.04;
// Converted sound kept ahead of the card.
constexpr double kBufferSeconds = 0.3;
}  // namespace

CLS_AudioOutput::CLS_AudioOutput(CLS_SessionState& _state, CLS_PlayClock& _clock)
    : m_state(_state), m_clock(_clock)
{}

CLS_AudioOutput::~CLS_AudioOutput()
{
    Close();
}

bool CLS_AudioOutput::Open(int _iSampleRate, int _iChannels)
{
    Close();
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_blAbort = false;
    }
    // SDL must not take over SIGINT/SIGTERM from the host application.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) return false;
    m_blSdlStarted = true;
    SDL_AudioSpec stWant;
    SDL_zero(stWant);
    stWant.freq = _iSampleRate > 0 ? _iSampleRate : 48000;
    stWant.format = AUDIO_S16SYS;
    stWant.channels = static_cast<Uint8>(std::clamp(_iChannels, 1, 2));
    stWant.samples = 1024;
    stWant.callback = &CLS_AudioOutput::Callback;
    stWant.userdata = this;
    SDL_AudioSpec stHave;
    SDL_zero(stHave);
    m_uiDevice =
        SDL_OpenAudioDevice(nullptr, 0, &stWant, &stHave,
                            SDL_AUDIO_ALLOW_FREQUENCY_CHANGE | SDL_AUDIO_ALLOW_CHANNELS_CHANGE);
    if (m_uiDevice == 0) {
        Close();
        return false;
    }
    m_iRate = stHave.freq;
    m_iChannels = stHave.channels;
    m_iBytesPerSecond = m_iRate * m_iChannels * 2;
    m_dDeviceLatency = static_cast<double>(stHave.samples) / m_iRate;
    SDL_PauseAudioDevice(m_uiDevice, 0);
    return true;
}

void CLS_AudioOutput::Close()
{
    Abort();
    if (m_uiDevice != 0) {
        // Returns once the callback has finished; nothing calls us after.
        SDL_CloseAudioDevice(m_uiDevice);
        m_uiDevice = 0;
    }
    if (m_blSdlStarted) {
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        m_blSdlStarted = false;
    }
    Flush();
}

void CLS_AudioOutput::Callback(void* _pUser, std::uint8_t* _pStream, int _iLen)
{
    static_cast<CLS_AudioOutput*>(_pUser)->Fill(_pStream, _iLen);
}

double CLS_AudioOutput::ChunkTime(const ST_Chunk& _stChunk) const
{
    return _stChunk.m_dTime + static_cast<double>(_stChunk.m_sizeOffset) / m_iBytesPerSecond;
}

void CLS_AudioOutput::Fill(std::uint8_t* _pStream, int _iLen)
{
    std::memset(_pStream, 0, static_cast<std::size_t>(_iLen));
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_blPaused.load() || m_blAbort) {
        m_blClockValid = false;
        return;
    }
    const bool blAudible =
        m_blSoundOn.load() && m_iVolume.load() > 0 && m_state.m_blAudioActive.load();
    const int iMixVolume = m_iVolume.load() * SDL_MIX_MAXVOLUME / 100;
    const int iFrameBytes = m_iChannels * 2;
    std::size_t sizeDone = 0;
    const std::size_t sizeWanted = static_cast<std::size_t>(_iLen);
    double dEndTime = 0.0;
    bool blWrote = false;
    while (sizeDone < sizeWanted && !m_dqChunks.empty()) {
        ST_Chunk& stChunk = m_dqChunks.front();
        const std::size_t sizeLeft = stChunk.m_vecData.size() - stChunk.m_sizeOffset;
        if (stChunk.m_iSerial != m_state.m_iSerial.load() || sizeLeft == 0) {
            m_sizeQueued -= sizeLeft;
            m_dqChunks.pop_front();
            m_cvSpace.notify_all();
            continue;
        }
        if (!m_blAligned) {
            const double dLag = m_clock.Get() - ChunkTime(stChunk);
            if (dLag > kAlignTolerance) {
                // Behind the picture: throw away what was due already.
                std::size_t sizeDrop = static_cast<std::size_t>(dLag * m_iBytesPerSecond);
                sizeDrop -= sizeDrop % static_cast<std::size_t>(iFrameBytes);
                sizeDrop = std::min(std::max<std::size_t>(sizeDrop, iFrameBytes), sizeLeft);
                stChunk.m_sizeOffset += sizeDrop;
                m_sizeQueued -= sizeDrop;
                m_cvSpace.notify_all();
                continue;
            }
            if (dLag < -kAlignTolerance) break;  // ahead: silence until the picture catches up
            m_blAligned = true;
        }
        const std::size_t sizeCopy = std::min(sizeLeft, sizeWanted - sizeDone);
        if (blAudible)
            SDL_MixAudioFormat(_pStream + sizeDone, stChunk.m_vecData.data() + stChunk.m_sizeOffset,
                               AUDIO_S16SYS, static_cast<Uint32>(sizeCopy), iMixVolume);
        stChunk.m_sizeOffset += sizeCopy;
        m_sizeQueued -= sizeCopy;
        sizeDone += sizeCopy;
        dEndTime = ChunkTime(stChunk);
        blWrote = true;
        m_cvSpace.notify_all();
    }
    if (sizeDone < sizeWanted) {
        // Ran dry or still waiting to line up: the pictures keep their own time.
        m_blAligned = m_blAligned && !m_dqChunks.empty();
        m_blClockValid = false;
        return;
    }
    if (blWrote) {
        m_dClockTime = dEndTime;
        m_tpClock = std::chrono::steady_clock::now();
        m_blClockValid = true;
    }
}

bool CLS_AudioOutput::MasterTime(double& _dTime) const
{
    if (!m_blSoundOn.load() || !m_state.m_blAudioActive.load()) return false;
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_blClockValid || !m_blAligned) return false;
    const double dSince =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - m_tpClock).count();
    // The card is about one buffer behind what we handed it.
    const double dTime = m_dClockTime - m_dDeviceLatency + dSince;
    _dTime = std::min(dTime, m_dClockTime);
    return true;
}

bool CLS_AudioOutput::Push(std::vector<std::uint8_t> _vecData, double _dTime, int _iSerial)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const std::size_t sizeLimit = static_cast<std::size_t>(kBufferSeconds * m_iBytesPerSecond);
    m_cvSpace.wait(lock, [&] {
        return m_blAbort || m_sizeQueued < sizeLimit || _iSerial != m_state.m_iSerial.load();
    });
    if (m_blAbort || _iSerial != m_state.m_iSerial.load()) return false;
    m_sizeQueued += _vecData.size();
    m_dqChunks.push_back({std::move(_vecData), 0, _dTime, _iSerial});
    return true;
}

void CLS_AudioOutput::Flush()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_dqChunks.clear();
    m_sizeQueued = 0;
    m_blAligned = false;
    m_blClockValid = false;
    m_cvSpace.notify_all();
}

void CLS_AudioOutput::Abort()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_blAbort = true;
    m_cvSpace.notify_all();
}

void CLS_AudioOutput::SetVolume(int _iPercent)
{
    m_iVolume = std::clamp(_iPercent, 0, 100);
}

void CLS_AudioOutput::SetSoundOn(bool _blOn)
{
    m_blSoundOn = _blOn;
}

void CLS_AudioOutput::SetPaused(bool _blPaused)
{
    m_blPaused = _blPaused;
    std::lock_guard<std::mutex> lock(m_mutex);
    m_blAligned = false;
    m_blClockValid = false;
}

}  // namespace RK_Framework::VideoPlayer
