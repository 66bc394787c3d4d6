// Links, pipes, folders and devices in place of the library's files: an error at once,
// never a hang, and what a link points to stays as it is. Every function that can be
// called is called.

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include "fault/call_table.h"
#include "fault/working_node.h"
#include "support/queue_end.h"
#include "support/slow_build.h"
#include "zor_conf.h"
#include "zor_constraint.h"
#include "zor_filelock.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

namespace fs = std::filesystem;

namespace {

constexpr char kTarget[] = "/tmp/zor/precious";
constexpr char kPrecious[] = "local_role=\"2\"\n[LOCAL_HOST]\n\tMemory=7\n";

struct Oddity {
    const char *name;
    void (*plant)(const char *path);
};

// How GoogleTest prints a row.
void PrintTo(const Oddity &oddity, std::ostream *out) {
    *out << oddity.name;
}

const Oddity kOddities[] = {
    {"Link",
     [](const char *path) {
         WriteText(kTarget, kPrecious);
         fs::create_symlink(kTarget, path);
     }},
    {"DanglingLink", [](const char *path) { fs::create_symlink("/tmp/zor/nothing", path); }},
    {"Pipe", [](const char *path) { ASSERT_EQ(mkfifo(path, 0600), 0); }},
    {"Folder", [](const char *path) { fs::create_directories(std::string(path) + "/inner"); }},
    {"Device", [](const char *path) { ASSERT_EQ(mknod(path, S_IFCHR | 0600, makedev(1, 5)), 0); }},
};

const char *const kPaths[] = {
    kStatusFile,
    kConfFile,
    kConstraintFile,
    kHardwareFile,
    "/tmp/zor/ha.info.cache",
    "/tmp/zor/.zor.status.changed",
    "/tmp/zor/.zor.conf.changed",
    "/tmp/zor/.zor.net.conf.changing",
    "/tmp/zor/.zor.healthy.status.need.update",
    "/tmp/zor/.zor.healthy.status.update.done",
    "/tmp/zor/ui/.ui.zorinfo.cache",
    "/tmp/zor/ui/.ui.zorinfo.flag",
    "/tmp/zor/ui/.ui.zornode.local.cache",
    "/tmp/zor/.msg_queue_key_file",
    "/tmp/zor/bios_upgrade",
    kConfLockFile,
    kStatusLockFile,
    "/tmp/zor/.zor.ha.hwinfo.lock",
    "/tmp/zor/ui/.zor.lock.load.ui.zorinfo",
    "/etc.defaults/VERSION",
};

// What reads and writes each of the files that hold data.
struct Access {
    const char *path;
    int (*read)();
    int (*write)();
};

char value[256];

const Access kAccesses[] = {
    {kStatusFile,
     [] { return ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_ROLE, value, sizeof value); },
     [] { return ZORSetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP, "10.9.9.9"); }},
    {kConfFile, [] { return ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_IF, value, 144); },
     [] { return ZORSetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_IF, "no"); }},
    {kConstraintFile,
     [] {
         return ZORGetConstraint(ZOR_HOST_LOCAL, ZOR_CONSTRAINT_FAILED_SERVICES, value,
                                 sizeof value);
     },
     [] { return ZORSetConstraint(ZOR_HOST_LOCAL, ZOR_CONSTRAINT_FAILED_SERVICES, "nfsd"); }},
    {kHardwareFile, [] { return ZORHWGetMemory(ZOR_HOST_LOCAL); },
     [] {
         VLIBCSzHash *hash = VLIBCSzHashAlloc(64);
         VLIBCSzHashSetValue(&hash, "Memory", "4096");
         const int result = HWSetSection("LOCAL_HOST", hash);
         VLIBCSzHashFree(hash);
         return result;
     }},
};

class Odd : public NodeTest, public testing::WithParamInterface<Oddity> {
  protected:
    Odd() {
        GrantRequests();
        alarm(60);  // a call that hangs ends the test, not the run
    }
    ~Odd() override {
        alarm(0);
        fs::remove_all(kRuntimeFolder);
        queue_end::RemoveAll();
    }

    static void Plant(const char *path) {
        for (const char *other : kPaths) fs::remove_all(other);
        if (!Exists(kKeyFile)) WriteText(kKeyFile, "");
        MakeWorkingNode();
        fs::remove_all(path);
        GetParam().plant(path);
    }
    static bool IsTargetIntact() {
        return std::string(GetParam().name) != "Link" || ReadText(kTarget) == kPrecious;
    }
};

