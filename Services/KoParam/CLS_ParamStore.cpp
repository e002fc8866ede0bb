#include "CLS_ParamStore.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QSaveFile>

#include <cmath>
#include <iostream>

namespace {

QString ToQString(const std::string& _str)
{
    return QString::fromStdString(_str);
}

// Hand-edited files may hold numbers or truth values; callers parse the text
// as a number, hence "1"/"0" for truth values.
std::string ValueText(const QJsonValue& _value, const std::string& _strDefault)
{
    switch (_value.type()) {
        case QJsonValue::String:
            return _value.toString().toStdString();
        case QJsonValue::Bool:
            return _value.toBool() ? "1" : "0";
        case QJsonValue::Double: {
            const double dValue = _value.toDouble();
            if (std::trunc(dValue) == dValue && std::fabs(dValue) < 9.0e15)
                return QString::number(static_cast<qint64>(dValue)).toStdString();
            return QString::number(dValue, 'g', 15).toStdString();
        }
        case QJsonValue::Array:
            return QJsonDocument(_value.toArray()).toJson(QJsonDocument::Compact).toStdString();
        case QJsonValue::Object:
            return QJsonDocument(_value.toObject()).toJson(QJsonDocument::Compact).toStdString();
        default:
            return _strDefault;
    }
}

}  // namespace

bool CLS_ParamStore::Init(const std::string& _strPath)
{
    std::lock_guard lock(m_mutex);
    if (m_blInit && m_blDirty) Save();  // a change whose write failed, before switching files
    m_blInit = false;
    m_blWritable = false;
    m_blDirty = false;
    m_jsonRoot = QJsonObject();
    m_qstrPath = ToQString(_strPath);
    if (m_qstrPath.isEmpty()) return false;

    const QFileInfo info(m_qstrPath);
    if (info.isDir()) {
        std::cerr << "KoParam: settings path \"" << _strPath << "\" is a folder" << std::endl;
        return false;
    }
    m_qstrPath = info.absoluteFilePath();
    QDir().mkpath(info.absolutePath());
    m_blWritable = Load();
    m_blInit = true;
    return true;
}

bool CLS_ParamStore::Load()
{
    QFile file(m_qstrPath);
    if (!file.exists()) return true;
    if (!file.open(QIODevice::ReadOnly)) return MoveAside(file.errorString());
    const QByteArray qbaData = file.readAll();
    file.close();
    // An empty file holds nothing to lose (for example one created by hand).
    if (qbaData.trimmed().isEmpty()) return true;

    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(qbaData, &error);
    if (error.error != QJsonParseError::NoError)
        return MoveAside(error.errorString() + QStringLiteral(" at offset ") +
                         QString::number(error.offset));
    if (!doc.isObject()) return MoveAside(QStringLiteral("the top level is not an object"));
    m_jsonRoot = doc.object();
    return true;
}

bool CLS_ParamStore::MoveAside(const QString& _qstrReason)
{
    const QString qstrStem =
        m_qstrPath + QStringLiteral(".corrupt-") +
        QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QString qstrBackup = qstrStem;
    for (int i = 1; QFileInfo::exists(qstrBackup); ++i)
        qstrBackup = qstrStem + QLatin1Char('-') + QString::number(i);

    if (QFile::rename(m_qstrPath, qstrBackup)) {
        std::cerr << "KoParam: settings file \"" << m_qstrPath.toStdString()
                  << "\" cannot be used (" << _qstrReason.toStdString() << "); kept as \""
                  << qstrBackup.toStdString() << "\", starting with empty settings" << std::endl;
        return true;
    }
    std::cerr << "KoParam: settings file \"" << m_qstrPath.toStdString() << "\" cannot be used ("
              << _qstrReason.toStdString()
              << ") nor moved aside; starting with empty settings that will not be saved"
              << std::endl;
    return false;
}

bool CLS_ParamStore::Save()
{
    if (!m_blWritable) return false;
    // The explicit size check and flush matter: commit() misses a buffered
    // tail that failed to reach a full disk and would rename a torn file into
    // place.
    const QByteArray qbaContent = QJsonDocument(m_jsonRoot).toJson(QJsonDocument::Indented);
    QSaveFile file(m_qstrPath);
    if (file.open(QIODevice::WriteOnly) && file.write(qbaContent) == qbaContent.size() &&
        file.flush() && file.commit()) {
        m_blDirty = false;
        return true;
    }
    std::cerr << "KoParam: cannot write \"" << m_qstrPath.toStdString()
              << "\": " << file.errorString().toStdString() << std::endl;
    return false;
}

bool CLS_ParamStore::IsInit() const
{
    std::lock_guard lock(m_mutex);
    return m_blInit;
}

bool CLS_ParamStore::SetParam(const std::string& _strSection, const std::string& _strKey,
                              const std::string& _strValue)
{
    std::lock_guard lock(m_mutex);
    if (!m_blInit) return false;
    const QString qstrSection = ToQString(_strSection);
    const QString qstrKey = ToQString(_strKey);
    const QString qstrValue = ToQString(_strValue);
    QJsonObject jsonSection = m_jsonRoot.value(qstrSection).toObject();
    const QJsonValue oldValue = jsonSection.value(qstrKey);
    // Sliders write on every move; an unchanged value need not touch the disk.
    if (!m_blDirty && oldValue.isString() && oldValue.toString() == qstrValue) return true;

    jsonSection.insert(qstrKey, qstrValue);
    m_jsonRoot.insert(qstrSection, jsonSection);
    m_blDirty = true;
    return Save();
}

std::string CLS_ParamStore::GetParam(const std::string& _strSection, const std::string& _strKey,
                                     const std::string& _strDefault) const
{
    std::lock_guard lock(m_mutex);
    if (!m_blInit) return _strDefault;
    const QJsonValue section = m_jsonRoot.value(ToQString(_strSection));
    if (!section.isObject()) return _strDefault;
    return ValueText(section.toObject().value(ToQString(_strKey)), _strDefault);
}

bool CLS_ParamStore::DeleteParam(const std::string& _strSection, const std::string& _strKey)
{
    std::lock_guard lock(m_mutex);
    if (!m_blInit) return false;
    const QString qstrSection = ToQString(_strSection);
    const QString qstrKey = ToQString(_strKey);
    const QJsonValue section = m_jsonRoot.value(qstrSection);
    if (!section.isObject() || !section.toObject().contains(qstrKey)) return false;

    QJsonObject jsonSection = section.toObject();
    jsonSection.remove(qstrKey);
    if (jsonSection.isEmpty())
        m_jsonRoot.remove(qstrSection);
    else
        m_jsonRoot.insert(qstrSection, jsonSection);
    m_blDirty = true;
    return Save();
}

void CLS_ParamStore::UnInit()
{
    std::lock_guard lock(m_mutex);
    if (m_blInit && m_blDirty) Save();  // one last try for a change whose write failed
    m_blInit = false;
    m_blWritable = false;
    m_blDirty = false;
    m_jsonRoot = QJsonObject();
    m_qstrPath.clear();
}
