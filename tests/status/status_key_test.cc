// The names of the entries, by host selector and status key.

#include "support/node_test.h"
#include "zor_status.h"

namespace {

constexpr const char *kRefused = nullptr;

struct KeyRow {
    uint32_t key;
    const char *cluster;  // the name with selector 1, kRefused when refused
    const char *local;    // with selector 2
    const char *remote;   // with selector 4
    const char *other;    // with any other selector
    const char *refusal;
};

constexpr KeyRow AnySelector(uint32_t key, const char *name) {
    return {key, name, name, name, name, ""};
}
constexpr KeyRow OnlyCluster(uint32_t key, const char *name, const char *refusal) {
    return {key, name, kRefused, kRefused, kRefused, refusal};
}
constexpr KeyRow OnlyRemote(uint32_t key, const char *name, const char *refusal) {
    return {key, kRefused, kRefused, name, kRefused, refusal};
}
constexpr KeyRow Paired(uint32_t key, const char *local, const char *remote, const char *refusal) {
    return {key, kRefused, local, remote, remote, refusal};
}

constexpr KeyRow kKeys[] = {
    AnySelector(0, "is_remote_alive_by_net"),
    AnySelector(1, "is_net_status_changed"),
    AnySelector(2, "current_comm_ip"),
    OnlyCluster(3, "ha_runtime_status", "Error: Get ha role on ha runtime status"),
    OnlyCluster(4, "enc_link_status", "Error: Get ha role on status enc_list"),
    Paired(5, "local_role", "remote_role", "Error: Get ha role on status role"),
    Paired(6, "local_host_ifname", "remote_host_ifname", "Error: Get ha role on status host IP"),
    Paired(7, "local_host_zor_ifname", "remote_host_zor_ifname",
           "Error: Get ha role on status host IP"),
    Paired(8, "local_host_IP", "remote_host_IP", "Error: Get ha role on status host IP"),
    Paired(9, "local_host_zor_IP", "remote_host_zor_IP", "Error: Get ha role on status host IP"),
    Paired(10, "local_host_if_status", "remote_host_if_status",
           "Error: Get ha role on status host IP"),
    Paired(11, "local_host_if_speed", "remote_host_if_speed",
           "Error: Get ha role on status host IP"),
    AnySelector(12, "is_remote_alive_by_expander_hb"),
    Paired(13, "local_boot_stage", "remote_boot_stage", "Error: Get ha role on status role"),
    {14, "monitor_service_status", "monitor_service_status", kRefused, "monitor_service_status",
     "Error: Get ha role on status - service status"},
    Paired(15, "is_local_the_third_host", "is_remote_the_third_host",
           "Error: Get ha role on status role"),
    Paired(16, "local_host_version", "remote_host_version", "Error: Get ha role on status host IP"),
    Paired(17, "failed_local_services", "failed_remote_services",
           "Error: Get ha role on status role"),
    Paired(18, "failed_local_interfaces", "failed_remote_interfaces",
           "Error: Get ha failed inerface role on ha.status"),
    Paired(19, "failed_local_hardware", "failed_remote_hardware",
           "Error: Get ha failed hardware role on ha.status"),
    OnlyRemote(20, "broadcast_get_remote_zor_ip", "Error: get non remote-role on broadcast ip"),
    OnlyRemote(21, "broadcast_get_remote_zor_ip_list",
               "Error: get non remote-role on broadcast zor ips"),
    OnlyCluster(22, "healthy_status", "Error: get no ha-role on healthy status"),
    OnlyCluster(23, "should_adjusting_system_raid",
                "Error: get error node type on adjusting system raid: "),
    OnlyCluster(24, "failed_enc_hardware",
                "Error, get none-ha role for enc hardware failed information"),
    Paired(25, "local_if_has_static_ip", "remote_if_has_static_ip",
           "ERROR: Get is status ip on non-ha role"),
    OnlyCluster(26, "monitored_if_no_static_ip", "ERROR: Get is status ip on non-ha role"),
    AnySelector(27, "is_hwevd_ready"),
    AnySelector(28, "is_switchover_remote_reboot"),
    AnySelector(29, "InstallStatus"),
    AnySelector(30, "service_changed"),
    AnySelector(31, "net_link_changed"),
    AnySelector(32, "volume_status_changed"),
    Paired(33, "all_local_interfaces_failed", "all_remote_interfaces_failed",
           "ERROR: Get all failed status on ha role"),
    Paired(34, "local_boot_error", "remote_boot_error", "ERROR: Get boot errors status on ha role"),
    AnySelector(35, "enable_httpd_on_passive"),
    AnySelector(36, "remote_boot_done_status"),
    OnlyRemote(37, "broadcast_get_remote_SN", "Error: get non remote-role on broadcast SN"),
    AnySelector(38, "is_remote_handler_ready"),
    AnySelector(39, "is_local_handler_ready"),
    OnlyCluster(40, "read_failed_healthy_status", "Error: get no ha-role on healthy status"),
    AnySelector(41, "get_boot_lock_failed"),
    AnySelector(42, "system_disk_list"),
    Paired(43, "blocking_tasks_local", "blocking_tasks_remote",
           "ERROR: Get boot errors status on ha role"),
};
static_assert(std::size(kKeys) == 44);

class StatusKey : public NodeTest {
  protected:
    void ExpectName(uint32_t selector, const KeyRow &row, const char *name) {
        SCOPED_TRACE("key " + std::to_string(row.key) + ", selector " + std::to_string(selector));
        WriteText(kStatusFile, "");
        const int32_t result = ZORSetHAStatus(selector, row.key, "v");
        if (name) {
            EXPECT_EQ(result, 0);
            EXPECT_EQ(ReadText(kStatusFile), std::string(name) + "=\"v\"\n");
            ExpectLog({});
            return;
        }
        // One refusal names the selector.
        const std::string argument = row.key == 23 ? std::to_string(selector) : "";
        EXPECT_EQ(result, -1);
        EXPECT_EQ(ReadText(kStatusFile), "");
        ExpectLog({"ERROR zor_status(ZORGetStatusKey): " + std::string(row.refusal) + argument,
                   "ERROR zor_status(ZORSetHAStatusImp): Failed to get key"});
    }
};

TEST_F(StatusKey, EverySelectorHasItsNameOrRefusal) {
    for (const KeyRow &row : kKeys) {
        ASSERT_EQ(&row - kKeys, row.key);
        ExpectName(1, row, row.cluster);
        ExpectName(2, row, row.local);
        ExpectName(4, row, row.remote);
        for (const uint32_t selector : {0u, 3u, 5u, 255u}) ExpectName(selector, row, row.other);
    }
}

TEST_F(StatusKey, ThereIsNoKeyBeyondTheLast) {
    for (const uint32_t key : {44u, 1000u, 0xffffffffu}) {
        EXPECT_EQ(ZORSetHAStatus(1, key, "v"), -1);
        ExpectLog({"ERROR zor_status(ZORGetStatusKey): Error key (" +
                       std::to_string(static_cast<int>(key)) + ")",
                   "ERROR zor_status(ZORSetHAStatusImp): Failed to get key"});
    }
}

TEST_F(StatusKey, RoleOfTheClusterHasNoKeyAndAnOddSelectorMeansTheRemoteNode) {
    char value[8] = "";
    WriteText(kStatusFile, "local_role=\"1\"\nremote_role=\"2\"\n");
    EXPECT_EQ(ZORGetHAStatus(1, 5, value, sizeof value), -1);
    ExpectLog({"ERROR zor_status(ZORGetStatusKey): Error: Get ha role on status role",
               "ERROR zor_status(ZORGetHAStatus): Failed to get key"});
    EXPECT_EQ(ZORGetHAStatus(3, 5, value, sizeof value), 1);
    EXPECT_STREQ(value, "2");
}

}  // namespace
