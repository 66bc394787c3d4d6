// The command-line tool.

#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/command_run.h"
#include "support/node_test.h"
#include "support/queue_end.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

class ZorCtl : public NodeTest {
  protected:
    ZorCtl() { UseBuiltPrograms(); }
    ~ZorCtl() override { queue_end::RemoveAll(); }

    static CommandResult Run(std::vector<std::string> words) {
        words.insert(words.begin(), "zorctl");
        return RunCommand(words);
    }

    void StartManager() {
        virtual_time::Stop();
        fs::remove_all(kRuntimeFolder);
        manager_ =
            std::make_unique<BackgroundCommand>(std::vector<std::string>{"zorlab", "manager"});
        ASSERT_TRUE(WaitFor([] { return ZORIsLocalHandlerReady() != 0; }));
    }

    std::unique_ptr<BackgroundCommand> manager_;
};

bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

// --- status

TEST_F(ZorCtl, StatusSaysPlainlyThatTheManagerIsNotRunning) {
    fs::remove_all(kRuntimeFolder);
    const CommandResult result = Run({"status"});
    EXPECT_EQ(result.exit_code, 4);
    EXPECT_TRUE(Contains(result.output, "not running"));
    EXPECT_TRUE(Contains(result.output, "NODE0001"));
    const CommandResult in_json = Run({"status", "--json"});
    EXPECT_EQ(in_json.exit_code, 4);
    const json status = json::parse(in_json.output);
    EXPECT_EQ(status.at("manager_running"), false);
    EXPECT_EQ(status.at("serial"), "NODE0001");
    EXPECT_FALSE(status.contains("local"));
    ExpectLog({});
}

TEST_F(ZorCtl, StatusShowsWhatIsThere) {
    WriteText(kStatusFile,
              "local_role=\"2\"\nremote_role=\"1\"\nha_runtime_status=\"98\"\n"
              "is_local_handler_ready=\"yes\"\nis_remote_alive_by_net=\"yes\"\n"
              "is_remote_alive_by_expander_hb=\"no\"\nlocal_boot_stage=\"7\"\n"
              "remote_boot_done_status=\"3\"\n");
    const json status = json::parse(Run({"status", "--json"}).output);
    EXPECT_EQ(status.at("local").at("role"), "passive");
    EXPECT_EQ(status.at("local").at("boot_stage"), "7");
    EXPECT_EQ(status.at("local").at("handler_ready"), true);
    EXPECT_EQ(status.at("remote").at("role"), "active");
    EXPECT_EQ(status.at("remote").at("alive"), true);
    EXPECT_EQ(status.at("remote").at("alive_by_network"), true);
    EXPECT_EQ(status.at("remote").at("alive_by_expander"), false);
    EXPECT_EQ(status.at("remote").at("boot_done"), true);
    EXPECT_EQ(status.at("runtime").at("state"), 2);
    EXPECT_EQ(status.at("runtime").at("transition"), 0x60);
    EXPECT_EQ(status.at("runtime").at("in_transition"), true);
    EXPECT_EQ(status.at("custom_serial"), "CUSTOM01");
    const CommandResult table = Run({"status"});
    EXPECT_EQ(table.exit_code, 0);
    EXPECT_TRUE(Contains(table.output, "transition 0x60 (switchover, failover or takeover"));
    ExpectLog({});
}

TEST_F(ZorCtl, StatusShowsUnknownAsUnknown) {
    const json status = json::parse(Run({"status", "--json"}).output);
    EXPECT_EQ(status.at("manager_running"), true);
    EXPECT_TRUE(status.at("local").at("role").is_null());
    EXPECT_TRUE(status.at("remote").at("alive").is_null());
    EXPECT_TRUE(status.at("remote").at("boot_done").is_null());
    EXPECT_TRUE(status.at("runtime").is_null());
    EXPECT_TRUE(Contains(Run({"status"}).output, "Local role                 unknown"));
}

// --- get, set, rm

TEST_F(ZorCtl, EveryEntryNameSetsTheEntryOfThatName) {
    const CommandResult list = Run({"get", "--list"});
    EXPECT_EQ(list.exit_code, 0);
    std::istringstream names(list.output);
    int count = 0;
    for (std::string name; std::getline(names, name); ++count) {
        fs::remove(kStatusFile);
        ASSERT_EQ(Run({"set", name, "v"}).exit_code, 0) << name;
        EXPECT_EQ(ReadText(kStatusFile), name + "=\"v\"\n");
    }
    EXPECT_EQ(count, 44 + 17) << "17 entries have a local and a remote name";
}

