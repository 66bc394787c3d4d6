// The list of the disks that hold the system partition.

#include "foundation/log.h"
#include "kevacore.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_core";
constexpr uint32_t kTextSize = 3060;

}  // namespace

extern "C" {

int32_t KEVAZORSetSystemDiskList(const VLIBCSzList *list) {
    if (ZORGetLocalRole() != ZOR_ROLE_ACTIVE) {
        ZOR_ERROR("Set system disk list only support on active");
        return -1;
    }
    char text[kTextSize] = {};
    if (VLIBCSzListDump2Str(list, ",", text, sizeof text) < 0) {
        ZOR_ERROR("Fail to dump list to string");
        return -1;
    }
    if (ZORSetHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_SYSTEM_DISK_LIST, text) < 0) {
        ZOR_ERROR("Failed to set ha status for sys disk list: %s", text);
        return -1;
    }
    return 0;
}

int32_t KEVAZORGetSystemDiskList(VLIBCSzList **list) {
    if (ZORGetLocalRole() != ZOR_ROLE_ACTIVE) {
        ZOR_ERROR("Get system disk list only support on active");
        return -1;
    }
    if (!list || !*list) {
        ZOR_ERROR("Bad parameter. input list is null or not alloc");
        return -1;
    }
    char text[kTextSize] = {};
    if (ZORGetHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_SYSTEM_DISK_LIST, text, sizeof text) < 1) {
        ZOR_ERROR("Failed to get disk list");
        return -1;
    }
    if (text[0] == '\0') {
        ZOR_ERROR("Get empty string from sys disk list");
        return -1;
    }
    if (VLIBCStrSep(text, ",", list) > 0) return 0;
    ZOR_ERROR("VLIBCStrSep failed, input string: %s", text);
    return -1;
}

}  // extern "C"
