#pragma once

#include <functional>
#include <string>

// Contract of the task pool service "KoTaskPool": one-shot and loop tasks on a
// bounded set of worker threads, grouped by an owner pointer so an owner can
// withdraw its work before it goes away.
namespace KoTaskPoolApi {

inline constexpr const char* kLibraryName = "KoTaskPool";

using Task = std::function<void()>;

// Queues task to run once. name describes it in the pool's diagnostics.
// Starts the pool when it is not running. False for an empty task.
using AddTmpTaskFn = bool (*)(const Task& task, const void* owner, const std::string& name);
// Drops the owner's pending one-shot tasks and returns only when none of the
// owner's one-shot tasks is running any more (except one on the calling
// thread, which would otherwise wait for itself). name tags the request.
using RemoveTmpTaskFn = void (*)(const void* owner, const std::string& name);
// Runs task every intervalMs milliseconds until it is removed.
using AddLoopTaskFn = bool (*)(const Task& task, const void* owner, const std::string& name,
                               int intervalMs);
// Removes the owner's loop task of that name; waits for a run in progress.
using RemoveTaskFn = void (*)(const void* owner, const std::string& name);
// Removes every task of the owner, one-shot and loop; waits as above.
using KillTaskFn = void (*)(const void* owner);
// Removes every task of every owner; waits as above.
using KillTaskAllFn = void (*)();
// Kills everything and joins the workers. A later AddTmpTask starts afresh.
using UnInitFn = void (*)();

}  // namespace KoTaskPoolApi
