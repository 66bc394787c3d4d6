#include "status/status_key.h"

#include <cstddef>

#include "foundation/log.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_status";

// Which selectors a key accepts.
enum class Accepts {
    kAny,
    kOnlyCluster,
    kNotCluster,
    kNotRemote,
    kOnlyRemote
};

struct StatusKeyRow {
    uint32_t key;
    Accepts accepts;
    const char *local;    // the name with the local selector
    const char *remote;   // with any other one; null when there is one name
    const char *refusal;  // logged when the selector is refused
};

// Refusals stand as they always were, the wrong ones included.
constexpr StatusKeyRow kRows[] = {
    {0, Accepts::kAny, "is_remote_alive_by_net", nullptr, nullptr},
    {1, Accepts::kAny, "is_net_status_changed", nullptr, nullptr},
    {2, Accepts::kAny, "current_comm_ip", nullptr, nullptr},
    {3, Accepts::kOnlyCluster, "ha_runtime_status", nullptr,
     "Error: Get ha role on ha runtime status"},
    {4, Accepts::kOnlyCluster, "enc_link_status", nullptr, "Error: Get ha role on status enc_list"},
    {5, Accepts::kNotCluster, "local_role", "remote_role", "Error: Get ha role on status role"},
    {6, Accepts::kNotCluster, "local_host_ifname", "remote_host_ifname",
     "Error: Get ha role on status host IP"},
    {7, Accepts::kNotCluster, "local_host_zor_ifname", "remote_host_zor_ifname",
     "Error: Get ha role on status host IP"},
    {8, Accepts::kNotCluster, "local_host_IP", "remote_host_IP",
     "Error: Get ha role on status host IP"},
    {9, Accepts::kNotCluster, "local_host_zor_IP", "remote_host_zor_IP",
     "Error: Get ha role on status host IP"},
    {10, Accepts::kNotCluster, "local_host_if_status", "remote_host_if_status",
     "Error: Get ha role on status host IP"},
    {11, Accepts::kNotCluster, "local_host_if_speed", "remote_host_if_speed",
     "Error: Get ha role on status host IP"},
    {12, Accepts::kAny, "is_remote_alive_by_expander_hb", nullptr, nullptr},
    {13, Accepts::kNotCluster, "local_boot_stage", "remote_boot_stage",
     "Error: Get ha role on status role"},
    {14, Accepts::kNotRemote, "monitor_service_status", nullptr,
     "Error: Get ha role on status - service status"},
    {15, Accepts::kNotCluster, "is_local_the_third_host", "is_remote_the_third_host",
     "Error: Get ha role on status role"},
    {16, Accepts::kNotCluster, "local_host_version", "remote_host_version",
     "Error: Get ha role on status host IP"},
    {17, Accepts::kNotCluster, "failed_local_services", "failed_remote_services",
     "Error: Get ha role on status role"},
    {18, Accepts::kNotCluster, "failed_local_interfaces", "failed_remote_interfaces",
     "Error: Get ha failed inerface role on ha.status"},
    {19, Accepts::kNotCluster, "failed_local_hardware", "failed_remote_hardware",
     "Error: Get ha failed hardware role on ha.status"},
    {20, Accepts::kOnlyRemote, "broadcast_get_remote_zor_ip", nullptr,
     "Error: get non remote-role on broadcast ip"},
    {21, Accepts::kOnlyRemote, "broadcast_get_remote_zor_ip_list", nullptr,
     "Error: get non remote-role on broadcast zor ips"},
    {22, Accepts::kOnlyCluster, "healthy_status", nullptr,
     "Error: get no ha-role on healthy status"},
    {23, Accepts::kOnlyCluster, "should_adjusting_system_raid", nullptr,
     nullptr},  // its refusal has an argument, see ZORGetStatusKey
    {24, Accepts::kOnlyCluster, "failed_enc_hardware", nullptr,
     "Error, get none-ha role for enc hardware failed information"},
    {25, Accepts::kNotCluster, "local_if_has_static_ip", "remote_if_has_static_ip",
     "ERROR: Get is status ip on non-ha role"},
    {26, Accepts::kOnlyCluster, "monitored_if_no_static_ip", nullptr,
     "ERROR: Get is status ip on non-ha role"},
    {27, Accepts::kAny, "is_hwevd_ready", nullptr, nullptr},
    {28, Accepts::kAny, "is_switchover_remote_reboot", nullptr, nullptr},
    {29, Accepts::kAny, "InstallStatus", nullptr, nullptr},
    {30, Accepts::kAny, "service_changed", nullptr, nullptr},
    {31, Accepts::kAny, "net_link_changed", nullptr, nullptr},
    {32, Accepts::kAny, "volume_status_changed", nullptr, nullptr},
    {33, Accepts::kNotCluster, "all_local_interfaces_failed", "all_remote_interfaces_failed",
     "ERROR: Get all failed status on ha role"},
    {34, Accepts::kNotCluster, "local_boot_error", "remote_boot_error",
     "ERROR: Get boot errors status on ha role"},
    {35, Accepts::kAny, "enable_httpd_on_passive", nullptr, nullptr},
    {36, Accepts::kAny, "remote_boot_done_status", nullptr, nullptr},
    {37, Accepts::kOnlyRemote, "broadcast_get_remote_SN", nullptr,
     "Error: get non remote-role on broadcast SN"},
    {38, Accepts::kAny, "is_remote_handler_ready", nullptr, nullptr},
    {39, Accepts::kAny, "is_local_handler_ready", nullptr, nullptr},
    {40, Accepts::kOnlyCluster, "read_failed_healthy_status", nullptr,
     "Error: get no ha-role on healthy status"},
    {41, Accepts::kAny, "get_boot_lock_failed", nullptr, nullptr},
    {42, Accepts::kAny, "system_disk_list", nullptr, nullptr},
    {43, Accepts::kNotCluster, "blocking_tasks_local", "blocking_tasks_remote",
     "ERROR: Get boot errors status on ha role"},
};

constexpr size_t kRowCount = sizeof kRows / sizeof kRows[0];

constexpr bool IsInKeyOrder() {
    for (size_t row = 0; row < kRowCount; ++row) {
        if (kRows[row].key != row) return false;
    }
    return true;
}
static_assert(kRowCount == ZOR_STATUS_KEY_COUNT && IsInKeyOrder());

bool IsAccepted(Accepts accepts, uint32_t selector) {
    switch (accepts) {
        case Accepts::kAny:
            return true;
        case Accepts::kOnlyCluster:
            return selector == ZOR_HOST_CLUSTER;
        case Accepts::kNotCluster:
            return selector != ZOR_HOST_CLUSTER;
        case Accepts::kNotRemote:
            return selector != ZOR_HOST_REMOTE;
        case Accepts::kOnlyRemote:
            return selector == ZOR_HOST_REMOTE;
    }
    return false;
}

}  // namespace

const char *ZORGetStatusKey(uint32_t selector, uint32_t key) {
    if (key >= kRowCount) {
        ZOR_ERROR("Error key (%d)", static_cast<int>(key));
        return nullptr;
    }
    const StatusKeyRow &row = kRows[key];
    if (!IsAccepted(row.accepts, selector)) {
        if (row.refusal)
            ZOR_ERROR("%s", row.refusal);
        else
            ZOR_ERROR("Error: get error node type on adjusting system raid: %d",
                      static_cast<int>(selector));
        return nullptr;
    }
    return row.remote && selector != ZOR_HOST_LOCAL ? row.remote : row.local;
}
