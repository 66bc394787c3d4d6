#include "entry_name.h"

#include "zor_status.h"

namespace {

constexpr uint32_t kCluster = ZOR_HOST_CLUSTER;
constexpr uint32_t kLocal = ZOR_HOST_LOCAL;
constexpr uint32_t kRemote = ZOR_HOST_REMOTE;

}  // namespace

const std::vector<EntryName> &EntryNames() {
    static const std::vector<EntryName> names = {
        {"is_remote_alive_by_net", kLocal, ZOR_STATUS_IS_REMOTE_ALIVE_BY_NET},
        {"is_net_status_changed", kLocal, ZOR_STATUS_IS_NET_STATUS_CHANGED},
        {"current_comm_ip", kLocal, ZOR_STATUS_CURRENT_COMM_IP},
        {"ha_runtime_status", kCluster, ZOR_STATUS_RUNTIME_STATUS},
        {"enc_link_status", kCluster, ZOR_STATUS_ENC_LINK_STATUS},
        {"local_role", kLocal, ZOR_STATUS_ROLE},
        {"remote_role", kRemote, ZOR_STATUS_ROLE},
        {"local_host_ifname", kLocal, ZOR_STATUS_HOST_IFNAME},
        {"remote_host_ifname", kRemote, ZOR_STATUS_HOST_IFNAME},
        {"local_host_zor_ifname", kLocal, ZOR_STATUS_HOST_ZOR_IFNAME},
        {"remote_host_zor_ifname", kRemote, ZOR_STATUS_HOST_ZOR_IFNAME},
        {"local_host_IP", kLocal, ZOR_STATUS_HOST_IP},
        {"remote_host_IP", kRemote, ZOR_STATUS_HOST_IP},
        {"local_host_zor_IP", kLocal, ZOR_STATUS_HOST_ZOR_IP},
        {"remote_host_zor_IP", kRemote, ZOR_STATUS_HOST_ZOR_IP},
        {"local_host_if_status", kLocal, ZOR_STATUS_HOST_IF_STATUS},
        {"remote_host_if_status", kRemote, ZOR_STATUS_HOST_IF_STATUS},
        {"local_host_if_speed", kLocal, ZOR_STATUS_HOST_IF_SPEED},
        {"remote_host_if_speed", kRemote, ZOR_STATUS_HOST_IF_SPEED},
        {"is_remote_alive_by_expander_hb", kLocal, ZOR_STATUS_IS_REMOTE_ALIVE_BY_EXPANDER_HB},
        {"local_boot_stage", kLocal, ZOR_STATUS_BOOT_STAGE},
        {"remote_boot_stage", kRemote, ZOR_STATUS_BOOT_STAGE},
        {"monitor_service_status", kLocal, ZOR_STATUS_MONITOR_SERVICE_STATUS},
        {"is_local_the_third_host", kLocal, ZOR_STATUS_IS_THE_THIRD_HOST},
        {"is_remote_the_third_host", kRemote, ZOR_STATUS_IS_THE_THIRD_HOST},
        {"local_host_version", kLocal, ZOR_STATUS_HOST_VERSION},
        {"remote_host_version", kRemote, ZOR_STATUS_HOST_VERSION},
        {"failed_local_services", kLocal, ZOR_STATUS_FAILED_SERVICES},
        {"failed_remote_services", kRemote, ZOR_STATUS_FAILED_SERVICES},
        {"failed_local_interfaces", kLocal, ZOR_STATUS_FAILED_INTERFACES},
        {"failed_remote_interfaces", kRemote, ZOR_STATUS_FAILED_INTERFACES},
        {"failed_local_hardware", kLocal, ZOR_STATUS_FAILED_HARDWARE},
        {"failed_remote_hardware", kRemote, ZOR_STATUS_FAILED_HARDWARE},
        {"broadcast_get_remote_zor_ip", kRemote, ZOR_STATUS_BROADCAST_GET_REMOTE_ZOR_IP},
        {"broadcast_get_remote_zor_ip_list", kRemote, ZOR_STATUS_BROADCAST_GET_REMOTE_ZOR_IP_LIST},
        {"healthy_status", kCluster, ZOR_STATUS_HEALTHY_STATUS},
        {"should_adjusting_system_raid", kCluster, ZOR_STATUS_SHOULD_ADJUSTING_SYSTEM_RAID},
        {"failed_enc_hardware", kCluster, ZOR_STATUS_FAILED_ENC_HARDWARE},
        {"local_if_has_static_ip", kLocal, ZOR_STATUS_IF_HAS_STATIC_IP},
        {"remote_if_has_static_ip", kRemote, ZOR_STATUS_IF_HAS_STATIC_IP},
        {"monitored_if_no_static_ip", kCluster, ZOR_STATUS_MONITORED_IF_NO_STATIC_IP},
        {"is_hwevd_ready", kLocal, ZOR_STATUS_IS_HWEVD_READY},
        {"is_switchover_remote_reboot", kLocal, ZOR_STATUS_IS_SWITCHOVER_REMOTE_REBOOT},
        {"InstallStatus", kLocal, ZOR_STATUS_INSTALL_STATUS},
        {"service_changed", kLocal, ZOR_STATUS_SERVICE_CHANGED},
        {"net_link_changed", kLocal, ZOR_STATUS_NET_LINK_CHANGED},
        {"volume_status_changed", kLocal, ZOR_STATUS_VOLUME_STATUS_CHANGED},
        {"all_local_interfaces_failed", kLocal, ZOR_STATUS_ALL_INTERFACES_FAILED},
        {"all_remote_interfaces_failed", kRemote, ZOR_STATUS_ALL_INTERFACES_FAILED},
        {"local_boot_error", kLocal, ZOR_STATUS_BOOT_ERROR},
        {"remote_boot_error", kRemote, ZOR_STATUS_BOOT_ERROR},
        {"enable_httpd_on_passive", kLocal, ZOR_STATUS_ENABLE_HTTPD_ON_PASSIVE},
        {"remote_boot_done_status", kLocal, ZOR_STATUS_REMOTE_BOOT_DONE_STATUS},
        {"broadcast_get_remote_SN", kRemote, ZOR_STATUS_BROADCAST_GET_REMOTE_SN},
        {"is_remote_handler_ready", kLocal, ZOR_STATUS_IS_REMOTE_HANDLER_READY},
        {"is_local_handler_ready", kLocal, ZOR_STATUS_IS_LOCAL_HANDLER_READY},
        {"read_failed_healthy_status", kCluster, ZOR_STATUS_READ_FAILED_HEALTHY_STATUS},
        {"get_boot_lock_failed", kLocal, ZOR_STATUS_GET_BOOT_LOCK_FAILED},
        {"system_disk_list", kCluster, ZOR_STATUS_SYSTEM_DISK_LIST},
        {"blocking_tasks_local", kLocal, ZOR_STATUS_BLOCKING_TASKS},
        {"blocking_tasks_remote", kRemote, ZOR_STATUS_BLOCKING_TASKS},
    };
    return names;
}

const EntryName *FindEntry(const std::string &name) {
    for (const EntryName &entry : EntryNames()) {
        if (name == entry.name) return &entry;
    }
    return nullptr;
}
