// Reading and writing ha.conf.

#include "conf/conf_store.h"

#include "conf/conf_cache.h"
#include "foundation/held_lock.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "zor_conf.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_conf";

bool IsCached(uint32_t selector, uint32_t key) {
    return selector == ZOR_HOST_CLUSTER &&
           (key == ZOR_CONF_SN || key == ZOR_CONF_MAC_ALL || key == ZOR_CONF_SN_CUSTOM);
}

}  // namespace

int32_t ZORGetHAConfImp(const char *name, char *buffer, uint32_t size) {
    if (!buffer || size == 0) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    const int found = VLIBCFileGetKeyValue(kConfFile, name, buffer, size, 0);
    if (found < 0) return -1;
    return found > 0 ? 1 : 0;
}

int32_t ZORSetHAConfImp(const char *name, const char *value) {
    if (!value) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (VLIBCFileSetKeyValue(kConfFile, name, value, kKeyValueLine) != 1) {
        ZOR_ERROR("Failed to set value of key (path:%s, key:%s, value:%s)", kConfFile, name, value);
        return -1;
    }
    return 0;
}

extern "C" {

int32_t ZORGetHAConf(uint32_t selector, uint32_t key, char *buffer, uint32_t size) {
    if (!buffer || size == 0) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    const char *name = ZORGetConfKey(selector, key);
    if (!name) {
        ZOR_ERROR("Failed to get key");
        return -1;
    }
    if (IsCached(selector, key)) return ZORGetHAConfCachedImp(name, buffer, size);
    const HeldLock lock(ZOR_LOCK_HA_CONF, kConfLockRetries);
    if (!lock.IsHeld()) {
        ZOR_ERROR("failed to get filelock for get ha.conf");
        return -1;
    }
    return ZORGetHAConfImp(name, buffer, size);
}

int32_t ZORSetHAConf(uint32_t selector, uint32_t key, const char *value) {
    const char *name = ZORGetConfKey(selector, key);
    if (!name) {
        ZOR_ERROR("Failed to get key");
        return -1;
    }
    if (ZORGetLocalRole() != ZOR_ROLE_ACTIVE) {
        ZOR_ERROR("Call set ha.conf on passive");
        return -1;
    }
    const HeldLock lock(ZOR_LOCK_HA_CONF, kConfLockRetries);
    if (!lock.IsHeld()) {
        ZOR_ERROR("failed to get filelock for get ha.conf");
        return -1;
    }
    const int32_t result = ZORSetHAConfImp(name, value);
    if (ZORSetHAConfChangeFlag() < 0) ZOR_ERROR("Failed to set ha conf change flag");
    return result;
}

}  // extern "C"
