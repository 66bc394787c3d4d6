// The status sync record: what one node's ha.status tells the other node.

#include <cstddef>
#include <cstdio>

#include "foundation/decimal.h"
#include "foundation/held_lock.h"
#include "foundation/log.h"
#include "foundation/record_text.h"
#include "status/status_store.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_status";
constexpr size_t kRoleTextSize = 8;

// A text field of the record and the status key it is stored under.
struct SyncField {
    uint32_t key;
    size_t offset;
    size_t width;
};

#define ZOR_SYNC_FIELD(key, field) \
    { key, offsetof(ZORSyncStatus, field), sizeof(ZORSyncStatus::field) }

// In the order in which they are written and read.
constexpr SyncField kCommonFields[] = {
    ZOR_SYNC_FIELD(ZOR_STATUS_HOST_ZOR_IP, zorIp),
    ZOR_SYNC_FIELD(ZOR_STATUS_HOST_IP, hostIp),
    ZOR_SYNC_FIELD(ZOR_STATUS_HOST_IFNAME, hostIfName),
    ZOR_SYNC_FIELD(ZOR_STATUS_HOST_ZOR_IFNAME, zorIfName),
    ZOR_SYNC_FIELD(ZOR_STATUS_HOST_IF_SPEED, ifSpeed),
    ZOR_SYNC_FIELD(ZOR_STATUS_HOST_VERSION, version),
    ZOR_SYNC_FIELD(ZOR_STATUS_FAILED_HARDWARE, failedHardware),
};
constexpr SyncField kStaticIpField = ZOR_SYNC_FIELD(ZOR_STATUS_IF_HAS_STATIC_IP, ifHasStaticIp);
constexpr SyncField kIfStatusField = ZOR_SYNC_FIELD(ZOR_STATUS_HOST_IF_STATUS, ifStatus);
constexpr SyncField kFailedServicesField =
    ZOR_SYNC_FIELD(ZOR_STATUS_FAILED_SERVICES, failedServices);
constexpr SyncField kFailedInterfacesField =
    ZOR_SYNC_FIELD(ZOR_STATUS_FAILED_INTERFACES, failedInterfaces);
constexpr SyncField kNoStaticIpField =
    ZOR_SYNC_FIELD(ZOR_STATUS_MONITORED_IF_NO_STATIC_IP, monitoredIfNoStaticIp);
constexpr SyncField kBlockingTasksField = ZOR_SYNC_FIELD(ZOR_STATUS_BLOCKING_TASKS, blockingTasks);

constexpr size_t kWidest = sizeof(ZORSyncStatus::blockingTasks);
static_assert(sizeof kCommonFields / sizeof kCommonFields[0] == 7);

bool StoreField(const ZORSyncStatus &record, uint32_t selector, const SyncField &field) {
    char text[kWidest + 1];
    CopyRecordText(&record, field.offset, field.width, text);
    return ZORSetHAStatusImp(selector, field.key, text) == 0;
}

bool StoreRole(const ZORSyncStatus &record, uint32_t selector) {
    char text[kRoleTextSize];
    snprintf(text, sizeof text, "%d", record.role);
    return ZORSetHAStatusImp(selector, ZOR_STATUS_ROLE, text) == 0;
}

bool LoadField(ZORSyncStatus *record, uint32_t selector, const SyncField &field) {
    char *to = reinterpret_cast<char *>(record) + field.offset;
    return ZORGetHAStatus(selector, field.key, to, static_cast<uint32_t>(field.width)) >= 0;
}

bool LoadRole(ZORSyncStatus *record, uint32_t selector) {
    char text[kRoleTextSize] = {};
    record->role = 0;
    if (ZORGetHAStatus(selector, ZOR_STATUS_ROLE, text, sizeof text) < 0) return false;
    record->role = ParseDecimal(text);
    return true;
}

}  // namespace

extern "C" {

int32_t ZORSetSyncHAStatus(uint32_t selector, const ZORSyncStatus *record) {
    const int32_t localRole = ZORGetLocalRole();
    if (!record) {
        ZOR_ERROR("Failed to get sync ha status");
        return -1;
    }
    const HeldLock lock(ZOR_LOCK_HA_STATUS, kStatusLockRetries);
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to get file lock for ha.status");
        return -1;
    }
    for (const SyncField &field : kCommonFields) {
        if (StoreField(*record, selector, field)) continue;
        ZOR_ERROR("Failed to get ha status");
        return -1;
    }
    if (!StoreField(*record, selector, kStaticIpField)) ZOR_ERROR("Failed to set ha status");
    if (!StoreRole(*record, selector)) ZOR_ERROR("Failed to set ha status");
    if (localRole != ZOR_ROLE_PASSIVE || selector != ZOR_HOST_REMOTE ||
        record->role != ZOR_ROLE_ACTIVE)
        return 0;

    // The active node's view of this node becomes this node's own.
    if (!StoreField(*record, ZOR_HOST_REMOTE, kIfStatusField)) {
        ZOR_ERROR("Failed to get ha status");
        return -1;
    }
    if (!StoreField(*record, ZOR_HOST_LOCAL, kFailedServicesField))
        ZOR_ERROR("Failed to set ha status");
    if (!StoreField(*record, ZOR_HOST_LOCAL, kFailedInterfacesField))
        ZOR_ERROR("Failed to set ha status");
    if (!StoreField(*record, ZOR_HOST_CLUSTER, kNoStaticIpField))
        ZOR_ERROR("Failed to set ha status");
    if (record->blockingTasks[0] != '\0' &&
        !StoreField(*record, ZOR_HOST_LOCAL, kBlockingTasksField))
        ZOR_ERROR("Failed to get ha status");
    return 0;
}

int32_t ZORGetSyncHAStatus(uint32_t selector, ZORSyncStatus *record) {
    const int32_t localRole = ZORGetLocalRole();
    if (!record) {
        ZOR_ERROR("Failed to get sync ha status");
        return -1;
    }
    const HeldLock lock(ZOR_LOCK_HA_STATUS, kStatusLockRetries);
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to get file lock for ha.status");
        return -1;
    }
    for (const SyncField &field : kCommonFields) {
        if (!LoadField(record, selector, field)) ZOR_ERROR("Failed to get ha status");
    }
    if (!LoadField(record, selector, kStaticIpField)) ZOR_ERROR("Failed to get ha status");
    if (!LoadRole(record, selector)) ZOR_ERROR("Failed to get ha status");
    if (localRole != ZOR_ROLE_ACTIVE || selector != ZOR_HOST_LOCAL) return 0;

    if (!LoadField(record, ZOR_HOST_LOCAL, kIfStatusField)) ZOR_ERROR("Failed to get ha status");
    // This node's view of the other one.
    if (!LoadField(record, ZOR_HOST_REMOTE, kFailedServicesField))
        ZOR_ERROR("Failed to get ha status");
    if (!LoadField(record, ZOR_HOST_REMOTE, kFailedInterfacesField))
        ZOR_ERROR("Failed to get ha status");
    if (!LoadField(record, ZOR_HOST_CLUSTER, kNoStaticIpField))
        ZOR_ERROR("Failed to get ha status");
    if (!LoadField(record, ZOR_HOST_REMOTE, kBlockingTasksField))
        ZOR_ERROR("Failed to get ha status");
    return 0;
}

}  // extern "C"
