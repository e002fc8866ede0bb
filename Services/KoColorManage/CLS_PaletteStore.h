#pragma once

#include <QJsonObject>
#include <QString>

#include <functional>
#include <map>
#include <mutex>
#include <string>

// Named colours of each skin, read from "<root>/resource/skin/<skin>/palette.json"
// ({ "Group": { "<Key>": "#rrggbb" } }). Each file is read once per process;
// a skin whose file is missing or broken simply has no colours.
class CLS_PaletteStore
{
public:
    // Names the active skin when a caller passes none.
    using SkinResolver = std::function<std::string()>;

    explicit CLS_PaletteStore(SkinResolver _resolver = {},
                              const QString& _qstrRoot = QStringLiteral("."));

    // The colour text, or "" for an unknown skin, group or key.
    std::string GetNamedColor(const std::string& _strGroup, const std::string& _strKey,
                              const std::string& _strSkin);

private:
    QJsonObject Palette(const QString& _qstrSkin);

    const SkinResolver m_resolver;
    const QString m_qstrRoot;
    std::mutex m_mutex;
    // Keyed by absolute path, so a process that changes its working folder
    // reads the skins it then sees.
    std::map<QString, QJsonObject> m_mapPalettes;
};
