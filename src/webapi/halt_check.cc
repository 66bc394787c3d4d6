// Asking the manager what keeps a node from halting, and publishing it.

#include <cstdlib>
#include <cstring>
#include <memory>

#include "foundation/log.h"
#include "foundation/record_text.h"
#include "zor_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

constexpr uint32_t kHaltCheckCommand = 60;
constexpr int64_t kTimeout = 10;  // seconds

constexpr int32_t kCheckLocal = 1;
constexpr int32_t kCheckRemote = 2;

// The size in the line is that of another answer, as watchers know it.
constexpr size_t kSizeInLine = sizeof(ZORNodeInfoAnswer);

int32_t storeHaltCheckResult(uint32_t selector, const ZORHaltBlock *block) {
    if (!block) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    char tasks[sizeof block->tasks + 1];
    CopyRecordText(block, offsetof(ZORHaltBlock, tasks), sizeof block->tasks, tasks);
    if (block->blocked && tasks[0] != '\0') {
        if (ZORSetHAStatus(selector, ZOR_STATUS_BLOCKING_TASKS, tasks) < 0)
            ZOR_ERROR("Failed to set ha status for blocking tasks");
        return 0;
    }
    char present[1024] = {};
    if (ZORGetHAStatus(selector, ZOR_STATUS_BLOCKING_TASKS, present, sizeof present) == 1 &&
        ZORRemoveHAStatus(selector, ZOR_STATUS_BLOCKING_TASKS) < 0)
        ZOR_ERROR("Remote ha status failed");
    return 0;
}

// What was asked for decides, not what the answer says.
bool Publish(int32_t which, const ZORHaltCheck &record) {
    bool isStored = true;
    if (which & kCheckLocal)
        isStored = storeHaltCheckResult(ZOR_HOST_LOCAL, &record.local) == 0 && isStored;
    if (which & kCheckRemote)
        isStored = storeHaltCheckResult(ZOR_HOST_REMOTE, &record.remote) == 0 && isStored;
    return isStored;
}

}  // namespace

extern "C" int32_t KEVAZORCheckHaltOpt(int32_t which, ZORHaltCheck *record, int32_t store) {
    if (!record || which == 0) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    record->which = which;
    ZORMgrRequest request = {};
    request.commandId = kHaltCheckCommand;
    request.inputData = record;
    request.inputSize = sizeof *record;
    request.wait = 1;
    request.timeout = kTimeout;
    const int32_t result = ZORSendReqToMgr(&request);
    const std::unique_ptr<void, decltype(&free)> owner(request.outputData, free);
    if (result < 0) {
        ZOR_NOTICE("Failed to command ask node info for ui with return code: %d", result);
        return -1;
    }
    if (request.outputSize != sizeof *record || !request.outputData) {
        ZOR_ERROR("wrongin size of return, %zd %d", kSizeInLine,
                  static_cast<int>(request.outputSize));
        return -1;
    }
    memcpy(record, request.outputData, sizeof *record);
    if (store && !Publish(which, *record)) ZOR_ERROR("Failed to set ha status for blocking tasks");
    return 0;
}
