#include "CLS_SnapshotWriter.h"

#include "CLS_RecordingClock.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>

#include <cmath>

using RK_Framework::VideoPlayer::ST_ShownPicture;

QString CLS_SnapshotWriter::FileName(const QString& _qstrVideoPath,
                                     const ST_ShownPicture& _stPicture)
{
    QString qstrStem = QFileInfo(_qstrVideoPath).completeBaseName();
    if (qstrStem.isEmpty()) qstrStem = QStringLiteral("snapshot");
    QString qstrTime = CLS_RecordingClock::FileStamp(_stPicture);
    return qstrStem + QLatin1Char('_') + qstrTime + QStringLiteral(".png");
}

QString CLS_SnapshotWriter::Write(const ST_ShownPicture& _stPicture, const QString& _qstrDir,
                                  const QString& _qstrVideoPath)
{
    const int iStride = _stPicture.m_iWidth * 3;
    if (_stPicture.m_iWidth <= 0 || _stPicture.m_iHeight <= 0 ||
        _stPicture.m_vecRgb.size() < static_cast<std::size_t>(iStride) * _stPicture.m_iHeight)
        return QString();
    const QDir dir(_qstrDir);
    if (_qstrDir.isEmpty() || !dir.exists()) return QString();

    const QString qstrName = FileName(_qstrVideoPath, _stPicture);
    QString qstrPath = dir.filePath(qstrName);
    for (int i = 2; QFileInfo::exists(qstrPath); ++i)
        qstrPath = dir.filePath(QFileInfo(qstrName).completeBaseName() +
                                QStringLiteral("_%1.png").arg(i));
    // The image only borrows the pixels for the length of the write.
    const QImage image(_stPicture.m_vecRgb.data(), _stPicture.m_iWidth, _stPicture.m_iHeight,
                       iStride, QImage::Format_RGB888);
    return image.save(qstrPath, "PNG") ? qstrPath : QString();
}
