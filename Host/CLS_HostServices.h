#pragma once

#include <QString>

// The suite's service libraries as the host runs them: started in order
// before the module is loaded, stopped in reverse after it is gone.
class CLS_HostServices
{
public:
    CLS_HostServices() = default;
    ~CLS_HostServices();
    CLS_HostServices(const CLS_HostServices&) = delete;
    CLS_HostServices& operator=(const CLS_HostServices&) = delete;

    // Logs into _qstrLogDir, parameters in "<_qstrConfigDir>/QuillPlayer.json"
    // with the defaults a first start needs. A missing library is skipped;
    // false with the reason when a present one refuses to start.
    bool Start(const QString& _qstrConfigDir, const QString& _qstrLogDir, QString& _qstrError);
    void Stop();

private:
    bool m_blLogStarted = false;
    bool m_blParamStarted = false;
    bool m_blTaskPoolStarted = false;
};
