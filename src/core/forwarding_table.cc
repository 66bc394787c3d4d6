// What is forwarded to the remote node: the log events that carry the serial
// number of their node, and the notifications.

#include <algorithm>
#include <cstring>
#include <iterator>

#include "kevacore.h"
#include "zor_core.h"

const uint64_t gAppendLogEventList[ZOR_APPEND_LOG_EVENT_COUNT] = {
    0x1110000A, 0x1110000F, 0x11100011, 0x11600004, 0x11600005, 0x11600006, 0x11600007,
    0x11600063, 0x11600064, 0x11600065, 0x11600066, 0x13300045, 0x1110000B, 0x11600040,
    0x11600046, 0x11600047, 0x1160004E, 0x11600084, 0x1160008A, 0x1160008B, 0x11600098,
    0x11600099, 0x1160009A, 0x12800005, 0x12800006, 0x13300056, 0x11100007, 0x11100008,
    0x11600048, 0x11600050, 0x116000AD, 0x116000AE, 0x11600051, 0x11600052,
};

const char *const gSendNotifyTagList[ZOR_SEND_NOTIFY_TAG_COUNT] = {
    "EboxFanResume",
    "EboxFanStop",
    "InternalFanResume",
    "InternalFanStop",
    "CpuFanResume",
    "CpuFanStop",
    "OverheatShutdownCPU",
    "OverheatShutdownThermal",
    "RedundantPowerStopProvide",
    "RedundantPowerRecoveredProvide",
    "EboxLinkResume",
    "EboxLinkFail",
};

namespace {

constexpr char kSource[] = "zor_core";

// A whole range of events, which the table does not repeat.
constexpr uint64_t kFirstOfRange = 0x13450001;
constexpr uint64_t kLastOfRange = 0x13450022;

}  // namespace

extern "C" {

int32_t ZORShouldAppendSNToLog(uint64_t event) {
    if (event >= kFirstOfRange && event <= kLastOfRange) return 1;
    const auto *const end = std::end(gAppendLogEventList);
    return std::find(std::begin(gAppendLogEventList), end, event) != end ? 1 : 0;
}

int32_t KEVAZORShouldAppendSNToLog(uint64_t event) {
    return ZORShouldAppendSNToLog(event);
}

int32_t ZORShouldSendNotifyDataToRemote(const char *tag) {
    if (!tag) {
        VLIBCErrSetEx(VLIBC_ERR_BAD_PARAMETER, kSource, __LINE__);
        return 0;
    }
    return std::any_of(std::begin(gSendNotifyTagList), std::end(gSendNotifyTagList),
                       [tag](const char *entry) { return strcmp(entry, tag) == 0; })
               ? 1
               : 0;
}

int32_t KEVAZORShouldSendNotifyDataToRemote(const char *tag) {
    return ZORShouldSendNotifyDataToRemote(tag);
}

}  // extern "C"
