// zorctl: the command-line tool of a node.

#include <cstdio>
#include <exception>

#include "command.h"
#include "exit_code.h"

int main(int argc, char **argv) {
    CLI::App app("Looks at a node and asks its manager things.", "zorctl");
    CommandContext context;
    app.require_subcommand(1);
    app.footer(
        "Exit codes: 0 success, 1 local failure, 2 refused by the manager, 3 timed out,\n"
        "4 manager not running, 5 entry not set, 64 wrong command line.\n"
        "Example: zorctl get local_role");
    AddStatusCommand(app, context);
    AddEntryCommands(app, context);
    AddSyncCommand(app, context);
    AddRequestCommand(app, context);
    AddQueueCommand(app, context);
    AddLockCommand(app, context);
    AddConfCommand(app, context);
    AddIdentityCommands(app, context);
    AddInterfacesCommand(app, context);
    AddServicesCommand(app, context);
    AddConstraintsCommand(app, context);
    AddDisksCommand(app, context);
    AddHardwareCommand(app, context);
    AddHealthCommand(app, context);
    AddUpgradeCommand(app, context);
    AddBiosCommand(app, context);
    AddPowerCommand(app, context);
    AddForwardCommand(app, context);
    AddClusterCommands(app, context);
    AddNetworkCommand(app, context);
    AddMonitorCommand(app, context);
    AddEnclosuresCommands(app, context);
    AddDoctorCommand(app, context);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? kExitSuccess : kExitUsage;
    }
    try {
        return context.action();
    } catch (const std::exception &error) {
        fprintf(stderr, "zorctl: %s\n", error.what());
        return kExitFailure;
    }
}
