#include "queue_limits.h"

#include <sys/msg.h>

#include <cstdio>
#include <initializer_list>

namespace {

constexpr int kMessageSize = 32536;

}  // namespace

bool CheckQueueLimits() {
    struct msginfo limits = {};
    if (msgctl(0, IPC_INFO, reinterpret_cast<struct msqid_ds *>(&limits)) < 0) {
        perror("zorlab: cannot read the queue limits");
        return false;
    }
    bool is_good = true;
    struct Limit {
        const char *name;
        int value;
        int advised;
    };
    for (const Limit &limit : {Limit{"msgmax", limits.msgmax, kMessageSize},
                               Limit{"msgmnb", limits.msgmnb, 40 * kMessageSize}}) {
        if (limit.value >= kMessageSize) continue;
        is_good = false;
        fprintf(stderr,
                "zorlab: kernel.%s is %d and must be %d or more, or no request can be sent:\n"
                "        sysctl kernel.%s=%d\n",
                limit.name, limit.value, kMessageSize, limit.name, limit.advised);
    }
    return is_good;
}
