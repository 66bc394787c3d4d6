// The snapshot files and the request for new ones.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

#include "kevacore.h"
#include "support/command_run.h"
#include "support/slow_build.h"
#include "webapi/webapi_fixture.h"
#include "zor_filelock.h"

namespace fs = std::filesystem;

namespace {

constexpr char kGetter[] = "KEVAZORGetNodeInfoCached";
constexpr char kRefresh[] = "ZORSendLoadUIRequest";

class UiCache : public WebapiTest {
  protected:
    UiCache() { SuppressRequests(); }

    // As if somebody had just asked.
    static void SuppressRequests() { WriteText(kFlags[0], ""); }

    static ZORNodeInfo Node(const char *serial) {
        ZORNodeInfo info = {};
        snprintf(info.serial, sizeof info.serial, "%s", serial);
        info.nodeState = 2;
        return info;
    }

    int32_t Get(int32_t wait = 0) { return KEVAZORGetNodeInfoCached(1, &info_, wait); }

    // The types that were asked for.
    static std::string Requests() {
        std::string types;
        while (const auto request = queue_end::Take()) {
            EXPECT_EQ(request->commandId, 50u);
            EXPECT_EQ(request->wait, 0u);
            EXPECT_EQ(request->payloadLength, 4u);
            types += std::to_string(request->payload[0]);
        }
        return types;
    }

