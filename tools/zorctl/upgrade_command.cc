// zorctl upgrade: announces an upgrade or a small update, or its failure.

#include <string>

#include "cluster_action.h"
#include "command.h"
#include "zor_core.h"

namespace {

constexpr uint32_t kUpgradeCommand = 17;
constexpr uint32_t kUpgradeFailCommand = 18;
constexpr int kTimeout_s = 60;

struct UpgradeArguments {
    std::string version;
    bool is_small = false;
    bool keeps_marker = false;
};

ActionPlan PlanStart(const UpgradeArguments &arguments) {
    ActionPlan plan = {
        (arguments.is_small ? "Small update to " : "Upgrade to ") + arguments.version,
        {},
        {{kUpgradeCommand, sizeof(ZORUpgradePayload), true, kTimeout_s}}};
    if (!arguments.is_small || !arguments.keeps_marker)
        plan.steps = {"copy /.flash_version to /tmp/zor/.flash_version_backup",
                      "write the version into /.flash_version"};
    return plan;
}

int32_t Start(const UpgradeArguments &arguments) {
    return arguments.is_small
               ? KEVAZORSmallUpdate(arguments.version.c_str(), arguments.keeps_marker ? 0 : 1)
               : KEVAZORUpgrade(arguments.version.c_str());
}

}  // namespace

void AddUpgradeCommand(const Verb &app) {
    const Verb upgrade = app.Add("upgrade", "announce an upgrade, or its failure");
    upgrade.NeedsVerb();
    const auto arguments = std::make_shared<UpgradeArguments>();

    const Verb start =
        upgrade.Add("start", "announce that a version will be installed", "6.2-2000 --dry-run");
    start.AddOption("version", arguments->version, "the new version").Required();
    start.AddFlag("--small", arguments->is_small, "a small update, not an upgrade");
    start.AddFlag("--keep-marker", arguments->keeps_marker,
                  "of a small update: leave the flash version marker alone");
    const auto start_options = AddActionFlags(start);
    start.Runs([=] {
        return RunAction(PlanStart(*arguments), *start_options, [=] { return Start(*arguments); });
    });

    const Verb fail = upgrade.Add("fail", "announce that the installation has failed", "--dry-run");
    fail.AddFlag("--small", arguments->is_small, "of a small update, not an upgrade");
    const auto fail_options = AddActionFlags(fail);
    fail.Runs([=] {
        const ActionPlan plan = {
            "Failure of the installation",
            {"move /tmp/zor/.flash_version_backup back to /.flash_version, if it is there"},
            {{kUpgradeFailCommand, 0, true, kTimeout_s}}};
        return RunAction(plan, *fail_options,
                         arguments->is_small ? KEVAZORSmallUpdateFail : KEVAZORUpgradeFail);
    });
}
