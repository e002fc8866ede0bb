#include "CLS_HostOptions.h"

#include "PlayerLanguages.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QLocale>

#include <cstdio>

namespace {

void PrintError(const QString& _qstrMessage)
{
    std::fprintf(stderr, "quillplayer: %s (try --help)\n", qPrintable(_qstrMessage));
}

}  // namespace

const QStringList& CLS_HostOptions::LanguageKeys()
{
    static const QStringList s_qlstKeys = [] {
        QStringList qlstKeys;
        for (const auto& row : PlayerLanguages::kKeys) qlstKeys << QLatin1String(row.pKey);
        return qlstKeys;
    }();
    return s_qlstKeys;
}

QString CLS_HostOptions::SystemLanguageKey()
{
    const QLocale locale = QLocale::system();
    switch (locale.language()) {
        case QLocale::Chinese:
            return locale.script() == QLocale::TraditionalChineseScript ? QStringLiteral("tradchs")
                                                                        : QStringLiteral("cn");
        case QLocale::Russian: return QStringLiteral("russian");
        case QLocale::Korean: return QStringLiteral("korean");
        case QLocale::Thai: return QStringLiteral("thai");
        case QLocale::Vietnamese: return QStringLiteral("vietnames");
        case QLocale::Italian: return QStringLiteral("italian");
        case QLocale::Arabic: return QStringLiteral("arabic");
        case QLocale::Persian: return QStringLiteral("farsi");
        case QLocale::Turkish: return QStringLiteral("turkish");
        case QLocale::Spanish: return QStringLiteral("spanish");
        case QLocale::Hebrew: return QStringLiteral("hebrew");
        case QLocale::Dutch: return QStringLiteral("dutch");
        case QLocale::Czech: return QStringLiteral("czech");
        case QLocale::Slovak: return QStringLiteral("slovak");
        case QLocale::German: return QStringLiteral("de");
        default: return QStringLiteral("en");
    }
}

CLS_HostOptions::EM_Outcome CLS_HostOptions::Parse(const QStringList& _qlstArgs,
                                                   ST_HostOptions& _stOptions)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Plays recorded video files (mp4, avi, ps, sdv)."));
    const QCommandLineOption optHelp = parser.addHelpOption();
    const QCommandLineOption optVersion = parser.addVersionOption();
    const QCommandLineOption optLanguage(
        QStringLiteral("language"),
        QStringLiteral("Language of the user interface: %1.").arg(LanguageKeys().join(QStringLiteral(", "))),
        QStringLiteral("NAME"));
    const QCommandLineOption optSkin(QStringLiteral("skin"), QStringLiteral("Skin: dark or light."),
                                     QStringLiteral("SKIN"));
    const QCommandLineOption optInPlayBack(
        QStringLiteral("in-playback"),
        QStringLiteral("Run as the playback view of the suite: closing closes only the player."));
    const QCommandLineOption optWorkDir(
        QStringLiteral("workdir"),
        QStringLiteral("Working directory (history, settings, logs)."), QStringLiteral("DIR"));
    const QCommandLineOption optRendering(
        QStringLiteral("rendering"),
        QStringLiteral("Render surface: gl (OpenGL widget) or native (native window)."),
        QStringLiteral("KIND"));
    const QCommandLineOption optScreenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Save a PNG of the player window to PATH and quit."), QStringLiteral("PATH"));
    const QCommandLineOption optAfter(
        QStringLiteral("after"), QStringLiteral("Milliseconds before the screenshot (default 3000)."),
        QStringLiteral("MS"));
    parser.addOptions({optLanguage, optSkin, optInPlayBack, optWorkDir, optRendering, optScreenshot,
                       optAfter});
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The video file to play."),
                                 QStringLiteral("[FILE]"));

    if (!parser.parse(_qlstArgs)) {
        PrintError(parser.errorText());
        return ExitUsage;
    }
    if (parser.isSet(optHelp)) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return ExitOk;
    }
    if (parser.isSet(optVersion)) {
        std::printf("%s %s\n", qPrintable(QCoreApplication::applicationName()),
                    qPrintable(QCoreApplication::applicationVersion()));
        return ExitOk;
    }

    const QStringList qlstFiles = parser.positionalArguments();
    if (qlstFiles.size() > 1) {
        PrintError(QStringLiteral("one file at most"));
        return ExitUsage;
    }
    _stOptions.qstrFile = qlstFiles.value(0);

    if (parser.isSet(optLanguage)) {
        _stOptions.qstrLanguage = parser.value(optLanguage).toLower();
        if (!LanguageKeys().contains(_stOptions.qstrLanguage)) {
            PrintError(QStringLiteral("unknown language '%1'").arg(parser.value(optLanguage)));
            return ExitUsage;
        }
    }
    if (parser.isSet(optSkin)) {
        _stOptions.qstrSkin = parser.value(optSkin).toLower();
        if (_stOptions.qstrSkin != QLatin1String("dark") &&
            _stOptions.qstrSkin != QLatin1String("light")) {
            PrintError(QStringLiteral("--skin takes dark or light"));
            return ExitUsage;
        }
    }
    if (parser.isSet(optRendering)) {
        _stOptions.qstrRendering = parser.value(optRendering).toLower();
        if (_stOptions.qstrRendering != QLatin1String("gl") &&
            _stOptions.qstrRendering != QLatin1String("native")) {
            PrintError(QStringLiteral("--rendering takes gl or native"));
            return ExitUsage;
        }
    }
    _stOptions.blInPlayBack = parser.isSet(optInPlayBack);
    _stOptions.qstrWorkDir = parser.value(optWorkDir);
    _stOptions.qstrScreenshot = parser.value(optScreenshot);
    if (parser.isSet(optAfter)) {
        bool blOk = false;
        _stOptions.iScreenshotAfterMs = parser.value(optAfter).toInt(&blOk);
        if (!blOk || _stOptions.iScreenshotAfterMs < 0) {
            PrintError(QStringLiteral("--after takes a number of milliseconds"));
            return ExitUsage;
        }
        if (_stOptions.qstrScreenshot.isEmpty()) {
            PrintError(QStringLiteral("--after goes with --screenshot"));
            return ExitUsage;
        }
    }
    return Run;
}
