#pragma once

#include <QString>
#include <QStringList>

// What the command line asks of the host.
struct ST_HostOptions
{
    QString qstrFile;
    // A key of the dialog's language table ("en", "de", "russian", ...);
    // empty: follow the desktop's language.
    QString qstrLanguage;
    // "dark" or "light"; empty: the stored skin.
    QString qstrSkin;
    bool blInPlayBack = false;
    QString qstrWorkDir;
    // "gl" or "native"; empty: the stored rendering type.
    QString qstrRendering;
    QString qstrScreenshot;
    int iScreenshotAfterMs = 3000;
};

class CLS_HostOptions
{
public:
    enum EM_Outcome { Run, ExitOk, ExitUsage };

    CLS_HostOptions() = delete;

    // Parses the arguments (program name first). --help and --version print
    // and answer ExitOk; a wrong option or value prints one line on standard
    // error and answers ExitUsage.
    static EM_Outcome Parse(const QStringList& _qlstArgs, ST_HostOptions& _stOptions);

    // The language keys the dialog understands, in its table's order.
    static const QStringList& LanguageKeys();
    // The key for the desktop's language, "en" when the table has none.
    static QString SystemLanguageKey();
};
