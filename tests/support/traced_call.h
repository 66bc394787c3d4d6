// A call of the library in a process of its own, watched at each of its system
// calls, with a fault at any one of them. Programs that it starts are followed.
#pragma once

#include <functional>

struct Fault {
    enum class Kind {
        kNone,
        kKill,
        kError,
        kShort
    };

    Kind kind = Kind::kNone;
    int at = 0;     // number of the system call, from 1
    int error = 0;  // of kError

    // The process and all that it started are gone before the call is made.
    static Fault Kill(int at) { return {Kind::kKill, at, 0}; }
    // The call fails. close, which gives its descriptor up even so, is made.
    static Fault Error(int at, int error) { return {Kind::kError, at, error}; }
    // A read gets one byte, a write puts half of what it was given.
    static Fault Short(int at) { return {Kind::kShort, at, 0}; }
};

struct TracedCall {
    bool was_hit = false;  // false where the fault does not apply to the system call
    bool was_killed = false;
    int result = 0;          // of the call, when it was not killed
    int system_calls = 0;    // that were counted: memory, signals and the like are not
    long faulted_call = -1;  // the kernel's number of the one with the fault
};

// Runs the call in a child; observe, if any, runs after each system call.
TracedCall RunTraced(const std::function<int()> &call, const Fault &fault = {},
                     const std::function<void()> &observe = nullptr);
