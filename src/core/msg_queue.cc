#include "core/msg_queue.h"

#include <sys/ipc.h>
#include <sys/msg.h>

#include <cerrno>
#include <cstring>

#include "foundation/log.h"
#include "foundation/paths.h"

namespace {

constexpr char kLogModule[] = "zor_core";

}  // namespace

int OpenMsgQueue(int project, const char *reporter) {
    const key_t key = ftok(kMsgQueueKeyFile, project);
    if (key == -1) {
        ZOR_ERROR_OF(reporter, "Failed to get key (%d)", project);
        return -1;
    }
    const int queue = msgget(key, IPC_CREAT | 0600);
    if (queue < 0) ZOR_ERROR_OF(reporter, "Failed to get message queue: %s", strerror(errno));
    return queue;
}

bool SendMsg(int queue, const ZORMgrMessage &message) {
    return msgsnd(queue, &message, kMsgQueueSize, IPC_NOWAIT) == 0;
}

bool ReceiveMsg(int queue, int64_t type, ZORMgrMessage *message) {
    const ssize_t size = msgrcv(queue, message, kMsgQueueSize, type, IPC_NOWAIT);
    if (size < 0) return false;
    const size_t received = sizeof message->identity + static_cast<size_t>(size);
    memset(reinterpret_cast<char *>(message) + received, 0, sizeof *message - received);
    return true;
}

bool IsMsgQueueEmpty(int queue) {
    struct msqid_ds status;
    return msgctl(queue, IPC_STAT, &status) == 0 && status.msg_qnum == 0;
}
