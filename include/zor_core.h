/*
 * zor_core: requests to the manager; the serial numbers and addresses of the
 * node and the cluster; network interfaces, system disks, process priorities.
 *
 * Requests travel over two System V message queues; docs/records.md gives the
 * message. Nothing here blocks in the kernel: a waiting call looks for its
 * answer once a second.
 *
 * Results: 0 success, -1 failure, unless a function says otherwise. Buffers are
 * the caller's, with their size in bytes.
 */
#ifndef ZOR_CORE_H
#define ZOR_CORE_H

#include <kevacore.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- Requests to the manager -------------------------------------------- */

#define ZOR_SERIAL_SIZE 36 /* bytes of a serial number text with its NUL */
#define ZOR_PROCESS_NAME_SIZE 64
#define ZOR_PAYLOAD_SIZE 32400         /* bytes; the most that an answer carries */
#define ZOR_REQUEST_PAYLOAD_MAX 32399u /* bytes; one less than an answer */
#define ZOR_REQUEST_DEFAULT_TIMEOUT 15 /* seconds */

/* Results of ZORSendReqToMgr. */
enum {
    ZOR_REQUEST_DONE = 0,
    ZOR_REQUEST_FAILED = -1,   /* nothing reached the manager, or the channel broke */
    ZOR_REQUEST_REFUSED = -2,  /* the manager refused, or its answer is too large */
    ZOR_REQUEST_TIMED_OUT = -3 /* no answer in time */
};

/* A request; zero it before filling it in. */
typedef struct ZORMgrRequest {
    uint32_t commandId;
    const void *inputData; /* payload, may be null */
    uint32_t inputSize;    /* bytes, 1 to ZOR_REQUEST_PAYLOAD_MAX; ignored without inputData */
    void *outputData;      /* set by the call: answer payload or null; the caller frees it */
    uint32_t outputSize;   /* set by the call: payload length that the manager stated */
    uint32_t wait;         /* non-zero: wait for the answer */
    int64_t timeout;       /* seconds; 0 or less means ZOR_REQUEST_DEFAULT_TIMEOUT */
} ZORMgrRequest;

/* The message on the queues: 32544 bytes, of which the identity is the message type. */
typedef struct ZORMgrMessage {
    int64_t identity;
    uint32_t kind; /* 1 in every request */
    uint32_t result;
    uint32_t wait;
    uint32_t reserved1;
    uint32_t payloadLength;
    char serialNumber[ZOR_SERIAL_SIZE];
    uint8_t payload[ZOR_PAYLOAD_SIZE];
    uint32_t commandId;
    char processName[ZOR_PROCESS_NAME_SIZE]; /* arguments separated by NULs, may be full */
    uint32_t reserved2;
    int64_t sendTime; /* seconds since the epoch */
} ZORMgrMessage;

/* Payload of command 40, which cancels a grouped command that timed out. */
typedef struct ZORCancelPayload {
    uint32_t commandId;
    uint32_t reserved1;
    int64_t identity;
    int64_t sendTime;
    uint32_t reason; /* always 3 */
    uint32_t reserved2;
} ZORCancelPayload;

/*
 * Sends a request to the manager and, when wait is set, waits for the answer
 * of this thread. Free request->outputData after every call, failed or not.
 * A grouped command that times out is cancelled.
 *
 * -1, each after its line: ERROR "ZOR is not supported on this model"; NOTICE
 * "ZOR Manager is not running. Message queue is not ready for send req"; ERROR
 * "Local handler is not ready, but ZORSendReqToMgr() is called", "Bad
 * parameter", "The input data with pointer(%lX), but size(%u) is out of
 * bounds, command id:%u", "Failed to calloc", "Failed to get key (%d)",
 * "Failed to get message queue: %s", "Failed to get sn", "Failed to send
 * message: %s", "Failed to receive response for command type :%d", "Failed to
 * calloc()". -2 and -3 log nothing, but a cancellation that cannot be sent:
 * ERROR "Failed to send msg to queue", "Failed to failback timeout command".
 * On the way: ERROR "Get process name fialed"; NOTICE "Send time is differecne
 * with receive time, ..." for each answer to an earlier request.
 */
