// Reading and writing single settings.

#include <filesystem>

#include "support/node_test.h"
#include "zor_conf.h"
#include "zor_filelock.h"

namespace fs = std::filesystem;

namespace {

constexpr char kFlag[] = "/tmp/zor/.zor.conf.changed";
constexpr char kActive[] = "local_role=\"1\"\n";

std::string Get(const std::string &message) {
    return "ERROR zor_conf(ZORGetHAConf): " + message;
}
std::string Set(const std::string &message) {
    return "ERROR zor_conf(ZORSetHAConf): " + message;
}

class ConfStore : public NodeTest {
  protected:
    ConfStore() { WriteText(kStatusFile, kActive); }
    ~ConfStore() override { ZORFileUnlock(&holder_); }
    void HoldLock() { ASSERT_EQ(ZORFileLock(0, 0, &holder_), 0); }

    FILE *holder_ = nullptr;
    char value_[306] = "before";
};

TEST_F(ConfStore, GetFindsOrDoesNot) {
    WriteText(kConfFile, "monitor_if=\"yes,no\"\nif_all=\"\"\n");
    EXPECT_EQ(ZORGetHAConf(1, 1, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "yes,no");
    EXPECT_EQ(ZORGetHAConf(1, 3, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "");
    EXPECT_EQ(ZORGetHAConf(1, 4, value_, sizeof value_), 0);
    fs::remove(kConfFile);
    EXPECT_EQ(ZORGetHAConf(1, 1, value_, sizeof value_), 0);
    ExpectLog({});
}

TEST_F(ConfStore, GetOfANodesSettingUsesItsSide) {
    WriteText(kConfFile,
              "sn0=\"NODE0001\"\nsn1=\"NODE0002\"\nmac_all0=\"left\"\nmac_all1=\"right\"\n");
    EXPECT_EQ(ZORGetHAConf(2, 2, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "left");
    EXPECT_EQ(ZORGetHAConf(4, 2, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "right");
}

TEST_F(ConfStore, GetWithoutABufferIsRefused) {
    EXPECT_EQ(ZORGetHAConf(1, 1, nullptr, 8), -1);
    EXPECT_EQ(ZORGetHAConf(1, 0, value_, 0), -1);
    ExpectLog({Get("Error parameter"), Get("Error parameter")});
}

TEST_F(ConfStore, GetOfNoKeyIsRefused) {
    WriteText(kConfFile, "sn0=\"A\"\nsn1=\"B\"\n");
    EXPECT_EQ(ZORGetHAConf(4, 0, value_, sizeof value_), -1);
    ExpectLog({"ERROR zor_conf(ZORGetConfKey): Error", Get("Failed to get key")});
}

TEST_F(ConfStore, UncachedReadsTakeTheLock) {
    WriteText(kConfFile, "sn0=\"NODE0001\"\nmonitor_if=\"yes\"\n");
    HoldLock();
    for (const auto &[selector, key] :
         {std::pair{1u, 1u}, std::pair{1u, 3u}, std::pair{1u, 4u}, std::pair{2u, 0u}}) {
        virtual_time::Start();
        EXPECT_EQ(ZORGetHAConf(selector, key, value_, sizeof value_), -1);
        EXPECT_EQ(virtual_time::Sleeps(), 10);
        ExpectLog({Get("failed to get filelock for get ha.conf")});
    }
}

TEST_F(ConfStore, FailedReadIsSilent) {
    const FolderInTheWay folder(kConfFile);
    EXPECT_EQ(ZORGetHAConf(1, 1, value_, sizeof value_), -1);
    ExpectLog({});
}

TEST_F(ConfStore, SetWritesAndFlags) {
    EXPECT_EQ(ZORSetHAConf(1, 1, "yes,no"), 0);
    EXPECT_EQ(ReadText(kConfFile), "monitor_if=\"yes,no\"\n");
    EXPECT_TRUE(ZORIsConfChanged());
    EXPECT_EQ(ZORSetHAConf(1, 1, ""), 0);
    EXPECT_EQ(ReadText(kConfFile), "monitor_if=\"\"\n");
    ExpectLog({});
}

TEST_F(ConfStore, SetIsForTheActiveNodeAlone) {
    for (const char *role : {"0", "2", "4", ""}) {
        WriteText(kStatusFile, std::string("local_role=\"") + role + "\"\n");
        EXPECT_EQ(ZORSetHAConf(1, 1, "x"), -1);
        ExpectLog({Set("Call set ha.conf on passive")});
    }
    fs::remove(kStatusFile);
    EXPECT_EQ(ZORSetHAConf(1, 1, "x"), -1);
    ExpectLog({"NOTICE zor_status(ZORGetLocalRole): Failed to get role from ha status",
               Set("Call set ha.conf on passive")});
    EXPECT_FALSE(Exists(kFlag));
    EXPECT_FALSE(Exists(kConfFile));
}

TEST_F(ConfStore, SetLooksAtTheKeyBeforeTheRole) {
    fs::remove(kStatusFile);
    EXPECT_EQ(ZORSetHAConf(1, 6, "x"), -1);
    ExpectLog({"ERROR zor_conf(ZORGetConfKey): Error key (6)", Set("Failed to get key")});
}

TEST_F(ConfStore, SetWithoutTheLockFailsAndDoesNotFlag) {
    HoldLock();
    EXPECT_EQ(ZORSetHAConf(1, 1, "x"), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    EXPECT_FALSE(Exists(kFlag));
    ExpectLog({Set("failed to get filelock for get ha.conf")});
}

TEST_F(ConfStore, FailedWriteStillFlags) {
    const FolderInTheWay folder(kConfFile);
    EXPECT_EQ(ZORSetHAConf(1, 1, "x"), -1);
    EXPECT_TRUE(Exists(kFlag));
    ExpectLog(
        {"ERROR zor_conf(ZORSetHAConfImp): Failed to set value of key "
         "(path:/usr/keva/etc/kevazor/ha.conf, key:monitor_if, value:x)"});
}

TEST_F(ConfStore, NullValueIsRefusedAndStillFlags) {
    EXPECT_EQ(ZORSetHAConf(1, 1, nullptr), -1);
    EXPECT_TRUE(Exists(kFlag));
    ExpectLog({"ERROR zor_conf(ZORSetHAConfImp): Error parameter"});
}

TEST_F(ConfStore, FlagThatCannotBeSetIsNoFailure) {
    const UntouchableFile flag(kFlag);
    EXPECT_EQ(ZORSetHAConf(1, 1, "x"), 0);
    ExpectLog({Set("Failed to set ha conf change flag")});
}

TEST_F(ConfStore, SetLeavesTheCacheAlone) {
    WriteText("/tmp/zor/ha.info.cache", "sn_ha=\"OLD\"\n");
    EXPECT_EQ(ZORSetHAConf(1, 0, "NEW"), 0);
    EXPECT_EQ(ZORGetHAConf(1, 0, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "OLD");
}

TEST_F(ConfStore, ChangeFlagIsSetAskedAndCleaned) {
    EXPECT_EQ(ZORIsConfChanged(), 0);
    EXPECT_EQ(ZORCleanConfChangeFlag(), -1);
    EXPECT_EQ(ZORSetHAConfChangeFlag(), 0);
    EXPECT_NE(ZORIsConfChanged(), 0);
    EXPECT_NE(ZORIsConfChanged(), 0);
    EXPECT_EQ(ZORCleanConfChangeFlag(), 0);
    EXPECT_EQ(ZORIsConfChanged(), 0);
    ExpectLog({});
}

}  // namespace
