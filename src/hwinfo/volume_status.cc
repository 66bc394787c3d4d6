// What the cluster-wide counters say of storage spaces and flash caches.

#include "foundation/log.h"
#include "hwinfo/hardware_lock.h"
#include "hwinfo/hardware_section.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_hwinfo_core";

// The steps report as the function that log watchers know.
constexpr char kReporter[] = "ZORHWGetVolumnStatus";

constexpr uint32_t kCountSize = 4;  // up to three digits

// Flash caches share the lines of the spaces on purpose.
void ReportDegraded() {
    ZOR_ERROR_OF(kReporter, "Failed to get space degrade count");
}
void ReportCrashed() {
    ZOR_ERROR_OF(kReporter, "Failed to get space crash count");
}

struct Counter {
    const char *key;
    uint32_t bit;
    void (*reportFailure)();
};

constexpr Counter kCounters[] = {
    {"DegradedSpaces", ZOR_VOLUME_SPACE_DEGRADED, ReportDegraded},
    {"CrashedSpaces", ZOR_VOLUME_SPACE_CRASHED, ReportCrashed},
    {"DegradedFCache", ZOR_VOLUME_FCACHE_DEGRADED, ReportDegraded},
    {"CrashedFCache", ZOR_VOLUME_FCACHE_CRASHED, ReportCrashed},
};

// False after its line; the bits that were found before stay.
bool ReadCounters(uint32_t *flags) {
    for (const Counter &counter : kCounters) {
        int32_t count;
        if (!ReadSectionNumber(kCommonSection, counter.key, kCountSize, &count)) {
            counter.reportFailure();
            return false;
        }
        if (count > 0) *flags |= counter.bit;
    }
    return true;
}

// Whether the remote node has more disks in use matters only to what has crashed.
bool CompareDisks(uint32_t *flags) {
    if ((*flags & (ZOR_VOLUME_SPACE_CRASHED | ZOR_VOLUME_FCACHE_CRASHED)) == 0) return true;
    ZORHWHostInfo local = {};
    if (HWReadHostValue(ZOR_HOST_LOCAL, &local) < 0) {
        ZOR_ERROR_OF(kReporter, "Failed to get local host value");
        return false;
    }
    ZORHWHostInfo remote = {};
    if (HWReadHostValue(ZOR_HOST_REMOTE, &remote) < 0) {
        ZOR_ERROR_OF(kReporter, "Failed to get remote host value");
        return false;
    }
    if (remote.UsedDisk <= local.UsedDisk) return true;
    if (*flags & ZOR_VOLUME_SPACE_CRASHED) *flags |= ZOR_VOLUME_SPACE_REMOTE_HAS_MORE_DISKS;
    if (*flags & ZOR_VOLUME_FCACHE_CRASHED) *flags |= ZOR_VOLUME_FCACHE_REMOTE_HAS_MORE_DISKS;
    return true;
}

}  // namespace

extern "C" int32_t ZORHWGetVolumnStatus(uint32_t *flags) {
    if (!flags) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    HardwareLock lock;
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to lock");
        return -1;
    }
    *flags = 0;
    const bool isRead = ReadCounters(flags) && CompareDisks(flags);
    if (!lock.Release()) ZOR_ERROR("ZORHWUnlock failed");
    return isRead ? 0 : -1;
}
