// The names of the settings in ha.conf, by host selector and configuration key.

#include <cstring>

#include "conf/conf_store.h"
#include "foundation/log.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_conf";

struct ConfKeyRow {
    uint32_t key;
    const char *cluster;
    const char *left;  // null: the cluster's alone
    const char *right;
};

constexpr ConfKeyRow kRows[] = {
    {ZOR_CONF_SN, "sn_ha", "sn0", "sn1"},
    {ZOR_CONF_MONITOR_IF, "monitor_if", nullptr, nullptr},
    {ZOR_CONF_MAC_ALL, "mac_all_ha", "mac_all0", "mac_all1"},
    {ZOR_CONF_IF_ALL, "if_all", nullptr, nullptr},
    {ZOR_CONF_MONITOR_SERVICE, "monitor_service", nullptr, nullptr},
    {ZOR_CONF_SN_CUSTOM, "sn_ha_custom", "sn0_custom", "sn1_custom"},
};

constexpr bool IsInKeyOrder() {
    for (uint32_t row = 0; row < ZOR_CONF_KEY_COUNT; ++row) {
        if (kRows[row].key != row) return false;
    }
    return true;
}
static_assert(sizeof kRows / sizeof kRows[0] == ZOR_CONF_KEY_COUNT && IsInKeyOrder());

enum class Side {
    kUnknown,
    kLeft,
    kRight
};

Side Opposite(Side side) {
    return side == Side::kLeft ? Side::kRight : Side::kLeft;
}

// The side of the node that the selector means. The right node is compared
// first: a node that is both counts as the right one.
Side isRoleLeftNode(uint32_t selector) {
    char local[ZOR_CONF_SERIAL_SIZE] = {};
    char left[ZOR_CONF_SERIAL_SIZE] = {};
    char right[ZOR_CONF_SERIAL_SIZE] = {};
    if (ZORGetOriginalSerialNumber(local, sizeof local) < 0) {
        ZOR_ERROR("Failed to get local sn");
        return Side::kUnknown;
    }
    if (ZORGetHAConfImp("sn0", left, sizeof left) <= 0) {
        ZOR_ERROR("Failed to get left node SN");
        return Side::kUnknown;
    }
    const int32_t found = ZORGetHAConfImp("sn1", right, sizeof right);
    if (found < 0) ZOR_ERROR("Failed to read conf");
    if (found <= 0) right[0] = '\0';
    Side side;
    if (strcmp(right, local) == 0)
        side = Side::kRight;
    else if (strcmp(left, local) == 0)
        side = Side::kLeft;
    else
        return Side::kUnknown;
    return selector == ZOR_HOST_LOCAL ? side : Opposite(side);
}

}  // namespace

extern "C" const char *ZORGetConfKey(uint32_t selector, uint32_t key) {
    const bool isKnown = key < ZOR_CONF_KEY_COUNT;
    if (selector == ZOR_HOST_CLUSTER && isKnown) return kRows[key].cluster;
    const Side side = selector == ZOR_HOST_CLUSTER ? Side::kUnknown : isRoleLeftNode(selector);
    if (!isKnown) {
        ZOR_ERROR("Error key (%d)", static_cast<int>(key));
        return nullptr;
    }
    switch (key) {
        case ZOR_CONF_MONITOR_IF:
        case ZOR_CONF_MONITOR_SERVICE:
            // One text for both keys, on purpose.
            ZOR_ERROR("Read monitor if with not ha role");
            return nullptr;
        case ZOR_CONF_IF_ALL:
            ZOR_ERROR("Illrgal usd on ha.conf ZOR_CONF_IF_ALL with role:%d",
                      static_cast<int>(selector));
            return nullptr;
        default:
            break;
    }
    if (side == Side::kUnknown) {
        ZOR_ERROR("Error");
        return nullptr;
    }
    return side == Side::kLeft ? kRows[key].left : kRows[key].right;
}
