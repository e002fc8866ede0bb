#pragma once

#include <string>

// The name under which a queued task is known to the task pool: a JSON-shaped
// location of the code that queued or withdraws it. The irregular spacing is
// the suite's and tools match on it, so it stays exactly so.
std::string MakeTaskTag(const char* _pFile, int _iLine, const char* _pFunction);

#define KO_TASK_TAG(function) MakeTaskTag(__FILE__, __LINE__, (function))
