#include "webapi/switching_status.h"

#include <cstdlib>

#include "foundation/log.h"
#include "webapi/wall_clock.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

constexpr int32_t kBooted = 3;
constexpr double kLongest = 300;  // seconds

}  // namespace

SwitchingStatus getRemoteSwitchingStatus() {
    const int32_t stage = ZORGetLocalBootStage();
    if (stage != kBooted) return stage != 0 ? kLocalIsBooting : kSwitchingUnknown;
    char value[64] = {};
    const int32_t found =
        ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_IS_SWITCHOVER_REMOTE_REBOOT, value, sizeof value);
    if (found < 0) {
        ZOR_ERROR("Failed to read switchover remote reboot status");
        return kSwitchingUnknown;
    }
    if (found == 0) return kNotSwitching;
    const double start = strtod(value, nullptr);
    if (!(start > 0)) return kNotSwitching;
    return Now() - start > kLongest ? kSwitchingFailed : kSwitching;
}
