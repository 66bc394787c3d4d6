// Serves snapshots of any content, size and age.
//
// The first byte chooses the cache and how old it is; the rest is the file.

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>

#include "fuzz/no_waiting.h"
#include "fuzz/require.h"
#include "support/node_files.h"
#include "zor_encinfo.h"
#include "zor_webapi_core.h"

namespace {

constexpr const char *kCaches[] = {"/tmp/zor/ui/.ui.zorinfo.cache",
                                   "/tmp/zor/ui/.ui.zornode.local.cache",
                                   "/tmp/zor/ui/.ui.zornode.remote.cache"};
constexpr time_t kAges[] = {0, 11, 12, -1, 100000};

template <typename Record>
struct Guarded {
    uint64_t before = 0x5a5a5a5a5a5a5a5a;
    Record record = {};
    uint64_t after = 0x5a5a5a5a5a5a5a5a;

    void Check() const { Require(before == after && before == 0x5a5a5a5a5a5a5a5a); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    RequirePrivateNode();
    WriteNodeFile("/tmp/zor/ha.status", "local_role=\"1\"\n");
    const char *const cache = kCaches[data[0] % 3];
    WriteNodeFile(cache, {reinterpret_cast<const char *>(data) + 1, size - 1});
    if (data[0] & 64) truncate(cache, data[0] & 128 ? 69668 : 72);
    const struct timespec when = {time(nullptr) - kAges[data[0] / 3 % 5], 0};
    const struct timespec times[] = {when, when};
    utimensat(AT_FDCWD, cache, times, 0);
    const auto info = std::make_unique<Guarded<ZORUIInfo>>();
    KEVAZORGetZORInfoCached(&info->record, 0);
    info->Check();
    for (const int32_t node : {1, 2}) {
        const auto node_info = std::make_unique<Guarded<ZORNodeInfo>>();
        KEVAZORGetNodeInfoCached(node, &node_info->record, 0);
        node_info->Check();
    }
    const auto picture = std::make_unique<Guarded<ZORClusterEncInfo>>();
    KEVAZORHostEncInfoGet(&picture->record);
    picture->Check();
    return 0;
}
