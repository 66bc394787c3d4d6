#include "webapi/node_info.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include "foundation/log.h"
#include "foundation/text.h"
#include "webapi/remote_link.h"
#include "webapi/remote_node_state.h"
#include "webapi/ui_cache.h"
#include "webapi/ui_refresh.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

// The steps report as the function that log watchers know.
constexpr char kReporter[] = "ZORGetNodeInfo";

constexpr uint32_t kAskNodeCommand = 33;
constexpr int64_t kTimeout = 5;  // seconds
constexpr int32_t kUnknownIndex = -1;

// The first position holds node 0, the second node 1.
int32_t NodeIndex(int32_t node) {
    const int32_t type = ZORHWGetHostNodeType();
    if (type != ZOR_HOST_TYPE_FIRST && type != ZOR_HOST_TYPE_SECOND) return kUnknownIndex;
    return (type == ZOR_HOST_TYPE_SECOND) == (node == kLocalNode) ? 1 : 0;
}

// Empty when no remote node is configured.
void ReadRemoteSerial(char (&serial)[ZOR_CONF_SERIAL_SIZE]) {
    const int32_t found = ZORGetHAConf(ZOR_HOST_REMOTE, ZOR_CONF_SN, serial, sizeof serial);
    if (found < 0) ZOR_ERROR_OF(kReporter, "Failed to read passive sn!");
    if (found < 1) serial[0] = '\0';
}

// The outcome of the question to the manager.
enum class Question {
    kAnswered,
    kFailed,
    kWrongSize
};

Question AskManager(int32_t node, ZORNodeInfoAnswer *answer) {
    ZORMgrRequest request = {};
    request.commandId = kAskNodeCommand;
    request.inputData = &node;
    request.inputSize = sizeof node;
    request.wait = 1;
    request.timeout = kTimeout;
    const int32_t result = ZORSendReqToMgr(&request);
    const std::unique_ptr<void, decltype(&free)> owner(request.outputData, free);
    if (result < 0) {
        ZOR_ERROR_OF(kReporter, "Failed to command ask node info for ui with return code: %d",
                     result);
        return Question::kFailed;
    }
    if (request.outputSize != sizeof *answer || !request.outputData) {
        ZOR_ERROR_OF(kReporter, "wrongin size of return, %zd %d", sizeof *answer,
                     static_cast<int>(request.outputSize));
        return Question::kWrongSize;
    }
    memcpy(answer, request.outputData, sizeof *answer);
    answer->serial[sizeof answer->serial - 1] = '\0';
    return Question::kAnswered;
}

ZORNodeInfo DefaultInfo() {
    ZORNodeInfo info = {};
    info.nodeIndex = kUnknownIndex;
    info.replyStatusA = info.replyStatusB = ZOR_UI_STATE_UNDETERMINED;
    info.networkStatus = info.storageStatus = ZOR_UI_STATE_UNDETERMINED;
    info.nodeState = ZOR_UI_STATE_UNREACHABLE;
    return info;
}

void TakeAnswer(const ZORNodeInfoAnswer &answer, int32_t node, ZORNodeInfo *info) {
    info->nodeIndex = NodeIndex(node);
    info->role = answer.role;
    info->replyValueA = answer.valueA;
    info->replyValueB = answer.valueB;
    info->replyStatusA = answer.statusA;
    info->replyStatusB = answer.statusB;
    info->networkStatus = getNetworkStatus(node);
    info->storageStatus = getStorageStatus(node);
}

int32_t AnsweredState(const ZORNodeInfoAnswer &answer) {
    const bool isGood = answer.statusA == ZOR_UI_STATE_GOOD && answer.statusB == ZOR_UI_STATE_GOOD;
    return isGood ? ZOR_UI_STATE_GOOD : ZOR_UI_STATE_WARNING;
}

// False when nothing may be written.
bool FillLocal(ZORNodeInfo *info) {
    ZORNodeInfoAnswer answer;
    const Question question = AskManager(kLocalNode, &answer);
    if (question != Question::kAnswered) return question == Question::kFailed;
    if (ZORGetOriginalSerialNumber(info->serial, sizeof info->serial) < 0) {
        ZOR_ERROR_OF(kReporter, "Failed to get serial number");
        CopyText(info->serial, sizeof info->serial, "-");
    }
    TakeAnswer(answer, kLocalNode, info);
    info->nodeState = AnsweredState(answer);
    return true;
}

bool FillRemote(const RemoteLink &remote, const char *configuredSerial, uint32_t transition,
                ZORNodeInfo *info) {
    const bool isConfigured = configuredSerial[0] != '\0';
    info->role = isConfigured ? ZOR_ROLE_PASSIVE : ZOR_ROLE_UNKNOWN;
    info->nodeIndex = NodeIndex(kRemoteNode);
    info->nodeState = RemoteStateWithoutQuestion(remote, isConfigured, transition);
    if (info->nodeState != kAskForState) return true;
    info->nodeState = ZOR_UI_STATE_UNDETERMINED;
    ZORNodeInfoAnswer answer;
    const Question question = AskManager(kRemoteNode, &answer);
    if (question != Question::kAnswered) return question == Question::kFailed;
    TakeAnswer(answer, kRemoteNode, info);
    CopyText(info->serial, sizeof info->serial, answer.serial);
    if (!isConfigured || strcmp(answer.serial, configuredSerial) != 0)
        info->nodeState = kForeignNode;
    else if (!remote.byExpander)
        info->nodeState = kWithoutExpander;
    else
        info->nodeState = AnsweredState(answer);
    return true;
}

const char *CacheOf(int32_t node) {
    if (node == kLocalNode) return kLocalNodeCache;
    return node == kRemoteNode ? kRemoteNodeCache : nullptr;
}

}  // namespace

int32_t ZORGetNodeInfo(int32_t node) {
    const char *cache = CacheOf(node);
    if (!cache) return 0;
    const RemoteLink remote = LookAtRemote();
    char configuredSerial[ZOR_CONF_SERIAL_SIZE] = {};
    ReadRemoteSerial(configuredSerial);
    ZORNodeInfo info = DefaultInfo();
    const uint32_t transition = ZORGetRuntimeStatus().transition;
    const bool isToWrite = node == kLocalNode
                               ? FillLocal(&info)
                               : FillRemote(remote, configuredSerial, transition, &info);
    return isToWrite ? writeObject(cache, &info, sizeof info) : -1;
}

extern "C" int32_t KEVAZORGetNodeInfoCached(int32_t node, ZORNodeInfo *info, int32_t wait) {
    if (!info) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    if (ZORSendLoadUIRequest() < 0) ZOR_ERROR("Failed to send load UI request");
    memset(info->serial, 0, sizeof info->serial);
    info->replyStatusA = info->replyStatusB = ZOR_UI_STATE_UNDETERMINED;
    info->replyValueA = info->replyValueB = 0;
    info->networkStatus = info->storageStatus = info->nodeState = ZOR_UI_STATE_UNDETERMINED;
    const bool isFirst = ZORHWGetHostNodeType() == ZOR_HOST_TYPE_FIRST;
    if (node == kLocalNode) {
        info->role = ZOR_ROLE_ACTIVE;
        info->nodeIndex = isFirst ? 0 : 1;
    } else if (node == kRemoteNode) {
        info->nodeIndex = isFirst ? 1 : 0;
    }
    const int32_t result = ReadWhenFresh(CacheOf(node), info, sizeof *info, wait != 0);
    if (result > 0) info->serial[sizeof info->serial - 1] = '\0';
    return result;
}
