#include "support/virtual_time.h"

#include <atomic>
#include <cerrno>
#include <ctime>

#include "support/allocation.h"

namespace {

std::atomic<bool> is_virtual{false};
std::atomic<int> sleeps{0};
std::atomic<int64_t> slept_ms{0};
std::function<void(int)> sleep_hook;

}  // namespace

namespace virtual_time {

void Start(std::function<void(int)> hook) {
    sleeps = 0;
    slept_ms = 0;
    sleep_hook = std::move(hook);
    is_virtual = true;
}

void Stop() {
    is_virtual = false;
    sleep_hook = nullptr;
}

int Sleeps() {
    return sleeps;
}

int64_t SleptMilliseconds() {
    return slept_ms;
}

}  // namespace virtual_time

// Visible to the library under test.
#pragma GCC visibility push(default)
extern "C" int nanosleep(const struct timespec *request, struct timespec *remaining) {
    if (!is_virtual) {
        errno = clock_nanosleep(CLOCK_MONOTONIC, 0, request, remaining);
        return errno == 0 ? 0 : -1;
    }
    slept_ms += request->tv_sec * 1000 + request->tv_nsec / 1000000;
    const int number = sleeps++;
    if (sleep_hook) {
        const allocation::Pause own;  // the hook is the test's, not the library's
        sleep_hook(number);
    }
    return 0;
}
#pragma GCC visibility pop