int32_t ZORSendReqToMgr(ZORMgrRequest *request);

/* Whole hours since boot plus one; 1 after ERROR "Failed to get sysinfo". */
int64_t ZORGetTimeCode(void);

/*
 * The identity of the calling thread's messages in this hour: the time code
 * shifted left by 20, joined with the thread id. -1 after ERROR "Thread
 * id(%ld) > MAXTID(%ld)" or "Get bad time code %ld".
 */
int64_t ZORGetMsgIdenticalID(void);

/*
 * Takes the messages of the given hour off the manager's queues 1 to 7: up to
 * the current hour, those of that hour and of every earlier one; for a later
 * hour, those of that hour alone. Each removed message is logged. 0, also when
 * single queues failed; -1 with ERROR "Bad paramter, %ld" when timeCode does
 * not fit 43 bits. ERROR per queue: "Failed to get key (%d)", "Failed to get
 * message queue: %s", "Failed to calloc", "Failed to receive message from
 * message queue: %s", each followed by "Clean msgqueue: %d Failed."
 */
int32_t ZORCleanAllMsgQueue(int64_t timeCode);

/* --- Serial numbers of this node ---------------------------------------- */

/*
 * Reads the factory (Original) or the custom serial number that the kernel
 * publishes. size: bytes of the buffer, ZOR_SERIAL_SIZE holds every serial.
 * 0; also when the buffer is too small: it is then all zeros and the base
 * library's error code is 3328. -1 when the kernel publishes none, or with
 * error code 3328 for a null buffer or size 0. Nothing is logged.
 */
int32_t ZORGetOriginalSerialNumber(char *buffer, uint32_t size);
int32_t ZORGetCustomSerialNumber(char *buffer, uint32_t size);

/* The same two functions for callers outside the cluster's own programs. */
int32_t KEVAZORGetOriginalSN(char *buffer, uint32_t size);
int32_t KEVAZORGetCustomSN(char *buffer, uint32_t size);

/* --- Serial numbers and addresses of the cluster ------------------------- */

/* The remote node's serial from ha.conf. -1 when it is absent or cannot be read. */
int32_t KEVAZORGetRemoteOriginalSN(char *buffer, uint32_t size);

/*
 * The cluster's serial number (custom 0) or custom serial number (any other)
 * from ha.conf; without one, this node's own. ERROR "Error parameter", "This
 * model is not dual head", and for the serial number "Failed to get ha serial
 * number from ha conf" (before its fall-back), "Failed to get original serial
 * number".
 */
int32_t KEVAZORGetSerialNumber(int32_t custom, char *buffer, uint32_t size);

/*
 * The cluster's MAC address at a position, from 0. ERROR "Error parameter",
 * "This model is not dual head", "Failed to get ha mac address from ha conf",
 * "Failed to alloc list", "Failed to strsep", "Failed to get mac from list".
 */
int32_t KEVAZORGetMac(int32_t index, char *buffer, uint32_t size);

/* --- Network interfaces -------------------------------------------------- */

#define ZOR_IF_TABLE_SIZE 9 /* ports (with the heartbeat link), bonds, interfaces */
#define ZOR_IF_NAME_SIZE 16

/* A port; entry 0 of its table is the heartbeat link, entry k + 1 is ethk. */
typedef struct ZORIfPort {
    int32_t index; /* of the entry; -1: not filled */
    int32_t bond;  /* number of its bond; -1: none */
    int32_t monitored;
    int32_t staticIp;
    int32_t present;
    int32_t localSpeed;  /* Mbit/s; -1: none */
    int32_t remoteSpeed; /* Mbit/s; -1: none */
} ZORIfPort;

typedef struct ZORIfBond {
    int32_t number;         /* -1: not filled */
    int32_t memberCount;    /* -1: not filled */
    int32_t minLocalSpeed;  /* of its members; -1: none */
    int32_t minRemoteSpeed; /* of its members; -1: none */
    int32_t monitored;
    int32_t staticIp;
} ZORIfBond;