TEST_F(ZorCtl, SetGetAndRemove) {
    EXPECT_EQ(Run({"set", "local_role", "1"}).exit_code, 0);
    EXPECT_TRUE(ZORIsStatusChanged());
    EXPECT_EQ(Run({"get", "local_role"}).output, "1\n");
    EXPECT_EQ(json::parse(Run({"get", "local_role", "--json"}).output),
              json({{"schema_version", 1}, {"entry", "local_role"}, {"value", "1"}}));
    EXPECT_EQ(Run({"rm", "local_role"}).exit_code, 0);
    const CommandResult absent = Run({"get", "local_role"});
    EXPECT_EQ(absent.exit_code, 5);
    EXPECT_EQ(absent.output, "");
    EXPECT_EQ(absent.errors, "zorctl: local_role is not set\n");
    EXPECT_TRUE(json::parse(Run({"get", "local_role", "--json"}).output).at("value").is_null());
}

TEST_F(ZorCtl, GetCanRemoveInTheSameStep) {
    WriteText(kStatusFile, "service_changed=\"yes\"\n");
    EXPECT_EQ(Run({"get", "service_changed", "--remove"}).output, "yes\n");
    EXPECT_EQ(ReadText(kStatusFile), "");
}

TEST_F(ZorCtl, FailureShowsTheLibrarysLine) {
    const FolderInTheWay folder(kStatusFile);
    const CommandResult get = Run({"get", "local_role"});
    EXPECT_EQ(get.exit_code, 1);
    EXPECT_TRUE(Contains(get.errors, "[ZOR-NOTICE] zor_status:"));
    EXPECT_TRUE(Contains(get.errors, "Failed to get value of key (key:local_role error code:"));
    const CommandResult set = Run({"set", "local_role", "1"});
    EXPECT_EQ(set.exit_code, 1);
    EXPECT_TRUE(Contains(set.errors,
                         "(ZORSetHAStatusImp): Failed to set value of key "
                         "(key:local_role, value:1)"));
    EXPECT_EQ(log_.Take().size(), 2u) << "the lines still go to the system log";
}

TEST_F(ZorCtl, UnknownEntriesAreAnErrorOfUsage) {
    EXPECT_EQ(Run({"get", "no_such_entry"}).exit_code, 64);
    EXPECT_EQ(Run({"set", "no_such_entry", "1"}).exit_code, 64);
    EXPECT_EQ(Run({"rm", "no_such_entry"}).exit_code, 64);
    EXPECT_EQ(Run({"get"}).exit_code, 64);
    EXPECT_EQ(Run({"frobnicate"}).exit_code, 64);
    EXPECT_EQ(Run({}).exit_code, 64);
    EXPECT_EQ(Run({"--help"}).exit_code, 0);
}

// --- sync

TEST_F(ZorCtl, SyncRecordGoesThroughAFile) {
    WriteText(kStatusFile, "local_role=\"1\"\nlocal_host_IP=\"10.0.0.1\"\n");
    EXPECT_EQ(json::parse(Run({"sync", "get", "--json"}).output).at("host_ip"), "10.0.0.1");
    ASSERT_EQ(Run({"sync", "get", "--output", "/tmp/zor/record"}).exit_code, 0);
    EXPECT_EQ(fs::file_size("/tmp/zor/record"), 3188u);
    ASSERT_EQ(Run({"sync", "set", "/tmp/zor/record"}).exit_code, 0);
    EXPECT_EQ(Run({"get", "remote_host_IP"}).output, "10.0.0.1\n");
    EXPECT_EQ(Run({"sync", "set", kStatusFile}).exit_code, 1);
    EXPECT_EQ(Run({"sync", "set", "/no/such/file"}).exit_code, 1);
}

// --- request

