#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

// Base of presenters: they take a view's requests and answer them
// asynchronously through SignTaskResult.
class CLS_PresenterBasic : public QObject
{
    Q_OBJECT
public:
    explicit CLS_PresenterBasic(QObject* _pParent = nullptr);
    // Withdraws this presenter's queued requests that have not started yet.
    ~CLS_PresenterBasic() override;

    virtual const char* GetModuleCode();
    // Queues the request on the task pool; HandleRequest runs on a worker
    // thread and SignTaskResult carries its result, with the request's
    // "__object__" so the asking view can recognise it.
    virtual void TaskRequest(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                             const QString& _qstrBusinessUUID);

signals:
    void SignInitEd();
    void SignTaskResult(QString _qstrBusinessKey, QVariantMap _qmapParam,
                        QString _qstrBusinessUUID);

protected:
    virtual bool HandleRequest(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                               QVariantMap& _qmapResult) = 0;

private:
    void RunTask(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                 const QString& _qstrBusinessUUID);
};
