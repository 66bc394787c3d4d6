// Power cuts: the persistent files lie on an ext4 file system in a file, which is
// copied at each system call of a writer. What a copy holds after its journal is
// replayed is what a node finds when it starts again.

#include <fcntl.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <optional>

#include "fault/every_writer.h"
#include "support/command_run.h"
#include "zor_conf.h"
#include "zor_constraint.h"
#include "zor_status.h"

namespace fs = std::filesystem;

namespace {

constexpr char kDisk[] = "/run/power.disk";
constexpr char kCopy[] = "/run/power.copy";
constexpr char kMounted[] = "/run/power.mounted";
constexpr char kChecked[] = "/run/power.checked";
constexpr int kDiskMib = 8;

// A block device over a file. A private node has none of its own.
class LoopDevice {
  public:
    explicit LoopDevice(const char *path) {
        mknod("/dev/loop-control", S_IFCHR | 0600, makedev(10, 237));
        // Another test may take the number that was free a moment ago.
        for (int attempt = 0; attempt < 20 && !is_attached_; ++attempt) Attach(path);
    }
    ~LoopDevice() {
        if (is_attached_) ioctl(device_, LOOP_CLR_FD);
        if (device_ >= 0) close(device_);
    }
    LoopDevice(const LoopDevice &) = delete;
    LoopDevice &operator=(const LoopDevice &) = delete;

    bool IsAttached() const { return is_attached_; }

    // Without the kernel's own care for files that are renamed over others.
    bool MountOn(const char *folder) const {
        fs::create_directories(folder);
        return mount(path_.c_str(), folder, "ext4", 0, "noauto_da_alloc") == 0;
    }

  private:
    void Attach(const char *path) {
        const int control = open("/dev/loop-control", O_RDWR | O_CLOEXEC);
        const int number = control < 0 ? -1 : ioctl(control, LOOP_CTL_GET_FREE);
        if (control >= 0) close(control);
        if (number < 0) return;
        path_ = "/dev/loop" + std::to_string(number);
        mknod(path_.c_str(), S_IFBLK | 0600, makedev(7, static_cast<unsigned>(number)));
        if (device_ >= 0) close(device_);
        device_ = open(path_.c_str(), O_RDWR | O_CLOEXEC);
        const int file = open(path, O_RDWR | O_CLOEXEC);
        is_attached_ = device_ >= 0 && file >= 0 && ioctl(device_, LOOP_SET_FD, file) == 0;
        if (file >= 0) close(file);
    }

    std::string path_;
    int device_ = -1;
    bool is_attached_ = false;
};

struct PersistentFile {
    const char *path;
    const char *folder;  // of the library's, which lies on the disk
    const char *name;
};

constexpr PersistentFile kConf = {kConfFile, "/usr/keva/etc/kevazor", "ha.conf"};
constexpr PersistentFile kConstraint = {kConstraintFile, "/var/lib/zor", "zor.constraint"};

struct PowerCase {
    const char *name;
    PersistentFile file;
    int (*call)();
};

// How GoogleTest prints a row.
void PrintTo(const PowerCase &row, std::ostream *out) {
    *out << row.name;
}

class PowerCut : public NodeTest, public testing::WithParamInterface<PowerCase> {
  protected:
    PowerCut() { GrantRequests(); }

