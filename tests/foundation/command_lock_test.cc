// The command lock groups.

#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>

#include "support/node_test.h"
#include "zor_filelock.h"

namespace fs = std::filesystem;

namespace {

class CommandLock : public NodeTest {
  protected:
    FILE *handle_ = nullptr;
    FILE *other_ = nullptr;

    ~CommandLock() override {
        if (handle_) fclose(handle_);
        if (other_) fclose(other_);
    }
};

struct Group {
    uint32_t command;
    int32_t index;
};

constexpr Group kGrouped[] = {{3, 0},  {11, 0}, {13, 0}, {48, 0},
                              {24, 1}, {25, 1}, {26, 1}, {47, 2}};

TEST_F(CommandLock, TableHasTheGroupsInTheirOrder) {
    ASSERT_EQ(std::size(rgsaalckGroupList), 3u);
    EXPECT_EQ(rgsaalckGroupList[0].id, 1);
    EXPECT_STREQ(rgsaalckGroupList[0].path, "/tmp/zor/.zor.ha.sys.cmd.lock");
    EXPECT_EQ(rgsaalckGroupList[1].id, 2);
    EXPECT_STREQ(rgsaalckGroupList[1].path, "/tmp/zor/.zor.ha.hwinfo.cmd.lock");
    EXPECT_EQ(rgsaalckGroupList[2].id, 3);
    EXPECT_STREQ(rgsaalckGroupList[2].path, "/tmp/zor/.zor.ha.install.cmd.lock");
}

TEST_F(CommandLock, EveryCommandHasItsGroupOrNone) {
    for (uint32_t command = 0; command < 200; ++command) {
        int32_t expected = -1;
        for (const Group &group : kGrouped) {
            if (group.command == command) expected = group.index;
        }
        EXPECT_EQ(ZORGetCmdLockGroupID(command), expected) << command;
    }
    for (const uint32_t command : {3u + 64, 48u + 64, 0x7fffffffu, 0x80000003u, 0xffffffffu})
        EXPECT_EQ(ZORGetCmdLockGroupID(command), -1) << command;
    ExpectLog({});
}

TEST_F(CommandLock, CommandsOfOneGroupExcludeEachOther) {
    ASSERT_EQ(ZORChkIfLockAndLock(3, 0, &handle_), 0);
    EXPECT_NE(handle_, nullptr);
    EXPECT_EQ(ZORChkIfLockAndLock(48, 0, &other_), -1);
    EXPECT_EQ(other_, nullptr);
    ExpectLog({"ERROR zor_filelock(ZORCmdGroupFileLock): get lock on state controller timeout",
               "ERROR zor_filelock(ZORChkIfLockAndLock): Failed to get lock on command: 48"});
    EXPECT_EQ(ZORChkIfLockAndLock(24, 0, &other_), 0) << "another group";
    EXPECT_EQ(ZORChkIfUnlockAndUnlock(24, &other_), 0);
    EXPECT_EQ(ZORChkIfUnlockAndUnlock(3, &handle_), 0);
    EXPECT_EQ(handle_, nullptr);
    EXPECT_EQ(ZORChkIfLockAndLock(48, 0, &other_), 0);
}

TEST_F(CommandLock, UngroupedCommandIsNothingToLock) {
    const auto untouched = reinterpret_cast<FILE *>(&handle_);
    FILE *handle = untouched;
    EXPECT_EQ(ZORChkIfLockAndLock(5, 3, &handle), 1);
    EXPECT_EQ(handle, untouched);
    EXPECT_EQ(ZORChkIfUnlockAndUnlock(5, &handle), 1);
    EXPECT_EQ(handle, untouched);
    ExpectLog({});
}

TEST_F(CommandLock, NullHandleIsRefusedBeforeTheGroupIsLookedAt) {
    EXPECT_EQ(ZORChkIfLockAndLock(5, 0, nullptr), -1);
    EXPECT_EQ(ZORChkIfUnlockAndUnlock(5, nullptr), -1);
    ExpectLog({"ERROR zor_filelock(ZORChkIfLockAndLock): Error parameter",
               "ERROR zor_filelock(ZORChkIfUnlockAndUnlock): Error parameter"});
}

TEST_F(CommandLock, EveryFailedAttemptIsFollowedByASecond) {
    ASSERT_EQ(ZORChkIfLockAndLock(47, 0, &handle_), 0);
    for (const int32_t retries : {0, 2, 5}) {
        virtual_time::Start();
        EXPECT_EQ(ZORChkIfLockAndLock(47, retries, &other_), -1);
        EXPECT_EQ(virtual_time::Sleeps(), retries + 1);
    }
}

TEST_F(CommandLock, TwoRetriesTakeThreeSecondsInRealTime) {
    ASSERT_EQ(ZORChkIfLockAndLock(47, 0, &handle_), 0);
    virtual_time::Stop();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ZORChkIfLockAndLock(47, 2, &other_), -1);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_GE(taken.count(), 3.0);
    EXPECT_LT(taken.count(), 4.0);
}

