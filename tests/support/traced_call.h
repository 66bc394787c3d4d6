// A call of the library in a process of its own, watched at each of its system
// calls and killed at any one of them.
#pragma once

#include <functional>

struct TracedCall {
    bool was_killed = false;
    int result = 0;        // of the call, when it was not killed
    int system_calls = 0;  // that it made, or had begun
};

constexpr int kNeverKilled = 0;

// Runs the call in a child. kill_at: the number, from 1, of the system call at
// which the child is killed before it is made. observe, if any, runs after each
// system call that was made.
TracedCall RunTraced(const std::function<int()> &call, int kill_at = kNeverKilled,
                     const std::function<void()> &observe = nullptr);
