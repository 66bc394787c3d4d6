// The enclosures of the cluster in one record, as the management interface draws
// them.

#include <cstdio>
#include <cstring>

#include "foundation/decimal.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "zor_encinfo.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kLogModule[] = "zor_encinfo";

// The steps report as the function that log watchers know.
constexpr char kReporter[] = "KEVAZORHostEncInfoGet";

constexpr int32_t kLocalNode = 1;
constexpr int32_t kRemoteNode = 2;
constexpr int32_t kRemoteIsThere = 2;
constexpr int32_t kNoRemote = 1;
constexpr int32_t kChainIsBroken = 2;  // an EncListStatus
constexpr int32_t kGood = 2;           // a status word of a node's snapshot

int32_t ChainState(const ZORHWHostInfo &host) {
    if (host.EncListStatus == kChainIsBroken) return 1;
    return host.EncListStatusLastCorretPos != 0 ? 2 : 0;
}

void SetLabel(const ZORHWHostInfo &host, const char *role, ZORHostHWStatus *block) {
    char model[sizeof block->Label];
    CopyText(model, sizeof model, host.Model);
    char label[sizeof model + 16];
    snprintf(label, sizeof label, "%s(%s)", model, role);
    CopyText(block->Label, sizeof block->Label, label);
}

void DescribeHost(const ZORHWHostInfo &host, const char *role, ZORHostHWStatus *block) {
    SetLabel(host, role, block);
    block->HostType = host.HostType;
    block->ChainState = ChainState(host);
}

// The fields that come from a node's snapshot.
bool GetHostHWStatus(int32_t node, ZORHostHWStatus *block) {
    if (!block) {
        ZOR_ERROR("Error parameter");
        return false;
    }
    ZORNodeInfo info = {};
    if (KEVAZORGetNodeInfoCached(node, &info, 1) < 1) {
        ZOR_ERROR("Failed to get node info cached");
        return false;
    }
    block->ReplyValue = info.replyValueA;
    block->SecondStatusOk = info.replyStatusB == kGood ? 1 : 0;
    block->FirstStatusOk = info.replyStatusA == kGood ? 1 : 0;
    CopyText(block->Serial, sizeof block->Serial, info.serial);
    return true;
}

// Negative when it cannot be read.
int32_t ReadLinkStatus(int32_t *status) {
    char value[4] = {};
    const int32_t found =
        ZORGetHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_ENC_LINK_STATUS, value, sizeof value);
    *status = 0;
    if (found < 0) {
        ZOR_ERROR_OF(kReporter, "Failed to get ha.status");
        return -1;
    }
    if (found == 0)
        ZOR_ERROR_OF(kReporter, "Enc status not ready");
    else
        *status = ParseDecimal(value);
    return 0;
}

// The link states by the position of the controller that sees them.
void CopyEnclosures(const ZORHWHostInfo &local, const ZORHWHostInfo &remote,
                    ZORClusterEncInfo *record) {
    const bool isLocalFirst = local.HostType == ZOR_HOST_TYPE_FIRST;
    const ZORHWHostInfo &first = isLocalFirst ? local : remote;
    const ZORHWHostInfo &second = isLocalFirst ? remote : local;
    memcpy(record->Encs, local.Encs, sizeof record->Encs);
    for (int index = 0; index < ZOR_ENC_TABLE_SIZE; ++index) {
        record->Encs[index].LinkState = first.Encs[index].LinkState;
        record->Encs[index].PeerLinkState = second.Encs[index].LinkState;
    }
}

int32_t OppositeType(int32_t type) {
    if (type == ZOR_HOST_TYPE_FIRST) return ZOR_HOST_TYPE_SECOND;
    return type == ZOR_HOST_TYPE_SECOND ? ZOR_HOST_TYPE_FIRST : ZOR_HOST_TYPE_UNKNOWN;
}

void DescribeRemote(const ZORHWHostInfo &local, const ZORHWHostInfo &remote,
                    ZORClusterEncInfo *record) {
    record->RemotePresence = kNoRemote;
    if (remote.HostType != ZOR_HOST_TYPE_UNKNOWN &&
        (ZORIsRemoteAliveByNet() || ZORIsRemoteAliveByExpanderHB())) {
        record->RemotePresence = kRemoteIsThere;
        DescribeHost(remote, ZORGetRemoteRole() == ZOR_ROLE_PASSIVE ? "Passive" : "Unknown",
                     &record->Remote);
    } else if (remote.EncListStatus == kChainIsBroken && ZORIsRemoteAliveByNet()) {
        record->RemotePresence = kRemoteIsThere;
        SetLabel(remote, "Unknown", &record->Remote);
        record->Remote.HostType = OppositeType(local.HostType);
        record->Remote.ChainState = 1;
    }
}

}  // namespace

extern "C" int32_t KEVAZORHostEncInfoGet(ZORClusterEncInfo *record) {
    if (!record) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    ZORHWHostInfo local = {};
    ZORHWHostInfo remote = {};
    if (ZORHWGetEncListCached(&local, &remote) != 0) {
        ZOR_ERROR("Failed to get cached enc list");
        return -1;
    }
    *record = {};
    if (ReadLinkStatus(&record->EncLinkStatus) < 0) return -1;
    CopyEnclosures(local, remote, record);
    record->LastCorretPos = local.EncListStatusLastCorretPos;
    DescribeHost(local, "Active", &record->Local);
    if (!GetHostHWStatus(kLocalNode, &record->Local))
        ZOR_ERROR("Failed to get host hardware status");
    DescribeRemote(local, remote, record);
    if (ZORIsRemoteHandlerReadyAndCommNormal() && !GetHostHWStatus(kRemoteNode, &record->Remote))
        ZOR_ERROR("Failed to get host hardware status");
    return 0;
}
