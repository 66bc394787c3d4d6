// The resource locks.

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>

#include "support/node_test.h"
#include "zor_filelock.h"

namespace fs = std::filesystem;

namespace {

struct LockRow {
    int32_t id;
    const char *path;
};

constexpr LockRow kLocks[] = {
    {1, "/tmp/zor/.zor.ha.status.lock"},
    {0, "/tmp/zor/.zor.ha.conf.lock"},
    {2, "/tmp/zor/.zor.ha.hwinfo.lock"},
    {3, "/tmp/zor/.zor.adjust.sys.disk.lock"},
    {5, "/tmp/zor/.zor.boot.procedure.lock"},
    {6, "/tmp/zor/.zor.boot.update.daemon.file.lock"},
    {7, "/tmp/zor/.zor.boot.receive.daemon.file.lock"},
    {8, "/tmp/zor/ui/.zor.lock.load.ui.zorinfo"},
    {9, "/tmp/zor/ui/.zor.lock.load.ui.zorlocalnode"},
    {10, "/tmp/zor/ui/.zor.lock.load.ui.zorremotenode"},
    {11, "/tmp/zor/.zor.lock.upgrade.bios"},
    {12, "/tmp/zor/.zor.check.healthy.status.lock"},
};

class FileLock : public NodeTest {
  protected:
    FILE *handle_ = nullptr;
    FILE *other_ = nullptr;

    ~FileLock() override {
        if (handle_) fclose(handle_);
        if (other_) fclose(other_);
    }
};

TEST_F(FileLock, TableHasTheRowsInTheirOrder) {
    ASSERT_EQ(std::size(rgsaalckList), std::size(kLocks));
    for (size_t row = 0; row < std::size(kLocks); ++row) {
        EXPECT_EQ(rgsaalckList[row].id, kLocks[row].id) << row;
        EXPECT_STREQ(rgsaalckList[row].path, kLocks[row].path) << row;
    }
    EXPECT_EQ(sizeof(ZORFileLockEntry), 2 * sizeof(void *));
}

TEST_F(FileLock, EachIdLocksItsOwnFile) {
    for (const LockRow &row : kLocks) {
        ASSERT_EQ(ZORFileLock(row.id, 0, &handle_), 0) << row.path;
        struct stat opened, named;
        ASSERT_EQ(fstat(fileno(handle_), &opened), 0);
        ASSERT_EQ(stat(row.path, &named), 0) << row.path;
        EXPECT_EQ(opened.st_ino, named.st_ino) << row.path;
        EXPECT_EQ(ZORFileUnlock(&handle_), 0);
        EXPECT_TRUE(Exists(row.path)) << "lock files stay";
    }
    ExpectLog({});
}

TEST_F(FileLock, UnknownIdsAreRefused) {
    for (const int32_t id : {4, 13, -1}) {
        EXPECT_EQ(ZORFileLock(id, 0, &handle_), -1);
        EXPECT_EQ(handle_, nullptr);
        ExpectLog(
            {"ERROR zor_filelock(ZORFileLock): Error file lock type : " + std::to_string(id)});
    }
}

TEST_F(FileLock, UnknownIdClosesAStreamThatIsHeld) {
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    EXPECT_EQ(ZORFileLock(4, 0, &handle_), -1);
    EXPECT_EQ(handle_, nullptr);
    EXPECT_EQ(ZORFileLock(1, 0, &other_), 0) << "the earlier lock is gone with its stream";
}

TEST_F(FileLock, StreamStillInTheHandleIsClosedFirst) {
    const int before = CountDescriptors();
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    EXPECT_EQ(CountDescriptors(), before + 1);
}

TEST_F(FileLock, NullHandleIsRefused) {
    EXPECT_EQ(ZORFileLock(1, 0, nullptr), -1);
    ExpectLog({"ERROR zor_filelock(ZORFileLock): Error parameter"});
}

TEST_F(FileLock, FileThatCannotBeOpenedIsReported) {
    fs::remove_all(kRuntimeFolder);
    EXPECT_EQ(ZORFileLock(1, 3, &handle_), -1);
    EXPECT_EQ(handle_, nullptr);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    ExpectLog(
        {"ERROR zor_filelock(ZORFileLock): failed to fopen /tmp/zor/.zor.ha.status.lock, "
         "errno=No such file or directory"});
}

TEST_F(FileLock, ZeroRetriesOnHeldLockFailsAtOnceWithoutLogging) {
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    EXPECT_EQ(ZORFileLock(1, 0, &other_), -1);
    EXPECT_EQ(other_, nullptr);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    ExpectLog({});
}

TEST_F(FileLock, RetriesAreWholeSecondsBetweenAttempts) {
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    for (const int32_t retries : {1, 2, 10}) {
        virtual_time::Start();
        EXPECT_EQ(ZORFileLock(1, retries, &other_), -1);
        EXPECT_EQ(virtual_time::Sleeps(), retries);
        EXPECT_EQ(virtual_time::SleptMilliseconds(), retries * 1000);
    }
    ExpectLog({});
}

TEST_F(FileLock, NegativeRetriesAreASingleTry) {
    EXPECT_EQ(ZORFileLock(1, -5, &handle_), 0);
    EXPECT_EQ(ZORFileLock(1, -5, &other_), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
}

TEST_F(FileLock, LockReleasedWhileWaitingIsTaken) {
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    virtual_time::Start([this](int sleep) {
        if (sleep == 2) ZORFileUnlock(&handle_);
    });
    EXPECT_EQ(ZORFileLock(1, 10, &other_), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 3);
    EXPECT_NE(other_, nullptr);
}

TEST_F(FileLock, TwoRetriesTakeTwoSecondsInRealTime) {
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    virtual_time::Stop();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ZORFileLock(1, 2, &other_), -1);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_GE(taken.count(), 2.0);
    EXPECT_LT(taken.count(), 3.0);
}

TEST_F(FileLock, ZeroRetriesTakeNoRealTime) {
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    virtual_time::Stop();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ZORFileLock(1, 0, &other_), -1);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900));
}

