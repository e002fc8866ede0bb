#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

namespace RK_Framework::ClipExport {

enum EM_ClipFormat {
    CLIP_FORMAT_MP4 = 0,  // an MP4 file anyone can play
    CLIP_FORMAT_SDV = 1,  // a sealed .sdv with an MP4 payload
};

enum EM_ClipResult {
    CLIP_OK = 0,
    CLIP_CANCELLED,
    CLIP_BAD_SOURCE,       // missing, unreadable or not a video file
    CLIP_PASSWORD_NEEDED,  // the source is sealed and no password was given
    CLIP_WRONG_PASSWORD,
    CLIP_EMPTY_RANGE,  // nothing of the file lies in the stretch
    CLIP_WRITE_FAILED,
};

// What to cut out of which file. Times are on the player's line: from the
// first picture of the file, joins taken out.
struct ST_ClipRequest
{
    std::string m_strSource;
    std::string m_strTarget;
    std::int64_t m_i64FromMs = 0;
    std::int64_t m_i64ToMs = 0;  // exclusive
    EM_ClipFormat m_emFormat = CLIP_FORMAT_MP4;
    // Opens a sealed source; empty for any other.
    std::string m_strSourcePassword;
    // Seals the .sdv target; never empty for CLIP_FORMAT_SDV.
    std::string m_strTargetPassword;

    ST_ClipRequest() = default;
    ST_ClipRequest(const ST_ClipRequest&) = default;
    ST_ClipRequest& operator=(const ST_ClipRequest&) = default;
    ~ST_ClipRequest();
};

struct ST_ClipOutcome
{
    EM_ClipResult m_emResult = CLIP_BAD_SOURCE;
    // One line for a person, naming files, never a password.
    std::string m_strMessage;
    // The stretch of the source's line that the clip holds (from the
    // keyframe at or before the start), in milliseconds.
    std::int64_t m_i64FirstMs = 0;
    std::int64_t m_i64EndMs = 0;
    // The sound of the source was left out: the target cannot carry it
    // without re-encoding.
    bool m_blSoundLeftOut = false;
    // The source ended, or could not be read further, before the stretch did.
    bool m_blCutShort = false;
};

// Cuts a stretch out of a video file without re-encoding: from the keyframe
// at or before the start, so the first picture decodes, to the last picture
// before the end, with every picture the stretch needs to decode. The target
// is written under a temporary name in its folder and renamed at the end;
// failing or cancelled, it leaves nothing.
class CLS_ClipExporter
{
public:
    // 0..1 as the stretch is read through; called on the exporting thread.
    using ProgressFunc = std::function<void(double)>;

    // Blocks until done; _pCancel (may be null) is polled between packets.
    static ST_ClipOutcome Run(const ST_ClipRequest& _stRequest, const ProgressFunc& _fnProgress,
                              const std::atomic<bool>* _pCancel);
    // The file is a sealed .sdv: its password is needed to cut from it.
    static bool NeedsPassword(const std::string& _strSource);
};

}  // namespace RK_Framework::ClipExport
