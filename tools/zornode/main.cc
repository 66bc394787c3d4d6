// zornode: runs a command in a private node, a view of this machine with an
// appliance's files, queues, system log and console of its own. Nothing that
// happens in it reaches the machine, and nothing of it stays.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "supervisor.h"

namespace {

constexpr const char *kDescription =
    "Runs a command in a private node: this machine's files with every change kept in\n"
    "memory, and an appliance's folders, kernel files, message queues, system log and\n"
    "console. Nothing reaches the machine and nothing stays. Needs root.\n\n"
    "In the node: log lines are in /var/log/messages, console lines in /var/log/console.";

}  // namespace

int main(int argc, char **argv) {
    NodeOptions options;
    CLI::App app(kDescription, "zornode");
    app.add_option("--serial", options.serial, "factory serial number; empty: none")
        ->capture_default_str();
    app.add_option("--custom-serial", options.custom_serial, "custom serial number; empty: none")
        ->capture_default_str();
    app.add_option("--log", options.log_file, "also append the log lines to this file outside");
    app.add_option("--share", options.shared_folders,
                   "absolute path of a folder that the command may change for good")
        ->allow_extra_args(false);
    app.add_flag("!--default-queue-limits", options.raise_queue_limits,
                 "leave the kernel's queue limits, which are too small for the manager");
    app.add_option("--ports", options.ports,
                   "give it a network of its own with so many ports, each wired to a wireK")
        ->check(CLI::Range(1, 8));
    app.add_option("command", options.command, "the command and its arguments; default: a shell");
    app.positionals_at_end();
    app.footer("Example: zornode -- zorctl doctor");
    CLI11_PARSE(app, argc, argv);
    if (options.command.empty()) {
        const char *shell = getenv("SHELL");
        options.command = {shell ? shell : "/bin/sh"};
    }
    try {
        return RunInNode(options);
    } catch (const std::exception &error) {
        fprintf(stderr, "zornode: %s\n", error.what());
        return 125;
    }
}