TEST_P(Odd, IsRefusedAtOnce) {
    for (const Access &access : kAccesses) {
        Plant(access.path);
        EXPECT_LT(access.read(), 0) << access.path;
        EXPECT_LT(access.write(), 0) << access.path;
        EXPECT_TRUE(IsTargetIntact()) << access.path;
        EXPECT_EQ(fs::is_regular_file(fs::symlink_status(access.path)), false) << access.path;
        EXPECT_EQ(TemporaryFiles(), Lines{});
        log_.Take();
    }
}

TEST_P(Odd, EveryFunctionReturnsAndNothingElseIsTouched) {
    int calls = 0;
    for (const char *path : kPaths) {
        Plant(path);
        const int descriptors = CountDescriptors();
        for (const ExportedCall &call : kExportedCalls) {
            if (call.Is(kStartsPrograms) || call.Is(kTimesOut)) continue;
            call.call();
            ++calls;
            log_.Take();
        }
        EXPECT_TRUE(IsTargetIntact()) << path;
        EXPECT_FALSE(Exists("/tmp/zor/nothing")) << path;
        EXPECT_EQ(CountDescriptors(), descriptors) << path;
    }
    printf("figure: %s in place of %zu files, %d calls, 0 hangs, 0 targets touched\n",
           GetParam().name, std::size(kPaths), calls);
}

INSTANTIATE_TEST_SUITE_P(Fault, Odd, testing::ValuesIn(kOddities),
                         [](const auto &row) { return std::string(row.param.name); });

// The method sees a writer that follows a link.
class OddControl : public Odd {};

TEST_P(OddControl, WriterThatFollowsALinkIsCaught) {
    Plant(kStatusFile);
    WriteText(kStatusFile, "local_role=\"1\"\n");
    EXPECT_FALSE(IsTargetIntact());
}

INSTANTIATE_TEST_SUITE_P(Fault, OddControl, testing::Values(kOddities[0]),
                         [](const auto &row) { return std::string(row.param.name); });

// --- Modes

struct ModeRow {
    const char *path;
    mode_t open_mode;    // with a umask of 0
    mode_t closed_mode;  // with a umask of 077
};

// The base library gives its files a mode of its own choice; flags, locks and
// snapshots follow the umask.
constexpr ModeRow kModes[] = {
    {"/tmp/zor/.zor.status.changed", 0644, 0600},
    {"/tmp/zor/.zor.conf.changed", 0644, 0600},
    {"/tmp/zor/.zor.net.conf.changing", 0644, 0600},
    {kConfLockFile, 0666, 0600},
    {kStatusLockFile, 0666, 0600},
    {"/tmp/zor/.zor.ha.hwinfo.lock", 0666, 0600},
    {"/tmp/zor/ui/.ui.zorinfo.cache", 0644, 0600},
};

class Modes : public NodeTest {
  protected:
    static mode_t ModeOf(const char *path) {
        struct stat status = {};
        EXPECT_EQ(lstat(path, &status), 0) << path;
        return status.st_mode & 07777;
    }

    void CallAllWith(mode_t mask) {
        for (const ModeRow &row : kModes) fs::remove(row.path);
        MakeWorkingNode();
        GrantRequests();
        ASSERT_EQ(chmod(kStatusFile, 0640), 0);
        ASSERT_EQ(chown(kStatusFile, 12, 34), 0);
        umask(mask);
        for (const ExportedCall &call : kExportedCalls) {
            if (!call.Is(kStartsPrograms) && call.Name() != "ZORCleanConfChangeFlag" &&
                call.Name() != "ZORCleanStatusChangeFlag")
                call.call();
        }
        umask(022);
        log_.Take();
    }
};

TEST_F(Modes, FollowTheUmaskAndARewriteKeepsThem) {
    for (const mode_t mask : {0u, 077u}) {
        CallAllWith(mask);
        for (const ModeRow &row : kModes)
            EXPECT_EQ(ModeOf(row.path), mask == 0 ? row.open_mode : row.closed_mode) << row.path;
        struct stat status;
        ASSERT_EQ(stat(kStatusFile, &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0640u) << "a rewrite keeps the mode";
        EXPECT_EQ(status.st_uid, 12u);
        EXPECT_EQ(status.st_gid, 34u);
    }
}

}  // namespace
