#include "call_count.h"

#include <signal.h>
#include <sys/ptrace.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

// A call that does not exist marks where counting begins and ends.
constexpr long kMarker = 0x5a4f52;

[[noreturn]] void RunTraced(const std::function<void()> &operation) {
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    operation();
    raise(SIGSTOP);
    syscall(kMarker);
    operation();
    syscall(kMarker);
    _exit(0);
}

// Lets the child run to its next stop. False when it has ended.
bool Resume(pid_t child, int request) {
    int status;
    if (ptrace(static_cast<__ptrace_request>(request), child, nullptr, nullptr) != 0) return false;
    return waitpid(child, &status, 0) == child && WIFSTOPPED(status);
}

long CallNumber(pid_t child) {
    struct user_regs_struct registers = {};
    ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    return static_cast<long>(registers.orig_rax);
}

// Runs the child to behind the next marker and counts the calls before it.
long RunToMarker(pid_t child) {
    for (long calls = 0;; ++calls) {
        if (!Resume(child, PTRACE_SYSCALL)) return -1;
        const bool is_marker = CallNumber(child) == kMarker;
        if (!Resume(child, PTRACE_SYSCALL)) return -1;  // to its return
        if (is_marker) return calls;
    }
}

// Counts single steps until the child is about to make the marker call.
long StepToMarker(pid_t child) {
    constexpr long kSyscallInstruction = 0x050f;
    for (long steps = 0;; ++steps) {
        struct user_regs_struct registers = {};
        ptrace(PTRACE_GETREGS, child, nullptr, &registers);
        const long code =
            ptrace(PTRACE_PEEKTEXT, child, reinterpret_cast<void *>(registers.rip), nullptr);
        if ((code & 0xffff) == kSyscallInstruction && static_cast<long>(registers.rax) == kMarker)
            return steps;
        if (!Resume(child, PTRACE_SINGLESTEP)) return -1;
    }
}

long CountOnce(const std::function<void()> &operation, long (*count)(pid_t)) {
    const pid_t child = fork();
    if (child == 0) RunTraced(operation);
    int status;
    waitpid(child, &status, 0);  // at its own stop
    RunToMarker(child);
    const long result = count(child);
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return result;
}

}  // namespace

CallCount CountCalls(const std::function<void()> &operation, bool count_instructions) {
    return {CountOnce(operation, RunToMarker),
            count_instructions ? CountOnce(operation, StepToMarker) : 0};
}
