// How a message identity is made up.
#pragma once

#include <cstdint>

constexpr int kThreadIdBits = 20;
constexpr int64_t kMaxThreadId = 0x100000;        // MAXTID; itself allowed
constexpr int64_t kTimeCodeMask = 0x7ffffffffff;  // 43 bits
