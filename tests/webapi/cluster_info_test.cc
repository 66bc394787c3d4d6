// The snapshot of the cluster.

#include <cstdlib>
#include <memory>
#include <vector>

#include "webapi/webapi_fixture.h"

namespace {

using base_library::Call;

constexpr char kBuilder[] = "ZORUIGetZORInfo";

class ClusterInfo : public WebapiTest {
  protected:
    const ZORUIInfo &Build() {
        EXPECT_EQ(ZORUIGetZORInfo(), 0);
        *info_ = ReadRecord<ZORUIInfo>(kClusterCache);
        return *info_;
    }

    const ZORUIInfo &BuildWith(uint32_t health) {
        Set("healthy_status", std::to_string(health));
        return Build();
    }

    // The descriptions, each with its detail behind a colon when it has one.
    Lines Descriptions() const {
        Lines lines;
        for (int32_t index = 0; index < info_->descCount; ++index) {
            const ZORUIDesc &desc = info_->desc[index];
            lines.push_back(std::string(desc.key) + (desc.detail[0] ? ":" : "") + desc.detail);
        }
        return lines;
    }

    void StartSwitching(double seconds_ago) {
        const double start = static_cast<double>(time(nullptr)) - seconds_ago;
        Set("is_switchover_remote_reboot", std::to_string(start));
    }

