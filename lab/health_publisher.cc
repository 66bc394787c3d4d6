#include "health_publisher.h"

#include <kevacore.h>
#include <unistd.h>

#include <vector>

#include "interface_lists.h"
#include "service_states.h"
#include "status_publisher.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

namespace {

constexpr char kNeedUpdateFlag[] = "/tmp/zor/.zor.healthy.status.need.update";
constexpr char kUpdateDoneFlag[] = "/tmp/zor/.zor.healthy.status.update.done";
constexpr size_t kValueSize = 1024;

std::string StatusOf(uint32_t selector, uint32_t key) {
    char value[kValueSize] = "";
    return ZORGetHAStatus(selector, key, value, sizeof value) > 0 ? value : "";
}

void Append(std::string *list, const std::string &item) {
    *list += (list->empty() ? "" : ",") + item;
}

// What the word is computed from.
struct Conditions {
    bool is_active = false;
    bool is_remote_alive = false;
    bool is_remote_in_the_network = false;
    bool has_interfaces = false;
    bool has_monitored_interface = false;
    std::string failed_interfaces;
    std::string no_static_ip;
    std::string failed_services;
    uint32_t volumes = 0;
    ZORHWHostInfo local = {};
    ZORHWHostInfo remote = {};
};

void LookAtInterfaces(Conditions *conditions) {
    const std::string names = StatusOf(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IFNAME);
    conditions->has_interfaces = !names.empty();
    ZORIfInfo info;
    if (names.empty() || ZORGetConfIfInfo(&info) != 0) return;
    const std::vector<std::string> states =
        SplitText(StatusOf(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IF_STATUS), ',');
    for (int32_t number = 0; number < info.interfaceCount; ++number) {
        const ZORIfEntry &entry = info.interfaces[number];
        if (entry.monitored != 1) continue;
        conditions->has_monitored_interface = true;
        const auto place = static_cast<size_t>(number);
        if (place < states.size() && states[place] != "up")
            Append(&conditions->failed_interfaces, entry.name);
        const bool is_static =
            entry.isBond ? info.bonds[entry.index].staticIp : info.ports[entry.index].staticIp;
        if (!is_static) Append(&conditions->no_static_ip, entry.name);
    }
}

void LookAtServices(Conditions *conditions) {
    char choice[ZOR_CONF_MONITOR_SIZE] = "";
    if (ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_SERVICE, choice, sizeof choice) < 1) return;
    const std::vector<std::string> monitored = SplitText(choice, ',');
    const std::vector<std::string> states = SplitText(ListServiceStates(), ',');
    for (size_t slot = 0; slot < states.size() && slot < monitored.size(); ++slot) {
        if (monitored[slot] == "yes" && states[slot] != "running")
            Append(&conditions->failed_services, gMonitorServiceList[slot]);
    }
}

Conditions Look() {
    Conditions conditions;
    conditions.is_active = ZORGetLocalRole() == ZOR_ROLE_ACTIVE;
    conditions.is_remote_in_the_network = ZORIsRemoteAliveByNet() != 0;
    conditions.is_remote_alive =
        conditions.is_remote_in_the_network || ZORIsRemoteAliveByExpanderHB();
    LookAtInterfaces(&conditions);
    LookAtServices(&conditions);
    ZORHWGetVolumnStatus(&conditions.volumes);
    ZORHWReadHostValue(ZOR_HOST_LOCAL, &conditions.local);
    ZORHWReadHostValue(ZOR_HOST_REMOTE, &conditions.remote);
    return conditions;
}

bool IsChainBroken(const ZORHWHostInfo &host) {
    return host.HostType != ZOR_HOST_TYPE_UNKNOWN && host.EncListLength > 0 &&
           host.EncListStatus != 1;
}

bool HasVolume(const Conditions &conditions, uint32_t flag) {
    return (conditions.volumes & flag) != 0;
}

struct HealthBit {
    int bit;
    bool (*is_set)(const Conditions &conditions);
};

constexpr HealthBit kHealthBits[] = {
    {0, [](const Conditions &now) { return now.is_active && !now.is_remote_alive; }},
    {1, [](const Conditions &now) { return !now.failed_interfaces.empty(); }},
    {2,
     [](const Conditions &) {
         return !StatusOf(ZOR_HOST_REMOTE, ZOR_STATUS_FAILED_INTERFACES).empty();
     }},
    {3, [](const Conditions &now) { return !now.failed_services.empty(); }},
    {5, [](const Conditions &now) { return IsChainBroken(now.local); }},
    {6, [](const Conditions &now) { return IsChainBroken(now.remote); }},
    {7, [](const Conditions &now) { return now.is_remote_alive && !now.is_remote_in_the_network; }},
    {8, [](const Conditions &now) { return HasVolume(now, ZOR_VOLUME_SPACE_DEGRADED); }},
    {9, [](const Conditions &now) { return HasVolume(now, ZOR_VOLUME_SPACE_CRASHED); }},
    {10,
     [](const Conditions &now) { return HasVolume(now, ZOR_VOLUME_SPACE_REMOTE_HAS_MORE_DISKS); }},
    {13,
     [](const Conditions &now) {
         return now.is_remote_alive && now.local.Memory > 0 && now.remote.Memory > 0 &&
                now.local.Memory != now.remote.Memory;
     }},
    {14, [](const Conditions &now) { return now.has_interfaces && !now.has_monitored_interface; }},
    {20,
     [](const Conditions &) {
         return !StatusOf(ZOR_HOST_CLUSTER, ZOR_STATUS_FAILED_ENC_HARDWARE).empty();
     }},
    {21, [](const Conditions &now) { return !now.no_static_ip.empty(); }},
    {23, [](const Conditions &now) { return HasVolume(now, ZOR_VOLUME_FCACHE_DEGRADED); }},
    {24, [](const Conditions &now) { return HasVolume(now, ZOR_VOLUME_FCACHE_CRASHED); }},
    {25,
     [](const Conditions &now) { return HasVolume(now, ZOR_VOLUME_FCACHE_REMOTE_HAS_MORE_DISKS); }},
    {28,
     [](const Conditions &) {
         return !StatusOf(ZOR_HOST_LOCAL, ZOR_STATUS_BLOCKING_TASKS).empty();
     }},
    {29,
     [](const Conditions &) {
         return !StatusOf(ZOR_HOST_REMOTE, ZOR_STATUS_BLOCKING_TASKS).empty();
     }},
};

uint32_t Compute(const Conditions &conditions) {
    uint32_t word = 0;
    for (const HealthBit &health : kHealthBits) {
        if (health.is_set(conditions)) word |= uint32_t{1} << health.bit;
    }
    return word;
}

}  // namespace

uint32_t HealthPublisher::Publish() {
    const Conditions conditions = Look();
    const uint32_t word = Compute(conditions);
    status_.Set(ZOR_HOST_LOCAL, ZOR_STATUS_FAILED_INTERFACES, conditions.failed_interfaces);
    status_.Set(ZOR_HOST_LOCAL, ZOR_STATUS_FAILED_SERVICES, conditions.failed_services);
    status_.Set(ZOR_HOST_CLUSTER, ZOR_STATUS_MONITORED_IF_NO_STATIC_IP, conditions.no_static_ip);
    status_.Set(ZOR_HOST_CLUSTER, ZOR_STATUS_HEALTHY_STATUS, std::to_string(word));
    return word;
}

uint32_t HealthPublisher::Answer() {
    const uint32_t word = Publish();
    unlink(kNeedUpdateFlag);
    VLIBCFileTouch(kUpdateDoneFlag);
    return word;
}
