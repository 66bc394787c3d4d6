// The network and the storage of a node, as its card shows them.
#pragma once

#include <cstdint>

// Nodes of the management interface.
constexpr int32_t kLocalNode = 1;
constexpr int32_t kRemoteNode = 2;

// 2 normal, 3 an interface has failed, 0 unknown.
int32_t getNetworkStatus(int32_t node);

// 2 normal, 3 not, 0 unknown.
int32_t getStorageStatus(int32_t node);
