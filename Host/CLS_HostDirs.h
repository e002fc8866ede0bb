#pragma once

#include <QString>

// Where the host finds its installation and where each user's files go.
struct ST_HostDirs
{
    // The installation: libraries, and the read-only skins and translations.
    QString qstrLibDir;
    QString qstrDataDir;
    // The working directory the host changes into: skins, translations, the
    // history file and the libraries the player loads as "./name" are all
    // found relative to it.
    QString qstrWorkDir;
    QString qstrConfigDir;
    QString qstrLogDir;
};

class CLS_HostDirs
{
public:
    CLS_HostDirs() = delete;

    // The installation is found from the executable's own folder: either
    // everything side by side (a build tree), or the installed layout with
    // the libraries and data in their folders relative to it, so a moved
    // installation still works.
    //
    // The working directory: the explicit folder when given (settings and
    // logs inside it); else the executable's folder when it holds everything
    // and is writable (a build tree, likewise); else the user's own folders:
    // $XDG_DATA_HOME/quillplayer for the history, $XDG_CONFIG_HOME/quillplayer
    // for the settings, $XDG_STATE_HOME/quillplayer for the logs. A working
    // directory other than the installation is given links to its libraries,
    // skins and translations. False on failure, with the reason.
    static bool Resolve(const QString& _qstrExplicitDir, const QString& _qstrExeDir,
                        ST_HostDirs& _stDirs, QString& _qstrError);

    // Links every library of _qstrLibDir and "resource" and "Lang" of
    // _qstrDataDir into _qstrDir, replacing links that point elsewhere and
    // leaving real files alone.
    static bool LinkInstallation(const QString& _qstrDir, const QString& _qstrLibDir,
                                 const QString& _qstrDataDir, QString& _qstrError);
};