    std::unique_ptr<ZORUIInfo> info_ = std::make_unique<ZORUIInfo>();
};

constexpr uint32_t Bit(int number) {
    return uint32_t{1} << number;
}

TEST_F(ClusterInfo, NormalClusterSaysSo) {
    const ZORUIInfo &info = Build();
    EXPECT_EQ(info.status, 1);
    EXPECT_EQ(info.linkStatus, 2);
    EXPECT_EQ(info.heartbeatStatus, 2);
    EXPECT_EQ(info.readyA, 1);
    EXPECT_EQ(info.readyB, 1);
    EXPECT_EQ(info.remoteIsThirdHost, 0);
    EXPECT_EQ(info.loginIPIsStatic, 0);
    EXPECT_EQ(info.remoteBootDoneAndCommNormal, 1);
    EXPECT_EQ(Descriptions(), Lines{"desc_ha_normal"});
    ExpectLog({});
}

TEST_F(ClusterInfo, LinksInEveryCombination) {
    for (int combination = 0; combination < 16; ++combination) {
        const auto yes_no = [&](int bit) { return combination >> bit & 1 ? "yes" : "no"; };
        const bool net = combination & 1, expander = combination & 2, ready = combination & 4,
                   heartbeat = combination & 8;
        Set("is_remote_alive_by_net", yes_no(0));
        Set("is_remote_alive_by_expander_hb", yes_no(1));
        Set("is_remote_handler_ready", yes_no(2));
        Set("local_host_if_speed", heartbeat ? "1000,1000" : "-1,1000");
        int32_t expected_heartbeat = 6;
        int32_t expected_link = 6;
        if (net || expander) {
            expected_heartbeat = heartbeat ? 2 : 4;
            if (net && ready)
                expected_link = heartbeat ? 2 : 3;
            else
                expected_link = heartbeat ? 3 : 4;
        }
        const ZORUIInfo &info = Build();
        EXPECT_EQ(info.heartbeatStatus, expected_heartbeat) << combination;
        EXPECT_EQ(info.linkStatus, expected_link) << combination;
        EXPECT_EQ(info.remoteBootDoneAndCommNormal, net ? 1 : 0);
    }
}

struct BitRow {
    int bit;
    const char *entry;  // empty: none
};

// Every bit alone, in a cluster that is otherwise in order.
TEST_F(ClusterInfo, EveryBitAlone) {
    Set("failed_local_interfaces", "eth0");
    Set("failed_remote_interfaces", "eth1");
    Set("failed_local_services", "samba");
    Set("failed_local_hardware", "fan1");
    Set("failed_remote_hardware", "fan2");
    Set("failed_enc_hardware", "power");
    Set("monitored_if_no_static_ip", "eth3");
    WriteText("/var/lib/zor/zor.constraint", "failed_services_NODE0002=\"nfsd\"\n");
    WriteText(kHardwareFile,
              "[LOCAL_HOST]\n\tMemory=1\n\tEncListStatus=1\n"
              "[REMOTE_HOST]\n\tMemory=1\n\tEncListStatus=2\n");
    constexpr uint32_t kErrors = 0x3000638;
    constexpr uint32_t kWarnings = 0x44bc79c7;
    for (const BitRow &row : {BitRow{0, "desc_passive_offline"},
                              BitRow{1, "desc_failed_net_active:eth0"},
                              BitRow{2, "desc_failed_net_passive:eth1"},
                              BitRow{3, "desc_failed_service_active:samba"},
                              BitRow{4, "desc_failed_service_passive:nfsd"},
                              BitRow{5, "desc_invalid_enc_list_active"},
                              BitRow{6, "desc_invalid_enc_list_passive"},
                              BitRow{7, "desc_heartbeat_link_lost"},
                              BitRow{8, "desc_space_degrade"},
                              BitRow{9, "desc_space_crash"},
                              BitRow{10, "desc_space_crash"},
                              BitRow{11, "desc_host_hw_error_active:fan1"},
                              BitRow{12, "desc_host_hw_error_passive:fan2"},
                              BitRow{13, "desc_memory_not_match"},
                              BitRow{14, "desc_no_monitored_if"},
                              BitRow{15, "desc_ha_normal"},
                              BitRow{16, ""},
                              BitRow{17, "desc_ha_normal"},
                              BitRow{18, "desc_recovering_passive"},
                              BitRow{19, "desc_upgrading_passive"},
                              BitRow{20, "desc_enclosure_hw_error:power"},
                              BitRow{21, "desc_monitored_ifs_no_static_ip:eth3"},
                              BitRow{22, "desc_space_busy"},
                              BitRow{23, "desc_fcache_degrade"},
                              BitRow{24, "desc_fcache_crashed"},
                              BitRow{25, "desc_fcache_crashed"},
                              BitRow{26, "desc_failover_failed"},
                              BitRow{27, "desc_ha_normal"},
                              BitRow{28, "desc_halt_blocking_active"},
                              BitRow{29, "desc_halt_blocking_passive"},
                              BitRow{30, ""},
                              BitRow{31, "desc_ha_normal"}}) {
        const uint32_t health = Bit(row.bit);
        const ZORUIInfo &info = BuildWith(health);
        const bool is_normal = (health & (kErrors | kWarnings | Bit(22) | Bit(16))) == 0;
        EXPECT_EQ(info.status, health & kErrors     ? 4
                               : health & kWarnings ? 3
                               : row.bit == 22      ? 13
                               : is_normal          ? 1
                                                    : 9)
            << row.bit;
        EXPECT_EQ(info.readyA, (health & 0x7a6de2d1) == 0 ? 1 : 0) << row.bit;
        EXPECT_EQ(info.readyB, (health & 0x7e6de2d1) == 0 ? 1 : 0) << row.bit;
        Lines expected;
        if (is_normal) expected.push_back("desc_ha_normal");
        const std::string entry = row.entry;
        if (!entry.empty() && entry != "desc_ha_normal") expected.push_back(entry);
        EXPECT_EQ(Descriptions(), expected) << row.bit;
    }
    log_.Take();
}

// Each entry with the bits that raise it and the one that hides it, in their order.
struct EntryRow {
    uint32_t raised_by;
    uint32_t hidden_by;
    const char *entry;
};

const EntryRow kEntryRows[] = {
    {Bit(26), 0, "desc_failover_failed"},
    {Bit(28), 0, "desc_halt_blocking_active"},
    {Bit(29), 0, "desc_halt_blocking_passive"},
    {Bit(0), 0, "desc_passive_offline"},
    {Bit(3), 0, "desc_failed_service_active"},
    {Bit(4), 0, "desc_failed_service_passive"},
    {Bit(1), 0, "desc_failed_net_active"},
    {Bit(2), 0, "desc_failed_net_passive"},
    {Bit(11), 0, "desc_host_hw_error_active"},
    {Bit(12), 0, "desc_host_hw_error_passive"},
    {Bit(5), 0, "desc_invalid_enc_list_active"},
    {Bit(6), 0, "desc_invalid_enc_list_passive"},
    {Bit(20), 0, "desc_enclosure_hw_error"},
    {Bit(7), Bit(0), "desc_heartbeat_link_lost"},
    {Bit(22), 0, "desc_space_busy"},
    {Bit(24) | Bit(25), 0, "desc_fcache_crashed"},
    {Bit(23), 0, "desc_fcache_degrade"},
    {Bit(9) | Bit(10), 0, "desc_space_crash"},
    {Bit(8), 0, "desc_space_degrade"},
    {Bit(13), 0, "desc_memory_not_match"},
    {Bit(14), 0, "desc_no_monitored_if"},
    {Bit(21), 0, "desc_monitored_ifs_no_static_ip"},
    {Bit(18), 0, "desc_recovering_passive"},
    {Bit(19), 0, "desc_upgrading_passive"},
};

TEST_F(ClusterInfo, EveryPairOfBits) {
    WriteText(kHardwareFile,
              "[LOCAL_HOST]\n\tMemory=1\n\tEncListStatus=1\n"
              "[REMOTE_HOST]\n\tMemory=1\n\tEncListStatus=2\n");
    constexpr uint32_t kErrors = 0x3000638;
    constexpr uint32_t kWarnings = 0x44bc79c7;
    for (int first = 0; first < 32; ++first) {
        for (int second = first + 1; second < 32; ++second) {
            const uint32_t health = Bit(first) | Bit(second);
            const ZORUIInfo &info = BuildWith(health);
            int32_t status = 9;
            Lines expected;
            if (health & kErrors) {
                status = 4;
            } else if (health & kWarnings) {
                status = 3;
            } else if (health & Bit(22)) {
                status = 13;
            } else if (!(health & Bit(16))) {
                status = 1;
                expected.push_back("desc_ha_normal");
            }
            for (const EntryRow &row : kEntryRows) {
                if ((health & row.raised_by) && !(health & row.hidden_by))
                    expected.push_back(row.entry);
            }
            EXPECT_EQ(info.status, status) << first << " and " << second;
            EXPECT_EQ(Descriptions(), expected) << first << " and " << second;
            EXPECT_EQ(info.readyA, (health & 0x7a6de2d1) == 0 ? 1 : 0) << first << ", " << second;
            EXPECT_EQ(info.readyB, (health & 0x7e6de2d1) == 0 ? 1 : 0) << first << ", " << second;
        }
    }
    log_.Take();
}

TEST_F(ClusterInfo, DescriptionsStandInTheirOrder) {
    Set("remote_boot_error", "disk");
    StartSwitching(301);
    WriteText(kHardwareFile, "");
    BuildWith(0xffffffff & ~Bit(16));
    EXPECT_EQ(Descriptions(), (Lines{"desc_remote_boot_error:disk",
                                     "desc_switchover_failed",
                                     "desc_failover_failed",
                                     "desc_halt_blocking_active",
                                     "desc_halt_blocking_passive",
                                     "desc_passive_offline",
                                     "desc_failed_service_active",
                                     "desc_failed_service_passive",
                                     "desc_failed_net_active",
                                     "desc_failed_net_passive",
                                     "desc_host_hw_error_active",
                                     "desc_host_hw_error_passive",
                                     "desc_invalid_enc_list_active",
                                     "desc_invalid_enc_list_passive",
                                     "desc_enclosure_hw_error",
                                     "desc_space_busy",
                                     "desc_fcache_crashed",
                                     "desc_fcache_degrade",
                                     "desc_space_crash",
                                     "desc_space_degrade",
                                     "desc_memory_not_match",
                                     "desc_no_monitored_if",
                                     "desc_monitored_ifs_no_static_ip",
                                     "desc_recovering_passive",
                                     "desc_upgrading_passive"}));
    log_.Take();
}

TEST_F(ClusterInfo, PassiveNodeIsOfflineOrNone) {
    BuildWith(Bit(0) | Bit(7));
    EXPECT_EQ(Descriptions(), Lines{"desc_passive_offline"}) << "without the lost link";
    conf_.erase("sn1");
    BuildWith(Bit(0) | Bit(7));
    EXPECT_EQ(Descriptions(), Lines{"desc_no_passive"});
    conf_["sn1"] = "";
    BuildWith(Bit(0));
    EXPECT_EQ(Descriptions(), Lines{"desc_no_passive"});
    ExpectLog({});
    conf_ = {{"sn0", "A"}, {"sn1", "B"}};
    BuildWith(Bit(0));
    EXPECT_EQ(Descriptions(), Lines{"desc_no_passive"});
    const Lines lines = log_.Take();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), Error(kBuilder, "Failed to get remtoe conf in ha.conf"));
}

