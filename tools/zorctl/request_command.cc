// zorctl request: any request to the manager.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "output.h"
#include "payload.h"
#include "request_name.h"
#include "zor_core.h"
#include "zor_filelock.h"

namespace {

struct RequestArguments {
    std::string command;
    std::string payload;
    bool wait = false;
    int64_t timeout = 0;
    bool list = false;
};

struct Reply {
    uint32_t command;
    int32_t result;
    bool waited;
    uint32_t stated_size;  // of the payload, as the manager stated it
    std::string payload;
    int64_t timeout;
};

struct ResultRow {
    int32_t result;
    const char *word;
    ExitCode exit_code;
};

constexpr ResultRow kResults[] = {
    {ZOR_REQUEST_DONE, "done", kExitSuccess},
    {ZOR_REQUEST_FAILED, "failed", kExitFailure},
    {ZOR_REQUEST_REFUSED, "refused", kExitRefused},
    {ZOR_REQUEST_TIMED_OUT, "timed-out", kExitTimedOut},
};

const ResultRow &RowOf(int32_t result) {
    for (const ResultRow &row : kResults) {
        if (row.result == result) return row;
    }
    return kResults[1];
}

Reply Send(uint32_t command, const RequestArguments &arguments) {
    ZORMgrRequest request = {};
    request.commandId = command;
    request.inputData = arguments.payload.empty() ? nullptr : arguments.payload.data();
    request.inputSize = static_cast<uint32_t>(arguments.payload.size());
    request.wait = arguments.wait ? 1 : 0;
    request.timeout = arguments.timeout;
    const int32_t result = ZORSendReqToMgr(&request);
    const std::unique_ptr<void, decltype(&free)> output(request.outputData, free);
    std::string payload;
    if (output) payload.assign(static_cast<const char *>(output.get()), request.outputSize);
    return {
        command,        result,
        arguments.wait, request.outputSize,
        payload,        arguments.timeout > 0 ? arguments.timeout : ZOR_REQUEST_DEFAULT_TIMEOUT};
}

void PrintReply(const Reply &reply) {
    Json output = {{"command", reply.command},
                   {"result", RowOf(reply.result).word},
                   {"waited", reply.waited},
                   {"payload_size", reply.stated_size},
                   {"payload_hex", ToHex(reply.payload)}};
    if (IsPrintable(reply.payload)) output["payload"] = reply.payload;
    output["log"] = TakeLibraryLines();
    PrintJson(output);
}

void PrintPayload(const Reply &reply) {
    if (reply.payload.empty()) return;
    puts(IsPrintable(reply.payload) ? reply.payload.c_str() : ToHex(reply.payload).c_str());
}

void Explain(const Reply &reply) {
    const std::string command = "command " + std::to_string(reply.command);
    switch (reply.result) {
        case ZOR_REQUEST_DONE:
            fprintf(stderr, "zorctl: %s %s\n", command.c_str(), reply.waited ? "done" : "sent");
            break;
        case ZOR_REQUEST_REFUSED:
            ReportFailure(reply.stated_size > ZOR_PAYLOAD_SIZE
                              ? command + ": the answer is too large, " +
                                    std::to_string(reply.stated_size) + " bytes"
                              : "the manager refused " + command);
            break;
        case ZOR_REQUEST_TIMED_OUT:
            ReportFailure(
                "no answer to " + command + " within " + std::to_string(reply.timeout) + " s" +
                (ZORGetCmdLockGroupID(reply.command) >= 0 ? "; the manager was told to cancel it"
                                                          : ""));
            break;
        default:
            ReportFailure(command + " could not be sent, or its answer could not be received");
    }
}

int Request(const RequestArguments &arguments, bool json) {
    const Reply reply = Send(*ParseRequest(arguments.command), arguments);
    if (json) {
        PrintReply(reply);
    } else {
        PrintPayload(reply);
        Explain(reply);
    }
    return RowOf(reply.result).exit_code;
}

int List() {
    for (const RequestName &request : RequestNames())
        printf("%4u  %-24s %s\n", request.id, request.name, request.meaning);
    return kExitSuccess;
}

std::string CheckCommand(const std::string &text) {
    return ParseRequest(text) ? "" : "'" + text + "' is no command; see zorctl request --list";
}

std::string ReadPayloadFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw CLI::ValidationError("--payload-file", "cannot read " + path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

void AddRequestCommand(CLI::App &app, CommandContext &context) {
    CLI::App *request = app.add_subcommand("request", "send a request to the manager");
    const auto arguments = std::make_shared<RequestArguments>();
    CLI::Option *command =
        request->add_option("command", arguments->command, "name or number of the command")
            ->check(CheckCommand);
    request->add_flag("--list", arguments->list, "print the names of the commands")
        ->excludes(command);
    CLI::Option *text = request->add_option("--payload", arguments->payload, "payload as text");
    CLI::Option *hex = request->add_option_function<std::string>(
        "--payload-hex",
        [arguments](const std::string &digits) {
            const auto bytes = FromHex(digits);
            if (!bytes) throw CLI::ValidationError("--payload-hex", "no hexadecimal number");
            arguments->payload = *bytes;
        },
        "payload as hexadecimal digits");
    CLI::Option *file = request->add_option_function<std::string>(
        "--payload-file",
        [arguments](const std::string &path) { arguments->payload = ReadPayloadFile(path); },
        "payload from a file");
    text->excludes(hex)->excludes(file);
    hex->excludes(file);
    request->add_flag("--wait", arguments->wait, "wait for the answer");
    request->add_option("--timeout", arguments->timeout, "seconds to wait, 0: 15");
    AddJsonFlag(request, context);
    request->footer(
        "Exit codes: 0 done or sent, 1 not sent or channel broken, 2 refused, 3 timed out.\n"
        "Example: zorctl request upgrade-failed --wait --timeout 60");
    request->callback([=, &context] {
        if (!arguments->list && arguments->command.empty()) throw CLI::RequiredError("command");
        context.action = [=, &context] {
            return arguments->list ? List() : Request(*arguments, context.json);
        };
    });
}
