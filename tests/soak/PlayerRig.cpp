#include "PlayerRig.h"

#include "CLS_ModuleBasic.h"
#include "CLS_ViewBasic.h"
#include "EngineTestMedia.h"
#include "KoServices.h"
#include "LoadDll.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

namespace QuillTest {

PlayerRig::PlayerRig()
    : m_fixture{Service::Log, Service::Param, Service::TaskPool, Service::AppManager,
                Service::ColorManage}
{
    if (!m_fixture.IsReady()) return;
    for (const QString& qstrName : QDir(BinDir()).entryList(
             {"*.so", "resource", "Lang"}, QDir::AllEntries | QDir::NoDotAndDotDot))
        if (!WorkDir().LinkFromBin(qstrName)) return;
    KoService::SetParam("SystemConfig", "RenderingType", "0");
    using GetModuleFn = CLS_ModuleBasic* (*)();
    const auto pfnGetModule = reinterpret_cast<GetModuleFn>(
        LoadDll("./libModuleKoPlayer.so", {"GetModule"}).at("GetModule"));
    if (!pfnGetModule) return;
    m_pModule.reset(pfnGetModule());
    m_pModule->InitModule({});
}

PlayerRig::~PlayerRig()
{
    m_pDialog.reset();
    if (m_pModule) m_pModule->UnInitModule({});
}

void PlayerRig::CreateDialog()
{
    m_pDialog.reset(m_pModule->CreateModuleWgt({{"UIType", QJsonObject{{"Language", "en"}}}}));
    m_pDialog->show();
    QTest::qWaitForWindowExposed(m_pDialog.get());
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
    return pView && !pView->DoBusinessRequest(QStringLiteral("OpenVideoFile"),
                                              {{"PlayUrl", _qstrPath}}, {});
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
            if (pWidget->isVisible() && pWidget->objectName() == QLatin1String("CLS_WgtMsgBox"))
                pBox = pWidget;
        return pBox != nullptr;
    };
    if (!QTest::qWaitFor(visibleBox, 20000)) return false;
    auto* pInput = pBox->findChild<QLineEdit*>(QStringLiteral("lineEdit_input"));
    if (!pInput) return false;
    pInput->setText(_qstrPassword);
    pBox->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    return true;
}

QString PlayerRig::MakeClip(const QString& _qstrName, int _iSeconds, const QStringList& _qlstVideo,
                           const QStringList& _qlstAudio, const QStringList& _qlstFormat)
{
    const ST_Clip stClip{_qstrName, _qlstVideo, _qlstAudio, _qlstFormat, 320, 240, 25, double(_iSeconds)};
    return QuillTest::MakeClip(WorkDir().Path(), stClip);
}

}  // namespace QuillTest