TEST_F(ClusterInfo, SwitchoverExcusesAMissingPassive) {
    StartSwitching(10);
    EXPECT_EQ(BuildWith(Bit(0)).status, 9);
    EXPECT_EQ(Descriptions(), Lines{});
    EXPECT_EQ(info_->readyA, 1) << "the bit is gone";
    EXPECT_EQ(BuildWith(0).status, 9) << "nor is it normal";
    StartSwitching(299);
    EXPECT_EQ(BuildWith(0).status, 9);
    EXPECT_EQ(Descriptions(), Lines{});
    StartSwitching(301);
    EXPECT_EQ(BuildWith(0).status, 1);
    EXPECT_EQ(Descriptions(), (Lines{"desc_ha_normal", "desc_switchover_failed"}));
    EXPECT_EQ(BuildWith(Bit(0)).status, 3);
    for (const char *none : {"0", "-5", "", "x"}) {
        Set("is_switchover_remote_reboot", none);
        EXPECT_EQ(BuildWith(0).status, 1) << none;
    }
    ExpectLog({});
}

TEST_F(ClusterInfo, LocalBootExcusesAMissingPassive) {
    for (const char *stage : {"1", "2", "4"}) {
        Set("local_boot_stage", stage);
        EXPECT_EQ(BuildWith(Bit(0)).status, 1) << stage;
        EXPECT_EQ(Descriptions(), Lines{"desc_ha_normal"});
    }
    Set("local_boot_stage", "0");
    EXPECT_EQ(BuildWith(Bit(0)).status, 3) << "an unknown stage excuses nothing";
    Unset("local_boot_stage");
    EXPECT_EQ(BuildWith(Bit(0)).status, 3);
}

