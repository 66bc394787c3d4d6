// Feeds the monitor settings with lists of any content: choices of services, their
// states, and rows of a caller whose texts may lack their end.
//
// The input is taken apart at newlines: choices, states, interfaces' choices, rows.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/no_waiting.h"
#include "fuzz/require.h"
#include "support/node_files.h"
#include "zor_conf.h"
#include "zor_webapi_core.h"

namespace {

constexpr int32_t kRows = 24;

struct GuardedRows {
    uint64_t before = 0x5a5a5a5a5a5a5a5a;
    ZORMonitorItem rows[kRows] = {};
    uint64_t after = 0x5a5a5a5a5a5a5a5a;
};

void List(uint32_t type, int32_t capacity) {
    GuardedRows guarded;
    int32_t count = 0;
    if (KEVAZORListMonitor(type, guarded.rows, capacity, &count) != 0) return;
    Require(guarded.before == guarded.after && guarded.before == 0x5a5a5a5a5a5a5a5a);
    Require(count >= 0 && count <= capacity);
    for (int32_t row = 0; row < count; ++row) {
        Require(memchr(guarded.rows[row].name, '\0', sizeof guarded.rows[row].name) != nullptr);
        Require(guarded.rows[row].enabled == 0 || guarded.rows[row].enabled == 1);
    }
}

// No value of the file may hold a newline, whatever a row's name is.
void Set(uint32_t type, const std::string &bytes) {
    ZORMonitorItem row = {};
    row.enabled = static_cast<int32_t>(bytes.size() % 3);
    std::copy_n(bytes.data(), std::min(bytes.size(), sizeof row.name), row.name);
    KEVAZORSetMonitor(type, &row, 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::array<std::string, 4> lists;
    size_t list = 0;
    for (size_t at = 0; at < size && list < lists.size(); ++at) {
        if (data[at] == '\n')
            ++list;
        else
            lists[list] += static_cast<char>(data[at]);
    }
    RequirePrivateNode();
    WriteNodeFile("/tmp/zor/ha.status",
                  "local_role=\"1\"\nis_local_handler_ready=\"no\"\nmonitor_service_status=\"" +
                      lists[1] + "\"\nlocal_host_ifname=\"eth0\"\n");
    WriteNodeFile("/usr/keva/etc/kevazor/ha.conf",
                  "monitor_service=\"" + lists[0] + "\"\nmonitor_if=\"" + lists[2] + "\"\n");
    for (const uint32_t type : {ZOR_MONITOR_SYSTEM, ZOR_MONITOR_SERVICE, ZOR_MONITOR_NETWORK}) {
        List(type, kRows);
        List(type, static_cast<int32_t>(size % kRows));
        Set(type, lists[3]);
    }
    char names[512];
    memset(names, '?', sizeof names);
    ZORGetServiceNameList(names, static_cast<uint32_t>(size % sizeof names) + 1);
    Require(memchr(names, '\0', sizeof names) != nullptr);
    return 0;
}