/* An interface in the order of the list of names: a port or a bond. */
typedef struct ZORIfEntry {
    int32_t isBond;
    int32_t monitored;
    int32_t index; /* k + 1 for ethk, the number of a bond; -1: not filled */
    char name[ZOR_IF_NAME_SIZE];
} ZORIfEntry;

/* Interfaces of both nodes (docs/records.md). */
typedef struct ZORIfInfo {
    ZORIfPort ports[ZOR_IF_TABLE_SIZE];
    ZORIfBond bonds[ZOR_IF_TABLE_SIZE];
    ZORIfEntry interfaces[ZOR_IF_TABLE_SIZE];
    int32_t portCount; /* entries of ports in use, the heartbeat link included */
    int32_t bondCount; /* highest bond number + 1 */
    int32_t interfaceCount;
} ZORIfInfo;

/*
 * Fills the record from ha.status and ha.conf. After -1 the record must not be
 * used. ERROR "Bad paramter" (null record), "Failed to alloc memory", "Failed
 * to read monitor if", "Failed to read ha.status for if name", "Failed to read
 * ha.status for is static ip", "Failed to strsep", "input size not enought %d
 * < %d", "Get ha status if speed failed.", "Get eth:%d more than monitor list
 * (%s)", "Failed to strsep: %s", "Failed to sscanf(%s)" (NOTICE for a port),
 * "Failed to sscanf(%s) idx:%d". No failure: ERROR "Static ip array not
 * enought for read conf if info, %d %d", and without numbers for a bond.
 */
int32_t ZORGetConfIfInfo(ZORIfInfo *info);

/*
 * The number in a name "ethN" or "ovs_ethN" (eth non-zero), "bondN" or
 * "ovs_bondN" (bond non-zero). -1 when no pattern matches; ERROR "Error
 * parameter" (a null pointer), "Nothing to check" (both flags 0).
 */
int32_t ZORParseIFIndex(const char *name, int32_t *index, int32_t eth, int32_t bond);

/*
 * 1 when a name begins like a port (eth non-zero) or like a bond (bond
 * non-zero), else 0; ERROR "Error parameter" (null name), "Nothing to
 * validate" (both flags 0).
 */
int32_t ZORValidateIFPrefix(const char *name, int32_t eth, int32_t bond);

/* 1 when the heartbeat link has a local speed, else 0; NOTICE "Failed to read netInfo". */
int32_t ZORIsHeartbeatLinkNormal(void);

/* Says that the network configuration is being changed (non-zero) or no longer (0). */
int32_t ZORSetNetConfChanging(int32_t changing);

/* Non-zero while the network configuration is being changed. */
int32_t ZORIsNetConfChanging(void);

/*
 * Asks the manager for a bonding; list: text of size bytes. Waits up to 30
 * seconds. ERROR "Error parameter" (null list, size 0), "Failed send msg to
 * state controller, with if list [%s]".
 */
int32_t KEVAZORBonding(const char *list, int32_t size);

/* Tells the manager that a bonding is done. ERROR "Failed send msg to state controller". */
int32_t KEVAZORBondingDone(uint32_t value);

/* --- System disks, on the active node ------------------------------------ */

/*
 * Stores the names of the system disks. ERROR "Set system disk list only
 * support on active", "Fail to dump list to string", "Failed to set ha status
 * for sys disk list: %s".
 */
int32_t KEVAZORSetSystemDiskList(const VLIBCSzList *list);

/*
 * Appends the stored names to the caller's list. ERROR "Get system disk list
 * only support on active", "Bad parameter. input list is null or not alloc",
 * "Failed to get disk list", "Get empty string from sys disk list",
 * "VLIBCStrSep failed, input string: %s".
 */
int32_t KEVAZORGetSystemDiskList(VLIBCSzList **list);

/* --- Upgrades ------------------------------------------------------------ */

/* What kind of update a payload announces. */
enum {
    ZOR_UPDATE_KIND_UPGRADE = 1,
    ZOR_UPDATE_KIND_SMALL_UPDATE = 2
};

