// zorctl serials, macs: who this node and its cluster are.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_status.h"

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

// How many there are; asking for one too many would leave a line in the log.
int32_t CountMacs() {
    char list[ZOR_CONF_MAC_SIZE] = {};
    if (ZORGetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MAC_ALL, list, sizeof list) < 1) return 0;
    return static_cast<int32_t>(std::count(list, list + strlen(list), ',')) + 1;
}

int Macs(bool json) {
    Json addresses = Json::array();
    const int32_t count = CountMacs();
    for (int32_t index = 0; index < count; ++index) {
        char address[ZOR_CONF_MAC_SIZE];
        if (KEVAZORGetMac(index, address, sizeof address) != 0) {
            ReportFailure("cannot read the MAC addresses");
            return kExitFailure;
        }
        addresses.push_back(address);
    }
    if (addresses.empty()) {
        ReportFailure("the cluster has no MAC addresses");
        return kExitAbsent;
    }
    if (json) {
        PrintJson({{"macs", addresses}});
        return kExitSuccess;
    }
    for (const Json &item : addresses) puts(item.get<std::string>().c_str());
    return kExitSuccess;
}

}  // namespace

void AddIdentityCommands(const Verb &app) {
    const Verb serials = app.Add("serials", "serial numbers of the cluster and its nodes");
    serials.AddJsonFlag();
    serials.Runs([=] { return Serials(serials.PrintsJson()); });

    const Verb macs = app.Add("macs", "MAC addresses of the cluster");
    macs.AddJsonFlag();
    macs.Runs([=] { return Macs(macs.PrintsJson()); });
}
