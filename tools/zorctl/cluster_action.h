// Actions that change the cluster: what they would do can be shown, and they are
// confirmed before they are done.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "command_line.h"

struct PlannedRequest {
    uint32_t command;
    size_t payload_size;
    bool waits;
    int timeout_s;  // of the answer; matters only when it is waited for
};

// What an action does: flags, files and programs in words, and the request.
struct ActionPlan {
    std::string summary;
    std::vector<std::string> steps;
    std::vector<PlannedRequest> requests;
};

struct ActionOptions {
    bool yes = false;
    bool dry_run = false;
};

// Adds --yes and --dry-run.
std::shared_ptr<ActionOptions> AddActionFlags(const Verb &verb);

// Shows the plan, or confirms and runs the action. Returns the exit code.
int RunAction(const ActionPlan &plan, const ActionOptions &options,
              const std::function<int32_t()> &action);
