// The interface information record.

#include <cstring>
#include <filesystem>

#include "support/node_test.h"
#include "zor_core.h"

namespace fs = std::filesystem;

namespace {

struct Input {
    std::string names = "eth0,bond1:eth2:eth3";
    std::string statics = "yes,no";
    std::string monitor = "yes,yes,no,no,yes";
    std::string local = "1000,1000,0:100:1000";
    std::string remote = "1000,1000,0,10000,10000";
    int role = 1;
};

std::string Info(const std::string &message, const std::string &level = "ERROR") {
    return level + " zor_core(ZORGetConfIfInfo): " + message;
}

class InterfaceInfo : public NodeTest {
  protected:
    int32_t Get(const Input &input) {
        WriteText(kStatusFile, "local_role=\"" + std::to_string(input.role) +
                                   "\"\nlocal_host_ifname=\"" + input.names +
                                   "\"\nlocal_if_has_static_ip=\"" + input.statics +
                                   "\"\nlocal_host_if_speed=\"" + input.local +
                                   "\"\nremote_host_if_speed=\"" + input.remote + "\"\n");
        WriteText(kConfFile, "monitor_if=\"" + input.monitor + "\"\n");
        memset(&info_, 0x55, sizeof info_);
        return ZORGetConfIfInfo(&info_);
    }

    void ExpectPort(int entry, const ZORIfPort &port) {
        EXPECT_EQ(memcmp(&info_.ports[entry], &port, sizeof port), 0)
            << "port " << entry << ": " << info_.ports[entry].index << ' '
            << info_.ports[entry].bond << ' ' << info_.ports[entry].monitored << ' '
            << info_.ports[entry].staticIp << ' ' << info_.ports[entry].present << ' '
            << info_.ports[entry].localSpeed << ' ' << info_.ports[entry].remoteSpeed;
    }

