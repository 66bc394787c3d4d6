// The verbs of zorctl. Each file adds its own to the command line.
#pragma once

#include "command_line.h"

void AddStatusCommand(const Verb &app);
void AddEntryCommands(const Verb &app);
void AddSyncCommand(const Verb &app);
void AddRequestCommand(const Verb &app);
void AddQueueCommand(const Verb &app);
void AddLockCommand(const Verb &app);
void AddConfCommand(const Verb &app);
void AddIdentityCommands(const Verb &app);
void AddInterfacesCommand(const Verb &app);
void AddServicesCommand(const Verb &app);
void AddConstraintsCommand(const Verb &app);
void AddDisksCommand(const Verb &app);
void AddHardwareCommand(const Verb &app);
void AddHealthCommand(const Verb &app);
void AddUpgradeCommand(const Verb &app);
void AddBiosCommand(const Verb &app);
void AddPowerCommand(const Verb &app);
void AddForwardCommand(const Verb &app);
void AddClusterCommands(const Verb &app);
void AddNetworkCommand(const Verb &app);
void AddMonitorCommand(const Verb &app);
void AddEnclosuresCommands(const Verb &app);
void AddDoctorCommand(const Verb &app);
void AddCompletionCommand(const Verb &app, const CommandLine &command_line);
