// Writers of the hardware file, killed at every system call.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "hwinfo/hardware_fixture.h"
#include "kevacore.h"
#include "support/traced_call.h"

namespace {

class HardwareWriteKilled : public HardwareTest {
  protected:
    HardwareWriteKilled() {
        Fill(&host_, ZOR_HOST_TYPE_FIRST);
        Fill(&other_, ZOR_HOST_TYPE_SECOND);
    }

    static void Fill(ZORHWHostInfo *host, int32_t type) {
        host->HostType = type;
        host->EncListLength = host->EncListStatusLastCorretPos = 2;
        for (int index = 0; index < 2; ++index) {
            ZORHWEncInfo &enclosure = host->Encs[index];
            snprintf(enclosure.EncSN, sizeof enclosure.EncSN, "E%d", index + 1);
            enclosure.ModelID = 9;
            enclosure.MaxDisk = 2;
            std::fill_n(enclosure.FanStatus, 8, type);
        }
    }

    // What the call finds: one enclosure to change, one to add, one to forget.
    static std::string Before() {
        return Section("LOCAL_HOST", {"Memory=8192", "EncListLength=2", "EncList=E1,E2"}) +
               Enclosure("E1") + Enclosure("OLD") +
               Section("COMMON", {"CrashedSpaces=0", "AllEnclosure=E1,OLD"});
    }

    // Every content that the file has during the call, each once and in order.
    static Lines Contents(const std::string &before, const std::function<int()> &call) {
        WriteHardware(before);
        Lines contents = {before};
        const TracedCall run = RunTraced(call, kNeverKilled, [&] {
            const std::string content = ReadText(kHardwareFile);
            if (content != contents.back()) contents.push_back(content);
        });
        EXPECT_EQ(run.result, 0);
        return contents;
    }

    // How many of the kills left a content that is not one of these, or a lock
    // that somebody still holds.
    static int CountFaults(const std::string &before, const std::function<int()> &call,
                           const Lines &contents, int *points) {
        int faults = 0;
        for (*points = 1;; ++*points) {
            WriteHardware(before);
            if (!RunTraced(call, *points).was_killed) break;
            const std::string content = ReadText(kHardwareFile);
            faults += std::find(contents.begin(), contents.end(), content) == contents.end();
            faults += !IsLockFree();
            // The next call works, and makes of it what an undisturbed one makes.
            faults += call() != 0 || ReadText(kHardwareFile) != contents.back();
        }
        --*points;
        return faults;
    }

    void ExpectWhole(const char *name, const std::string &before, const std::function<int()> &call,
                     size_t writes) {
        const Lines contents = Contents(before, call);
        EXPECT_EQ(contents.size(), writes + 1) << "one content for each write";
        int points = 0;
        EXPECT_EQ(CountFaults(before, call, contents, &points), 0);
        EXPECT_GT(points, static_cast<int>(writes) * 5);
        printf("%s: killed at %d points, 0 torn, lock free each time\n", name, points);
        ExpectLog({});
    }
};

TEST_F(HardwareWriteKilled, EnclosuresAreOldOrNew) {
    const auto call = [this] {
        FILE *lock = nullptr;
        if (ZORHWWaitAndLock(&lock) != 0) return -1;
        const int result = HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host_);
        ZORHWUnlock(&lock);
        return result;
    };
    ExpectWhole("HWWriteEncInfoToFile", Before(), call, 4);
}

TEST_F(HardwareWriteKilled, FansAndPowerSuppliesAreOldOrNew) {
    const auto call = [this] { return ZORHWWriteFanPowerStatus(&host_, &other_); };
    ExpectWhole("ZORHWWriteFanPowerStatus", Enclosure("E1") + Enclosure("E2"), call, 2);
}

// The method sees a writer that is not safe.
TEST_F(HardwareWriteKilled, ControlTruncatingWriterIsCaught) {
    const std::string before = Before();
    const std::string after = before + Enclosure("E2");
    const auto call = [&] {
        const int file = open(kHardwareFile, O_WRONLY | O_TRUNC);
        const bool is_written =
            write(file, after.data(), after.size()) == static_cast<ssize_t>(after.size());
        close(file);
        return is_written ? 0 : -1;
    };
    int points = 0;
    EXPECT_GT(CountFaults(before, call, {before, after}, &points), 0);
}

}  // namespace
