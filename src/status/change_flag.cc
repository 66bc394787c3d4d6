// The flag that says that ha.status was set since a reader last cleaned it.

#include <unistd.h>

#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_status";

}  // namespace

extern "C" {

int32_t ZORSetHAStatusChangeFlag(void) {
    return VLIBCFileTouch(kStatusChangeFlag);
}

int32_t ZORIsStatusChanged(void) {
    return VLIBCFileExist(kStatusChangeFlag);
}

void ZORCleanStatusChangeFlag(void) {
    if (unlink(kStatusChangeFlag) != 0) ZOR_ERROR("Failed to clean status change flag");
}

}  // extern "C"
