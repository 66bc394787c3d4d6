/*
 * zor_hwinfo_core: what the nodes know of their hardware, kept in
 * /tmp/zor/hw_info: the hosts, their chains of enclosures, and the fans, power
 * supplies and disks of each enclosure. Other processes write the sections of
 * the hosts and the counters of storage spaces; the sections of the enclosures
 * are written by this library.
 *
 * selector: ZOR_HOST_LOCAL or ZOR_HOST_REMOTE (zor_status.h). Results: 0
 * success, -1 failure, unless a function says otherwise. Records belong to the
 * caller, who clears them to zero before a read: a reader sets only what the
 * file has. Functions named ZORHW... take the hardware lock themselves
 * (ZORHWWaitAndLock of zor_filelock.h, up to 10 seconds); of those named HW...
 * the caller holds it.
 *
 * Numbers in the file are decimal, and an unparsable one reads as 0. Whatever
 * they say, no function reads or writes outside a record.
 */
#ifndef ZOR_HWINFO_CORE_H
#define ZOR_HWINFO_CORE_H

#include <kevacore.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

#define ZOR_ENC_TABLE_SIZE 15
#define ZOR_ENC_SERIAL_SIZE 36
#define ZOR_ENC_DISK_COUNT 15
#define ZOR_ENC_FAN_COUNT 8
#define ZOR_ENC_POWER_COUNT 2
#define ZOR_HOST_MODEL_SIZE 100

/* The status of a fan or a power supply. Every other value is a fault. */
enum {
    ZOR_HARDWARE_NORMAL = 1,
    ZOR_HARDWARE_UNKNOWN = -1
};

/* Host types: the two controller positions of a shared chassis. */
enum {
    ZOR_HOST_TYPE_UNKNOWN = 0, /* not known yet */
    ZOR_HOST_TYPE_FIRST = 8,   /* the source for fans 1 to 4 */
    ZOR_HOST_TYPE_SECOND = 16  /* the source for fans 5 to 8 */
};

/* One enclosure. */
typedef struct ZORHWEncInfo {
    int32_t TempStatus;
    int32_t MaxDisk; /* number of disk slots */
    char EncSN[ZOR_ENC_SERIAL_SIZE];
    int32_t ModelID;
    int32_t LinkState;     /* 2 before the last correctly linked one; see HWReadEncList */
    int32_t PeerLinkState; /* left alone by the readers here */
    int32_t PowerStatus[ZOR_ENC_POWER_COUNT];
    int32_t FanStatus[ZOR_ENC_FAN_COUNT];
    int32_t DiskTypes[ZOR_ENC_DISK_COUNT]; /* the first MaxDisk are meaningful */
} ZORHWEncInfo;

/* One node and its chain of enclosures. */
typedef struct ZORHWHostInfo {
    char Model[ZOR_HOST_MODEL_SIZE];
    ZORHWEncInfo Encs[ZOR_ENC_TABLE_SIZE]; /* in chain order */
    int32_t EncListStatus;
    int32_t HostType;
    int32_t UsedDisk;
    int32_t VisibleDisk;
    int32_t EncListLength;              /* how many entries of Encs are meaningful */
    int32_t EncListStatusLastCorretPos; /* from 1; 0 is none */
    int32_t Memory;
} ZORHWHostInfo;

#ifdef __cplusplus
#define ZOR_HWINFO_ASSERT_LAYOUT(name, condition) static_assert(condition, #name)
#else
#define ZOR_HWINFO_ASSERT_LAYOUT(name, condition) typedef char name[(condition) ? 1 : -1]
#endif
ZOR_HWINFO_ASSERT_LAYOUT(zor_enc_info_size, sizeof(ZORHWEncInfo) == 156);
ZOR_HWINFO_ASSERT_LAYOUT(zor_enc_info_disks_at, offsetof(ZORHWEncInfo, DiskTypes) == 96);
ZOR_HWINFO_ASSERT_LAYOUT(zor_host_info_size, sizeof(ZORHWHostInfo) == 2468);
ZOR_HWINFO_ASSERT_LAYOUT(zor_host_info_status_at, offsetof(ZORHWHostInfo, EncListStatus) == 2440);
#undef ZOR_HWINFO_ASSERT_LAYOUT

/* --- Records -------------------------------------------------------------- */

/*
 * Fills a host record from the section of a node, without the sections of its
 * enclosures, of which only the serial numbers are set. 1 read; 0 the node has
 * no section, the record is untouched; -1 with ERROR "Bad parameter", "Failed
 * to alloc", "Failed to get section :%s", "Failed to strsep(%s)", "List
 * size(%d) > max size(%d), %s".
 */
int32_t HWReadHostValue(int32_t selector, ZORHWHostInfo *host);

/*
 * The same under the hardware lock. Also ERROR "Failed to get lock",
 * "ZORHWUnlock Failed" (the result stays).
 */
int32_t ZORHWReadHostValue(int32_t selector, ZORHWHostInfo *host);

