/*
 * zor_status: the runtime status of both nodes, kept in /tmp/zor/ha.status.
 *
 * One entry is named by a host selector and a status key. Writers serialise on
 * the status lock (10 retries, one second apart); single reads take no lock.
 * Text buffers are the caller's, with their size in bytes; text is cut to
 * size - 1 characters and terminated.
 *
 * Results: 0 success, -1 failure after an ERROR or NOTICE line; functions that
 * answer a question return what is said there.
 */
#ifndef ZOR_STATUS_H
#define ZOR_STATUS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Whose copy of an entry is meant. */
enum {
    ZOR_HOST_CLUSTER = 1, /* entries that exist once */
    ZOR_HOST_LOCAL = 2,
    ZOR_HOST_REMOTE = 4
};

/* Role of a node. */
enum {
    ZOR_ROLE_UNKNOWN = 0, /* also when it cannot be read */
    ZOR_ROLE_ACTIVE = 1,
    ZOR_ROLE_PASSIVE = 2,
    ZOR_ROLE_JUNIOR = 4
};

/* Status keys; docs/files.md gives the entry name and the selectors of each. */
enum {
    ZOR_STATUS_IS_REMOTE_ALIVE_BY_NET = 0,
    ZOR_STATUS_IS_NET_STATUS_CHANGED = 1,
    ZOR_STATUS_CURRENT_COMM_IP = 2,
    ZOR_STATUS_RUNTIME_STATUS = 3,
    ZOR_STATUS_ENC_LINK_STATUS = 4,
    ZOR_STATUS_ROLE = 5,
    ZOR_STATUS_HOST_IFNAME = 6,
    ZOR_STATUS_HOST_ZOR_IFNAME = 7,
    ZOR_STATUS_HOST_IP = 8,
    ZOR_STATUS_HOST_ZOR_IP = 9,
    ZOR_STATUS_HOST_IF_STATUS = 10,
    ZOR_STATUS_HOST_IF_SPEED = 11,
    ZOR_STATUS_IS_REMOTE_ALIVE_BY_EXPANDER_HB = 12,
    ZOR_STATUS_BOOT_STAGE = 13,
    ZOR_STATUS_MONITOR_SERVICE_STATUS = 14,
    ZOR_STATUS_IS_THE_THIRD_HOST = 15,
    ZOR_STATUS_HOST_VERSION = 16,
    ZOR_STATUS_FAILED_SERVICES = 17,
    ZOR_STATUS_FAILED_INTERFACES = 18,
    ZOR_STATUS_FAILED_HARDWARE = 19,
    ZOR_STATUS_BROADCAST_GET_REMOTE_ZOR_IP = 20,
    ZOR_STATUS_BROADCAST_GET_REMOTE_ZOR_IP_LIST = 21,
    ZOR_STATUS_HEALTHY_STATUS = 22,
    ZOR_STATUS_SHOULD_ADJUSTING_SYSTEM_RAID = 23,
    ZOR_STATUS_FAILED_ENC_HARDWARE = 24,
    ZOR_STATUS_IF_HAS_STATIC_IP = 25,
    ZOR_STATUS_MONITORED_IF_NO_STATIC_IP = 26,
    ZOR_STATUS_IS_HWEVD_READY = 27,
    ZOR_STATUS_IS_SWITCHOVER_REMOTE_REBOOT = 28,
    ZOR_STATUS_INSTALL_STATUS = 29,
    ZOR_STATUS_SERVICE_CHANGED = 30,
    ZOR_STATUS_NET_LINK_CHANGED = 31,
    ZOR_STATUS_VOLUME_STATUS_CHANGED = 32,
    ZOR_STATUS_ALL_INTERFACES_FAILED = 33,
    ZOR_STATUS_BOOT_ERROR = 34,
    ZOR_STATUS_ENABLE_HTTPD_ON_PASSIVE = 35,
    ZOR_STATUS_REMOTE_BOOT_DONE_STATUS = 36,
    ZOR_STATUS_BROADCAST_GET_REMOTE_SN = 37,
    ZOR_STATUS_IS_REMOTE_HANDLER_READY = 38,
    ZOR_STATUS_IS_LOCAL_HANDLER_READY = 39,
    ZOR_STATUS_READ_FAILED_HEALTHY_STATUS = 40,
    ZOR_STATUS_GET_BOOT_LOCK_FAILED = 41,
    ZOR_STATUS_SYSTEM_DISK_LIST = 42,
    ZOR_STATUS_BLOCKING_TASKS = 43
};
#define ZOR_STATUS_KEY_COUNT 44

