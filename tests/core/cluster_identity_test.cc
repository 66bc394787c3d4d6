// The serial numbers and MAC addresses of the cluster.

#include <filesystem>

#include "support/node_test.h"
#include "zor_core.h"

namespace fs = std::filesystem;

namespace {

constexpr char kDualheadSetting[] = "/usr/keva/etc/kevacore-stand-in.conf";

class ClusterIdentity : public NodeTest {
  protected:
    ~ClusterIdentity() override { fs::remove(kDualheadSetting); }
    char value_[64] = "before";
};

std::string Sn(const std::string &message) {
    return "ERROR zor_core(KEVAZORGetSerialNumber): " + message;
}
std::string Mac(const std::string &message) {
    return "ERROR zor_core(KEVAZORGetMac): " + message;
}

TEST_F(ClusterIdentity, SerialsOfTheCluster) {
    WriteText(kConfFile, "sn_ha=\"CLUSTER\"\nsn_ha_custom=\"MINE\"\n");
    EXPECT_EQ(KEVAZORGetSerialNumber(0, value_, sizeof value_), 0);
    EXPECT_STREQ(value_, "CLUSTER");
    EXPECT_EQ(KEVAZORGetSerialNumber(7, value_, sizeof value_), 0);
    EXPECT_STREQ(value_, "MINE");
    ExpectLog({});
}

TEST_F(ClusterIdentity, EmptySerialOfTheClusterIsFound) {
    WriteText(kConfFile, "sn_ha=\"\"\n");
    EXPECT_EQ(KEVAZORGetSerialNumber(0, value_, sizeof value_), 0);
    EXPECT_STREQ(value_, "");
    ExpectLog({});
}

TEST_F(ClusterIdentity, CustomSerialFallsBackSilently) {
    EXPECT_EQ(KEVAZORGetSerialNumber(1, value_, sizeof value_), 0);
    EXPECT_STREQ(value_, "CUSTOM01");
    fs::remove(kCustomSerialFile);
    EXPECT_EQ(KEVAZORGetSerialNumber(1, value_, sizeof value_), -1);
    ExpectLog({});
}

TEST_F(ClusterIdentity, SerialFallsBackWithALine) {
    EXPECT_EQ(KEVAZORGetSerialNumber(0, value_, sizeof value_), 0);
    EXPECT_STREQ(value_, "NODE0001");
    ExpectLog({Sn("Failed to get ha serial number from ha conf")});
    fs::remove(kSerialFile);
    EXPECT_EQ(KEVAZORGetSerialNumber(0, value_, sizeof value_), -1);
    ExpectLog({Sn("Failed to get ha serial number from ha conf"),
               Sn("Failed to get original serial number")});
}

TEST_F(ClusterIdentity, MacIsTakenByItsPosition) {
    WriteText(kConfFile, "mac_all_ha=\"02:00:00:aa:bb:cc,02:00:00:aa:bb:cd\"\n");
    EXPECT_EQ(KEVAZORGetMac(0, value_, sizeof value_), 0);
    EXPECT_STREQ(value_, "02:00:00:aa:bb:cc");
    EXPECT_EQ(KEVAZORGetMac(1, value_, 6), 0);
    EXPECT_STREQ(value_, "02:00");
    for (const int32_t index : {2, -1, 1000}) {
        EXPECT_EQ(KEVAZORGetMac(index, value_, sizeof value_), -1);
        ExpectLog({Mac("Failed to get mac from list")});
    }
}

TEST_F(ClusterIdentity, AbsentMacListIsReported) {
    EXPECT_EQ(KEVAZORGetMac(0, value_, sizeof value_), -1);
    ExpectLog({Mac("Failed to get ha mac address from ha conf")});
}

TEST_F(ClusterIdentity, ArgumentsAreCheckedFirst) {
    WriteText(kDualheadSetting, "support_dualhead=\"no\"\n");
    EXPECT_EQ(KEVAZORGetSerialNumber(0, nullptr, 8), -1);
    EXPECT_EQ(KEVAZORGetSerialNumber(0, value_, 0), -1);
    EXPECT_EQ(KEVAZORGetMac(0, nullptr, 8), -1);
    EXPECT_EQ(KEVAZORGetMac(0, value_, 0), -1);
    ExpectLog({Sn("Error parameter"), Sn("Error parameter"), Mac("Error parameter"),
               Mac("Error parameter")});
}

TEST_F(ClusterIdentity, ModelWithoutTwoNodesHasNone) {
    WriteText(kDualheadSetting, "support_dualhead=\"no\"\n");
    WriteText(kConfFile, "sn_ha=\"CLUSTER\"\nmac_all_ha=\"02:00:00:aa:bb:cc\"\n");
    EXPECT_EQ(KEVAZORGetSerialNumber(0, value_, sizeof value_), -1);
    EXPECT_EQ(KEVAZORGetSerialNumber(1, value_, sizeof value_), -1);
    EXPECT_EQ(KEVAZORGetMac(0, value_, sizeof value_), -1);
    ExpectLog({Sn("This model is not dual head"), Sn("This model is not dual head"),
               Mac("This model is not dual head")});
    EXPECT_EQ(KEVAZORGetOriginalSN(value_, sizeof value_), 0);
}

TEST_F(ClusterIdentity, RemoteSerialIsThatOfTheOtherSide) {
    WriteText(kConfFile, "sn0=\"NODE0001\"\nsn1=\"NODE0002\"\n");
    EXPECT_EQ(KEVAZORGetRemoteOriginalSN(value_, sizeof value_), 0);
    EXPECT_STREQ(value_, "NODE0002");
    WriteText(kConfFile, "sn0=\"NODE0001\"\n");
    EXPECT_EQ(KEVAZORGetRemoteOriginalSN(value_, sizeof value_), -1);
    ExpectLog({});
    EXPECT_EQ(KEVAZORGetRemoteOriginalSN(nullptr, 8), -1);
    ExpectLog({"ERROR zor_conf(ZORGetHAConf): Error parameter"});
}

}  // namespace
