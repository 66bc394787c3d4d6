#include "lock_holder.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cstdio>
#include <fstream>

namespace {

constexpr char kLockTable[] = "/proc/locks";

std::string ProgramOf(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

}  // namespace

std::optional<LockHolder> FindLockHolder(const std::string &path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) return std::nullopt;
    std::ifstream table(kLockTable);
    for (std::string line; std::getline(table, line);) {
        int process;
        unsigned int device_major, device_minor;
        unsigned long inode;
        if (sscanf(line.c_str(), "%*d: FLOCK %*s WRITE %d %x:%x:%lu", &process, &device_major,
                   &device_minor, &inode) != 4)
            continue;
        if (inode == status.st_ino && device_major == major(status.st_dev) &&
            device_minor == minor(status.st_dev))
            return LockHolder{process, ProgramOf(process)};
    }
    return std::nullopt;
}

std::string Describe(const LockHolder &holder) {
    return "process " + std::to_string(holder.process) +
           (holder.program.empty() ? "" : " (" + holder.program + ")");
}
