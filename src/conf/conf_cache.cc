#include "conf/conf_cache.h"

#include <unistd.h>

#include "conf/conf_store.h"
#include "foundation/held_lock.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "zor_conf.h"

namespace {

constexpr char kLogModule[] = "zor_conf";

// The caller's buffer may be small, and what it cuts must not be cut for every
// other process: the whole value is read for the cache.
void FillCache(const char *name) {
    char value[1024] = {};
    if (ZORGetHAConfImp(name, value, sizeof value) == 1)
        VLIBCFileSetKeyValue(kConfCacheFile, name, value, kKeyValueLine);
}

}  // namespace

int32_t ZORGetHAConfCachedImp(const char *name, char *buffer, uint32_t size) {
    if (!buffer || size == 0) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (VLIBCFileGetKeyValue(kConfCacheFile, name, buffer, size, 0) > 0) return 1;
    const int32_t found = ZORGetHAConfImp(name, buffer, size);
    if (found == 1) FillCache(name);
    return found;
}

extern "C" int32_t ZORPrepareCachedConf(void) {
    const HeldLock lock(ZOR_LOCK_HA_CONF, kConfLockRetries);
    if (!lock.IsHeld()) {
        ZOR_ERROR("failed to get filelock for get ha.conf");
        return -1;
    }
    if (VLIBCFileExist(kConfCacheFile) && unlink(kConfCacheFile) != 0)
        ZOR_ERROR("Unlink ha.info.cached failed");
    char value[ZOR_CONF_MAC_SIZE] = {};
    if (ZORGetHAConfCachedImp("sn_ha", value, ZOR_CONF_SERIAL_SIZE) < 0)
        ZOR_ERROR("Failed to get ha sn cached");
    if (ZORGetHAConfCachedImp("sn_ha_custom", value, ZOR_CONF_SERIAL_SIZE) < 0)
        ZOR_ERROR("Failed to get ha cus sn cached");
    if (ZORGetHAConfCachedImp("mac_all_ha", value, ZOR_CONF_MAC_SIZE) < 0)
        ZOR_ERROR("Failed to get mac all cached");
    return 0;
}
