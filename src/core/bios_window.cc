// The window in which a node's BIOS is flashed. How it is opened and closed
// depends on where the cluster's programs live: in a root of their own below
// /dual_glibc, or in this one; and on the version of the system.

#include <unistd.h>

#include "core/system_version.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "zor_core.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_core";

constexpr uint32_t kNewProcedureVersion = 600;

constexpr char kHeartbeatOption[] = "--set_all_expander_HB_timer";
constexpr char kHeartbeatTimer[] = "600";  // seconds

// In the order in which they are stopped.
constexpr const char *kManagerDaemons[] = {"keva_zor_mgr_daemon", "keva_zor_comm_to_remote_daemon"};

// An option word of the platform, which it is handed as it is.
constexpr int kManagerStartOptions = 251;

// The steps report as the two functions that callers know.
constexpr char kStart[] = "KEVAZORBiosUpgradeStart";
constexpr char kEnd[] = "KEVAZORBiosUpgradeEnd";

bool IsNewProcedure(uint32_t version) {
    return version >= kNewProcedureVersion;
}

// --- With the cluster's programs below /dual_glibc

int32_t StartInOtherRoot(uint32_t version) {
    if (IsNewProcedure(version)) {
        if (VLIBCExec(kChrootProgram, kOtherRoot, kClusterTool, "--bios-upgrade-start", nullptr) ==
            0)
            return 0;
        ZOR_ERROR_OF(kStart, "Failed to do bios upgrade start procedure");
        return -1;
    }
    for (const char *daemon : kManagerDaemons) {
        if (VLIBCExec(kKillallProgram, daemon, nullptr) == 0) continue;
        ZOR_ERROR_OF(kStart, "Failed to stop ha mgr");
        return -1;
    }
    if (VLIBCExec(kChrootProgram, kOtherRoot, kClusterTool, kHeartbeatOption, kHeartbeatTimer,
                  nullptr) != 0) {
        ZOR_ERROR_OF(kStart, "Failed to prolong expander HB timeout to %s", kHeartbeatTimer);
        return -1;
    }
    return 0;
}

int32_t EndInOtherRoot(uint32_t version) {
    if (IsNewProcedure(version)) {
        if (VLIBCExec(kChrootProgram, kOtherRoot, kClusterTool, "--bios-upgrade-end", nullptr) == 0)
            return 0;
        ZOR_ERROR_OF(kEnd, "Failed to do bios upgrade end procedure");
        return -1;
    }
    if (VLIBCExecl(kManagerStartOptions, kChrootProgram, kOtherRoot, kManagerProgram,
                   "junior_stage", nullptr) == 0)
        return 0;
    ZOR_ERROR_OF(kEnd, "Failed to start ha mgr");
    return -1;
}

// --- With the cluster's programs in this root

int32_t StartHere(uint32_t version, FILE **handle) {
    if (IsNewProcedure(version)) {
        if (ZORFileLock(ZOR_LOCK_UPGRADE_BIOS, 0, handle) != 0) {
            ZOR_ERROR_OF(kStart, "Failed to get lock, bios upgrade is in processing");
            return -1;
        }
    } else if (ZORGetLocalRole() == ZOR_ROLE_ACTIVE) {
        return 0;
    }
    // After a failure the lock stays in the handle: the end releases it.
    if (ZORBiosUpgradeStart() == 0) return 0;
    ZOR_ERROR_OF(kStart, "Failed to do bios upgrade start procedure");
    return -1;
}

int32_t EndHere(uint32_t version) {
    if (!IsNewProcedure(version) && ZORGetLocalRole() == ZOR_ROLE_ACTIVE) {
        ZOR_ERROR_OF(kEnd, "Local role is active, should not be here");
        return -1;
    }
    if (ZORBiosUpgradeEnd() >= 0) return 0;
    ZOR_ERROR_OF(kEnd, "Failed to do bios upgrade end procedure");
    return -1;
}

int32_t EndWindow() {
    uint32_t version;
    if (GetSysVersion(&version) != 0) {
        ZOR_ERROR_OF(kEnd, "Failed to get system version");
        return -1;
    }
    return VLIBCFileCheckDir(kOtherRoot) ? EndInOtherRoot(version) : EndHere(version);
}

}  // namespace

extern "C" {

int32_t ZORIsUpgradingBios(void) {
    return VLIBCFileExist(kBiosUpgradeFlag);
}

int32_t ZORBiosUpgradeStart(void) {
    if (VLIBCFileTouch(kBiosUpgradeFlag) != 0) {
        ZOR_ERROR("Failed to create bios upgrade flag");
        return -1;
    }
    if (VLIBCExec(kClusterTool, kHeartbeatOption, kHeartbeatTimer, nullptr) != 0) {
        ZOR_ERROR("Failed to prolong expander HB");
        return -1;
    }
    return 0;
}

int32_t ZORBiosUpgradeEnd(void) {
    return unlink(kBiosUpgradeFlag);
}

int32_t KEVAZORBiosUpgradeStart(FILE **handle) {
    if (!handle) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (!VLIBCSupportDualhead()) {
        ZOR_ERROR("ZOR is not supported on this model");
        return -1;
    }
    uint32_t version;
    if (GetSysVersion(&version) != 0) {
        ZOR_ERROR("Failed to get system version");
        return -1;
    }
    return VLIBCFileCheckDir(kOtherRoot) ? StartInOtherRoot(version) : StartHere(version, handle);
}

int32_t KEVAZORBiosUpgradeEnd(FILE **handle) {
    int32_t result = -1;
    if (!VLIBCSupportDualhead()) {
        ZOR_ERROR("ZOR is not supported on this model");
        if (!handle) return -1;
    } else if (!handle) {
        ZOR_ERROR("Error parameter");
        return -1;
    } else {
        result = EndWindow();
    }
    if (*handle) ZORFileUnlock(handle);
    return result;
}

}  // extern "C"
