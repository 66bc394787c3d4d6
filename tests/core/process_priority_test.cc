// The priorities of a process.

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "support/node_test.h"
#include "zor_core.h"

namespace {

constexpr int kBestEffort4 = 2 << 13 | 4;  // class and level as the kernel encodes them

class ProcessPriority : public NodeTest {
  protected:
    // Runs in a child, whose priorities do not matter to the other tests.
    static bool InChild(const std::function<bool()> &check) {
        const pid_t child = fork();
        if (child == 0) _exit(check() ? 0 : 1);
        int status = -1;
        waitpid(child, &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    // The messages, without the number of the source line.
    Lines Messages() {
        Lines messages;
        for (const LogLine &line : log_.TakeRaw()) {
            EXPECT_EQ(line.priority & 7, 3);
            EXPECT_TRUE(line.text.starts_with("zor_core:"));
            messages.push_back(line.text.substr(line.text.find(' ') + 1));
        }
        return messages;
    }
};

bool IsSet(int nice, int io, const char *oom) {
    return getpriority(PRIO_PROCESS, 0) == nice && syscall(SYS_ioprio_get, 1, getpid()) == io &&
           ReadText("/proc/self/oom_score_adj") == oom;
}

TEST_F(ProcessPriority, AllThreeAreSet) {
    EXPECT_TRUE(InChild([] {
        return ZORSetPriority(5, kBestEffort4, 100) == 0 && IsSet(5, kBestEffort4, "100\n");
    }));
    EXPECT_EQ(Messages(), Lines{});
}

TEST_F(ProcessPriority, FailureOfOneDoesNotSkipTheOthers) {
    EXPECT_TRUE(InChild([] {
        // Still the owner of its own /proc files, as a program started by that user is.
        if (setresuid(65534, 65534, 65534) != 0 || prctl(PR_SET_DUMPABLE, 1) != 0) return false;
        return ZORSetPriority(-5, kBestEffort4, 200) == -1 && IsSet(0, kBestEffort4, "200\n");
    }));
    EXPECT_EQ(Messages(), Lines{"Failed to set cpu priority"});
}

TEST_F(ProcessPriority, EachFailureHasItsLine) {
    EXPECT_TRUE(InChild([] { return ZORSetPriority(1, 7 << 13, 5000) == -1; }));
    EXPECT_EQ(Messages(), (Lines{"Failed to set io priority", "Failed to set oom priority"}));
    EXPECT_TRUE(InChild([] { return ZORSetPriority(1, kBestEffort4, 5000) == -1; }));
    EXPECT_EQ(Messages(), Lines{"Failed to set oom priority"});
}

}  // namespace
