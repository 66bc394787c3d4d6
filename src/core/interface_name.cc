// The names of network interfaces.

#include <cstdio>
#include <cstring>

#include "foundation/log.h"
#include "zor_core.h"

namespace {

constexpr char kLogModule[] = "zor_core";

bool StartsWith(const char *name, const char *prefix) {
    return strncmp(name, prefix, strlen(prefix)) == 0;
}

}  // namespace

extern "C" {

int32_t ZORParseIFIndex(const char *name, int32_t *index, int32_t eth, int32_t bond) {
    if (!name || !index) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (!eth && !bond) {
        ZOR_ERROR("Nothing to check");
        return -1;
    }
    bool isMatch = false;
    if (eth) {
        isMatch |= sscanf(name, "eth%d", index) == 1;
        isMatch |= sscanf(name, "ovs_eth%d", index) == 1;
    }
    if (bond) {
        isMatch |= sscanf(name, "bond%d", index) == 1;
        isMatch |= sscanf(name, "ovs_bond%d", index) == 1;
    }
    return isMatch ? 0 : -1;
}

int32_t ZORValidateIFPrefix(const char *name, int32_t eth, int32_t bond) {
    if (!name) {
        ZOR_ERROR("Error parameter");
        return 0;
    }
    if (!eth && !bond) {
        ZOR_ERROR("Nothing to validate");
        return 0;
    }
    if (eth && (StartsWith(name, "eth") || StartsWith(name, "ovs_eth"))) return 1;
    if (bond && (StartsWith(name, "bond") || StartsWith(name, "ovs_bond"))) return 1;
    return 0;
}

}  // extern "C"
