// Every writer where nothing can be written: no space, no inode, a file system that
// is read-only, a limit on the size of files or on their number.

#include <fcntl.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include "fault/every_writer.h"

namespace fs = std::filesystem;

namespace {

constexpr const char *kFolders[] = {kRuntimeFolder, "/usr/keva/etc/kevazor", "/var/lib/zor"};

// The folders of the library on small file systems of their own.
class SmallFileSystems {
  public:
    SmallFileSystems() {
        for (const char *folder : kFolders)
            EXPECT_EQ(mount("none", folder, "tmpfs", 0, "size=1m,nr_inodes=100"), 0);
        WriteText(kKeyFile, "");
    }
    ~SmallFileSystems() {
        for (const char *folder : kFolders) umount2(folder, MNT_DETACH);
    }
    SmallFileSystems(const SmallFileSystems &) = delete;
    SmallFileSystems &operator=(const SmallFileSystems &) = delete;
};

void FillSpace(const std::string &folder) {
    const int file = open((folder + "/filler").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const std::string block(4096, 'x');
    while (write(file, block.data(), block.size()) > 0) {
    }
    close(file);
}

void FillInodes(const std::string &folder) {
    for (int number = 0;; ++number) {
        const std::string path = folder + "/filler" + std::to_string(number);
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        if (file < 0) break;
        close(file);
    }
}

void RemoveFillers(const std::string &folder) {
    for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
        if (entry.path().filename().string().starts_with("filler")) fs::remove(entry.path());
    }
}

void Remount(const std::string &folder, unsigned long flags) {
    EXPECT_EQ(mount("none", folder.c_str(), nullptr, MS_REMOUNT | flags, nullptr), 0);
}

struct Shortage {
    const char *name;
    void (*begin)(const std::string &folder);
    void (*end)(const std::string &folder);
};

constexpr Shortage kShortages[] = {
    {"no space", FillSpace, RemoveFillers},
    {"no inode", FillInodes, RemoveFillers},
    {"read-only", [](const std::string &folder) { Remount(folder, MS_RDONLY); },
     [](const std::string &folder) { Remount(folder, 0); }},
};

class Full : public EveryWriter {
  protected:
    // What must not be after the call, if anything.
    Lines Faults(const Writer &writer, const Course &course, int result) {
        const Lines lines = log_.Take();
        const FileState state = StateOf(writer.files);
        Lines faults;
        if (!IsWhole(course, state)) faults.push_back("torn: " + Join(lines));
        const bool is_quiet = result < 0 ? writer.Is(kSilent) : writer.Is(kGuesses);
        const bool is_done = result >= 0 && state == course.states.back();
        if (!is_done && lines.empty() && !is_quiet) faults.push_back("not reported");
        return faults;
    }
};

TEST_P(Full, OldFilesStandAndTheFailureIsReported) {
    const Writer &writer = GetParam();
    const SmallFileSystems small;
    const Course course = Undisturbed(writer);
    for (const Shortage &shortage : kShortages) {
        Prepare(writer);
        log_.Take();
        for (const char *folder : kFolders) shortage.begin(folder);
        const int result = writer.call();
        EXPECT_EQ(Faults(writer, course, result), Lines{}) << shortage.name;
        for (const char *folder : kFolders) shortage.end(folder);
        EXPECT_EQ(TemporaryFiles(), Lines{}) << shortage.name;
        EXPECT_GE(writer.call(), 0) << "after " << shortage.name;
        EXPECT_EQ(HeldLocks(), Lines{}) << shortage.name;
        log_.Take();
    }
}

// In a child, whose limits end with it.
TEST_P(Full, LimitsOfTheProcessAreReported) {
    const Writer &writer = GetParam();
    const Course course = Undisturbed(writer);
    for (const auto &[resource, limit] :
         {std::pair{RLIMIT_FSIZE, rlim_t{0}}, std::pair{RLIMIT_NOFILE, rlim_t{0}}}) {
        Prepare(writer);
        log_.Take();
        const TracedCall run = RunTraced([&, resource = resource, limit = limit] {
            signal(SIGXFSZ, SIG_IGN);
            const struct rlimit small = {limit, limit};
            setrlimit(resource, &small);
            return writer.call();
        });
        // Without a descriptor nobody can reach the log.
        if (resource == RLIMIT_FSIZE) {
            EXPECT_EQ(Faults(writer, course, run.result), Lines{});
        } else {
            EXPECT_TRUE(IsWhole(course, StateOf(writer.files)));
        }
        EXPECT_EQ(TemporaryFiles(), Lines{});
        EXPECT_TRUE(WorksAgain(writer, course) || writer.Is(kGoesOn));
    }
}

INSTANTIATE_TEST_SUITE_P(Fault, Full, testing::ValuesIn(kWriters), WriterName);

// The method sees a writer that looks at no result.
class FullControl : public Full {};

TEST_P(FullControl, BlindWriterIsCaught) {
    const SmallFileSystems small;
    const Course course = Undisturbed(GetParam());
    Prepare(GetParam());
    for (const char *folder : kFolders) FillSpace(folder);
    EXPECT_FALSE(Faults(GetParam(), course, GetParam().call()).empty());
}

INSTANTIATE_TEST_SUITE_P(Fault, FullControl, testing::Values(kBlindWriter), WriterName);

}  // namespace
