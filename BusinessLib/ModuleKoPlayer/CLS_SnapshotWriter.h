#pragma once

#include <QString>

#include "CLS_Player_Rk.h"

// Writes the copy of the picture on screen as a PNG file.
class CLS_SnapshotWriter
{
public:
    CLS_SnapshotWriter() = delete;

    // "<file name without suffix>_<time>.png": the recording's date and time
    // when the picture carries them, else hours, minutes, seconds and
    // milliseconds from the start ("clip_00-01-05.240.png").
    static QString FileName(const QString& _qstrVideoPath,
                            const RK_Framework::VideoPlayer::ST_ShownPicture& _stPicture);
    // Writes into _qstrDir, never over an existing file (a second still of
    // the same picture gets "_2" and so on). The written path, or an empty
    // string when the folder or the file cannot be written.
    static QString Write(const RK_Framework::VideoPlayer::ST_ShownPicture& _stPicture,
                         const QString& _qstrDir, const QString& _qstrVideoPath);
};
