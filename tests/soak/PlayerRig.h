#pragma once

// The real module and engine in this process, driven as the host drives
// them: services started, the module loaded by name, its dialog created and
// shown, files opened with the dialog's business request and played through
// the control bar's signals.

#include "CLS_ModuleBasic.h"
#include "CLS_ViewBasic.h"
#include "EngineTestMedia.h"
#include "KoServices.h"
#include "LoadDll.h"
#include "ServiceFixture.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

namespace QuillTest {

constexpr int kHangMs = 20000;
constexpr int kClipSeconds = 20;

class PlayerRig
{
public:
    PlayerRig()
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
    ~PlayerRig()
    {
        m_pDialog.reset();
        if (m_pModule) m_pModule->UnInitModule({});
    }

    bool IsReady() const { return m_pModule != nullptr; }
    ScopedWorkDir& WorkDir() { return m_fixture.WorkDir(); }

    void CreateDialog()
    {
        m_pDialog.reset(m_pModule->CreateModuleWgt({{"UIType", QJsonObject{{"Language", "en"}}}}));
        m_pDialog->show();
        if (!QTest::qWaitForWindowExposed(m_pDialog.get())) qWarning("the player's dialog was never shown");
    }
    void DestroyDialog() { m_pDialog.reset(); }
    QWidget* Dialog() const { return m_pDialog.get(); }
    QWidget* Find(const char* _pName) const
    {
        return m_pDialog->findChild<QWidget*>(QLatin1String(_pName));
    }

    // The control bar's signal, with an int argument when one is given.
    bool Bar(const char* _pSignal, int _iArg = -1) const
    {
        QObject* pBar = Find("WgtControlBar");
        return _iArg < 0 ? QMetaObject::invokeMethod(pBar, _pSignal)
                         : QMetaObject::invokeMethod(pBar, _pSignal, Q_ARG(int, _iArg));
    }
    bool Open(const QString& _qstrPath) const
    {
        auto* pView = dynamic_cast<CLS_ViewBasic*>(m_pDialog.get());
        // The request path answers false when it took the request.
        return pView && !pView->DoBusinessRequest(QStringLiteral("OpenVideoFile"),
                                                  {{"PlayUrl", _qstrPath}}, {});
    }
    // Seconds shown as played, from "hh:mm:ss/hh:mm:ss"; -1 when none.
    int PlayedShown() const
    {
        const QString qstrText = static_cast<QLabel*>(Find("label_videoTime"))->text();
        const QStringList qlstParts = qstrText.section('/', 0, 0).split(':');
        if (qlstParts.size() != 3) return -1;
        return qlstParts[0].toInt() * 3600 + qlstParts[1].toInt() * 60 + qlstParts[2].toInt();
    }
    // Answers the message box asking for a password; false when none came.
    bool AnswerPassword(const QString& _qstrPassword) const
    {
        QWidget* pBox = nullptr;
        const auto visibleBox = [&pBox] {
            for (QWidget* pWidget : QApplication::topLevelWidgets())
                if (pWidget->isVisible() && pWidget->objectName() == "CLS_WgtMsgBox") pBox = pWidget;
            return pBox != nullptr;
        };
        if (!QTest::qWaitFor(visibleBox, 20000)) return false;
        auto* pInput = pBox->findChild<QLineEdit*>(QStringLiteral("lineEdit_input"));
        if (!pInput) return false;
        pInput->setText(_qstrPassword);
        pBox->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        return true;
    }

    // A clip of kClipSeconds with sound in the working directory; empty when
    // it was not made.
    QString MakeClip(const QString& _qstrName, const QStringList& _qlstVideo,
                     const QStringList& _qlstAudio, const QStringList& _qlstFormat = {})
    {
        const ST_Clip stClip{_qstrName, _qlstVideo, _qlstAudio, _qlstFormat,
                             320,       240,        25,         kClipSeconds};
        return QuillTest::MakeClip(WorkDir().Path(), stClip);
    }

private:
    ServiceFixture m_fixture;
    std::unique_ptr<CLS_ModuleBasic> m_pModule;
    std::unique_ptr<QWidget> m_pDialog;
};

// Runs on the GUI thread's event loop and keeps the longest gap between two
// of its ticks: how long the GUI thread was kept from its events.
class GuiStallMeter : public QObject
{
public:
    GuiStallMeter() { m_timer.start(); startTimer(50); }
    qint64 LongestGapMs() const { return m_iLongest; }

protected:
    void timerEvent(QTimerEvent*) override { m_iLongest = qMax(m_iLongest, m_timer.restart()); }

private:
    QElapsedTimer m_timer;
    qint64 m_iLongest = 0;
};

}  // namespace QuillTest
