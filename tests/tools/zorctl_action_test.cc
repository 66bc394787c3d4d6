// zorctl's verbs that change the cluster, and its view of the health word.

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "support/command_run.h"
#include "support/node_test.h"
#include "support/queue_end.h"
#include "support/recorded_programs.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

class ZorCtlAction : public NodeTest {
  protected:
    ZorCtlAction() {
        UseBuiltPrograms();
        fs::create_directories("/etc.defaults");
        WriteText("/etc.defaults/VERSION", "majorversion=\"6\"\nminorversion=\"1\"\n");
    }
    ~ZorCtlAction() override {
        manager_.reset();
        queue_end::RemoveAll();
    }

    static CommandResult Run(std::vector<std::string> words) {
        words.insert(words.begin(), "zorctl");
        return RunCommand(words);
    }

    void StartManager(const std::string &role = "1") {
        virtual_time::Stop();
        fs::remove_all(kRuntimeFolder);
        manager_ = std::make_unique<BackgroundCommand>(
            Lines{"zorlab", "manager", "--peer", "in-process", "--role", role});
        ASSERT_TRUE(WaitFor([] { return ZORIsLocalHandlerReady() != 0; }));
    }

    bool ManagerSays(const std::string &text) const {
        return manager_->Output().find(text) != std::string::npos;
    }

    // The contents of every file below the runtime folder.
    static std::string Everything() {
        std::string all = ReadText("/.flash_version");
        for (const auto &entry : fs::recursive_directory_iterator(kRuntimeFolder)) {
            all += entry.path().string() + "\n";
            if (entry.is_regular_file()) all += ReadText(entry.path());
        }
        return all;
    }

    std::unique_ptr<BackgroundCommand> manager_;
};

bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

struct ActionRow {
    std::vector<std::string> words;
    const char *shown;  // by a dry run
};

const ActionRow kActions[] = {
    {{"upgrade", "start", "6.2"},
     "send command 17, payload 108 bytes, wait for the answer, time-out 60 s"},
    {{"upgrade", "start", "6.2", "--small"}, "write the version into /.flash_version"},
    {{"upgrade", "fail"}, "send command 18, payload 0 bytes, wait for the answer, time-out 60 s"},
    {{"bios", "start"}, "raise the flag /tmp/zor/bios_upgrade"},
    {{"bios", "end"}, "remove the flag /tmp/zor/bios_upgrade"},
    {{"power", "reboot"}, "create /tmp/zor/reboot"},
    {{"power", "off"}, "create /tmp/zor/poweroff"},
    {{"power", "shutdown-remote"}, "send command 14, payload 0 bytes, no wait"},
    {{"forward", "buzzer"}, "send command 36, payload 0 bytes, no wait"},
    {{"forward", "passwords"}, "send command 42, payload 0 bytes, no wait"},
    {{"forward", "fans", "/run/file"}, "send command 45, payload 568 bytes, no wait"},
    {{"forward", "log", "/run/file"}, "send command 34, payload 568 bytes, no wait"},
};

TEST_F(ZorCtlAction, DryRunShowsThePlanAndDoesNothing) {
    WriteText("/.flash_version", "flash_version=\"old\"\n");
    WriteText("/run/file", std::string(568, 'x'));
    WriteText(kStatusFile,
              "is_local_handler_ready=\"yes\"\nlocal_role=\"1\"\n"
              "is_remote_alive_by_net=\"yes\"\n");
    const RecordedPrograms recorded;
    const std::string before = Everything();
    for (const ActionRow &row : kActions) {
        std::vector<std::string> words = row.words;
        words.push_back("--dry-run");
        const CommandResult result = Run(words);
        EXPECT_EQ(result.exit_code, 0) << row.shown;
        EXPECT_TRUE(Contains(result.output, row.shown)) << result.output;
    }
    EXPECT_EQ(Everything(), before);
    EXPECT_FALSE(Exists(kProgramRecord)) << "no program is run";
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0) << "nothing is sent";
    ExpectLog({});
}

