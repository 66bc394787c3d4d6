// Asking the manager for new snapshots.
#pragma once

#include <cstdint>

// Sends a request for each type, unless somebody has within the last second. 0,
// or -1 after a line.
int32_t ZORSendLoadUIRequest();
