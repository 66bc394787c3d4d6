// Writing ha.status while its lock is held by the caller.
#pragma once

#include <cstdint>

constexpr int32_t kStatusLockRetries = 10;

// Writes one entry; 0 or -1 (logged).
int32_t ZORSetHAStatusImp(uint32_t selector, uint32_t key, const char *value);
