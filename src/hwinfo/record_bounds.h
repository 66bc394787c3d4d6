// Counts in a record come from files: what they say is taken only as far as the
// record reaches.
#pragma once

#include <algorithm>
#include <cstdint>

#include "zor_hwinfo_core.h"

inline int32_t BoundedEnclosures(int32_t count) {
    return std::clamp(count, 0, ZOR_ENC_TABLE_SIZE);
}

inline int32_t BoundedSlots(int32_t count) {
    return std::clamp(count, 0, ZOR_ENC_DISK_COUNT);
}
