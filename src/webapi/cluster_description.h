// The descriptions of the cluster's state: which bit of the health word raises
// which, in the order in which they are shown.
#pragma once

#include <cstdint>

#include "webapi/remote_link.h"
#include "webapi/switching_status.h"
#include "zor_webapi_core.h"

// Everything that descriptions depend on.
struct ClusterState {
    RemoteLink remote;
    SwitchingStatus switching;
    uint32_t health;
};

// Appends "desc_ha_normal".
void DescribeNormal(ZORUIInfo *info);

// Appends every description that applies. What cannot be read is logged as of
// ZORUIGetZORInfo.
void DescribeCluster(const ClusterState &state, ZORUIInfo *info);
