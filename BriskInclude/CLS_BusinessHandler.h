#pragma once

#include <QString>
#include <QVariantMap>

// What a module hands its business requests to. The module base gives it the
// parameter map before Init and UnInit, and calls Handle on a task pool worker
// thread, so Handle must not touch widgets.
class CLS_BusinessHandler
{
public:
    virtual ~CLS_BusinessHandler() = default;

    virtual void SetParamMap(const QVariantMap& _qmapParam) { m_qmapParam = _qmapParam; }
    virtual void Init() = 0;
    virtual void UnInit() = 0;
    // True when the request succeeded; details go into _qmapResult.
    virtual bool Handle(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                        QVariantMap& _qmapResult) = 0;

protected:
    QVariantMap m_qmapParam;
};
