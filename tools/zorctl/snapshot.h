// The snapshots that the management interface shows, as zorctl reads them.
#pragma once

#include <optional>

#include "output.h"

// Each waits some seconds for a fresh snapshot. Nothing when there is none.
std::optional<Json> ReadClusterSnapshot();
std::optional<Json> ReadNodeSnapshot(int node);
