#pragma once

#include "QuillTestSupport.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <initializer_list>

namespace QuillTest {

enum class Service { Log, Param, TaskPool, AppManager, ColorManage };

// An exported function of a service library, through the framework's own
// loader and function tables, the library taken from build/bin by path. Code
// under test that asks the same table by bare name gets this very instance.
void* ServiceFunction(Service _service, const char* _pName);

template <typename Fn>
Fn ServiceFunction(Service _service, const char* _pName)
{
    return reinterpret_cast<Fn>(ServiceFunction(_service, _pName));
}

// What the host does around a module, for one test program: a fresh working
// directory to change into, and the services started in the order given (the
// log at trace level into "<workdir>/log", the parameters on
// "<workdir>/settings.json"). They are stopped in reverse order, and the task
// pool's workers joined, when the fixture goes away.
class ServiceFixture
{
public:
    explicit ServiceFixture(std::initializer_list<Service> _lstServices);
    ~ServiceFixture();
    ServiceFixture(const ServiceFixture&) = delete;
    ServiceFixture& operator=(const ServiceFixture&) = delete;

    // False when a service could not be loaded or started.
    bool IsReady() const { return m_blReady; }
    ScopedWorkDir& WorkDir() { return m_workDir; }

    // What has been logged so far to one channel, to every channel, or to one
    // channel as records (a record's continuation lines stay with it).
    QString LogText(const QString& _qstrChannel) const;
    QString AllLogText() const;
    QStringList LogRecords(const QString& _qstrChannel) const;

private:
    ScopedWorkDir m_workDir;
    QVector<Service> m_vecStarted;
    bool m_blReady = true;
};

}  // namespace QuillTest
