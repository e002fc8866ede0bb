#pragma once

#include <QJsonObject>
#include <QString>

namespace QuillFuzz {

// Names as people write them. Qt 5.15 does not look up a name holding
// control characters (NUL above all) by its own text, and of a name given
// twice in one object it may keep another value once the object is written
// back. A name that is not Unicode (an escaped lone surrogate) cannot be
// asked for through the services' UTF-8 strings at all. None is a name our
// files ever hold, so the targets check what the readers answer for the
// other names only.
inline bool PlainName(const QString& _qstrName, const QJsonObject& _jsonObject)
{
    for (const QChar ch : _qstrName)
        if (ch.unicode() < 0x20) return false;
    if (QString::fromUtf8(_qstrName.toUtf8()) != _qstrName) return false;
    int iCount = 0;
    for (auto it = _jsonObject.begin(); it != _jsonObject.end(); ++it)
        if (it.key() == _qstrName) ++iCount;
    return iCount == 1;
}

}  // namespace QuillFuzz
