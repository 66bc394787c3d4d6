/*
 * zor_filelock: log lines, the operator's console, and the named file locks
 * that serialise the processes of one node.
 *
 * Results: 0 success, -1 failure, unless a function says otherwise. Every
 * failure is logged before it is returned, except where "silently" is said.
 *
 * A lock is held through an open stream that the caller owns. The caller keeps
 * a handle, a FILE pointer that starts as NULL; a lock call stores the stream
 * there, the matching unlock call closes it and stores NULL. A stream that is
 * still in the handle of a lock call is closed first. The locks exclude every
 * other stream on the same file, in this process or another one. Waiting is by
 * polling once a second and never by blocking in the kernel.
 */
#ifndef ZOR_FILELOCK_H
#define ZOR_FILELOCK_H

#include <stdint.h>
#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- Log lines ---------------------------------------------------------- */

/* Priorities that the library uses; the level word of a line goes with them. */
enum {
    ZOR_LOG_ERROR = 3, /* "ERROR" */
    ZOR_LOG_NOTICE = 5 /* "NOTICE" */
};

/*
 * Sends one line to the system log (facility user, with the process id).
 * priority: ZOR_LOG_ERROR or ZOR_LOG_NOTICE. format: as for syslog, "%m" is
 * the text of errno as it stands at the call. errno is left as it was.
 */
void __zorlog(int32_t priority, const char *format, ...) __attribute__((format(printf, 2, 3)));

/*
 * Writes text and a newline to /dev/console. 0, or -1 after one ERROR line:
 * "Bad @param" (null text), "Failed to open %s", "Failed to fprintf".
 */
int32_t ZORConsoleOutput(const char *text);

/* --- Resource locks ----------------------------------------------------- */

/* One row of a lock table: the id of a lock and the path of its lock file. */
typedef struct ZORFileLockEntry {
    int32_t id;
    const char *path;
} ZORFileLockEntry;

/* Lock ids. There is no id 4. */
enum {
    ZOR_LOCK_HA_CONF = 0,
    ZOR_LOCK_HA_STATUS = 1,
    ZOR_LOCK_HW_INFO = 2,
    ZOR_LOCK_ADJUST_SYSTEM_DISK = 3,
    ZOR_LOCK_BOOT_PROCEDURE = 5,
    ZOR_LOCK_BOOT_UPDATE_DAEMON_FILE = 6,
    ZOR_LOCK_BOOT_RECEIVE_DAEMON_FILE = 7,
    ZOR_LOCK_LOAD_UI_CLUSTER = 8,
    ZOR_LOCK_LOAD_UI_LOCAL_NODE = 9,
    ZOR_LOCK_LOAD_UI_REMOTE_NODE = 10,
    ZOR_LOCK_UPGRADE_BIOS = 11,
    ZOR_LOCK_CHECK_HEALTHY_STATUS = 12
};

#define ZOR_LOCK_COUNT 12
#define ZOR_COMMAND_LOCK_GROUP_COUNT 3

/* The resource locks, in the order in which they are searched. */
extern const ZORFileLockEntry rgsaalckList[ZOR_LOCK_COUNT];

/* The command lock groups, by group index; the id is the group id 1, 2 or 3. */
extern const ZORFileLockEntry rgsaalckGroupList[ZOR_COMMAND_LOCK_GROUP_COUNT];

/*
 * Takes the exclusive lock of one resource. retries: how many more attempts
 * follow the first one, each after a sleep of one second (0: a single try).
 * 0 with the stream in the handle; -1 with NULL in it. A lock that stays held
 * by somebody else is reported silently; ERROR "Error parameter" (null
 * handle), "Error file lock type : %d", "failed to fopen %s, errno=%m".
 */
int32_t ZORFileLock(int32_t lockId, int32_t retries, FILE **handle);

/*
 * Releases a resource lock: closes the stream and stores NULL. 0, also after
 * ERROR "failed to unlock, file pointer:%lx errno=%m"; -1 silently when the
 * handle or the stream in it is null.
 */
int32_t ZORFileUnlock(FILE **handle);

/*
 * Breaks a lock, whoever holds it, by deleting its lock file: the holder keeps
 * the nameless file and the next locker makes a new one. 0, whether or not a
 * file was there; -1 with ERROR "Error file lock type : %d".
 */
int32_t ZORForceFileUnlock(int32_t lockId);

/* The hardware information lock, with 10 retries. Results as of ZORFileLock. */
int32_t ZORHWWaitAndLock(FILE **handle);

/* Releases the hardware information lock. Results as of ZORFileUnlock. */
int32_t ZORHWUnlock(FILE **handle);

/*
 * Takes (take non-zero) or releases (take 0) the lock for adjusting the system
 * disk array, without waiting. 0, or -1: silently for a null handle or a lock
 * held elsewhere, with ERROR "Failed to unlock." when there is nothing to
 * release.
 */
int32_t KEVAZORAdjustSystemRaidLock(FILE **handle, int32_t take);

/* --- Command lock groups ------------------------------------------------ */

/*
 * The index (0 to 2) of the lock group of a manager command, -1 when the
 * command belongs to none. Logs nothing.
 */
int32_t ZORGetCmdLockGroupID(uint32_t command);

/*
 * Takes the lock of the command's group. Up to retries + 1 attempts, with a
 * sleep of one second after each failed one. 0 locked; 1 the command has no
 * group, the handle is untouched; -1 with ERROR "Error parameter" (null
 * handle), or one of "failed to fopen %s, errno=%m" and "get lock on state
 * controller timeout", followed by "Failed to get lock on command: %d".
 */
int32_t ZORChkIfLockAndLock(uint32_t command, int32_t retries, FILE **handle);

/*
 * Releases the lock of the command's group. 0 released, NULL in the handle; 1
 * the command has no group; -1 with ERROR "Error parameter" (null handle), or
 * one of "Failed to unlock, pointer is null index:%d path:%s" and "failed to
 * unlock errno=%m" (the stream then stays in the handle), followed by "UNLOCK
 * FAILED!!!! (command:%d tid:%ld)".
 */
int32_t ZORChkIfUnlockAndUnlock(uint32_t command, FILE **handle);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
