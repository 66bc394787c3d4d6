// zorctl conf: the settings of ha.conf.

#include <cstdio>
#include <iterator>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "zor_conf.h"
#include "zor_status.h"

namespace {

constexpr size_t kValueSize = 1024;

struct Setting {
    const char *name;
    uint32_t selector;
    uint32_t key;
};

constexpr Setting kSettings[] = {
    {"cluster-serial", ZOR_HOST_CLUSTER, ZOR_CONF_SN},
    {"local-serial", ZOR_HOST_LOCAL, ZOR_CONF_SN},
    {"remote-serial", ZOR_HOST_REMOTE, ZOR_CONF_SN},
    {"cluster-custom-serial", ZOR_HOST_CLUSTER, ZOR_CONF_SN_CUSTOM},
    {"local-custom-serial", ZOR_HOST_LOCAL, ZOR_CONF_SN_CUSTOM},
    {"remote-custom-serial", ZOR_HOST_REMOTE, ZOR_CONF_SN_CUSTOM},
    {"cluster-macs", ZOR_HOST_CLUSTER, ZOR_CONF_MAC_ALL},
    {"local-macs", ZOR_HOST_LOCAL, ZOR_CONF_MAC_ALL},
    {"remote-macs", ZOR_HOST_REMOTE, ZOR_CONF_MAC_ALL},
    {"monitored-interfaces", ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_IF},
    {"all-interfaces", ZOR_HOST_CLUSTER, ZOR_CONF_IF_ALL},
    {"monitored-services", ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_SERVICE},
};

const Setting *Find(const std::string &name) {
    for (const Setting &setting : kSettings) {
        if (name == setting.name) return &setting;
    }
    return nullptr;
}

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const Setting &setting : kSettings) names.push_back(setting.name);
    return names;
}

std::string CheckSetting(const std::string &name) {
    return Find(name) ? "" : "there is no setting '" + name + "'; see zorctl conf list";
}

int Get(const std::string &name, bool json) {
    const Setting &setting = *Find(name);
    char value[kValueSize] = {};
    const int32_t found = ZORGetHAConf(setting.selector, setting.key, value, sizeof value);
    if (found < 0) {
        ReportFailure("cannot read " + name);
        return kExitFailure;
    }
    if (json)
        PrintJson({{"setting", name}, {"value", found > 0 ? Json(value) : Json(nullptr)}});
    else if (found > 0)
        puts(value);
    else
        fprintf(stderr, "zorctl: %s is not set\n", name.c_str());
    return found > 0 ? kExitSuccess : kExitAbsent;
}

int Set(const std::string &name, const std::string &value) {
    const Setting &setting = *Find(name);
    if (ZORSetHAConf(setting.selector, setting.key, value.c_str()) == 0) return kExitSuccess;
    ReportFailure("cannot set " + name);
    return kExitFailure;
}

int Cache() {
    if (ZORPrepareCachedConf() == 0) return kExitSuccess;
    ReportFailure("cannot rebuild the cache");
    return kExitFailure;
}

// What cannot be read is shown like what is not set; the system log has the reason.
int List(bool json) {
    Json output;
    std::vector<std::vector<std::string>> rows;
    for (const Setting &setting : kSettings) {
        char value[kValueSize] = {};
        const bool is_found = ZORGetHAConf(setting.selector, setting.key, value, sizeof value) > 0;
        output[setting.name] = is_found ? Json(value) : Json(nullptr);
        rows.push_back({setting.name, is_found ? Words(output[setting.name]) : "not set"});
    }
    if (json)
        PrintJson({{"settings", output}});
    else
        PrintTable({"SETTING", "VALUE"}, rows);
    return kExitSuccess;
}

struct ConfArguments {
    std::string name;
    std::string value;
};

}  // namespace

void AddConfCommand(const Verb &app) {
    const Verb conf = app.Add("conf", "the cluster's configuration");
    conf.NeedsVerb();
    const auto arguments = std::make_shared<ConfArguments>();

    const Verb list = conf.Add("list", "all settings");
    list.AddJsonFlag();
    list.Runs([=] { return List(list.PrintsJson()); });

    const Verb get = conf.Add("get", "print a setting", "local-serial");
    get.AddOption("setting", arguments->name, "its name")
        .Required()
        .CheckedBy(CheckSetting)
        .Suggests(Names());
    get.AddJsonFlag();
    get.Runs([=] { return Get(arguments->name, get.PrintsJson()); });

    const Verb set =
        conf.Add("set", "change a setting, on the active node", "monitored-services yes,no");
    set.AddOption("setting", arguments->name, "its name")
        .Required()
        .CheckedBy(CheckSetting)
        .Suggests(Names());
    set.AddOption("value", arguments->value, "the new value, may be empty").Required();
    set.Runs([=] { return Set(arguments->name, arguments->value); });

    conf.Add("cache", "rebuild the cache of the cluster's identity").Runs(Cache);
}
