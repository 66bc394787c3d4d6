// zorctl queue: the manager's message queues.

#include <cstdio>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "queue_state.h"
#include "zor_core.h"

namespace {

const char *Purpose(int project) {
    return project == 1 ? "requests" : project == 2 ? "answers" : "other";
}

int List(bool json) {
    const auto queues = ReadQueues();
    if (queues.empty()) {
        fprintf(stderr, "zorctl: there is no key file; the manager is not running\n");
        return kExitNotRunning;
    }
    Json output = Json::array();
    for (const QueueState &queue : queues) {
        output.push_back({{"queue", queue.project},
                          {"purpose", Purpose(queue.project)},
                          {"exists", queue.exists},
                          {"messages", queue.messages},
                          {"bytes", queue.bytes},
                          {"bytes_limit", queue.bytes_limit}});
        if (!json && queue.exists)
            printf("%d  %-9s %lu messages, %lu of %lu bytes\n", queue.project,
                   Purpose(queue.project), queue.messages, queue.bytes, queue.bytes_limit);
        else if (!json)
            printf("%d  %-9s not made yet\n", queue.project, Purpose(queue.project));
    }
    if (json) PrintJson({{"queues", output}});
    return kExitSuccess;
}

int Clean(int64_t time_code) {
    if (ZORCleanAllMsgQueue(time_code) != 0) {
        ReportFailure("cannot clean the queues");
        return kExitFailure;
    }
    // Each removed message and each failed queue is one of the library's lines.
    bool has_failed = false;
    for (const std::string &line : TakeLibraryLines()) {
        puts(line.c_str());
        has_failed = has_failed || line.find("Clean msgqueue:") != std::string::npos;
    }
    return has_failed ? kExitFailure : kExitSuccess;
}

}  // namespace

void AddQueueCommand(const Verb &app) {
    const Verb queue = app.Add("queue", "the manager's message queues");
    queue.NeedsVerb();

    const Verb list = queue.Add("list", "what is on them");
    list.AddJsonFlag();
    list.Runs([=] { return List(list.PrintsJson()); });

    const auto time_code = std::make_shared<int64_t>(-1);
    const Verb clean = queue.Add("clean", "take the messages of earlier hours off them");
    const Option given =
        clean.AddOption("--time-code", *time_code,
                        "hours since boot plus one, up to which messages go; default: this hour, "
                        "which takes every message");
    clean.Runs([=] { return Clean(given.IsGiven() ? *time_code : ZORGetTimeCode()); });
}
