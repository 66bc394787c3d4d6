#include "appliance_programs.h"

#include <kevacore.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <string>

#include "zor_core.h"
#include "zornode/private_node.h"

namespace fs = std::filesystem;

namespace {

constexpr char kProgramFolder[] = "/usr/keva/kevazor/bin";
constexpr char kToolName[] = "kevazor";
constexpr char kDaemonName[] = "keva_zor_mgr_daemon";
constexpr char kTimerFile[] = "/tmp/zor/lab.expander";

bool IsNamed(const char *program, const char *name) {
    return fs::path(program).filename() == name;
}

int SetExpanderTimers(const char *seconds) {
    return VLIBCFileSetKeyValue(kTimerFile, "heartbeat_timer", seconds, "%s=\"%s\"\n") == 1 ? 0 : 1;
}

struct ToolOption {
    const char *option;
    int arguments;
    int (*run)(char **arguments);
};

constexpr ToolOption kToolOptions[] = {
    {"--set_all_expander_HB_timer", 1, [](char **seconds) { return SetExpanderTimers(*seconds); }},
    {"--bios-upgrade-start", 0, [](char **) { return ZORBiosUpgradeStart() == 0 ? 0 : 1; }},
    {"--bios-upgrade-end", 0, [](char **) { return ZORBiosUpgradeEnd() == 0 ? 0 : 1; }},
};

}  // namespace

void InstallAppliancePrograms() {
    if (!IsInPrivateNode()) return;
    std::error_code error;
    fs::create_directories(kProgramFolder, error);
    const fs::path self = fs::read_symlink("/proc/self/exe", error);
    for (const char *name : {kToolName, kDaemonName}) {
        const fs::path program = fs::path(kProgramFolder) / name;
        if (!fs::exists(fs::symlink_status(program, error)))
            fs::create_symlink(self, program, error);
    }
}

bool IsClusterTool(const char *program) {
    return IsNamed(program, kToolName);
}

bool IsManagerDaemon(const char *program) {
    return IsNamed(program, kDaemonName);
}

int RunClusterTool(int argc, char **argv) {
    for (const ToolOption &option : kToolOptions) {
        if (argc == 2 + option.arguments && strcmp(argv[1], option.option) == 0)
            return option.run(argv + 2);
    }
    fprintf(stderr, "kevazor: unknown option or wrong number of arguments\n");
    return 2;
}
