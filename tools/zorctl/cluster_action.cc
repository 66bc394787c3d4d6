#include "cluster_action.h"

#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "exit_code.h"
#include "library_log.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

// Results of the library's that say more than a failure.
struct ResultCode {
    int32_t result;
    int exit_code;
};

constexpr ResultCode kResultCodes[] = {{ZOR_SHUTDOWN_NO_MANAGER, kExitNotRunning},
                                       {ZOR_SHUTDOWN_TIMED_OUT, kExitTimedOut}};

void PrintPlan(const ActionPlan &plan) {
    printf("%s; nothing is done, this would:\n", plan.summary.c_str());
    for (const std::string &step : plan.steps) printf("  %s\n", step.c_str());
    for (const PlannedRequest &request : plan.requests) {
        printf("  send command %u, payload %zu bytes, %s\n", request.command, request.payload_size,
               request.waits
                   ? ("wait for the answer, time-out " + std::to_string(request.timeout_s) + " s")
                         .c_str()
                   : "no wait");
    }
}

// By the serial number, which is not typed by habit.
bool IsConfirmed(const ActionPlan &plan) {
    char serial[ZOR_SERIAL_SIZE] = {};
    ZORGetOriginalSerialNumber(serial, sizeof serial);
    printf("%s. Type the serial number of this node (%s) to go on: ", plan.summary.c_str(), serial);
    fflush(stdout);
    std::string answer;
    return std::getline(std::cin, answer) && serial[0] != '\0' && answer == serial;
}

int Finish(int32_t result, const ActionPlan &plan) {
    if (result >= 0) return kExitSuccess;
    ReportFailure(plan.summary + " failed");
    if (!ZORIsTmpPathExist()) return kExitNotRunning;
    for (const ResultCode &code : kResultCodes) {
        if (code.result == result) return code.exit_code;
    }
    return kExitFailure;
}

}  // namespace

std::shared_ptr<ActionOptions> AddActionFlags(const Verb &verb) {
    const auto options = std::make_shared<ActionOptions>();
    verb.AddFlag("--yes", options->yes, "do not ask");
    verb.AddFlag("--dry-run", options->dry_run, "say what would be done, and do nothing");
    return options;
}

int RunAction(const ActionPlan &plan, const ActionOptions &options,
              const std::function<int32_t()> &action) {
    if (options.dry_run) {
        PrintPlan(plan);
        return kExitSuccess;
    }
    if (!options.yes && !isatty(STDIN_FILENO)) {
        fprintf(stderr, "zorctl: this changes the cluster; without a terminal it needs --yes\n");
        return kExitUsage;
    }
    if (!options.yes && !IsConfirmed(plan)) {
        fprintf(stderr, "zorctl: not confirmed, nothing is done\n");
        return kExitFailure;
    }
    return Finish(action(), plan);
}
