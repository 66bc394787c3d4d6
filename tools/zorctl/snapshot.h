// The snapshots that the management interface shows, as zorctl reads them.
#pragma once

#include <optional>

#include "output.h"

// The version of what the readers of snapshots print as JSON.
constexpr int kSchemaVersion = 1;

// Each waits some seconds for a fresh snapshot. Nothing when there is none.
std::optional<Json> ReadClusterSnapshot();
std::optional<Json> ReadNodeSnapshot(int node);
