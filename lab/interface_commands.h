// Commands of the management interface: snapshots, node information, the halt
// check, and changes of what is monitored.
#pragma once

#include "command_table.h"

Outcome LoadSnapshot(const ZORMgrMessage &request, CommandContext &context);
Outcome AskNode(const ZORMgrMessage &request, CommandContext &context);
Outcome CheckHalt(const ZORMgrMessage &request, CommandContext &context);
Outcome ChangeMonitoredLinks(const ZORMgrMessage &request, CommandContext &context);
Outcome ChangeMonitoredServices(const ZORMgrMessage &request, CommandContext &context);
