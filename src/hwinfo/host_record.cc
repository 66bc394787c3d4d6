// The record of a node, from its section of the hardware file.

#include <cstddef>

#include "foundation/decimal.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "foundation/string_hash.h"
#include "foundation/string_list.h"
#include "foundation/text.h"
#include "hwinfo/hardware_lock.h"
#include "hwinfo/hardware_section.h"
#include "zor_hwinfo_core.h"

namespace {

constexpr char kLogModule[] = "zor_hwinfo_core";

// The file has no key for it.
constexpr char kModel[] = "QM77000zt+";

constexpr size_t kSerialListSize = 1024;

struct NumberKey {
    const char *key;
    int32_t ZORHWHostInfo::*field;
};

constexpr NumberKey kNumberKeys[] = {
    {"VisibleDisk", &ZORHWHostInfo::VisibleDisk},
    {"UsedDisk", &ZORHWHostInfo::UsedDisk},
    {"HostType", &ZORHWHostInfo::HostType},
    {"EncListStatus", &ZORHWHostInfo::EncListStatus},
    {"EncListLength", &ZORHWHostInfo::EncListLength},
    {"EncListStatusLastCorretPos", &ZORHWHostInfo::EncListStatusLastCorretPos},
    {"Memory", &ZORHWHostInfo::Memory},
};

void ReadNumbers(const StringHash &hash, ZORHWHostInfo *host) {
    for (const NumberKey &number : kNumberKeys) {
        if (const char *value = hash.Value(number.key)) host->*number.field = ParseDecimal(value);
    }
}

}  // namespace

extern "C" {

int32_t HWReadHostValue(int32_t selector, ZORHWHostInfo *host) {
    const char *section = HostSection(selector);
    if (!section || !host) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    StringHash hash;
    StringList serials;
    if (!hash.IsAllocated() || !serials.IsAllocated()) {
        ZOR_ERROR("Failed to alloc");
        return -1;
    }
    const int found = VLIBCFileGetSection(kHardwareFile, section, hash.Holder());
    if (found < 0) {
        ZOR_ERROR("Failed to get section :%s", section);
        return -1;
    }
    if (found == 0) return 0;
    CopyText(host->Model, sizeof host->Model, kModel);
    ReadNumbers(hash, host);
    const char *value = hash.Value("EncList");
    if (!value) return 1;
    char text[kSerialListSize];
    CopyText(text, sizeof text, value);
    const int count = serials.Split(text, ",");
    if (count < 0) {
        ZOR_ERROR("Failed to strsep(%s)", text);
        return -1;
    }
    if (count > ZOR_ENC_TABLE_SIZE) {
        ZOR_ERROR("List size(%d) > max size(%d), %s", count, ZOR_ENC_TABLE_SIZE, text);
        return -1;
    }
    for (int index = 0; index < count; ++index) {
        ZORHWEncInfo &enclosure = host->Encs[index];
        if (const char *serial = serials.Item(index))
            CopyText(enclosure.EncSN, sizeof enclosure.EncSN, serial);
    }
    return 1;
}

int32_t ZORHWReadHostValue(int32_t selector, ZORHWHostInfo *host) {
    HardwareLock lock;
    if (!lock.IsHeld()) {
        ZOR_ERROR("Failed to get lock");
        return -1;
    }
    const int32_t result = HWReadHostValue(selector, host);
    if (!lock.Release()) ZOR_ERROR("ZORHWUnlock Failed");
    return result;
}

}  // extern "C"
