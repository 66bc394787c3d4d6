// The node's ha.conf, as far as the manager keeps it.
#pragma once

#include <string>

// Forms a cluster of this node and its peer where ha.conf has none yet: the
// serial numbers, the MAC addresses, and a choice of what is monitored. What is
// there already stays. An active node only.
void KeepConf(int role, const std::string &peer_serial);
