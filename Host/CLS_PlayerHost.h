#pragma once

#include "CLS_HostOptions.h"

#include <QObject>
#include <QPointer>
#include <QString>

class CLS_ModuleBasic;
class QWidget;

// Runs the player module the way the suite does: loads it by file name from
// the working directory, initialises it, shows its dialog, hands it the file,
// and takes it down again.
class CLS_PlayerHost : public QObject
{
    Q_OBJECT
public:
    explicit CLS_PlayerHost(const ST_HostOptions& _stOptions, QObject* _pParent = nullptr);
    ~CLS_PlayerHost() override;

    // False with the reason when the module cannot be loaded or made no
    // dialog.
    bool Start(QString& _qstrError);
    // Closes the player as its own close button does (playback is stopped and
    // kept in the history first); quits outright if there is no dialog.
    void RequestClose();
    // Non-zero when a screenshot was asked for and could not be saved.
    int ExitCode() const { return m_iExitCode; }

private:
    void SaveScreenshot();

    ST_HostOptions m_stOptions;
    CLS_ModuleBasic* m_pModule = nullptr;
    QPointer<QWidget> m_pDialog;
    int m_iExitCode = 0;
};
