#pragma once

#include <QString>

// Skins, translations, the history file and the libraries the player loads
// as "./name" are all found relative to the current directory, so the host
// picks one working directory and changes into it.
class CLS_HostWorkDir
{
public:
    CLS_HostWorkDir() = delete;

    // The explicit folder when given; else the installation folder when it is
    // writable (a build tree); else the user's own data folder. Any folder
    // other than the installation folder is prepared with links to the
    // installation's libraries, skins and translations. Empty on failure,
    // with the reason in _qstrError.
    static QString Choose(const QString& _qstrExplicitDir, const QString& _qstrInstallDir,
                          QString& _qstrError);

    // Links every library, "resource" and "Lang" of the installation into
    // _qstrDir, replacing links that point elsewhere and leaving real files
    // alone.
    static bool LinkInstallation(const QString& _qstrDir, const QString& _qstrInstallDir,
                                 QString& _qstrError);
};