TEST_F(ZorCtlAction, WithoutATerminalYesIsNeeded) {
    WriteText("/run/file", std::string(568, 'x'));
    for (const ActionRow &row : kActions) {
        const CommandResult result = Run(row.words);
        EXPECT_EQ(result.exit_code, 64) << row.shown;
        EXPECT_TRUE(Contains(result.errors, "needs --yes"));
    }
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
    ExpectLog({});
}

TEST_F(ZorCtlAction, OnATerminalTheSerialConfirms) {
    WriteText(kStatusFile, "local_role=\"2\"\n");
    const auto answer = [](const std::string &text) {
        return RunCommand(
            {"sh", "-c", "printf '" + text + "\\n' | script -qec 'zorctl power reboot' /dev/null"});
    };
    const CommandResult refused = answer("yes");
    EXPECT_EQ(refused.exit_code, 1);
    EXPECT_TRUE(Contains(refused.output, "Type the serial number of this node (NODE0001)"));
    EXPECT_TRUE(Contains(refused.output, "not confirmed"));
    EXPECT_FALSE(Exists("/tmp/zor/reboot"));
    EXPECT_EQ(answer("NODE0001").exit_code, 0);
    EXPECT_TRUE(Exists("/tmp/zor/reboot"));
}

TEST_F(ZorCtlAction, FailuresShowTheLibrarysLineAndTheirCode) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    const CommandResult reboot = Run({"power", "reboot", "--yes"});
    EXPECT_EQ(reboot.exit_code, 1);
    EXPECT_TRUE(Contains(reboot.errors, "Local host is not in flash mode"));
    EXPECT_EQ(Run({"forward", "log", "/run/nothing", "--yes"}).exit_code, 64);
    WriteText("/run/short", "x");
    EXPECT_EQ(Run({"forward", "log", "/run/short", "--yes"}).exit_code, 64);
    fs::remove_all(kRuntimeFolder);
    for (const ActionRow &row : {kActions[0], kActions[5], kActions[7]}) {
        std::vector<std::string> words = row.words;
        words.push_back("--yes");
        EXPECT_EQ(Run(words).exit_code, 4) << row.shown;
    }
}

TEST_F(ZorCtlAction, UpgradeAndItsFailureGoThroughTheManager) {
    WriteText("/.flash_version", "flash_version=\"old\"\n");
    StartManager();
    EXPECT_EQ(Run({"upgrade", "start", "6.2", "--yes"}).exit_code, 0);
    EXPECT_EQ(ReadText("/.flash_version"), "flash_version=\"6.2\"\n");
    EXPECT_TRUE(ManagerSays("upgrade to 6.2 is under way"));
    EXPECT_EQ(Run({"upgrade", "fail", "--yes"}).exit_code, 0);
    EXPECT_EQ(ReadText("/.flash_version"), "flash_version=\"old\"\n");
    EXPECT_TRUE(ManagerSays("upgrade to 6.2 has failed"));
    EXPECT_EQ(Run({"upgrade", "start", "6.1.1", "--small", "--keep-marker", "--yes"}).exit_code, 0);
    EXPECT_EQ(ReadText("/.flash_version"), "flash_version=\"old\"\n");
    EXPECT_TRUE(ManagerSays("small update to 6.1.1 is under way"));
}

TEST_F(ZorCtlAction, BiosWindowOpensAndCloses) {
    StartManager();
    EXPECT_EQ(Run({"bios", "show"}).output, "closed\n");
    EXPECT_EQ(Run({"bios", "start", "--yes"}).exit_code, 0);
    EXPECT_EQ(Run({"bios", "show"}).output, "open\n");
    EXPECT_EQ(ReadText("/tmp/zor/lab.expander"), "heartbeat_timer=\"600\"\n");
    EXPECT_EQ(Run({"bios", "end", "--yes"}).exit_code, 0);
    EXPECT_EQ(Run({"bios", "show"}).output, "closed\n");
    BackgroundCommand held({"zorctl", "bios", "start", "--hold", "--yes"});
    ASSERT_TRUE(WaitFor([&] { return Contains(held.Output(), "is open"); }));
    const CommandResult second = Run({"bios", "start", "--yes"});
    EXPECT_EQ(second.exit_code, 1);
    EXPECT_TRUE(Contains(second.errors, "bios upgrade is in processing"));
    EXPECT_EQ(held.End(SIGTERM), 0);
    EXPECT_EQ(Run({"bios", "show"}).output, "closed\n");
}

