// The configuration sync record.

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <random>

#include "support/node_test.h"
#include "zor_conf.h"
#include "zor_filelock.h"

namespace fs = std::filesystem;

namespace {

constexpr char kConf[] =
    "sn_ha=\"CLUSTER\"\n"
    "sn0=\"LEFT\"\n"
    "sn1=\"RIGHT\"\n"
    "sn_ha_custom=\"C-CLUSTER\"\n"
    "sn0_custom=\"C-LEFT\"\n"
    "sn1_custom=\"C-RIGHT\"\n"
    "monitor_if=\"yes,no\"\n";

std::string Get(const std::string &message) {
    return "ERROR zor_conf(ZORGetSyncHAConf): " + message;
}
std::string Set(const std::string &message) {
    return "ERROR zor_conf(ZORSetSyncHAConf): " + message;
}

class SyncConf : public NodeTest {
  protected:
    SyncConf() { SetRole(1); }
    void SetRole(int role) {
        WriteText(kStatusFile, "local_role=\"" + std::to_string(role) + "\"\n");
    }
    ZORSyncConf record_ = {};
};

TEST_F(SyncConf, LayoutIsPlain) {
    EXPECT_EQ(offsetof(ZORSyncConf, clusterSerial), 0u);
    EXPECT_EQ(offsetof(ZORSyncConf, leftSerial), 36u);
    EXPECT_EQ(offsetof(ZORSyncConf, rightSerial), 72u);
    EXPECT_EQ(offsetof(ZORSyncConf, clusterCustomSerial), 108u);
    EXPECT_EQ(offsetof(ZORSyncConf, leftCustomSerial), 144u);
    EXPECT_EQ(offsetof(ZORSyncConf, rightCustomSerial), 180u);
    EXPECT_EQ(offsetof(ZORSyncConf, monitorIf), 216u);
    EXPECT_EQ(offsetof(ZORSyncConf, isReady), 360u);
    EXPECT_EQ(sizeof(ZORSyncConf), 364u);
}

TEST_F(SyncConf, ActiveNodePacksSevenSettings) {
    WriteText(kConfFile, std::string(kConf) + "monitor_service=\"yes\"\nif_all=\"x\"\n");
    EXPECT_EQ(ZORGetSyncHAConf(&record_), 0);
    EXPECT_STREQ(record_.clusterSerial, "CLUSTER");
    EXPECT_STREQ(record_.leftSerial, "LEFT");
    EXPECT_STREQ(record_.rightSerial, "RIGHT");
    EXPECT_STREQ(record_.clusterCustomSerial, "C-CLUSTER");
    EXPECT_STREQ(record_.leftCustomSerial, "C-LEFT");
    EXPECT_STREQ(record_.rightCustomSerial, "C-RIGHT");
    EXPECT_STREQ(record_.monitorIf, "yes,no");
    EXPECT_EQ(record_.isReady, 1);
    EXPECT_FALSE(Exists("/tmp/zor/ha.info.cache")) << "the cache has no part in it";
    ExpectLog({});
}

TEST_F(SyncConf, AbsentSettingsArePackedWithoutALine) {
    WriteText(kConfFile, "sn_ha=\"CLUSTER\"\nsn0=\"LEFT\"\n");
    EXPECT_EQ(ZORGetSyncHAConf(&record_), 0);
    EXPECT_STREQ(record_.rightSerial, "");
    EXPECT_EQ(record_.isReady, 1);
    ExpectLog({});
}

TEST_F(SyncConf, SettingsThatCannotBeReadAreReported) {
    const FolderInTheWay folder(kConfFile);
    EXPECT_EQ(ZORGetSyncHAConf(&record_), 0);
    EXPECT_EQ(record_.isReady, 1);
    Lines expected(6, Get("Failed to get ha sn"));
    expected.push_back(Get("Failed to get monitor if"));
    ExpectLog(expected);
}

TEST_F(SyncConf, OnlyTheActiveNodePacks) {
    for (const int role : {0, 2, 4}) {
        SetRole(role);
        memset(&record_, '#', sizeof record_);
        EXPECT_EQ(ZORGetSyncHAConf(&record_), -1);
        EXPECT_EQ(record_.clusterSerial[0], '#');
        ExpectLog({Get("call get sync ha conf on passive")});
    }
    EXPECT_EQ(ZORGetSyncHAConf(nullptr), -1);
    ExpectLog({Get("Error parameter")});
}

TEST_F(SyncConf, PackingNeedsTheLock) {
    FILE *holder = nullptr;
    ASSERT_EQ(ZORFileLock(0, 0, &holder), 0);
    EXPECT_EQ(ZORGetSyncHAConf(&record_), -1);
    EXPECT_EQ(record_.isReady, 0);
    ExpectLog({Get("failed to get filelock for get ha.conf")});
    SetRole(2);
    record_.isReady = 1;
    EXPECT_EQ(ZORSetSyncHAConf(&record_), -1);
    ExpectLog({Set("failed to get filelock for get ha.conf")});
    ZORFileUnlock(&holder);
}

TEST_F(SyncConf, OtherNodesUnpackInOrder) {
    WriteText(kConfFile, kConf);
    ASSERT_EQ(ZORGetSyncHAConf(&record_), 0);
    for (const int role : {0, 2, 4}) {
        SetRole(role);
        fs::remove(kConfFile);
        EXPECT_EQ(ZORSetSyncHAConf(&record_), 0);
        EXPECT_EQ(ReadText(kConfFile), kConf);
    }
    EXPECT_FALSE(Exists("/tmp/zor/.zor.conf.changed"));
    EXPECT_FALSE(Exists("/tmp/zor/ha.info.cache"));
    ExpectLog({});
}

TEST_F(SyncConf, ActiveNodeDoesNotUnpack) {
    record_.isReady = 1;
    EXPECT_EQ(ZORSetSyncHAConf(&record_), -1);
    EXPECT_FALSE(Exists(kConfFile));
    ExpectLog({Set("call set sync ha conf on active")});
}

TEST_F(SyncConf, RecordThatWasNeverPackedIsRefused) {
    SetRole(2);
    WriteText(kConfFile, kConf);
    EXPECT_EQ(ZORSetSyncHAConf(&record_), -1);
    EXPECT_EQ(ReadText(kConfFile), kConf);
    ExpectLog({Set("Conf data is not OK. Skip initialize")});
    EXPECT_EQ(ZORSetSyncHAConf(nullptr), -1);
    ExpectLog({Set("Error parameter")});
}

TEST_F(SyncConf, SettingsThatCannotBeWrittenAreReported) {
    SetRole(2);
    record_.isReady = 1;
    strcpy(record_.leftSerial, "A\nB");
    strcpy(record_.monitorIf, "a\nb");
    EXPECT_EQ(ZORSetSyncHAConf(&record_), 0);
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[1], Set("Failed to set ha sn"));
    EXPECT_EQ(lines[3], Set("Failed to set monitor if"));
    EXPECT_NE(ReadText(kConfFile).find("sn1=\"\""), std::string::npos);
}

