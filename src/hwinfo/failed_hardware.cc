// Which kinds of hardware have failed in the local node's enclosures.

#include <algorithm>
#include <iterator>

#include "foundation/joined_text.h"
#include "foundation/log.h"
#include "hwinfo/record_bounds.h"
#include "zor_hwinfo_core.h"

namespace {

constexpr char kLogModule[] = "zor_hwinfo_core";

template <size_t Count>
bool HasFault(const int32_t (&values)[Count]) {
    return std::any_of(std::begin(values), std::end(values), [](int32_t value) {
        return value != ZOR_HARDWARE_NORMAL && value != ZOR_HARDWARE_UNKNOWN;
    });
}

}  // namespace

extern "C" int32_t ZORHWGetFailedEncHardware(char *buffer, uint32_t size) {
    if (!buffer || size == 0) return -1;
    ZORHWHostInfo local = {};
    ZORHWHostInfo remote = {};
    if (ZORHWGetEncListCached(&local, &remote) != 0) {
        ZOR_ERROR("Failed to get cached enc list");
        return -1;
    }
    bool hasPowerFailed = false;
    bool hasFanFailed = false;
    const int32_t count = BoundedEnclosures(local.EncListStatusLastCorretPos);
    for (int32_t index = 0; index < count; ++index) {
        hasPowerFailed = hasPowerFailed || HasFault(local.Encs[index].PowerStatus);
        hasFanFailed = hasFanFailed || HasFault(local.Encs[index].FanStatus);
    }
    if (!hasPowerFailed && !hasFanFailed) return 0;
    JoinedText kinds(buffer, size);
    if (hasPowerFailed) kinds.Add("power");
    if (hasFanFailed) kinds.Add("fan");
    return 0;
}
