// zorctl serials, macs: who this node and its cluster are.

#include <cstdio>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "zor_conf.h"
#include "zor_core.h"

namespace {

Json Text(int32_t result, const char *text) {
    return result == 0 && text[0] != '\0' ? Json(text) : Json(nullptr);
}

Json Serial(int32_t (*read)(char *, uint32_t)) {
    char serial[ZOR_SERIAL_SIZE] = {};
    return Text(read(serial, sizeof serial), serial);
}

Json ClusterSerial(int32_t custom) {
    char serial[ZOR_SERIAL_SIZE] = {};
    return Text(KEVAZORGetSerialNumber(custom, serial, sizeof serial), serial);
}

int Serials(bool json) {
    const Json serials = {{"cluster", ClusterSerial(0)},
                          {"cluster_custom", ClusterSerial(1)},
                          {"local", Serial(KEVAZORGetOriginalSN)},
                          {"local_custom", Serial(KEVAZORGetCustomSN)},
                          {"remote", Serial(KEVAZORGetRemoteOriginalSN)}};
    if (json) {
        PrintJson(serials);
        return kExitSuccess;
    }
    std::vector<std::vector<std::string>> rows;
    for (const auto &[name, serial] : serials.items()) rows.push_back({name, Words(serial)});
    PrintTable({"SERIAL OF", "NUMBER"}, rows);
    return kExitSuccess;
}

int Macs(bool json) {
    Json addresses = Json::array();
    char address[ZOR_CONF_MAC_SIZE];
    while (KEVAZORGetMac(static_cast<int32_t>(addresses.size()), address, sizeof address) == 0)
        addresses.push_back(address);
    if (addresses.empty()) {
        ReportFailure("the cluster has no MAC addresses");
        return kExitFailure;
    }
    if (json) {
        PrintJson(addresses);
        return kExitSuccess;
    }
    for (const Json &item : addresses) puts(item.get<std::string>().c_str());
    return kExitSuccess;
}

}  // namespace

void AddIdentityCommands(CLI::App &app, CommandContext &context) {
    CLI::App *serials =
        app.add_subcommand("serials", "serial numbers of the cluster and its nodes");
    AddJsonFlag(serials, context);
    serials->callback(
        [&context] { context.action = [&context] { return Serials(context.json); }; });

    CLI::App *macs = app.add_subcommand("macs", "MAC addresses of the cluster");
    AddJsonFlag(macs, context);
    macs->callback([&context] { context.action = [&context] { return Macs(context.json); }; });
}
