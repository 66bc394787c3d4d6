// A fuzz target's own nanosleep: the library's waiting takes no time.
#pragma once

#include <ctime>
#include <functional>

// What goes on during a sleep, if anything.
inline std::function<void()> &DuringSleep() {
    static std::function<void()> hook;
    return hook;
}

// Visible to the library under test.
#pragma GCC visibility push(default)
extern "C" int nanosleep(const struct timespec *, struct timespec *) {
    if (DuringSleep()) DuringSleep()();
    return 0;
}
#pragma GCC visibility pop
