// The snapshot of the cluster: built on the manager's side, served to the
// interface.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "foundation/log.h"
#include "webapi/cluster_description.h"
#include "webapi/static_ip.h"
#include "webapi/ui_cache.h"
#include "webapi/ui_refresh.h"
#include "zor_core.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

constexpr uint32_t kPassiveMissing = 1u << 0;
constexpr uint32_t kSettling = 1u << 16;
constexpr uint32_t kSpaceBusy = 1u << 22;

// Bits that keep the cluster from being ready, in two senses.
constexpr uint32_t kNotReadyA = 0x7a6de2d1;
constexpr uint32_t kNotReadyB = 0x7e6de2d1;

struct Release {
    void operator()(ZORUIInfo *info) const { free(info); }
};
using HeapInfo = std::unique_ptr<ZORUIInfo, Release>;

void FillLinks(const RemoteLink &remote, ZORUIInfo *info) {
    const LinkStates states = LinkStatesOf(remote);
    info->heartbeatStatus = states.heartbeat;
    info->linkStatus = states.link;
    info->status = ZOR_UI_STATE_UNDETERMINED;
}

int32_t OverallStatus(const ClusterState &state) {
    if (state.health & ZOR_HEALTH_ERROR_BITS) return ZOR_UI_STATE_ERROR;
    if (state.health & ZOR_HEALTH_WARNING_BITS) return ZOR_UI_STATE_WARNING;
    if (state.health & kSpaceBusy) return ZOR_UI_STATE_BUSY;
    const bool isSettled = (state.health & kSettling) == 0 && state.switching != kSwitching;
    return isSettled ? ZOR_UI_STATE_NORMAL : ZOR_UI_STATE_UNDETERMINED;
}

bool IsRemoteThirdHost(const RemoteLink &remote) {
    if (!remote.IsReachable()) return false;
    char value[8] = {};
    return ZORGetHAStatus(ZOR_HOST_REMOTE, ZOR_STATUS_IS_THE_THIRD_HOST, value, sizeof value) > 0 &&
           strcmp(value, "yes") == 0 && ZORHWGetEncListStatus(ZOR_HOST_REMOTE) == 1;
}

void FillState(ClusterState state, ZORUIInfo *info) {
    // A passive node that restarts for a switchover is not missing, nor is one
    // while this node boots.
    if (state.switching == kSwitching || state.switching == kLocalIsBooting)
        state.health &= ~kPassiveMissing;
    info->status = OverallStatus(state);
    if (info->status == ZOR_UI_STATE_NORMAL) DescribeNormal(info);
    info->remoteIsThirdHost = IsRemoteThirdHost(state.remote) ? 1 : 0;
    info->remoteBootDoneAndCommNormal = ZORIsRemoteBootDoneAndCommNormal();
    info->readyA = (state.health & kNotReadyA) == 0 ? 1 : 0;
    info->readyB = (state.health & kNotReadyB) == 0 ? 1 : 0;
    DescribeCluster(state, info);
}

// Whatever the file holds, the record is one that can be shown.
void MakeSound(ZORUIInfo *info) {
    info->descCount = std::clamp(info->descCount, 0, ZOR_UI_DESC_COUNT);
    for (ZORUIDesc &desc : info->desc) {
        desc.key[sizeof desc.key - 1] = '\0';
        desc.detail[sizeof desc.detail - 1] = '\0';
    }
}

}  // namespace

extern "C" {

int32_t ZORUIGetZORInfo(void) {
    ClusterState state = {};
    state.switching = getRemoteSwitchingStatus();
    state.remote = LookAtRemoteAndHeartbeat();
    const HeapInfo info(static_cast<ZORUIInfo *>(calloc(1, sizeof(ZORUIInfo))));
    if (!info) {
        ZOR_ERROR("Failed to calloc");
        return -1;
    }
    FillLinks(state.remote, info.get());
    // A state that is not determined is shown as that, not as the one before.
    if (ZORGetHealthyStatus(&state.health) < 0)
        ZOR_ERROR("Failed to get healthy status");
    else
        FillState(state, info.get());
    return writeObject(kClusterCache, info.get(), sizeof *info);
}

int32_t KEVAZORGetZORInfoCached(ZORUIInfo *info, int32_t wait) {
    if (!info) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    const RemoteLink remote = LookAtRemoteAndHeartbeat();
    if (ZORSendLoadUIRequest() < 0) ZOR_ERROR("Failed to send load UI request");
    FillLinks(remote, info);
    info->descCount = info->readyA = info->readyB = 0;
    const int32_t result = ReadWhenFresh(kClusterCache, info, sizeof *info, wait != 0);
    if (result > 0) MakeSound(info);
    if (!ZORLoginIPIsStaticIP(&info->loginIPIsStatic))
        ZOR_NOTICE("Failed to do ZORLoginIPIsStaticIP");
    return result;
}

}  // extern "C"
