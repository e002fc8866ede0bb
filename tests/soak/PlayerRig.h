#pragma once

// The real module and engine in this process, driven as the host drives
// them: services started, the module loaded by name, its dialog created and
// shown, files opened with the dialog's business request and played through
// the control bar's signals.

#include "ServiceFixture.h"

#include <QElapsedTimer>
#include <QWidget>

#include <memory>

class CLS_ModuleBasic;

namespace QuillTest {

class PlayerRig
{
public:
    PlayerRig();
    ~PlayerRig();

    bool IsReady() const { return m_pModule != nullptr; }
    ScopedWorkDir& WorkDir() { return m_fixture.WorkDir(); }

    void CreateDialog();
    void DestroyDialog() { m_pDialog.reset(); }
    QWidget* Dialog() const { return m_pDialog.get(); }
    QWidget* Find(const char* _pName) const;

    // The control bar's signal, with an int argument when one is given.
    bool Bar(const char* _pSignal, int _iArg = -1) const;
    bool Open(const QString& _qstrPath) const;
    // Seconds shown as played, from "hh:mm:ss/hh:mm:ss"; -1 when none.
    int PlayedShown() const;
    // Answers the message box asking for a password; false when none came.
    bool AnswerPassword(const QString& _qstrPassword) const;

    // A clip with sound in the working directory; empty when it was not made.
    QString MakeClip(const QString& _qstrName, int _iSeconds, const QStringList& _qlstVideo,
                     const QStringList& _qlstAudio, const QStringList& _qlstFormat = {});

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
