// The fans of one local enclosure.

#include "foundation/log.h"
#include "zor_encinfo.h"

namespace {

constexpr char kLogModule[] = "zor_encinfo";

}  // namespace

extern "C" int32_t KEVAZORGetEncFanStatus(int32_t enclosure, int32_t *fans, int32_t count) {
    if (enclosure < 1 || enclosure > ZOR_ENC_TABLE_SIZE || !fans || count != ZOR_ENC_FAN_COUNT) {
        ZOR_ERROR("Bad parameter");
        return -1;
    }
    ZORHWHostInfo local = {};
    ZORHWHostInfo remote = {};
    if (ZORHWGetEncListCached(&local, &remote) != 0) {
        ZOR_ERROR("Failed to get cached enc list");
        return -1;
    }
    if (enclosure > local.EncListLength) {
        ZOR_NOTICE("Error: enc length = %d, but iEncID = %d", local.EncListLength, enclosure);
        return -1;
    }
    for (int fan = 0; fan < ZOR_ENC_FAN_COUNT; ++fan) {
        const int32_t state = local.Encs[enclosure - 1].FanStatus[fan];
        if (state == ZOR_HARDWARE_UNKNOWN) {
            ZOR_NOTICE("Error: get UNKNOWN fan status");
            return -1;
        }
        fans[fan] = state;
    }
    return 0;
}
