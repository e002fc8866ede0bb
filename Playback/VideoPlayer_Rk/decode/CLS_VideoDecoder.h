#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "CLS_FrameQueue.h"
#include "CLS_SessionState.h"

struct AVCodecContext;
struct AVFrame;
struct AVPacket;
struct AVStream;

namespace RK_Framework::VideoPlayer {

class CLS_MediaSource;
class CLS_PacketQueue;
class CLS_StepCache;

// Turns video packets into timed pictures. After a seek it decodes from the
// keyframe before the target and hands on only the picture shown at the
// target (earlier ones go to the step cache when stepping back). At high
// speed it decodes less so the pictures keep pace.
class CLS_VideoDecoder
{
public:
    CLS_VideoDecoder(CLS_SessionState& _state, CLS_PacketQueue& _packets, CLS_FrameQueue& _frames,
                     CLS_StepCache& _cache);
    ~CLS_VideoDecoder();
    CLS_VideoDecoder(const CLS_VideoDecoder&) = delete;
    CLS_VideoDecoder& operator=(const CLS_VideoDecoder&) = delete;

    bool Open(AVStream* _pStream, std::string& _strError);
    // Reads from _source until the first picture decodes (it goes to the
    // frame queue and fixes the timeline's origin). Audio packets read on the
    // way are handed back in _vecAudio (caller owns them).
    bool DecodeFirst(CLS_MediaSource& _source, std::vector<AVPacket*>& _vecAudio,
                     std::string& _strError);
    void Start();
    void Join();

    // Bytes of one decoded picture (0 before the format is known).
    std::size_t PictureBytes() const;

private:
    bool OpenCodec(int _iThreads, std::string& _strError);
    void ChooseThreads();
    void Run();
    void BeginSerial(int _iSerial);
    // Sends one packet (null: drain) and handles every picture that comes out.
    void Feed(const AVPacket* _pPacket);
    // Keeps the decode time of a packet that brought no picture time.
    void NoteDecodeTime(std::int64_t _i64Dts);
    // Files without pictures: black ones timed by the sound's packets.
    static AVFrame* MakeBlank();
    void FeedBlank(const AVPacket* _pPacket);
    void EmitBlank(std::int64_t _i64Pts, std::int64_t _i64Pos);
    void HandleFrame(AVFrame* _pFrame);
    // The picture's place on the time line, or AV_NOPTS_VALUE when neither it
    // nor the packets before it tell.
    std::int64_t PictureTime(const AVFrame* _pFrame);
    // Times the picture (counting on from the one before when it has none),
    // then holds, delivers or drops it for the seek in progress.
    void Place(AVFrame* _pFrame, std::int64_t _i64Pts);
    // Places the held pictures without a time a picture apart before
    // _i64NextPts (counted on from the last one when that is unknown too).
    void PlaceUntimed(std::int64_t _i64NextPts);
    void DropUntimed();
    void Deliver(ST_VideoFrame& _stFrame);
    void DeliverHeld();
    void FinishStream();
    void Flush();
    void RetryFurtherBack();
    int DiscardLevel() const;
    void ApplyDiscard(int _iLevel);

    CLS_SessionState& m_state;
    CLS_PacketQueue& m_packets;
    CLS_FrameQueue& m_frames;
    CLS_StepCache& m_cache;
    AVStream* m_pStream = nullptr;
    AVCodecContext* m_pCodec = nullptr;
    int m_iThreads = 0;
    AVFrame* m_pScratch = nullptr;
    std::thread m_thread;

    int m_iSerial = 0;
    ST_SeekRequest m_stSeek;
    // Decoding on the opening thread, before anything takes pictures out.
    bool m_blOpening = false;
    bool m_blWaitKey = true;
    int m_iSkippedForKey = 0;
    bool m_blFirstAfterSeek = false;
    bool m_blCollected = false;
    ST_VideoFrame m_stHeld;
    bool m_blHaveFirst = false;
    bool m_blHaveLast = false;
    std::int64_t m_i64LastPts = 0;
    std::int64_t m_i64LastPos = -1;  // byte position of the latest picture that had one
    std::int64_t m_i64NominalTicks = 1;
    int m_iLevel = DECODE_ALL;
    // Decode times of packets without picture times still inside the
    // decoder, in ascending order.
    std::vector<std::int64_t> m_vecDecodeTimes;
    // Pictures after a seek still waiting for a time (see HandleFrame).
    std::vector<AVFrame*> m_vecUntimed;
    // The stream has given a picture its own time: decode times are not needed.
    bool m_blPictureTimes = false;
    // Seconds of decoder time per picture, learnt while decoding everything.
    double m_dCostPerFrame = 0.0;
    // Set for a file without pictures: what every black picture shows.
    AVFrame* m_pBlank = nullptr;
    bool m_blHaveBlank = false;
    std::int64_t m_i64BlankNext = 0;
    bool m_blBlankPending = false;
    std::int64_t m_i64BlankPendingPts = 0;
    std::int64_t m_i64BlankPendingPos = -1;
};

}  // namespace RK_Framework::VideoPlayer
