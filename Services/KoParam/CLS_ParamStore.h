#pragma once

#include <QJsonObject>
#include <QString>

#include <mutex>
#include <string>

// Sections of string keys and string values, kept in one JSON file
// ({ "Section": { "key": "value" } }). Every change is written at once and
// atomically, so a crash never leaves a half-written file. A file that cannot
// be read is moved aside, never overwritten, before the store starts empty.
// All members are safe to call from any thread.
class CLS_ParamStore
{
public:
    CLS_ParamStore() = default;
    CLS_ParamStore(const CLS_ParamStore&) = delete;
    CLS_ParamStore& operator=(const CLS_ParamStore&) = delete;

    bool Init(const std::string& _strPath);
    bool IsInit() const;
    bool SetParam(const std::string& _strSection, const std::string& _strKey,
                  const std::string& _strValue);
    std::string GetParam(const std::string& _strSection, const std::string& _strKey,
                         const std::string& _strDefault) const;
    bool DeleteParam(const std::string& _strSection, const std::string& _strKey);
    void UnInit();

private:
    // Loads m_qstrPath into m_jsonRoot; false when the file is there but could
    // not be used (and could not be moved aside either).
    bool Load();
    bool MoveAside(const QString& _qstrReason);
    bool Save();

    mutable std::mutex m_mutex;
    bool m_blInit = false;
    // False while an unreadable file we could not move aside still sits at the
    // path: writing would destroy the only copy of the user's settings.
    bool m_blWritable = false;
    bool m_blDirty = false;
    QString m_qstrPath;
    QJsonObject m_jsonRoot;
};
