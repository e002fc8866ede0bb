#pragma once

#include <QMutex>
#include <QObject>
#include <QString>
#include <QVariantMap>

class QWidget;
class CLS_BusinessHandler;

// Base of every module object the host loads. The host talks to a module only
// through these virtual operations; their order is part of the contract.
class CLS_ModuleBasic : public QObject
{
    Q_OBJECT
public:
    CLS_ModuleBasic();
    // Withdraws this module's queued requests that have not started yet.
    ~CLS_ModuleBasic() override;

    virtual const char* GetModuleCode();
    virtual QString ModuleName();
    virtual QString ModuleExplain();
    virtual void InitModule(const QVariantMap& _qmapParam);
    virtual void UnInitModule(const QVariantMap& _qmapParam);
    // Queues the request on the task pool and returns at once; the result
    // arrives through SignHandlerRsulted, emitted on the worker thread.
    virtual void TaskRequest(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                             const QString& _qstrBusinessUUID);
    virtual CLS_BusinessHandler* GetBusinessHandler(const QVariantMap& _qmapParam) = 0;
    // Ownership of the widget passes to the caller.
    virtual QWidget* CreateModuleWgt(const QVariantMap& _qmapParam) = 0;

signals:
    void SignHandlerRsulted(QString _qstrBusinessKey, QVariantMap _qmapParam,
                            QString _qstrBusinessUUID);

private:
    void RunTask(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                 const QString& _qstrBusinessUUID);

    QMutex m_mutexModule;
};
