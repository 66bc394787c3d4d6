// What one operation costs in counts, which do not drift: its system calls, and
// the instructions that it executes itself.
#pragma once

#include <functional>

struct CallCount {
    long system_calls;
    long instructions;  // 0 when they were not counted
};

// Runs the operation in a child under trace, once to warm up and once to count.
CallCount CountCalls(const std::function<void()> &operation, bool count_instructions);
