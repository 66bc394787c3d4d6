/*
 * zor_webapi_core: what the management interface shows and sets. The snapshots
 * of the cluster and of both nodes are built by the process that serves the
 * manager's load command, kept in files below /tmp/zor/ui, and served from
 * there while they are younger than 12 seconds. Monitored services and
 * interfaces, the state of the enclosures and the halt check are asked for
 * directly.
 *
 * Results: 0 success, -1 failure, unless a function says otherwise. Records
 * belong to the caller; their layouts are in docs/records.md.
 */
#ifndef ZOR_WEBAPI_CORE_H
#define ZOR_WEBAPI_CORE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- Snapshots ------------------------------------------------------------- */

#define ZOR_UI_TYPE_COUNT 3

/* Types of snapshot. */
enum {
    ZOR_UI_CLUSTER = 0,
    ZOR_UI_LOCAL_NODE = 1,
    ZOR_UI_REMOTE_NODE = 2
};

/* How a type of snapshot is asked for and built. */
typedef struct ZORLoadUIInfo {
    int32_t type;
    int32_t lockId;       /* of the builder (zor_filelock.h) */
    const char *flagPath; /* its time is that of the last request */
} ZORLoadUIInfo;

extern const ZORLoadUIInfo gZORLoadUIInfo[ZOR_UI_TYPE_COUNT];

/*
 * Builds the snapshot of a type and writes its file. 0, also when another
 * builder is at work and, after ERROR "Bad parameter", for an unknown type; -1
 * with ERROR "Failed to get ZOR Info" or "Failed to get node Info".
 */
int32_t ZORUILoadUI(int32_t type);

/* --- The cluster ------------------------------------------------------------- */

#define ZOR_UI_DESC_COUNT 64

/* A description of what is the matter. */
typedef struct ZORUIDesc {
    char key[64];      /* a message identifier of the interface */
    char detail[1024]; /* may be empty */
} ZORUIDesc;

/* The states in the records. */
enum {
    ZOR_UI_STATE_NORMAL = 1, /* of the cluster */
    ZOR_UI_STATE_GOOD = 2,   /* of everything else */
    ZOR_UI_STATE_WARNING = 3,
    ZOR_UI_STATE_ERROR = 4,
    ZOR_UI_STATE_UNREACHABLE = 6,
    ZOR_UI_STATE_UNDETERMINED = 9,
    ZOR_UI_STATE_BUSY = 13
};

/* The snapshot of the cluster, 69668 bytes. */
typedef struct ZORUIInfo {
    int32_t status;          /* 1 normal, 3 warning, 4 error, 13 busy, 9 not determined */
    int32_t linkStatus;      /* 2 normal, 3 or 4 broken in part or all, 6 unreachable */
    int32_t heartbeatStatus; /* 2 normal, 4 broken, 6 unreachable */
    int32_t descCount;
    int32_t readyA;
    int32_t readyB;
    int32_t remoteIsThirdHost;
    int32_t loginIPIsStatic; /* set by the getter for its caller */
    int32_t remoteBootDoneAndCommNormal;
    ZORUIDesc desc[ZOR_UI_DESC_COUNT];
} ZORUIInfo;

/*
 * Builds the snapshot of the cluster and writes its file. ERROR "Failed to
 * calloc", "Failed to get healthy status" (the snapshot is written all the
 * same), "Failed to read switchover remote reboot status", "Failed to get
 * remtoe conf in ha.conf", and for details that cannot be read "Failed to read
 * ha.status for failed services", "Failed to read ha.constraint for failed
 * services", "Failed to read ha.status for no static ip list". ERROR of
 * writing: "Error: File exist. %s", "Failed to fopen: %s", "Load %s failed.",
 * "Failed to mv %s %s", "Failed to fclose: %s".
 */
int32_t ZORUIGetZORInfo(void);

/*
 * Asks for new snapshots and reads that of the cluster. wait: non-zero waits up
 * to about 31 seconds for a fresh one. 1 read; 0 none fresh, the record holds
 * what is known without it; -1 with ERROR "Bad parameter" (null record) or
 * "Load %s failed. err:%s", "Failed to fopen: %s". On the way ERROR "Failed to
 * send load UI request"; of the login address ERROR "Failed to get env
 * 'SERVER_ADDR'", NOTICE "Failed to get static ip list", "Failed to do
 * ZORLoginIPIsStaticIP".
 */
int32_t KEVAZORGetZORInfoCached(ZORUIInfo *info, int32_t wait);

/* --- The nodes ------------------------------------------------------------------ */

/* The snapshot of a node, 72 bytes. */
typedef struct ZORNodeInfo {
    char serial[36];
    int32_t role;      /* as in zor_status.h */
    int32_t nodeIndex; /* 0 or 1; -1 unknown */
    int32_t replyStatusA;
    int32_t replyStatusB;
    int32_t replyValueA;
    int32_t replyValueB;
    int32_t networkStatus; /* 2 normal, 3 an interface failed, 0 unknown, 9 not determined */
    int32_t storageStatus; /* 2 normal, 3 abnormal, 0 unknown, 9 not determined */
    int32_t nodeState;
} ZORNodeInfo;

/* The manager's answer to the question for a node (command 33), 56 bytes. */
typedef struct ZORNodeInfoAnswer {
    int32_t role;
    char serial[36];
    int32_t valueA;
    int32_t valueB;
    int32_t statusA;
    int32_t statusB;
} ZORNodeInfoAnswer;

/*
 * Asks for new snapshots and reads that of the local (1) or remote (2) node.
 * Results and lines as of KEVAZORGetZORInfoCached; any other node is -1.
 */
int32_t KEVAZORGetNodeInfoCached(int32_t node, ZORNodeInfo *info, int32_t wait);

