#include "webapi/monitored_interface.h"

#include "webapi/remote_link.h"

namespace {

constexpr int32_t kNone = -1;

bool IsActive(int32_t localSpeed, int32_t remoteSpeed, int32_t staticIp) {
    if (localSpeed == kNone || !staticIp) return false;
    return remoteSpeed != kNone || !LookAtRemote().IsReachable();
}

}  // namespace

bool IsInterfaceActive(const ZORIfInfo &info, const ZORIfEntry &entry) {
    if (entry.index < 0 || entry.index >= ZOR_IF_TABLE_SIZE) return false;
    if (entry.isBond) {
        const ZORIfBond &bond = info.bonds[entry.index];
        return IsActive(bond.minLocalSpeed, bond.minRemoteSpeed, bond.staticIp);
    }
    const ZORIfPort &port = info.ports[entry.index];
    return IsActive(port.localSpeed, port.remoteSpeed, port.staticIp);
}
