// The configuration sync record: the active node's ha.conf for the other node.

#include <cstddef>

#include "conf/conf_store.h"
#include "foundation/held_lock.h"
#include "foundation/log.h"
#include "foundation/record_text.h"
#include "zor_conf.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_conf";

// A text field of the record and its name in ha.conf.
struct SyncField {
    const char *name;
    size_t offset;
    size_t width;
};

#define ZOR_SYNC_FIELD(name, field) \
    { name, offsetof(ZORSyncConf, field), sizeof(ZORSyncConf::field) }

// In the order in which they are read and written.
constexpr SyncField kSerialFields[] = {
    ZOR_SYNC_FIELD("sn_ha", clusterSerial),
    ZOR_SYNC_FIELD("sn0", leftSerial),
    ZOR_SYNC_FIELD("sn1", rightSerial),
    ZOR_SYNC_FIELD("sn_ha_custom", clusterCustomSerial),
    ZOR_SYNC_FIELD("sn0_custom", leftCustomSerial),
    ZOR_SYNC_FIELD("sn1_custom", rightCustomSerial),
};
constexpr SyncField kMonitorIfField = ZOR_SYNC_FIELD("monitor_if", monitorIf);

static_assert(sizeof kSerialFields / sizeof kSerialFields[0] == 6);

bool LoadField(ZORSyncConf *record, const SyncField &field) {
    char *to = reinterpret_cast<char *>(record) + field.offset;
    return ZORGetHAConfImp(field.name, to, static_cast<uint32_t>(field.width)) >= 0;
}

bool StoreField(const ZORSyncConf &record, const SyncField &field) {
    char text[ZOR_CONF_MONITOR_SIZE + 1];
    CopyRecordText(&record, field.offset, field.width, text);
    return ZORSetHAConfImp(field.name, text) == 0;
}

}  // namespace

extern "C" {

int32_t ZORGetSyncHAConf(ZORSyncConf *record) {
    if (!record) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (ZORGetLocalRole() != ZOR_ROLE_ACTIVE) {
        ZOR_ERROR("call get sync ha conf on passive");
        return -1;
    }
    const HeldLock lock(ZOR_LOCK_HA_CONF, kConfLockRetries);
    if (!lock.IsHeld()) {
        ZOR_ERROR("failed to get filelock for get ha.conf");
        return -1;
    }
    for (const SyncField &field : kSerialFields) {
        if (!LoadField(record, field)) ZOR_ERROR("Failed to get ha sn");
    }
    if (!LoadField(record, kMonitorIfField)) ZOR_ERROR("Failed to get monitor if");
    record->isReady = 1;
    return 0;
}

int32_t ZORSetSyncHAConf(const ZORSyncConf *record) {
    if (!record) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (ZORGetLocalRole() == ZOR_ROLE_ACTIVE) {
        ZOR_ERROR("call set sync ha conf on active");
        return -1;
    }
    if (record->isReady == 0) {
        ZOR_ERROR("Conf data is not OK. Skip initialize");
        return -1;
    }
    const HeldLock lock(ZOR_LOCK_HA_CONF, kConfLockRetries);
    if (!lock.IsHeld()) {
        ZOR_ERROR("failed to get filelock for get ha.conf");
        return -1;
    }
    for (const SyncField &field : kSerialFields) {
        if (!StoreField(*record, field)) ZOR_ERROR("Failed to set ha sn");
    }
    if (!StoreField(*record, kMonitorIfField)) ZOR_ERROR("Failed to set monitor if");
    return 0;
}

}  // extern "C"
