// The state of the enclosures, in three words.

#include "foundation/log.h"
#include "foundation/string_list.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

void SetParts(int32_t state, ZOREnclosureStatus *record) {
    record->powerStatus = record->fanStatus = state;
}

}  // namespace

extern "C" int32_t KEVAZORGetEnclosure(ZOREnclosureStatus *record) {
    if (!record) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    if (ZORGetLocalRole() != ZOR_ROLE_ACTIVE) {
        ZOR_ERROR("This function only support active.");
        SetParts(ZOR_UI_STATE_UNDETERMINED, record);
        return -1;
    }
    SetParts(ZOR_UI_STATE_GOOD, record);
    char failed[144] = {};
    const int32_t found =
        ZORGetHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_FAILED_ENC_HARDWARE, failed, sizeof failed);
    if (found < 0) {
        ZOR_ERROR("Failed to get ha status of failed enc hardware");
        SetParts(ZOR_UI_STATE_UNDETERMINED, record);
        return -1;
    }
    // Without a list nothing is known, which is not normal.
    if (found == 0) {
        SetParts(ZOR_UI_STATE_UNDETERMINED, record);
        record->status = ZOR_UI_STATE_WARNING;
        return 0;
    }
    StringList words;
    if (!words.IsAllocated()) {
        ZOR_ERROR("Failed to alloc memory");
        SetParts(ZOR_UI_STATE_UNDETERMINED, record);
        return -1;
    }
    if (words.Split(failed, ",") < 0) {
        ZOR_ERROR("Failed to str sep");
        SetParts(ZOR_UI_STATE_UNDETERMINED, record);
        return -1;
    }
    if (words.Has("fan")) record->fanStatus = ZOR_UI_STATE_WARNING;
    if (words.Has("power")) record->powerStatus = ZOR_UI_STATE_WARNING;
    const bool isGood =
        record->fanStatus == ZOR_UI_STATE_GOOD && record->powerStatus == ZOR_UI_STATE_GOOD;
    record->status = isGood ? ZOR_UI_STATE_GOOD : ZOR_UI_STATE_WARNING;
    return 0;
}
