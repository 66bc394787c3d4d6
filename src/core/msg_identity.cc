// The identity of a thread's messages: the hour since boot and the thread id.

#include <sys/sysinfo.h>
#include <unistd.h>

#include "core/msg_identity.h"
#include "foundation/log.h"
#include "zor_core.h"

namespace {

constexpr char kLogModule[] = "zor_core";
constexpr int64_t kSecondsPerHour = 3600;

}  // namespace

extern "C" {

int64_t ZORGetTimeCode(void) {
    struct sysinfo info = {};
    if (sysinfo(&info) != 0) {
        ZOR_ERROR("Failed to get sysinfo");
        info.uptime = 0;
    }
    return (info.uptime / kSecondsPerHour + 1) & kTimeCodeMask;
}

int64_t ZORGetMsgIdenticalID(void) {
    const int64_t timeCode = ZORGetTimeCode();
    const long thread = gettid();
    if (thread > kMaxThreadId) {
        ZOR_ERROR("Thread id(%ld) > MAXTID(%ld)", thread, static_cast<long>(kMaxThreadId));
        return -1;
    }
    if (timeCode < 0) {
        ZOR_ERROR("Get bad time code %ld", static_cast<long>(timeCode));
        return -1;
    }
    return timeCode << kThreadIdBits | thread;
}

}  // extern "C"
