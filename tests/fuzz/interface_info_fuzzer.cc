// Feeds the interface record with lists of any content: whatever is in the files,
// nothing is touched outside the record, and a record that was filled is sound.
//
// The input is taken apart at newlines: names, static flags, monitor flags, local
// speeds, remote speeds. The first byte chooses the role.

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/require.h"
#include "support/node_files.h"
#include "zor_core.h"

namespace {

constexpr const char *kRoles[] = {"0", "1", "2", "4"};

bool IsFlag(int32_t value) {
    return value == 0 || value == 1;
}

void CheckRecord(const ZORIfInfo &info) {
    Require(info.portCount >= 1 && info.portCount <= ZOR_IF_TABLE_SIZE);
    Require(info.bondCount >= 0 && info.bondCount <= ZOR_IF_TABLE_SIZE);
    Require(info.interfaceCount >= 0 && info.interfaceCount <= ZOR_IF_TABLE_SIZE);
    for (int32_t entry = 0; entry < ZOR_IF_TABLE_SIZE; ++entry) {
        const ZORIfPort &port = info.ports[entry];
        Require(port.index == -1 || port.index == entry);
        Require(port.bond >= -1 && port.bond < ZOR_IF_TABLE_SIZE);
        Require(IsFlag(port.monitored) && IsFlag(port.staticIp) && IsFlag(port.present));
        Require(info.bonds[entry].number == -1 || info.bonds[entry].number == entry);
        Require(memchr(info.interfaces[entry].name, '\0', ZOR_IF_NAME_SIZE) != nullptr);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    std::array<std::string, 5> lists;
    size_t list = 0;
    for (size_t at = 1; at < size && list < lists.size(); ++at) {
        if (data[at] == '\n')
            ++list;
        else
            lists[list] += static_cast<char>(data[at]);
    }
    RequirePrivateNode();
    WriteNodeFile("/tmp/zor/ha.status", "local_role=\"" + std::string(kRoles[data[0] % 4]) +
                                            "\"\nlocal_host_ifname=\"" + lists[0] +
                                            "\"\nlocal_if_has_static_ip=\"" + lists[1] +
                                            "\"\nlocal_host_if_speed=\"" + lists[3] +
                                            "\"\nremote_host_if_speed=\"" + lists[4] + "\"\n");
    WriteNodeFile("/usr/keva/etc/kevazor/ha.conf", "monitor_if=\"" + lists[2] + "\"\n");
    ZORIfInfo info;
    if (ZORGetConfIfInfo(&info) == 0) CheckRecord(info);
    return 0;
}
