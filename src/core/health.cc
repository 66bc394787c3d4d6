// The health word: reading it, having the manager recompute it, and its class.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/request_sender.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "foundation/pause.h"
#include "kevacore.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_core";

constexpr uint32_t kCheckHealthCommand = 63;
constexpr int kWaitTests = 16;

const char *OverviewWord(uint32_t health) {
    if (health & ZOR_HEALTH_ERROR_BITS) return "error";
    if (health & ZOR_HEALTH_WARNING_BITS) return "warning";
    return "healthy";
}

// The manager takes the one flag away and puts the other up.
bool IsUpdateDone() {
    return VLIBCFileExist(kHealthUpdateDoneFlag) && !VLIBCFileExist(kHealthNeedUpdateFlag);
}

bool WaitForUpdate() {
    for (int budget = kWaitTests;;) {
        if (IsUpdateDone()) return true;
        if (--budget == 0) return false;
        PauseSeconds(1);
    }
}

}  // namespace

extern "C" {

int32_t ZORGetHealthyStatus(uint32_t *health) {
    char value[64] = {};
    if (!health) {
        ZOR_ERROR("Bad parameter");
        return -2;
    }
    const int32_t found =
        ZORGetHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_HEALTHY_STATUS, value, sizeof value);
    if (found < 0) {
        ZOR_ERROR("Failed to get ha.status for healthy status");
        return -2;
    }
    if (found == 0 || value[0] == '\0') return -1;
    *health = static_cast<uint32_t>(strtol(value, nullptr, 10));
    return 0;
}

int32_t ZORCheckHealthyStatusNoWait(void) {
    if (VLIBCFileExist(kHealthUpdateDoneFlag) && unlink(kHealthUpdateDoneFlag) != 0) {
        ZOR_ERROR("HealthyStatus: Failed to unlink update done flag");
        return -1;
    }
    if (VLIBCFileTouch(kHealthNeedUpdateFlag) < 0) {
        ZOR_ERROR("HealthyStatus: Failed to touch need update flag");
        return -1;
    }
    const int32_t result = SendCommand(kCheckHealthCommand, nullptr, 0);
    if (result < 0) {
        ZOR_ERROR("HealthyStatus: Failed to send req %d", result);
        return -1;
    }
    return 0;
}

int32_t ZORCheckHealthyStatus(uint32_t *health) {
    if (ZORCheckHealthyStatusNoWait() < 0) {
        ZOR_ERROR("HealthyStatus: Failed to check healthy status");
        return -1;
    }
    if (!WaitForUpdate()) {
        ZOR_ERROR("HealthyStatus: Failed to wait healthy status update done");
        return -1;
    }
    if (!health) return 0;
    if (ZORGetHealthyStatus(health) != 0) {
        ZOR_ERROR("HealthyStatus: Failed to get healthy status");
        return -1;
    }
    return 0;
}

int32_t KEVAZORGetOverviewStatus(char *buffer, uint32_t size) {
    if (!buffer && size > 0) return -1;
    if (buffer) memset(buffer, 0, size);
    uint32_t health = 0;
    const int32_t result = ZORGetHealthyStatus(&health);
    if (result < 0) return result;
    return snprintf(buffer, size, "%s", OverviewWord(health));
}

}  // extern "C"
