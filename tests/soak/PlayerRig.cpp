#include "PlayerRig.h"

#include "CLS_ModuleBasic.h"
#include "CLS_ViewBasic.h"
#include "KoServices.h"
#include "LoadDll.h"

#include <QApplication>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QDir>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QtTest>

namespace QuillTest {

PlayerRig::PlayerRig()
{
    m_pFixture = std::make_unique<ServiceFixture>(std::initializer_list<Service>{
        Service::Log, Service::Param, Service::TaskPool, Service::AppManager, Service::ColorManage});
    if (!m_pFixture->IsReady()) return;
    for (const QString& qstrName :
         QDir(BinDir()).entryList({"*.so", "resource", "Lang"}, QDir::AllEntries | QDir::NoDotAndDotDot))
        if (!WorkDir().LinkFromBin(qstrName)) return;
    KoService::SetParam("SystemConfig", "RenderingType", "0");
    m_pfnGetModule =
        reinterpret_cast<GetModuleFn>(LoadDll("./libModuleKoPlayer.so", {"GetModule"}).at("GetModule"));
    if (m_pfnGetModule) {
        m_pModule.reset(m_pfnGetModule());
        m_pModule->InitModule({});
    }
}

PlayerRig::~PlayerRig()
{
    DestroyDialog();
    if (m_pModule) m_pModule->UnInitModule({});
    m_pModule.reset();
}

void PlayerRig::CreateDialog()
{
    m_pDialog.reset(m_pModule->CreateModuleWgt({{"UIType", QJsonObject{{"Language", "en"}}}}));
    m_pDialog->show();
    QTest::qWaitForWindowExposed(m_pDialog.get());
}

void PlayerRig::DestroyDialog()
{
    m_pDialog.reset();
}

QWidget* PlayerRig::Find(const char* _pName) const
{
    return m_pDialog->findChild<QWidget*>(QLatin1String(_pName));
}

bool PlayerRig::Bar(const char* _pSignal, int _iArg) const
{
    QObject* pBar = Find("WgtControlBar");
    return _iArg < 0 ? QMetaObject::invokeMethod(pBar, _pSignal)
                     : QMetaObject::invokeMethod(pBar, _pSignal, Q_ARG(int, _iArg));
}

bool PlayerRig::Open(const QString& _qstrPath) const
{
    auto* pView = dynamic_cast<CLS_ViewBasic*>(m_pDialog.get());
    // The request path answers false when it took the request.
    return pView && !pView->DoBusinessRequest(QStringLiteral("OpenVideoFile"), {{"PlayUrl", _qstrPath}}, {});
}

int PlayerRig::PlayedShown() const
{
    const QString qstrText = static_cast<QLabel*>(Find("label_videoTime"))->text();
    const QStringList qlstParts = qstrText.section(QLatin1Char('/'), 0, 0).split(QLatin1Char(':'));
    if (qlstParts.size() != 3) return -1;
    return qlstParts[0].toInt() * 3600 + qlstParts[1].toInt() * 60 + qlstParts[2].toInt();
}

bool PlayerRig::AnswerPassword(const QString& _qstrPassword) const
{
    QWidget* pBox = nullptr;
    const auto visibleBox = [&pBox] {
        for (QWidget* pWidget : QApplication::topLevelWidgets())
            if (pWidget->isVisible() && pWidget->objectName() == QLatin1String("CLS_WgtMsgBox")) pBox = pWidget;
        return pBox != nullptr;
    };
    if (!QTest::qWaitFor(visibleBox, 20000)) return false;
    auto* pInput = pBox->findChild<QLineEdit*>(QStringLiteral("lineEdit_input"));
    if (!pInput) return false;
    pInput->setText(_qstrPassword);
    pBox->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    return true;
}

QString PlayerRig::MakeClip(const QString& _qstrName, int _iSeconds) const
{
    const QString qstrPath = m_pFixture->WorkDir().FilePath(_qstrName);
    const QString qstrDuration = QString::number(_iSeconds);
    QStringList qlstArgs{"-v", "error", "-f", "lavfi", "-i", "testsrc2=size=320x180:rate=25:duration=" + qstrDuration,
                         "-f", "lavfi", "-i", "sine=duration=" + qstrDuration, "-shortest"};
    if (_qstrName.endsWith(QLatin1String(".mp4")) || _qstrName.endsWith(QLatin1String(".ts")))
        qlstArgs << "-c:v" << "libx264" << "-preset" << "ultrafast" << "-g" << "50" << "-c:a" << "aac";
    else if (_qstrName.endsWith(QLatin1String(".avi")))
        qlstArgs << "-c:v" << "mpeg4" << "-g" << "50" << "-c:a" << "mp3";
    else  // ".ps": a program stream
        qlstArgs << "-c:v" << "mpeg2video" << "-g" << "50" << "-c:a" << "mp2" << "-f" << "vob";
    return RunProgram(QStringLiteral("ffmpeg"), qlstArgs << qstrPath) == 0 ? qstrPath : QString();
}

QString PlayerRig::MakeSdv(const QString& _qstrClip, const QString& _qstrName, const QByteArray& _qbaPassword) const
{
    const QString qstrPath = m_pFixture->WorkDir().FilePath(_qstrName);
    QStringList qlstArgs{"seal", _qstrClip, qstrPath};
    if (_qbaPassword.isEmpty()) qlstArgs.prepend(QStringLiteral("--plain"));
    QProcess qSeal;
    qSeal.start(BinPath(QStringLiteral("sdvtool")), qlstArgs);
    qSeal.write(_qbaPassword + '\n');
    qSeal.closeWriteChannel();
    return qSeal.waitForFinished(60000) && qSeal.exitCode() == 0 ? qstrPath : QString();
}

GuiStallMeter::GuiStallMeter()
{
    startTimer(50);
    Reset();
}

void GuiStallMeter::Reset()
{
    m_iLast = QDateTime::currentMSecsSinceEpoch();
    m_iLongest = 0;
}

void GuiStallMeter::timerEvent(QTimerEvent*)
{
    const qint64 iNow = QDateTime::currentMSecsSinceEpoch();
    m_iLongest = qMax(m_iLongest, iNow - m_iLast);
    m_iLast = iNow;
}

}  // namespace QuillTest
