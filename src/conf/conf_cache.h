// The cache of the cluster's identity settings.
#pragma once

#include <cstdint>

// Reads a setting through the cache, and fills the cache on the way. Takes no
// lock; results as of ZORGetHAConfImp.
int32_t ZORGetHAConfCachedImp(const char *name, char *buffer, uint32_t size);
