#include "webapi/cluster_description.h"

#include "foundation/log.h"
#include "foundation/text.h"
#include "webapi/node_condition.h"
#include "zor_conf.h"
#include "zor_constraint.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

// What is read on the way is reported as of the function that log watchers know.
constexpr char kReporter[] = "ZORUIGetZORInfo";

constexpr uint32_t kDetailSize = 144;
constexpr int32_t kGood = 2;

constexpr uint32_t Bit(int number) {
    return uint32_t{1} << number;
}

void Append(const char *key, const char *detail, ZORUIInfo *info) {
    if (info->descCount >= ZOR_UI_DESC_COUNT) return;
    ZORUIDesc &desc = info->desc[info->descCount++];
    CopyText(desc.key, sizeof desc.key, key);
    CopyText(desc.detail, sizeof desc.detail, detail);
}

// --- Where details come from. Three of the lines name the wrong file, as watchers
// know them.

struct Detail {
    int32_t (*read)(char *buffer);
    void (*reportFailure)();
};

template <uint32_t Selector, uint32_t Key>
int32_t ReadStatus(char *buffer) {
    return ZORGetHAStatus(Selector, Key, buffer, kDetailSize);
}

int32_t ReadFailedServices(char *buffer) {
    return ZORGetConstraint(ZOR_HOST_REMOTE, ZOR_CONSTRAINT_FAILED_SERVICES, buffer, kDetailSize);
}

void ReportStatus() {
    ZOR_ERROR_OF(kReporter, "Failed to read ha.status for failed services");
}
void ReportConstraint() {
    ZOR_ERROR_OF(kReporter, "Failed to read ha.constraint for failed services");
}
void NoticeConstraint() {
    ZOR_NOTICE_OF(kReporter, "Failed to read ha.constraint for failed services");
}
void ReportNoStaticIp() {
    ZOR_ERROR_OF(kReporter, "Failed to read ha.status for no static ip list");
}

constexpr Detail kNoDetail = {nullptr, nullptr};
constexpr Detail kActiveInterfaces = {ReadStatus<ZOR_HOST_LOCAL, ZOR_STATUS_FAILED_INTERFACES>,
                                      ReportStatus};
constexpr Detail kPassiveInterfaces = {ReadStatus<ZOR_HOST_REMOTE, ZOR_STATUS_FAILED_INTERFACES>,
                                       ReportConstraint};
constexpr Detail kActiveServices = {ReadStatus<ZOR_HOST_LOCAL, ZOR_STATUS_FAILED_SERVICES>,
                                    ReportStatus};
constexpr Detail kPassiveServices = {ReadFailedServices, ReportConstraint};
constexpr Detail kActiveHardware = {ReadStatus<ZOR_HOST_LOCAL, ZOR_STATUS_FAILED_HARDWARE>,
                                    ReportStatus};
constexpr Detail kPassiveHardware = {ReadStatus<ZOR_HOST_REMOTE, ZOR_STATUS_FAILED_HARDWARE>,
                                     NoticeConstraint};
constexpr Detail kEnclosureHardware = {ReadStatus<ZOR_HOST_CLUSTER, ZOR_STATUS_FAILED_ENC_HARDWARE>,
                                       ReportStatus};
constexpr Detail kNoStaticIp = {ReadStatus<ZOR_HOST_CLUSTER, ZOR_STATUS_MONITORED_IF_NO_STATIC_IP>,
                                ReportNoStaticIp};

// --- When a bit is not all

bool Always(const ClusterState &) {
    return true;
}
bool IsRemoteStorageNotGood(const ClusterState &) {
    return getStorageStatus(kRemoteNode) != kGood;
}
bool IsPassiveThere(const ClusterState &state) {
    return (state.health & Bit(0)) == 0;
}
bool IsRemoteReachable(const ClusterState &state) {
    return state.remote.IsReachable();
}

struct Description {
    uint32_t bits;  // any of them
    const char *key;
    Detail detail;
    bool (*applies)(const ClusterState &state);
};

