// The stand-in's key/value files.

#include <kevacore.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <functional>

#include "support/node_test.h"

namespace fs = std::filesystem;

namespace {

constexpr char kFile[] = "/tmp/zor/file";
constexpr char kFormat[] = "%s=\"%s\"\n";

class KeyValueFile : public NodeTest {
  protected:
    std::string Get(const std::string &key, unsigned int size = sizeof(buffer_)) {
        memset(buffer_, '#', sizeof buffer_);
        result_ = VLIBCFileGetKeyValue(kFile, key.c_str(), buffer_, size, 0);
        return result_ > 0 ? buffer_ : "";
    }

    static int Set(const std::string &key, const std::string &value) {
        return VLIBCFileSetKeyValue(kFile, key.c_str(), value.c_str(), kFormat);
    }

    // The names in the runtime folder that are not the test's own.
    static int CountTemporaries() {
        int count = 0;
        for (const auto &entry : fs::directory_iterator(kRuntimeFolder))
            count += entry.path().extension() == ".temp";
        return count;
    }

    char buffer_[4096];
    int result_ = 0;
};

TEST_F(KeyValueFile, GetTellsFoundFromAbsent) {
    WriteText(kFile, "a=\"1\"\nempty=\"\"\nb=\"2\"\n");
    EXPECT_EQ(Get("a"), "1");
    EXPECT_EQ(Get("b"), "2");
    EXPECT_EQ(Get("empty"), "");
    EXPECT_GT(result_, 0);
    Get("c");
    EXPECT_EQ(result_, 0);
}

TEST_F(KeyValueFile, MissingFileHasNoKeys) {
    Get("a");
    EXPECT_EQ(result_, 0);
    EXPECT_EQ(VLIBCFileRemoveKey(kFile, "a"), 0);
    EXPECT_FALSE(Exists(kFile));
}

TEST_F(KeyValueFile, KeysMatchWhole) {
    WriteText(kFile, "key_long=\"1\"\nmy_key=\"2\"\nkey=\"3\"\n=\"4\"\n");
    EXPECT_EQ(Get("key"), "3");
    Get("ke");
    EXPECT_EQ(result_, 0);
    Get("key_lon");
    EXPECT_EQ(result_, 0);
}

TEST_F(KeyValueFile, SizeIncludesTheTerminator) {
    WriteText(kFile, "a=\"12345\"\n");
    EXPECT_EQ(Get("a", 4), "123");
    EXPECT_EQ(buffer_[4], '#');
    EXPECT_EQ(Get("a", 6), "12345");
    EXPECT_EQ(Get("a", 1), "");
    EXPECT_GT(result_, 0);
}

TEST_F(KeyValueFile, OddFilesAreReadWithoutHarm) {
    struct Row {
        std::string text;
        std::string value;
    };
    const Row rows[] = {
        {"a=\"1\"", "1"},                                // no final newline
        {"a=\"1\"\r\n", "1"},                            // CRLF
        {"a=1\n", "1"},                                  // no quotes
        {"a=\"say \"hi\"\"\n", "say \"hi\""},            // quotes in the value
        {"a=\"b=c\"\n", "b=c"},                          // equals sign in the value
        {"a=\"\n", "\""},                                // a lone quote
        {"a=\n", ""},                                    // nothing
        {"a=\"first\"\na=\"second\"\n", "first"},        // a duplicate
        {"\n\n\na=\"1\"\n", "1"},                        // blank lines
        {std::string("\0\0=\n", 4) + "a=\"1\"\n", "1"},  // zero bytes
        {std::string("a=\"x\0y\"\n", 8), "x"},           // a zero byte in the value
        {"no equals sign\na=\"1\"\n", "1"},
    };
    for (const Row &row : rows) {
        WriteText(kFile, row.text);
        EXPECT_EQ(Get("a"), row.value) << row.text;
        EXPECT_GT(result_, 0) << row.text;
    }
}

TEST_F(KeyValueFile, LargeFilesAreReadAndWritten) {
    std::string text;
    for (int line = 0; line < 5000; ++line) text += "key" + std::to_string(line) + "=\"v\"\n";
    WriteText(kFile, text);
    EXPECT_EQ(Get("key4999"), "v");
    EXPECT_EQ(Set("key4999", "w"), 1);
    EXPECT_EQ(Get("key4999"), "w");
    EXPECT_EQ(Get("key0"), "v");

    WriteText(kFile, "long=\"" + std::string(1 << 20, 'x') + "\"\na=\"1\"\n");
    EXPECT_EQ(Get("a"), "1");
    EXPECT_EQ(Get("long", 8), "xxxxxxx");
}

TEST_F(KeyValueFile, FileOfExactlyTheInnerBufferIsReadWhole) {
    for (const size_t size : {16383u, 16384u, 16385u}) {
        std::string text = "pad=\"" + std::string(size - 14, 'x') + "\"\na=\"1\"\n";
        text.insert(5, size - text.size(), 'x');
        ASSERT_EQ(text.size(), size);
        WriteText(kFile, text);
        EXPECT_EQ(Get("a"), "1") << size;
    }
}

TEST_F(KeyValueFile, HugeFileIsRefused) {
    WriteText(kFile, "a=\"1\"\n");
    fs::resize_file(kFile, 17 << 20);
    Get("a");
    EXPECT_LT(result_, 0);
}

TEST_F(KeyValueFile, SetAppendsOrReplacesInPlace) {
    EXPECT_EQ(Set("a", "1"), 1);
    EXPECT_EQ(Set("b", "2"), 1);
    EXPECT_EQ(Set("c", "3"), 1);
    EXPECT_EQ(Set("b", "changed"), 1);
    EXPECT_EQ(ReadText(kFile), "a=\"1\"\nb=\"changed\"\nc=\"3\"\n");
}

TEST_F(KeyValueFile, SetFinishesAnUnfinishedLine) {
    WriteText(kFile, "a=\"1\"");
    EXPECT_EQ(Set("b", "2"), 1);
    EXPECT_EQ(ReadText(kFile), "a=\"1\"\nb=\"2\"\n");
}

TEST_F(KeyValueFile, ValuesRoundTrip) {
    for (const std::string value : {"", "x", "a=b", "\"", "\"\"", "\"quoted\"", " padded ", "\\",
                                    "%s%n", "tab\there", "cr\r", "\xff\xfe", "a,b:c"}) {
        ASSERT_EQ(Set("key", value), 1) << value;
        EXPECT_EQ(Get("key"), value);
        ASSERT_EQ(Set("next", "1"), 1);
        EXPECT_EQ(Get("key"), value) << "after another write";
    }
}

TEST_F(KeyValueFile, WhatWouldCorruptTheFileIsRefused) {
    WriteText(kFile, "a=\"1\"\n");
    EXPECT_NE(Set("a", "2\nb=\"3\""), 1);
    EXPECT_NE(Set("a\nb", "2"), 1);
    EXPECT_NE(Set("a=b", "2"), 1);
    EXPECT_NE(Set("", "2"), 1);
    for (const char *format : {"%s=\"%s\"", "%s\n", "%s=%s=%s\n", "%d=%s\n", "%s\n%s\n",
                               "\n%s=%s\n", "%s=%s%%\n", "%s=%n%s\n", ""})
        EXPECT_NE(VLIBCFileSetKeyValue(kFile, "a", "2", format), 1) << format;
    EXPECT_EQ(VLIBCErrGet(), VLIBC_ERR_BAD_PARAMETER);
    EXPECT_EQ(ReadText(kFile), "a=\"1\"\n");
}

TEST_F(KeyValueFile, NullArgumentsAreRefused) {
    char value[8];
    EXPECT_LT(VLIBCFileGetKeyValue(nullptr, "a", value, 8, 0), 0);
    EXPECT_LT(VLIBCFileGetKeyValue(kFile, nullptr, value, 8, 0), 0);
    EXPECT_LT(VLIBCFileGetKeyValue(kFile, "a", nullptr, 8, 0), 0);
    EXPECT_LT(VLIBCFileGetKeyValue(kFile, "a", value, 0, 0), 0);
    EXPECT_LT(VLIBCFileSetKeyValue(nullptr, "a", "1", kFormat), 0);
    EXPECT_LT(VLIBCFileSetKeyValue(kFile, nullptr, "1", kFormat), 0);
    EXPECT_LT(VLIBCFileSetKeyValue(kFile, "a", nullptr, kFormat), 0);
    EXPECT_LT(VLIBCFileSetKeyValue(kFile, "a", "1", nullptr), 0);
    EXPECT_LT(VLIBCFileRemoveKey(nullptr, "a"), 0);
    EXPECT_LT(VLIBCFileRemoveKey(kFile, nullptr), 0);
    EXPECT_EQ(VLIBCFileCheckKeyValue(nullptr, "a", "1", 0), 0);
    EXPECT_EQ(VLIBCFileCheckKeyValue(kFile, nullptr, "1", 0), 0);
    EXPECT_EQ(VLIBCFileCheckKeyValue(kFile, "a", nullptr, 0), 0);
    EXPECT_EQ(VLIBCErrGet(), VLIBC_ERR_BAD_PARAMETER);
}

TEST_F(KeyValueFile, RemoveTakesEveryLineOfTheKey) {
    WriteText(kFile, "a=\"1\"\nb=\"2\"\na=\"3\"\n");
    EXPECT_GE(VLIBCFileRemoveKey(kFile, "a"), 0);
    EXPECT_EQ(ReadText(kFile), "b=\"2\"\n");
    EXPECT_EQ(VLIBCFileRemoveKey(kFile, "a"), 0);
    EXPECT_GE(VLIBCFileRemoveKey(kFile, "b"), 0);
    EXPECT_EQ(ReadText(kFile), "");
}

TEST_F(KeyValueFile, CheckComparesExactly) {
    WriteText(kFile, "a=\"yes\"\nb=\"\"\n");
    EXPECT_NE(VLIBCFileCheckKeyValue(kFile, "a", "yes", 0), 0);
    for (const char *value : {"ye", "yess", "Yes", ""})
        EXPECT_EQ(VLIBCFileCheckKeyValue(kFile, "a", value, 0), 0) << value;
    EXPECT_NE(VLIBCFileCheckKeyValue(kFile, "b", "", 0), 0);
    EXPECT_EQ(VLIBCFileCheckKeyValue(kFile, "c", "", 0), 0);
}

// --- What stands in place of a file

TEST_F(KeyValueFile, OnlyRegularFilesAreReadAndReplaced) {
    WriteText("/tmp/zor/target", "a=\"1\"\n");
    const auto make_link = [] { fs::create_symlink("/tmp/zor/target", kFile); };
    const auto make_pipe = [] { ASSERT_EQ(mkfifo(kFile, 0600), 0); };
    const auto make_folder = [] { fs::create_directory(kFile); };
    const auto make_zero = [] { ASSERT_EQ(mknod(kFile, S_IFCHR | 0600, makedev(1, 5)), 0); };
    const auto make_null = [] { ASSERT_EQ(mknod(kFile, S_IFCHR | 0600, makedev(1, 3)), 0); };
    for (const std::function<void()> &make :
         {std::function<void()>(make_link), std::function<void()>(make_pipe),
          std::function<void()>(make_folder), std::function<void()>(make_zero),
          std::function<void()>(make_null)}) {
        fs::remove(kFile);
        make();
        struct stat before, after;
        ASSERT_EQ(lstat(kFile, &before), 0);
        Get("a");
        EXPECT_LT(result_, 0);
        EXPECT_NE(Set("a", "2"), 1);
        EXPECT_LT(VLIBCFileRemoveKey(kFile, "a"), 0);
        ASSERT_EQ(lstat(kFile, &after), 0);
        EXPECT_EQ(before.st_ino, after.st_ino);
        EXPECT_EQ(CountTemporaries(), 0);
    }
    EXPECT_EQ(ReadText("/tmp/zor/target"), "a=\"1\"\n");
}

// --- Replacement

TEST_F(KeyValueFile, RewriteKeepsModeAndOwner) {
    WriteText(kFile, "a=\"1\"\n");
    ASSERT_EQ(chown(kFile, 12, 34), 0);
    ASSERT_EQ(chmod(kFile, 0664), 0);
    for (const mode_t mask : {0u, 077u}) {
        umask(mask);
        ASSERT_EQ(Set("a", "2"), 1);
        struct stat status;
        ASSERT_EQ(stat(kFile, &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0664u);
        EXPECT_EQ(status.st_uid, 12u);
        EXPECT_EQ(status.st_gid, 34u);
    }
}

TEST_F(KeyValueFile, NewFileCanBeWrittenByItsOwnerAlone) {
    umask(0);
    ASSERT_EQ(Set("a", "1"), 1);
    struct stat status;
    ASSERT_EQ(stat(kFile, &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644u);
}

TEST_F(KeyValueFile, EveryWriteIsANewFile) {
    ASSERT_EQ(Set("a", "1"), 1);
    struct stat before, after;
    ASSERT_EQ(stat(kFile, &before), 0);
    const std::string open_file = "/tmp/zor/same-inode";
    fs::create_hard_link(kFile, open_file);
    ASSERT_EQ(Set("a", "2"), 1);
    ASSERT_EQ(stat(kFile, &after), 0);
    EXPECT_NE(before.st_ino, after.st_ino);
    EXPECT_EQ(ReadText(open_file), "a=\"1\"\n") << "a reader of the old file sees it whole";
}

TEST_F(KeyValueFile, FullFileSystemLeavesTheOldFile) {
    ASSERT_EQ(mount("none", kRuntimeFolder, "tmpfs", 0, "size=8192"), 0);
    ASSERT_EQ(Set("a", "1"), 1);
    EXPECT_LT(Set("a", std::string(9000, 'x')), 0);
    EXPECT_EQ(ReadText(kFile), "a=\"1\"\n");
    EXPECT_EQ(CountTemporaries(), 0);
    ASSERT_EQ(Set("a", "2"), 1);
    ASSERT_EQ(mount("none", kRuntimeFolder, nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_LT(Set("a", "3"), 0);
    EXPECT_LT(VLIBCFileRemoveKey(kFile, "a"), 0);
    EXPECT_EQ(Get("a"), "2");
    umount2(kRuntimeFolder, MNT_DETACH);
}

TEST_F(KeyValueFile, MissingFolderIsAnError) {
    EXPECT_LT(VLIBCFileSetKeyValue("/tmp/zor/none/file", "a", "1", kFormat), 0);
    EXPECT_NE(VLIBCErrGet(), 0);
}

TEST_F(KeyValueFile, PathThatIsTooLongIsAnError) {
    const std::string path = "/tmp/zor/" + std::string(300, 'x');
    char value[8];
    EXPECT_LT(VLIBCFileGetKeyValue(path.c_str(), "a", value, 8, 0), 0);
    EXPECT_LT(VLIBCFileSetKeyValue(path.c_str(), "a", "1", kFormat), 0);
    const std::string longer = "/tmp/zor/" + std::string(5000, 'x');
    EXPECT_LT(VLIBCFileSetKeyValue(longer.c_str(), "a", "1", kFormat), 0);
    const std::string barely = "/tmp/zor/" + std::string(250, 'x');
    EXPECT_LT(VLIBCFileSetKeyValue(barely.c_str(), "a", "1", kFormat), 0)
        << "the temporary name does not fit";
}

TEST_F(KeyValueFile, LeftoversOfDeadProcessesAreSweptAfterAMinute) {
    const std::string dead = "/tmp/zor/.file.999999.0.temp";
    const std::string young = "/tmp/zor/.file.999998.0.temp";
    const std::string alive = "/tmp/zor/.file." + std::to_string(getpid()) + ".77.temp";
    const std::string foreign = "/tmp/zor/.something.temp";
    for (const std::string &path : {dead, young, alive, foreign}) WriteText(path, "");
    const auto old = fs::file_time_type::clock::now() - std::chrono::minutes(2);
    for (const std::string &path : {dead, alive, foreign}) fs::last_write_time(path, old);
    ASSERT_EQ(Set("a", "1"), 1);
    EXPECT_FALSE(Exists(dead));
    EXPECT_TRUE(Exists(young));
    EXPECT_TRUE(Exists(alive));
    EXPECT_TRUE(Exists(foreign));
}

TEST_F(KeyValueFile, NoDescriptorIsLeftOpen) {
    const int before = CountDescriptors();
    for (int round = 0; round < 100; ++round) {
        Set("a", std::to_string(round));
        Get("a");
        Get("b");
        VLIBCFileRemoveKey(kFile, "a");
        VLIBCFileCheckKeyValue(kFile, "a", "1", 0);
        Set("a", "x\ny");
    }
    EXPECT_EQ(CountDescriptors(), before);
}

}  // namespace
