// zorctl bios: the BIOS upgrade window.

#include <chrono>
#include <cstdio>
#include <thread>

#include "cluster_action.h"
#include "command.h"
#include "exit_code.h"
#include "stop_signal.h"
#include "zor_core.h"

namespace {

void WaitForSignal() {
    const StopSignal stop;
    while (!stop.IsAsked()) std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

// The lock that keeps a second window from being opened lives as long as this
// process, so that a window that is to be guarded is held open here.
int32_t Start(bool hold) {
    FILE *lock = nullptr;
    const int32_t result = KEVAZORBiosUpgradeStart(&lock);
    if (result != 0) return result;
    if (!hold) {
        puts("the window is open; zorctl bios end closes it");
        return 0;
    }
    puts("the window is open; a signal to stop closes it");
    fflush(stdout);
    WaitForSignal();
    return KEVAZORBiosUpgradeEnd(&lock);
}

int32_t End() {
    FILE *lock = nullptr;
    return KEVAZORBiosUpgradeEnd(&lock);
}

}  // namespace

void AddBiosCommand(const Verb &app) {
    const Verb bios = app.Add("bios", "the window in which the BIOS is flashed");
    bios.NeedsVerb();

    const auto hold = std::make_shared<bool>(false);
    const Verb start = bios.Add("start", "open the window", "--dry-run");
    start.AddFlag("--hold", *hold, "keep the lock until a signal, and close the window then");
    const auto start_options = AddActionFlags(start);
    start.Runs([=] {
        const ActionPlan plan = {"Opening the BIOS upgrade window",
                                 {"raise the flag /tmp/zor/bios_upgrade",
                                  "lengthen the expander heartbeat timers to 600 s",
                                  "or, with /dual_glibc, have its cluster tool do so"},
                                 {}};
        return RunAction(plan, *start_options, [=] { return Start(*hold); });
    });

    const Verb end = bios.Add("end", "close the window", "--dry-run");
    const auto end_options = AddActionFlags(end);
    end.Runs([=] {
        const ActionPlan plan = {"Closing the BIOS upgrade window",
                                 {"remove the flag /tmp/zor/bios_upgrade",
                                  "or, with /dual_glibc, have its cluster tool do so"},
                                 {}};
        return RunAction(plan, *end_options, End);
    });

    const Verb show = bios.Add("show", "say whether the window is open");
    show.Runs([] {
        puts(ZORIsUpgradingBios() ? "open" : "closed");
        return static_cast<int>(kExitSuccess);
    });
}
