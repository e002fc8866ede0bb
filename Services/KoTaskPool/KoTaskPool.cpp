#include "CLS_TaskPool.h"
#include "KoServiceExport.h"
#include "KoTaskPoolApi.h"
#include "Logger.h"

#include <type_traits>

namespace {

// Never destroyed: joining workers from a static destructor, after other
// libraries' statics are gone, would hang or crash the exit. The host calls
// UnInit at exit instead.
CLS_TaskPool& Pool()
{
    static CLS_TaskPool* const s_pPool =
        new CLS_TaskPool([](const std::string& _strName, const std::string& _strWhat) {
            KOLOG(3, "KoTaskPool") << "task [" << _strName << "] failed: " << _strWhat;
        });
    return *s_pPool;
}

}  // namespace

extern "C" KO_SERVICE_EXPORT bool AddTmpTask(const KoTaskPoolApi::Task& task, const void* owner,
                                             const std::string& name)
{
    try {
        return Pool().AddTmpTask(task, owner, name);
    } catch (const std::exception& e) {
        KOLOG(3, "KoTaskPool") << "task [" << name << "] not queued: " << e.what();
        return false;
    } catch (...) {
        return false;
    }
}

extern "C" KO_SERVICE_EXPORT void RemoveTmpTask(const void* owner, const std::string& name)
{
    try {
        Pool().RemoveTmpTask(owner, name);
    } catch (...) {
    }
}

extern "C" KO_SERVICE_EXPORT bool AddLoopTask(const KoTaskPoolApi::Task& task, const void* owner,
                                              const std::string& name, int intervalMs)
{
    try {
        return Pool().AddLoopTask(task, owner, name, intervalMs);
    } catch (const std::exception& e) {
        KOLOG(3, "KoTaskPool") << "loop task [" << name << "] not added: " << e.what();
        return false;
    } catch (...) {
        return false;
    }
}

extern "C" KO_SERVICE_EXPORT void RemoveTask(const void* owner, const std::string& name)
{
    try {
        Pool().RemoveTask(owner, name);
    } catch (...) {
    }
}

extern "C" KO_SERVICE_EXPORT void KillTask(const void* owner)
{
    try {
        Pool().KillTask(owner);
    } catch (...) {
    }
}

extern "C" KO_SERVICE_EXPORT void KillTaskAll()
{
    try {
        Pool().KillTaskAll();
    } catch (...) {
    }
}

extern "C" KO_SERVICE_EXPORT void UnInit()
{
    try {
        Pool().UnInit();
    } catch (...) {
    }
}

static_assert(std::is_same_v<decltype(&AddTmpTask), KoTaskPoolApi::AddTmpTaskFn>);
static_assert(std::is_same_v<decltype(&RemoveTmpTask), KoTaskPoolApi::RemoveTmpTaskFn>);
static_assert(std::is_same_v<decltype(&AddLoopTask), KoTaskPoolApi::AddLoopTaskFn>);
static_assert(std::is_same_v<decltype(&RemoveTask), KoTaskPoolApi::RemoveTaskFn>);
static_assert(std::is_same_v<decltype(&KillTask), KoTaskPoolApi::KillTaskFn>);
static_assert(std::is_same_v<decltype(&KillTaskAll), KoTaskPoolApi::KillTaskAllFn>);
static_assert(std::is_same_v<decltype(&UnInit), KoTaskPoolApi::UnInitFn>);
