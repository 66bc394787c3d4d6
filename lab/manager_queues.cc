#include "manager_queues.h"

#include <sys/ipc.h>
#include <sys/msg.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

namespace {

constexpr int kRequestProject = 1;
constexpr int kAnswerProject = 2;
constexpr int kLastProject = 7;
constexpr size_t kSize = sizeof(ZORMgrMessage) - sizeof(ZORMgrMessage::identity);

int Open(int project, int flags) {
    const key_t key = ftok(kMsgQueueKeyFile, project);
    return key == -1 ? -1 : msgget(key, flags);
}

int OpenOrThrow(int project) {
    const int queue = Open(project, IPC_CREAT | 0600);
    if (queue < 0)
        throw std::runtime_error("cannot open message queue " + std::to_string(project) + ": " +
                                 strerror(errno));
    return queue;
}

}  // namespace

void RemoveManagerQueues() {
    for (int project = kRequestProject; project <= kLastProject; ++project) {
        const int queue = Open(project, 0);
        if (queue >= 0) msgctl(queue, IPC_RMID, nullptr);
    }
}

ManagerQueues::ManagerQueues()
    : requests_(OpenOrThrow(kRequestProject)), answers_(OpenOrThrow(kAnswerProject)) {}

// A message that is too large to be one of the library's is taken off truncated,
// so that it cannot block the queue.
bool ManagerQueues::TakeRequest(ZORMgrMessage *message) {
    memset(message, 0, sizeof *message);
    return msgrcv(requests_, message, kSize, 0, IPC_NOWAIT | MSG_NOERROR) >= 0;
}

bool ManagerQueues::SendAnswer(const ZORMgrMessage &answer) {
    if (msgsnd(answers_, &answer, kSize, IPC_NOWAIT) == 0) return true;
    fprintf(stderr, "zorlab: cannot answer command %u: %s\n", answer.commandId, strerror(errno));
    return false;
}
