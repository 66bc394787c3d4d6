#include "queue_state.h"

#include <sys/ipc.h>
#include <sys/msg.h>

namespace {

constexpr char kKeyFile[] = "/tmp/zor/.msg_queue_key_file";

}  // namespace

std::vector<QueueState> ReadQueues() {
    std::vector<QueueState> queues;
    for (int project = 1; project <= kMessageQueues; ++project) {
        const key_t key = ftok(kKeyFile, project);
        if (key == -1) return {};
        QueueState state = {project, false, 0, 0, 0};
        struct msqid_ds status;
        const int queue = msgget(key, 0);
        if (queue >= 0 && msgctl(queue, IPC_STAT, &status) == 0)
            state = {project, true, status.msg_qnum, status.__msg_cbytes, status.msg_qbytes};
        queues.push_back(state);
    }
    return queues;
}

QueueLimits ReadQueueLimits() {
    struct msginfo limits = {};
    if (msgctl(0, IPC_INFO, reinterpret_cast<struct msqid_ds *>(&limits)) < 0) return {0, 0};
    return {limits.msgmax, limits.msgmnb};
}
