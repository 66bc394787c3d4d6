// A node where every function of the library does its work: an active node with a
// peer, and a manager that grants each request at once.
#pragma once

#include <string>
#include <vector>

#include "support/node_test.h"

constexpr char kHardwareFile[] = "/tmp/zor/hw_info";
constexpr char kConstraintFile[] = "/var/lib/zor/zor.constraint";
constexpr char kFlashVersionFile[] = "/.flash_version";
constexpr char kCacheFolder[] = "/tmp/zor/ui";

// Makes the files of the node anew and empties the queues; the log is left alone.
void MakeWorkingNode();

// Makes the node the passive one of the pair.
void BePassive();

// From now on the manager grants what is asked for.
void GrantRequests();

// The locks that nobody could have at once.
std::vector<std::string> HeldLocks();

// What writers have left beside their files.
std::vector<std::string> TemporaryFiles();