    ZORNodeInfo info_ = {};
};

// --- Reading

TEST_F(UiCache, FreshRecordsAreRead) {
    WriteText(kLocalCache, Bytes(Node("SERIAL")));
    EXPECT_EQ(Get(), 1);
    EXPECT_STREQ(info_.serial, "SERIAL");
    ExpectLog({});
}

TEST_F(UiCache, FreshForTwelveSeconds) {
    struct Row {
        double age;
        int32_t result;
    };
    for (const Row &row : {Row{0, 1}, Row{11.8, 1}, Row{12.0, 0}, Row{13, 0}, Row{1e6, 0},
                           Row{-1, 0}, Row{-1e6, 0}}) {
        WriteText(kLocalCache, Bytes(Node("SERIAL")));
        SetAge(kLocalCache, row.age);
        EXPECT_EQ(Get(), row.result) << row.age;
    }
    ExpectLog({});
}

TEST_F(UiCache, AbsentFileIsNone) {
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(info_.nodeState, 9);
    ExpectLog({});
}

TEST_F(UiCache, ShortFileIsAnError) {
    const std::string whole = Bytes(Node("SERIAL"));
    for (const size_t size : {size_t{0}, size_t{1}, size_t{40}, whole.size() - 1}) {
        WriteText(kLocalCache, whole.substr(0, size));
        EXPECT_EQ(Get(), -1);
        ExpectLog(
            {Error("readObject", std::string("Load ") + kLocalCache + " failed. err:Success")});
        EXPECT_EQ(memcmp(&info_, whole.data(), size), 0) << "the part that was read is there";
    }
    WriteText(kLocalCache, whole + "more");
    EXPECT_EQ(Get(), 1) << "a longer file has a whole record in it";
}

TEST_F(UiCache, OtherThingsThanFilesAreErrors) {
    fs::create_symlink("/etc/passwd", kLocalCache);
    EXPECT_EQ(Get(), -1);
    ExpectLog({Error("readObject", std::string("Failed to fopen: ") + kLocalCache)});
    fs::remove(kLocalCache);
    ASSERT_EQ(mkfifo(kLocalCache, 0644), 0);
    EXPECT_EQ(Get(), -1) << "and never waits for a writer";
    log_.Take();
    fs::remove(kLocalCache);
    const FolderInTheWay folder(kLocalCache);
    EXPECT_EQ(Get(), -1);
    EXPECT_EQ(log_.Take().size(), 1u);
}

TEST_F(UiCache, UnterminatedTextsAreTerminated) {
    WriteText(kLocalCache, std::string(sizeof(ZORNodeInfo), 'x'));
    EXPECT_EQ(Get(), 1);
    EXPECT_EQ(std::string(info_.serial), std::string(35, 'x'));
    WriteText(kClusterCache, std::string(sizeof(ZORUIInfo), 'x'));
    auto cluster = std::make_unique<ZORUIInfo>();
    EXPECT_EQ(KEVAZORGetZORInfoCached(cluster.get(), 0), 1);
    EXPECT_EQ(cluster->descCount, 64);
    for (const ZORUIDesc &desc : cluster->desc) {
        EXPECT_EQ(strlen(desc.key), 63u);
        EXPECT_EQ(strlen(desc.detail), 1023u);
    }
    log_.Take();
}

TEST_F(UiCache, WaitingEndsWithAFreshRecord) {
    virtual_time::Start([](int sleep) {
        if (sleep == 4) WriteText(kLocalCache, Bytes(Node("LATE")));
    });
    EXPECT_EQ(Get(1), 1);
    EXPECT_EQ(virtual_time::Sleeps(), 5);
    EXPECT_STREQ(info_.serial, "LATE");
}

TEST_F(UiCache, WaitingGivesUpAfterThirtyOneAttempts) {
    EXPECT_EQ(Get(1), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 31);
    WriteText(kLocalCache, "short");
    virtual_time::Start([](int) { WriteText(kLocalCache, "short"); });
    EXPECT_EQ(Get(1), -1) << "an error is waited out too";
    EXPECT_EQ(virtual_time::Sleeps(), 31);
    log_.Take();
    virtual_time::Start();
    EXPECT_EQ(KEVAZORGetNodeInfoCached(3, &info_, 1), -1) << "no such node";
    EXPECT_EQ(virtual_time::Sleeps(), 31);
    EXPECT_EQ(KEVAZORGetNodeInfoCached(0, &info_, 0), -1);
    ExpectLog({});
}

TEST_F(UiCache, RecordIsNeeded) {
    EXPECT_EQ(KEVAZORGetNodeInfoCached(1, nullptr, 1), -1);
    EXPECT_EQ(KEVAZORGetZORInfoCached(nullptr, 1), -1);
    ExpectLog({Error(kGetter, "Bad parameter"), Error("KEVAZORGetZORInfoCached", "Bad parameter")});
}

// --- Writing

class UiCacheWriting : public UiCache {
  protected:
    // The cluster's snapshot needs no answer.
    static constexpr char kTemporary[] = "/tmp/zor/ui/.ui.zorinfo.cache.temp";
};

TEST_F(UiCacheWriting, RecordsAreWrittenWhole) {
    EXPECT_EQ(ZORUIGetZORInfo(), 0);
    EXPECT_EQ(fs::file_size(kClusterCache), sizeof(ZORUIInfo));
    EXPECT_FALSE(Exists(kTemporary));
    struct stat status;
    ASSERT_EQ(stat(kClusterCache, &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644u);
    ExpectLog({});
}

TEST_F(UiCacheWriting, LeftOverFileFailsOnceAndGoes) {
    WriteText(kClusterCache, "before");
    WriteText(kTemporary, "left over");
    EXPECT_EQ(ZORUIGetZORInfo(), -1);
    ExpectLog({Error("writeObject", std::string("Error: File exist. ") + kTemporary)});
    EXPECT_FALSE(Exists(kTemporary));
    EXPECT_EQ(ReadText(kClusterCache), "before");
    EXPECT_EQ(ZORUIGetZORInfo(), 0);
}

TEST_F(UiCacheWriting, PlantedLinkIsNotFollowed) {
    WriteText("/run/target", "mine");
    fs::create_symlink("/run/target", kTemporary);
    EXPECT_EQ(ZORUIGetZORInfo(), -1);
    EXPECT_EQ(ReadText("/run/target"), "mine");
    EXPECT_FALSE(Exists(kTemporary));
    log_.Take();
}

TEST_F(UiCacheWriting, FolderThatIsMissingIsReported) {
    fs::remove_all("/tmp/zor/ui");
    EXPECT_EQ(ZORUIGetZORInfo(), -1);
    ExpectLog({Error("writeObject", std::string("Failed to fopen: ") + kClusterCache)});
}

TEST_F(UiCacheWriting, TargetThatCannotBeReplacedIsReported) {
    const FolderInTheWay folder(kClusterCache);
    EXPECT_EQ(ZORUIGetZORInfo(), -1);
    ExpectLog(
        {Error("writeObject", std::string("Failed to mv ") + kTemporary + " " + kClusterCache)});
    EXPECT_FALSE(Exists(kTemporary));
}

TEST_F(UiCacheWriting, FullFileSystemIsReported) {
    ASSERT_EQ(system("mount -t tmpfs -o size=16k small /tmp/zor/ui"), 0);
    EXPECT_EQ(ZORUIGetZORInfo(), -1);
    ExpectLog({Error("writeObject", std::string("Load ") + kClusterCache + " failed.")});
    EXPECT_FALSE(Exists(kClusterCache));
    EXPECT_FALSE(Exists(kTemporary));
    ASSERT_EQ(system("umount /tmp/zor/ui"), 0);
}

TEST_F(UiCacheWriting, ConcurrentWritersLeaveWholeRecords) {
    std::atomic<bool> done{false};
    std::vector<std::thread> writers;
    for (int writer = 0; writer < 3; ++writer) {
        writers.emplace_back([&] {
            while (!done) ZORUIGetZORInfo();
        });
    }
    ASSERT_TRUE(WaitFor([] { return Exists(kClusterCache); }));
    constexpr int kReads = kIsSlowBuild ? 2000 : 20000;
    int torn = 0;
    for (int round = 0; round < kReads; ++round)
        torn += ReadText(kClusterCache).size() != sizeof(ZORUIInfo);
    done = true;
    for (std::thread &writer : writers) writer.join();
    EXPECT_EQ(torn, 0);
    printf("figure: %d reads beside 3 writers without the lock: %d short\n", kReads, torn);
    log_.Take();
}

// --- Asking for new ones

class UiRefresh : public UiCache {
  protected:
    UiRefresh() { std::remove(kFlags[0]); }
};

TEST_F(UiRefresh, TableNamesTypesLocksAndFlags) {
    for (int32_t type = 0; type < 3; ++type) {
        EXPECT_EQ(gZORLoadUIInfo[type].type, type);
        EXPECT_EQ(gZORLoadUIInfo[type].lockId, 8 + type);
        EXPECT_STREQ(gZORLoadUIInfo[type].flagPath, kFlags[type]);
    }
}

TEST_F(UiRefresh, EveryTypeIsAskedForOnce) {
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(Requests(), "012");
    for (const char *flag : kFlags) EXPECT_EQ(ReadText(flag), "updatemtime=\"yes\"\n");
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(Requests(), "") << "somebody asked within the second";
    ExpectLog({});
}

TEST_F(UiRefresh, FirstFlagSuppressesTheOthers) {
    WriteText(kFlags[0], "");
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(Requests(), "");
    EXPECT_FALSE(Exists(kFlags[1]));
}

TEST_F(UiRefresh, LaterFlagEndsTheRequestToo) {
    WriteText(kFlags[1], "");
    EXPECT_EQ(Get(), 0);
    EXPECT_EQ(Requests(), "0");
}

TEST_F(UiRefresh, FlagsCountForOneSecondAndNotFromTheFuture) {
    struct Row {
        double age;
        const char *requests;
    };
    for (const Row &row : {Row{0.5, ""}, Row{1.0, "012"}, Row{5, "012"}, Row{-5, "012"}}) {
        for (const char *flag : kFlags) {
            WriteText(flag, "");
            SetAge(flag, row.age);
        }
        EXPECT_EQ(Get(), 0);
        EXPECT_EQ(Requests(), row.requests) << row.age;
    }
}

TEST_F(UiRefresh, FailedRequestIsReportedAndTheCacheIsRead) {
    Unset("is_local_handler_ready");
    WriteText(kLocalCache, Bytes(Node("SERIAL")));
    EXPECT_EQ(Get(), 1);
    ExpectLog(
        {"ERROR zor_core(ZORSendReqToMgr): Local handler is not ready, but "
         "ZORSendReqToMgr() is called",
         Error(kRefresh, "Failed to command ask node info for ui with return code: -1"),
         Error(kGetter, "Failed to send load UI request")});
    EXPECT_FALSE(Exists(kFlags[1])) << "the later types are not asked for";
}

TEST_F(UiRefresh, FlagsThatCannotBeDatedAreReported) {
    fs::remove_all("/tmp/zor/ui");
    EXPECT_EQ(Get(), 0);
    Lines expected;
    for (int type = 0; type < 3; ++type) {
        expected.push_back(Error(kRefresh, "Failed to touch file"));
        expected.push_back(Error(kRefresh, "Failed to update flag"));
    }
    ExpectLog(expected);
    EXPECT_EQ(Requests(), "012");
}

TEST_F(UiRefresh, ManyCallersAtOnceAskOnce) {
    constexpr int kThreads = 16;
    constexpr int kCalls = 10000;
    std::atomic<int> left{kCalls};
    std::vector<std::thread> callers;
    const auto begin = std::chrono::steady_clock::now();
    for (int thread = 0; thread < kThreads; ++thread) {
        callers.emplace_back([&] {
            ZORNodeInfo info = {};
            while (left-- > 0) KEVAZORGetNodeInfoCached(1, &info, 0);
        });
    }
    for (std::thread &caller : callers) caller.join();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    const std::string requests = Requests();
    for (const char type : {'0', '1', '2'}) {
        EXPECT_LE(std::count(requests.begin(), requests.end(), type), taken.count() + 1.01) << type;
        EXPECT_GE(std::count(requests.begin(), requests.end(), type), 1) << type;
    }
    printf("figure: %d calls of %d threads in %.1f s: %zu requests\n", kCalls, kThreads,
           taken.count(), requests.size());
    // Waiting for the hardware lock takes no time here, so that some give it up.
    for (const std::string &line : log_.Take())
        EXPECT_EQ(line, "ERROR zor_hwinfo_core(ZORHWGetHostNodeType): Failed to lock");
}

// --- Building on request

class LoadUi : public UiCache {};

TEST_F(LoadUi, UnknownTypesAreNothingToDo) {
    for (const int32_t type : {3, -1, INT32_MAX}) {
        EXPECT_EQ(ZORUILoadUI(type), 0);
        ExpectLog({Error("ZORUILoadUI", "Bad parameter")});
    }
}

TEST_F(LoadUi, BuildsTheSnapshotOfItsType) {
    ZORNodeInfoAnswer answer = {};
    AnswerWith(Bytes(answer));
    EXPECT_EQ(ZORUILoadUI(ZOR_UI_CLUSTER), 0);
    EXPECT_TRUE(Exists(kClusterCache));
    EXPECT_FALSE(Exists(kLocalCache));
    EXPECT_EQ(ZORUILoadUI(ZOR_UI_LOCAL_NODE), 0);
    EXPECT_TRUE(Exists(kLocalCache));
    EXPECT_FALSE(Exists(kRemoteCache));
    EXPECT_EQ(ZORUILoadUI(ZOR_UI_REMOTE_NODE), 0);
    EXPECT_TRUE(Exists(kRemoteCache));
}

TEST_F(LoadUi, AnotherBuilderServesAsWell) {
    for (int32_t type = 0; type < 3; ++type) {
        FILE *lock = nullptr;
        ASSERT_EQ(ZORFileLock(8 + type, 0, &lock), 0);
        EXPECT_EQ(ZORUILoadUI(type), 0);
        ZORFileUnlock(&lock);
    }
    for (const char *cache : {kClusterCache, kLocalCache, kRemoteCache})
        EXPECT_FALSE(Exists(cache));
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    ExpectLog({});
}

TEST_F(LoadUi, FailuresOfTheBuildersAreReported) {
    AnswerWith("too short");
    WriteText(std::string(kClusterCache) + ".temp", "");
    EXPECT_EQ(ZORUILoadUI(ZOR_UI_CLUSTER), -1);
    EXPECT_EQ(log_.Take().back(), Error("ZORUILoadUI", "Failed to get ZOR Info"));
    for (const int32_t type : {ZOR_UI_LOCAL_NODE, ZOR_UI_REMOTE_NODE}) {
        EXPECT_EQ(ZORUILoadUI(type), -1);
        EXPECT_EQ(log_.Take().back(), Error("ZORUILoadUI", "Failed to get node Info"));
        FILE *lock = nullptr;
        EXPECT_EQ(ZORFileLock(8 + type, 0, &lock), 0) << "the lock is released";
        ZORFileUnlock(&lock);
    }
}

}  // namespace
