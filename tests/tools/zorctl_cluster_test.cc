// zorctl cluster, nodes, network, monitor, enclosures, halt-check, watch.

#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/command_run.h"
#include "support/node_test.h"
#include "support/queue_end.h"
#include "zor_status.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

class ZorCtlCluster : public NodeTest {
  protected:
    ZorCtlCluster() { UseBuiltPrograms(); }
    ~ZorCtlCluster() override {
        manager_.reset();
        queue_end::RemoveAll();
    }

    static CommandResult Run(std::vector<std::string> words) {
        words.insert(words.begin(), "zorctl");
        return RunCommand(words);
    }
    static json Read(std::vector<std::string> words) {
        words.push_back("--json");
        return json::parse(Run(words).output);
    }

    void StartManager() {
        virtual_time::Stop();
        fs::remove_all(kRuntimeFolder);
        manager_ =
            std::make_unique<BackgroundCommand>(Lines{"zorlab", "manager", "--peer", "in-process"});
        ASSERT_TRUE(WaitFor([] { return ZORIsLocalHandlerReady() != 0; }));
    }

    std::unique_ptr<BackgroundCommand> manager_;
};

bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

TEST_F(ZorCtlCluster, PageFollowsTheNode) {
    StartManager();
    const json cluster = Read({"cluster"});
    EXPECT_EQ(cluster.at("schema_version"), 1);
    EXPECT_LT(cluster.at("age_s").get<double>(), 12.0);
    EXPECT_TRUE(cluster.at("remote_booted").get<bool>());
    EXPECT_EQ(Run({"monitor", "set", "service", "samba=yes", "--yes"}).exit_code, 0);
    EXPECT_TRUE(WaitFor([] {
        return Contains(Run({"cluster"}).output,
                        "  - services of the active node have failed: samba\n");
    }));
    EXPECT_EQ(Run({"power", "shutdown-remote", "--yes"}).exit_code, 0);
    EXPECT_TRUE(WaitFor([] {
        const std::string page = Run({"cluster"}).output;
        return Contains(page, "remote node not reachable") &&
               Contains(page, "the passive node is offline");
    }));
}

TEST_F(ZorCtlCluster, NodesAndTheirCards) {
    StartManager();
    const json nodes = Read({"nodes"});
    ASSERT_EQ(nodes.at("nodes").size(), 2u);
    EXPECT_EQ(nodes.at("nodes")[0].at("serial"), "NODE0001");
    EXPECT_EQ(nodes.at("nodes")[0].at("role"), "active");
    EXPECT_EQ(nodes.at("nodes")[1].at("state"), "normal");
    const CommandResult table = Run({"nodes"});
    EXPECT_EQ(table.exit_code, 0);
    EXPECT_TRUE(Contains(table.output, "remote  PEERNODE000001  passive"));
}

