#pragma once

#include <QString>
#include <QVariantMap>
#include <QWidget>

#include <atomic>

class CLS_PresenterBasic;

// Base of a module's top-level views: one start-up sequence (attribute, user
// interface, style sheet, presenter connection), one way to send requests to
// a presenter and to take its results, and the logging of every step.
class CLS_ViewBasic : public QWidget
{
    Q_OBJECT
public:
    explicit CLS_ViewBasic(QWidget* _pParent = nullptr, Qt::WindowFlags _flags = {});
    // Withdraws this view's queued tasks that have not started yet.
    ~CLS_ViewBasic() override;

    void Init();
    void LoadStyle();
    void SendPresenterRequest(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                              const QString& _qstrBusinessUUID);
    // Runs HandleTask at once, on the caller's thread.
    bool TaskRequest(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                     const QString& _qstrBusinessUUID);

    // Creates the view of another module from its library "./<file name of
    // the module>" through the library's "CreateWgt". Null when the library or
    // the function is missing. Ownership passes to the caller.
    static QWidget* GetWgtView(const QString& _qstrModuleName, const QVariantMap& _qmapParam);

    virtual const char* GetModuleCode();
    virtual CLS_PresenterBasic* GetPresenter();
    virtual void InitUi() = 0;
    virtual void InitConnect() = 0;
    virtual bool HandleTask(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                            QVariantMap& _qmapResult) = 0;
    // The host's way in for business requests. Base: passes them to the presenter.
    virtual bool DoBusinessRequest(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                                   const QString& _qstrBusinessUUID);

signals:
    void SignRequestTaskRsulted(QString _qstrBusinessKey, QVariantMap _qmapData,
                                QString _qstrBusinessUUID);

protected slots:
    void CallTaskHandler(QString _qstrBusinessKey, QVariantMap _qmapParam,
                         QString _qstrBusinessUUID);
    // Loads the view's initial data. Runs on a task pool worker thread once the
    // view is first shown, only for views with a presenter: it must not touch
    // widgets (send the presenter a request instead).
    virtual void SlotInitData();

protected:
    void showEvent(QShowEvent* _pEvent) override;
    // UUID of the request or result HandleTask is running for, so a view that
    // answers later (a message box, after a button) can answer under it.
    const QString& CurrentBusinessUUID() const { return m_qstrBusinessUUID; }

private:
    QString m_qstrStyleSheet;
    QString m_qstrBusinessUUID;
    std::atomic<bool> m_blInitialized{false};
};