TEST_F(FileLock, UnlockClosesTheStreamAndNullsTheHandle) {
    const int before = CountDescriptors();
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    EXPECT_EQ(ZORFileUnlock(&handle_), 0);
    EXPECT_EQ(handle_, nullptr);
    EXPECT_EQ(CountDescriptors(), before);
    EXPECT_EQ(ZORFileLock(1, 0, &other_), 0);
}

TEST_F(FileLock, UnlockOfNothingFailsSilently) {
    EXPECT_EQ(ZORFileUnlock(nullptr), -1);
    EXPECT_EQ(ZORFileUnlock(&handle_), -1);
    ExpectLog({});
}

TEST_F(FileLock, FailedUnlockIsReportedAndStillCloses) {
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    const auto stream = reinterpret_cast<unsigned long>(handle_);
    close(fileno(handle_));
    char expected[128];
    snprintf(expected, sizeof expected,
             "ERROR zor_filelock(ZORFileUnlock): failed to unlock, file pointer:%lx errno=%s",
             stream, strerror(EBADF));
    EXPECT_EQ(ZORFileUnlock(&handle_), 0);
    EXPECT_EQ(handle_, nullptr);
    ExpectLog({expected});
}

TEST_F(FileLock, ForcedUnlockLetsTheNextLockerInBesideTheHolder) {
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    EXPECT_EQ(ZORForceFileUnlock(1), 0);
    EXPECT_FALSE(Exists(kStatusLockFile));
    EXPECT_EQ(ZORFileLock(1, 0, &other_), 0);
    EXPECT_EQ(ZORFileUnlock(&handle_), 0) << "the holder still has its nameless file";
    ExpectLog({});
}

