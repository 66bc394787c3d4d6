// zorctl services: the services that can be monitored.

#include <cstdio>
#include <sstream>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "zor_conf.h"
#include "zor_status.h"

namespace {

std::vector<std::string> Split(const std::string &text) {
    std::vector<std::string> items;
    std::istringstream stream(text);
    for (std::string item; std::getline(stream, item, ',');) items.push_back(item);
    return items;
}

std::vector<std::string> Choice() {
    char value[ZOR_CONF_MONITOR_SIZE] = {};
    const int32_t found =
        ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_SERVICE, value, sizeof value);
    return found > 0 ? Split(value) : std::vector<std::string>();
}

std::vector<std::string> States() {
    char value[ZOR_CONF_MONITOR_SIZE] = {};
    const int32_t found =
        ZORGetHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_MONITOR_SERVICE_STATUS, value, sizeof value);
    return found > 0 ? Split(value) : std::vector<std::string>();
}

int Show(bool json) {
    const std::vector<std::string> choice = Choice();
    const std::vector<std::string> states = States();
    Json output = Json::array();
    std::vector<std::vector<std::string>> rows;
    for (size_t slot = 0; slot < ZOR_SERVICE_COUNT && gMonitorServiceList[slot]; ++slot) {
        const bool is_chosen = slot < choice.size();
        const Json row = {
            {"name", gMonitorServiceList[slot]},
            {"state", slot < states.size() ? Json(states[slot]) : Json(nullptr)},
            {"monitored", is_chosen ? Json(choice[slot] == "yes") : Json(nullptr)},
            {"restarted", is_chosen ? Json(!ZORIsSkipRestartService(gMonitorServiceList[slot]))
                                    : Json(nullptr)}};
        output.push_back(row);
        rows.push_back({row.at("name"), Words(row.at("state")), Words(row.at("monitored")),
                        Words(row.at("restarted"))});
    }
    if (json)
        PrintJson({{"services", output}});
    else
        PrintTable({"SERVICE", "STATE", "MONITORED", "RESTARTED"}, rows);
    return kExitSuccess;
}

}  // namespace

void AddServicesCommand(const Verb &app) {
    const Verb services = app.Add("services", "the services that can be monitored");
    services.AddJsonFlag();
    services.Runs([=] { return Show(services.PrintsJson()); });
}
