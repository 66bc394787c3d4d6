// zorlab: the development manager. It stands in for the manager daemon on a
// machine that is no appliance, and misbehaves on demand.

#include <signal.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>
#include <thread>

#include "appliance_programs.h"
#include "behaviour.h"
#include "chassis.h"
#include "manager.h"
#include "queue_limits.h"
#include "runtime_folder.h"
#include "zor_status.h"

namespace {

volatile sig_atomic_t stop_asked = 0;

constexpr char kDefaultChassis[] = "/etc/zorlab.chassis";

int RunManager(int role, const std::string &peer, const std::string &chassis) {
    struct sigaction stop = {};
    stop.sa_handler = [](int) { stop_asked = 1; };
    sigaction(SIGTERM, &stop, nullptr);
    sigaction(SIGINT, &stop, nullptr);
    signal(SIGCHLD, SIG_IGN);  // nobody waits for a builder of snapshots
    if (!CheckQueueLimits()) return 1;
    Manager(role, peer == "in-process" ? MakeInProcessPeer(chassis) : MakeLonePeer(), chassis)
        .Run(stop_asked);
    return 0;
}

int Tell(uint32_t command, const std::string &text) {
    Behaviour behaviour;
    if (!ParseBehaviour(text, &behaviour)) {
        fprintf(stderr, "zorlab: '%s' is no behaviour; see zorlab tell --help\n", text.c_str());
        return 2;
    }
    if (TellBehaviour(command, text)) return 0;
    fprintf(stderr, "zorlab: cannot tell the manager; does it run?\n");
    return 1;
}

int Stop() {
    const pid_t manager = RuntimeFolder::RunningManager();
    if (manager == 0) {
        fprintf(stderr, "zorlab: no manager runs\n");
        return 1;
    }
    kill(manager, SIGTERM);
    while (RuntimeFolder::RunningManager() == manager)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return 0;
}

int CheckChassis(const std::string &path) {
    if (access(path.c_str(), R_OK) != 0) {
        fprintf(stderr, "zorlab: %s cannot be read\n", path.c_str());
        return 1;
    }
    try {
        const Chassis chassis = LoadChassis(path);
        printf("%s: %zu controllers, %zu enclosures\n", path.c_str(), chassis.controllers.size(),
               chassis.enclosures.size());
        return 0;
    } catch (const ChassisError &error) {
        fprintf(stderr, "zorlab: %s: %s\n", path.c_str(), error.what());
        return 1;
    }
}

std::string BehaviourHelp() {
    std::string words;
    for (const std::string &word : BehaviourWords()) words += (words.empty() ? "" : ", ") + word;
    return "one of: " + words;
}

// The manager program of an appliance goes to the background at once.
int RunAsDaemon() {
    if (daemon(0, 0) != 0) return 1;
    return RunManager(ZOR_ROLE_JUNIOR, "none", kDefaultChassis);
}

}  // namespace

int main(int argc, char **argv) {
    if (IsClusterTool(argv[0])) return RunClusterTool(argc, argv);
    if (IsManagerDaemon(argv[0])) return RunAsDaemon();
    CLI::App app("The development manager: serves one node as the manager daemon would.", "zorlab");
    app.require_subcommand(1);
    app.footer("Example, in a private node: zorlab manager & zorlab tell 1000 delay:3");

    int role = 1;
    CLI::App *manager = app.add_subcommand("manager", "serve the node until SIGTERM or Ctrl-C");
    manager->add_option("--role", role, "1 active, 2 passive, 4 junior")
        ->check(CLI::IsMember({1, 2, 4}))
        ->capture_default_str();

    std::string peer = "none";
    manager->add_option("--peer", peer, "the other node")
        ->check(CLI::IsMember({"none", "in-process"}))
        ->capture_default_str();

    std::string chassis = kDefaultChassis;
    manager
        ->add_option("--chassis", chassis,
                     "description of the hardware, read again when it has changed")
        ->capture_default_str();

    uint32_t command = 0;
    std::string behaviour;
    CLI::App *tell = app.add_subcommand("tell", "make a command misbehave from now on");
    tell->add_option("command", command, "command id")->required();
    tell->add_option("behaviour", behaviour, BehaviourHelp())->required();

    CLI::App *check = app.add_subcommand("chassis", "check a description of the hardware");
    check->add_option("file", chassis, "the description")->required();

    CLI::App *stop = app.add_subcommand("stop", "stop the manager that runs");

    CLI11_PARSE(app, argc, argv);
    try {
        if (*manager) return RunManager(role, peer, chassis);
        if (*tell) return Tell(command, behaviour);
        if (*check) return CheckChassis(chassis);
        if (*stop) return Stop();
    } catch (const std::exception &error) {
        fprintf(stderr, "zorlab: %s\n", error.what());
        return 1;
    }
    return 0;
}
