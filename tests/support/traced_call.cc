#include "support/traced_call.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <iterator>
#include <new>
#include <set>
#include <stdexcept>

namespace {

// A call that does not exist marks where the call begins and ends.
constexpr unsigned long kMarker = 0x5a4f52;

// Calls that are let pass and not counted: they change nothing that another process
// sees, and how many there are depends on the allocator. Memory, signals, identity,
// the clock, the end of the process.
constexpr long kUncounted[] = {
    SYS_brk,         SYS_mmap,           SYS_munmap,        SYS_mprotect,     SYS_madvise,
    SYS_mremap,      SYS_futex,          SYS_rt_sigaction,  SYS_rt_sigreturn, SYS_rt_sigprocmask,
    SYS_sigaltstack, SYS_getpid,         SYS_gettid,        SYS_getuid,       SYS_geteuid,
    SYS_exit,        SYS_exit_group,     SYS_clock_gettime, SYS_time,         SYS_gettimeofday,
    SYS_sched_yield, SYS_sysinfo,        SYS_wait4,         SYS_prlimit64,    SYS_getrandom,
    SYS_tgkill,      SYS_set_robust_list};

// What the child leaves for its parent.
class SharedResult {
  public:
    SharedResult()
        : result_(static_cast<int *>(mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE,
                                          MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {
        if (result_ == MAP_FAILED) throw std::bad_alloc();
    }
    ~SharedResult() { munmap(result_, sizeof(int)); }
    SharedResult(const SharedResult &) = delete;
    SharedResult &operator=(const SharedResult &) = delete;

    int &operator*() const { return *result_; }

  private:
    int *result_;
};

bool IsCounted(long call) {
    return std::find(std::begin(kUncounted), std::end(kUncounted), call) == std::end(kUncounted);
}

bool IsInput(long call) {
    return call == SYS_read || call == SYS_pread64;
}

bool IsOutput(long call) {
    return call == SYS_write || call == SYS_pwrite64;
}

// A process stopped at the beginning or the end of a system call.
class Tracee {
  public:
    explicit Tracee(pid_t process) : process_(process) {
        ptrace(PTRACE_GETREGS, process_, nullptr, &registers_);
    }

    long Call() const { return static_cast<long>(registers_.orig_rax); }

    void Skip() {
        registers_.orig_rax = static_cast<unsigned long long>(-1);
        Store();
    }
    void Return(int error) {
        registers_.rax = static_cast<unsigned long long>(-static_cast<long long>(error));
        Store();
    }
    // False when the call moves no bytes, or too few to be cut.
    bool Shorten() {
        if (Call() == SYS_writev) WriteFirstPiece();
        const bool is_cut = (IsInput(Call()) || IsOutput(Call())) && registers_.rdx > 1;
        if (is_cut) registers_.rdx = IsInput(Call()) ? 1 : registers_.rdx / 2;
        Store();
        return is_cut;
    }

  private:
    unsigned long long Peek(unsigned long long address) const {
        errno = 0;
        return static_cast<unsigned long long>(
            ptrace(PTRACE_PEEKDATA, process_, reinterpret_cast<void *>(address), nullptr));
    }
    void WriteFirstPiece() {
        const unsigned long long piece = registers_.rsi;
        registers_.orig_rax = SYS_write;
        registers_.rsi = Peek(piece + offsetof(struct iovec, iov_base));
        registers_.rdx = Peek(piece + offsetof(struct iovec, iov_len));
    }
    void Store() { ptrace(PTRACE_SETREGS, process_, nullptr, &registers_); }

    const pid_t process_;
    struct user_regs_struct registers_ = {};
};

class TracedProcess {
  public:
    TracedProcess(const std::function<int()> &call, const SharedResult &result) : process_(fork()) {
        if (process_ == 0) {
            ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            raise(SIGSTOP);
            syscall(kMarker);
            *result = call();
            syscall(kMarker);
            _exit(0);
        }
        int status;
        if (waitpid(process_, &status, 0) != process_ || !WIFSTOPPED(status))
            throw std::runtime_error("the child cannot be traced");
        ptrace(PTRACE_SETOPTIONS, process_, nullptr,
               PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL | PTRACE_O_TRACEFORK |
                   PTRACE_O_TRACEVFORK | PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC);
        processes_.insert(process_);
        Resume(process_, 0);
    }
    ~TracedProcess() {
        for (const pid_t process : processes_) kill(process, SIGKILL);
        int status;
        while (!processes_.empty()) {
            const pid_t ended = waitpid(-1, &status, __WALL);
            if (ended < 0 && errno != EINTR) break;
            if (ended > 0 && !WIFSTOPPED(status)) processes_.erase(ended);
        }
    }
    TracedProcess(const TracedProcess &) = delete;
    TracedProcess &operator=(const TracedProcess &) = delete;

    pid_t Id() const { return process_; }

    void Resume(pid_t process, int signal) { ptrace(PTRACE_SYSCALL, process, nullptr, signal); }

    // Waits for the next beginning or end of a system call in any of the processes.
    pid_t NextStop() {
        for (;;) {
            int status;
            const pid_t process = waitpid(-1, &status, __WALL);
            if (process < 0 && errno == EINTR) continue;
            if (process < 0) throw std::runtime_error("the child has ended of itself");
            if (!WIFSTOPPED(status)) {
                processes_.erase(process);
                if (process == process_) throw std::runtime_error("the child has ended of itself");
                continue;
            }
            const bool is_new = processes_.insert(process).second;
            const int signal = WSTOPSIG(status);
            if (signal == (SIGTRAP | 0x80)) return process;
            const bool is_event = signal == SIGTRAP || (signal == SIGSTOP && is_new);
            Resume(process, is_event ? 0 : signal);
        }
    }

    // Whether the stop is the beginning of a call; to be asked once for each stop.
    bool IsEntry(pid_t process) {
        struct __ptrace_syscall_info info = {};
        ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof info, &info);
        return info.op == PTRACE_SYSCALL_INFO_ENTRY;
    }

  private:
    const pid_t process_;
    std::set<pid_t> processes_;
};

// The fault of a run, at the one stop where it belongs.
class FaultInjector {
  public:
    FaultInjector(const Fault &fault, TracedCall *run) : fault_(fault), run_(run) {}

