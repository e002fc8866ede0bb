#pragma once

#include <cstdint>
#include <functional>

namespace RK_Framework::VideoPlayer {

// Opening and closing a file read it, and a source that stops answering (a
// pipe gone quiet, a network share that hangs) would hold the caller, which
// is the window's thread, for as long as it stays silent: a read that the
// system keeps waiting cannot be called off. So such work runs on a thread
// of its own; the caller waits while the work makes progress and goes on
// once it has been silent for too long, and the work finishes by itself,
// whenever the source answers or fails. Everything the work touches must be
// owned by it.
class CLS_StallGuard
{
public:
    // A count that moves while the work gets on (bytes or packets read).
    using Progress = std::function<std::uint64_t()>;

    // Runs _fnWork on a thread named _pName. True when it finished; false when
    // _fnProgress (none: nothing counts as progress) stood still for
    // _iSilentMs, and the work was left to finish on its own.
    static bool Run(const char* _pName, std::function<void()> _fnWork,
                    const Progress& _fnProgress, int _iSilentMs);

    // Works left behind that have not finished yet.
    static int Outstanding();
};

}  // namespace RK_Framework::VideoPlayer
