// Restarting or stopping the local node while it does not serve: a flag file
// asks the manager for it.

#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_core";

// A node in any other role, known or not, serves.
bool IsFlashMode(int32_t role) {
    return role == ZOR_ROLE_UNKNOWN || role == ZOR_ROLE_PASSIVE || role == ZOR_ROLE_JUNIOR;
}

bool RaiseFlag(const char *path, const char *function) {
    if (VLIBCFileTouch(path) >= 0) return true;
    ZOR_ERROR_OF(function, "Failed to touch the file '%s'", path);
    return false;
}

}  // namespace

extern "C" {

// The missing parenthesis and the level of the line are as watchers know them.

int32_t ZORFlashModeReboot(void) {
    const int32_t role = ZORGetLocalRole();
    if (!IsFlashMode(role)) {
        ZOR_ERROR("Local host is not in flash mode (role is not unknown, passive, junior");
        return -1;
    }
    ZOR_ERROR("============ now reboot local host, role: %d", role);
    return RaiseFlag(kRebootFlag, __func__) ? 0 : -1;
}

int32_t ZORFlashModePoweroff(void) {
    const int32_t role = ZORGetLocalRole();
    if (!IsFlashMode(role)) {
        ZOR_ERROR("Local host is not in flash mode (role is not unknown, passive, junior");
        return -1;
    }
    ZOR_ERROR("============ now poweroff local host, role: %d", role);
    return RaiseFlag(kPoweroffFlag, __func__) ? 0 : -1;
}

int32_t KEVAZORPassiveReboot(void) {
    if (!VLIBCFileCheckDir(kRuntimeFolder)) {
        ZOR_NOTICE("ZOR Manager is not running. We can't reboot passive");
        return -1;
    }
    return ZORFlashModeReboot();
}

int32_t KEVAZORPassivePoweroff(void) {
    if (!VLIBCFileCheckDir(kRuntimeFolder)) {
        ZOR_NOTICE("ZOR Manager is not running. We can't poweroff passive");
        return -1;
    }
    return ZORFlashModePoweroff();
}

}  // extern "C"