/* The payload of command 17, 108 bytes (docs/records.md). */
typedef struct ZORUpgradePayload {
    uint32_t updateFlashVersion; /* non-zero: the marker was rewritten */
    char serialNumber[ZOR_SERIAL_SIZE];
    char version[64];
    uint32_t kind;
} ZORUpgradePayload;

/*
 * Announces an upgrade to a version (text, cut to 63 characters) and rewrites
 * the flash version marker, of which a copy is kept. Waits up to 60 seconds. 0;
 * -2 when the remote node is reached by the expander alone, with the marker
 * rewritten; -1 otherwise. ERROR "ZOR Manager is not running. Can't do
 * upgrade", "Error parameter", "Failed to get sn", "Failed to send upgrade
 * request" (after "Failed to execute 'cp -f %s %s'", "Failed to set value of
 * key (path:%s, key:%s, value:%s)" or "Failed to send request: %d").
 */
int32_t KEVAZORUpgrade(const char *version);

/*
 * The same for a small update, which rewrites the marker when
 * updateFlashVersion is non-zero. 0 or -1. ERROR "ZOR Manager is not running.
 * Can't do small update", and the others of an upgrade.
 */
int32_t KEVAZORSmallUpdate(const char *version, int32_t updateFlashVersion);

/*
 * Announce that the upgrade or small update has failed, and put the marker
 * back. ERROR "ZOR Manager is not running. Can't notify upgrade failed" or
 * "... small update failed", "Failed to send upgrade fail request" (after
 * "Failed to send request: %d"); "Failed to execute 'mv -f %s %s'" leaves the
 * result.
 */
int32_t KEVAZORUpgradeFail(void);
int32_t KEVAZORSmallUpdateFail(void);

/* --- Health --------------------------------------------------------------- */

/* Bits of the health word that make the node's state an error, else a warning. */
#define ZOR_HEALTH_ERROR_BITS 0x3000638u
#define ZOR_HEALTH_WARNING_BITS 0x44bc79c7u

/*
 * Stores the health word that the manager has computed last. 0; -1 silently
 * when there is none; -2 with ERROR "Bad parameter" (null pointer), "Failed to
 * get ha.status for healthy status".
 */
int32_t ZORGetHealthyStatus(uint32_t *health);

/*
 * Asks the manager to compute the health word anew. ERROR "HealthyStatus:
 * Failed to unlink update done flag", "HealthyStatus: Failed to touch need
 * update flag", "HealthyStatus: Failed to send req %d".
 */
int32_t ZORCheckHealthyStatusNoWait(void);

/*
 * The same, and waits up to 15 seconds for it. health may be null, and is not
 * read then. ERROR "HealthyStatus: Failed to check healthy status",
 * "HealthyStatus: Failed to wait healthy status update done", "HealthyStatus:
 * Failed to get healthy status".
 */
int32_t ZORCheckHealthyStatus(uint32_t *health);

/*
 * Writes "error", "warning" or "healthy" into a buffer of size bytes, which is
 * cleared first. The length of the word, cut or not; else the result of
 * ZORGetHealthyStatus. -1 silently for a null buffer.
 */
int32_t KEVAZORGetOverviewStatus(char *buffer, uint32_t size);

/* --- Forwarding to the remote node ---------------------------------------- */

#define ZOR_APPEND_LOG_EVENT_COUNT 34
#define ZOR_SEND_NOTIFY_TAG_COUNT 12

/* Log events that carry the serial number of their node, and tags of notifications. */
extern const uint64_t gAppendLogEventList[ZOR_APPEND_LOG_EVENT_COUNT];
extern const char *const gSendNotifyTagList[ZOR_SEND_NOTIFY_TAG_COUNT];

/* Records of the log and the notification service; only copied here. */
typedef struct ZORLogRecord {
    uint8_t bytes[568];
} ZORLogRecord;

typedef struct ZORNotifyRecord {
    uint8_t bytes[6152];
} ZORNotifyRecord;

