// quillplayer: the stand-alone host of the player module.

#include "CLS_HostDirs.h"
#include "CLS_HostOptions.h"
#include "CLS_HostServices.h"
#include "CLS_PlayerHost.h"
#include "CLS_QuitOnSignal.h"
#include "KoServices.h"

#include <QApplication>
#include <QDir>

#include <cstdio>

namespace {

int Fail(const QString& _qstrMessage)
{
    std::fprintf(stderr, "quillplayer: %s\n", qPrintable(_qstrMessage));
    return 1;
}

// The skin on the command line is stored too, so the style-sheet lookup (which
// reads the parameter) and the widgets (which read the property) agree.
QString ResolveSkin(const QString& _qstrOption)
{
    if (!_qstrOption.isEmpty()) {
        KoService::SetParam("SystemConfig", "skin", _qstrOption.toStdString());
        return _qstrOption;
    }
    const QString qstrStored =
        QString::fromStdString(KoService::GetParam("SystemConfig", "skin", "dark")).toLower();
    return qstrStored == QLatin1String("light") ? qstrStored : QStringLiteral("dark");
}

}  // namespace

int main(int argc, char* argv[])
{
    // The command line first: --help, --version and usage errors need no
    // display.
    QCoreApplication::setApplicationName(QStringLiteral("quillplayer"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILL_VERSION));
    QStringList qlstArgs;
    for (int i = 0; i < argc; ++i) qlstArgs << QString::fromLocal8Bit(argv[i]);
    ST_HostOptions stOptions;
    switch (CLS_HostOptions::Parse(qlstArgs, stOptions)) {
        case CLS_HostOptions::ExitOk: return 0;
        case CLS_HostOptions::ExitUsage: return 2;
        case CLS_HostOptions::Run: break;
    }

    // Follow the desktop's scale, fractional ones included.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication app(argc, argv);
    // Named before the working directory changes.
    if (!stOptions.qstrFile.isEmpty())
        stOptions.qstrFile = QDir::current().absoluteFilePath(stOptions.qstrFile);

    QString qstrError;
    ST_HostDirs stDirs;
    if (!CLS_HostDirs::Resolve(stOptions.qstrWorkDir, QCoreApplication::applicationDirPath(), stDirs,
                               qstrError))
        return Fail(qstrError);
    if (!QDir::setCurrent(stDirs.qstrWorkDir))
        return Fail(QStringLiteral("cannot enter %1").arg(stDirs.qstrWorkDir));

    CLS_HostServices services;
    if (!services.Start(stDirs.qstrConfigDir, stDirs.qstrLogDir, qstrError)) return Fail(qstrError);

    stOptions.qstrSkin = ResolveSkin(stOptions.qstrSkin);
    if (!stOptions.qstrRendering.isEmpty())
        KoService::SetParam("SystemConfig", "RenderingType",
                            stOptions.qstrRendering == QLatin1String("gl") ? "0" : "1");
    if (stOptions.qstrLanguage.isEmpty()) stOptions.qstrLanguage = CLS_HostOptions::SystemLanguageKey();

    app.setProperty("Skin", stOptions.qstrSkin == QLatin1String("dark") ? 0 : 1);
    // The text form decides the direction of captions ("Hebrew", "Farsi",
    // "Arabic" read right to left).
    QString qstrLanguageName = stOptions.qstrLanguage;
    qstrLanguageName[0] = qstrLanguageName[0].toUpper();
    app.setProperty("language", qstrLanguageName);

    int iExitCode = 0;
    {
        CLS_PlayerHost host(stOptions);
        if (!host.Start(qstrError)) return Fail(qstrError);
        CLS_QuitOnSignal::Install([&host]() { host.RequestClose(); });
        iExitCode = app.exec();
        if (iExitCode == 0) iExitCode = host.ExitCode();
    }
    services.Stop();
    return iExitCode;
}
