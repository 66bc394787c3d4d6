#include "hwinfo/enclosure_record.h"

#include <algorithm>
#include <iterator>

#include "foundation/decimal.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "foundation/string_hash.h"
#include "foundation/string_list.h"
#include "foundation/text.h"
#include "hwinfo/hardware_section.h"
#include "hwinfo/number_list.h"

namespace {

constexpr char kLogModule[] = "zor_hwinfo_core";

// The steps of the record report as the function that log watchers know.
constexpr char kReporter[] = "HWReadAEncInfo";

template <size_t Count>
void SetUnknown(int32_t (&values)[Count]) {
    std::fill(std::begin(values), std::end(values), ZOR_HARDWARE_UNKNOWN);
}

// Each step is false after its line.

bool ReadIdentity(const StringHash &hash, ZORHWEncInfo *enc) {
    const char *serial = hash.Value("EncSN");
    if (!serial) {
        ZOR_ERROR_OF(kReporter, "No enc sn in enc data.");
        return false;
    }
    CopyText(enc->EncSN, sizeof enc->EncSN, serial);
    const char *model = hash.Value("ModelID");
    if (!model) {
        ZOR_ERROR_OF(kReporter, "No enc modelid in enc data.");
        return false;
    }
    enc->ModelID = ParseDecimal(model);
    const char *slots = hash.Value("MaxDisk");
    if (!slots) {
        ZOR_ERROR_OF(kReporter, "No enc max disks in enc data.");
        return false;
    }
    enc->MaxDisk = ParseDecimal(slots);
    if (const char *temperature = hash.Value("TempStatus"))
        enc->TempStatus = ParseDecimal(temperature);
    return true;
}

bool ReadDisks(const StringHash &hash, StringList *list, ZORHWEncInfo *enc) {
    const char *text = hash.Value("DiskTypes");
    if (!text || *text == '\0') return true;
    const int count = list->Split(text, ",");
    if (count < 0) {
        ZOR_ERROR_OF(kReporter, "Failed to strsep");
        return false;
    }
    if (count != enc->MaxDisk) {
        ZOR_ERROR_OF(kReporter, "disk list length not match");
        return false;
    }
    ReadNumbers(*list, enc->DiskTypes, ZOR_ENC_DISK_COUNT);
    return true;
}

// The lines of fans and power supplies speak of a disk list on purpose.

bool ReadFans(const StringHash &hash, StringList *list, ZORHWEncInfo *enc) {
    const char *text = hash.Value("FanStatus");
    if (!text) SetUnknown(enc->FanStatus);
    if (!text || *text == '\0') return true;
    const int count = list->Split(text, ",");
    if (count != ZOR_ENC_FAN_COUNT) {
        ZOR_ERROR_OF(kReporter, "disk list length not match %d != %d (%s)", ZOR_ENC_FAN_COUNT,
                     count, text);
        return false;
    }
    ReadNumbers(*list, enc->FanStatus, ZOR_ENC_FAN_COUNT);
    return true;
}

bool ReadPower(const StringHash &hash, StringList *list, ZORHWEncInfo *enc) {
    const char *text = hash.Value("PowerStatus");
    if (!text) SetUnknown(enc->PowerStatus);
    if (!text || *text == '\0') return true;
    if (list->Split(text, ",") != ZOR_ENC_POWER_COUNT) {
        ZOR_ERROR_OF(kReporter, "disk list length not match");
        return false;
    }
    ReadNumbers(*list, enc->PowerStatus, ZOR_ENC_POWER_COUNT);
    return true;
}

}  // namespace

int32_t HWReadAEncInfo(const char *serial, ZORHWEncInfo *enc) {
    if (!serial || !enc) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    StringHash hash;
    if (!hash.IsAllocated()) {
        ZOR_ERROR("Failed to alloc hash");
        return -1;
    }
    StringList list;
    if (!list.IsAllocated()) {
        ZOR_ERROR("Failed to allock list");
        return -1;
    }
    const EnclosureSection section(serial);
    const int found = VLIBCFileGetSection(kHardwareFile, section.Name(), hash.Holder());
    if (found < 0) {
        ZOR_ERROR("Failed to use file get section");
        return -1;
    }
    if (found == 0) {
        SetUnknown(enc->PowerStatus);
        SetUnknown(enc->FanStatus);
        return 0;
    }
    const bool isRead = ReadIdentity(hash, enc) && ReadDisks(hash, &list, enc) &&
                        ReadFans(hash, &list, enc) && ReadPower(hash, &list, enc);
    return isRead ? 0 : -1;
}
