// Questions on both nodes: roles, readiness, liveness, boot. Each reads ha.status
// once for each underlying check and takes no lock.

#include "foundation/decimal.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_status";

constexpr int32_t kBootDoneUnknown = 255;
constexpr int32_t kBootDoneMask = 5;  // bits 0 and 2
constexpr int32_t kBootDone = 1;      // bit 0 alone

int32_t IsYes(const char *name) {
    return VLIBCFileCheckKeyValue(kStatusFile, name, "yes", 0);
}

}  // namespace

extern "C" {

int32_t ZORIsNetStatusChanged(void) {
    return IsYes("is_net_status_changed");
}

int32_t ZORIsHwevdReady(void) {
    return IsYes("is_hwevd_ready");
}

int32_t ZORIsRemoteAliveByNet(void) {
    return IsYes("is_remote_alive_by_net");
}

int32_t ZORIsRemoteAliveByExpanderHB(void) {
    return IsYes("is_remote_alive_by_expander_hb");
}

int32_t ZORIsLocalHandlerReady(void) {
    return IsYes("is_local_handler_ready");
}

int32_t ZORIsRemoteHandlerReady(void) {
    return IsYes("is_remote_handler_ready");
}

int32_t ZORIsRemoteHandlerReadyAndCommNormal(void) {
    const int32_t ready = ZORIsRemoteHandlerReady();
    if (!ready) return ready;
    return ZORIsRemoteAliveByNet() ? 1 : 0;
}

int32_t ZORGetRemoteBootDoneStatus(void) {
    char value[4] = {};
    if (ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_REMOTE_BOOT_DONE_STATUS, value, sizeof value) <=
        0) {
        ZOR_ERROR("Failed to get remote_boot_done_status from ha status");
        return kBootDoneUnknown;
    }
    return ParseDecimal(value);
}

int32_t ZORIsRemoteBootDone(void) {
    const int32_t status = ZORGetRemoteBootDoneStatus();
    if (status == kBootDoneUnknown) {
        ZOR_ERROR("Error: remote boot done status is unknown");
        return 0;
    }
    return (status & kBootDoneMask) == kBootDone ? 1 : 0;
}

int32_t ZORIsRemoteBootDoneAndCommNormal(void) {
    return ZORIsRemoteBootDone() && ZORIsRemoteAliveByNet() ? 1 : 0;
}

// The two role reads differ in buffer size and message on purpose.
int32_t ZORGetLocalRole(void) {
    char value[4] = {};
    if (ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_ROLE, value, sizeof value) <= 0) {
        ZOR_NOTICE("Failed to get role from ha status");
        return ZOR_ROLE_UNKNOWN;
    }
    return ParseDecimal(value);
}

int32_t ZORGetRemoteRole(void) {
    char value[8] = {};
    if (ZORGetHAStatus(ZOR_HOST_REMOTE, ZOR_STATUS_ROLE, value, sizeof value) <= 0) {
        ZOR_NOTICE("Failed to get remote status");
        return ZOR_ROLE_UNKNOWN;
    }
    return ParseDecimal(value);
}

int32_t ZORIsTmpPathExist(void) {
    return VLIBCFileCheckDir(kRuntimeFolder);
}

int32_t KEVAZORGetLocalRole(void) {
    return ZORIsTmpPathExist() ? ZORGetLocalRole() : ZOR_ROLE_UNKNOWN;
}

int32_t KEVAZORGetRemoteRole(void) {
    return ZORIsTmpPathExist() ? ZORGetRemoteRole() : ZOR_ROLE_UNKNOWN;
}

int32_t KEVAZORIsRemoteAlive(uint32_t *alive) {
    if (!ZORIsTmpPathExist()) return -1;
    // The expander heartbeat must be known even when the network would answer.
    char value[8] = {};
    if (ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_IS_REMOTE_ALIVE_BY_EXPANDER_HB, value,
                       sizeof value) <= 0)
        return -1;
    *alive = ZORIsRemoteAliveByExpanderHB() || ZORIsRemoteAliveByNet() ? 1 : 0;
    return 0;
}

}  // extern "C"
