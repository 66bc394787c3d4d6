// Waiting without waiting: this program's own nanosleep takes the library's
// calls, counts them, and returns at once.
#pragma once

#include <cstdint>
#include <functional>

namespace virtual_time {

// Counts sleeps from zero and makes them take no time, until Stop. The hook, if
// any, runs in place of each sleep, with the number of sleeps before it.
void Start(std::function<void(int)> hook = nullptr);

// Real sleeping again.
void Stop();

// Number and total of the sleeps since Start.
int Sleeps();
int64_t SleptMilliseconds();

}  // namespace virtual_time
