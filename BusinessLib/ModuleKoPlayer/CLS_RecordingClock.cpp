#include "CLS_RecordingClock.h"

#include <QDateTime>
#include <QTime>

#include <cmath>

using RK_Framework::VideoPlayer::ST_ShownPicture;

namespace {

constexpr qint64 kMsPerDay = 24LL * 3600 * 1000;

QTime TimeOfDay(qint64 _i64Ms)
{
    return QTime::fromMSecsSinceStartOfDay(static_cast<int>(((_i64Ms % kMsPerDay) + kMsPerDay) % kMsPerDay));
}

}  // namespace

QString CLS_RecordingClock::LabelText(const ST_ShownPicture& _stPicture)
{
    if (!HasRecordedTime(_stPicture)) return QString();
    if (_stPicture.m_blRecordedDate)
        return QDateTime::fromMSecsSinceEpoch(_stPicture.m_i64RecordedMs)
            .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return TimeOfDay(_stPicture.m_i64RecordedMs).toString(QStringLiteral("HH:mm:ss"));
}

QString CLS_RecordingClock::FileStamp(const ST_ShownPicture& _stPicture)
{
    if (HasRecordedTime(_stPicture)) {
        if (_stPicture.m_blRecordedDate)
            return QDateTime::fromMSecsSinceEpoch(_stPicture.m_i64RecordedMs)
                .toString(QStringLiteral("yyyyMMdd-HHmmss.zzz"));
        return TimeOfDay(_stPicture.m_i64RecordedMs).toString(QStringLiteral("HHmmss.zzz"));
    }
    const qint64 i64Ms = std::llround(std::max(0.0, _stPicture.m_dTime) * 1000.0);
    return QString::asprintf("%02lld-%02lld-%02lld.%03lld", i64Ms / 3600000, i64Ms / 60000 % 60,
                             i64Ms / 1000 % 60, i64Ms % 1000);
}
