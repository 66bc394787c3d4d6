// The resource locks: one lock file for each shared file or procedure.

#include <unistd.h>

#include <cerrno>

#include "foundation/held_lock.h"
#include "foundation/lock_file.h"
#include "foundation/log.h"
#include "foundation/pause.h"

// The rows of ids 1 and 0 stand in this order on purpose; other tables count on
// their positions.
const ZORFileLockEntry rgsaalckList[ZOR_LOCK_COUNT] = {
    {ZOR_LOCK_HA_STATUS, "/tmp/zor/.zor.ha.status.lock"},
    {ZOR_LOCK_HA_CONF, "/tmp/zor/.zor.ha.conf.lock"},
    {ZOR_LOCK_HW_INFO, "/tmp/zor/.zor.ha.hwinfo.lock"},
    {ZOR_LOCK_ADJUST_SYSTEM_DISK, "/tmp/zor/.zor.adjust.sys.disk.lock"},
    {ZOR_LOCK_BOOT_PROCEDURE, "/tmp/zor/.zor.boot.procedure.lock"},
    {ZOR_LOCK_BOOT_UPDATE_DAEMON_FILE, "/tmp/zor/.zor.boot.update.daemon.file.lock"},
    {ZOR_LOCK_BOOT_RECEIVE_DAEMON_FILE, "/tmp/zor/.zor.boot.receive.daemon.file.lock"},
    {ZOR_LOCK_LOAD_UI_CLUSTER, "/tmp/zor/ui/.zor.lock.load.ui.zorinfo"},
    {ZOR_LOCK_LOAD_UI_LOCAL_NODE, "/tmp/zor/ui/.zor.lock.load.ui.zorlocalnode"},
    {ZOR_LOCK_LOAD_UI_REMOTE_NODE, "/tmp/zor/ui/.zor.lock.load.ui.zorremotenode"},
    {ZOR_LOCK_UPGRADE_BIOS, "/tmp/zor/.zor.lock.upgrade.bios"},
    {ZOR_LOCK_CHECK_HEALTHY_STATUS, "/tmp/zor/.zor.check.healthy.status.lock"},
};

namespace {

constexpr char kLogModule[] = "zor_filelock";
constexpr int32_t kHardwareRetries = 10;

const char *LockPath(int32_t lockId) {
    for (const ZORFileLockEntry &entry : rgsaalckList) {
        if (entry.id == lockId) return entry.path;
    }
    return nullptr;
}

// Sleeps between two attempts, not after the last.
bool LockWithRetries(int file, int32_t retries) {
    for (int32_t left = retries;; --left) {
        if (TryLockFile(file)) return true;
        if (left <= 0) return false;
        PauseSeconds(1);
    }
}

// What the library's own locks and those of its callers report as.
constexpr char kReporter[] = "ZORFileLock";

}  // namespace

HeldLock::HeldLock(int32_t lockId, int32_t retries) {
    const char *path = LockPath(lockId);
    file_ = OpenLockFile(path);
    if (file_ < 0)
        ZOR_ERROR_OF(kReporter, "failed to fopen %s, errno=%m", path);
    else if (!LockWithRetries(file_, retries))
        Close();
}

void HeldLock::Release() {
    if (file_ >= 0) UnlockFile(file_);
    Close();
}

void HeldLock::Close() {
    if (file_ < 0) return;
    const int saved = errno;
    close(file_);
    errno = saved;
    file_ = -1;
}

extern "C" {

int32_t ZORFileLock(int32_t lockId, int32_t retries, FILE **handle) {
    if (!handle) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    CloseLockStream(handle);
    const char *path = LockPath(lockId);
    if (!path) {
        ZOR_ERROR("Error file lock type : %d", lockId);
        return -1;
    }
    *handle = OpenLockStream(path);
    if (!*handle) {
        ZOR_ERROR("failed to fopen %s, errno=%m", path);
        return -1;
    }
    if (LockWithRetries(fileno(*handle), retries)) return 0;
    // Without a line, on purpose: to find a lock taken is everyday business.
    CloseLockStream(handle);
    return -1;
}

int32_t ZORFileUnlock(FILE **handle) {
    if (!handle || !*handle) return -1;
    if (!UnlockFile(fileno(*handle))) {
        ZOR_ERROR("failed to unlock, file pointer:%lx errno=%m",
                  reinterpret_cast<unsigned long>(*handle));
    }
    CloseLockStream(handle);
    return 0;
}

int32_t ZORForceFileUnlock(int32_t lockId) {
    const char *path = LockPath(lockId);
    if (!path) {
        ZOR_ERROR("Error file lock type : %d", lockId);
        return -1;
    }
    unlink(path);
    return 0;
}

int32_t ZORHWWaitAndLock(FILE **handle) {
    return ZORFileLock(ZOR_LOCK_HW_INFO, kHardwareRetries, handle);
}

int32_t ZORHWUnlock(FILE **handle) {
    return ZORFileUnlock(handle);
}

int32_t KEVAZORAdjustSystemRaidLock(FILE **handle, int32_t take) {
    if (!handle) return -1;
    if (take) {
        if (ZORFileLock(ZOR_LOCK_ADJUST_SYSTEM_DISK, 0, handle) == 0) return 0;
        if (*handle && ZORFileUnlock(handle) != 0) ZOR_ERROR("failed to unlock");
        return -1;
    }
    if (ZORFileUnlock(handle) == 0) return 0;
    ZOR_ERROR("Failed to unlock.");
    return -1;
}

}  // extern "C"
