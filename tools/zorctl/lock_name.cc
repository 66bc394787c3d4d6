#include "lock_name.h"

#include "zor_filelock.h"

namespace {

struct Name {
    int32_t id;
    const char *name;
};

constexpr Name kNames[] = {
    {ZOR_LOCK_HA_CONF, "conf"},
    {ZOR_LOCK_HA_STATUS, "status"},
    {ZOR_LOCK_HW_INFO, "hwinfo"},
    {ZOR_LOCK_ADJUST_SYSTEM_DISK, "system-disk"},
    {ZOR_LOCK_BOOT_PROCEDURE, "boot-procedure"},
    {ZOR_LOCK_BOOT_UPDATE_DAEMON_FILE, "boot-update-daemon"},
    {ZOR_LOCK_BOOT_RECEIVE_DAEMON_FILE, "boot-receive-daemon"},
    {ZOR_LOCK_LOAD_UI_CLUSTER, "ui-cluster"},
    {ZOR_LOCK_LOAD_UI_LOCAL_NODE, "ui-local-node"},
    {ZOR_LOCK_LOAD_UI_REMOTE_NODE, "ui-remote-node"},
    {ZOR_LOCK_UPGRADE_BIOS, "upgrade-bios"},
    {ZOR_LOCK_CHECK_HEALTHY_STATUS, "check-health"},
};

}  // namespace

std::string LockName(int32_t id) {
    for (const Name &name : kNames) {
        if (name.id == id) return name.name;
    }
    return std::to_string(id);
}

std::optional<int32_t> ParseLock(const std::string &text) {
    for (const ZORFileLockEntry &entry : rgsaalckList) {
        if (text == LockName(entry.id) || text == std::to_string(entry.id)) return entry.id;
    }
    return std::nullopt;
}

const char *LockPath(int32_t id) {
    for (const ZORFileLockEntry &entry : rgsaalckList) {
        if (entry.id == id) return entry.path;
    }
    return "";
}
