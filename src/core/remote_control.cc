// Actions that the manager takes on request: passwords and fans of the remote
// node, the system disk, the reset button.

#include "core/request_sender.h"
#include "foundation/log.h"
#include "kevacore.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_core";

constexpr uint32_t kAdjustSystemDiskCommand = 29;
constexpr uint32_t kSyncPasswordsCommand = 42;
constexpr uint32_t kAdjustRemoteFansCommand = 45;
constexpr uint32_t kResetButtonCommand = 62;
constexpr int64_t kResetButtonTimeout = 15;  // seconds

}  // namespace

extern "C" {

int32_t KEVAZORSyncPasswdToRemote(void) {
    if (!ZORIsRemoteAliveByNet()) {
        ZOR_NOTICE("Remote is not online");
        return -1;
    }
    if (ZORGetLocalRole() != ZOR_ROLE_ACTIVE) {
        ZOR_ERROR("Failed to sync pw, local role is not active");
        return -1;
    }
    if (SendCommand(kSyncPasswordsCommand, nullptr, 0) != 0) {
        ZOR_ERROR("Failed to send request: %d", static_cast<int>(kSyncPasswordsCommand));
        return -1;
    }
    return 0;
}

int32_t KEVAZORRemoteFanAdjust(const void *data, int32_t size) {
    if (!VLIBCSupportDualhead()) {
        ZOR_ERROR("This model is not dualhead");
        return -1;
    }
    if (!data || size < 1) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (static_cast<uint32_t>(size) > ZOR_REQUEST_PAYLOAD_MAX) {
        ZOR_ERROR("The output data size is too large");
        return -1;
    }
    if (SendCommand(kAdjustRemoteFansCommand, data, static_cast<uint32_t>(size)) != 0) {
        ZOR_ERROR("Failed to send request: %d", static_cast<int>(kAdjustRemoteFansCommand));
        return -1;
    }
    return 0;
}

int32_t KEVAZORAdjustSystemDisk(void) {
    if (SendCommand(kAdjustSystemDiskCommand, nullptr, 0) < 0) {
        ZOR_ERROR("Failed send msg to state controller");
        return -1;
    }
    return 0;
}

int32_t KEVAZORResetButtonPress(void) {
    if (SendCommandAndWait(kResetButtonCommand, nullptr, 0, kResetButtonTimeout) < 0) {
        ZOR_ERROR("Failed send msg to state controller");
        return -1;
    }
    return 0;
}

}  // extern "C"
