// zorctl enclosures and halt-check.

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "snapshot.h"
#include "zor_encinfo.h"
#include "zor_webapi_core.h"

namespace {

Json State(int32_t state) {
    if (state == 2) return "normal";
    return state == 3 ? Json("not normal") : Json(nullptr);
}

Json DescribeHost(const ZORHostHWStatus &host) {
    return {{"label", host.Label[0] ? Json(host.Label) : Json(nullptr)},
            {"serial", host.Serial[0] ? Json(host.Serial) : Json(nullptr)},
            {"position", host.HostType ? Json(host.HostType) : Json(nullptr)},
            {"chain_state", host.ChainState}};
}

int ShowEnclosures(bool json) {
    ZOREnclosureStatus status = {};
    const auto picture = std::make_unique<ZORClusterEncInfo>();
    if (KEVAZORGetEnclosure(&status) != 0 || KEVAZORHostEncInfoGet(picture.get()) != 0) {
        ReportFailure("cannot read the enclosures");
        return kExitFailure;
    }
    Json enclosures = Json::array();
    for (const ZORHWEncInfo &enclosure : picture->Encs) {
        if (enclosure.EncSN[0] == '\0') continue;
        enclosures.push_back({{"serial", enclosure.EncSN},
                              {"slots", enclosure.MaxDisk},
                              {"link_first", enclosure.LinkState},
                              {"link_second", enclosure.PeerLinkState}});
    }
    const Json output = {{"status", State(status.status)},
                         {"power", State(status.powerStatus)},
                         {"fans", State(status.fanStatus)},
                         {"remote_present", picture->RemotePresence == 2},
                         {"local", DescribeHost(picture->Local)},
                         {"remote", DescribeHost(picture->Remote)},
                         {"enclosures", enclosures}};
    if (json) {
        PrintJson(output);
        return kExitSuccess;
    }
    printf("Enclosures  %s (power %s, fans %s)\n", Words(output.at("status")).c_str(),
           Words(output.at("power")).c_str(), Words(output.at("fans")).c_str());
    for (const char *node : {"local", "remote"})
        printf("%-10s  %s, serial %s, position %s\n", node,
               Words(output.at(node).at("label")).c_str(),
               Words(output.at(node).at("serial")).c_str(),
               Words(output.at(node).at("position")).c_str());
    std::vector<std::vector<std::string>> rows;
    for (const Json &enclosure : enclosures)
        rows.push_back({Words(enclosure.at("serial")), Words(enclosure.at("slots")),
                        Words(enclosure.at("link_first")), Words(enclosure.at("link_second"))});
    PrintTable({"ENCLOSURE", "SLOTS", "LINK SEEN BY 8", "LINK SEEN BY 16"}, rows);
    return kExitSuccess;
}

struct HaltNode {
    const char *name;
    int32_t which;
};

constexpr HaltNode kHaltNodes[] = {{"local", 1}, {"remote", 2}, {"both", 3}};

Json DescribeBlock(const ZORHaltBlock &block) {
    const std::string tasks(block.tasks, strnlen(block.tasks, sizeof block.tasks));
    return {{"blocked", block.blocked != 0},
            {"tasks", tasks.empty() ? Json(nullptr) : Json(tasks)}};
}

int CheckHalt(const std::string &node, bool publish, bool json) {
    int32_t which = 0;
    for (const HaltNode &row : kHaltNodes) which = node == row.name ? row.which : which;
    const auto check = std::make_unique<ZORHaltCheck>();
    if (KEVAZORCheckHaltOpt(which, check.get(), publish ? 1 : 0) != 0) {
        ReportFailure("the halt check failed");
        return kExitFailure;
    }
    Json output = Json::object();
    if (which & 1) output["local"] = DescribeBlock(check->local);
    if (which & 2) output["remote"] = DescribeBlock(check->remote);
    if (json) {
        PrintJson(output);
        return kExitSuccess;
    }
    for (const auto &[name, block] : output.items()) {
        if (!block.is_object()) continue;
        printf("%-6s  %s\n", name.c_str(),
               block.at("blocked").get<bool>() ? ("blocked by " + Words(block.at("tasks"))).c_str()
                                               : "may halt");
    }
    return kExitSuccess;
}

}  // namespace

void AddEnclosuresCommands(const Verb &app) {
    const Verb enclosures = app.Add("enclosures", "the picture of the enclosures");
    enclosures.AddJsonFlag();
    enclosures.Runs([=] { return ShowEnclosures(enclosures.PrintsJson()); });

    const auto node = std::make_shared<std::string>("both");
    const auto publish = std::make_shared<bool>(false);
    const Verb halt = app.Add("halt-check", "what keeps nodes from halting", "--node both");
    halt.AddOption("--node", *node, "local, remote or both")
        .OneOf({"local", "remote", "both"})
        .ShowsDefault();
    halt.AddFlag("--publish", *publish, "store the answer in ha.status");
    halt.AddJsonFlag();
    halt.Runs([=] { return CheckHalt(*node, *publish, halt.PrintsJson()); });
}
