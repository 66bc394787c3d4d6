// zorctl sync: the status record that travels to the other node, as a file.

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "zor_status.h"

namespace {

struct TextField {
    const char *name;
    size_t offset;
    size_t width;
};

#define TEXT_FIELD(name, member) \
    { name, offsetof(ZORSyncStatus, member), sizeof(ZORSyncStatus::member) }

constexpr TextField kFields[] = {
    TEXT_FIELD("monitored_if_no_static_ip", monitoredIfNoStaticIp),
    TEXT_FIELD("if_has_static_ip", ifHasStaticIp),
    TEXT_FIELD("if_speed", ifSpeed),
    TEXT_FIELD("if_status", ifStatus),
    TEXT_FIELD("host_ifname", hostIfName),
    TEXT_FIELD("zor_ifname", zorIfName),
    TEXT_FIELD("host_ip", hostIp),
    TEXT_FIELD("zor_ip", zorIp),
    TEXT_FIELD("version", version),
    TEXT_FIELD("failed_hardware", failedHardware),
    TEXT_FIELD("failed_services", failedServices),
    TEXT_FIELD("failed_interfaces", failedInterfaces),
    TEXT_FIELD("blocking_tasks", blockingTasks),
};

std::string Text(const ZORSyncStatus &record, const TextField &field) {
    const char *text = reinterpret_cast<const char *>(&record) + field.offset;
    return {text, strnlen(text, field.width)};
}

void Print(const ZORSyncStatus &record, bool json) {
    Json output;
    for (const TextField &field : kFields) output[field.name] = Text(record, field);
    output["role"] = record.role;
    if (json) {
        PrintJson(output);
        return;
    }
    for (const auto &[name, value] : output.items())
        printf("%-26s %s\n", name.c_str(),
               value.is_string() ? value.get<std::string>().c_str() : value.dump().c_str());
}

int Get(uint32_t selector, const std::string &file, bool json) {
    ZORSyncStatus record = {};
    if (ZORGetSyncHAStatus(selector, &record) != 0) {
        ReportFailure("cannot read the status record");
        return kExitFailure;
    }
    if (file.empty()) {
        Print(record, json);
        return kExitSuccess;
    }
    std::ofstream output(file, std::ios::binary | std::ios::trunc);
    output.write(reinterpret_cast<const char *>(&record), sizeof record);
    if (output.flush()) return kExitSuccess;
    fprintf(stderr, "zorctl: cannot write %s: %s\n", file.c_str(), strerror(errno));
    return kExitFailure;
}

int Set(uint32_t selector, const std::string &file) {
    ZORSyncStatus record;
    std::ifstream input(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(input),
                            std::istreambuf_iterator<char>()};
    if (bytes.size() != sizeof record) {
        fprintf(stderr, "zorctl: %s is no status record: %zu bytes, not %zu\n", file.c_str(),
                bytes.size(), sizeof record);
        return kExitFailure;
    }
    memcpy(&record, bytes.data(), sizeof record);
    if (ZORSetSyncHAStatus(selector, &record) == 0) return kExitSuccess;
    ReportFailure("cannot store the status record");
    return kExitFailure;
}

}  // namespace

void AddSyncCommand(const Verb &app) {
    const Verb sync = app.Add("sync", "the status record for the other node");
    sync.NeedsVerb();
    const auto file = std::make_shared<std::string>();
    const auto remote = std::make_shared<bool>(false);
    const auto local = std::make_shared<bool>(false);

    const Verb get = sync.Add("get", "read this node's record", "--output record.bin");
    get.AddFlag("--remote", *remote, "read what is known of the other node instead");
    get.AddOption("--output", *file, "write the 3188 bytes to a file instead of printing them");
    get.AddJsonFlag();
    get.Runs(
        [=] { return Get(*remote ? ZOR_HOST_REMOTE : ZOR_HOST_LOCAL, *file, get.PrintsJson()); });

    const Verb set = sync.Add("set", "store a record as the other node's", "record.bin");
    set.AddOption("file", *file, "a record written by sync get --output").Required();
    set.AddFlag("--local", *local, "store it as this node's instead");
    set.Runs([=] { return Set(*local ? ZOR_HOST_LOCAL : ZOR_HOST_REMOTE, *file); });
}