/*
 * The status of one node as it travels to the other one (docs/records.md).
 * Text fields are terminated unless they are full to their last byte.
 */
typedef struct ZORSyncStatus {
    char monitoredIfNoStaticIp[306];
    char ifHasStaticIp[306];
    char ifSpeed[72];
    char ifStatus[36];
    char hostIfName[306];
    char zorIfName[306];
    char hostIp[180];
    char zorIp[180];
    char version[32];
    char failedHardware[144];
    char failedServices[144];
    char failedInterfaces[144];
    char blockingTasks[1024];
    uint32_t unused; /* neither read nor written by this library */
    int32_t role;
} ZORSyncStatus;

/* The runtime status, taken apart; returned in one 64-bit register. */
typedef struct ZORRuntimeStatus {
    uint32_t state;      /* bits 0 to 3 */
    uint32_t transition; /* bits 4 to 7, in place */
} ZORRuntimeStatus;

/* --- Single entries ----------------------------------------------------- */

/*
 * Writes one entry, then touches the change flag. ERROR "Failed to get
 * filelock", "Error parameter" (null value), "Failed to get key", "Failed to
 * set value of key (key:%s, value:%s)". A change flag that cannot be touched
 * is logged, "Failed to set zor status changed flag", and is no failure.
 */
int32_t ZORSetHAStatus(uint32_t selector, uint32_t key, const char *value);

/*
 * Reads one entry. 1 found, 0 absent, -1 failed. ERROR "Error parameter" (null
 * buffer, size 0), "Failed to get key"; NOTICE "Failed to get value of key
 * (key:%s error code:%d)" with the base library's error code.
 */
int32_t ZORGetHAStatus(uint32_t selector, uint32_t key, char *buffer, uint32_t size);

/*
 * Reads one entry and removes it, under the lock. Results as of
 * ZORGetHAStatus; an entry that could not be read stays. ERROR "Error
 * parameter", "Failed to get file lock for ha.status", "Failed to get key",
 * "Failed to get ha.status key, role %d, key %d"; a failed removal is logged,
 * "Failed to remove key, key:%s", and does not change the result.
 */
int32_t ZORGetAndRemoveHAStatus(uint32_t selector, uint32_t key, char *buffer, uint32_t size);

/*
 * Removes one entry; an absent one is no failure. ERROR "Failed to get file
 * lock for ha.status", "Failed to get key", "Failed to remove key, key:%s".
 */
int32_t ZORRemoveHAStatus(uint32_t selector, uint32_t key);

/* --- Change flag -------------------------------------------------------- */

/* Creates or touches the change flag; the base library's result, logs nothing. */
int32_t ZORSetHAStatusChangeFlag(void);

/* Non-zero when an entry was set since the flag was last cleaned. */
int32_t ZORIsStatusChanged(void);

/* Deletes the flag; ERROR "Failed to clean status change flag", also if it was not there. */
void ZORCleanStatusChangeFlag(void);

/* --- The record for the other node -------------------------------------- */

/*
 * Stores a received record under the selector (normally ZOR_HOST_REMOTE). Only
 * a passive node that stores an active node's record as the remote one also
 * takes over the failures and blocking tasks in it. ERROR "Failed to get sync
 * ha status" (null record), "Failed to get file lock for ha.status", "Failed
 * to get ha status", "Failed to set ha status".
 */
