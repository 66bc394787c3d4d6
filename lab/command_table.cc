#include "command_table.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <type_traits>

#include "bonding_plan.h"
#include "pending_answers.h"

namespace {

// The manager's own: answers with its payload, to try the road out.
constexpr uint32_t kPing = 1000;

constexpr int32_t kSnapshotTypes = 3;

uint32_t PayloadLength(const ZORMgrMessage &request) {
    return std::min<uint32_t>(request.payloadLength, sizeof request.payload);
}

// Reads a payload of exactly one record.
template <typename Record>
bool ReadPayload(const ZORMgrMessage &request, Record *record) {
    static_assert(std::is_trivially_copyable_v<Record>);
    if (request.payloadLength != sizeof *record) return false;
    memcpy(record, request.payload, sizeof *record);
    return true;
}

Outcome Ping(const ZORMgrMessage &request, CommandContext & /*context*/) {
    return {true,
            std::string(reinterpret_cast<const char *>(request.payload), PayloadLength(request)),
            "payload sent back"};
}

Outcome Cancel(const ZORMgrMessage &request, CommandContext &context) {
    ZORCancelPayload cancel;
    if (!ReadPayload(request, &cancel)) return {false, "", "no cancellation payload"};
    const bool is_known = context.pending.Cancel(cancel);
    return {is_known, "",
            "cancels command " + std::to_string(cancel.commandId) + " of " +
                std::to_string(cancel.sendTime) + (is_known ? "" : ", which is not pending")};
}

// The snapshots' builders belong to the library, which has none yet.
Outcome LoadSnapshot(const ZORMgrMessage &request, CommandContext & /*context*/) {
    int32_t type;
    if (!ReadPayload(request, &type) || type < 0 || type >= kSnapshotTypes)
        return {false, "", "no snapshot type"};
    return {false, "", "snapshot " + std::to_string(type) + " has no builder"};
}

Outcome StartBonding(const ZORMgrMessage &request, CommandContext &context) {
    const std::string list(reinterpret_cast<const char *>(request.payload), PayloadLength(request));
    if (!context.bonding.Start(list)) return {false, "", "no list of interfaces: " + list};
    return {true, "", "the network changes to " + list};
}

Outcome FinishBonding(const ZORMgrMessage &request, CommandContext &context) {
    uint32_t value;
    if (!ReadPayload(request, &value)) return {false, "", "no value"};
    if (!context.bonding.Finish()) return {false, "", "no bonding is under way"};
    return {true, "", "the network has changed, value " + std::to_string(value)};
}

Outcome NotServed(const ZORMgrMessage & /*request*/, CommandContext & /*context*/) {
    return {false, "", "not served by this manager"};
}

constexpr Command kCommands[] = {
    {14, "shut the remote node down", NotServed},
    {16, "monitored link changed", NotServed},
    {17, "upgrade or small update", NotServed},
    {18, "upgrade or small update failed", NotServed},
    {29, "adjust the system disk", NotServed},
    {33, "ask node information", NotServed},
    {34, "send a log record to the remote node", NotServed},
    {35, "monitored service changed", NotServed},
    {36, "send the buzzer-off setting to the remote node", NotServed},
    {40, "cancel a timed-out command", Cancel},
    {42, "synchronise passwords to the remote node", NotServed},
    {45, "adjust the remote node's fans", NotServed},
    {50, "load a management-interface snapshot", LoadSnapshot},
    {52, "send notification data to the remote node", NotServed},
    {55, "bonding", StartBonding},
    {56, "bonding done", FinishBonding},
    {60, "halt check", NotServed},
    {62, "reset button pressed", NotServed},
    {63, "check the health status now", NotServed},
    {kPing, "ping", Ping},
};

static_assert(std::is_sorted(std::begin(kCommands), std::end(kCommands),
                             [](const Command &a, const Command &b) { return a.id < b.id; }));

}  // namespace

const Command *FindCommand(uint32_t id) {
    for (const Command &command : kCommands) {
        if (command.id == id) return &command;
    }
    return nullptr;
}

Outcome Handle(const ZORMgrMessage &request, CommandContext &context) {
    const Command *command = FindCommand(request.commandId);
    return command ? command->handle(request, context) : NotServed(request, context);
}
