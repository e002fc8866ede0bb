#pragma once

#include <QString>

#include "CLS_Player_Rk.h"

// Texts of a picture's time: the recording's own clock where the file
// carries one, else the time from the start of the file.
class CLS_RecordingClock
{
public:
    CLS_RecordingClock() = delete;

    static bool HasRecordedTime(const RK_Framework::VideoPlayer::ST_ShownPicture& _stPicture)
    {
        return _stPicture.m_i64RecordedMs !=
               RK_Framework::VideoPlayer::ST_ShownPicture::kNoRecordedTime;
    }
    // "2024-03-15 10:23:45", or "10:23:45" when the file names no date; empty
    // without a recorded time. Shown in local time, as the recorder's users read it.
    static QString LabelText(const RK_Framework::VideoPlayer::ST_ShownPicture& _stPicture);
    // For file names: "20240315-102345.120", "102345.120" without a date, or
    // "00-01-05.240" from the start of the file.
    static QString FileStamp(const RK_Framework::VideoPlayer::ST_ShownPicture& _stPicture);
};
