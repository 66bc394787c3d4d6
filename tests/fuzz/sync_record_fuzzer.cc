// Stores records of any bytes, as they may come from another node: texts without an
// end, newlines in them. The files stay files of whole lines, and the entries that
// the records have no business with stay as they are.
//
// The first byte chooses the record; the rest lies over it.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "fuzz/no_waiting.h"
#include "fuzz/require.h"
#include "support/node_files.h"
#include "zor_conf.h"
#include "zor_status.h"

namespace {

constexpr char kStatusFile[] = "/tmp/zor/ha.status";
constexpr char kConfFile[] = "/usr/keva/etc/kevazor/ha.conf";

template <typename Record>
std::unique_ptr<Record> RecordOf(const uint8_t *data, size_t size) {
    auto record = std::make_unique<Record>();
    memcpy(record.get(), data, std::min(size, sizeof(Record)));
    return record;
}

void RequireWholeLines(const char *path) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        const size_t equals = line.find("=\"");
        Require(equals != std::string::npos && equals > 0 && line.back() == '"');
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    RequirePrivateNode();
    WriteNodeFile(kStatusFile, "local_role=\"2\"\nservice_changed=\"yes\"\n");
    WriteNodeFile(kConfFile, "sn_ha=\"CLUSTER\"\nmac_all_ha=\"kept\"\n");
    if (data[0] % 2 == 0) {
        const auto record = RecordOf<ZORSyncStatus>(data + 1, size - 1);
        ZORSetSyncHAStatus(data[0] & 2 ? ZOR_HOST_LOCAL : ZOR_HOST_REMOTE, record.get());
        ZORGetSyncHAStatus(ZOR_HOST_REMOTE, record.get());
    } else {
        const auto record = RecordOf<ZORSyncConf>(data + 1, size - 1);
        record->isReady = 1;
        ZORSetSyncHAConf(record.get());
        ZORGetSyncHAConf(record.get());
    }
    RequireWholeLines(kStatusFile);
    RequireWholeLines(kConfFile);
    char value[16] = "";
    Require(ZORGetHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_SERVICE_CHANGED, value, sizeof value) ==
                1 &&
            strcmp(value, "yes") == 0);
    return 0;
}
