// The priorities of the calling process.

#include <sys/resource.h>
#include <sys/syscall.h>
#include <syslog.h>
#include <unistd.h>

#include "kevacore.h"
#include "zor_core.h"

namespace {

constexpr char kSource[] = "zor_core";
constexpr int kIoPriorityOfProcess = 1;

}  // namespace

// The lines are in a short form of their own, without the usual prefix.
extern "C" int32_t ZORSetPriority(int32_t nice, int32_t ioPriority, int32_t oomScore) {
    int32_t result = 0;
    if (setpriority(PRIO_PROCESS, 0, nice) != 0) {
        syslog(LOG_ERR, "%s:%d Failed to set cpu priority", kSource, __LINE__);
        result = -1;
    }
    if (syscall(SYS_ioprio_set, kIoPriorityOfProcess, getpid(), ioPriority) != 0) {
        syslog(LOG_ERR, "%s:%d Failed to set io priority", kSource, __LINE__);
        result = -1;
    }
    if (VLIBCProcOomScoreSet(oomScore) != 0) {
        syslog(LOG_ERR, "%s:%d Failed to set oom priority", kSource, __LINE__);
        return -1;
    }
    return result;
}