TEST_F(SyncConf, TextWithoutATerminatorIsBounded) {
    SetRole(2);
    memset(&record_, 'x', sizeof record_);
    EXPECT_EQ(ZORSetSyncHAConf(&record_), 0);
    const std::string serial(36, 'x');
    EXPECT_EQ(ReadText(kConfFile), "sn_ha=\"" + serial + "\"\nsn0=\"" + serial + "\"\nsn1=\"" +
                                       serial + "\"\nsn_ha_custom=\"" + serial +
                                       "\"\nsn0_custom=\"" + serial + "\"\nsn1_custom=\"" + serial +
                                       "\"\nmonitor_if=\"" + std::string(144, 'x') + "\"\n");
}

// Whatever the record holds, unpacking and packing gives it back.
TEST_F(SyncConf, RandomRecordsGoThereAndBack) {
    constexpr unsigned kSeed = 7;
    constexpr int kRounds = 300;
    std::mt19937 random(kSeed);
    const auto fill = [&](char *text, size_t width) {
        memset(text, 0, width);
        const size_t length = random() % width;
        for (size_t at = 0; at < length; ++at) {
            do text[at] = static_cast<char>(1 + random() % 255);
            while (text[at] == '\n');
        }
    };
    for (int round = 0; round < kRounds; ++round) {
        for (char *serial :
             {record_.clusterSerial, record_.leftSerial, record_.rightSerial,
              record_.clusterCustomSerial, record_.leftCustomSerial, record_.rightCustomSerial})
            fill(serial, 36);
        fill(record_.monitorIf, 144);
        record_.isReady = 1;
        SetRole(2);
        ASSERT_EQ(ZORSetSyncHAConf(&record_), 0);
        const std::string file = ReadText(kConfFile);
        SetRole(1);
        ZORSyncConf back = {};
        ASSERT_EQ(ZORGetSyncHAConf(&back), 0);
        ASSERT_EQ(memcmp(&back, &record_, sizeof back), 0) << "round " << round;
        SetRole(2);
        ASSERT_EQ(ZORSetSyncHAConf(&back), 0);
        ASSERT_EQ(ReadText(kConfFile), file);
    }
    printf("%d records, seed %u\n", kRounds, kSeed);
    ExpectLog({});
}

}  // namespace