TEST_F(ZorCtlAction, ForwardedItemsReachThePeer) {
    StartManager();
    WriteText("/run/log", std::string(568, 'l'));
    WriteText("/run/notification", std::string(6152, 'n'));
    WriteText("/run/fans", "fast");
    WriteText("/etc/kevainfo.conf", "buzzeroffcfg=\"fan\"\n");
    EXPECT_EQ(Run({"forward", "log", "/run/log", "--yes"}).exit_code, 0);
    EXPECT_EQ(Run({"forward", "notify", "/run/notification", "--yes"}).exit_code, 0);
    EXPECT_EQ(Run({"forward", "fans", "/run/fans", "--yes"}).exit_code, 0);
    EXPECT_EQ(Run({"forward", "buzzer", "--yes"}).exit_code, 0);
    EXPECT_EQ(Run({"forward", "passwords", "--yes"}).exit_code, 0);
    for (const char *text :
         {"log record of 568 bytes forwarded", "notification of 6152 bytes forwarded",
          "fan adjustment of 4 bytes forwarded", "buzzer-off setting of 3 bytes forwarded",
          "password synchronisation of 0 bytes forwarded"})
        EXPECT_TRUE(WaitFor([&] { return ManagerSays(text); })) << text;
    EXPECT_EQ(Run({"power", "shutdown-remote", "--yes"}).exit_code, 0);
    EXPECT_EQ(ZORIsRemoteAliveByNet(), 0);
    EXPECT_EQ(Run({"forward", "log", "/run/log", "--yes"}).exit_code, 0) << "nobody waits for it";
    EXPECT_TRUE(WaitFor([&] { return ManagerSays("refused, the peer cannot be reached"); }));
}

TEST_F(ZorCtlAction, FlagFilesStopTheNode) {
    struct Row {
        const char *verb;
        const char *text;
    };
    for (const Row &row : {Row{"reboot", "is to restart"}, Row{"off", "is to power off"}}) {
        StartManager("2");
        EXPECT_EQ(Run({"power", row.verb, "--yes"}).exit_code, 0);
        EXPECT_TRUE(WaitFor([&] { return ManagerSays(row.text); }));
        EXPECT_TRUE(WaitFor([] { return !Exists(kRuntimeFolder); }));
        manager_.reset();
    }
}

// --- health

TEST_F(ZorCtlAction, HealthShowsEveryBit) {
    WriteText(kStatusFile, "healthy_status=\"" + std::to_string((1u << 20) | 9) + "\"\n");
    const json health = json::parse(Run({"health", "--json"}).output);
    EXPECT_EQ(health.at("class"), "error");
    EXPECT_EQ(health.at("health"), (1 << 20) + 9);
    ASSERT_EQ(health.at("bits").size(), 3u);
    EXPECT_EQ(health.at("bits")[0].at("class"), "warning");
    EXPECT_EQ(health.at("bits")[1].at("class"), "error");
    EXPECT_EQ(health.at("bits")[2].at("meaning"), "hardware of an enclosure has failed");
    const CommandResult words = Run({"health"});
    EXPECT_EQ(words.exit_code, 0);
    EXPECT_TRUE(Contains(words.output, "error (health word 0x00100009)\nbit  0  warning"));
    WriteText(kStatusFile, "healthy_status=\"4294967295\"\n");
    EXPECT_EQ(json::parse(Run({"health", "--json"}).output).at("bits").size(), 32u);
}

