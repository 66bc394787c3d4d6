// zorctl monitor: what the cluster watches.

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "cluster_action.h"
#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "snapshot.h"
#include "zor_webapi_core.h"

namespace {

constexpr int32_t kMostItems = 16;

struct MonitorType {
    uint32_t type;
    const char *name;
    uint32_t command;  // that announces a change; 0: cannot be changed
};

constexpr MonitorType kTypes[] = {{ZOR_MONITOR_SYSTEM, "system", 0},
                                  {ZOR_MONITOR_SERVICE, "service", 35},
                                  {ZOR_MONITOR_NETWORK, "interface", 16}};

struct StateWord {
    int32_t state;
    const char *word;
};

constexpr StateWord kStates[] = {
    {2, "normal"}, {4, "error or not active"}, {7, "running"}, {8, "stopped"}};

Json State(int32_t state) {
    for (const StateWord &row : kStates) {
        if (row.state == state) return row.word;
    }
    return nullptr;
}

bool AppendItems(const MonitorType &type, Json *items) {
    ZORMonitorItem rows[kMostItems];
    int32_t count = 0;
    if (KEVAZORListMonitor(type.type, rows, kMostItems, &count) != 0) return false;
    for (int32_t index = 0; index < count; ++index) {
        items->push_back({{"type", type.name},
                          {"name", rows[index].name},
                          {"monitored", rows[index].enabled != 0},
                          {"state", State(rows[index].state)}});
    }
    return true;
}

// What can be read is shown, and what cannot is said.
int List(bool json) {
    Json items = Json::array();
    bool is_complete = true;
    for (const MonitorType &type : kTypes) is_complete = AppendItems(type, &items) && is_complete;
    if (json) {
        PrintJson({{"items", items}});
    } else {
        std::vector<std::vector<std::string>> rows;
        for (const Json &item : items)
            rows.push_back({Words(item.at("type")), Words(item.at("name")),
                            Words(item.at("monitored")), Words(item.at("state"))});
        PrintTable({"TYPE", "NAME", "MONITORED", "STATE"}, rows);
    }
    if (is_complete) return kExitSuccess;
    ReportFailure("not everything that is monitored could be read");
    return kExitFailure;
}

// "NAME=yes" or "NAME=no".
bool ParseItem(const std::string &text, ZORMonitorItem *item) {
    const size_t equals = text.rfind('=');
    if (equals == std::string::npos || equals == 0 || equals >= sizeof item->name) return false;
    const std::string choice = text.substr(equals + 1);
    if (choice != "yes" && choice != "no") return false;
    *item = {};
    item->enabled = choice == "yes" ? 1 : 0;
    snprintf(item->name, sizeof item->name, "%s", text.substr(0, equals).c_str());
    return true;
}

int Set(const MonitorType &type, const std::vector<std::string> &texts,
        const ActionOptions &options) {
    std::vector<ZORMonitorItem> items(texts.size());
    ActionPlan plan = {std::string("Changing what is monitored: ") + type.name, {}, {}};
    for (size_t index = 0; index < texts.size(); ++index) {
        if (!ParseItem(texts[index], &items[index])) {
            fprintf(stderr, "zorctl: '%s' is not NAME=yes or NAME=no\n", texts[index].c_str());
            return kExitUsage;
        }
        plan.steps.push_back("store " + texts[index] + " in ha.conf");
    }
    plan.requests = {{type.command, 0, false, 0}};
    return RunAction(plan, options, [&] {
        return KEVAZORSetMonitor(type.type, items.data(), static_cast<int32_t>(items.size()));
    });
}

}  // namespace

void AddMonitorCommand(const Verb &app) {
    const Verb monitor = app.Add("monitor", "what the cluster watches");
    monitor.NeedsVerb();
    const Verb list = monitor.Add("list", "every item, its choice and its state");
    list.AddJsonFlag();
    list.Runs([=] { return List(list.PrintsJson()); });

    const Verb set = monitor.Add("set", "choose what is watched");
    set.NeedsVerb();
    const auto texts = std::make_shared<std::vector<std::string>>();
    for (const MonitorType &type : kTypes) {
        if (type.command == 0) continue;
        const Verb verb =
            set.Add(type.name, std::string("of every ") + type.name, "NAME=yes --dry-run");
        verb.AddOption("choice", *texts, "NAME=yes or NAME=no").Required();
        const auto options = AddActionFlags(verb);
        verb.Runs([=, &type] { return Set(type, *texts, *options); });
    }
}
