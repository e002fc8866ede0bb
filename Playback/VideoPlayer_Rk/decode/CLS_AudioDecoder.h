#pragma once

#include <string>
#include <thread>

struct AVCodecContext;
struct AVFrame;
struct AVPacket;
struct AVStream;
struct SwrContext;

namespace RK_Framework::VideoPlayer {

class CLS_AudioOutput;
class CLS_PacketQueue;
class CLS_SessionState;

// Decodes the sound stream and converts it to what the device plays. Only at
// 1X: at other speeds its packets are not even demuxed.
class CLS_AudioDecoder
{
public:
    CLS_AudioDecoder(CLS_SessionState& _state, CLS_PacketQueue& _packets, CLS_AudioOutput& _output);
    ~CLS_AudioDecoder();
    CLS_AudioDecoder(const CLS_AudioDecoder&) = delete;
    CLS_AudioDecoder& operator=(const CLS_AudioDecoder&) = delete;

    bool Open(AVStream* _pStream, std::string& _strError);
    int SampleRate() const;
    int Channels() const;
    void Start();
    void Join();

private:
    void Run();
    void Feed(const AVPacket* _pPacket);
    void Convert(AVFrame* _pFrame);

    CLS_SessionState& m_state;
    CLS_PacketQueue& m_packets;
    CLS_AudioOutput& m_output;
    AVCodecContext* m_pCodec = nullptr;
    AVFrame* m_pFrame = nullptr;
    SwrContext* m_pSwr = nullptr;
    // The input the resampler was made for: a damaged stream can change it
    // from one frame to the next.
    int m_iSwrFormat = -1;
    int m_iSwrRate = 0;
    int m_iSwrChannels = 0;
    double m_dTimeBase = 0.0;
    int m_iSerial = -1;
    double m_dNextTime = 0.0;        // where the next chunk starts when it has no stamp
    double m_dSkipUntil = -1.0e300;  // sound ending before this is not played
    bool m_blHaveLast = false;
    std::int64_t m_i64LastLine = 0;  // latest sound time on the line, video time base
    std::thread m_thread;
};

}  // namespace RK_Framework::VideoPlayer
