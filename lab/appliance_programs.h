// The cluster's programs at an appliance's paths: this manager, and a small
// cluster tool.
#pragma once

// Puts them there in a private node; elsewhere nothing is touched.
void InstallAppliancePrograms();

// Whether this program was started as the tool or as the manager daemon.
bool IsClusterTool(const char *program);
bool IsManagerDaemon(const char *program);

// The tool: --set_all_expander_HB_timer SECONDS, --bios-upgrade-start,
// --bios-upgrade-end. Returns the exit code.
int RunClusterTool(int argc, char **argv);
