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

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const RequestName &request : RequestNames()) names.push_back(request.name);
    return names;
}

std::string CheckCommand(const std::string &text) {
    return ParseRequest(text) ? "" : "'" + text + "' is no command; see zorctl request --list";
}

std::string TakeHex(const std::string &digits, std::string &payload) {
    const auto bytes = FromHex(digits);
    if (bytes) payload = *bytes;
    return bytes ? "" : "no hexadecimal number";
}

std::string TakeFile(const std::string &path, std::string &payload) {
    std::ifstream file(path, std::ios::binary);
    payload.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    return file ? "" : "cannot read " + path;
}

}  // namespace

void AddRequestCommand(const Verb &app) {
    const Verb request =
        app.Add("request", "send a request to the manager", "upgrade-failed --wait --timeout 60");
    const auto arguments = std::make_shared<RequestArguments>();
    const Option command =
        request.AddOption("command", arguments->command, "name or number of the command")
            .CheckedBy(CheckCommand)
            .Suggests(Names());
    request.AddFlag("--list", arguments->list, "print the names of the commands").Excludes(command);
    const Option text = request.AddOption("--payload", arguments->payload, "payload as text");
    const Option hex = request.AddOption(
        "--payload-hex",
        [=](const std::string &digits) { return TakeHex(digits, arguments->payload); },
        "payload as hexadecimal digits");
    const Option file = request.AddOption(
        "--payload-file",
        [=](const std::string &path) { return TakeFile(path, arguments->payload); },
        "payload from a file");
    text.Excludes(hex).Excludes(file);
    hex.Excludes(file);
    request.AddFlag("--wait", arguments->wait, "wait for the answer");
    request.AddOption("--timeout", arguments->timeout, "seconds to wait, 0: 15");
    request.AddJsonFlag();
    request.AddFooter(
        "Exit codes: 0 done or sent, 1 not sent or channel broken, 2 refused, 3 timed out.\n"
        "Example: zorctl request upgrade-failed --wait --timeout 60");
    request.Runs([=] {
        if (arguments->list) return List();
        if (arguments->command.empty()) throw MissingArgument{"command"};
        return Request(*arguments, request.PrintsJson());
    });
}