    // False where this machine has no loop devices or no tool to make the file system.
    static bool MakeDisk() {
        const int disk = open(kDisk, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        const bool is_made = disk >= 0 && ftruncate(disk, off_t{kDiskMib} << 20) == 0;
        if (disk >= 0) close(disk);
        return is_made && RunCommand({"mkfs.ext4", "-q", "-F", kDisk}).exit_code == 0;
    }

    // What the disk would hold after a cut at this moment.
    static std::optional<std::string> AfterCut(const PersistentFile &file) {
        fs::copy_file(kDisk, kCopy, fs::copy_options::overwrite_existing);
        const LoopDevice device(kCopy);
        if (!device.IsAttached() || !device.MountOn(kChecked)) return "cannot be mounted";
        const std::string path = std::string(kChecked) + "/" + file.name;
        auto content = Exists(path) ? std::optional(ReadText(path)) : std::nullopt;
        umount2(kChecked, MNT_DETACH);
        return content;
    }

    struct Sweep {
        int points = 0;
        int torn = 0;
        bool is_kept = false;  // the new file, after the call has returned
    };

    static Sweep SweepOver(const PowerCase &row) {
        const PersistentFile &file = row.file;
        Sweep sweep;
        EXPECT_EQ(mount(kMounted, file.folder, nullptr, MS_BIND, nullptr), 0);
        MakeWorkingNode();
        sync();
        const std::string before = ReadText(file.path);
        std::vector<std::optional<std::string>> found;
        const TracedCall run = RunTraced(row.call, {}, [&] { found.push_back(AfterCut(file)); });
        EXPECT_GE(run.result, 0);
        const std::string after = ReadText(file.path);
        EXPECT_NE(before, after);
        for (const auto &content : found) sweep.torn += content != before && content != after;
        sweep.points = static_cast<int>(found.size());
        sweep.is_kept = AfterCut(file) == after;
        umount2(file.folder, MNT_DETACH);
        return sweep;
    }

    // Runs with the disk in place; skips where there can be none.
    template <typename Function>
    void WithDisk(Function function) {
        if (!MakeDisk()) GTEST_SKIP() << "no mkfs.ext4 here";
        const LoopDevice device(kDisk);
        if (!device.IsAttached()) GTEST_SKIP() << "no loop devices here";
        if (!device.MountOn(kMounted)) GTEST_SKIP() << "ext4 cannot be mounted here";
        function();
        umount2(kMounted, MNT_DETACH);
    }
};

const PowerCase kCases[] = {
    {"ZORSetHAConf", kConf,
     [] { return ZORSetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_IF, "no,no"); }},
    {"ZORSetConstraint", kConstraint,
     [] { return ZORSetConstraint(ZOR_HOST_LOCAL, ZOR_CONSTRAINT_FAILED_SERVICES, "nfsd"); }},
    {"ZORCleanConstraint", kConstraint,
     [] { return ZORCleanConstraint(ZOR_HOST_LOCAL, ZOR_CONSTRAINT_FAILED_SERVICES); }},
};

TEST_P(PowerCut, LeavesOldOrNewAndNewOnceReturned) {
    WithDisk([] {
        const Sweep sweep = SweepOver(GetParam());
        EXPECT_GT(sweep.points, 10);
        EXPECT_EQ(sweep.torn, 0);
        EXPECT_TRUE(sweep.is_kept);
        printf("figure: %s with the power cut at %d system calls, %d torn, %s once returned\n",
               GetParam().name, sweep.points, sweep.torn, sweep.is_kept ? "new" : "LOST");
    });
}

INSTANTIATE_TEST_SUITE_P(PowerCut, PowerCut, testing::ValuesIn(kCases),
                         [](const auto &row) { return std::string(row.param.name); });

// The method sees a writer that synchronises nothing.
class PowerCutControl : public PowerCut {};

int RenameWithoutSync() {
    const std::string text = ReadText(kConfFile) + "new=\"1\"\n";
    const std::string temporary = std::string(kConfFile) + ".new";
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const bool is_written =
        write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(file);
    return is_written ? rename(temporary.c_str(), kConfFile) : -1;
}

TEST_P(PowerCutControl, WriterThatDoesNotSynchroniseIsCaught) {
    WithDisk([] { EXPECT_FALSE(SweepOver(GetParam()).is_kept); });
}

INSTANTIATE_TEST_SUITE_P(PowerCut, PowerCutControl,
                         testing::Values(PowerCase{"Unsynchronised", kConf, RenameWithoutSync}),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
