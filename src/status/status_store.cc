// Single entries of ha.status: reading, writing and removing them.

#include "status/status_store.h"

#include "foundation/held_lock.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "status/status_key.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_status";

int32_t ZORRemoveHAStatusImp(uint32_t selector, uint32_t key) {
    const char *name = ZORGetStatusKey(selector, key);
    if (!name) {
        ZOR_ERROR("Failed to get key");
        return -1;
    }
    if (VLIBCFileRemoveKey(kStatusFile, name) < 0) {
        ZOR_ERROR("Failed to remove key, key:%s", name);
        return -1;
    }
    return 0;
}

}  // namespace

int32_t ZORSetHAStatusImp(uint32_t selector, uint32_t key, const char *value) {
    if (!value) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    const char *name = ZORGetStatusKey(selector, key);
    if (!name) {
        ZOR_ERROR("Failed to get key");
        return -1;
    }
    if (VLIBCFileSetKeyValue(kStatusFile, name, value, kKeyValueLine) != 1) {
        ZOR_ERROR("Failed to set value of key (key:%s, value:%s)", name, value);
        return -1;
    }
    return 0;
}

extern "C" {

int32_t ZORSetHAStatus(uint32_t selector, uint32_t key, const char *value) {
    HeldLock lock(ZOR_LOCK_HA_STATUS, kStatusLockRetries);
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to get filelock");
        return -1;
    }
    if (ZORSetHAStatusImp(selector, key, value) != 0) return -1;
    lock.Release();
    if (ZORSetHAStatusChangeFlag() < 0) ZOR_ERROR("Failed to set zor status changed flag");
    return 0;
}

int32_t ZORGetHAStatus(uint32_t selector, uint32_t key, char *buffer, uint32_t size) {
    if (!buffer || size == 0) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    const char *name = ZORGetStatusKey(selector, key);
    if (!name) {
        ZOR_ERROR("Failed to get key");
        return -1;
    }
    const int found = VLIBCFileGetKeyValue(kStatusFile, name, buffer, size, 0);
    if (found < 0) {
        ZOR_NOTICE("Failed to get value of key (key:%s error code:%d)", name, VLIBCErrGet());
        return -1;
    }
    return found > 0 ? 1 : 0;
}

int32_t ZORGetAndRemoveHAStatus(uint32_t selector, uint32_t key, char *buffer, uint32_t size) {
    if (!buffer || size == 0) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    const HeldLock lock(ZOR_LOCK_HA_STATUS, kStatusLockRetries);
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to get file lock for ha.status");
        return -1;
    }
    const char *name = ZORGetStatusKey(selector, key);
    if (!name) {
        ZOR_ERROR("Failed to get key");
        return -1;
    }
    const int32_t found = ZORGetHAStatus(selector, key, buffer, size);
    if (found < 0) {
        ZOR_ERROR("Failed to get ha.status key, role %d, key %d", static_cast<int>(selector),
                  static_cast<int>(key));
        return found;
    }
    if (VLIBCFileRemoveKey(kStatusFile, name) < 0) ZOR_ERROR("Failed to remove key, key:%s", name);
    return found;
}

int32_t ZORRemoveHAStatus(uint32_t selector, uint32_t key) {
    const HeldLock lock(ZOR_LOCK_HA_STATUS, kStatusLockRetries);
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to get file lock for ha.status");
        return -1;
    }
    return ZORRemoveHAStatusImp(selector, key);
}

}  // extern "C"
