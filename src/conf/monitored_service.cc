// The services that can be monitored, and which of them may be restarted.

#include <cstdio>
#include <cstring>

#include "foundation/log.h"
#include "foundation/string_list.h"
#include "zor_conf.h"
#include "zor_status.h"

const char *gMonitorServiceList[ZOR_SERVICE_COUNT] = {"samba", "iscsitrg", "ftpd", "atalk", "nfsd"};
int32_t gSkipRestart[ZOR_SERVICE_COUNT] = {1, 1, 1, 1, 0};

namespace {

constexpr char kLogModule[] = "zor_conf";
constexpr int kNoSlot = -1;

int SlotOf(const char *name) {
    for (int slot = 0; slot < ZOR_SERVICE_COUNT; ++slot) {
        if (name && gMonitorServiceList[slot] && strcmp(gMonitorServiceList[slot], name) == 0)
            return slot;
    }
    return kNoSlot;
}

}  // namespace

extern "C" {

int32_t ZORGetServiceNameList(char *buffer, uint32_t size) {
    if (!buffer || size == 0) {
        ZOR_ERROR("Bad parameer");
        return -1;
    }
    size_t length = 0;
    buffer[0] = '\0';
    for (const char *name : gMonitorServiceList) {
        if (!name || length >= size) break;
        const int added =
            snprintf(buffer + length, size - length, length == 0 ? "%s" : " %s", name);
        length += static_cast<size_t>(added);
    }
    return 0;
}

int32_t ZORIsSkipRestartService(const char *name) {
    StringList items;
    if (!items.IsAllocated()) {
        ZOR_ERROR("Failed to alloc memory in service changed");
        return 0;
    }
    char value[ZOR_CONF_MONITOR_SIZE] = {};
    if (ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_SERVICE, value, sizeof value) < 1) {
        ZOR_ERROR("Failed to read ha.conf in service changed");
        return 0;
    }
    if (value[0] == '\0') {
        ZOR_ERROR("Bad input data ha.conf:%s in service list", value);
        return 0;
    }
    if (items.Split(value, ",") < 0) {
        ZOR_ERROR("Failed to strsep in service changed");
        return 0;
    }
    const int slot = SlotOf(name);
    if (slot == kNoSlot) return 0;
    if (!items.Item(slot)) {
        ZOR_ERROR("Get null pointer when get monitor service at index: %d. on string: %s", slot,
                  value);
        return 0;
    }
    return items.IsYes(slot) ? gSkipRestart[slot] : 1;
}

}  // extern "C"
