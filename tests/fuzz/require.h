// How a fuzz target says what must hold.
#pragma once

#include <cstdlib>

inline void Require(bool condition) {
    if (!condition) abort();
}
