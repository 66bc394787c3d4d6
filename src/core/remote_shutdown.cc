// Shutting the remote node down, and waiting until it is gone.

#include "core/request_sender.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "foundation/pause.h"
#include "kevacore.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_core";

constexpr uint32_t kShutdownRemoteCommand = 14;
constexpr int kWaitTests = 31;

bool IsRemoteGone() {
    return !ZORIsRemoteAliveByNet() && !ZORIsRemoteAliveByExpanderHB();
}

bool WaitUntilRemoteIsGone() {
    for (int budget = kWaitTests;;) {
        if (IsRemoteGone()) return true;
        if (--budget == 0) return false;
        PauseSeconds(1);
    }
}

}  // namespace

extern "C" int32_t KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(void) {
    if (!VLIBCSupportDualhead()) {
        ZOR_ERROR("ZOR is not supported on this model");
        return -1;
    }
    if (!VLIBCFileCheckDir(kRuntimeFolder)) {
        ZOR_NOTICE("ZOR Manager is not running. Message queue is not ready for send req");
        return ZOR_SHUTDOWN_NO_MANAGER;
    }
    if (ZORGetLocalRole() != ZOR_ROLE_ACTIVE) {
        ZOR_ERROR("Local is not active. should not call shut down remote on active");
        return -1;
    }
    const bool isAliveByNet = ZORIsRemoteAliveByNet() != 0;
    if (isAliveByNet || ZORIsRemoteAliveByExpanderHB()) {
        // It is sent all the same: the manager may have another way.
        if (!isAliveByNet) ZOR_ERROR("Remote alive but communication not OK.");
        const int32_t result = SendCommand(kShutdownRemoteCommand, nullptr, 0);
        if (result < 0) {
            ZOR_ERROR("Failed to send command to remote with code: %d", result);
            return ZOR_SHUTDOWN_NOT_SENT;
        }
    }
    if (WaitUntilRemoteIsGone()) return 0;
    ZOR_ERROR("WAIT REMOTE SHUTDOWN TIMEOUT");
    return ZOR_SHUTDOWN_TIMED_OUT;
}
