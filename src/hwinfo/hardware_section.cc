#include "hwinfo/hardware_section.h"

#include <cstring>

#include "foundation/decimal.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "foundation/text.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_hwinfo_core";
constexpr uint32_t kLongestNumber = 16;
constexpr char kEnclosurePrefix[] = "ENCLOSURE_";

}  // namespace

const char *HostSection(int32_t selector) {
    if (selector == ZOR_HOST_LOCAL) return kLocalHostSection;
    if (selector == ZOR_HOST_REMOTE) return kRemoteHostSection;
    return nullptr;
}

// Without snprintf, which would cost more than the search for the section.
EnclosureSection::EnclosureSection(const char *serial) {
    constexpr size_t kPrefixLength = sizeof kEnclosurePrefix - 1;
    memcpy(name_, kEnclosurePrefix, kPrefixLength);
    CopyText(name_ + kPrefixLength, sizeof name_ - kPrefixLength, serial);
}

bool ReadSectionText(const char *section, const char *key, char *text, uint32_t size) {
    const int result = VLIBCFileGetSectionValue(kHardwareFile, section, key, text, size);
    if (result <= 0) text[0] = '\0';
    return result >= 0;
}

bool ReadSectionNumber(const char *section, const char *key, uint32_t size, int32_t *number) {
    char text[kLongestNumber];
    if (!ReadSectionText(section, key, text, size < sizeof text ? size : sizeof text)) return false;
    *number = ParseDecimal(text);
    return true;
}

extern "C" int32_t HWSetSection(const char *section, VLIBCSzHash *hash) {
    if (!section || !hash) {
        ZOR_ERROR("Bad paremeter");
        return -1;
    }
    const int done = VLIBCFileSetSection(kHardwareFile, section, 0, hash, kSectionLine);
    if (done > 0) return 0;
    if (done < 0) {
        ZOR_ERROR("Failed to set section: %s", section);
        return -1;
    }
    if (VLIBCFileAddSection(kHardwareFile, section, hash, kSectionLine) < 0) {
        ZOR_ERROR("Failed to add section: %s", section);
        return -1;
    }
    return 0;
}
