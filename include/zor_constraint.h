/*
 * zor_constraint: what the active node records about failovers, for each node:
 * the services that failed there, and where it was failed over from. Kept in
 * /var/lib/zor/zor.constraint, one line for each node and kind. Only the
 * active node reads or writes it; no lock is taken.
 *
 * node: ZOR_HOST_LOCAL or ZOR_HOST_REMOTE (zor_status.h). Results: 1 or 0 as
 * said there, -1 failure. 0 also means that the remote node's serial number
 * is not known yet, so that it has no record. ERROR of all: "Constraint only
 * be used in active", "Get error role: %d", "Failed to read sn", "Error key
 * (%d)" (the kind).
 */
#ifndef ZOR_CONSTRAINT_H
#define ZOR_CONSTRAINT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Kinds of constraint. */
enum {
    ZOR_CONSTRAINT_FAILED_SERVICES = 0,
    ZOR_CONSTRAINT_FAILOVER_FROM = 1
};

/*
 * Reads a constraint into the caller's buffer of size bytes. 1 found, 0 absent.
 * ERROR "Error parameter" (null buffer, size 0), "Failed to get key", "Failed
 * to get key value".
 */
int32_t ZORGetConstraint(int32_t node, int32_t kind, char *buffer, uint32_t size);

/*
 * Writes a constraint. 1 written. ERROR "Error parameter" (null value), "Failed
 * to get key at role for set constrint: %d, iRet:%d", "Failed to set key value,
 * key:%s value:%s".
 */
int32_t ZORSetConstraint(int32_t node, int32_t kind, const char *value);

/*
 * Removes a constraint. The base library's result, not negative on success.
 * ERROR "Failed to get key at role for set constrint: %d", "Failed to remove
 * key, key:%s".
 */
int32_t ZORCleanConstraint(int32_t node, int32_t kind);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
