// What the bits of the health word mean, and what to do about them.
#pragma once

#include <cstddef>
#include <cstdint>

struct HealthBit {
    int bit;
    const char *meaning;
    const char *advice;
};

// In the order of the bits; a bit without a row means nothing to a person.
extern const HealthBit kHealthBits[];
extern const size_t kHealthBitCount;

// "error", "warning" or "note": what the bit makes of the node's state.
const char *HealthBitClass(int bit);