TEST_F(ZorCtl, RequestOutcomesAreToldApart) {
    StartManager();
    const CommandResult done = Run({"request", "1000", "--wait", "--payload", "hello"});
    EXPECT_EQ(done.exit_code, 0);
    EXPECT_EQ(done.output, "hello\n");

    const CommandResult refused = Run({"request", "upgrade", "--wait"});
    EXPECT_EQ(refused.exit_code, 2);
    EXPECT_EQ(refused.errors, "zorctl: the manager refused command 17\n");

    ASSERT_EQ(RunCommand({"zorlab", "tell", "24", "drop"}).exit_code, 0);
    const CommandResult timed_out = Run({"request", "24", "--wait", "--timeout", "1"});
    EXPECT_EQ(timed_out.exit_code, 3);
    EXPECT_EQ(timed_out.errors,
              "zorctl: no answer to command 24 within 1 s; the manager was told to cancel it\n");

    ASSERT_EQ(Run({"set", "is_local_handler_ready", "no"}).exit_code, 0);
    const CommandResult failed = Run({"request", "1000", "--wait"});
    EXPECT_EQ(failed.exit_code, 1);
    EXPECT_TRUE(Contains(failed.errors,
                         "Local handler is not ready, but ZORSendReqToMgr() is "
                         "called"));
}

TEST_F(ZorCtl, RequestPayloadsInAndOut) {
    StartManager();
    EXPECT_EQ(Run({"request", "1000", "--wait", "--payload-hex", "00ff10"}).output, "00ff10\n");
    const json reply =
        json::parse(Run({"request", "1000", "--wait", "--payload-hex", "00ff", "--json"}).output);
    EXPECT_EQ(reply.at("result"), "done");
    EXPECT_EQ(reply.at("payload_hex"), "00ff");
    EXPECT_FALSE(reply.contains("payload"));
    WriteText("/run/payload", "from a file");
    EXPECT_EQ(Run({"request", "1000", "--wait", "--payload-file", "/run/payload"}).output,
              "from a file\n");
    EXPECT_EQ(Run({"request", "1000", "--payload-file", "/no/such/file"}).exit_code, 64);
    EXPECT_EQ(Run({"request", "1000", "--payload-hex", "0g"}).exit_code, 64);
    EXPECT_EQ(Run({"request", "1000", "--payload-hex", "0"}).exit_code, 64);
    EXPECT_EQ(Run({"request", "nonsense"}).exit_code, 64);
    EXPECT_EQ(Run({"request", "check-health"}).exit_code, 0) << "sent without waiting";
}

TEST_F(ZorCtl, RequestWithoutAManagerShowsWhy) {
    fs::remove_all(kRuntimeFolder);
    const CommandResult result = Run({"request", "17", "--wait"});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_TRUE(Contains(result.errors, "ZOR Manager is not running."));
}

// --- queue

