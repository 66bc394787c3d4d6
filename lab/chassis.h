// The chassis of a development node: a description that a person can edit while
// the manager runs. lab/chassis.yaml is an example of one.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "zor_hwinfo_core.h"

// One of the two controllers, which are the nodes.
struct ChassisController {
    int32_t position = ZOR_HOST_TYPE_UNKNOWN;  // 8 or 16: the host type
    int32_t visible_disks = 0;
    int32_t used_disks = 0;
};

// Damaged storage spaces or flash caches.
struct DamageCount {
    int32_t degraded = 0;
    int32_t crashed = 0;
};

struct Chassis {
    std::vector<ChassisController> controllers;  // this node's, then the peer's
    std::vector<ZORHWEncInfo> enclosures;        // in chain order
    int32_t chain_status = 1;
    int32_t linked = 0;  // how many of the chain are correctly linked
    DamageCount spaces;
    DamageCount flash_caches;
};

// A description that is none. The text says where and why.
class ChassisError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// An absent file is a chassis without anything in it.
Chassis LoadChassis(const std::string &path);

// What one controller (0 or 1) knows; an empty record when there is no such
// controller.
ZORHWHostInfo DescribeHost(const Chassis &chassis, size_t controller, int64_t memory_mib);
