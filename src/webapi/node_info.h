// The snapshot of a node.
#pragma once

#include <cstdint>

#include "webapi/node_condition.h"

// Builds it and writes its file. 0, or -1 after a line; another node is 0.
int32_t ZORGetNodeInfo(int32_t node);
