// Taking the messages of earlier requesters off the manager's queues.

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>

#include "core/heap_message.h"
#include "core/msg_identity.h"
#include "core/msg_queue.h"
#include "foundation/log.h"
#include "foundation/pause.h"
#include "zor_core.h"

namespace {

constexpr char kLogModule[] = "zor_core";
constexpr unsigned kDropPauseMs = 5;
constexpr int64_t kThreadIdMask = (int64_t{1} << kThreadIdBits) - 1;

// What is left to be taken off one queue.
struct Cleaning {
    int project;
    int queue;
    int64_t firstType;  // of the given hour
    int dropped;
};

void logMsg(int project, const ZORMgrMessage &message) {
    struct tm sent = {};
    const time_t sendTime = message.sendTime;
    localtime_r(&sendTime, &sent);
    ZOR_ERROR(
        "DROP MSG IN QUEUE(%d), Process: %.64s, pid: %ld, cmd: %d time: %d:%2d:%2d:%2d(d,h,m,s)",
        project, message.processName, static_cast<long>(message.identity & kThreadIdMask),
        static_cast<int>(message.commandId), sent.tm_mday, sent.tm_hour, sent.tm_min, sent.tm_sec);
}

bool HasNoMore() {
    return errno == ENOMSG || errno == EAGAIN;
}

void Drop(Cleaning *cleaning, const ZORMgrMessage &message) {
    logMsg(cleaning->project, message);
    PauseMilliseconds(kDropPauseMs);
    ++cleaning->dropped;
}

// Drops every message of the hour and of those before it. False with errno
// when a receive failed.
bool DropUpToHour(Cleaning *cleaning, ZORMgrMessage *message) {
    // A negative type selects every type up to its amount.
    const int64_t upToHour = -(cleaning->firstType + kMaxThreadId);
    while (ReceiveMsg(cleaning->queue, upToHour, message)) Drop(cleaning, *message);
    return HasNoMore();
}

// Drops the messages of one hour, thread id by thread id. An empty queue has
// none, and is not asked a million times.
bool DropOfHour(Cleaning *cleaning, ZORMgrMessage *message) {
    if (IsMsgQueueEmpty(cleaning->queue)) return true;
    for (int64_t thread = 0; thread <= kThreadIdMask; ++thread) {
        if (ReceiveMsg(cleaning->queue, cleaning->firstType | thread, message))
            Drop(cleaning, *message);
        else if (!HasNoMore())
            return false;
    }
    return true;
}

int32_t CleanMsgQueue(int project, int64_t timeCode) {
    const int queue = OpenMsgQueue(project, __func__);
    if (queue < 0) return -1;
    const HeapMessage message = NewHeapMessage();
    if (!message) {
        ZOR_ERROR("Failed to calloc");
        return -1;
    }
    Cleaning cleaning = {project, queue, timeCode << kThreadIdBits, 0};
    const bool isReached = ZORGetMsgIdenticalID() >= cleaning.firstType;
    const bool isClean =
        isReached ? DropUpToHour(&cleaning, message.get()) : DropOfHour(&cleaning, message.get());
    if (!isClean) ZOR_ERROR("Failed to receive message from message queue: %s", strerror(errno));
    if (cleaning.dropped > 0) ZOR_ERROR("Clean %d msgs on queue %d", cleaning.dropped, project);
    return isClean ? 0 : -1;
}

}  // namespace

extern "C" int32_t ZORCleanAllMsgQueue(int64_t timeCode) {
    // Unsigned: a negative code would select the messages of every requester.
    if (static_cast<uint64_t>(timeCode) > kTimeCodeMask) {
        ZOR_ERROR("Bad paramter, %ld", static_cast<long>(timeCode));
        return -1;
    }
    for (int project = kRequestProject; project <= kLastProject; ++project) {
        if (CleanMsgQueue(project, timeCode) != 0) ZOR_ERROR("Clean msgqueue: %d Failed.", project);
    }
    return 0;
}
