#include "command_table.h"

#include <algorithm>
#include <iterator>

#include "bonding_plan.h"
#include "cluster_commands.h"
#include "interface_commands.h"
#include "pending_answers.h"
#include "request_payload.h"

namespace {

// The manager's own: answers with its payload, to try the road out.
constexpr uint32_t kPing = 1000;

Outcome Ping(const ZORMgrMessage &request, CommandContext & /*context*/) {
    return {true, PayloadText(request), "payload sent back"};
}

Outcome Cancel(const ZORMgrMessage &request, CommandContext &context) {
    ZORCancelPayload cancel;
    if (!ReadPayload(request, &cancel)) return {false, "", "no cancellation payload"};
    const bool is_known = context.pending.Cancel(cancel);
    return {is_known, "",
            "cancels command " + std::to_string(cancel.commandId) + " of " +
                std::to_string(cancel.sendTime) + (is_known ? "" : ", which is not pending")};
}

Outcome StartBonding(const ZORMgrMessage &request, CommandContext &context) {
    const std::string list = PayloadText(request);
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
    {14, "shut the remote node down", ShutDownRemote},
    {16, "monitored link changed", ChangeMonitoredLinks},
    {17, "upgrade or small update", AnnounceUpgrade},
    {18, "upgrade or small update failed", AnnounceUpgradeFailure},
    {29, "adjust the system disk", AdjustSystemDisk},
    {33, "ask node information", AskNode},
    {34, "send a log record to the remote node", ForwardLogRecord},
    {35, "monitored service changed", ChangeMonitoredServices},
    {36, "send the buzzer-off setting to the remote node", ForwardBuzzerOff},
    {40, "cancel a timed-out command", Cancel},
    {42, "synchronise passwords to the remote node", SyncPasswords},
    {45, "adjust the remote node's fans", AdjustRemoteFans},
    {50, "load a management-interface snapshot", LoadSnapshot},
    {52, "send notification data to the remote node", ForwardNotification},
    {55, "bonding", StartBonding},
    {56, "bonding done", FinishBonding},
    {60, "halt check", CheckHalt},
    {62, "reset button pressed", PressResetButton},
    {63, "check the health status now", CheckHealth},
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
