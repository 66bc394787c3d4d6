// The private node, from inside one: what it shows, and that a node in it leaves
// nothing behind.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stop_token>
#include <string>
#include <thread>

#include "support/command_run.h"
#include "support/node_test.h"

namespace fs = std::filesystem;

namespace {

class ZorNode : public NodeTest {
  protected:
    ZorNode() {
        UseBuiltPrograms();
        virtual_time::Stop();
    }

    static CommandResult Run(std::vector<std::string> words) {
        words.insert(words.begin(), "zornode");
        return RunCommand(words);
    }

    static std::string InNode(const std::string &script) {
        return Run({"--", "sh", "-c", script}).output;
    }
};

TEST_F(ZorNode, HasAnAppliancesFilesAndNoManager) {
    EXPECT_EQ(InNode("ls -d /usr/keva/etc/kevazor /usr/keva/kevazor/bin /var/lib/zor"),
              "/usr/keva/etc/kevazor\n/usr/keva/kevazor/bin\n/var/lib/zor\n");
    EXPECT_EQ(InNode("cat /proc/sys/kernel/keva_serial /proc/sys/kernel/keva_custom_serial"),
              "ZORNODE0000001\nCUSTOM-NODE-01\n");
    EXPECT_EQ(InNode("cat /.flash_version"), "flash_version=\"6.1-1000\"\n");
    EXPECT_EQ(InNode("test -e /tmp/zor || echo none"), "none\n");
}

TEST_F(ZorNode, TakesItsSerialsFromTheCommandLine) {
    EXPECT_EQ(Run({"--serial", "S1", "--custom-serial", "", "--", "sh", "-c",
                   "cat /proc/sys/kernel/keva_serial; ls /proc/sys/kernel | grep keva"})
                  .output,
              "S1\nkeva_serial\n");
}

TEST_F(ZorNode, RaisesTheQueueLimitsOfItsOwnNamespace) {
    const std::string limits = "cat /proc/sys/kernel/msgmax /proc/sys/kernel/msgmnb";
    EXPECT_EQ(InNode(limits), "32536\n1301440\n");
    EXPECT_EQ(Run({"--default-queue-limits", "--", "sh", "-c", limits}).output, "8192\n16384\n");
}

TEST_F(ZorNode, HasPortsOfItsOwnWhosePlugsCanBePulled) {
    const CommandResult result =
        Run({"--ports", "2", "--", "sh", "-c",
             "ls /sys/class/net | grep -c -v '^eth[01]$\\|^wire[01]$\\|^lo$\\|^ifb'; "
             "cat /sys/class/net/eth0/carrier; ip link set wire0 down; "
             "cat /sys/class/net/eth0/carrier /sys/class/net/eth1/carrier; "
             "ip -o -4 address show dev eth1"});
    if (result.exit_code == 125) GTEST_SKIP() << "no virtual ports here: " << result.output;
    EXPECT_EQ(result.output.substr(0, 8), "0\n1\n0\n1\n");
    EXPECT_NE(result.output.find("192.0.2.2/24"), std::string::npos) << result.output;
}

TEST_F(ZorNode, RefusesPortsThatAnApplianceCannotHave) {
    EXPECT_NE(Run({"--ports", "9", "--", "true"}).exit_code, 0);
}

TEST_F(ZorNode, ShowsTheKernelsOtherFiles) {
    EXPECT_EQ(InNode("cat /proc/sys/kernel/ostype"), "Linux\n");
}

TEST_F(ZorNode, CollectsLogAndConsole) {
    EXPECT_TRUE(WaitFor([] {
        return InNode(
                   "logger -t tag hello; i=0; until grep -q hello /var/log/messages || "
                   "[ $((i += 1)) -gt 50 ]; do sleep 0.1; done; cat /var/log/messages")
                   .find("tag: hello") != std::string::npos;
    }));
    EXPECT_EQ(InNode("echo line >/dev/console; i=0; until grep -q line /var/log/console || "
                     "[ $((i += 1)) -gt 50 ]; do sleep 0.1; done; cat /var/log/console"),
              "line\n");
}

TEST_F(ZorNode, CopiesTheLogOutOnDemand) {
    EXPECT_EQ(Run({"--log", "/run/node.log", "--", "logger", "-t", "tag", "out"}).exit_code, 0);
    EXPECT_NE(ReadText("/run/node.log").find("tag: out\n"), std::string::npos);
}

TEST_F(ZorNode, ReturnsTheCommandsExitCode) {
    EXPECT_EQ(Run({"--", "true"}).exit_code, 0);
    EXPECT_EQ(Run({"--", "sh", "-c", "exit 42"}).exit_code, 42);
    EXPECT_EQ(Run({"--", "sh", "-c", "kill -9 $$"}).exit_code, 137);
    EXPECT_EQ(Run({"--", "/no/such/program"}).exit_code, 127);
}

TEST_F(ZorNode, KeepsItsChangesToItself) {
    const auto mounts = ReadText("/proc/self/mountinfo");
    fs::create_directories("/run/shared");
    WriteText("/usr/seen", "outside");
    EXPECT_EQ(Run({"--share", "/run/shared", "--", "sh", "-c",
                   "cat /usr/seen; echo in >/usr/seen; echo in >/tmp/new; mkdir /tmp/zor; "
                   "rm -rf /etc; echo kept >/run/shared/file; ipcmk -Q >/dev/null"})
                  .output,
              "outside");
    EXPECT_EQ(ReadText("/usr/seen"), "outside");
    EXPECT_FALSE(Exists("/tmp/new"));
    EXPECT_TRUE(Exists("/etc/passwd"));
    EXPECT_EQ(ReadText("/run/shared/file"), "kept\n");
    EXPECT_EQ(ReadText("/proc/self/mountinfo"), mounts);
    EXPECT_EQ(ReadText("/proc/sysvipc/msg").find('\n'), ReadText("/proc/sysvipc/msg").size() - 1);
}

TEST_F(ZorNode, StartsWhileTemporaryFilesComeAndGo) {
    const std::jthread other([](const std::stop_token &stop) {
        while (!stop.stop_requested()) {
            for (int number = 0; number < 20; ++number) {
                WriteText("/tmp/file" + std::to_string(number), "");
                fs::create_directory("/tmp/folder" + std::to_string(number));
            }
            for (int number = 0; number < 20; ++number) {
                fs::remove("/tmp/file" + std::to_string(number));
                fs::remove("/tmp/folder" + std::to_string(number));
            }
        }
    });
    for (int start = 0; start < 10; ++start) {
        const CommandResult result = Run({"--", "true"});
        EXPECT_EQ(result.exit_code, 0) << result.errors;
    }
}

int CountProcesses(const std::string &argument) {
    int count = 0;
    for (const auto &entry : fs::directory_iterator("/proc"))
        count += ReadText(entry.path() / "cmdline").find(argument) != std::string::npos;
    return count;
}

TEST_F(ZorNode, EndsEverythingInItWhenItIsKilled) {
    BackgroundCommand node({"zornode", "--", "sh", "-c", "sleep 98765 & sleep 98765"});
    ASSERT_TRUE(WaitFor([] { return CountProcesses("98765") >= 4; }));
    node.End(SIGKILL);
    EXPECT_TRUE(WaitFor([] { return CountProcesses("98765") == 0; }));
}

TEST_F(ZorNode, EndsWhatTheCommandLeavesBehind) {
    EXPECT_EQ(Run({"--", "sh", "-c", "setsid sleep 87654 & sleep 0.1"}).exit_code, 0);
    EXPECT_EQ(CountProcesses("87654"), 0);
}

TEST_F(ZorNode, PassesTermOnToTheCommand) {
    BackgroundCommand node({"zornode", "--", "sh", "-c",
                            "trap 'exit 5' TERM; echo ready; while :; do sleep 0.1; done"});
    ASSERT_TRUE(WaitFor([&] { return node.Output() == "ready\n"; }));
    EXPECT_EQ(node.End(SIGTERM), 5);
}

TEST_F(ZorNode, TestProgramsRefuseToRunOutside) {
    // The marker of this node is not that of another mount namespace.
    const CommandResult result = RunCommand({"unshare", "-m", KEVAZOR_TEST_PROGRAM});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_NE(result.errors.find("refusing to run outside a private node"), std::string::npos);
    EXPECT_EQ(result.output, "");
}

TEST_F(ZorNode, SaysClearlyWhatItNeeds) {
    // As a user without rights, where user namespaces do not help either.
    const CommandResult result = RunCommand(
        {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "zornode", "--", "true"});
    EXPECT_EQ(result.exit_code, 125);
    EXPECT_NE(result.errors.find("this machine refuses the namespaces"), std::string::npos);
    EXPECT_NE(result.errors.find("Run it as root"), std::string::npos);
}

}  // namespace
