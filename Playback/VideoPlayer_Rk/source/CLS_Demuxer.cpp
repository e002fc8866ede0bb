#include "CLS_Demuxer.h"

#include "CLS_MediaSource.h"
#include "CLS_PacketQueue.h"
#include "CLS_SessionState.h"
#include "PlatformThread.h"

extern "C" {
#include <libavformat/avformat.h>
}

namespace RK_Framework::VideoPlayer {

namespace {
// Enough read-ahead to ride out a slow disk, little enough that a seek has
// not much to throw away.
constexpr std::size_t kMaxQueuedBytes = 24u * 1024u * 1024u;
constexpr std::size_t kEnoughPackets = 90;
// Waits while there is nothing to read for; a seek or a stop wakes the
// thread at once, so these only bound how late the queues are topped up
// again. Full queues hold seconds of playback even at 16X; at the end of the
// data only a seek brings work.
constexpr int kIdleWaitMs = 10;
constexpr int kFullWaitMs = 40;
constexpr int kEndWaitMs = 250;
}  // namespace

CLS_Demuxer::CLS_Demuxer(CLS_SessionState& _state, CLS_MediaSource& _source,
                         CLS_PacketQueue& _videoQueue, CLS_PacketQueue& _audioQueue)
    : m_state(_state), m_source(_source), m_videoQueue(_videoQueue), m_audioQueue(_audioQueue)
{}

CLS_Demuxer::~CLS_Demuxer()
{
    Join();
}

void CLS_Demuxer::Start()
{
    m_thread = BriskPlatform::StartNamedThread("quill-demux", [this] { Run(); });
}

void CLS_Demuxer::Join()
{
    if (m_thread.joinable()) m_thread.join();
}

bool CLS_Demuxer::QueuesFull() const
{
    if (m_videoQueue.Bytes() + m_audioQueue.Bytes() > kMaxQueuedBytes) return true;
    const bool blAudioEnough = m_source.AudioIndex() < 0 || !m_state.m_blAudioActive.load() ||
                               m_audioQueue.Count() >= kEnoughPackets;
    return m_videoQueue.Count() >= kEnoughPackets && blAudioEnough;
}

bool CLS_Demuxer::SeekTo(const ST_SeekRequest& _stSeek)
{
    const CLS_Timeline& timeline = m_state.m_timeline;
    if (_stSeek.m_blToStart) {
        // A search by time for the start of joined recordings can end up in
        // the wrong one; their data starts at byte zero.
        if (timeline.HasJoins() && m_source.SeekByte(0)) return true;
        return m_source.Seek(0, true);
    }
    std::size_t sizePart = 0;
    const std::int64_t i64Pts = timeline.ToStream(_stSeek.m_i64SeekPts, sizePart);
    // Where a later recording's clock restarts below an earlier one's, a time
    // alone does not say which recording is meant: go by bytes.
    if (timeline.SeeksByByte()) return m_source.SeekByte(timeline.SeekPosition(sizePart, i64Pts));
    return m_source.Seek(i64Pts, false);
}

void CLS_Demuxer::Run()
{
    int iSerial = m_state.m_iSerial.load();
    bool blEof = false;
    AVPacket* pPacket = nullptr;
    while (!m_state.m_blAbort.load()) {
        ST_SeekRequest stSeek;
        if (m_state.TakeSeek(stSeek)) {
            m_videoQueue.Flush();
            m_audioQueue.Flush();
            // A failed seek still restarts from somewhere sensible: the decoder
            // backs off further when it lands after its target.
            if (!SeekTo(stSeek)) m_source.Seek(0, true);
            iSerial = stSeek.m_iSerial;
            blEof = false;
        }
        if (blEof || QueuesFull()) {
            m_state.WaitForWork(blEof ? kEndWaitMs : kFullWaitMs);
            continue;
        }
        if (!pPacket) pPacket = av_packet_alloc();
        if (!pPacket) {
            m_state.WaitForWork(kIdleWaitMs);
            continue;
        }
        const int iRet = m_source.Read(pPacket);
        if (iRet == AVERROR(EAGAIN)) continue;
        if (iRet < 0) {
            // End of data, or a tail cut off mid-packet: either way the
            // decoders drain what they have.
            m_videoQueue.Put(nullptr, iSerial);
            m_audioQueue.Put(nullptr, iSerial);
            blEof = true;
            continue;
        }
        const bool blSound =
            pPacket->stream_index == m_source.AudioIndex() && m_state.m_blAudioActive.load();
        if (pPacket->stream_index == m_source.TimingIndex()) {
            // Without pictures the sound also times the black ones shown for it.
            if (blSound) {
                if (AVPacket* pCopy = av_packet_clone(pPacket)) m_audioQueue.Put(pCopy, iSerial);
            }
            m_videoQueue.Put(pPacket, iSerial);
            pPacket = nullptr;
        } else if (blSound) {
            m_audioQueue.Put(pPacket, iSerial);
            pPacket = nullptr;
        } else {
            av_packet_unref(pPacket);
        }
    }
    av_packet_free(&pPacket);
}

}  // namespace RK_Framework::VideoPlayer
