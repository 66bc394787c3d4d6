// Seconds since the epoch, with their fraction: what files and the manager give
// as times.
#pragma once

#include <sys/stat.h>

#include <ctime>

inline double Seconds(const struct timespec &time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

inline double Now() {
    struct timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return Seconds(now);
}

// Negative for a file that is dated ahead.
inline double AgeOf(const struct stat &status) {
    return Now() - Seconds(status.st_mtim);
}