TEST_F(ZorCtl, QueueCleanShowsWhatIsDropped) {
    ZORMgrMessage message = {};
    message.identity = 1 << 20 | 77;
    message.commandId = 17;
    strcpy(message.processName, "stale-tool");
    queue_end::Put(queue_end::kRequests, message);
    EXPECT_TRUE(Contains(Run({"queue", "list"}).output, "1  requests  1 messages"));
    const CommandResult result = Run({"queue", "clean"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_TRUE(Contains(result.output, "DROP MSG IN QUEUE(1), Process: stale-tool, pid: 77"));
    EXPECT_TRUE(Contains(result.output, "Clean 1 msgs on queue 1"));
    EXPECT_EQ(json::parse(Run({"queue", "list", "--json"}).output).at("queues")[0].at("messages"),
              0);
    EXPECT_EQ(Run({"queue", "clean", "--time-code", "-1"}).exit_code, 1);
    fs::remove(kKeyFile);
    EXPECT_EQ(Run({"queue", "clean"}).exit_code, 1);
    EXPECT_EQ(Run({"queue", "list"}).exit_code, 4);
}

// --- lock

TEST_F(ZorCtl, LockThatIsHeldNamesItsHolder) {
    const CommandResult free_lock = Run({"lock", "try", "status"});
    EXPECT_EQ(free_lock.exit_code, 0);
    BackgroundCommand holder({"zorctl", "lock", "hold", "status", "--seconds", "60"});
    ASSERT_TRUE(WaitFor([&] { return Contains(holder.Output(), "is held by"); }));
    const CommandResult held = Run({"lock", "try", "1"});
    EXPECT_EQ(held.exit_code, 1);
    EXPECT_EQ(held.errors, "zorctl: lock status is not to be had: held by process " +
                               std::to_string(holder.Process()) + " (zorctl)\n");
    EXPECT_TRUE(Contains(Run({"lock", "list"}).output, "status               process "));
    EXPECT_EQ(json::parse(Run({"lock", "list", "--json"}).output).at("locks")[0].at("holder"),
              holder.Process());
    EXPECT_TRUE(Contains(Run({"lock", "break", "status"}).output, "it was held by process"));
    EXPECT_EQ(Run({"lock", "try", "status"}).exit_code, 0);
    EXPECT_EQ(holder.End(SIGTERM), 0);
    EXPECT_EQ(Run({"lock", "try", "4"}).exit_code, 64);
}

TEST_F(ZorCtl, LockThatCannotBeOpenedShowsTheLibrarysLine) {
    fs::remove_all(kRuntimeFolder);
    const CommandResult result = Run({"lock", "try", "status"});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_TRUE(Contains(result.errors,
                         "failed to fopen /tmp/zor/.zor.ha.status.lock, errno=No "
                         "such file or directory"));
}

// --- configuration, identity, interfaces

TEST_F(ZorCtl, ConfGetSetAndCache) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    WriteText(kConfFile, "sn_ha=\"CLUSTER\"\nsn0=\"NODE0001\"\nsn1=\"NODE0002\"\n");
    EXPECT_EQ(Run({"conf", "get", "cluster-serial"}).output, "CLUSTER\n");
    EXPECT_EQ(Run({"conf", "get", "local-serial"}).output, "NODE0001\n");
    EXPECT_EQ(Run({"conf", "get", "remote-serial"}).output, "NODE0002\n");
    EXPECT_EQ(Run({"conf", "get", "monitored-interfaces"}).exit_code, 5);
    EXPECT_EQ(Run({"conf", "set", "monitored-interfaces", "yes,no"}).exit_code, 0);
    EXPECT_EQ(
        json::parse(Run({"conf", "get", "monitored-interfaces", "--json"}).output),
        json({{"schema_version", 1}, {"setting", "monitored-interfaces"}, {"value", "yes,no"}}));
    EXPECT_EQ(
        json::parse(Run({"conf", "list", "--json"}).output).at("settings").at("remote-serial"),
        "NODE0002");
    ASSERT_EQ(Run({"conf", "set", "cluster-serial", "RENAMED"}).exit_code, 0);
    EXPECT_EQ(Run({"conf", "get", "cluster-serial"}).output, "CLUSTER\n") << "cached";
    EXPECT_EQ(Run({"conf", "cache"}).exit_code, 0);
    EXPECT_EQ(Run({"conf", "get", "cluster-serial"}).output, "RENAMED\n");
    WriteText(kStatusFile, "local_role=\"2\"\n");
    const CommandResult passive = Run({"conf", "set", "cluster-serial", "X"});
    EXPECT_EQ(passive.exit_code, 1);
    EXPECT_TRUE(Contains(passive.errors, "(ZORSetHAConf): Call set ha.conf on passive"));
    EXPECT_EQ(Run({"conf", "get", "no-such-setting"}).exit_code, 64);
}

TEST_F(ZorCtl, SerialsAndMacs) {
    WriteText(kConfFile,
              "sn_ha=\"CLUSTER\"\nsn0=\"NODE0001\"\nsn1=\"NODE0002\"\nmac_all_ha=\"m1,m2\"\n");
    const json serials = json::parse(Run({"serials", "--json"}).output);
    EXPECT_EQ(serials.at("cluster"), "CLUSTER");
    EXPECT_EQ(serials.at("cluster_custom"), "CUSTOM01");
    EXPECT_EQ(serials.at("remote"), "NODE0002");
    EXPECT_EQ(Run({"macs"}).output, "m1\nm2\n");
    EXPECT_EQ(json::parse(Run({"macs", "--json"}).output).at("macs"), json({"m1", "m2"}));
    ExpectLog({});
    WriteText(kConfFile, "");
    fs::remove("/tmp/zor/ha.info.cache");
    EXPECT_EQ(Run({"macs"}).exit_code, 5);
}

TEST_F(ZorCtl, InterfacesShowBothSides) {
    WriteText(kStatusFile,
              "local_role=\"1\"\nlocal_host_ifname=\"eth0,bond1:eth2:eth3\"\n"
              "local_if_has_static_ip=\"yes,no\"\nlocal_host_if_speed=\"1000,1000,0:100:1000\"\n"
              "remote_host_if_speed=\"1000,1000,0,10000,10000\"\n");
    WriteText(kConfFile, "monitor_if=\"yes,yes,no,no,yes\"\n");
    const json info = json::parse(Run({"interfaces", "--json"}).output);
    EXPECT_EQ(info.at("heartbeat").at("local_speed"), 1000);
    const json &bond = info.at("interfaces")[1];
    EXPECT_EQ(bond.at("name"), "bond1");
    EXPECT_EQ(bond.at("kind"), "bond");
    EXPECT_EQ(bond.at("local_speed"), 100);
    EXPECT_EQ(bond.at("remote_speed"), 10000);
    EXPECT_EQ(bond.at("monitored"), true);
    EXPECT_EQ(bond.at("members")[0].at("name"), "eth2");
    EXPECT_EQ(info.at("changing"), false);
    const CommandResult table = Run({"interfaces"});
    EXPECT_EQ(table.exit_code, 0);
    EXPECT_TRUE(Contains(table.output, "bond1      100           10000          yes        no"));
    WriteText(kStatusFile, "local_role=\"1\"\n");
    const CommandResult failed = Run({"interfaces"});
    EXPECT_EQ(failed.exit_code, 1);
    EXPECT_TRUE(Contains(failed.errors, "Failed to read ha.status for if name"));
}

TEST_F(ZorCtl, ServicesShowStateAndChoice) {
    WriteText(kStatusFile, "monitor_service_status=\"running,stopped,x\"\n");
    WriteText(kConfFile, "monitor_service=\"yes,no,yes,no,yes\"\n");
    const json services = json::parse(Run({"services", "--json"}).output).at("services");
    ASSERT_EQ(services.size(), 5u);
    EXPECT_EQ(
        services[0],
        json({{"name", "samba"}, {"state", "running"}, {"monitored", true}, {"restarted", false}}));
    EXPECT_EQ(services[1].at("monitored"), false);
    EXPECT_TRUE(services[4].at("state").is_null());
    EXPECT_EQ(services[4].at("restarted"), true);
}

TEST_F(ZorCtl, ConstraintsAndDisksOfTheActiveNode) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    WriteText(kConfFile, "sn0=\"NODE0001\"\n");
    EXPECT_EQ(Run({"constraints", "set", "local", "failed-services", "smb"}).exit_code, 0);
    EXPECT_EQ(
        json::parse(Run({"constraints", "list", "--json"}).output).at("constraints")[0].at("value"),
        "smb");
    EXPECT_EQ(Run({"constraints", "clear", "local", "failed-services"}).exit_code, 0);
    EXPECT_TRUE(json::parse(Run({"constraints", "list", "--json"}).output)
                    .at("constraints")[0]
                    .at("value")
                    .is_null());
    const CommandResult unknown = Run({"constraints", "set", "remote", "failover-from", "x"});
    EXPECT_EQ(unknown.exit_code, 1);
    EXPECT_TRUE(Contains(unknown.errors, "the remote node is not known yet"));
    EXPECT_EQ(Run({"disks", "set", "sda", "sdb"}).exit_code, 0);
    EXPECT_EQ(Run({"disks", "list"}).output, "sda\nsdb\n");
    WriteText(kStatusFile, "local_role=\"2\"\n");
    const CommandResult passive = Run({"disks", "list"});
    EXPECT_EQ(passive.exit_code, 1);
    EXPECT_TRUE(Contains(passive.errors, "Get system disk list only support on active"));
    EXPECT_EQ(Run({"constraints", "list"}).exit_code, 1);
}

