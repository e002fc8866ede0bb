#pragma once

// Control functions of the recording test player, resolved by name
// ("RecPlayer_*"). The library stands in for the playback engine: it answers
// as scripted and records every call, for exact call sequences.
namespace RecPlayer {

// Scripted answers; every field keeps its value until the next reset.
struct ST_Script
{
    // False: the factory makes no player, as when the engine cannot start.
    bool blCreateOk = true;
    int iTotalTime = 60;
    int iPlayedTime = 0;
    // Every call of Fast is refused.
    bool blFastRefused = false;
};

using ResetFn = void (*)(const ST_Script*);
// Calls since the last take, one per line: "Fast", "Pause(1)", "SetPlayPos(50)".
using TakeCallsFn = const char* (*)();
// Raises an event through the registered callback, from a thread of its own,
// and waits for that thread.
using RaiseFn = void (*)(int);

}  // namespace RecPlayer
