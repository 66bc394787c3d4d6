// The lists of what is monitored. The rows' conventions are those of
// KEVAZORListMonitor.
#pragma once

#include <cstdint>

#include "zor_webapi_core.h"

int32_t ZORListMonitorService(ZORMonitorItem *rows, int32_t capacity, int32_t *count);
int32_t ZORListMonitorNetwork(ZORMonitorItem *rows, int32_t capacity, int32_t *count);
