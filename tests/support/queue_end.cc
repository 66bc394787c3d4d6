#include "support/queue_end.h"

#include <gtest/gtest.h>
#include <sys/ipc.h>
#include <sys/msg.h>

#include <cstring>

#include "support/node_test.h"

namespace queue_end {

namespace {

int Open(int project) {
    return msgget(ftok(kKeyFile, project), IPC_CREAT | 0600);
}

}  // namespace

void RemoveAll() {
    for (int project = 1; project <= 7; ++project) msgctl(Open(project), IPC_RMID, nullptr);
}

std::optional<ZORMgrMessage> Take(int project) {
    auto message = std::optional<ZORMgrMessage>(std::in_place);
    memset(&*message, 0, sizeof *message);
    if (msgrcv(Open(project), &*message, 32536, 0, IPC_NOWAIT) < 0) return std::nullopt;
    return message;
}

void Put(int project, const ZORMgrMessage &message, size_t size) {
    ASSERT_TRUE(TryPut(project, message, size)) << strerror(errno);
}

bool TryPut(int project, const ZORMgrMessage &message, size_t size) {
    return msgsnd(Open(project), &message, size, IPC_NOWAIT) == 0;
}

int Count(int project) {
    struct msqid_ds status = {};
    msgctl(Open(project), IPC_STAT, &status);
    return static_cast<int>(status.msg_qnum);
}

ZORMgrMessage AnswerTo(const ZORMgrMessage &request, uint32_t result, const std::string &payload) {
    ZORMgrMessage answer = {};
    answer.identity = request.identity;
    answer.kind = 1;
    answer.result = result;
    answer.commandId = request.commandId;
    answer.sendTime = request.sendTime;
    answer.payloadLength = static_cast<uint32_t>(payload.size());
    memcpy(answer.payload, payload.data(), payload.size());
    return answer;
}

}  // namespace queue_end
