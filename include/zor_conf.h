/*
 * zor_conf: the persistent cluster configuration, /usr/keva/etc/kevazor/ha.conf.
 *
 * One setting is named by a host selector (zor_status.h) and a configuration
 * key. The file is written on the active node only; the other node receives it
 * as a record. Reads and writes serialise on the configuration lock (10
 * retries, one second apart), except that the three identity keys of the
 * cluster are read through a cache, without a lock.
 *
 * Results: 0 success, -1 failure after an ERROR line; functions that answer a
 * question return what is said there. Text is cut to size - 1 characters and
 * terminated.
 */
#ifndef ZOR_CONF_H
#define ZOR_CONF_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Configuration keys. Keys 1, 3 and 4 exist for the cluster alone. */
typedef enum ZOR_CONF_KEY {
    ZOR_CONF_SN = 0,
    ZOR_CONF_MONITOR_IF = 1,
    ZOR_CONF_MAC_ALL = 2,
    ZOR_CONF_IF_ALL = 3,
    ZOR_CONF_MONITOR_SERVICE = 4,
    ZOR_CONF_SN_CUSTOM = 5
} ZOR_CONF_KEY;
#define ZOR_CONF_KEY_COUNT 6

/* Sizes in bytes that hold every value of a kind. */
#define ZOR_CONF_SERIAL_SIZE 36
#define ZOR_CONF_MAC_SIZE 162
#define ZOR_CONF_MONITOR_SIZE 144

/* The configuration as it travels to the other node (docs/records.md). */
typedef struct ZORSyncConf {
    char clusterSerial[ZOR_CONF_SERIAL_SIZE];
    char leftSerial[ZOR_CONF_SERIAL_SIZE];
    char rightSerial[ZOR_CONF_SERIAL_SIZE];
    char clusterCustomSerial[ZOR_CONF_SERIAL_SIZE];
    char leftCustomSerial[ZOR_CONF_SERIAL_SIZE];
    char rightCustomSerial[ZOR_CONF_SERIAL_SIZE];
    char monitorIf[ZOR_CONF_MONITOR_SIZE];
    int32_t isReady; /* 1 when the record was filled by ZORGetSyncHAConf */
} ZORSyncConf;

/* --- Single settings ----------------------------------------------------- */

/*
 * The name of a setting in the file, owned by the library; null after ERROR
 * "Error key (%d)", "Read monitor if with not ha role", "Illrgal usd on
 * ha.conf ZOR_CONF_IF_ALL with role:%d", or "Error". Of a node's setting the
 * name tells the left node from the right one, by this node's serial number;
 * ERROR "Failed to get local sn", "Failed to get left node SN", "Failed to
 * read conf".
 */
const char *ZORGetConfKey(uint32_t selector, uint32_t key);

/*
 * Reads one setting. 1 found, 0 absent, -1 failed: ERROR "Error parameter"
 * (null buffer, size 0), "Failed to get key", "failed to get filelock for get
 * ha.conf".
 */
int32_t ZORGetHAConf(uint32_t selector, uint32_t key, char *buffer, uint32_t size);

/*
 * Writes one setting, on the active node only, and sets the change flag, also
 * when the write failed. The cache is left alone. ERROR "Failed to get key",
 * "Call set ha.conf on passive", "failed to get filelock for get ha.conf",
 * "Error parameter" (null value), "Failed to set value of key (path:%s,
 * key:%s, value:%s)"; a change flag that cannot be set is logged, "Failed to
 * set ha conf change flag", and is no failure.
 */
int32_t ZORSetHAConf(uint32_t selector, uint32_t key, const char *value);

/*
 * Rebuilds the cache; to be called after a change of the cluster's identity.
 * 0 once the lock is taken. ERROR "failed to get filelock for get ha.conf",
 * "Unlink ha.info.cached failed", "Failed to get ha sn cached", "Failed to get
 * ha cus sn cached", "Failed to get mac all cached".
 */
int32_t ZORPrepareCachedConf(void);

/* --- Change flag --------------------------------------------------------- */

/* Creates or touches the change flag; the base library's result, logs nothing. */
int32_t ZORSetHAConfChangeFlag(void);

/* Non-zero when a setting was written since the flag was last cleaned. */
int32_t ZORIsConfChanged(void);

/* Removes the flag; 0, or -1 also when it was not there. Logs nothing. */
int32_t ZORCleanConfChangeFlag(void);

/* --- The record for the other node --------------------------------------- */

/*
 * Fills a record, on the active node only; fields whose setting is absent stay
 * as the caller left them. ERROR "Error parameter" (null record), "call get
 * sync ha conf on passive", "failed to get filelock for get ha.conf". A setting
 * that cannot be read is logged, "Failed to get ha sn" or "Failed to get
 * monitor if", and is no failure.
 */
int32_t ZORGetSyncHAConf(ZORSyncConf *record);

/*
 * Stores a received record, never on the active node. ERROR "Error parameter"
 * (null record), "call set sync ha conf on active", "Conf data is not OK. Skip
 * initialize" (the record was never filled), "failed to get filelock for get
 * ha.conf". A setting that cannot be written is logged, "Failed to set ha sn"
 * or "Failed to set monitor if", and is no failure.
 */
int32_t ZORSetSyncHAConf(const ZORSyncConf *record);

/* --- Monitored services -------------------------------------------------- */

#define ZOR_SERVICE_COUNT 16

/* The services that can be monitored; null behind the last one. */
extern const char *gMonitorServiceList[ZOR_SERVICE_COUNT];

/* Slot for slot: 1 when a monitored service is not to be restarted. */
extern int32_t gSkipRestart[ZOR_SERVICE_COUNT];

/* Writes the names of the services, with blanks between. ERROR "Bad parameer". */
int32_t ZORGetServiceNameList(char *buffer, uint32_t size);

/*
 * 1 when a service must not be restarted after a failure, 0 when it may, also
 * for an unknown one and after ERROR "Failed to alloc memory in service
 * changed", "Failed to read ha.conf in service changed", "Bad input data
 * ha.conf:%s in service list", "Failed to strsep in service changed", "Get
 * null pointer when get monitor service at index: %d. on string: %s".
 */
int32_t ZORIsSkipRestartService(const char *name);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

/* Asserted in C as well as in C++. */
#ifdef __cplusplus
#define ZOR_CONF_ASSERT(name, condition) static_assert(condition, #name)
#else
#define ZOR_CONF_ASSERT(name, condition) typedef char name[(condition) ? 1 : -1]
#endif
ZOR_CONF_ASSERT(zor_sync_conf_is_packed, sizeof(ZORSyncConf) == 364);
#undef ZOR_CONF_ASSERT

#endif
