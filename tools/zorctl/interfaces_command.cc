// zorctl interfaces: ports, bonds and the heartbeat link of both nodes.

#include <algorithm>
#include <cstdio>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "zor_core.h"

namespace {

Json Speed(int32_t speed) {
    return speed == -1 ? Json(nullptr) : Json(speed);
}

Json DescribePort(const ZORIfPort &port) {
    return {{"monitored", port.monitored != 0},
            {"static_ip", port.staticIp != 0},
            {"local_speed", Speed(port.localSpeed)},
            {"remote_speed", Speed(port.remoteSpeed)}};
}

Json DescribeMembers(const ZORIfInfo &info, int32_t bond) {
    Json members = Json::array();
    for (int32_t entry = 1; entry < ZOR_IF_TABLE_SIZE; ++entry) {
        const ZORIfPort &port = info.ports[entry];
        if (!port.present || port.bond != bond) continue;
        Json member = {{"name", "eth" + std::to_string(entry - 1)}};
        member.update(DescribePort(port));
        members.push_back(member);
    }
    return members;
}

Json DescribeBond(const ZORIfInfo &info, const ZORIfBond &bond) {
    return {{"monitored", bond.monitored != 0},
            {"static_ip", bond.staticIp != 0},
            {"local_speed", Speed(bond.minLocalSpeed)},
            {"remote_speed", Speed(bond.minRemoteSpeed)},
            {"members", DescribeMembers(info, bond.number)}};
}

Json Describe(const ZORIfInfo &info) {
    Json output = {{"heartbeat", DescribePort(info.ports[0])}, {"interfaces", Json::array()}};
    const int32_t count = std::min(info.interfaceCount, ZOR_IF_TABLE_SIZE);
    for (int32_t number = 0; number < count; ++number) {
        const ZORIfEntry &entry = info.interfaces[number];
        Json row = {{"name", entry.name}, {"kind", entry.isBond ? "bond" : "port"}};
        row.update(entry.isBond ? DescribeBond(info, info.bonds[entry.index])
                                : DescribePort(info.ports[entry.index]));
        output["interfaces"].push_back(row);
    }
    output["changing"] = ZORIsNetConfChanging() != 0;
    return output;
}

std::vector<std::string> Row(const std::string &name, const Json &item) {
    return {name, Words(item.at("local_speed")), Words(item.at("remote_speed")),
            Words(item.at("monitored")), Words(item.at("static_ip"))};
}

int Show(bool json) {
    ZORIfInfo info;
    if (ZORGetConfIfInfo(&info) != 0) {
        ReportFailure("cannot read the interfaces");
        return kExitFailure;
    }
    const Json output = Describe(info);
    if (json) {
        PrintJson(output);
        return kExitSuccess;
    }
    std::vector<std::vector<std::string>> rows = {Row("heartbeat", output.at("heartbeat"))};
    for (const Json &item : output.at("interfaces")) {
        rows.push_back(Row(item.at("name"), item));
        for (const Json &member : item.value("members", Json::array()))
            rows.push_back(Row("  " + member.at("name").get<std::string>(), member));
    }
    PrintTable({"INTERFACE", "LOCAL MBIT/S", "REMOTE MBIT/S", "MONITORED", "STATIC ADDRESS"}, rows);
    if (output.at("changing").get<bool>()) puts("The network configuration is being changed.");
    return kExitSuccess;
}

}  // namespace

void AddInterfacesCommand(const Verb &app) {
    const Verb interfaces = app.Add("interfaces", "ports, bonds and the heartbeat link");
    interfaces.AddJsonFlag();
    interfaces.Runs([=] { return Show(interfaces.PrintsJson()); });
}
