// The processes of a node: its first process, which everything in it ends with,
// and the one outside that started it.
#pragma once

#include "node.h"

// Makes the node, runs the command in it, ends everything in it. The exit
// status is the command's, 128 + number for a signal.
int RunInNode(const NodeOptions &options);