    // At the beginning of the system call with the number. False: the end of the run.
    bool Begin(pid_t process, bool is_the_caller) {
        if (run_->system_calls != fault_.at) return true;
        Tracee tracee(process);
        run_->faulted_call = tracee.Call();
        if (fault_.kind == Fault::Kind::kKill) {
            run_->was_hit = run_->was_killed = true;
            return false;
        }
        if (!is_the_caller) return true;  // a program of others'
        if (fault_.kind == Fault::Kind::kShort) run_->was_hit = tracee.Shorten();
        if (fault_.kind == Fault::Kind::kError) BeginError(process, &tracee);
        return true;
    }

    void End(pid_t process) {
        if (process != failing_) return;
        Tracee(process).Return(fault_.error);
        failing_ = -1;
    }

  private:
    void BeginError(pid_t process, Tracee *tracee) {
        run_->was_hit = true;
        failing_ = process;
        if (tracee->Call() != SYS_close) tracee->Skip();
    }

    const Fault fault_;
    TracedCall *const run_;
    pid_t failing_ = -1;
};

}  // namespace

TracedCall RunTraced(const std::function<int()> &call, const Fault &fault,
                     const std::function<void()> &observe) {
    const SharedResult result;
    TracedProcess traced(call, result);
    TracedCall run;
    FaultInjector injector(fault, &run);
    bool has_begun = false;
    for (;;) {
        const pid_t process = traced.NextStop();
        const bool is_caller = process == traced.Id();
        const bool is_entry = traced.IsEntry(process);
        const bool is_marker = is_caller && Tracee(process).Call() == static_cast<long>(kMarker);
        if (is_marker && is_entry) {
            if (has_begun) break;
            has_begun = true;
        } else if (has_begun && is_entry && !IsCounted(Tracee(process).Call())) {
            // Its end is let pass too: no fault was begun in it.
        } else if (has_begun && !is_marker && is_entry) {
            ++run.system_calls;
            if (!injector.Begin(process, is_caller)) return run;
        } else if (has_begun && !is_marker) {
            injector.End(process);
            if (observe) observe();
        }
        traced.Resume(process, 0);
    }
    run.result = *result;
    return run;
}