TEST_F(ZorCtlCluster, WithoutAManagerNothingIsInvented) {
    fs::remove_all(kRuntimeFolder);
    for (const char *verb : {"cluster", "nodes"}) {
        const CommandResult result = Run({verb, "--json"});
        EXPECT_EQ(result.exit_code, 4) << verb;
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(Run({"network"}).exit_code, 1);
    EXPECT_EQ(Run({"enclosures"}).exit_code, 1);
    EXPECT_EQ(Run({"halt-check"}).exit_code, 1);
}

TEST_F(ZorCtlCluster, NetworkHasARowForEachPort) {
    WriteText(kStatusFile,
              "local_role=\"1\"\nlocal_host_ifname=\"eth0\"\nlocal_if_has_static_ip=\"yes\"\n"
              "local_host_if_speed=\"1000,-1\"\nremote_host_if_speed=\"1000,1000\"\n");
    WriteText(kConfFile, "monitor_if=\"yes,yes\"\n");
    const json ports = Read({"network"}).at("ports");
    ASSERT_EQ(ports.size(), 2u);
    EXPECT_EQ(ports[0].at("name"), "heartbeat");
    EXPECT_EQ(ports[0].at("state"), "no link on the remote node");
    EXPECT_TRUE(ports[0].at("remote_speed").is_null()) << "it cannot be reached";
    EXPECT_EQ(ports[1].at("state"), "no link");
    EXPECT_TRUE(Contains(Run({"network"}).output, "eth0       no link"));
}

TEST_F(ZorCtlCluster, MonitorListsWhatCanBeRead) {
    WriteText(kStatusFile, "local_role=\"1\"\nmonitor_service_status=\"running,x\"\n");
    WriteText(kConfFile, "monitor_service=\"yes,no,no\"\n");
    const CommandResult result = Run({"monitor", "list", "--json"});
    EXPECT_EQ(result.exit_code, 1) << "there are no interfaces";
    EXPECT_TRUE(Contains(result.errors, "Failed to list monitor network"));
    const json items = json::parse(result.output).at("items");
    ASSERT_EQ(items.size(), 4u);
    EXPECT_EQ(items[0].at("name"), "host_error");
    EXPECT_EQ(
        items[2],
        json({{"type", "service"}, {"name", "samba"}, {"monitored", true}, {"state", "running"}}));
    EXPECT_EQ(items[3].at("state"), "error or not active");
}

TEST_F(ZorCtlCluster, MonitorSetIsAnActionOfTheCluster) {
    const CommandResult plan =
        Run({"monitor", "set", "interface", "eth0=yes", "eth1=no", "--dry-run"});
    EXPECT_EQ(plan.exit_code, 0);
    EXPECT_TRUE(Contains(plan.output, "store eth1=no in ha.conf"));
    EXPECT_TRUE(Contains(plan.output, "send command 16, payload 0 bytes, no wait"));
    EXPECT_EQ(Run({"monitor", "set", "service", "samba=yes"}).exit_code, 64);
    for (const char *text : {"samba", "=yes", "samba=maybe"})
        EXPECT_EQ(Run({"monitor", "set", "service", text, "--yes"}).exit_code, 64) << text;
    ExpectLog({});
}

TEST_F(ZorCtlCluster, EnclosuresAndHaltCheck) {
    WriteText("/etc/zorlab.chassis",
              "controllers: [{position: 8}, {position: 16}]\n"
              "enclosures: [{serial: E1, disks: [1, 0], fans: [failed, ok, ok, ok, ok, ok, ok, ok],"
              " power: [ok, ok]}]\n");
    StartManager();
    const json enclosures = Read({"enclosures"});
    EXPECT_EQ(enclosures.at("status"), "not normal");
    EXPECT_EQ(enclosures.at("power"), "normal");
    EXPECT_EQ(enclosures.at("fans"), "not normal");
    EXPECT_EQ(enclosures.at("enclosures")[0].at("serial"), "E1");
    EXPECT_EQ(enclosures.at("local").at("label"), "QM77000zt+(Active)");
    EXPECT_EQ(enclosures.at("remote").at("label"), "QM77000zt+(Passive)");
    EXPECT_EQ(Run({"halt-check"}).output, "local   may halt\nremote  may halt\n");
    EXPECT_EQ(Run({"bios", "start", "--yes"}).exit_code, 0);
    const json check = Read({"halt-check", "--node", "local", "--publish"});
    EXPECT_EQ(check.at("local").at("tasks"), "BIOS upgrade");
    EXPECT_FALSE(check.contains("remote"));
    EXPECT_TRUE(Contains(ReadText(kStatusFile), "blocking_tasks_local=\"BIOS upgrade\""));
}

TEST_F(ZorCtlCluster, WatchDrawsThePageAndEnds) {
    StartManager();
    const CommandResult watch = Run({"watch", "--seconds", "1"});
    EXPECT_EQ(watch.exit_code, 0);
    EXPECT_TRUE(Contains(watch.output, "Cluster    "));
    EXPECT_TRUE(Contains(watch.output, "NODE    SERIAL"));
    EXPECT_FALSE(Contains(watch.output, "\x1b")) << "nothing is drawn over off a terminal";
}

}  // namespace
