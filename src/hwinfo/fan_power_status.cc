// Fans, power supplies and temperatures of the local node's enclosures, with the
// fans that only the other controller sees.

#include <algorithm>
#include <cstdio>

#include "foundation/log.h"
#include "foundation/paths.h"
#include "foundation/string_hash.h"
#include "hwinfo/enclosure_serial.h"
#include "hwinfo/hardware_lock.h"
#include "hwinfo/hardware_section.h"
#include "hwinfo/number_list.h"
#include "hwinfo/record_bounds.h"
#include "zor_hwinfo_core.h"

namespace {

constexpr char kLogModule[] = "zor_hwinfo_core";

// The steps report as the function that log watchers know.
constexpr char kReporter[] = "ZORHWWriteFanPowerStatus";

constexpr size_t kFanTextSize = 64;
constexpr size_t kPowerTextSize = 32;

// Half of the fans, by the controller position that is their source.
struct FanSource {
    int32_t hostType;
    int firstFan;
};

constexpr int kFansOfASource = 4;

// A host type with both bits counts as the first.
constexpr FanSource kFanSources[] = {{ZOR_HOST_TYPE_FIRST, 0}, {ZOR_HOST_TYPE_SECOND, 4}};

void MergeFans(const ZORHWHostInfo &remote, ZORHWHostInfo *local) {
    const int32_t count =
        BoundedEnclosures(std::min(remote.EncListStatusLastCorretPos, local->EncListLength));
    for (const FanSource &source : kFanSources) {
        if ((remote.HostType & source.hostType) == 0) continue;
        for (int32_t index = 0; index < count; ++index) {
            std::copy_n(remote.Encs[index].FanStatus + source.firstFan, kFansOfASource,
                        local->Encs[index].FanStatus + source.firstFan);
        }
        return;
    }
}

// Each step is false after its line.

bool SetValues(const ZORHWEncInfo &enclosure, StringHash *hash) {
    char fans[kFanTextSize];
    FormatNumbers(enclosure.FanStatus, ZOR_ENC_FAN_COUNT, fans, sizeof fans);
    if (!hash->Set("FanStatus", fans)) {
        ZOR_ERROR_OF(kReporter, "Failed to set hash set value");
        return false;
    }
    char power[kPowerTextSize];
    FormatNumbers(enclosure.PowerStatus, ZOR_ENC_POWER_COUNT, power, sizeof power);
    if (!hash->Set("PowerStatus", power)) {
        ZOR_ERROR_OF(kReporter, "Failed set hash value");
        return false;
    }
    char temperature[16];
    FormatNumbers(&enclosure.TempStatus, 1, temperature, sizeof temperature);
    if (!hash->Set("TempStatus", temperature)) {
        ZOR_ERROR_OF(kReporter, "Failed to set temperature to hash");
        return false;
    }
    return true;
}

// The section is written back whole, with the keys that are not set here.
bool WriteEnclosure(const ZORHWEncInfo &enclosure, StringHash *hash) {
    const EnclosureSection section(EnclosureSerial(enclosure).Text());
    hash->Clear();
    if (VLIBCFileGetSection(kHardwareFile, section.Name(), hash->Holder()) < 1) {
        ZOR_ERROR_OF(kReporter, "Failed to get section %s", section.Name());
        return false;
    }
    if (!SetValues(enclosure, hash)) return false;
    if (VLIBCFileSetSection(kHardwareFile, section.Name(), 0, hash->Get(), kSectionLine) < 1) {
        ZOR_ERROR_OF(kReporter, "Failed to set section: %s", section.Name());
        return false;
    }
    return true;
}

// Under the lock.
bool WriteEnclosures(const ZORHWHostInfo &local) {
    StringHash hash;
    if (!hash.IsAllocated()) {
        ZOR_ERROR_OF(kReporter, "Failed to alloc");
        return false;
    }
    const int32_t count = BoundedEnclosures(local.EncListLength);
    for (int32_t index = 0; index < count; ++index) {
        if (local.Encs[index].EncSN[0] == '\0')
            ZOR_ERROR_OF(kReporter, "No sn in enclosure: %d", index);
        else if (!WriteEnclosure(local.Encs[index], &hash))
            return false;
    }
    return true;
}

}  // namespace

extern "C" int32_t ZORHWWriteFanPowerStatus(ZORHWHostInfo *local, const ZORHWHostInfo *remote) {
    if (!local || !remote) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    if (local->HostType == ZOR_HOST_TYPE_UNKNOWN) {
        ZOR_ERROR("No local enclist initialized");
        return -1;
    }
    if (remote->HostType == local->HostType) {
        // The local type twice, on purpose.
        ZOR_ERROR("Local host type is same with remote: %d %d", local->HostType, local->HostType);
        return -1;
    }
    MergeFans(*remote, local);
    HardwareLock lock;
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to lock");
        return -1;
    }
    const bool isWritten = WriteEnclosures(*local);
    if (!lock.Release()) ZOR_ERROR("ZORHWUnlock failed");
    return isWritten ? 0 : -1;
}
