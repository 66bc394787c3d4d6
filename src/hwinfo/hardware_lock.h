// The hardware lock, held for a scope. Every access to the hardware file is
// under it.
#pragma once

#include <cstdio>

#include "zor_filelock.h"

class HardwareLock {
  public:
    HardwareLock() {
        if (ZORHWWaitAndLock(&handle_) != 0) handle_ = nullptr;
    }
    ~HardwareLock() {
        if (handle_) ZORHWUnlock(&handle_);
    }
    HardwareLock(const HardwareLock &) = delete;
    HardwareLock &operator=(const HardwareLock &) = delete;

    bool IsHeld() const { return handle_ != nullptr; }

    // False when it could not be released.
    bool Release() { return ZORHWUnlock(&handle_) == 0; }

  private:
    FILE *handle_ = nullptr;
};
