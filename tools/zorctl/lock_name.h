// The names of the resource locks, as a person types them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// The name of a lock id; the number itself for an id without one.
std::string LockName(int32_t id);

// The lock of a name or of a number; nothing when there is none.
std::optional<int32_t> ParseLock(const std::string &text);

// The lock file of an existing lock.
const char *LockPath(int32_t id);
