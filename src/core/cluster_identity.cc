// The serial numbers and MAC addresses of the cluster, from ha.conf.

#include "foundation/log.h"
#include "foundation/string_list.h"
#include "foundation/text.h"
#include "kevacore.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_core";

}  // namespace

extern "C" {

int32_t KEVAZORGetRemoteOriginalSN(char *buffer, uint32_t size) {
    return ZORGetHAConf(ZOR_HOST_REMOTE, ZOR_CONF_SN, buffer, size) == 1 ? 0 : -1;
}

int32_t KEVAZORGetSerialNumber(int32_t custom, char *buffer, uint32_t size) {
    if (!buffer || size == 0) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (!VLIBCSupportDualhead()) {
        ZOR_ERROR("This model is not dual head");
        return -1;
    }
    if (custom) {
        if (ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_SN_CUSTOM, buffer, size) >= 1) return 0;
        return ZORGetCustomSerialNumber(buffer, size) < 0 ? -1 : 0;
    }
    if (ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_SN, buffer, size) >= 1) return 0;
    ZOR_ERROR("Failed to get ha serial number from ha conf");
    if (ZORGetOriginalSerialNumber(buffer, size) < 0) {
        ZOR_ERROR("Failed to get original serial number");
        return -1;
    }
    return 0;
}

int32_t KEVAZORGetMac(int32_t index, char *buffer, uint32_t size) {
    if (!buffer || size == 0) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (!VLIBCSupportDualhead()) {
        ZOR_ERROR("This model is not dual head");
        return -1;
    }
    char value[ZOR_CONF_MAC_SIZE] = {};
    if (ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MAC_ALL, value, sizeof value) < 1) {
        ZOR_ERROR("Failed to get ha mac address from ha conf");
        return -1;
    }
    StringList addresses;
    if (!addresses.IsAllocated()) {
        ZOR_ERROR("Failed to alloc list");
        return -1;
    }
    if (addresses.Split(value, ",") < 0) {
        ZOR_ERROR("Failed to strsep");
        return -1;
    }
    const char *address = addresses.Item(index);
    if (!address) {
        ZOR_ERROR("Failed to get mac from list");
        return -1;
    }
    CopyText(buffer, size, address);
    return 0;
}

}  // extern "C"
