// The names of network interfaces.

#include <cstdlib>
#include <cstring>

#include "foundation/log.h"
#include "zor_core.h"

namespace {

constexpr char kLogModule[] = "zor_core";

bool StartsWith(const char *name, const char *prefix) {
    return strncmp(name, prefix, strlen(prefix)) == 0;
}

// Stores the decimal number behind a prefix, as "%d" would read it.
bool ParseBehind(const char *prefix, const char *name, int32_t *index) {
    if (!StartsWith(name, prefix)) return false;
    const char *digits = name + strlen(prefix);
    char *end;
    const long number = strtol(digits, &end, 10);
    if (end == digits) return false;
    *index = static_cast<int32_t>(number);
    return true;
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
        isMatch |= ParseBehind("eth", name, index);
        isMatch |= ParseBehind("ovs_eth", name, index);
    }
    if (bond) {
        isMatch |= ParseBehind("bond", name, index);
        isMatch |= ParseBehind("ovs_bond", name, index);
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
