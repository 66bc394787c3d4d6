// A resource lock that is released at the end of its scope.
#pragma once

#include <cstdint>

#include "zor_filelock.h"

class HeldLock {
  public:
    HeldLock(int32_t lockId, int32_t retries)
        : is_held_(ZORFileLock(lockId, retries, &handle_) == 0) {}
    ~HeldLock() { Release(); }
    HeldLock(const HeldLock &) = delete;
    HeldLock &operator=(const HeldLock &) = delete;

    bool IsHeld() const { return is_held_; }

    // Before the end of the scope, where the order of what follows matters.
    void Release() {
        if (is_held_) ZORFileUnlock(&handle_);
        is_held_ = false;
    }

  private:
    FILE *handle_ = nullptr;  // before is_held_, whose initialiser fills it
    bool is_held_;
};