// The line names the resource lock in the same row of its table, not the file
// that could not be opened.
TEST_F(CommandLock, OpenFailureNamesTheResourceLockOfTheSameRow) {
    fs::remove_all(kRuntimeFolder);
    EXPECT_EQ(ZORChkIfLockAndLock(11, 0, &handle_), -1);
    EXPECT_EQ(ZORChkIfLockAndLock(25, 0, &handle_), -1);
    EXPECT_EQ(ZORChkIfLockAndLock(47, 0, &handle_), -1);
    EXPECT_EQ(handle_, nullptr);
    ExpectLog({
        "ERROR zor_filelock(ZORCmdGroupFileLock): failed to fopen /tmp/zor/.zor.ha.status.lock, "
        "errno=No such file or directory",
        "ERROR zor_filelock(ZORChkIfLockAndLock): Failed to get lock on command: 11",
        "ERROR zor_filelock(ZORCmdGroupFileLock): failed to fopen /tmp/zor/.zor.ha.conf.lock, "
        "errno=No such file or directory",
        "ERROR zor_filelock(ZORChkIfLockAndLock): Failed to get lock on command: 25",
        "ERROR zor_filelock(ZORCmdGroupFileLock): failed to fopen /tmp/zor/.zor.ha.hwinfo.lock, "
        "errno=No such file or directory",
        "ERROR zor_filelock(ZORChkIfLockAndLock): Failed to get lock on command: 47",
    });
}

TEST_F(CommandLock, UnlockOfNothingIsReported) {
    EXPECT_EQ(ZORChkIfUnlockAndUnlock(26, &handle_), -1);
    ExpectLog(
        {"ERROR zor_filelock(ZORCmdGroupFileUnlock): Failed to unlock, pointer is null "
         "index:1 path:/tmp/zor/.zor.ha.hwinfo.cmd.lock",
         "ERROR zor_filelock(ZORChkIfUnlockAndUnlock): UNLOCK FAILED!!!! (command:26 tid:" +
             std::to_string(gettid()) + ")"});
}

TEST_F(CommandLock, FailedUnlockKeepsTheStream) {
    ASSERT_EQ(ZORChkIfLockAndLock(13, 0, &handle_), 0);
    FILE *const stream = handle_;
    close(fileno(stream));
    EXPECT_EQ(ZORChkIfUnlockAndUnlock(13, &handle_), -1);
    EXPECT_EQ(handle_, stream);
    ExpectLog({"ERROR zor_filelock(ZORCmdGroupFileUnlock): failed to unlock errno=" +
                   std::string(strerror(EBADF)),
               "ERROR zor_filelock(ZORChkIfUnlockAndUnlock): UNLOCK FAILED!!!! (command:13 tid:" +
                   std::to_string(gettid()) + ")"});
}

}  // namespace
