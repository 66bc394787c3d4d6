// A resource lock of the library's own, released at the end of its scope. It is
// taken as ZORFileLock takes one, and reports like it, without the stream that a
// caller of the interface would keep.
#pragma once

#include <cstdint>

#include "zor_filelock.h"

class HeldLock {
  public:
    // The id is one of the table's.
    HeldLock(int32_t lockId, int32_t retries);
    ~HeldLock() { Release(); }
    HeldLock(const HeldLock &) = delete;
    HeldLock &operator=(const HeldLock &) = delete;

    bool IsHeld() const { return file_ >= 0; }

    // Before the end of the scope, where the order of what follows matters.
    void Release();

  private:
    void Close();

    int file_;
};
