// Building a snapshot, on the manager's side.

#include "foundation/held_lock.h"
#include "foundation/log.h"
#include "webapi/node_info.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

}  // namespace

extern "C" int32_t ZORUILoadUI(int32_t type) {
    if (type < 0 || type >= ZOR_UI_TYPE_COUNT) {
        ZOR_ERROR("Bad parameter");
        return 0;  // nothing to do, to the callers
    }
    // Another builder's snapshot serves as well.
    const HeldLock lock(gZORLoadUIInfo[type].lockId, 0);
    if (!lock.IsHeld()) return 0;
    if (type == ZOR_UI_CLUSTER) {
        if (ZORUIGetZORInfo() >= 0) return 0;
        ZOR_ERROR("Failed to get ZOR Info");
        return -1;
    }
    if (ZORGetNodeInfo(type == ZOR_UI_LOCAL_NODE ? kLocalNode : kRemoteNode) >= 0) return 0;
    ZOR_ERROR("Failed to get node Info");
    return -1;
}
