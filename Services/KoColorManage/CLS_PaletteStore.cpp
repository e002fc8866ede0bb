#include "CLS_PaletteStore.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QRegularExpression>

#include <iostream>

namespace {

// A skin names a folder; anything that could climb out of the skin tree is
// not a skin.
bool IsSkinName(const QString& _qstrSkin)
{
    static const QRegularExpression s_pattern(QStringLiteral("^[A-Za-z0-9_-]+$"));
    return s_pattern.match(_qstrSkin).hasMatch();
}

}  // namespace

CLS_PaletteStore::CLS_PaletteStore(SkinResolver _resolver, const QString& _qstrRoot)
    : m_resolver(std::move(_resolver)), m_qstrRoot(_qstrRoot)
{}

std::string CLS_PaletteStore::GetNamedColor(const std::string& _strGroup,
                                            const std::string& _strKey, const std::string& _strSkin)
{
    std::string strSkin = _strSkin;
    if (strSkin.empty() && m_resolver) strSkin = m_resolver();
    if (strSkin.empty()) strSkin = "dark";
    const QString qstrSkin = QString::fromStdString(strSkin);
    if (!IsSkinName(qstrSkin)) return {};

    const QJsonValue value = Palette(qstrSkin)
                                 .value(QString::fromStdString(_strGroup))
                                 .toObject()
                                 .value(QString::fromStdString(_strKey));
    return value.isString() ? value.toString().toStdString() : std::string();
}

QJsonObject CLS_PaletteStore::Palette(const QString& _qstrSkin)
{
    const QString qstrPath = QFileInfo(m_qstrRoot + QStringLiteral("/resource/skin/") + _qstrSkin +
                                       QStringLiteral("/palette.json"))
                                 .absoluteFilePath();
    std::lock_guard lock(m_mutex);
    const auto it = m_mapPalettes.find(qstrPath);
    if (it != m_mapPalettes.end()) return it->second;

    QJsonObject jsonPalette;
    QFile file(qstrPath);
    if (file.open(QIODevice::ReadOnly)) {
        QJsonParseError error{};
        const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &error);
        if (doc.isObject())
            jsonPalette = doc.object();
        else
            std::cerr << "KoColorManage: palette \"" << qstrPath.toStdString()
                      << "\" is not a JSON object (" << error.errorString().toStdString() << ")"
                      << std::endl;
    }
    m_mapPalettes.emplace(qstrPath, jsonPalette);
    return jsonPalette;
}
