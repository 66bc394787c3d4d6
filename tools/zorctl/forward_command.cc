// zorctl forward: hands items to the manager for the remote node.

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "cluster_action.h"
#include "command.h"
#include "exit_code.h"
#include "zor_core.h"

namespace {

struct ForwardVerb {
    const char *name;
    const char *description;
    uint32_t command;
    size_t least;  // bytes of the file; 0 and 0: it takes none
    size_t most;
    int32_t (*send)(const std::string &content);
};

int32_t SendLog(const std::string &content) {
    ZORLogRecord record;
    memcpy(&record, content.data(), sizeof record);
    return KEVAZORSendLogToRemote(record);
}

int32_t SendNotification(const std::string &content) {
    ZORNotifyRecord record;
    memcpy(&record, content.data(), sizeof record);
    return KEVAZORSendNotifyDataToRemote(&record);
}

int32_t SendFans(const std::string &content) {
    return KEVAZORRemoteFanAdjust(content.data(), static_cast<int32_t>(content.size()));
}

constexpr ForwardVerb kForwardVerbs[] = {
    {"log", "a log record of 568 bytes", 34, sizeof(ZORLogRecord), sizeof(ZORLogRecord), SendLog},
    {"notify", "a notification record of 6152 bytes", 52, sizeof(ZORNotifyRecord),
     sizeof(ZORNotifyRecord), SendNotification},
    {"fans", "an adjustment of the fans", 45, 1, ZOR_REQUEST_PAYLOAD_MAX, SendFans},
    {"buzzer", "the buzzer-off setting of /etc/kevainfo.conf", 36, 0, 0,
     [](const std::string &) { return KEVAZORSendBuzzerOffCfgToRemote(); }},
    {"passwords", "have the passwords synchronised", 42, 0, 0,
     [](const std::string &) { return KEVAZORSyncPasswdToRemote(); }},
};

int Forward(const ForwardVerb &verb, const std::string &path, const ActionOptions &options) {
    std::string content;
    if (verb.most > 0) {
        std::ifstream file(path, std::ios::binary);
        content.assign(std::istreambuf_iterator<char>(file), {});
        if (!file || content.size() < verb.least || content.size() > verb.most) {
            fprintf(stderr, "zorctl: %s must be a file of %zu to %zu bytes\n", path.c_str(),
                    verb.least, verb.most);
            return kExitUsage;
        }
    }
    const ActionPlan plan = {std::string("Forwarding ") + verb.description,
                             {},
                             {{verb.command, content.size(), false, 0}}};
    return RunAction(plan, options, [&] { return verb.send(content); });
}

}  // namespace

void AddForwardCommand(const Verb &app) {
    const Verb forward = app.Add("forward", "send something to the remote node");
    forward.NeedsVerb();
    const auto path = std::make_shared<std::string>();
    for (const ForwardVerb &row : kForwardVerbs) {
        const Verb verb = forward.Add(row.name, row.description,
                                      row.most > 0 ? "record.bin --dry-run" : "--dry-run");
        if (row.most > 0) verb.AddOption("file", *path, "its content").Required();
        const auto options = AddActionFlags(verb);
        verb.Runs([=, &row] { return Forward(row, *path, *options); });
    }
}
