#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

namespace RK_Framework::VideoPlayer {

class CLS_PlayClock;
class CLS_SessionState;

// The sound card side: an SDL audio device fed from a short buffer of
// converted samples. Until its samples line up with the picture clock it
// drops or waits; once they do, what the card has played is the clock.
class CLS_AudioOutput
{
public:
    CLS_AudioOutput(CLS_SessionState& _state, CLS_PlayClock& _clock);
    ~CLS_AudioOutput();
    CLS_AudioOutput(const CLS_AudioOutput&) = delete;
    CLS_AudioOutput& operator=(const CLS_AudioOutput&) = delete;

    // False when there is no sound device (not an error: the picture plays on).
    bool Open(int _iSampleRate, int _iChannels);
    void Close();
    int SampleRate() const { return m_iRate; }
    int Channels() const { return m_iChannels; }

    // Signed 16-bit interleaved samples at the device's rate and channels.
    // Waits while the buffer is full; false when the chunk went stale.
    bool Push(std::vector<std::uint8_t> _vecData, double _dTime, int _iSerial);
    void Flush();
    void Abort();

    void SetVolume(int _iPercent);
    void SetSoundOn(bool _blOn);
    void SetPaused(bool _blPaused);
    // Media time the listener hears now; false while sound does not lead.
    bool MasterTime(double& _dTime) const;

private:
    struct ST_Chunk
    {
        std::vector<std::uint8_t> m_vecData;
        std::size_t m_sizeOffset = 0;
        double m_dTime = 0.0;
        int m_iSerial = 0;
    };

    static void Callback(void* _pUser, std::uint8_t* _pStream, int _iLen);
    void Fill(std::uint8_t* _pStream, int _iLen);
    double ChunkTime(const ST_Chunk& _stChunk) const;

    CLS_SessionState& m_state;
    CLS_PlayClock& m_clock;
    std::uint32_t m_uiDevice = 0;
    bool m_blSdlStarted = false;
    int m_iRate = 0;
    int m_iChannels = 0;
    int m_iBytesPerSecond = 0;
    double m_dDeviceLatency = 0.0;

    mutable std::mutex m_mutex;
    std::condition_variable m_cvSpace;
    std::deque<ST_Chunk> m_dqChunks;
    std::size_t m_sizeQueued = 0;
    bool m_blAbort = false;
    bool m_blAligned = false;
    bool m_blClockValid = false;
    double m_dClockTime = 0.0;
    std::chrono::steady_clock::time_point m_tpClock;

    std::atomic<int> m_iVolume{50};
    std::atomic<bool> m_blSoundOn{true};
    std::atomic<bool> m_blPaused{true};
};

}  // namespace RK_Framework::VideoPlayer
