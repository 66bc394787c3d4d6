// Who holds a lock file.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

struct LockHolder {
    pid_t process;
    std::string program;  // empty when it cannot be told
};

// The process that holds an exclusive lock on the file; nothing when it is free
// or not there.
std::optional<LockHolder> FindLockHolder(const std::string &path);

// "process 12 (zorctl)".
std::string Describe(const LockHolder &holder);
