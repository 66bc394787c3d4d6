// What the development manager does on each command.
#pragma once

#include <cstdint>
#include <string>

#include "zor_core.h"

class BondingPlan;
class HealthPublisher;
class Peer;
class PendingAnswers;

// What a handler may use.
struct CommandContext {
    PendingAnswers &pending;
    BondingPlan &bonding;
    Peer &peer;
    HealthPublisher &health;
    std::string &upgrade;  // the one that is under way; empty: none
};

// The outcome of a command: whether it succeeded, the payload of the answer, and
// a few words for the manager's log.
struct Outcome {
    bool is_done;
    std::string payload;
    std::string note;
};

struct Command {
    uint32_t id;
    const char *name;
    Outcome (*handle)(const ZORMgrMessage &request, CommandContext &context);
};

// The row of a command; a command without one is not known here.
const Command *FindCommand(uint32_t id);

// Carries a command out; an unknown one is refused.
Outcome Handle(const ZORMgrMessage &request, CommandContext &context);
