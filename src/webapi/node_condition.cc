#include "webapi/node_condition.h"

#include "foundation/log.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

constexpr int32_t kUnknown = 0;
constexpr int32_t kChainInOrder = 1;

int32_t HostOf(int32_t node) {
    return node == kLocalNode ? ZOR_HOST_LOCAL : ZOR_HOST_REMOTE;
}

}  // namespace

int32_t getNetworkStatus(int32_t node) {
    char failed[144] = {};
    const int32_t found = ZORGetHAStatus(static_cast<uint32_t>(HostOf(node)),
                                         ZOR_STATUS_FAILED_INTERFACES, failed, sizeof failed);
    if (found < 0) {
        ZOR_ERROR("Failed to get ha.status");
        return kUnknown;
    }
    if (found == 0) return kUnknown;
    return failed[0] != '\0' ? ZOR_UI_STATE_WARNING : ZOR_UI_STATE_GOOD;
}

int32_t getStorageStatus(int32_t node) {
    const int32_t chain = ZORHWGetEncListStatus(HostOf(node));
    if (chain == 0) {
        ZOR_NOTICE("Failed to load link status, role:%d", node);
        return kUnknown;
    }
    return chain == kChainInOrder ? ZOR_UI_STATE_GOOD : ZOR_UI_STATE_WARNING;
}
