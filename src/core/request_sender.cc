#include "core/request_sender.h"

#include <cstdlib>

#include "zor_core.h"

namespace {

int32_t Send(ZORMgrRequest *request) {
    const int32_t result = ZORSendReqToMgr(request);
    free(request->outputData);
    return result;
}

}  // namespace

int32_t SendCommand(uint32_t command, const void *payload, uint32_t size) {
    ZORMgrRequest request = {};
    request.commandId = command;
    request.inputData = payload;
    request.inputSize = size;
    return Send(&request);
}

int32_t SendCommandAndWait(uint32_t command, const void *payload, uint32_t size, int64_t timeout) {
    ZORMgrRequest request = {};
    request.commandId = command;
    request.inputData = payload;
    request.inputSize = size;
    request.wait = 1;
    request.timeout = timeout;
    return Send(&request);
}