// --- doctor

TEST_F(ZorCtl, DoctorFindsNothingOnAWorkingNode) {
    StartManager();
    const CommandResult result = Run({"doctor"});
    EXPECT_EQ(result.exit_code, 0) << result.output;
    EXPECT_TRUE(Contains(result.output, "This node can work."));
}

TEST_F(ZorCtl, EveryReadingVerbPrintsOneVersionedObject) {
    StartManager();
    ASSERT_EQ(Run({"disks", "set", "sda"}).exit_code, 0);
    const std::vector<std::vector<std::string>> verbs = {{"status"},
                                                         {"get", "local_role"},
                                                         {"sync", "get"},
                                                         {"request", "1000", "--wait"},
                                                         {"queue", "list"},
                                                         {"lock", "list"},
                                                         {"doctor"},
                                                         {"conf", "list"},
                                                         {"conf", "get", "local-serial"},
                                                         {"serials"},
                                                         {"macs"},
                                                         {"disks", "list"},
                                                         {"interfaces"},
                                                         {"services"},
                                                         {"constraints", "list"},
                                                         {"health"},
                                                         {"hardware"},
                                                         {"hardware", "fans"},
                                                         {"cluster"},
                                                         {"nodes"},
                                                         {"network"},
                                                         {"monitor", "list"},
                                                         {"enclosures"},
                                                         {"halt-check"}};
    for (std::vector<std::string> verb : verbs) {
        verb.push_back("--json");
        const CommandResult result = Run(verb);
        const json output = json::parse(result.output, nullptr, false);
        EXPECT_TRUE(output.is_object()) << verb[0] << ": " << result.output << result.errors;
        if (output.is_object()) {
            EXPECT_EQ(output.value("schema_version", 0), 1) << verb[0];
        }
    }
}

