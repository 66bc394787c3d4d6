// Plays a manager whose answers are anything: any size, any header, any payload.
//
// The first four bytes are the size that the queue is told; the rest lies over the
// message, whose identity and send time are right when the fifth byte is even.

#include <sys/ipc.h>
#include <sys/msg.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "fuzz/no_waiting.h"
#include "fuzz/require.h"
#include "support/node_files.h"
#include "zor_core.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kKeyFile[] = "/tmp/zor/.msg_queue_key_file";
constexpr size_t kMessageSize = 32536;  // without the identity

std::string input;

int Queue(int project) {
    return msgget(ftok(kKeyFile, project), IPC_CREAT | 0600);
}

bool Take(int project, ZORMgrMessage *message) {
    return msgrcv(Queue(project), message, kMessageSize, 0, IPC_NOWAIT) >= 0;
}

void Answer() {
    static ZORMgrMessage request;
    static ZORMgrMessage answer;
    memset(&request, 0, sizeof request);
    if (!Take(1, &request)) return;
    memset(&answer, 0, sizeof answer);
    uint32_t size = 0;
    memcpy(&size, input.data(), sizeof size);
    memcpy(&answer, input.data() + 4, std::min(input.size() - 4, sizeof answer));
    if (input[4] % 2 == 0) {
        answer.identity = request.identity;
        answer.sendTime = request.sendTime;
        answer.commandId = request.commandId;
    }
    if (answer.identity <= 0) answer.identity = 1;
    msgsnd(Queue(2), &answer, size % (kMessageSize + 1), IPC_NOWAIT);
}

void Send() {
    ZORMgrRequest request = {};
    request.commandId = 17;
    request.wait = 1;
    request.timeout = 3;
    ZORSendReqToMgr(&request);
    Require((request.outputData != nullptr) <=
            (request.outputSize > 0 && request.outputSize <= sizeof(ZORMgrMessage::payload)));
    // Every byte of the answer is the caller's.
    const auto *const bytes = static_cast<const unsigned char *>(request.outputData);
    unsigned sum = 0;
    for (uint32_t at = 0; bytes && at < request.outputSize; ++at) sum += bytes[at];
    free(request.outputData);
    Require(sum <= 255u * sizeof(ZORMgrMessage::payload));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 5) return 0;
    RequirePrivateNode();
    input.assign(reinterpret_cast<const char *>(data), size);
    WriteNodeFile(kKeyFile, "");
    WriteNodeFile("/tmp/zor/ha.status", "local_role=\"1\"\nis_local_handler_ready=\"yes\"\n");
    WriteNodeFile("/tmp/zor/ui/.keep", "");
    DuringSleep() = Answer;
    Send();
    const auto halt = std::make_unique<ZORHaltCheck>();
    KEVAZORCheckHaltOpt(3, halt.get(), 1);
    ZORUILoadUI(ZOR_UI_LOCAL_NODE);
    static ZORMgrMessage left;
    for (const int project : {1, 2}) {
        while (Take(project, &left)) {
        }
    }
    return 0;
}
