// zorctl power: restarts or stops this node, or shuts the remote one down.

#include "cluster_action.h"
#include "command.h"
#include "zor_core.h"

namespace {

struct PowerVerb {
    const char *name;
    const char *description;
    ActionPlan plan;
    int32_t (*run)();
};

const PowerVerb kPowerVerbs[] = {
    {"reboot",
     "restart this node, which must not serve",
     {"Restarting this node", {"create /tmp/zor/reboot"}, {}},
     KEVAZORPassiveReboot},
    {"off",
     "power this node off, which must not serve",
     {"Powering this node off", {"create /tmp/zor/poweroff"}, {}},
     KEVAZORPassivePoweroff},
    {"shutdown-remote",
     "on the active node: shut the remote node down and wait until it is gone",
     {"Shutting the remote node down",
      {"wait up to 30 s until the remote node is gone"},
      {{14, 0, false, 0}}},
     KEVAZORShutdownRemoteAndWaitDisconnectedOnActive},
};

}  // namespace

void AddPowerCommand(const Verb &app) {
    const Verb power = app.Add("power", "restart, power off, shut the remote node down");
    power.NeedsVerb();
    for (const PowerVerb &row : kPowerVerbs) {
        const Verb verb = power.Add(row.name, row.description, "--dry-run");
        const auto options = AddActionFlags(verb);
        verb.Runs([=, &row] { return RunAction(row.plan, *options, row.run); });
    }
}
