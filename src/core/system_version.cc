#include "core/system_version.h"

#include <cstdlib>

#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"

namespace {

constexpr char kLogModule[] = "zor_core";
constexpr uint32_t kMajorWeight = 100;

// False when the file has no such number.
bool ReadNumber(const char *key, uint32_t *number) {
    char text[8] = {};
    if (VLIBCFileGetKeyValue(kVersionFile, key, text, sizeof text, 0) < 1) return false;
    *number = static_cast<uint32_t>(strtol(text, nullptr, 10));
    return true;
}

}  // namespace

int32_t GetSysVersion(uint32_t *version) {
    if (!version) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    uint32_t majorVersion;
    if (!ReadNumber("majorversion", &majorVersion)) {
        ZOR_ERROR("Failed to read major version from %s", kVersionFile);
        return -1;
    }
    uint32_t minorVersion;
    if (!ReadNumber("minorversion", &minorVersion)) {
        ZOR_ERROR("Failed to read minor version from %s", kVersionFile);
        return -1;
    }
    *version = majorVersion * kMajorWeight + minorVersion;
    return 0;
}
