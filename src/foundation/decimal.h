// Numbers in files: decimal text, of which an unparsable one counts as 0.
#pragma once

#include <cstdint>
#include <cstdlib>

inline int32_t ParseDecimal(const char *text) {
    return static_cast<int32_t>(strtol(text, nullptr, 10));
}
