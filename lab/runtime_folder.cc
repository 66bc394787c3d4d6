#include "runtime_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "manager_queues.h"

namespace fs = std::filesystem;

namespace {

constexpr char kFolder[] = "/tmp/zor";
constexpr char kSnapshotFolder[] = "/tmp/zor/ui";
constexpr char kPidFile[] = "/tmp/zor/lab.pid";

[[noreturn]] void Fail(const std::string &what) {
    throw std::runtime_error(what + ": " + strerror(errno));
}

int OpenNew(const char *path) {
    const int fd = open(path, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (fd < 0) Fail(std::string("cannot make ") + path);
    return fd;
}

}  // namespace

RuntimeFolder::RuntimeFolder() {
    if (const pid_t other = RunningManager())
        throw std::runtime_error("a manager runs already (process " + std::to_string(other) + ")");
    RemoveManagerQueues();  // by the key file, so before it goes
    fs::remove_all(kFolder);
    fs::create_directories(kSnapshotFolder);
    pid_file_ = OpenNew(kPidFile);
    if (flock(pid_file_, LOCK_EX | LOCK_NB) != 0) Fail(std::string("cannot lock ") + kPidFile);
    dprintf(pid_file_, "%d\n", getpid());
    close(OpenNew(kMsgQueueKeyFile));
}

RuntimeFolder::~RuntimeFolder() {
    std::error_code error;
    fs::remove_all(kFolder, error);
    if (error) fprintf(stderr, "zorlab: cannot remove %s: %s\n", kFolder, error.message().c_str());
    close(pid_file_);
}

pid_t RuntimeFolder::RunningManager() {
    const int fd = open(kPidFile, O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0) return 0;
    char text[16] = {};
    const bool is_free = flock(fd, LOCK_SH | LOCK_NB) == 0;
    const ssize_t size = read(fd, text, sizeof text - 1);
    close(fd);
    return is_free || size <= 0 ? 0 : atoi(text);
}
