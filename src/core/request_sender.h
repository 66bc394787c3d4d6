// A request of which only the result counts.
#pragma once

#include <cstdint>

// Sends a command and frees what is answered. payload may be null; the time-out
// in seconds matters only when the answer is waited for. The result of
// ZORSendReqToMgr.
int32_t SendCommand(uint32_t command, const void *payload, uint32_t size);
int32_t SendCommandAndWait(uint32_t command, const void *payload, uint32_t size, int64_t timeout);
