// Questions on single values of a node.

#include "foundation/log.h"
#include "hwinfo/hardware_lock.h"
#include "hwinfo/hardware_section.h"
#include "zor_hwinfo_core.h"

namespace {

constexpr char kLogModule[] = "zor_hwinfo_core";

constexpr uint32_t kNumberSize = 8;  // up to seven digits
constexpr char kMemory[] = "Memory";

// Under the lock. Reports as the question.
int32_t ReadEncListStatus(const char *section) {
    constexpr char kReporter[] = "ZORHWGetEncListStatus";
    int32_t memory;
    if (!ReadSectionNumber(section, kMemory, kNumberSize, &memory)) {
        ZOR_NOTICE_OF(kReporter, "Failed to get host memory");
        return 0;
    }
    if (memory < 1) return 0;  // the section is not filled yet
    int32_t status;
    if (!ReadSectionNumber(section, "EncListStatus", kNumberSize, &status)) {
        // The host type is spoken of on purpose.
        ZOR_ERROR_OF(kReporter, "Failed to get host type");
        return 0;
    }
    return status;
}

}  // namespace

extern "C" {

int32_t ZORHWGetHostNodeType(void) {
    HardwareLock lock;
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to lock");
        return ZOR_HOST_TYPE_UNKNOWN;
    }
    int32_t type = ZOR_HOST_TYPE_UNKNOWN;
    if (!ReadSectionNumber(kLocalHostSection, "HostType", kNumberSize, &type))
        ZOR_NOTICE("Failed to get host type");
    if (!lock.Release()) ZOR_ERROR("ZORHWUnlock failed");
    return type;
}

int32_t ZORHWGetEncListStatus(int32_t selector) {
    const char *section = HostSection(selector);
    if (!section) {
        ZOR_ERROR("Bad parameter, role: %d", selector);
        return 0;
    }
    HardwareLock lock;
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to lock");
        return 0;
    }
    const int32_t status = ReadEncListStatus(section);
    if (!lock.Release()) ZOR_ERROR("ZORHWUnlock failed");
    return status;
}

int32_t ZORHWGetMemory(int32_t selector) {
    const char *section = HostSection(selector);
    if (!section) {
        ZOR_ERROR("Error parameter :%d", selector);
        return -1;
    }
    HardwareLock lock;
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to lock");
        return -1;
    }
    int32_t memory = 0;
    if (!ReadSectionNumber(section, kMemory, kNumberSize, &memory))
        ZOR_NOTICE("Failed to get memory on hw info cached");
    if (!lock.Release()) ZOR_ERROR("ZORHWUnlock failed");
    return memory > 0 ? memory : -1;
}

}  // extern "C"