TEST_F(ZorCtl, DoctorExplainsEachFault) {
    const auto verdict = [](const std::string &check) {
        const CommandResult result = Run({"doctor", "--json"});
        const json findings = json::parse(result.output).at("findings");
        for (const json &finding : findings) {
            if (finding.at("check") == check)
                return finding.at("verdict").get<std::string>() + ": " +
                       finding.at("finding").get<std::string>();
        }
        return std::string("no such check");
    };
    StartManager();
    EXPECT_EQ(verdict("queue limits"), "ok: msgmax 32536, msgmnb 1301440");
    const std::string before = ReadText("/proc/sys/kernel/msgmax");
    WriteText("/proc/sys/kernel/msgmax", "8192");
    EXPECT_EQ(verdict("queue limits"),
              "PROBLEM: msgmax 8192, msgmnb 1301440; both must be 32536 or more");
    WriteText("/proc/sys/kernel/msgmax", before);

    fs::rename(kSerialFile, std::string(kSerialFile) + ".aside");
    EXPECT_EQ(verdict("serial"), "PROBLEM: the kernel publishes no serial number");
    WriteText(kSerialFile, "\n");
    EXPECT_EQ(verdict("serial"), "PROBLEM: the serial number is empty");

    fs::permissions(kRuntimeFolder, fs::perms::others_write, fs::perm_options::add);
    EXPECT_EQ(verdict("runtime folder"), "PROBLEM: /tmp/zor can be written by everybody");
    fs::permissions(kRuntimeFolder, fs::perms::others_write, fs::perm_options::remove);

    fs::rename(kKeyFile, std::string(kKeyFile) + ".aside");
    EXPECT_TRUE(Contains(verdict("key file"), "PROBLEM"));
    fs::rename(std::string(kKeyFile) + ".aside", kKeyFile);

    FILE *lock = nullptr;
    ASSERT_EQ(ZORFileLock(5, 0, &lock), 0);
    EXPECT_TRUE(Contains(verdict("locks"), "note: lock boot-procedure is held by process"));
    ZORFileUnlock(&lock);

    fs::remove("/dev/log");
    EXPECT_TRUE(Contains(verdict("system log"), "PROBLEM: nobody listens at /dev/log"));

    manager_.reset();
    fs::remove_all(kRuntimeFolder);
    EXPECT_EQ(verdict("runtime folder"), "PROBLEM: /tmp/zor is not there");
    EXPECT_EQ(Run({"doctor"}).exit_code, 1);
}

TEST_F(ZorCtl, DoctorFindsAFullQueue) {
    StartManager();
    kill(manager_->Process(), SIGSTOP);
    ZORMgrMessage message = {};
    message.identity = 7;
    for (int number = 0; number < 40; ++number) queue_end::Put(queue_end::kRequests, message);
    const CommandResult result = Run({"doctor"});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_TRUE(Contains(result.output,
                         "40 requests and 0 answers waiting; the request queue is "
                         "full"));
    kill(manager_->Process(), SIGCONT);
}

}  // namespace
