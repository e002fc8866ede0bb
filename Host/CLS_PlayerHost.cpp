#include "CLS_PlayerHost.h"

#include "CLS_ModuleBasic.h"
#include "CLS_ViewBasic.h"
#include "LoadDll.h"
#include "ModuleExports.h"
#include "ModuleKeys.h"
#include "PlatformLibrary.h"

#include <QApplication>
#include <QFileInfo>
#include <QJsonObject>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <cstdio>

namespace {

// A close that the player does not finish (a stuck engine) must not keep the
// process alive.
constexpr int kCloseGraceMs = 5000;

}  // namespace

CLS_PlayerHost::CLS_PlayerHost(const ST_HostOptions& _stOptions, QObject* _pParent)
    : QObject(_pParent), m_stOptions(_stOptions)
{}

CLS_PlayerHost::~CLS_PlayerHost()
{
    delete m_pDialog.data();
    if (m_pModule) {
        m_pModule->UnInitModule(QVariantMap());
        delete m_pModule;
    }
}

bool CLS_PlayerHost::Start(QString& _qstrError)
{
    const std::string strPath = "./" + BriskPlatform::LibraryFileName("ModuleKoPlayer");
    const std::map<std::string, void*> mapFunctions = LoadDll(strPath, {"GetModule"});
    const auto it = mapFunctions.find("GetModule");
    if (it == mapFunctions.end() || !it->second) {
        _qstrError = QStringLiteral("the player module %1 cannot be loaded").arg(QString::fromStdString(strPath));
        return false;
    }
    m_pModule = reinterpret_cast<GetModuleFn>(it->second)();
    if (!m_pModule) {
        _qstrError = QStringLiteral("the player module made no module object");
        return false;
    }
    m_pModule->InitModule(QVariantMap());

    QJsonObject jsonUIType;
    jsonUIType.insert(QStringLiteral("Language"), m_stOptions.qstrLanguage);
    jsonUIType.insert(QStringLiteral("Skin"), m_stOptions.qstrSkin);
    jsonUIType.insert(QStringLiteral("InPlayBack"), m_stOptions.blInPlayBack);
    QVariantMap qmapParam;
    qmapParam.insert(QLatin1String(ModuleKeys::kUIType), jsonUIType);
    m_pDialog = m_pModule->CreateModuleWgt(qmapParam);
    if (!m_pDialog) {
        _qstrError = QStringLiteral("the player module made no window");
        return false;
    }
    m_pDialog->show();

    if (!m_stOptions.qstrFile.isEmpty()) {
        QVariantMap qmapRequest;
        qmapRequest.insert(QLatin1String(ModuleKeys::kPlayUrl),
                           QFileInfo(m_stOptions.qstrFile).absoluteFilePath());
        if (auto* pView = dynamic_cast<CLS_ViewBasic*>(m_pDialog.data()))
            pView->DoBusinessRequest(QLatin1String(ModuleKeys::kOpenVideoFile), qmapRequest, QString());
    }
    if (!m_stOptions.qstrScreenshot.isEmpty())
        QTimer::singleShot(m_stOptions.iScreenshotAfterMs, this, &CLS_PlayerHost::SaveScreenshot);
    return true;
}

void CLS_PlayerHost::RequestClose()
{
    QTimer::singleShot(kCloseGraceMs, qApp, &QCoreApplication::quit);
    // The video area's close request runs the same chain as the title bar's
    // close button: playback stops and is recorded before the dialog goes.
    QWidget* pMainBody = m_pDialog ? m_pDialog->findChild<QWidget*>(QStringLiteral("CLS_WgtPlayerMainBody"))
                                   : nullptr;
    if (!pMainBody || !QMetaObject::invokeMethod(pMainBody, "SignCloseApp")) QCoreApplication::quit();
}

void CLS_PlayerHost::SaveScreenshot()
{
    QPixmap pixmap;
    if (m_pDialog) {
        // From the window system, so pictures the engine drew into a native
        // window are in it too; the widget's own rendering otherwise.
        if (QScreen* pScreen = m_pDialog->screen())
            pixmap = pScreen->grabWindow(m_pDialog->winId());
        if (pixmap.isNull()) pixmap = m_pDialog->grab();
    }
    if (pixmap.isNull() || !pixmap.save(m_stOptions.qstrScreenshot, "PNG")) {
        m_iExitCode = 1;
        std::fprintf(stderr, "quillplayer: cannot save the screenshot to %s\n",
                     qPrintable(m_stOptions.qstrScreenshot));
    } else {
        std::printf("quillplayer: screenshot saved to %s\n",
                    qPrintable(QFileInfo(m_stOptions.qstrScreenshot).absoluteFilePath()));
    }
    std::fflush(stdout);
    RequestClose();
}