TEST_F(FileLock, ForcedUnlockOfAnUnusedLockSucceeds) {
    EXPECT_EQ(ZORForceFileUnlock(11), 0);
    ExpectLog({});
}

TEST_F(FileLock, ForcedUnlockOfAnUnknownIdIsRefused) {
    EXPECT_EQ(ZORForceFileUnlock(4), -1);
    ExpectLog({"ERROR zor_filelock(ZORForceFileUnlock): Error file lock type : 4"});
}

TEST_F(FileLock, LockFileIsEmptied) {
    WriteText(kStatusLockFile, "left by somebody");
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    EXPECT_EQ(ReadText(kStatusLockFile), "");
}

TEST_F(FileLock, StartedProgramsDoNotInheritTheLock) {
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    EXPECT_TRUE(fcntl(fileno(handle_), F_GETFD) & FD_CLOEXEC);
}

TEST_F(FileLock, SymbolicLinkIsNotFollowed) {
    WriteText("/tmp/zor/precious", "content");
    fs::create_symlink("/tmp/zor/precious", kStatusLockFile);
    EXPECT_EQ(ZORFileLock(1, 0, &handle_), -1);
    EXPECT_EQ(ReadText("/tmp/zor/precious"), "content");
    ExpectLog(
        {"ERROR zor_filelock(ZORFileLock): failed to fopen /tmp/zor/.zor.ha.status.lock, "
         "errno=Too many levels of symbolic links"});
}

TEST_F(FileLock, PipeInPlaceOfTheFileIsAnErrorAtOnce) {
    ASSERT_EQ(mkfifo(kStatusLockFile, 0600), 0);
    EXPECT_EQ(ZORFileLock(1, 0, &handle_), -1);
    ExpectLog(
        {"ERROR zor_filelock(ZORFileLock): failed to fopen /tmp/zor/.zor.ha.status.lock, "
         "errno=Invalid argument"});
}

TEST_F(FileLock, LockFileModeFollowsTheUmask) {
    umask(077);
    ASSERT_EQ(ZORFileLock(1, 0, &handle_), 0);
    struct stat status;
    ASSERT_EQ(stat(kStatusLockFile, &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(FileLock, HardwareLockIsLockTwoWithTenRetries) {
    ASSERT_EQ(ZORFileLock(2, 0, &handle_), 0);
    EXPECT_EQ(ZORHWWaitAndLock(&other_), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    EXPECT_EQ(ZORHWUnlock(&handle_), 0);
    EXPECT_EQ(ZORHWWaitAndLock(&other_), 0);
    EXPECT_EQ(ZORHWUnlock(&other_), 0);
    EXPECT_EQ(ZORHWUnlock(&other_), -1);
    ExpectLog({});
}

TEST_F(FileLock, RaidLockIsLockThreeWithoutWaiting) {
    ASSERT_EQ(KEVAZORAdjustSystemRaidLock(&handle_, 1), 0);
    EXPECT_EQ(ZORFileLock(3, 0, &other_), -1);
    EXPECT_EQ(KEVAZORAdjustSystemRaidLock(&other_, 7), -1);
    EXPECT_EQ(other_, nullptr);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    EXPECT_EQ(KEVAZORAdjustSystemRaidLock(&handle_, 0), 0);
    EXPECT_EQ(handle_, nullptr);
    ExpectLog({});
}

TEST_F(FileLock, RaidUnlockOfNothingIsReported) {
    EXPECT_EQ(KEVAZORAdjustSystemRaidLock(&handle_, 0), -1);
    ExpectLog({"ERROR zor_filelock(KEVAZORAdjustSystemRaidLock): Failed to unlock."});
}

TEST_F(FileLock, RaidLockRefusesANullHandleSilently) {
    EXPECT_EQ(KEVAZORAdjustSystemRaidLock(nullptr, 1), -1);
    EXPECT_EQ(KEVAZORAdjustSystemRaidLock(nullptr, 0), -1);
    ExpectLog({});
}

}  // namespace