/* 1 when the event is in the table or one of 0x13450001 to 0x13450022, else 0. */
int32_t ZORShouldAppendSNToLog(uint64_t event);
int32_t KEVAZORShouldAppendSNToLog(uint64_t event);

/* 1 when the tag is in the table, else 0; of a null tag with error code 3328. */
int32_t ZORShouldSendNotifyDataToRemote(const char *tag);
int32_t KEVAZORShouldSendNotifyDataToRemote(const char *tag);

/*
 * Hand a record to the manager, who forwards it; nothing is waited for. ERROR
 * "Failed to send request: %d". A null record is -1 silently.
 */
int32_t KEVAZORSendLogToRemote(ZORLogRecord record);
int32_t KEVAZORSendNotifyDataToRemote(const ZORNotifyRecord *record);

/*
 * Forwards the setting "buzzeroffcfg" of /etc/kevainfo.conf. ERROR "Failed to
 * get buzzeroffcfg from kevainfo.conf", "Failed to send request: %d".
 */
int32_t KEVAZORSendBuzzerOffCfgToRemote(void);

/* --- Power ----------------------------------------------------------------- */

/*
 * Ask the manager to restart or stop this node, which must not serve: its role
 * is unknown, passive or junior. ERROR "Local host is not in flash mode (role
 * is not unknown, passive, junior", "Failed to touch the file '%s'"; on the
 * way ERROR "============ now reboot local host, role: %d" or "... poweroff
 * ...".
 */
int32_t ZORFlashModeReboot(void);
int32_t ZORFlashModePoweroff(void);

/*
 * The same while the manager runs; NOTICE "ZOR Manager is not running. We
 * can't reboot passive" or "... poweroff passive".
 */
int32_t KEVAZORPassiveReboot(void);
int32_t KEVAZORPassivePoweroff(void);

/* Results of a remote shutdown besides 0 and -1. */
enum {
    ZOR_SHUTDOWN_NOT_SENT = -2,
    ZOR_SHUTDOWN_NO_MANAGER = -3,
    ZOR_SHUTDOWN_TIMED_OUT = -4
};

/*
 * On the active node: shuts the remote node down and waits up to 30 seconds
 * until it is gone. 0 gone; -1 with ERROR "ZOR is not supported on this model",
 * "Local is not active. should not call shut down remote on active"; -2 with
 * ERROR "Failed to send command to remote with code: %d"; -3 with NOTICE "ZOR
 * Manager is not running. Message queue is not ready for send req"; -4 with
 * ERROR "WAIT REMOTE SHUTDOWN TIMEOUT". On the way ERROR "Remote alive but
 * communication not OK."
 */
int32_t KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(void);

/* --- Other requests --------------------------------------------------------- */

/*
 * On the active node: has the passwords synchronised to the remote node.
 * NOTICE "Remote is not online"; ERROR "Failed to sync pw, local role is not
 * active", "Failed to send request: %d".
 */
int32_t KEVAZORSyncPasswdToRemote(void);

/*
 * Passes a fan adjustment, data of size bytes, to the remote node. ERROR "This
 * model is not dualhead", "Error parameter" (null data, size below 1), "The
 * output data size is too large" (32400 and more), "Failed to send request:
 * %d".
 */
int32_t KEVAZORRemoteFanAdjust(const void *data, int32_t size);

/* Starts the adjustment of the system disk. ERROR "Failed send msg to state controller". */
int32_t KEVAZORAdjustSystemDisk(void);

/* Reports a press of the reset button; waits up to 15 seconds. The same ERROR. */
int32_t KEVAZORResetButtonPress(void);

/* --- The BIOS upgrade window -------------------------------------------------- */

/* Non-zero while the window is open on this node. */
int32_t ZORIsUpgradingBios(void);

/*
 * Opens the window: its flag, and longer expander heartbeat timers. ERROR
 * "Failed to create bios upgrade flag", "Failed to prolong expander HB".
 */
int32_t ZORBiosUpgradeStart(void);

