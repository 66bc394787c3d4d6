// The verbs of zorctl. Each file adds its own to the command line; the one that
// was asked for leaves its action in the context.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

struct CommandContext {
    bool json = false;
    std::function<int()> action;  // returns the exit code
};

void AddStatusCommand(CLI::App &app, CommandContext &context);
void AddEntryCommands(CLI::App &app, CommandContext &context);
void AddSyncCommand(CLI::App &app, CommandContext &context);
void AddRequestCommand(CLI::App &app, CommandContext &context);
void AddQueueCommand(CLI::App &app, CommandContext &context);
void AddLockCommand(CLI::App &app, CommandContext &context);
void AddConfCommand(CLI::App &app, CommandContext &context);
void AddIdentityCommands(CLI::App &app, CommandContext &context);
void AddInterfacesCommand(CLI::App &app, CommandContext &context);
void AddServicesCommand(CLI::App &app, CommandContext &context);
void AddConstraintsCommand(CLI::App &app, CommandContext &context);
void AddDisksCommand(CLI::App &app, CommandContext &context);
void AddHardwareCommand(CLI::App &app, CommandContext &context);
void AddHealthCommand(CLI::App &app, CommandContext &context);
void AddUpgradeCommand(CLI::App &app, CommandContext &context);
void AddBiosCommand(CLI::App &app, CommandContext &context);
void AddPowerCommand(CLI::App &app, CommandContext &context);
void AddForwardCommand(CLI::App &app, CommandContext &context);
void AddClusterCommands(CLI::App &app, CommandContext &context);
void AddNetworkCommand(CLI::App &app, CommandContext &context);
void AddMonitorCommand(CLI::App &app, CommandContext &context);
void AddEnclosuresCommands(CLI::App &app, CommandContext &context);
void AddDoctorCommand(CLI::App &app, CommandContext &context);

// Adds the flag that every reading verb has.
inline void AddJsonFlag(CLI::App *verb, CommandContext &context) {
    verb->add_flag("--json", context.json, "print JSON");
}
