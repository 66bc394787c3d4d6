// Items for the remote node, handed to the manager, who forwards them.

#include <cstring>

#include "core/request_sender.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "zor_core.h"

namespace {

constexpr char kLogModule[] = "zor_core";

constexpr uint32_t kSendLogCommand = 34;
constexpr uint32_t kSendBuzzerOffCommand = 36;
constexpr uint32_t kSendNotifyCommand = 52;

constexpr size_t kBuzzerOffSize = 32;

}  // namespace

extern "C" {

int32_t KEVAZORSendLogToRemote(ZORLogRecord record) {
    if (SendCommand(kSendLogCommand, &record, sizeof record) != 0) {
        ZOR_ERROR("Failed to send request: %d", static_cast<int>(kSendLogCommand));
        return -1;
    }
    return 0;
}

int32_t KEVAZORSendNotifyDataToRemote(const ZORNotifyRecord *record) {
    if (!record) return -1;
    if (SendCommand(kSendNotifyCommand, record, sizeof *record) != 0) {
        ZOR_ERROR("Failed to send request: %d", static_cast<int>(kSendNotifyCommand));
        return -1;
    }
    return 0;
}

int32_t KEVAZORSendBuzzerOffCfgToRemote(void) {
    char value[kBuzzerOffSize] = {};
    if (VLIBCFileGetKeyValue(kSystemConfFile, "buzzeroffcfg", value, sizeof value, 0) < 1 ||
        value[0] == '\0') {
        ZOR_ERROR("Failed to get buzzeroffcfg from kevainfo.conf");
        return -1;
    }
    const auto length = static_cast<uint32_t>(strnlen(value, sizeof value));
    if (SendCommand(kSendBuzzerOffCommand, value, length) != 0) {
        ZOR_ERROR("Failed to send request: %d", static_cast<int>(kSendBuzzerOffCommand));
        return -1;
    }
    return 0;
}

}  // extern "C"
