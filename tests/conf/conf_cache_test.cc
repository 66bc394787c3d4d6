// The cache of the cluster's identity.

#include <atomic>
#include <cstring>
#include <filesystem>
#include <thread>
#include <vector>

#include "support/node_test.h"
#include "zor_conf.h"
#include "zor_filelock.h"

namespace fs = std::filesystem;

namespace {

constexpr char kCache[] = "/tmp/zor/ha.info.cache";
constexpr char kIdentity[] =
    "sn_ha=\"CLUSTER\"\nsn_ha_custom=\"CUSTOM\"\nmac_all_ha=\"02:00:00:aa:bb:cc\"\n";

std::string Prepare(const std::string &message) {
    return "ERROR zor_conf(ZORPrepareCachedConf): " + message;
}

class ConfCache : public NodeTest {
  protected:
    char value_[162] = "";
};

TEST_F(ConfCache, FirstReadFillsItAndLaterReadsUseIt) {
    WriteText(kConfFile, kIdentity);
    EXPECT_EQ(ZORGetHAConf(1, 0, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "CLUSTER");
    EXPECT_EQ(ReadText(kCache), "sn_ha=\"CLUSTER\"\n");
    WriteText(kConfFile, "");
    EXPECT_EQ(ZORGetHAConf(1, 0, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "CLUSTER");
    ExpectLog({});
}

TEST_F(ConfCache, ReadsTakeNoLock) {
    WriteText(kConfFile, kIdentity);
    FILE *holder = nullptr;
    ASSERT_EQ(ZORFileLock(0, 0, &holder), 0);
    for (const uint32_t key : {0u, 2u, 5u}) {
        EXPECT_EQ(ZORGetHAConf(1, key, value_, sizeof value_), 1);
        EXPECT_EQ(ZORGetHAConf(1, key, value_, sizeof value_), 1);
    }
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    ZORFileUnlock(&holder);
    ExpectLog({});
}

TEST_F(ConfCache, AbsentKeysAreNotCached) {
    EXPECT_EQ(ZORGetHAConf(1, 0, value_, sizeof value_), 0);
    EXPECT_FALSE(Exists(kCache));
}

TEST_F(ConfCache, UnreadableFileIsAFailure) {
    const FolderInTheWay folder(kConfFile);
    EXPECT_EQ(ZORGetHAConf(1, 0, value_, sizeof value_), -1);
    ExpectLog({});
}

TEST_F(ConfCache, CacheThatCannotBeUsedIsPassedBy) {
    WriteText(kConfFile, kIdentity);
    const FolderInTheWay folder(kCache);
    EXPECT_EQ(ZORGetHAConf(1, 0, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "CLUSTER");
    ExpectLog({});
}

TEST_F(ConfCache, SmallBufferDoesNotCutTheCachedValue) {
    WriteText(kConfFile, kIdentity);
    char small[4];
    EXPECT_EQ(ZORGetHAConf(1, 0, small, sizeof small), 1);
    EXPECT_STREQ(small, "CLU");
    EXPECT_EQ(ReadText(kCache), "sn_ha=\"CLUSTER\"\n");
    EXPECT_EQ(ZORGetHAConf(1, 0, small, sizeof small), 1);
    EXPECT_STREQ(small, "CLU");
}

TEST_F(ConfCache, ValuesOf161And162Bytes) {
    for (const size_t length : {161u, 162u}) {
        const std::string list(length, 'm');
        WriteText(kConfFile, "mac_all_ha=\"" + list + "\"\n");
        fs::remove(kCache);
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(ZORGetHAConf(1, 2, value_, sizeof value_), 1);
            EXPECT_EQ(std::string(value_), list.substr(0, 161));
        }
    }
}

TEST_F(ConfCache, PrepareRebuildsItInOrder) {
    WriteText(kCache, "sn_ha=\"OLD\"\nother=\"x\"\n");
    WriteText(kConfFile, std::string("mac_all0=\"x\"\n") + kIdentity);
    EXPECT_EQ(ZORPrepareCachedConf(), 0);
    EXPECT_EQ(ReadText(kCache), kIdentity);
    ExpectLog({});
}

TEST_F(ConfCache, PrepareWithoutIdentityLeavesNoCache) {
    WriteText(kCache, "sn_ha=\"OLD\"\n");
    EXPECT_EQ(ZORPrepareCachedConf(), 0);
    EXPECT_FALSE(Exists(kCache));
    WriteText(kConfFile, "sn_ha_custom=\"CUSTOM\"\n");
    EXPECT_EQ(ZORPrepareCachedConf(), 0);
    EXPECT_EQ(ReadText(kCache), "sn_ha_custom=\"CUSTOM\"\n");
    ExpectLog({});
}

TEST_F(ConfCache, PrepareNeedsTheLock) {
    FILE *holder = nullptr;
    ASSERT_EQ(ZORFileLock(0, 0, &holder), 0);
    WriteText(kCache, "sn_ha=\"OLD\"\n");
    EXPECT_EQ(ZORPrepareCachedConf(), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    EXPECT_TRUE(Exists(kCache));
    ExpectLog({Prepare("failed to get filelock for get ha.conf")});
    ZORFileUnlock(&holder);
}

TEST_F(ConfCache, PrepareReportsEachFailureAndGoesOn) {
    const FolderInTheWay cache(kCache);
    const FolderInTheWay conf(kConfFile);
    EXPECT_EQ(ZORPrepareCachedConf(), 0);
    ExpectLog({Prepare("Unlink ha.info.cached failed"), Prepare("Failed to get ha sn cached"),
               Prepare("Failed to get ha cus sn cached"), Prepare("Failed to get mac all cached")});
}

// The cache has no lock: whoever reads first fills it, and its file stays whole.
TEST_F(ConfCache, UnlockedFillersTearNothing) {
    constexpr int kReads = 30000;  // of each of four threads
    WriteText(kConfFile, kIdentity);
    std::atomic<bool> done{false};
    std::atomic<long> wrong{0};
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 4; ++reader) {
        readers.emplace_back([&] {
            char value[162];
            for (int round = 0; round < kReads; ++round) {
                wrong += ZORGetHAConf(1, 0, value, sizeof value) != 1 || strcmp(value, "CLUSTER");
                wrong += ZORGetHAConf(1, 5, value, sizeof value) != 1 || strcmp(value, "CUSTOM");
            }
        });
    }
    std::thread rebuilder([&] {
        while (!done) ZORPrepareCachedConf();
    });
    for (std::thread &reader : readers) reader.join();
    done = true;
    rebuilder.join();
    EXPECT_EQ(wrong, 0);
    printf("figure: %d reads beside rebuilds: %ld torn or absent\n", kReads * 8, wrong.load());
}

}  // namespace
