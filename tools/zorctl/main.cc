// zorctl: the command-line tool of a node.

#include "command.h"

int main(int argc, char **argv) {
    const CommandLine command_line("zorctl", "Looks at a node and asks its manager things.");
    const Verb zorctl = command_line.Root();
    zorctl.NeedsVerb();
    zorctl.AddFooter(
        "Exit codes: 0 success, 1 local failure, 2 refused by the manager, 3 timed out,\n"
        "4 manager not running, 5 entry not set, 64 wrong command line.\n"
        "Example: zorctl get local_role");
    AddStatusCommand(zorctl);
    AddEntryCommands(zorctl);
    AddSyncCommand(zorctl);
    AddRequestCommand(zorctl);
    AddQueueCommand(zorctl);
    AddLockCommand(zorctl);
    AddConfCommand(zorctl);
    AddIdentityCommands(zorctl);
    AddInterfacesCommand(zorctl);
    AddServicesCommand(zorctl);
    AddConstraintsCommand(zorctl);
    AddDisksCommand(zorctl);
    AddHardwareCommand(zorctl);
    AddHealthCommand(zorctl);
    AddUpgradeCommand(zorctl);
    AddBiosCommand(zorctl);
    AddPowerCommand(zorctl);
    AddForwardCommand(zorctl);
    AddClusterCommands(zorctl);
    AddNetworkCommand(zorctl);
    AddMonitorCommand(zorctl);
    AddEnclosuresCommands(zorctl);
    AddDoctorCommand(zorctl);
    AddCompletionCommand(zorctl, command_line);
    return command_line.Run(argc, argv);
}
