/*
 * zor_encinfo: the enclosures as the management interface draws them: one
 * picture of the cluster, and the fans of one enclosure.
 *
 * Results: 0 success, -1 failure. Records belong to the caller. Both functions
 * take the hardware lock for their reading of the lists of enclosures.
 */
#ifndef ZOR_ENCINFO_H
#define ZOR_ENCINFO_H

#include <stddef.h>
#include <stdint.h>

#include "zor_hwinfo_core.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* A node in the picture. */
typedef struct ZORHostHWStatus {
    int32_t ReplyValue;     /* first value word of its snapshot */
    int32_t SecondStatusOk; /* 1 when the status words of its snapshot are 2 */
    int32_t FirstStatusOk;
    char Label[64]; /* model and "(Active)", "(Passive)" or "(Unknown)" */
    char Serial[36];
    int32_t ChainState; /* 1 EncListStatus is 2; 2 an enclosure is linked; 0 none */
    int32_t HostType;
} ZORHostHWStatus;

/* The picture, 2592 bytes. */
typedef struct ZORClusterEncInfo {
    int32_t EncLinkStatus;
    int32_t RemotePresence; /* 2 present, 1 not */
    int32_t LastCorretPos;
    ZORHostHWStatus Local;
    ZORHostHWStatus Remote;
    ZORHWEncInfo Encs[ZOR_ENC_TABLE_SIZE]; /* with the link states of both controllers */
} ZORClusterEncInfo;

/*
 * Fills the picture. ERROR "Bad parameter", "Failed to get cached enc list",
 * "Failed to get ha.status"; without a change of the result "Enc status not
 * ready", "Failed to get host hardware status" (after "Failed to get node info
 * cached").
 */
int32_t KEVAZORHostEncInfoGet(ZORClusterEncInfo *record);

/*
 * Copies the states of the fans of a local enclosure (1 to 15) into the
 * caller's array, whose count must be 8. ERROR "Bad parameter", "Failed to get
 * cached enc list"; NOTICE "Error: enc length = %d, but iEncID = %d", "Error:
 * get UNKNOWN fan status" (those before it are copied).
 */
int32_t KEVAZORGetEncFanStatus(int32_t enclosure, int32_t *fans, int32_t count);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#ifdef __cplusplus
#define ZOR_ENCINFO_ASSERT(name, condition) static_assert(condition, #name)
#else
#define ZOR_ENCINFO_ASSERT(name, condition) typedef char name[(condition) ? 1 : -1]
#endif
ZOR_ENCINFO_ASSERT(zor_host_hw_status_size, sizeof(ZORHostHWStatus) == 120);
ZOR_ENCINFO_ASSERT(zor_cluster_enc_info_size, sizeof(ZORClusterEncInfo) == 2592);
ZOR_ENCINFO_ASSERT(zor_cluster_enc_info_encs_at, offsetof(ZORClusterEncInfo, Encs) == 252);
#undef ZOR_ENCINFO_ASSERT

#endif
