#include "snapshot.h"

#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "description_words.h"
#include "library_log.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr milliseconds kLookPause{100};
constexpr seconds kPatience{8};
constexpr seconds kPatienceForYoung{3};
constexpr double kYoung_s = 1.5;

constexpr char kClusterFile[] = "/tmp/zor/ui/.ui.zorinfo.cache";
constexpr const char *kNodeFiles[] = {"/tmp/zor/ui/.ui.zornode.local.cache",
                                      "/tmp/zor/ui/.ui.zornode.remote.cache"};

struct StateWord {
    int32_t state;
    const char *word;
};

constexpr StateWord kOverall[] = {
    {1, "normal"}, {3, "warning"}, {4, "error"}, {13, "a storage space is busy"}};
constexpr StateWord kLinks[] = {
    {2, "normal"}, {3, "in part"}, {4, "broken"}, {6, "remote node not reachable"}};
constexpr StateWord kConditions[] = {{2, "normal"}, {3, "failed"}};
constexpr StateWord kRoles[] = {{1, "active"}, {2, "passive"}, {4, "junior"}};
constexpr StateWord kNodeStates[] = {{0, "another node, or not configured"},
                                     {2, "normal"},
                                     {3, "not in order"},
                                     {5, "offline"},
                                     {6, "no node"},
                                     {10, "a switchover or failover is in progress"},
                                     {11, "restarting for a switchover"},
                                     {12, "in transition 0x40"},
                                     {14, "normal, without the expander heartbeat"},
                                     {15, "in transition 0x50"},
                                     {16, "could not start"},
                                     {17, "the switchover has failed"}};

// What is not known is null.
template <size_t Count>
Json Word(const StateWord (&words)[Count], int32_t state) {
    for (const StateWord &row : words) {
        if (row.state == state) return row.word;
    }
    return nullptr;
}

// Seconds since the file was written.
Json AgeOf(const char *path) {
    struct stat status;
    struct timespec now;
    if (stat(path, &status) != 0 || clock_gettime(CLOCK_REALTIME, &now) != 0) return nullptr;
    const double age = static_cast<double>(now.tv_sec - status.st_mtim.tv_sec) +
                       static_cast<double>(now.tv_nsec - status.st_mtim.tv_nsec) / 1e9;
    return static_cast<double>(static_cast<long>(age * 10)) / 10;
}

bool IsYoung(const char *path) {
    const Json age = AgeOf(path);
    return !age.is_null() && age.get<double>() < kYoung_s;
}

// The library's own wait goes by whole seconds; a person's tool looks more often,
// and rather takes the snapshot that it has asked for than an older one.
bool ReadSoon(const char *path, const std::function<int32_t()> &read) {
    const auto begin = steady_clock::now();
    for (;;) {
        const int32_t result = read();
        const auto waited = steady_clock::now() - begin;
        if (result < 0) return false;
        if (result > 0 && (IsYoung(path) || waited >= kPatienceForYoung)) return true;
        if (waited >= kPatience || !ZORIsTmpPathExist()) return false;
        TakeLibraryLines();
        std::this_thread::sleep_for(kLookPause);
    }
}

Json DescribeAll(const ZORUIInfo &info) {
    Json descriptions = Json::array();
    for (int32_t index = 0; index < info.descCount; ++index) {
        const ZORUIDesc &desc = info.desc[index];
        descriptions.push_back({{"key", desc.key},
                                {"words", DescriptionWords(desc.key)},
                                {"detail", desc.detail[0] ? Json(desc.detail) : Json(nullptr)}});
    }
    return descriptions;
}

}  // namespace

std::optional<Json> ReadClusterSnapshot() {
    // No web server has been asked; the library is told so.
    setenv("SERVER_ADDR", "", 0);
    const auto info = std::make_unique<ZORUIInfo>();
    if (!ReadSoon(kClusterFile, [&] { return KEVAZORGetZORInfoCached(info.get(), 0); }))
        return std::nullopt;
    return Json{{"age_s", AgeOf(kClusterFile)},
                {"status", Word(kOverall, info->status)},
                {"link", Word(kLinks, info->linkStatus)},
                {"heartbeat", Word(kLinks, info->heartbeatStatus)},
                {"ready_a", info->readyA != 0},
                {"ready_b", info->readyB != 0},
                {"remote_is_third_host", info->remoteIsThirdHost != 0},
                {"remote_booted", info->remoteBootDoneAndCommNormal != 0},
                {"descriptions", DescribeAll(*info)}};
}

std::optional<Json> ReadNodeSnapshot(int node) {
    ZORNodeInfo info = {};
    if (!ReadSoon(kNodeFiles[node - 1], [&] { return KEVAZORGetNodeInfoCached(node, &info, 0); }))
        return std::nullopt;
    return Json{{"node", node == 1 ? "local" : "remote"},
                {"age_s", AgeOf(kNodeFiles[node - 1])},
                {"serial", info.serial[0] ? Json(info.serial) : Json(nullptr)},
                {"role", Word(kRoles, info.role)},
                {"index", info.nodeIndex < 0 ? Json(nullptr) : Json(info.nodeIndex)},
                {"state", Word(kNodeStates, info.nodeState)},
                {"network", Word(kConditions, info.networkStatus)},
                {"storage", Word(kConditions, info.storageStatus)},
                {"status_words", {info.replyStatusA, info.replyStatusB}},
                {"value_words", {info.replyValueA, info.replyValueB}}};
}
