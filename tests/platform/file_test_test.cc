// The stand-in's questions about files, and its touch.

#include <fcntl.h>
#include <kevacore.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <thread>

#include "support/node_test.h"

namespace fs = std::filesystem;

namespace {

using FileTest = NodeTest;

constexpr char kPath[] = "/tmp/zor/flag";

TEST_F(FileTest, ExistIsTrueOfAnything) {
    EXPECT_EQ(VLIBCFileExist(kPath), 0);
    WriteText(kPath, "");
    EXPECT_NE(VLIBCFileExist(kPath), 0);
    EXPECT_NE(VLIBCFileExist(kRuntimeFolder), 0);
    EXPECT_EQ(VLIBCFileExist(nullptr), 0);
}

TEST_F(FileTest, CheckDirIsTrueOfFolders) {
    EXPECT_NE(VLIBCFileCheckDir(kRuntimeFolder), 0);
    EXPECT_EQ(VLIBCFileCheckDir("/tmp/zor/none"), 0);
    WriteText(kPath, "");
    EXPECT_EQ(VLIBCFileCheckDir(kPath), 0);
    EXPECT_EQ(VLIBCFileCheckDir(nullptr), 0);
}

TEST_F(FileTest, TouchCreatesAnEmptyFile) {
    EXPECT_EQ(VLIBCFileTouch(kPath), 0);
    EXPECT_TRUE(Exists(kPath));
    EXPECT_EQ(ReadText(kPath), "");
}

TEST_F(FileTest, TouchKeepsContentAndInode) {
    WriteText(kPath, "content");
    const struct timespec old[2] = {{1000, 0}, {1000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, kPath, old, 0), 0);
    struct stat before, after;
    ASSERT_EQ(stat(kPath, &before), 0);
    EXPECT_EQ(VLIBCFileTouch(kPath), 0);
    ASSERT_EQ(stat(kPath, &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_GT(after.st_mtime, time(nullptr) - 60);
    EXPECT_EQ(ReadText(kPath), "content");
}

TEST_F(FileTest, TouchAndExistTakeALinkForItself) {
    fs::create_symlink("/tmp/zor/target", kPath);
    EXPECT_NE(VLIBCFileExist(kPath), 0);
    EXPECT_EQ(VLIBCFileTouch(kPath), 0);
    EXPECT_FALSE(Exists("/tmp/zor/target"));
}

TEST_F(FileTest, TouchOfAPipeReturnsAtOnce) {
    ASSERT_EQ(mkfifo(kPath, 0600), 0);
    EXPECT_EQ(VLIBCFileTouch(kPath), 0);
}

TEST_F(FileTest, TouchThatFailsIsNegative) {
    EXPECT_LT(VLIBCFileTouch("/tmp/zor/none/flag"), 0);
    EXPECT_NE(VLIBCErrGet(), 0);
    EXPECT_LT(VLIBCFileTouch(nullptr), 0);
}

TEST_F(FileTest, ErrorCodeIsThatOfTheThread) {
    VLIBCErrSetEx(42, "test", 1);
    EXPECT_EQ(VLIBCErrGet(), 42);
    int other = -1;
    std::thread([&] { other = VLIBCErrGet(); }).join();
    EXPECT_EQ(other, 0);
}

}  // namespace