/*
 * Fills a host record and every enclosure of its chain, each with its
 * LinkState: 2 before the last correctly linked one, 0 after it; that one
 * itself 0 when EncListStatus is 1, else 1. An enclosure without a section
 * reads as fans and power supplies unknown. 3 enclosures read; 2 list unusable
 * or first enclosure unreadable; 1 no enclosures; 0 the node has no section,
 * with NOTICE "No host data on role:%d"; -1 with ERROR "Failed to load host
 * value". An enclosure that cannot be read ends the reading with ERROR "Failed
 * to load enc info", after one of "Error parameter", "Failed to alloc hash",
 * "Failed to allock list", "Failed to use file get section", "No enc sn in enc
 * data.", "No enc modelid in enc data.", "No enc max disks in enc data.",
 * "Failed to strsep", "disk list length not match", "disk list length not
 * match %d != %d (%s)".
 */
int32_t HWReadEncList(int32_t selector, ZORHWHostInfo *host);

/*
 * Both nodes' records and enclosures under one hardware lock. 0; -1 with ERROR
 * "Bad parameter" (a null record), "Fail to get lock", "Failed to read enc
 * list". "ZORHWUnlock failed" leaves the result.
 */
int32_t ZORHWGetEncListCached(ZORHWHostInfo *local, ZORHWHostInfo *remote);

/*
 * Writes the serial numbers of the chain, joined with ",", into a buffer of
 * size bytes, cut to it. 0, also for an empty chain, which leaves the buffer
 * alone; -1 with ERROR "Bad paramter %lX %d" (null record or buffer, size 0).
 */
int32_t ZORHWUtilGetEncListStr(const ZORHWHostInfo *host, char *buffer, uint32_t size);

/*
 * Stores the enclosures of a node's record, and forgets those that neither
 * node has any more. selector: whose record it is, the other node's is read
 * from the file. Keys that it does not write are kept. 0; -1 with ERROR "Error
 * parameter", "Failed to get host type", "Failed to alloc list", "Failed to
 * strsep", "Failed to write a enc info" (after "Failed to alloc memory",
 * "Failed to get section :%s", "Failed to set disks" or "Failed to set
 * section: %s"), "Failed to load enc list". ERROR without a change of the
 * result: "Faiiled to insert to list", "Failed to remove section: %s", "Failed
 * to set all enclist".
 */
int32_t HWWriteEncInfoToFile(int32_t selector, const ZORHWHostInfo *host);

/*
 * Replaces a section of the file by the pairs of a hash, or appends it. 0; -1
 * with ERROR "Bad paremeter" (null argument), "Failed to add section: %s",
 * "Failed to set section: %s".
 */
int32_t HWSetSection(const char *section, VLIBCSzHash *hash);

/*
 * Stores the fans, power supplies and temperatures of the local node's
 * enclosures, which must have been stored before. First the fans that the
 * remote node is the source for are copied into the local record, which keeps
 * them whatever follows. 0; -1 with ERROR "Bad parameter", "No local enclist
 * initialized", "Local host type is same with remote: %d %d", "Failed to
 * lock", "Failed to alloc", "Failed to get section %s", "Failed to set hash
 * set value", "Failed set hash value", "Failed to set temperature to hash",
 * "Failed to set section: %s". "No sn in enclosure: %d" skips an enclosure,
 * "ZORHWUnlock failed" leaves the result.
 */
int32_t ZORHWWriteFanPowerStatus(ZORHWHostInfo *local, const ZORHWHostInfo *remote);

/* --- Questions ------------------------------------------------------------ */

/*
 * Each takes the hardware lock: ERROR "Failed to lock"; "ZORHWUnlock failed"
 * leaves the result.
 */

/* The local host type; 0 unknown, with NOTICE "Failed to get host type". */
int32_t ZORHWGetHostNodeType(void);

/*
 * The state of a node's chain of enclosures; 0 unknown, silently as long as
 * the node's memory is not known either. ERROR "Bad parameter, role: %d",
 * "Failed to get host type"; NOTICE "Failed to get host memory".
 */
int32_t ZORHWGetEncListStatus(int32_t selector);

/*
 * The installed memory of a node; -1 unknown. ERROR "Error parameter :%d",
 * NOTICE "Failed to get memory on hw info cached".
 */
int32_t ZORHWGetMemory(int32_t selector);

/* Volume status bits. */
enum {
    ZOR_VOLUME_SPACE_CRASHED = 1,
    ZOR_VOLUME_SPACE_DEGRADED = 2,
    ZOR_VOLUME_SPACE_REMOTE_HAS_MORE_DISKS = 4, /* set only beside 1 */
    ZOR_VOLUME_FCACHE_CRASHED = 8,
    ZOR_VOLUME_FCACHE_DEGRADED = 16,
    ZOR_VOLUME_FCACHE_REMOTE_HAS_MORE_DISKS = 32 /* set only beside 8 */
};

/*
 * Stores the volume status bits. 0; -1 with ERROR "Error parameter" (null
 * flags), "Failed to get space degrade count", "Failed to get space crash
 * count" (of spaces and flash caches alike), "Failed to get local host value",
 * "Failed to get remote host value"; the bits set so far stay.
 */
int32_t ZORHWGetVolumnStatus(uint32_t *flags);

/*
 * Writes "power", "fan" or "power,fan" into a buffer of size bytes, cut to it:
 * what has failed in the correctly linked enclosures of the local node.
 * Nothing failed leaves the buffer alone. 0; -1 with ERROR "Failed to get
 * cached enc list", or silently for a null buffer or size 0.
 */
int32_t ZORHWGetFailedEncHardware(char *buffer, uint32_t size);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
