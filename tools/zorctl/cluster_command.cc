// zorctl cluster, nodes, watch: what the management interface shows.

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "snapshot.h"
#include "stop_signal.h"
#include "zor_status.h"

namespace {

int NoSnapshot(const char *what) {
    const bool is_running = ZORIsTmpPathExist() != 0;
    ReportFailure(is_running ? std::string("no fresh snapshot of ") + what
                             : "the manager is not running");
    return is_running ? kExitFailure : kExitNotRunning;
}

void PrintCluster(const Json &cluster) {
    printf("Cluster    %s\n", Words(cluster.at("status")).c_str());
    printf("Link       %s\n", Words(cluster.at("link")).c_str());
    printf("Heartbeat  %s\n", Words(cluster.at("heartbeat")).c_str());
    printf("Age        %s s\n", cluster.at("age_s").dump().c_str());
    for (const Json &desc : cluster.at("descriptions")) {
        const Json &detail = desc.at("detail");
        printf("  - %s%s\n", desc.at("words").get<std::string>().c_str(),
               detail.is_null() ? "" : (": " + detail.get<std::string>()).c_str());
    }
}

int ShowCluster(bool json) {
    const auto cluster = ReadClusterSnapshot();
    if (!cluster) return NoSnapshot("the cluster");
    if (json)
        PrintJson(*cluster);
    else
        PrintCluster(*cluster);
    return kExitSuccess;
}

// A node without a snapshot is shown as unknown, and the exit code says so.
int ShowNodes(bool json) {
    Json nodes = Json::array();
    bool is_complete = true;
    for (const int node : {1, 2}) {
        const auto snapshot = ReadNodeSnapshot(node);
        is_complete = is_complete && snapshot;
        if (snapshot) nodes.push_back(*snapshot);
    }
    if (nodes.empty()) return NoSnapshot("the nodes");
    if (json) {
        PrintJson({{"nodes", nodes}});
    } else {
        std::vector<std::vector<std::string>> rows;
        for (const Json &node : nodes) {
            rows.emplace_back();
            for (const char *key :
                 {"node", "serial", "role", "index", "state", "network", "storage", "age_s"})
                rows.back().push_back(Words(node.at(key)));
        }
        PrintTable({"NODE", "SERIAL", "ROLE", "INDEX", "STATE", "NETWORK", "STORAGE", "AGE S"},
                   rows);
    }
    return is_complete ? kExitSuccess : NoSnapshot("one of the nodes");
}

// On a terminal the page is drawn over the one before.
int Watch(int seconds) {
    const StopSignal stop;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!stop.IsAsked() && (seconds == 0 || std::chrono::steady_clock::now() < end)) {
        if (isatty(STDOUT_FILENO)) fputs("\x1b[H\x1b[2J", stdout);
        if (ShowCluster(false) != kExitSuccess) puts("unknown");
        puts("");
        ShowNodes(false);
        fflush(stdout);
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
    return kExitSuccess;
}

}  // namespace

void AddClusterCommands(const Verb &app) {
    const Verb cluster = app.Add("cluster", "the state of the cluster in plain words");
    cluster.AddJsonFlag();
    cluster.Runs([=] { return ShowCluster(cluster.PrintsJson()); });

    const Verb nodes = app.Add("nodes", "the cards of both nodes");
    nodes.AddJsonFlag();
    nodes.Runs([=] { return ShowNodes(nodes.PrintsJson()); });

    const auto seconds = std::make_shared<int>(0);
    const Verb watch =
        app.Add("watch", "the cluster's page, drawn again each second", "--seconds 10");
    watch.AddOption("--seconds", *seconds, "stop after so many seconds; 0: never").ShowsDefault();
    watch.Runs([=] { return Watch(*seconds); });
}