int32_t ZORSetSyncHAStatus(uint32_t selector, const ZORSyncStatus *record);

/*
 * Fills a record for sending (normally ZOR_HOST_LOCAL); fields whose entry is
 * absent stay as the caller left them. Only an active node adds its view of
 * the other node's failures. ERROR lines as of ZORSetSyncHAStatus; an entry
 * that cannot be read is logged and does not change the result.
 */
int32_t ZORGetSyncHAStatus(uint32_t selector, ZORSyncStatus *record);

/* --- Runtime status and boot stage -------------------------------------- */

/* The runtime status; 1 after NOTICE "Failed to read ha runtime status". */
int32_t ZORGetOriginalRuntimeStatus(void);

/* The runtime status as state and transition. Logs as ZORGetOriginalRuntimeStatus. */
ZORRuntimeStatus ZORGetRuntimeStatus(void);

/* 1 when the transition says that a switchover, failover or takeover is in progress, else 0. */
int32_t ZORIsNowSwitchoverFailoverTakeover(ZORRuntimeStatus status);

/* The local boot stage; 0 when absent, or after ERROR "Failed to get boot status". */
int32_t ZORGetLocalBootStage(void);

/* --- Questions on both nodes -------------------------------------------- */

/* Each is non-zero when its entry holds exactly "yes", else 0; nothing is logged. */
int32_t ZORIsNetStatusChanged(void);
int32_t ZORIsHwevdReady(void);
int32_t ZORIsRemoteAliveByNet(void);
int32_t ZORIsRemoteAliveByExpanderHB(void);
int32_t ZORIsLocalHandlerReady(void);
int32_t ZORIsRemoteHandlerReady(void);

/* 1 when the remote handler is ready and the remote node is alive by network, else 0. */
int32_t ZORIsRemoteHandlerReadyAndCommNormal(void);

/*
 * The boot-done value of the remote node; 255 (unknown) after ERROR "Failed to
 * get remote_boot_done_status from ha status".
 */
int32_t ZORGetRemoteBootDoneStatus(void);

/*
 * 1 when the remote node has finished booting (bit 0 set, bit 2 clear), else 0.
 * ERROR "Error: remote boot done status is unknown".
 */
int32_t ZORIsRemoteBootDone(void);

/* ZORIsRemoteBootDone and alive by network: 1 or 0, with the same ERROR line. */
int32_t ZORIsRemoteBootDoneAndCommNormal(void);

/* The local role; ZOR_ROLE_UNKNOWN after NOTICE "Failed to get role from ha status". */
int32_t ZORGetLocalRole(void);

/* The remote role; ZOR_ROLE_UNKNOWN after NOTICE "Failed to get remote status". */
int32_t ZORGetRemoteRole(void);

/* Non-zero when /tmp/zor exists, that is, when the manager is running. */
int32_t ZORIsTmpPathExist(void);

/* The roles for callers that may run without a manager: then silently 0. */
int32_t KEVAZORGetLocalRole(void);
int32_t KEVAZORGetRemoteRole(void);

/*
 * Whether the other node is alive by expander heartbeat or by network: 0 with
 * 1 or 0 in *alive. -1 without a line of its own, *alive untouched, when the
 * manager is not running or the expander heartbeat entry cannot be read as
 * present. alive must not be null.
 */
int32_t KEVAZORIsRemoteAlive(uint32_t *alive);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

/* Asserted in C as well as in C++. */
#ifdef __cplusplus
#define ZOR_STATUS_ASSERT(name, condition) static_assert(condition, #name)
#else
#define ZOR_STATUS_ASSERT(name, condition) typedef char name[(condition) ? 1 : -1]
#endif
ZOR_STATUS_ASSERT(zor_sync_status_is_packed, sizeof(ZORSyncStatus) == 3188);
ZOR_STATUS_ASSERT(zor_runtime_status_fits_a_register, sizeof(ZORRuntimeStatus) == 8);
#undef ZOR_STATUS_ASSERT

#endif
