// zorctl network: the ports of both nodes, on the active one.

#include <string>
#include <vector>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "snapshot.h"
#include "zor_core.h"
#include "zor_webapi_core.h"

namespace {

struct PortWord {
    int32_t state;
    const char *word;
};

constexpr PortWord kPortStates[] = {
    {2, "normal"}, {3, "no link on the remote node"}, {4, "no link"}, {6, "not monitored"}};

Json State(int32_t state) {
    for (const PortWord &row : kPortStates) {
        if (row.state == state) return row.word;
    }
    return nullptr;
}

Json Speed(int32_t is_known, int32_t speed) {
    return is_known ? Json(speed) : Json(nullptr);
}

int Show(bool json) {
    ZORNetInfo rows[ZOR_IF_TABLE_SIZE];
    int32_t count = 0;
    if (KEVAZORGetNetInfo(rows, ZOR_IF_TABLE_SIZE, &count) != 0) {
        ReportFailure("cannot read the network");
        return kExitFailure;
    }
    Json ports = Json::array();
    for (int32_t index = 0; index < count; ++index) {
        const ZORNetInfo &row = rows[index];
        ports.push_back({{"name", row.name},
                         {"state", State(row.portState)},
                         {"local_speed", Speed(row.hasLocalSpeed, row.localSpeed)},
                         {"remote_speed", Speed(row.hasRemoteSpeed, row.remoteSpeed)},
                         {"bond", row.inBond ? Json(row.bondNumber) : Json(nullptr)},
                         {"monitored", row.monitored != 0}});
    }
    if (json) {
        PrintJson({{"ports", ports}});
        return kExitSuccess;
    }
    std::vector<std::vector<std::string>> table;
    for (const Json &port : ports) {
        table.push_back({Words(port.at("name")), Words(port.at("state")),
                         Words(port.at("local_speed")), Words(port.at("remote_speed")),
                         port.at("bond").is_null() ? "-" : Words(port.at("bond")),
                         Words(port.at("monitored"))});
    }
    PrintTable({"PORT", "STATE", "LOCAL MBIT/S", "REMOTE MBIT/S", "BOND", "MONITORED"}, table);
    return kExitSuccess;
}

}  // namespace

void AddNetworkCommand(const Verb &app) {
    const Verb network = app.Add("network", "the ports of both nodes");
    network.AddJsonFlag();
    network.Runs([=] { return Show(network.PrintsJson()); });
}
