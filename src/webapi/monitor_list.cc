#include "webapi/monitor_list.h"

#include <cstring>

#include "foundation/log.h"
#include "foundation/string_list.h"
#include "foundation/text.h"
#include "webapi/monitored_interface.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

constexpr uint32_t kListSize = 144;

// Items of the system, which are always monitored and nowhere stored.
constexpr const char *kSystemItems[] = {"host_error", "volume_crash"};
constexpr int32_t kSystemItemCount = 2;

struct ServiceState {
    const char *word;
    int32_t state;
};

constexpr ServiceState kServiceStates[] = {{"running", 7}, {"stopped", 8}};

int32_t StateOf(const char *word) {
    for (const ServiceState &row : kServiceStates) {
        if (word && strcmp(word, row.word) == 0) return row.state;
    }
    return ZOR_UI_STATE_ERROR;
}

void Fill(bool isEnabled, const char *name, int32_t state, ZORMonitorItem *row) {
    *row = {};
    row->enabled = isEnabled ? 1 : 0;
    CopyText(row->name, sizeof row->name, name ? name : "");
    row->state = state;
}

bool AreRowsGood(const ZORMonitorItem *rows, int32_t capacity, const int32_t *count) {
    return rows && count && capacity >= 1;
}

int32_t ListSystem(ZORMonitorItem *rows, int32_t *count) {
    for (int32_t item = 0; item < kSystemItemCount; ++item)
        Fill(true, kSystemItems[item], ZOR_UI_STATE_GOOD, &rows[item]);
    *count = kSystemItemCount;
    return 0;
}

}  // namespace

int32_t ZORListMonitorService(ZORMonitorItem *rows, int32_t capacity, int32_t *count) {
    if (!AreRowsGood(rows, capacity, count)) {
        ZOR_ERROR("Bad paramter");
        return -1;
    }
    StringList choice;
    StringList states;
    if (!choice.IsAllocated() || !states.IsAllocated()) {
        ZOR_ERROR("Failed to alloc memory");
        return -1;
    }
    char choiceText[kListSize] = {};
    if (ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_SERVICE, choiceText, sizeof choiceText) <
        1) {
        ZOR_ERROR("Failed to read monitor service");
        return -1;
    }
    char stateText[kListSize] = {};
    if (ZORGetHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_MONITOR_SERVICE_STATUS, stateText,
                       sizeof stateText) < 1) {
        ZOR_ERROR("Failed to read ha.status for service status");
        return -1;
    }
    if (choice.Split(choiceText, ",") < 0 || states.Split(stateText, ",") < 0) {
        ZOR_ERROR("Failed to strsep");
        return -1;
    }
    if (states.Count() > choice.Count()) {
        ZOR_ERROR("Size too much? %d > %d", states.Count(), choice.Count());
        return -1;
    }
    if (states.Count() > ZOR_SERVICE_COUNT) {
        ZOR_ERROR("Size not equal %d %d", ZOR_SERVICE_COUNT, states.Count());
        return -1;
    }
    if (capacity < states.Count()) {
        ZOR_ERROR("input size not enought %d < %d", capacity, states.Count());
        return -1;
    }
    for (int slot = 0; slot < states.Count(); ++slot)
        Fill(choice.IsYes(slot), gMonitorServiceList[slot], StateOf(states.Item(slot)),
             &rows[slot]);
    *count = states.Count();
    return 0;
}

int32_t ZORListMonitorNetwork(ZORMonitorItem *rows, int32_t capacity, int32_t *count) {
    if (!AreRowsGood(rows, capacity, count)) {
        ZOR_ERROR("Bad paramter");
        return -1;
    }
    ZORIfInfo info;
    if (ZORGetConfIfInfo(&info) != 0) {
        ZOR_ERROR("Failed to read netinfo from conf andd stats");
        return -1;
    }
    for (int32_t number = 0; number < info.interfaceCount; ++number) {
        if (number == capacity) {
            ZOR_ERROR("input size not enought %d < %d", capacity, number);
            return -1;
        }
        const ZORIfEntry &entry = info.interfaces[number];
        const int32_t state =
            IsInterfaceActive(info, entry) ? ZOR_UI_STATE_GOOD : ZOR_UI_STATE_ERROR;
        Fill(entry.monitored == 1, entry.name, state, &rows[number]);
    }
    *count = info.interfaceCount;
    return 0;
}

extern "C" int32_t KEVAZORListMonitor(uint32_t type, ZORMonitorItem *rows, int32_t capacity,
                                      int32_t *count) {
    if (!AreRowsGood(rows, capacity, count)) {
        ZOR_ERROR("Bad paramter");
        return -1;
    }
    if (type == ZOR_MONITOR_SYSTEM) {
        if (capacity >= kSystemItemCount) return ListSystem(rows, count);
        ZOR_ERROR("size not enought %d", kSystemItemCount);
        return -1;
    }
    if (type == ZOR_MONITOR_SERVICE && ZORListMonitorService(rows, capacity, count) != 0) {
        ZOR_ERROR("Failed to list monitor service");
        return -1;
    }
    if (type == ZOR_MONITOR_NETWORK && ZORListMonitorNetwork(rows, capacity, count) != 0) {
        ZOR_ERROR("Failed to list monitor network");
        return -1;
    }
    return 0;
}
