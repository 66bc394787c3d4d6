#include "section_lock.h"

#include <sys/file.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <vector>

#include "paired_loop.h"

namespace {

std::chrono::steady_clock::time_point taken;
std::vector<double> holds;

}  // namespace

void ResetHoldTimes() {
    holds.clear();
}

double MedianHoldTime() {
    return Median(holds);
}

#pragma GCC visibility push(default)
extern "C" int flock(int fd, int operation) noexcept {
    if (operation & LOCK_UN) {
        const std::chrono::duration<double, std::micro> held =
            std::chrono::steady_clock::now() - taken;
        if (holds.size() < 1000000) holds.push_back(held.count());
    }
    const int result = static_cast<int>(syscall(SYS_flock, fd, operation));
    if (operation & LOCK_EX) taken = std::chrono::steady_clock::now();
    return result;
}
#pragma GCC visibility pop
