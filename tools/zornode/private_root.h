// The root of a node: the machine's files, with every change kept in memory.
#pragma once

#include "node.h"

// Makes the root and enters it. The caller has its own mount namespace, whose
// mounts do not spread.
void EnterPrivateRoot(const NodeOptions &options);