/* Removes the flag. The result of unlink. */
int32_t ZORBiosUpgradeEnd(void);

/*
 * Opens the window as the system's version and root need it. The lock that
 * keeps others out stays in the handle, also after a failure, until the end.
 * ERROR "Error parameter" (null handle), "ZOR is not supported on this model",
 * "Failed to get system version" (after "Failed to read major version from
 * %s" or "... minor ..."), "Failed to get lock, bios upgrade is in
 * processing", "Failed to do bios upgrade start procedure", "Failed to stop ha
 * mgr", "Failed to prolong expander HB timeout to %s".
 */
int32_t KEVAZORBiosUpgradeStart(FILE **handle);

/*
 * Closes the window and releases the lock in the handle, if there is one,
 * whatever the result. ERROR as of the start, and "Failed to do bios upgrade
 * end procedure", "Failed to start ha mgr", "Local role is active, should not
 * be here".
 */
int32_t KEVAZORBiosUpgradeEnd(FILE **handle);

/* --- Process priority ---------------------------------------------------- */

/*
 * Sets the nice value, the I/O priority (as the kernel encodes it) and the
 * out-of-memory score of the calling process. All three are tried; -1 when one
 * failed. Lines of a short form, "zor_core:LINE Failed to set cpu priority",
 * "... io priority", "... oom priority".
 */
int32_t ZORSetPriority(int32_t nice, int32_t ioPriority, int32_t oomScore);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

/* Asserted in C as well as in C++. */
#ifdef __cplusplus
#define ZOR_CORE_ASSERT(name, condition) static_assert(condition, #name)
#else
#define ZOR_CORE_ASSERT(name, condition) typedef char name[(condition) ? 1 : -1]
#endif
ZOR_CORE_ASSERT(zor_message_size, sizeof(ZORMgrMessage) == 32544);
ZOR_CORE_ASSERT(zor_message_result, offsetof(ZORMgrMessage, result) == 12);
ZOR_CORE_ASSERT(zor_message_payload_length, offsetof(ZORMgrMessage, payloadLength) == 24);
ZOR_CORE_ASSERT(zor_message_serial_number, offsetof(ZORMgrMessage, serialNumber) == 28);
ZOR_CORE_ASSERT(zor_message_payload, offsetof(ZORMgrMessage, payload) == 64);
ZOR_CORE_ASSERT(zor_message_command_id, offsetof(ZORMgrMessage, commandId) == 32464);
ZOR_CORE_ASSERT(zor_message_process_name, offsetof(ZORMgrMessage, processName) == 32468);
ZOR_CORE_ASSERT(zor_message_send_time, offsetof(ZORMgrMessage, sendTime) == 32536);
ZOR_CORE_ASSERT(zor_cancel_payload_size, sizeof(ZORCancelPayload) == 32);
ZOR_CORE_ASSERT(zor_cancel_payload_reason, offsetof(ZORCancelPayload, reason) == 24);
ZOR_CORE_ASSERT(zor_request_size, sizeof(void *) != 8 || sizeof(ZORMgrRequest) == 48);
ZOR_CORE_ASSERT(zor_upgrade_payload_size, sizeof(ZORUpgradePayload) == 108);
ZOR_CORE_ASSERT(zor_upgrade_payload_version, offsetof(ZORUpgradePayload, version) == 40);
ZOR_CORE_ASSERT(zor_log_record_size, sizeof(ZORLogRecord) == 568);
ZOR_CORE_ASSERT(zor_notify_record_size, sizeof(ZORNotifyRecord) == 6152);
ZOR_CORE_ASSERT(zor_if_info_size, sizeof(ZORIfInfo) == 732);
ZOR_CORE_ASSERT(zor_if_info_bonds, offsetof(ZORIfInfo, bonds) == 252);
ZOR_CORE_ASSERT(zor_if_info_interfaces, offsetof(ZORIfInfo, interfaces) == 468);
ZOR_CORE_ASSERT(zor_if_info_counts, offsetof(ZORIfInfo, portCount) == 720);
#undef ZOR_CORE_ASSERT

#endif
