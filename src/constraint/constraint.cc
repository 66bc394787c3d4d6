// Failover constraints: one line for each node and kind, on the active node.

#include <cstddef>
#include <cstdio>

#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "zor_conf.h"
#include "zor_constraint.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_constraint";
constexpr size_t kKeySize = 64;

constexpr const char *kKeyPrefixes[] = {"failed_services_", "failover_from_"};  // by kind
constexpr int32_t kKindCount = sizeof kKeyPrefixes / sizeof kKeyPrefixes[0];
static_assert(ZOR_CONSTRAINT_FAILED_SERVICES == 0 && ZOR_CONSTRAINT_FAILOVER_FROM == 1);

bool IsActive() {
    return ZORGetLocalRole() == ZOR_ROLE_ACTIVE;
}

// 1 with a key, 0 when the remote node is not known yet, -1 (logged).
int32_t ZORGetConstraintKey(int32_t node, int32_t kind, char (&key)[kKeySize]) {
    if (node != ZOR_HOST_LOCAL && node != ZOR_HOST_REMOTE) {
        ZOR_ERROR("Get error role: %d", node);
        return -1;
    }
    char serial[ZOR_CONF_SERIAL_SIZE] = {};
    const int32_t found =
        ZORGetHAConf(static_cast<uint32_t>(node), ZOR_CONF_SN, serial, sizeof serial);
    if (found == 0 && node == ZOR_HOST_REMOTE && IsActive()) return 0;
    if (found <= 0) {
        ZOR_ERROR("Failed to read sn");
        return -1;
    }
    if (kind < 0 || kind >= kKindCount) {
        ZOR_ERROR("Error key (%d)", kind);
        return -1;
    }
    snprintf(key, sizeof key, "%s%s", kKeyPrefixes[kind], serial);
    return 1;
}

}  // namespace

extern "C" {

int32_t ZORGetConstraint(int32_t node, int32_t kind, char *buffer, uint32_t size) {
    if (!buffer || size == 0) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (!IsActive()) {
        ZOR_ERROR("Constraint only be used in active");
        return -1;
    }
    char key[kKeySize];
    const int32_t keyed = ZORGetConstraintKey(node, kind, key);
    if (keyed == 0) return 0;
    if (keyed < 0) {
        ZOR_ERROR("Failed to get key");
        return keyed;
    }
    const int found = VLIBCFileGetKeyValue(kConstraintFile, key, buffer, size, 0);
    if (found < 0) {
        ZOR_ERROR("Failed to get key value");
        return -1;
    }
    return found > 0 ? 1 : 0;
}

int32_t ZORSetConstraint(int32_t node, int32_t kind, const char *value) {
    if (!value) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (!IsActive()) {
        ZOR_ERROR("Constraint only be used in active");
        return -1;
    }
    char key[kKeySize];
    const int32_t keyed = ZORGetConstraintKey(node, kind, key);
    if (keyed == 0) return 0;
    if (keyed < 0) {
        ZOR_ERROR("Failed to get key at role for set constrint: %d, iRet:%d", node, keyed);
        return keyed;
    }
    if (VLIBCFileSetKeyValue(kConstraintFile, key, value, kKeyValueLine) != 1) {
        ZOR_ERROR("Failed to set key value, key:%s value:%s", key, value);
        return -1;
    }
    return 1;
}

int32_t ZORCleanConstraint(int32_t node, int32_t kind) {
    if (!IsActive()) {
        ZOR_ERROR("Constraint only be used in active");
        return -1;
    }
    char key[kKeySize];
    const int32_t keyed = ZORGetConstraintKey(node, kind, key);
    if (keyed == 0) return 0;
    if (keyed < 0) {
        ZOR_ERROR("Failed to get key at role for set constrint: %d", node);
        return keyed;
    }
    const int32_t removed = VLIBCFileRemoveKey(kConstraintFile, key);
    if (removed < 0) ZOR_ERROR("Failed to remove key, key:%s", key);
    return removed;
}

}  // extern "C"
