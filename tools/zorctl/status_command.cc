// zorctl status: what this node says of itself and of the other one.

#include <cstdio>
#include <iterator>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

// The value of an entry, null when it is not set or cannot be read.
Json Entry(uint32_t selector, uint32_t key) {
    char value[1024] = {};
    if (ZORGetHAStatus(selector, key, value, sizeof value) <= 0) return nullptr;
    return value;
}

// Asks for a role only where there is one: an absent role is worth a NOTICE to
// the library, but not each time that somebody looks.
Json Role(uint32_t selector, int32_t (*query)()) {
    if (Entry(selector, ZOR_STATUS_ROLE).is_null()) return nullptr;
    const int32_t role = query();
    struct Name {
        int32_t role;
        const char *name;
    };
    constexpr Name kNames[] = {{ZOR_ROLE_UNKNOWN, "unknown"},
                               {ZOR_ROLE_ACTIVE, "active"},
                               {ZOR_ROLE_PASSIVE, "passive"},
                               {ZOR_ROLE_JUNIOR, "junior"}};
    for (const Name &name : kNames) {
        if (name.role == role) return name.name;
    }
    return role;
}

// "yes" and "no", or null when nobody has said.
Json Flag(uint32_t key, int32_t (*query)()) {
    if (Entry(ZOR_HOST_LOCAL, key).is_null()) return nullptr;
    return query() != 0;
}

Json Serial(int32_t (*read)(char *, uint32_t)) {
    char serial[ZOR_SERIAL_SIZE] = {};
    if (read(serial, sizeof serial) != 0 || serial[0] == '\0') return nullptr;
    return serial;
}

Json Runtime() {
    if (Entry(ZOR_HOST_CLUSTER, ZOR_STATUS_RUNTIME_STATUS).is_null()) return nullptr;
    const ZORRuntimeStatus status = ZORGetRuntimeStatus();
    return {{"state", status.state},
            {"transition", status.transition},
            {"in_transition", ZORIsNowSwitchoverFailoverTakeover(status) != 0}};
}

Json RemoteAlive() {
    uint32_t alive = 0;
    if (KEVAZORIsRemoteAlive(&alive) != 0) return nullptr;
    return alive != 0;
}

Json RemoteBootDone() {
    if (Entry(ZOR_HOST_LOCAL, ZOR_STATUS_REMOTE_BOOT_DONE_STATUS).is_null()) return nullptr;
    return ZORIsRemoteBootDone() != 0;
}

Json Collect() {
    const bool is_running = ZORIsTmpPathExist() != 0;
    Json status = {{"manager_running", is_running},
                   {"serial", Serial(KEVAZORGetOriginalSN)},
                   {"custom_serial", Serial(KEVAZORGetCustomSN)}};
    if (!is_running) return status;
    status["local"] = {
        {"role", Role(ZOR_HOST_LOCAL, KEVAZORGetLocalRole)},
        {"boot_stage", Entry(ZOR_HOST_LOCAL, ZOR_STATUS_BOOT_STAGE)},
        {"version", Entry(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_VERSION)},
        {"handler_ready", Flag(ZOR_STATUS_IS_LOCAL_HANDLER_READY, ZORIsLocalHandlerReady)},
        {"hwevd_ready", Flag(ZOR_STATUS_IS_HWEVD_READY, ZORIsHwevdReady)},
        {"interfaces", Entry(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IFNAME)},
        {"addresses", Entry(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP)},
        {"link_states", Entry(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IF_STATUS)},
        {"link_speeds", Entry(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IF_SPEED)},
    };
    status["remote"] = {
        {"alive", RemoteAlive()},
        {"alive_by_network", Flag(ZOR_STATUS_IS_REMOTE_ALIVE_BY_NET, ZORIsRemoteAliveByNet)},
        {"alive_by_expander",
         Flag(ZOR_STATUS_IS_REMOTE_ALIVE_BY_EXPANDER_HB, ZORIsRemoteAliveByExpanderHB)},
        {"role", Role(ZOR_HOST_REMOTE, KEVAZORGetRemoteRole)},
        {"boot_stage", Entry(ZOR_HOST_REMOTE, ZOR_STATUS_BOOT_STAGE)},
        {"boot_done", RemoteBootDone()},
        {"version", Entry(ZOR_HOST_REMOTE, ZOR_STATUS_HOST_VERSION)},
        {"handler_ready", Flag(ZOR_STATUS_IS_REMOTE_HANDLER_READY, ZORIsRemoteHandlerReady)},
    };
    status["runtime"] = Runtime();
    status["changed"] = ZORIsStatusChanged() != 0;
    return status;
}

struct Row {
    const char *label;
    const char *pointer;  // into what Collect returns
};

constexpr Row kIdentityRows[] = {{"Serial number", "/serial"}, {"Custom serial", "/custom_serial"}};

constexpr Row kNodeRows[] = {
    {"Local role", "/local/role"},
    {"Boot stage", "/local/boot_stage"},
    {"Software version", "/local/version"},
    {"Manager ready", "/local/handler_ready"},
    {"Hardware daemon ready", "/local/hwevd_ready"},
    {"Interfaces", "/local/interfaces"},
    {"Addresses", "/local/addresses"},
    {"Links", "/local/link_states"},
    {"Speeds (heartbeat first)", "/local/link_speeds"},
    {"Remote alive", "/remote/alive"},
    {"  by network", "/remote/alive_by_network"},
    {"  by expander", "/remote/alive_by_expander"},
    {"Remote role", "/remote/role"},
    {"Remote boot stage", "/remote/boot_stage"},
    {"Remote boot done", "/remote/boot_done"},
    {"Remote version", "/remote/version"},
    {"Remote manager ready", "/remote/handler_ready"},
    {"Status changed since read", "/changed"},
};

template <size_t Count>
void PrintRows(const Row (&rows)[Count], const Json &status) {
    for (const Row &row : rows)
        printf("%-26s %s\n", row.label, Words(status.at(Json::json_pointer(row.pointer))).c_str());
}

void PrintRuntime(const Json &runtime) {
    if (runtime.is_null()) {
        printf("%-26s unknown\n", "Runtime status");
        return;
    }
    printf("%-26s state %u, transition 0x%02x%s\n", "Runtime status",
           runtime.at("state").get<unsigned>(), runtime.at("transition").get<unsigned>(),
           runtime.at("in_transition").get<bool>()
               ? " (switchover, failover or takeover in progress)"
               : "");
}

int Show(bool json) {
    const Json status = Collect();
    const bool is_running = status.at("manager_running").get<bool>();
    if (json) {
        PrintJson(status);
        return is_running ? kExitSuccess : kExitNotRunning;
    }
    printf("%-26s %s\n", "Manager", is_running ? "running" : "not running (/tmp/zor is not there)");
    PrintRows(kIdentityRows, status);
    if (!is_running) return kExitNotRunning;
    PrintRuntime(status.at("runtime"));
    PrintRows(kNodeRows, status);
    return kExitSuccess;
}

}  // namespace

void AddStatusCommand(const Verb &app) {
    const Verb status = app.Add("status", "roles, boot, liveness, readiness, serials");
    status.AddJsonFlag();
    status.Runs([=] { return Show(status.PrintsJson()); });
}
