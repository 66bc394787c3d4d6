#include "support/node_test.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "support/system_calls.h"

namespace fs = std::filesystem;

void WriteText(const std::string &path, const std::string &text) {
    std::ofstream file(path, std::ios::trunc | std::ios::binary);
    file << text;
    ASSERT_TRUE(file.flush()) << path;
}

// Through a stream, which takes the reading of a process that has just ended as
// an end of file; an iterator over the file would throw.
std::string ReadText(const std::string &path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

bool Exists(const std::string &path) {
    return fs::exists(fs::symlink_status(path));
}

int CountDescriptors() {
    const auto all = fs::directory_iterator("/proc/self/fd");
    return static_cast<int>(std::distance(begin(all), end(all)));
}

NodeTest::NodeTest() {
    umask(022);
    fs::remove_all(kRuntimeFolder);
    fs::create_directories("/tmp/zor/ui");
    for (const char *folder : {"/usr/keva/etc/kevazor", "/var/lib/zor"}) {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    WriteText(kKeyFile, "");
    WriteText(kSerialFile, "NODE0001\n");
    WriteText(kCustomSerialFile, "CUSTOM01\n");
    virtual_time::Start();
}

NodeTest::~NodeTest() {
    virtual_time::Stop();
    system_calls::Reset();
}

FolderInTheWay::FolderInTheWay(std::string path) : path_(std::move(path)) {
    if (Exists(path_)) fs::rename(path_, path_ + ".aside");
    fs::create_directories(path_ + "/not-empty");
}

FolderInTheWay::~FolderInTheWay() {
    fs::remove_all(path_);
    if (Exists(path_ + ".aside")) fs::rename(path_ + ".aside", path_);
}

UntouchableFile::UntouchableFile(std::string path) : path_(std::move(path)) {
    WriteText(path_, "");
    EXPECT_EQ(mount(path_.c_str(), path_.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_EQ(mount("none", path_.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr), 0);
}

UntouchableFile::~UntouchableFile() {
    umount2(path_.c_str(), MNT_DETACH);
}
