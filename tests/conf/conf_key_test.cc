// The names of the settings in ha.conf.

#include <filesystem>

#include "support/node_test.h"
#include "zor_conf.h"

namespace fs = std::filesystem;

namespace {

constexpr char kLeftIsLocal[] = "sn0=\"NODE0001\"\nsn1=\"NODE0002\"\n";
constexpr char kRightIsLocal[] = "sn0=\"NODE0002\"\nsn1=\"NODE0001\"\n";

std::string Name(uint32_t selector, uint32_t key) {
    const char *name = ZORGetConfKey(selector, key);
    return name ? name : "none";
}

std::string Key(const std::string &message) {
    return "ERROR zor_conf(ZORGetConfKey): " + message;
}
std::string Side(const std::string &message) {
    return "ERROR zor_conf(isRoleLeftNode): " + message;
}

using ConfKey = NodeTest;

TEST_F(ConfKey, ClusterNamesNeedNoFile) {
    const char *const names[] = {"sn_ha",  "monitor_if",      "mac_all_ha",
                                 "if_all", "monitor_service", "sn_ha_custom"};
    for (uint32_t key = 0; key < 6; ++key) EXPECT_EQ(Name(1, key), names[key]);
    ExpectLog({});
}

TEST_F(ConfKey, NodeNamesFollowTheSideOfTheNode) {
    struct Row {
        uint32_t key;
        const char *left;
        const char *right;
    };
    for (const Row &row : {Row{0, "sn0", "sn1"}, Row{2, "mac_all0", "mac_all1"},
                           Row{5, "sn0_custom", "sn1_custom"}}) {
        WriteText(kConfFile, kLeftIsLocal);
        EXPECT_EQ(Name(2, row.key), row.left);
        for (const uint32_t other : {0u, 3u, 4u, 77u}) EXPECT_EQ(Name(other, row.key), row.right);
        WriteText(kConfFile, kRightIsLocal);
        EXPECT_EQ(Name(2, row.key), row.right);
        for (const uint32_t other : {0u, 3u, 4u, 77u}) EXPECT_EQ(Name(other, row.key), row.left);
    }
    ExpectLog({});
}

TEST_F(ConfKey, RightIsComparedFirst) {
    WriteText(kConfFile, "sn0=\"NODE0001\"\nsn1=\"NODE0001\"\n");
    EXPECT_EQ(Name(2, 0), "sn1");
    EXPECT_EQ(Name(4, 0), "sn0");
    ExpectLog({});
}

TEST_F(ConfKey, RightSerialMayBeAbsent) {
    WriteText(kConfFile, "sn0=\"NODE0001\"\n");
    EXPECT_EQ(Name(2, 0), "sn0");
    EXPECT_EQ(Name(4, 0), "sn1");
    ExpectLog({});
}

TEST_F(ConfKey, ForeignNodeHasNoName) {
    WriteText(kConfFile, "sn0=\"A\"\nsn1=\"B\"\n");
    for (const uint32_t key : {0u, 2u, 5u}) {
        EXPECT_EQ(Name(2, key), "none");
        ExpectLog({Key("Error")});
    }
}

TEST_F(ConfKey, SettingsOfTheClusterHaveNoNodeName) {
    WriteText(kConfFile, kLeftIsLocal);
    EXPECT_EQ(Name(2, 1), "none");
    EXPECT_EQ(Name(4, 3), "none");
    EXPECT_EQ(Name(2, 4), "none");
    ExpectLog({Key("Read monitor if with not ha role"),
               Key("Illrgal usd on ha.conf ZOR_CONF_IF_ALL with role:4"),
               Key("Read monitor if with not ha role")});
    // The same without a side, after the line that says why there is none.
    fs::remove(kConfFile);
    EXPECT_EQ(Name(2, 1), "none");
    ExpectLog({Side("Failed to get left node SN"), Key("Read monitor if with not ha role")});
}

TEST_F(ConfKey, ThereIsNoKeyBeyondTheLast) {
    WriteText(kConfFile, kLeftIsLocal);
    for (const uint32_t selector : {1u, 2u, 4u}) {
        EXPECT_EQ(Name(selector, 6), "none");
        ExpectLog({Key("Error key (6)")});
    }
    EXPECT_EQ(Name(1, 0xffffffff), "none");
    ExpectLog({Key("Error key (-1)")});
}

TEST_F(ConfKey, LocalSerialIsNeeded) {
    WriteText(kConfFile, kLeftIsLocal);
    fs::remove(kSerialFile);
    EXPECT_EQ(Name(2, 0), "none");
    ExpectLog({Side("Failed to get local sn"), Key("Error")});
}

TEST_F(ConfKey, LeftSerialIsNeeded) {
    for (const char *text : {"", "sn1=\"NODE0001\"\n"}) {
        WriteText(kConfFile, text);
        EXPECT_EQ(Name(2, 0), "none");
        ExpectLog({Side("Failed to get left node SN"), Key("Error")});
    }
    const FolderInTheWay folder(kConfFile);
    EXPECT_EQ(Name(2, 0), "none");
    ExpectLog({Side("Failed to get left node SN"), Key("Error")});
}

}  // namespace
