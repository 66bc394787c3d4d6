// Commands that concern the cluster: upgrades, the remote node, the system disk,
// the reset button, the health word.
#pragma once

#include "command_table.h"

Outcome ShutDownRemote(const ZORMgrMessage &request, CommandContext &context);
Outcome AnnounceUpgrade(const ZORMgrMessage &request, CommandContext &context);
Outcome AnnounceUpgradeFailure(const ZORMgrMessage &request, CommandContext &context);
Outcome AdjustSystemDisk(const ZORMgrMessage &request, CommandContext &context);
Outcome ForwardLogRecord(const ZORMgrMessage &request, CommandContext &context);
Outcome ForwardNotification(const ZORMgrMessage &request, CommandContext &context);
Outcome ForwardBuzzerOff(const ZORMgrMessage &request, CommandContext &context);
Outcome SyncPasswords(const ZORMgrMessage &request, CommandContext &context);
Outcome AdjustRemoteFans(const ZORMgrMessage &request, CommandContext &context);
Outcome PressResetButton(const ZORMgrMessage &request, CommandContext &context);
Outcome CheckHealth(const ZORMgrMessage &request, CommandContext &context);
