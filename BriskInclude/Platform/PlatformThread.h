#pragma once

#include <string>
#include <thread>
#include <utility>

namespace BriskPlatform {

// Names the calling thread, as debuggers, "top -H" and crash reports show it.
// POSIX keeps 15 bytes of a name; longer ones are cut there.
void SetCurrentThreadName(const std::string& _strName);

// A thread that carries _strName from its first instruction on.
template <typename F>
std::thread StartNamedThread(std::string _strName, F&& _fnBody)
{
    return std::thread(
        [strName = std::move(_strName), fnBody = std::forward<F>(_fnBody)]() mutable {
            SetCurrentThreadName(strName);
            fnBody();
        });
}

}  // namespace BriskPlatform
