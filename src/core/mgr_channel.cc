// The road of a request: check, fill in, send, look for the answer once a
// second, cancel what timed out.

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "core/heap_message.h"
#include "core/msg_queue.h"
#include "core/process_name.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "foundation/pause.h"
#include "kevacore.h"
#include "zor_core.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_core";

constexpr uint32_t kRequestKind = 1;
constexpr uint32_t kCancelCommand = 40;
constexpr uint32_t kCancelReason = 3;

// The steps of a request report as the one function that callers know.
constexpr char kSender[] = "ZORSendReqToMgr";

bool IsChannelReady() {
    if (!VLIBCSupportDualhead()) {
        ZOR_ERROR_OF(kSender, "ZOR is not supported on this model");
        return false;
    }
    if (!VLIBCFileCheckDir(kRuntimeFolder)) {
        ZOR_NOTICE_OF(kSender,
                      "ZOR Manager is not running. Message queue is not ready for send req");
        return false;
    }
    if (!ZORIsLocalHandlerReady()) {
        ZOR_ERROR_OF(kSender, "Local handler is not ready, but ZORSendReqToMgr() is called");
        return false;
    }
    return true;
}

bool IsRequestGood(const ZORMgrRequest *request) {
    if (!request) {
        ZOR_ERROR_OF(kSender, "Bad parameter");
        return false;
    }
    const uint32_t size = request->inputSize;
    if (request->inputData && (size == 0 || size > ZOR_REQUEST_PAYLOAD_MAX)) {
        ZOR_ERROR_OF(
            kSender,
            "The input data with pointer(%lX), but size(%u) is out of bounds, command id:%u",
            reinterpret_cast<unsigned long>(request->inputData), size, request->commandId);
        return false;
    }
    return true;
}

// False when the node has no serial number.
bool FillMessage(const ZORMgrRequest &request, ZORMgrMessage *message) {
    message->identity = ZORGetMsgIdenticalID();
    message->kind = kRequestKind;
    message->wait = request.wait;
    if (ZORGetOriginalSerialNumber(message->serialNumber, sizeof message->serialNumber) < 0 ||
        message->serialNumber[0] == '\0')
        return false;
    message->commandId = request.commandId;
    if (request.inputData) {
        memcpy(message->payload, request.inputData, request.inputSize);
        message->payloadLength = request.inputSize;
    }
    getProcessName(message->processName);
    return true;
}

// Hands the payload over to the caller, also that of a refusal. False when
// memory is short.
bool TakePayload(const ZORMgrMessage &answer, ZORMgrRequest *request) {
    request->outputSize = answer.payloadLength;
    request->outputData = nullptr;
    if (answer.payloadLength == 0 || answer.payloadLength > sizeof answer.payload) return true;
    request->outputData = malloc(answer.payloadLength);
    if (!request->outputData) return false;
    memcpy(request->outputData, answer.payload, answer.payloadLength);
    return true;
}

// The result of a request that was answered.
int32_t Accept(const ZORMgrMessage &answer, ZORMgrRequest *request) {
    if (!TakePayload(answer, request)) {
        ZOR_ERROR_OF(kSender, "Failed to calloc()");
        return ZOR_REQUEST_FAILED;
    }
    const bool isDone = answer.result != 0 && answer.payloadLength <= sizeof answer.payload;
    return isDone ? ZOR_REQUEST_DONE : ZOR_REQUEST_REFUSED;
}

bool IsAnswerTo(const ZORMgrMessage &sent, const ZORMgrMessage &answer) {
    return answer.sendTime == sent.sendTime && answer.commandId == sent.commandId;
}

// Looks for the answer once a second. Answers to earlier requests of this
// thread are dropped on the way, which takes no time.
int32_t AwaitAnswer(int queue, const ZORMgrMessage &sent, ZORMgrMessage *answer,
                    ZORMgrRequest *request) {
    const int64_t timeout = request->timeout > 0 ? request->timeout : ZOR_REQUEST_DEFAULT_TIMEOUT;
    for (int64_t waited = 0;;) {
        if (ReceiveMsg(queue, sent.identity, answer)) {
            if (IsAnswerTo(sent, *answer)) return Accept(*answer, request);
            ZOR_NOTICE_OF(
                kSender,
                "Send time is differecne with receive time, May be not the same message?(%ld, %ld). CommandType(%d,%d)",
                static_cast<long>(sent.sendTime), static_cast<long>(answer->sendTime),
                static_cast<int>(sent.commandId), static_cast<int>(answer->commandId));
        } else if (errno != ENOMSG) {
            ZOR_ERROR_OF(kSender, "Failed to receive response for command type :%d",
                         static_cast<int>(request->commandId));
            return ZOR_REQUEST_FAILED;
        } else if (waited > timeout) {
            return ZOR_REQUEST_TIMED_OUT;
        } else {
            ++waited;
            PauseSeconds(1);
        }
    }
}

int32_t ZORFailbackTimeoutCommand(const ZORMgrMessage &sent) {
    ZORCancelPayload payload = {};
    payload.commandId = sent.commandId;
    payload.identity = sent.identity;
    payload.sendTime = sent.sendTime;
    payload.reason = kCancelReason;
    ZORMgrRequest request = {};
    request.commandId = kCancelCommand;
    request.inputData = &payload;
    request.inputSize = sizeof payload;
    if (ZORSendReqToMgr(&request) < 0) {
        ZOR_ERROR("Failed to send msg to queue");
        return -1;
    }
    return 0;
}

}  // namespace

extern "C" int32_t ZORSendReqToMgr(ZORMgrRequest *request) {
    if (!IsChannelReady() || !IsRequestGood(request)) return ZOR_REQUEST_FAILED;
    const HeapMessage sent = NewHeapMessage();
    const HeapMessage answer = NewHeapMessage();
    if (!sent || !answer) {
        ZOR_ERROR("Failed to calloc");
        return ZOR_REQUEST_FAILED;
    }
    const int requestQueue = OpenMsgQueue(kRequestProject, __func__);
    if (requestQueue < 0) return ZOR_REQUEST_FAILED;
    if (!FillMessage(*request, sent.get())) {
        ZOR_ERROR("Failed to get sn");
        return ZOR_REQUEST_FAILED;
    }
    sent->sendTime = time(nullptr);
    if (!SendMsg(requestQueue, *sent)) {
        ZOR_ERROR("Failed to send message: %s", strerror(errno));
        return ZOR_REQUEST_FAILED;
    }
    if (!request->wait) return ZOR_REQUEST_DONE;

    const int answerQueue = OpenMsgQueue(kAnswerProject, __func__);
    if (answerQueue < 0) return ZOR_REQUEST_FAILED;
    const int32_t result = AwaitAnswer(answerQueue, *sent, answer.get(), request);
    if (result != ZOR_REQUEST_TIMED_OUT || ZORGetCmdLockGroupID(request->commandId) < 0)
        return result;
    if (ZORFailbackTimeoutCommand(*sent) != 0) ZOR_ERROR("Failed to failback timeout command");
    return result;
}
