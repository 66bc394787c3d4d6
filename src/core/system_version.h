// The version of the installed system, as one number.
#pragma once

#include <cstdint>

// Stores major * 100 + minor. 0, or -1 after a line.
int32_t GetSysVersion(uint32_t *version);