// Shown before the one on the passive node, and after it.
constexpr Description kFirst[] = {
    {Bit(26), "desc_failover_failed", kNoDetail, Always},
    {Bit(28), "desc_halt_blocking_active", kNoDetail, Always},
    {Bit(29), "desc_halt_blocking_passive", kNoDetail, Always},
};

constexpr Description kThen[] = {
    {Bit(3), "desc_failed_service_active", kActiveServices, Always},
    {Bit(4), "desc_failed_service_passive", kPassiveServices, Always},
    {Bit(1), "desc_failed_net_active", kActiveInterfaces, Always},
    {Bit(2), "desc_failed_net_passive", kPassiveInterfaces, Always},
    {Bit(11), "desc_host_hw_error_active", kActiveHardware, Always},
    {Bit(12), "desc_host_hw_error_passive", kPassiveHardware, Always},
    {Bit(5), "desc_invalid_enc_list_active", kNoDetail, Always},
    {Bit(6), "desc_invalid_enc_list_passive", kNoDetail, IsRemoteStorageNotGood},
    {Bit(20), "desc_enclosure_hw_error", kEnclosureHardware, Always},
    {Bit(7), "desc_heartbeat_link_lost", kNoDetail, IsPassiveThere},
    {Bit(22), "desc_space_busy", kNoDetail, Always},
    {Bit(24) | Bit(25), "desc_fcache_crashed", kNoDetail, Always},
    {Bit(23), "desc_fcache_degrade", kNoDetail, Always},
    {Bit(9) | Bit(10), "desc_space_crash", kNoDetail, Always},
    {Bit(8), "desc_space_degrade", kNoDetail, Always},
    {Bit(13), "desc_memory_not_match", kNoDetail, IsRemoteReachable},
    {Bit(14), "desc_no_monitored_if", kNoDetail, Always},
    {Bit(21), "desc_monitored_ifs_no_static_ip", kNoStaticIp, Always},
    {Bit(18), "desc_recovering_passive", kNoDetail, Always},
    {Bit(19), "desc_upgrading_passive", kNoDetail, Always},
};

void Describe(const Description &description, const ClusterState &state, ZORUIInfo *info) {
    if ((state.health & description.bits) == 0 || !description.applies(state)) return;
    char detail[kDetailSize] = {};
    if (description.detail.read && description.detail.read(detail) < 0) {
        description.detail.reportFailure();
        detail[0] = '\0';
    }
    Append(description.key, detail, info);
}

// A remote node that is known is offline, else there is none.
void DescribeMissingPassive(const ClusterState &state, ZORUIInfo *info) {
    if ((state.health & Bit(0)) == 0) return;
    char serial[ZOR_CONF_SERIAL_SIZE] = {};
    if (ZORGetHAConf(ZOR_HOST_REMOTE, ZOR_CONF_SN, serial, sizeof serial) < 0) {
        ZOR_ERROR_OF(kReporter, "Failed to get remtoe conf in ha.conf");
        serial[0] = '\0';
    }
    Append(serial[0] != '\0' ? "desc_passive_offline" : "desc_no_passive", "", info);
}

void DescribeBootError(ZORUIInfo *info) {
    char detail[kDetailSize] = {};
    if (ZORGetHAStatus(ZOR_HOST_REMOTE, ZOR_STATUS_BOOT_ERROR, detail, sizeof detail) == 1)
        Append("desc_remote_boot_error", detail, info);
}

}  // namespace

void DescribeNormal(ZORUIInfo *info) {
    Append("desc_ha_normal", "", info);
}

void DescribeCluster(const ClusterState &state, ZORUIInfo *info) {
    DescribeBootError(info);
    if (state.switching == kSwitchingFailed) Append("desc_switchover_failed", "", info);
    for (const Description &description : kFirst) Describe(description, state, info);
    DescribeMissingPassive(state, info);
    for (const Description &description : kThen) Describe(description, state, info);
}
