#pragma once

#include <functional>

// Turns the operating system's requests to end the process (SIGINT and
// SIGTERM; Ctrl+C and console close on Windows) into a call on the GUI
// thread, so the host can close the player the normal way.
class CLS_QuitOnSignal
{
public:
    CLS_QuitOnSignal() = delete;

    // Call once, after the application object exists.
    static void Install(std::function<void()> _fnOnQuit);
};
