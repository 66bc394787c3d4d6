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
    if (json) PrintJson(output);
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

void AddQueueCommand(CLI::App &app, CommandContext &context) {
    CLI::App *queue = app.add_subcommand("queue", "the manager's message queues");
    queue->require_subcommand(1);

    CLI::App *list = queue->add_subcommand("list", "what is on them");
    AddJsonFlag(list, context);
    list->callback([&context] { context.action = [&context] { return List(context.json); }; });

    const auto time_code = std::make_shared<int64_t>(-1);
    CLI::App *clean = queue->add_subcommand("clean", "take the messages of earlier hours off them");
    clean->add_option("--time-code", *time_code,
                      "hours since boot plus one, up to which messages go; default: this hour, "
                      "which takes every message");
    clean->callback([=, &context] {
        const bool is_given = clean->count("--time-code") > 0;
        context.action = [=] { return Clean(is_given ? *time_code : ZORGetTimeCode()); };
    });
}
