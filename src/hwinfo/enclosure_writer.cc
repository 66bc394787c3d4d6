// The enclosures of a node stored in the hardware file, and the list of all
// enclosures kept tidy: an enclosure has a section as long as a node lists it.

#include <cstdio>
#include <cstring>

#include "foundation/joined_text.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "foundation/string_hash.h"
#include "foundation/string_list.h"
#include "hwinfo/enclosure_serial.h"
#include "hwinfo/hardware_section.h"
#include "hwinfo/number_list.h"
#include "hwinfo/record_bounds.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_hwinfo_core";

// A part of it stands in a function of its own.
constexpr char kReporter[] = "HWWriteEncInfoToFile";

constexpr char kAllEnclosures[] = "AllEnclosure";
constexpr size_t kAllEnclosuresSize = 1024;
constexpr size_t kDiskTypesSize = 45;

bool SetNumber(StringHash *hash, const char *key, int32_t number) {
    char text[16];
    snprintf(text, sizeof text, "%d", number);
    return hash->Set(key, text);
}

bool SetValues(StringHash *hash, const char *serial, const ZORHWEncInfo &enclosure) {
    char disks[kDiskTypesSize];
    FormatNumbers(enclosure.DiskTypes, BoundedSlots(enclosure.MaxDisk), disks, sizeof disks);
    return SetNumber(hash, "ModelID", enclosure.ModelID) &&
           SetNumber(hash, "MaxDisk", enclosure.MaxDisk) && hash->Set("EncSN", serial) &&
           hash->Set("DiskTypes", disks);
}

// Stores one enclosure and enters it in the list of all.
bool WriteAEncInfo(const ZORHWEncInfo &enclosure, StringList *all) {
    const EnclosureSerial serial(enclosure);
    if (!all->Has(serial.Text()) && !all->Insert(all->Count() - 1, serial.Text()))
        ZOR_ERROR("Faiiled to insert to list");
    StringHash hash;
    if (!hash.IsAllocated()) {
        ZOR_ERROR("Failed to alloc memory");
        return false;
    }
    // What is there is kept: the fans, power supplies and temperature.
    const EnclosureSection section(serial.Text());
    if (VLIBCFileGetSection(kHardwareFile, section.Name(), hash.Holder()) < 0) {
        ZOR_ERROR("Failed to get section :%s", section.Name());
        return false;
    }
    if (!SetValues(&hash, serial.Text(), enclosure)) {
        ZOR_ERROR("Failed to set disks");
        return false;
    }
    if (HWSetSection(section.Name(), hash.Get()) != 0) {
        ZOR_ERROR("Failed to set section: %s", section.Name());
        return false;
    }
    return true;
}

bool IsListedBy(const ZORHWHostInfo &host, const char *serial) {
    const int32_t count = BoundedEnclosures(host.EncListLength);
    for (int32_t index = 0; index < count; ++index) {
        if (strcmp(EnclosureSerial(host.Encs[index]).Text(), serial) == 0) return true;
    }
    return false;
}

// Forgets the enclosures that neither node lists.
void TidyAllEnclosures(const ZORHWHostInfo &host, const ZORHWHostInfo &other,
                       const StringList &all) {
    char text[kAllEnclosuresSize];
    JoinedText listed(text, sizeof text);
    for (int index = 0; index < all.Count(); ++index) {
        const char *serial = all.Item(index);
        if (!serial || *serial == '\0') continue;
        if (IsListedBy(host, serial) || IsListedBy(other, serial)) {
            listed.Add(serial);
            continue;
        }
        const EnclosureSection section(serial);
        if (VLIBCFileRemoveSection(kHardwareFile, section.Name()) < 0)
            ZOR_ERROR_OF(kReporter, "Failed to remove section: %s", section.Name());
    }
    if (VLIBCFileSetSectionValue(kHardwareFile, kCommonSection, kAllEnclosures, text) < 0)
        ZOR_ERROR_OF(kReporter, "Failed to set all enclist");
}

}  // namespace

extern "C" {

int32_t HWWriteEncInfoToFile(int32_t selector, const ZORHWHostInfo *host) {
    if (!host) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    char text[kAllEnclosuresSize];
    if (!ReadSectionText(kCommonSection, kAllEnclosures, text, sizeof text)) {
        ZOR_ERROR("Failed to get host type");
        return -1;
    }
    StringList all;
    if (!all.IsAllocated()) {
        ZOR_ERROR("Failed to alloc list");
        return -1;
    }
    if (all.Split(text, ",") < 0) {
        ZOR_ERROR("Failed to strsep");
        return -1;
    }
    const int32_t count = BoundedEnclosures(host->EncListLength);
    for (int32_t index = 0; index < count; ++index) {
        if (!WriteAEncInfo(host->Encs[index], &all)) {
            ZOR_ERROR("Failed to write a enc info");
            return -1;
        }
    }
    ZORHWHostInfo other = {};
    const int32_t otherNode = selector == ZOR_HOST_LOCAL ? ZOR_HOST_REMOTE : ZOR_HOST_LOCAL;
    if (HWReadHostValue(otherNode, &other) < 0) {
        ZOR_ERROR("Failed to load enc list");
        return -1;
    }
    TidyAllEnclosures(*host, other, all);
    return 0;
}

}  // extern "C"
