// Telling the manager of a bonding, and everybody of a change of the network
// configuration that is under way.

#include <unistd.h>

#include "core/request_sender.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "zor_core.h"

namespace {

constexpr char kLogModule[] = "zor_core";
constexpr uint32_t kBondingCommand = 55;
constexpr uint32_t kBondingDoneCommand = 56;
constexpr int64_t kTimeout = 30;  // seconds

}  // namespace

extern "C" {

int32_t ZORSetNetConfChanging(int32_t changing) {
    return changing ? VLIBCFileTouch(kNetChangingFlag) : unlink(kNetChangingFlag);
}

int32_t ZORIsNetConfChanging(void) {
    return VLIBCFileExist(kNetChangingFlag);
}

int32_t KEVAZORBonding(const char *list, int32_t size) {
    if (!list || size == 0) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (SendCommandAndWait(kBondingCommand, list, static_cast<uint32_t>(size), kTimeout) < 0) {
        // The text has size bytes and need not be terminated.
        ZOR_ERROR("Failed send msg to state controller, with if list [%.*s]", size > 0 ? size : 0,
                  list);
        return -1;
    }
    return 0;
}

int32_t KEVAZORBondingDone(uint32_t value) {
    if (SendCommandAndWait(kBondingDoneCommand, &value, sizeof value, kTimeout) < 0) {
        ZOR_ERROR("Failed send msg to state controller");
        return -1;
    }
    return 0;
}

}  // extern "C"
