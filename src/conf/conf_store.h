// Single settings of ha.conf by their name in the file; the caller holds the
// configuration lock where the order matters.
#pragma once

#include <cstdint>

constexpr int32_t kConfLockRetries = 10;

// 1 found, 0 absent, -1 failed.
int32_t ZORGetHAConfImp(const char *name, char *buffer, uint32_t size);

// 0 or -1 (logged).
int32_t ZORSetHAConfImp(const char *name, const char *value);
