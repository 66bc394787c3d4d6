// The /dev of a node.
#pragma once

#include <string>

// Fills the folder with the devices that every program may use, terminals of
// the node's own, and shared memory. The console and the log socket follow
// from the collector.
void MakeDeviceFolder(const std::string &folder);