/* --- The network ------------------------------------------------------------------ */

/* A port; the first is the heartbeat link. */
typedef struct ZORNetInfo {
    char name[16];
    int32_t hasLocalSpeed;
    int32_t localSpeed; /* Mbit/s; -1 none */
    int32_t hasRemoteSpeed;
    int32_t remoteSpeed; /* Mbit/s; -1 none */
    int32_t inBond;
    int32_t bondNumber; /* -1 none */
    int32_t portState;  /* 6 not monitored; 2 both speeds known, 3 the local one, 4 none */
    int32_t monitored;
} ZORNetInfo;

/*
 * On the active node: fills a row for each port and stores their number. ERROR
 * "Bad parameter" (a null pointer), "Failed to get local role", "Failed to read
 * net info.", "The data size(%d) > maxsize(%d)".
 */
int32_t KEVAZORGetNetInfo(ZORNetInfo *rows, int32_t maxRows, int32_t *count);

/* --- What is monitored --------------------------------------------------------------- */

/* Types of monitored items. */
enum {
    ZOR_MONITOR_SYSTEM = 0,
    ZOR_MONITOR_SERVICE = 1,
    ZOR_MONITOR_NETWORK = 2
};

typedef struct ZORMonitorItem {
    int32_t enabled; /* non-zero: monitored */
    char name[64];
    int32_t state; /* 2 normal, 4 error or not active, 7 running, 8 stopped */
} ZORMonitorItem;

/*
 * Fills up to capacity rows of a type and stores their number; another type
 * leaves both alone. ERROR "Bad paramter", "size not enought %d", "Failed to
 * list monitor service" and "Failed to list monitor network" (each after a line
 * of its own: "Failed to alloc memory", "Failed to read monitor service",
 * "Failed to read ha.status for service status", "Failed to strsep", "Size too
 * much? %d > %d", "Size not equal %d %d", "input size not enought %d < %d",
 * "Failed to read netinfo from conf andd stats").
 */
int32_t KEVAZORListMonitor(uint32_t type, ZORMonitorItem *rows, int32_t capacity, int32_t *count);

/*
 * Changes what is monitored by n rows, which are matched by name. Nothing is
 * stored unless every row is good. ERROR "Bad parameter", "Not allow to modify
 * system monitor items", "Unknown type: %d", "Failed to list original monitor
 * services", "Set enable to a error service", "Failed to get original netinfo",
 * "Setting unknown interfaces: %s", "Set enable to a not active interface %s",
 * "Failed to set ha.conf", "Failed to send service chagned", "Failed to send
 * link chagned".
 */
int32_t KEVAZORSetMonitor(uint32_t type, const ZORMonitorItem *rows, int32_t n);

/* --- Enclosures and halting ------------------------------------------------------------ */

typedef struct ZOREnclosureStatus {
    int32_t status; /* 2 normal, 3 not */
    int32_t reserved[2];
    int32_t powerStatus; /* 2 normal, 3 failed, 9 unknown */
    int32_t fanStatus;
} ZOREnclosureStatus;

/*
 * On the active node: the state of the enclosures. ERROR "Bad parameter", "This
 * function only support active.", "Failed to get ha status of failed enc
 * hardware", "Failed to alloc memory", "Failed to str sep".
 */
int32_t KEVAZORGetEnclosure(ZOREnclosureStatus *record);

/* The tasks that keep a node from halting. */
typedef struct ZORHaltBlock {
    int32_t blocked;
    char tasks[1024];
} ZORHaltBlock;

/* The question and its answer (command 60), 2060 bytes. */
typedef struct ZORHaltCheck {
    int32_t which; /* bit 0 the local node, bit 1 the remote one */
    ZORHaltBlock local;
    ZORHaltBlock remote;
} ZORHaltCheck;

/*
 * Asks the manager what keeps nodes from halting, for up to 10 seconds. store:
 * non-zero publishes the answer in ha.status. ERROR "Bad parameter", "wrongin
 * size of return, %zd %d", NOTICE "Failed to command ask node info for ui with
 * return code: %d". ERROR "Failed to set ha status for blocking tasks" and
 * "Remote ha status failed" leave the result.
 */
int32_t KEVAZORCheckHaltOpt(int32_t which, ZORHaltCheck *record, int32_t store);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#ifdef __cplusplus
#define ZOR_WEBAPI_ASSERT(name, condition) static_assert(condition, #name)
#else
#define ZOR_WEBAPI_ASSERT(name, condition) typedef char name[(condition) ? 1 : -1]
#endif
ZOR_WEBAPI_ASSERT(zor_ui_info_size, sizeof(ZORUIInfo) == 69668);
ZOR_WEBAPI_ASSERT(zor_ui_info_desc_at, offsetof(ZORUIInfo, desc) == 36);
ZOR_WEBAPI_ASSERT(zor_node_info_size, sizeof(ZORNodeInfo) == 72);
ZOR_WEBAPI_ASSERT(zor_node_info_role_at, offsetof(ZORNodeInfo, role) == 36);
ZOR_WEBAPI_ASSERT(zor_node_info_answer_size, sizeof(ZORNodeInfoAnswer) == 56);
ZOR_WEBAPI_ASSERT(zor_net_info_size, sizeof(ZORNetInfo) == 48);
ZOR_WEBAPI_ASSERT(zor_monitor_item_size, sizeof(ZORMonitorItem) == 72);
ZOR_WEBAPI_ASSERT(zor_enclosure_status_size, sizeof(ZOREnclosureStatus) == 20);
ZOR_WEBAPI_ASSERT(zor_halt_check_size, sizeof(ZORHaltCheck) == 2060);
#undef ZOR_WEBAPI_ASSERT

#endif
