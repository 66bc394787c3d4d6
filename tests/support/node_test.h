// The fixture of the tests: a node whose manager has just started, a listener
// behind /dev/log, and time that does not pass.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/log_listener.h"
#include "support/virtual_time.h"

using Lines = std::vector<std::string>;

constexpr char kRuntimeFolder[] = "/tmp/zor";
constexpr char kStatusFile[] = "/tmp/zor/ha.status";
constexpr char kStatusLockFile[] = "/tmp/zor/.zor.ha.status.lock";
constexpr char kConfFile[] = "/usr/keva/etc/kevazor/ha.conf";
constexpr char kConfLockFile[] = "/tmp/zor/.zor.ha.conf.lock";
constexpr char kKeyFile[] = "/tmp/zor/.msg_queue_key_file";
constexpr char kSerialFile[] = "/proc/sys/kernel/keva_serial";
constexpr char kCustomSerialFile[] = "/proc/sys/kernel/keva_custom_serial";

void WriteText(const std::string &path, const std::string &text);

// Empty when the file is not there.
std::string ReadText(const std::string &path);

bool Exists(const std::string &path);

// The number of open descriptors of this process.
int CountDescriptors();

class NodeTest : public testing::Test {
  protected:
    NodeTest();
    ~NodeTest() override;

    // Fails unless exactly these lines came since the last call.
    void ExpectLog(const Lines &expected) { EXPECT_EQ(log_.Take(), expected); }

    LogListener log_;
};

// Puts a folder in the way of a file, so that every operation on it fails, and
// puts the file back.
class FolderInTheWay {
  public:
    explicit FolderInTheWay(std::string path);
    ~FolderInTheWay();

  private:
    std::string path_;
};

// Makes a file that cannot be touched or removed.
class UntouchableFile {
  public:
    explicit UntouchableFile(std::string path);
    ~UntouchableFile();

  private:
    std::string path_;
};
