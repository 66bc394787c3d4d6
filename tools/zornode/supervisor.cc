#include "supervisor.h"

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kernel_folder.h"
#include "log_collector.h"
#include "node_files.h"
#include "own_network.h"
#include "private_root.h"

namespace {

constexpr int kSetupFailed = 125;
constexpr int kCommandNotFound = 127;

// The one that this process started and waits for: in the process outside, the
// first process of the node; in that one, the command.
pid_t next_process = -1;

void Unshare(int namespaces) {
    if (unshare(namespaces) == 0) return;
    const std::string reason = strerror(errno);
    throw NodeError(
        "this machine refuses the namespaces that a private node is made of (" + reason + ").\n" +
        (geteuid() == 0
             ? "zornode: In a container, it needs the capability SYS_ADMIN (docker: --privileged)."
             : "zornode: Run it as root, for example with sudo."));
}

int ExitStatus(int status) {
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

// The first process goes when the one outside goes, however that ends.
void DieWithParent(int parent_alive) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    struct pollfd input = {parent_alive, POLLIN, 0};
    if (poll(&input, 1, 0) != 0) _exit(kSetupFailed);  // it has gone already
}

[[noreturn]] void Exec(const std::vector<std::string> &command) {
    std::vector<char *> arguments;
    for (const std::string &argument : command)
        arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    fprintf(stderr, "zornode: cannot run %s: %s\n", arguments[0], strerror(errno));
    _exit(kCommandNotFound);
}

// On a machine without the platform's base library, what runs in the node finds the
// stand-in that is installed for the lab.
void OfferBaseLibrary() {
    if (access(KEVAZOR_LAB_FOLDER, F_OK) != 0) return;
    const char *const present = getenv("LD_LIBRARY_PATH");
    const std::string paths =
        KEVAZOR_LAB_FOLDER + (present ? ":" + std::string(present) : std::string());
    setenv("LD_LIBRARY_PATH", paths.c_str(), 1);
}

// A request to stop is the command's business, and so is Ctrl-C, which reaches
// it by the terminal.
void ForwardSignals() {
    struct sigaction forward = {};
    forward.sa_handler = [](int number) { kill(next_process, number); };
    sigaction(SIGTERM, &forward, nullptr);
    sigaction(SIGHUP, &forward, nullptr);
    signal(SIGINT, SIG_IGN);
}

int RunCommand(const std::vector<std::string> &command) {
    const pid_t child = fork();
    if (child < 0) ThrowErrno("cannot start the command");
    if (child == 0) {
        signal(SIGINT, SIG_DFL);
        signal(SIGTERM, SIG_DFL);
        signal(SIGHUP, SIG_DFL);
        Exec(command);
    }
    next_process = child;
    ForwardSignals();
    for (;;) {  // orphans of the node are reaped on the way
        int status;
        const pid_t ended = wait(&status);
        if (ended == child) return ExitStatus(status);
        if (ended < 0 && errno != EINTR) ThrowErrno("cannot wait for the command");
    }
}

int RunFirstProcess(const NodeOptions &options) try {
    Unshare(CLONE_NEWNS | CLONE_NEWIPC | CLONE_NEWUTS | (options.ports > 0 ? CLONE_NEWNET : 0));
    if (options.ports > 0) MakePorts(options.ports);
    LogCollector collector(options.log_file);
    EnterPrivateRoot(options);
    if (sethostname("zornode", 7) != 0) ThrowErrno("cannot set the host name");
    MakeApplianceFiles();
    MakeKernelFolder(options);
    MakeNodeMarker();
    collector.Start();
    OfferBaseLibrary();
    const int status = RunCommand(options.command);
    collector.Stop();
    return status;
} catch (const std::exception &error) {
    fprintf(stderr, "zornode: %s\n", error.what());
    return kSetupFailed;
}

}  // namespace

int RunInNode(const NodeOptions &options) {
    const int own_pids = open("/proc/self/ns/pid", O_RDONLY | O_CLOEXEC);
    Unshare(CLONE_NEWPID);
    int alive[2];
    if (pipe2(alive, O_CLOEXEC) != 0) ThrowErrno("cannot make a pipe");
    next_process = fork();
    if (next_process < 0) ThrowErrno("cannot start the node");
    if (next_process == 0) {
        close(alive[1]);
        DieWithParent(alive[0]);
        _exit(RunFirstProcess(options));
    }
    setns(own_pids, CLONE_NEWPID);  // only the first process belongs in there
    close(own_pids);
    ForwardSignals();
    int status;
    while (waitpid(next_process, &status, 0) < 0) {
        if (errno != EINTR) ThrowErrno("cannot wait for the node");
    }
    return ExitStatus(status);
}