TEST_F(ZorCtlAction, HealthCheckIsAMonitoringPlugin) {
    struct Row {
        const char *status;
        int exit_code;
        const char *output;
    };
    for (const Row &row :
         {Row{"healthy_status=\"0\"\n", 0, "OK\n"},
          Row{"healthy_status=\"128\"\n", 1, "WARNING: the heartbeat link is lost\n"},
          Row{"healthy_status=\"512\"\n", 2, "CRITICAL: a storage space has crashed\n"},
          Row{"", 3, "UNKNOWN: the health of the node is not known\n"}}) {
        WriteText(kStatusFile, row.status);
        const CommandResult result = Run({"health", "--check"});
        EXPECT_EQ(result.exit_code, row.exit_code);
        EXPECT_EQ(result.output, row.output);
    }
}

TEST_F(ZorCtlAction, UnknownHealthIsUnknown) {
    const CommandResult unknown = Run({"health", "--json"});
    EXPECT_EQ(unknown.exit_code, 1);
    EXPECT_TRUE(json::parse(unknown.output).at("health").is_null());
    fs::remove_all(kRuntimeFolder);
    EXPECT_EQ(Run({"health"}).exit_code, 4);
    EXPECT_EQ(Run({"health", "--check"}).exit_code, 3);
}

TEST_F(ZorCtlAction, HealthIsComputedFromTheNodesConditions) {
    WriteText("/etc/zorlab.chassis",
              "controllers: [{position: 8}, {position: 16}]\n"
              "enclosures: [{serial: E1, fans: [ok, ok, ok, ok, ok, ok, ok, ok]}]\n");
    StartManager();
    const auto bits = [](const Lines &more = {}) {
        std::vector<std::string> words = {"health", "--json"};
        words.insert(words.end(), more.begin(), more.end());
        const json health = json::parse(Run(words).output);
        std::set<int> numbers;
        for (const json &bit : health.at("bits")) numbers.insert(bit.at("bit").get<int>());
        return numbers;
    };
    std::set<int> now = bits({"--refresh"});
    for (const int bit : {0, 3, 5, 6, 7, 8, 9, 13, 20}) EXPECT_FALSE(now.contains(bit)) << bit;
    WriteText("/etc/zorlab.chassis",
              "controllers: [{position: 8}, {position: 16}]\nspaces: {degraded: 1, crashed: 1}\n"
              "chain: {linked: 0}\n"
              "enclosures: [{serial: E1, fans: [ok, ok, ok, failed, ok, ok, ok, ok]}]\n");
    EXPECT_TRUE(WaitFor([&] { return bits().contains(9); }));
    now = bits();
    for (const int bit : {5, 6, 8}) EXPECT_TRUE(now.contains(bit)) << bit;
    EXPECT_FALSE(now.contains(20)) << "an enclosure that is not linked does not count";
    WriteText("/etc/zorlab.chassis",
              "controllers: [{position: 8}, {position: 16}]\n"
              "enclosures: [{serial: E1, fans: [ok, ok, ok, failed, ok, ok, ok, ok]}]\n");
    EXPECT_TRUE(WaitFor([&] { return bits().contains(20); }));
    EXPECT_EQ(Run({"conf", "set", "monitored-services",
                   "yes,no,no,no,no,no,no,no,no,no,no,no,no,no,no,no"})
                  .exit_code,
              0);
    EXPECT_TRUE(bits({"--refresh"}).contains(3)) << "the service is monitored and does not run";
    char failed[144] = "";
    EXPECT_EQ(ZORGetHAStatus(2, ZOR_STATUS_FAILED_SERVICES, failed, sizeof failed), 1);
    EXPECT_STREQ(failed, "samba");
    EXPECT_EQ(Run({"power", "shutdown-remote", "--yes"}).exit_code, 0);
    EXPECT_TRUE(bits({"--refresh"}).contains(0)) << "the peer is gone";
}

}  // namespace
