// What the kernel publishes below /proc/sys/kernel of a node.
#pragma once

#include "node.h"

// Raises the queue limits of the node's IPC namespace to what the manager's
// messages need, and adds the serial number files that an appliance's kernel
// publishes.
void MakeKernelFolder(const NodeOptions &options);
