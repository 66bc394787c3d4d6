#include "node_conf.h"

#include <kevacore.h>

#include "interface_lists.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace {

constexpr char kConfFile[] = "/usr/keva/etc/kevazor/ha.conf";
constexpr int kLockRetries = 10;

std::string SerialOf(int32_t (*read)(char *, uint32_t)) {
    char serial[ZOR_SERIAL_SIZE] = {};
    return read(serial, sizeof serial) == 0 ? serial : "";
}

// A node's settings have no name before the left serial number is there, so that
// the two that tell the sides are written by their names.
void WriteSide(const char *name, const std::string &serial) {
    char present[ZOR_SERIAL_SIZE] = {};
    if (serial.empty() || VLIBCFileGetKeyValue(kConfFile, name, present, sizeof present, 0) > 0)
        return;
    FILE *lock = nullptr;
    if (ZORFileLock(ZOR_LOCK_HA_CONF, kLockRetries, &lock) != 0) return;
    VLIBCFileSetKeyValue(kConfFile, name, serial.c_str(), "%s=\"%s\"\n");
    ZORFileUnlock(&lock);
}

void WriteIfAbsent(uint32_t selector, uint32_t key, const std::string &value) {
    char present[1024];
    if (!value.empty() && ZORGetHAConf(selector, key, present, sizeof present) == 0)
        ZORSetHAConf(selector, key, value.c_str());
}

std::string Repeat(const char *item, int count) {
    std::string list = item;
    for (int number = 1; number < count; ++number) list += std::string(",") + item;
    return list;
}

}  // namespace

void KeepConf(int role, const std::string &peer_serial) {
    if (role != ZOR_ROLE_ACTIVE) return;
    const std::string own = SerialOf(ZORGetOriginalSerialNumber);
    WriteSide("sn0", own);
    WriteSide("sn1", peer_serial);
    WriteIfAbsent(ZOR_HOST_CLUSTER, ZOR_CONF_SN, own);
    WriteIfAbsent(ZOR_HOST_CLUSTER, ZOR_CONF_SN_CUSTOM, SerialOf(ZORGetCustomSerialNumber));
    WriteIfAbsent(ZOR_HOST_LOCAL, ZOR_CONF_SN_CUSTOM, SerialOf(ZORGetCustomSerialNumber));
    WriteIfAbsent(ZOR_HOST_CLUSTER, ZOR_CONF_MAC_ALL, ListMacAddresses());
    WriteIfAbsent(ZOR_HOST_LOCAL, ZOR_CONF_MAC_ALL, ListMacAddresses());
    WriteIfAbsent(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_IF, Repeat("yes", ZOR_IF_TABLE_SIZE));
    WriteIfAbsent(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_SERVICE, Repeat("no", ZOR_SERVICE_COUNT));
    ZORPrepareCachedConf();
}
