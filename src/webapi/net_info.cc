// The table of the cluster's ports.

#include <cstdio>

#include "foundation/log.h"
#include "webapi/remote_link.h"
#include "zor_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

constexpr int32_t kNone = -1;

int32_t PortState(const ZORNetInfo &row) {
    if (!row.monitored) return ZOR_UI_STATE_UNREACHABLE;
    if (!row.hasLocalSpeed) return ZOR_UI_STATE_ERROR;
    return row.hasRemoteSpeed ? ZOR_UI_STATE_GOOD : ZOR_UI_STATE_WARNING;
}

ZORNetInfo Describe(const ZORIfPort &port, int32_t entry, bool isRemoteThere) {
    ZORNetInfo row = {};
    if (entry == 0)
        snprintf(row.name, sizeof row.name, "heartbeat");
    else
        snprintf(row.name, sizeof row.name, "eth%d", entry - 1);
    row.hasLocalSpeed = port.localSpeed != kNone ? 1 : 0;
    row.localSpeed = port.localSpeed;
    row.hasRemoteSpeed = isRemoteThere && port.remoteSpeed != kNone ? 1 : 0;
    row.remoteSpeed = isRemoteThere ? port.remoteSpeed : kNone;
    row.inBond = port.bond != kNone ? 1 : 0;
    row.bondNumber = port.bond;
    row.monitored = port.monitored;
    row.portState = PortState(row);
    return row;
}

}  // namespace

extern "C" int32_t KEVAZORGetNetInfo(ZORNetInfo *rows, int32_t maxRows, int32_t *count) {
    const RemoteLink remote = LookAtRemote();
    if (!rows || !count) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    if (ZORGetLocalRole() != ZOR_ROLE_ACTIVE) {
        ZOR_ERROR("Failed to get local role");
        return -1;
    }
    ZORIfInfo info;
    if (ZORGetConfIfInfo(&info) != 0) {
        ZOR_ERROR("Failed to read net info.");
        return -1;
    }
    if (info.portCount > maxRows) {
        ZOR_ERROR("The data size(%d) > maxsize(%d)", info.portCount, maxRows);
        return -1;
    }
    *count = info.portCount;
    for (int32_t entry = 0; entry < info.portCount; ++entry)
        rows[entry] = Describe(info.ports[entry], entry, remote.byNet && remote.byExpander);
    return 0;
}
