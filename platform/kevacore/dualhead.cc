// Whether this model supports the two-node setup: every machine does, unless
// the stand-in's own setting file says no.

#include "kevacore.h"

namespace {

constexpr char kSettingFile[] = "/usr/keva/etc/kevacore-stand-in.conf";
constexpr char kSettingKey[] = "support_dualhead";

}  // namespace

extern "C" int VLIBCSupportDualhead(void) {
    return VLIBCFileCheckKeyValue(kSettingFile, kSettingKey, "no", 0) ? 0 : 1;
}
