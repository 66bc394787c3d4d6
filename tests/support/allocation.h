// This program's own allocator functions, which the library under test then uses:
// the real ones, until an allocation is told to fail. What a test asks for concerns
// its own thread alone.
#pragma once

#include <cstddef>

namespace allocation {

// False in a build with the thread sanitizer, which keeps the allocator to itself.
bool CanFail();

// From now on the nth allocation fails, and with is_sticky each one after it.
void FailAt(int nth, bool is_sticky);

// No allocation fails any more. Returns how many were asked for since FailAt.
int Stop();

// Makes the next allocation of exactly this size fail. False where none can.
bool FailNextOf(size_t size);

// The test's own allocations within a call: neither counted nor failed.
class Pause {
  public:
    Pause();
    ~Pause();
    Pause(const Pause &) = delete;
    Pause &operator=(const Pause &) = delete;

  private:
    const bool was_armed_;
};

}  // namespace allocation