TEST_F(ClusterInfo, MemoryNeedsAReachableRemoteNode) {
    Set("is_remote_alive_by_net", "no");
    Set("is_remote_alive_by_expander_hb", "no");
    EXPECT_EQ(BuildWith(Bit(13)).status, 3);
    EXPECT_EQ(Descriptions(), Lines{});
}

TEST_F(ClusterInfo, PassiveChainNeedsAStorageThatIsNotGood) {
    BuildWith(Bit(6));
    EXPECT_EQ(Descriptions(), Lines{});
    ExpectLog({});
    WriteText(kHardwareFile, "");
    BuildWith(Bit(6));
    EXPECT_EQ(Descriptions(), Lines{"desc_invalid_enc_list_passive"});
    ExpectLog({Notice("getStorageStatus", "Failed to load link status, role:2")});
}

TEST_F(ClusterInfo, BootErrorIsShownEvenWhenEmpty) {
    Set("remote_boot_error", "");
    Build();
    EXPECT_EQ(Descriptions(), (Lines{"desc_ha_normal", "desc_remote_boot_error"}));
    Set("remote_boot_error", std::string(200, 'e'));
    Build();
    EXPECT_EQ(Descriptions()[1], "desc_remote_boot_error:" + std::string(143, 'e'));
}

TEST_F(ClusterInfo, ThirdHostNeedsThreeThings) {
    Set("is_remote_the_third_host", "yes");
    EXPECT_EQ(Build().remoteIsThirdHost, 1);
    for (const char *value : {"no", "", "Yes", "yesyesyes"}) {
        Set("is_remote_the_third_host", value);
        EXPECT_EQ(Build().remoteIsThirdHost, 0) << value;
    }
    Set("is_remote_the_third_host", "yes");
    WriteText(kHardwareFile, "[REMOTE_HOST]\n\tMemory=1\n\tEncListStatus=2\n");
    EXPECT_EQ(Build().remoteIsThirdHost, 0);
    WriteText(kHardwareFile, "[REMOTE_HOST]\n\tMemory=1\n\tEncListStatus=1\n");
    Set("is_remote_alive_by_net", "no");
    EXPECT_EQ(Build().remoteIsThirdHost, 1);
    Set("is_remote_alive_by_expander_hb", "no");
    EXPECT_EQ(Build().remoteIsThirdHost, 0);
}

TEST_F(ClusterInfo, WithoutAHealthWordTheStateIsNotDetermined) {
    Unset("healthy_status");
    const ZORUIInfo &info = Build();
    EXPECT_EQ(info.status, 9);
    EXPECT_EQ(info.descCount, 0);
    EXPECT_EQ(info.linkStatus, 2);
    EXPECT_EQ(info.readyA, 0);
    EXPECT_EQ(info.remoteBootDoneAndCommNormal, 0);
    ExpectLog({Error(kBuilder, "Failed to get healthy status")});
}

TEST_F(ClusterInfo, DetailsThatCannotBeReadAreReported) {
    conf_["sn1"] = "NODE0002";
    Write();
    const FolderInTheWay folder("/var/lib/zor/zor.constraint");
    BuildWith(Bit(4));
    EXPECT_EQ(Descriptions(), Lines{"desc_failed_service_passive"});
    EXPECT_EQ(log_.Take().back(),
              Error(kBuilder, "Failed to read ha.constraint for failed services"));
}

