// Reading, writing and removing single entries.

#include <sys/mount.h>
#include <sys/stat.h>

#include <cstring>
#include <filesystem>

#include "support/node_test.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace fs = std::filesystem;

namespace {

constexpr char kChangeFlag[] = "/tmp/zor/.zor.status.changed";

class StatusStore : public NodeTest {
  protected:
    void HoldStatusLock() { ASSERT_EQ(ZORFileLock(1, 0, &holder_), 0); }
    ~StatusStore() override { ZORFileUnlock(&holder_); }

    FILE *holder_ = nullptr;
    char value_[64] = "before";
};

// --- Set

TEST_F(StatusStore, SetAppendsALineAndTouchesTheChangeFlag) {
    EXPECT_EQ(ZORSetHAStatus(2, 5, "1"), 0);
    EXPECT_EQ(ReadText(kStatusFile), "local_role=\"1\"\n");
    EXPECT_TRUE(Exists(kChangeFlag));
    ExpectLog({});
}

TEST_F(StatusStore, SetReplacesTheLineInItsPlace) {
    WriteText(kStatusFile, "a=\"1\"\nlocal_role=\"1\"\nb=\"2\"\n");
    EXPECT_EQ(ZORSetHAStatus(2, 5, "2"), 0);
    EXPECT_EQ(ReadText(kStatusFile), "a=\"1\"\nlocal_role=\"2\"\nb=\"2\"\n");
}

TEST_F(StatusStore, SetOfANullValueIsRefused) {
    EXPECT_EQ(ZORSetHAStatus(2, 5, nullptr), -1);
    ExpectLog({"ERROR zor_status(ZORSetHAStatusImp): Error parameter"});
    EXPECT_FALSE(Exists(kChangeFlag));
}

TEST_F(StatusStore, NullValueIsLookedAtBeforeTheKey) {
    EXPECT_EQ(ZORSetHAStatus(2, 99, nullptr), -1);
    ExpectLog({"ERROR zor_status(ZORSetHAStatusImp): Error parameter"});
}

TEST_F(StatusStore, SetWithoutTheLockFailsAfterTenSeconds) {
    HoldStatusLock();
    EXPECT_EQ(ZORSetHAStatus(2, 5, "1"), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    EXPECT_FALSE(Exists(kStatusFile));
    ExpectLog({"ERROR zor_status(ZORSetHAStatus): Failed to get filelock"});
}

TEST_F(StatusStore, SetReleasesTheLockBeforeAndAfterAFailure) {
    const int before = CountDescriptors();
    EXPECT_EQ(ZORSetHAStatus(2, 5, "1"), 0);
    EXPECT_EQ(ZORSetHAStatus(1, 5, "1"), -1);
    EXPECT_EQ(CountDescriptors(), before);
    EXPECT_EQ(ZORFileLock(1, 0, &holder_), 0);
}

TEST_F(StatusStore, FailedWriteIsReportedAndLeavesTheFile) {
    const FolderInTheWay folder(kStatusFile);
    EXPECT_EQ(ZORSetHAStatus(2, 5, "1"), -1);
    EXPECT_FALSE(Exists(kChangeFlag));
    ExpectLog(
        {"ERROR zor_status(ZORSetHAStatusImp): Failed to set value of key (key:local_role, "
         "value:1)"});
}

TEST_F(StatusStore, ValueWithANewlineIsRefused) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    EXPECT_EQ(ZORSetHAStatus(2, 5, "2\"\ninjected=\"yes"), -1);
    EXPECT_EQ(ReadText(kStatusFile), "local_role=\"1\"\n");
    EXPECT_EQ(log_.Take().size(), 1u);
}

TEST_F(StatusStore, ChangeFlagThatCannotBeTouchedIsNoFailure) {
    const UntouchableFile flag(kChangeFlag);
    EXPECT_EQ(ZORSetHAStatus(2, 5, "1"), 0);
    EXPECT_EQ(ReadText(kStatusFile), "local_role=\"1\"\n");
    ExpectLog({"ERROR zor_status(ZORSetHAStatus): Failed to set zor status changed flag"});
}

TEST_F(StatusStore, RewriteKeepsTheMode) {
    WriteText(kStatusFile, "a=\"1\"\n");
    fs::permissions(kStatusFile, static_cast<fs::perms>(0640));
    umask(077);
    EXPECT_EQ(ZORSetHAStatus(2, 5, "1"), 0);
    struct stat status;
    ASSERT_EQ(stat(kStatusFile, &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

// --- Get

TEST_F(StatusStore, GetFindsAValue) {
    WriteText(kStatusFile, "local_host_IP=\"10.0.0.1,10.0.0.2\"\n");
    EXPECT_EQ(ZORGetHAStatus(2, 8, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "10.0.0.1,10.0.0.2");
    ExpectLog({});
}

TEST_F(StatusStore, GetFindsAnEmptyValue) {
    WriteText(kStatusFile, "local_host_IP=\"\"\n");
    EXPECT_EQ(ZORGetHAStatus(2, 8, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "");
}

TEST_F(StatusStore, GetCutsToTheBuffer) {
    WriteText(kStatusFile, "local_host_IP=\"10.0.0.1\"\n");
    EXPECT_EQ(ZORGetHAStatus(2, 8, value_, 4), 1);
    EXPECT_STREQ(value_, "10.");
    EXPECT_EQ(value_[4], 'r') << "nothing behind the buffer is touched";
}

TEST_F(StatusStore, GetOfAnAbsentKeyIsZeroWithoutALine) {
    WriteText(kStatusFile, "local_host_IP_more=\"1\"\n");
    EXPECT_EQ(ZORGetHAStatus(2, 8, value_, sizeof value_), 0);
    ExpectLog({});
}

TEST_F(StatusStore, GetWithoutABufferIsRefused) {
    EXPECT_EQ(ZORGetHAStatus(2, 8, nullptr, 8), -1);
    EXPECT_EQ(ZORGetHAStatus(2, 8, value_, 0), -1);
    EXPECT_STREQ(value_, "before");
    ExpectLog({"ERROR zor_status(ZORGetHAStatus): Error parameter",
               "ERROR zor_status(ZORGetHAStatus): Error parameter"});
}

TEST_F(StatusStore, GetOfNoKeyIsRefused) {
    EXPECT_EQ(ZORGetHAStatus(2, 3, value_, sizeof value_), -1);
    ExpectLog({"ERROR zor_status(ZORGetStatusKey): Error: Get ha role on ha runtime status",
               "ERROR zor_status(ZORGetHAStatus): Failed to get key"});
}

TEST_F(StatusStore, FailedReadIsANoticeWithTheErrorCode) {
    const FolderInTheWay folder(kStatusFile);
    EXPECT_EQ(ZORGetHAStatus(2, 8, value_, sizeof value_), -1);
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(
        lines[0].starts_with("NOTICE zor_status(ZORGetHAStatus): Failed to get value of "
                             "key (key:local_host_IP error code:"))
        << lines[0];
    EXPECT_EQ(lines[0].find("code:0)"), std::string::npos);
}

TEST_F(StatusStore, GetTakesNoLock) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    HoldStatusLock();
    EXPECT_EQ(ZORGetHAStatus(2, 5, value_, sizeof value_), 1);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
}

// --- Get and remove

TEST_F(StatusStore, GetAndRemoveReturnsTheValueAndRemovesTheLine) {
    WriteText(kStatusFile, "a=\"1\"\nservice_changed=\"yes\"\nb=\"2\"\n");
    EXPECT_EQ(ZORGetAndRemoveHAStatus(1, 30, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "yes");
    EXPECT_EQ(ReadText(kStatusFile), "a=\"1\"\nb=\"2\"\n");
    EXPECT_FALSE(Exists(kChangeFlag)) << "only a set touches the flag";
    ExpectLog({});
}

TEST_F(StatusStore, GetAndRemoveOfAnAbsentKeyIsZero) {
    WriteText(kStatusFile, "a=\"1\"\n");
    EXPECT_EQ(ZORGetAndRemoveHAStatus(1, 30, value_, sizeof value_), 0);
    EXPECT_EQ(ReadText(kStatusFile), "a=\"1\"\n");
    ExpectLog({});
}

TEST_F(StatusStore, GetAndRemoveWithoutABufferIsRefusedBeforeTheLock) {
    HoldStatusLock();
    EXPECT_EQ(ZORGetAndRemoveHAStatus(1, 30, nullptr, 8), -1);
    EXPECT_EQ(ZORGetAndRemoveHAStatus(1, 30, value_, 0), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    ExpectLog({"ERROR zor_status(ZORGetAndRemoveHAStatus): Error parameter",
               "ERROR zor_status(ZORGetAndRemoveHAStatus): Error parameter"});
}

TEST_F(StatusStore, GetAndRemoveWithoutTheLockFails) {
    HoldStatusLock();
    EXPECT_EQ(ZORGetAndRemoveHAStatus(1, 30, value_, sizeof value_), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    ExpectLog({"ERROR zor_status(ZORGetAndRemoveHAStatus): Failed to get file lock for ha.status"});
}

TEST_F(StatusStore, GetAndRemoveOfNoKeyIsRefused) {
    EXPECT_EQ(ZORGetAndRemoveHAStatus(1, 44, value_, sizeof value_), -1);
    ExpectLog({"ERROR zor_status(ZORGetStatusKey): Error key (44)",
               "ERROR zor_status(ZORGetAndRemoveHAStatus): Failed to get key"});
}

TEST_F(StatusStore, GetAndRemoveThatCannotReadNamesSelectorAndKey) {
    const FolderInTheWay folder(kStatusFile);
    EXPECT_EQ(ZORGetAndRemoveHAStatus(4, 5, value_, sizeof value_), -1);
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[0].starts_with("NOTICE zor_status(ZORGetHAStatus): Failed to get value"));
    EXPECT_EQ(lines[1],
              "ERROR zor_status(ZORGetAndRemoveHAStatus): Failed to get ha.status key, role 4, "
              "key 5");
}

// A runtime folder in which no new file can be made.
class StatusStoreFull : public StatusStore {
  protected:
    void SetUp() override {
        ASSERT_EQ(mount("none", kRuntimeFolder, "tmpfs", 0, "nr_inodes=4"), 0);
        WriteText(kStatusFile, "service_changed=\"yes\"\n");
        WriteText(kStatusLockFile, "");
        WriteText("/tmp/zor/last-inode", "");
    }
    void TearDown() override { ASSERT_EQ(umount2(kRuntimeFolder, MNT_DETACH), 0); }
};

TEST_F(StatusStoreFull, GetAndRemoveThatCannotRemoveStillReturnsTheValue) {
    EXPECT_EQ(ZORGetAndRemoveHAStatus(1, 30, value_, sizeof value_), 1);
    EXPECT_STREQ(value_, "yes");
    EXPECT_EQ(ReadText(kStatusFile), "service_changed=\"yes\"\n");
    ExpectLog(
        {"ERROR zor_status(ZORGetAndRemoveHAStatus): Failed to remove key, "
         "key:service_changed"});
}

TEST_F(StatusStoreFull, RemoveThatFailsIsReported) {
    EXPECT_EQ(ZORRemoveHAStatus(1, 30), -1);
    EXPECT_EQ(ReadText(kStatusFile), "service_changed=\"yes\"\n");
    ExpectLog(
        {"ERROR zor_status(ZORRemoveHAStatusImp): Failed to remove key, "
         "key:service_changed"});
}

TEST_F(StatusStoreFull, SetThatFailsLeavesTheOldValue) {
    EXPECT_EQ(ZORSetHAStatus(1, 30, "no"), -1);
    EXPECT_EQ(ReadText(kStatusFile), "service_changed=\"yes\"\n");
    ExpectLog(
        {"ERROR zor_status(ZORSetHAStatusImp): Failed to set value of key "
         "(key:service_changed, value:no)"});
}

// --- Remove

TEST_F(StatusStore, RemoveRemovesTheLineAndNothingElse) {
    WriteText(kStatusFile, "local_role=\"1\"\nremote_role=\"2\"\n");
    EXPECT_EQ(ZORRemoveHAStatus(2, 5), 0);
    EXPECT_EQ(ReadText(kStatusFile), "remote_role=\"2\"\n");
    EXPECT_FALSE(Exists(kChangeFlag));
    ExpectLog({});
}

TEST_F(StatusStore, RemoveOfAnAbsentKeySucceeds) {
    EXPECT_EQ(ZORRemoveHAStatus(2, 5), 0);
    ExpectLog({});
}

TEST_F(StatusStore, RemoveWithoutTheLockFails) {
    HoldStatusLock();
    EXPECT_EQ(ZORRemoveHAStatus(2, 5), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    ExpectLog({"ERROR zor_status(ZORRemoveHAStatus): Failed to get file lock for ha.status"});
}

TEST_F(StatusStore, RemoveOfNoKeyIsRefused) {
    EXPECT_EQ(ZORRemoveHAStatus(1, 5), -1);
    ExpectLog({"ERROR zor_status(ZORGetStatusKey): Error: Get ha role on status role",
               "ERROR zor_status(ZORRemoveHAStatusImp): Failed to get key"});
}

}  // namespace
