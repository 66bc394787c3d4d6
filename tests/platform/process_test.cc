// The stand-in's way to run programs, and the platform's two settings.

#include <fcntl.h>
#include <kevacore.h>
#include <unistd.h>

#include <filesystem>

#include "support/node_test.h"

namespace fs = std::filesystem;

namespace {

using Process = NodeTest;

TEST_F(Process, ExecReturnsTheExitStatus) {
    EXPECT_EQ(VLIBCExec("/bin/true", nullptr), 0);
    EXPECT_EQ(VLIBCExec("/bin/false", nullptr), 1);
    EXPECT_EQ(VLIBCExec("/bin/sh", "-c", "exit 7", nullptr), 7);
    EXPECT_EQ(VLIBCExecl(251, "/bin/sh", "-c", "exit 8", nullptr), 8);
}

TEST_F(Process, ArgumentsArriveAsTheyAre) {
    EXPECT_EQ(VLIBCExec("/bin/sh", "-c", "printf '%s|' \"$@\" > /tmp/zor/out", "sh", "a b", "$HOME",
                        "", "*", nullptr),
              0);
    EXPECT_EQ(ReadText("/tmp/zor/out"), "a b|$HOME||*|");
}

TEST_F(Process, ProgramThatCannotRunIsAnError) {
    EXPECT_LT(VLIBCExec("/no/such/program", nullptr), 0);
    EXPECT_NE(VLIBCErrGet(), 0);
    EXPECT_LT(VLIBCExec(nullptr, nullptr), 0);
    EXPECT_LT(VLIBCExecl(0, nullptr, nullptr), 0);
}

TEST_F(Process, ProgramThatIsKilledIsAnError) {
    EXPECT_LT(VLIBCExec("/bin/sh", "-c", "kill -9 $$", nullptr), 0);
}

TEST_F(Process, NoDescriptorIsInherited) {
    const int open_one = open("/dev/null", O_RDONLY);
    ASSERT_GE(open_one, 3);
    const std::string is_closed = "test ! -e /proc/$$/fd/" + std::to_string(open_one);
    EXPECT_EQ(VLIBCExec("/bin/sh", "-c", is_closed.c_str(), nullptr), 0);
    EXPECT_EQ(VLIBCExec("/bin/sh", "-c", "test -e /proc/$$/fd/2", nullptr), 0);
    close(open_one);
}

TEST_F(Process, OomScoreIsTheKernelsValue) {
    EXPECT_EQ(VLIBCProcOomScoreSet(123), 0);
    EXPECT_EQ(ReadText("/proc/self/oom_score_adj"), "123\n");
    EXPECT_LT(VLIBCProcOomScoreSet(99999), 0);
}

TEST_F(Process, EveryModelSupportsTwoNodesUnlessTheSettingSaysNo) {
    constexpr char kSetting[] = "/usr/keva/etc/kevacore-stand-in.conf";
    EXPECT_NE(VLIBCSupportDualhead(), 0);
    WriteText(kSetting, "support_dualhead=\"yes\"\n");
    EXPECT_NE(VLIBCSupportDualhead(), 0);
    WriteText(kSetting, "support_dualhead=\"no\"\n");
    EXPECT_EQ(VLIBCSupportDualhead(), 0);
    fs::remove(kSetting);
}

}  // namespace