// --- The getter

class ClusterInfoCached : public ClusterInfo {
  protected:
    ClusterInfoCached() {
        WriteText(kFlags[0], "");
        unsetenv("SERVER_ADDR");
    }
    ~ClusterInfoCached() override { unsetenv("SERVER_ADDR"); }
};

TEST_F(ClusterInfoCached, DefaultsWhenNothingIsFresh) {
    memset(info_.get(), 0x55, sizeof *info_);
    setenv("SERVER_ADDR", "10.0.0.9", 1);
    EXPECT_EQ(KEVAZORGetZORInfoCached(info_.get(), 0), 0);
    EXPECT_EQ(info_->status, 9);
    EXPECT_EQ(info_->linkStatus, 2);
    EXPECT_EQ(info_->heartbeatStatus, 2);
    EXPECT_EQ(info_->descCount, 0);
    EXPECT_EQ(info_->readyA, 0);
    EXPECT_EQ(info_->readyB, 0);
    EXPECT_EQ(info_->loginIPIsStatic, 0);
    EXPECT_EQ(info_->remoteIsThirdHost, 0x55555555) << "left as it was";
    ExpectLog({});
}

TEST_F(ClusterInfoCached, ServesWhatWasBuilt) {
    setenv("SERVER_ADDR", "10.0.0.1", 1);
    ASSERT_EQ(ZORUIGetZORInfo(), 0);
    EXPECT_EQ(KEVAZORGetZORInfoCached(info_.get(), 0), 1);
    EXPECT_EQ(info_->status, 1);
    EXPECT_EQ(Descriptions(), Lines{"desc_ha_normal"});
    EXPECT_EQ(info_->loginIPIsStatic, 1);
    ExpectLog({});
}

TEST_F(ClusterInfoCached, LoginAddressIsLookedUp) {
    Set("local_host_IP", "10.0.0.1,10.0.0.2,10.0.0.3");
    Set("local_if_has_static_ip", "yes,no,yes");
    struct Row {
        const char *address;
        int32_t is_static;
    };
    for (const Row &row : {Row{"10.0.0.1", 1}, Row{"10.0.0.2", 0}, Row{"10.0.0.3", 1},
                           Row{"10.0.0.", 0}, Row{"", 0}}) {
        setenv("SERVER_ADDR", row.address, 1);
        KEVAZORGetZORInfoCached(info_.get(), 0);
        EXPECT_EQ(info_->loginIPIsStatic, row.is_static) << row.address;
    }
    log_.Take();
    unsetenv("SERVER_ADDR");
    ASSERT_EQ(ZORUIGetZORInfo(), 0);
    log_.Take();
    EXPECT_EQ(KEVAZORGetZORInfoCached(info_.get(), 0), 1);
    EXPECT_EQ(info_->loginIPIsStatic, 0) << "as in the file";
    ExpectLog({Error("ZORLoginIPIsStaticIP", "Failed to get env 'SERVER_ADDR'"),
               Notice("KEVAZORGetZORInfoCached", "Failed to do ZORLoginIPIsStaticIP")});
}

TEST_F(ClusterInfoCached, StaticAddressesThatCannotBeHad) {
    setenv("SERVER_ADDR", "10.0.0.1", 1);
    ASSERT_EQ(ZORUIGetZORInfo(), 0);
    log_.Take();
    const auto expect = [this](const std::string &line) {
        KEVAZORGetZORInfoCached(info_.get(), 0);
        const Lines lines = log_.Take();
        ASSERT_GE(lines.size(), 3u);
        EXPECT_EQ(lines[lines.size() - 3], line);
        EXPECT_EQ(lines[lines.size() - 2],
                  Notice("ZORLoginIPIsStaticIP", "Failed to get static ip list"));
        EXPECT_EQ(lines.back(),
                  Notice("KEVAZORGetZORInfoCached", "Failed to do ZORLoginIPIsStaticIP"));
    };
    constexpr char kList[] = "ZORGetStaticIPList";
    Set("local_if_has_static_ip", "yes,no,yes");
    Set("local_host_IP", "10.0.0.1,10.0.0.2");
    expect(Notice(kList, "length of IsStaticIPList is not eq to LocalIPList"));
    Unset("local_host_IP");
    expect(Error(kList, "Failed to read local ip in ha.status"));
    Unset("local_if_has_static_ip");
    expect(Error(kList, "Failed to read local is static ip in ha.status"));
}

}  // namespace