    ZORIfInfo info_;
};

constexpr ZORIfPort kEmptyPort = {-1, -1, 0, 0, 0, -1, -1};

TEST_F(InterfaceInfo, WorkedExample) {
    ASSERT_EQ(Get({}), 0);
    ExpectPort(0, {0, -1, 1, 0, 0, 1000, 1000});
    ExpectPort(1, {1, -1, 1, 1, 1, 1000, 1000});
    ExpectPort(2, kEmptyPort);
    ExpectPort(3, {3, 1, 0, 0, 1, 100, 10000});
    ExpectPort(4, {4, 1, 1, 0, 1, 1000, 10000});
    for (int entry = 5; entry < 9; ++entry) ExpectPort(entry, kEmptyPort);
    const ZORIfBond &bond = info_.bonds[1];
    EXPECT_EQ(bond.number, 1);
    EXPECT_EQ(bond.memberCount, 2);
    EXPECT_EQ(bond.minLocalSpeed, 100);
    EXPECT_EQ(bond.minRemoteSpeed, 10000);
    EXPECT_EQ(bond.monitored, 1);
    EXPECT_EQ(bond.staticIp, 0);
    for (const int other : {0, 2, 8}) {
        EXPECT_EQ(info_.bonds[other].number, -1);
        EXPECT_EQ(info_.bonds[other].memberCount, -1);
        EXPECT_EQ(info_.bonds[other].minLocalSpeed, -1);
        EXPECT_EQ(info_.bonds[other].minRemoteSpeed, -1);
    }
    EXPECT_EQ(info_.interfaces[0].isBond, 0);
    EXPECT_EQ(info_.interfaces[0].monitored, 1);
    EXPECT_EQ(info_.interfaces[0].index, 1);
    EXPECT_STREQ(info_.interfaces[0].name, "eth0");
    EXPECT_EQ(info_.interfaces[1].isBond, 1);
    EXPECT_EQ(info_.interfaces[1].monitored, 1);
    EXPECT_EQ(info_.interfaces[1].index, 1);
    EXPECT_STREQ(info_.interfaces[1].name, "bond1");
    EXPECT_EQ(info_.interfaces[2].index, -1);
    EXPECT_STREQ(info_.interfaces[2].name, "");
    EXPECT_EQ(info_.portCount, 5);
    EXPECT_EQ(info_.bondCount, 2);
    EXPECT_EQ(info_.interfaceCount, 2);
    ExpectLog({});
}

TEST_F(InterfaceInfo, FieldZeroOfABondsSpeedsIsNotRead) {
    ASSERT_EQ(Get({.local = "1000,1000,100:1000"}), 0);
    EXPECT_EQ(info_.ports[3].localSpeed, 1000);
    EXPECT_EQ(info_.ports[4].localSpeed, -1);
    EXPECT_EQ(info_.bonds[1].minLocalSpeed, 1000);
}

TEST_F(InterfaceInfo, UnknownSpeedDoesNotLowerAMinimum) {
    ASSERT_EQ(Get({.local = "1,1,0:100:-1"}), 0);
    EXPECT_EQ(info_.bonds[1].minLocalSpeed, 100);
    ASSERT_EQ(Get({.local = "1,1,0:-1:100"}), 0);
    EXPECT_EQ(info_.bonds[1].minLocalSpeed, 100);
}

TEST_F(InterfaceInfo, LocalSpeedsFollowPositionsAndRemoteSpeedsPorts) {
    ASSERT_EQ(Get({.names = "eth4,eth1",
                   .statics = "no,no",
                   .monitor = "no,no,no,no,no,yes",
                   .local = "1,2,3",
                   .remote = "10,11,12,13,14,15"}),
              0);
    EXPECT_EQ(info_.ports[5].localSpeed, 2);
    EXPECT_EQ(info_.ports[5].remoteSpeed, 15);
    EXPECT_EQ(info_.ports[5].monitored, 1);
    EXPECT_EQ(info_.ports[2].localSpeed, 3);
    EXPECT_EQ(info_.ports[2].remoteSpeed, 12);
    EXPECT_EQ(info_.portCount, 6);
    EXPECT_EQ(info_.interfaces[0].index, 5);
    EXPECT_EQ(info_.interfaces[1].index, 2);
}

TEST_F(InterfaceInfo, NamesOfVirtualSwitches) {
    ASSERT_EQ(Get({.names = "ovs_eth0,ovs_bond1:eth2:ovs_eth3"}), 0);
    EXPECT_STREQ(info_.interfaces[0].name, "ovs_eth0");
    EXPECT_STREQ(info_.interfaces[1].name, "ovs_bond1");
    EXPECT_EQ(info_.ports[4].bond, 1);
}

TEST_F(InterfaceInfo, LongNamesAreCut) {
    ASSERT_EQ(Get({.names = "eth0000000000000000000001", .statics = "no"}), 0);
    EXPECT_STREQ(info_.interfaces[0].name, "eth000000000000");
    EXPECT_EQ(info_.interfaces[0].index, 2);
}

TEST_F(InterfaceInfo, SpeedsMayBeAbsentOrEmpty) {
    ASSERT_EQ(Get({.local = "", .remote = ""}), 0);
    EXPECT_EQ(info_.ports[0].localSpeed, -1);
    EXPECT_EQ(info_.ports[1].localSpeed, -1);
    EXPECT_EQ(info_.bonds[1].minLocalSpeed, -1);
    EXPECT_EQ(info_.bonds[1].minRemoteSpeed, -1);
    WriteText(kStatusFile,
              "local_role=\"1\"\nlocal_host_ifname=\"eth0\"\nlocal_if_has_static_ip=\"no\"\n");
    ASSERT_EQ(ZORGetConfIfInfo(&info_), 0);
    EXPECT_EQ(info_.ports[1].localSpeed, -1);
    ExpectLog({});
}

TEST_F(InterfaceInfo, SpeedListsMayBeShort) {
    ASSERT_EQ(Get({.local = "1000,100", .remote = "1000"}), 0);
    EXPECT_EQ(info_.ports[1].localSpeed, 100);
    EXPECT_EQ(info_.ports[1].remoteSpeed, -1);
    EXPECT_EQ(info_.bonds[1].minLocalSpeed, -1);
    ExpectLog({});
}

TEST_F(InterfaceInfo, UnparsableSpeedIsZero) {
    ASSERT_EQ(Get({.names = "eth0", .statics = "no", .local = "x,y"}), 0);
    EXPECT_EQ(info_.ports[0].localSpeed, 0);
    EXPECT_EQ(info_.ports[1].localSpeed, 0);
}

TEST_F(InterfaceInfo, UnknownAndJuniorNodesReadNoMonitorList) {
    for (const int role : {0, 4}) {
        ASSERT_EQ(Get({.monitor = "", .role = role}), 0);
        for (const ZORIfPort &port : info_.ports) EXPECT_EQ(port.monitored, 0);
        EXPECT_EQ(info_.bonds[1].monitored, 0);
        EXPECT_EQ(info_.interfaces[0].monitored, 0);
        fs::remove(kConfFile);
        EXPECT_EQ(ZORGetConfIfInfo(&info_), 0);
    }
    ExpectLog({});
}

TEST_F(InterfaceInfo, PassiveNodeReadsTheMonitorList) {
    ASSERT_EQ(Get({.role = 2}), 0);
    EXPECT_EQ(info_.ports[1].monitored, 1);
    fs::remove(kConfFile);
    EXPECT_EQ(ZORGetConfIfInfo(&info_), -1);
    ExpectLog({Info("Failed to read monitor if")});
}

TEST_F(InterfaceInfo, NullRecordIsRefusedAfterTheRoleIsRead) {
    EXPECT_EQ(ZORGetConfIfInfo(nullptr), -1);
    ExpectLog({"NOTICE zor_status(ZORGetLocalRole): Failed to get role from ha status",
               Info("Bad paramter")});
}

TEST_F(InterfaceInfo, NamesAndStaticFlagsAreNeeded) {
    WriteText(kConfFile, "monitor_if=\"yes\"\n");
    WriteText(kStatusFile, "local_role=\"1\"\n");
    EXPECT_EQ(ZORGetConfIfInfo(&info_), -1);
    ExpectLog({Info("Failed to read ha.status for if name")});
    WriteText(kStatusFile, "local_role=\"1\"\nlocal_host_ifname=\"eth0\"\n");
    EXPECT_EQ(ZORGetConfIfInfo(&info_), -1);
    ExpectLog({Info("Failed to read ha.status for is static ip")});
}

TEST_F(InterfaceInfo, NineNamesFitAndTenDoNot) {
    const std::string nine = "eth0,eth1,eth2,eth3,eth4,eth5,eth6,eth7,bond8:eth0";
    const std::string all = "no,no,no,no,no,no,no,no,no";
    ASSERT_EQ(Get({.names = nine, .statics = all, .monitor = all}), 0);
    EXPECT_EQ(info_.interfaceCount, 9);
    EXPECT_EQ(info_.portCount, 9);
    EXPECT_EQ(info_.bondCount, 9);
    EXPECT_EQ(Get({.names = nine + ",eth1", .statics = all, .monitor = all}), -1);
    ExpectLog({Info("input size not enought 9 < 10")});
}

TEST_F(InterfaceInfo, NumbersOutsideTheTablesAreNone) {
    for (const char *name : {"eth", "eth8", "eth-1", "eth2147483647", "eth99999999999", "lo", ""}) {
        EXPECT_EQ(Get({.names = name, .monitor = "yes,yes,yes,yes,yes,yes,yes,yes,yes,yes,yes"}),
                  -1);
        ExpectLog({Info("Failed to sscanf(" + std::string(name) + ")", "NOTICE")});
    }
    for (const char *name : {"bond", "bond9", "bond-1", "bond2147483647"}) {
        EXPECT_EQ(Get({.names = std::string(name) + ":eth0"}), -1);
        ExpectLog({Info("Failed to sscanf(" + std::string(name) + ")")});
    }
    for (const char *member : {"eth8", "eth", "bond1", ""}) {
        EXPECT_EQ(Get({.names = "bond1:eth0:" + std::string(member)}), -1);
        ExpectLog({Info("Failed to sscanf(" + std::string(member) + ") idx:2")});
    }
}

TEST_F(InterfaceInfo, PortBeyondTheMonitorListIsAFailureAndAMemberIsNot) {
    EXPECT_EQ(Get({.names = "eth3", .monitor = "yes,yes,yes,yes"}), -1);
    ExpectLog({Info("Get eth:3 more than monitor list (yes,yes,yes,yes)")});
    ASSERT_EQ(Get({.names = "bond0:eth7", .monitor = "yes"}), 0);
    EXPECT_EQ(info_.ports[8].monitored, 0);
    ExpectLog({});
}

TEST_F(InterfaceInfo, ShortStaticListIsReportedAndPassedOver) {
    ASSERT_EQ(Get({.names = "eth0,eth1,bond1:eth2", .statics = "yes", .monitor = "n,n,n,n"}), 0);
    EXPECT_EQ(info_.ports[2].staticIp, 0);
    EXPECT_EQ(info_.bonds[1].staticIp, 0);
    ExpectLog({Info("Static ip array not enought for read conf if info, 1 1"),
               Info("Static ip array not enought for read conf if info")});
}

TEST_F(InterfaceInfo, BondHasTheStaticFlagOfItsPlace) {
    ASSERT_EQ(Get({.statics = "no,yes"}), 0);
    EXPECT_EQ(info_.bonds[1].staticIp, 1);
    EXPECT_EQ(info_.ports[3].staticIp, 0);
}

TEST_F(InterfaceInfo, UnreadableSpeedsAreAFailure) {
    // The other entries are readable and the speeds are not: the reads before
    // leave nothing but the folder that now stands in the file's place.
    const FolderInTheWay folder(kStatusFile);
    EXPECT_EQ(ZORGetConfIfInfo(&info_), -1);
    log_.Take();
}

TEST_F(InterfaceInfo, TextsOf305And306Bytes) {
    // 305 characters are read whole, the 306th is cut off.
    for (const size_t length : {305u, 306u}) {
        std::string statics = "yes,";
        statics += std::string(length - statics.size() - 3, 'x') + "yes";
        ASSERT_EQ(statics.size(), length);
        ASSERT_EQ(Get({.names = "eth0", .statics = statics}), 0);
        EXPECT_EQ(info_.ports[1].staticIp, 1);
    }
    const std::string name(302, '0');
    ASSERT_EQ(Get({.names = "eth" + name}), 0);
    EXPECT_EQ(info_.interfaces[0].index, 1);
}

TEST_F(InterfaceInfo, HeartbeatLinkIsNormalWithALocalSpeed) {
    Get({});
    EXPECT_EQ(ZORIsHeartbeatLinkNormal(), 1);
    Get({.local = "-1,1000,0:1:1"});
    EXPECT_EQ(ZORIsHeartbeatLinkNormal(), 0);
    Get({.local = ""});
    EXPECT_EQ(ZORIsHeartbeatLinkNormal(), 0);
    ExpectLog({});
    Get({.names = "lo"});
    log_.Take();
    EXPECT_EQ(ZORIsHeartbeatLinkNormal(), 0);
    ExpectLog({Info("Failed to sscanf(lo)", "NOTICE"),
               "NOTICE zor_core(ZORIsHeartbeatLinkNormal): Failed to read netInfo"});
}

}  // namespace
