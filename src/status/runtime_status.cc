// The runtime status and the boot stage: numbers in ha.status, taken apart.

#include "foundation/decimal.h"
#include "foundation/log.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_status";

constexpr int32_t kFallbackStatus = 1;
constexpr uint32_t kStateMask = 0x0F;
constexpr uint32_t kTransitionMask = 0xF0;
constexpr uint32_t kInProgress[] = {0x10, 0x20, 0x60};  // switchover, failover, takeover

}  // namespace

extern "C" {

int32_t ZORGetOriginalRuntimeStatus(void) {
    char value[8] = {};
    if (ZORGetHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_RUNTIME_STATUS, value, sizeof value) <= 0) {
        ZOR_NOTICE("Failed to read ha runtime status");
        return kFallbackStatus;
    }
    return ParseDecimal(value);
}

ZORRuntimeStatus ZORGetRuntimeStatus(void) {
    const auto status = static_cast<uint32_t>(ZORGetOriginalRuntimeStatus());
    return {status & kStateMask, status & kTransitionMask};
}

int32_t ZORIsNowSwitchoverFailoverTakeover(ZORRuntimeStatus status) {
    for (const uint32_t transition : kInProgress) {
        if (status.transition == transition) return 1;
    }
    return 0;
}

int32_t ZORGetLocalBootStage(void) {
    char value[4] = {};
    const int32_t found =
        ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_BOOT_STAGE, value, sizeof value);
    if (found < 0) {
        ZOR_ERROR("Failed to get boot status");
        return 0;
    }
    return found > 0 ? ParseDecimal(value) : 0;
}

}  // extern "C"
