#include "support/traced_call.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <new>
#include <stdexcept>

namespace {

// A call that does not exist marks where the call begins and ends.
constexpr unsigned long kMarker = 0x5a4f52;

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

class Child {
  public:
    Child(const std::function<int()> &call, const SharedResult &result) : process_(fork()) {
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
    }
    ~Child() {
        kill(process_, SIGKILL);
        int status;
        waitpid(process_, &status, 0);
    }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    // Lets it run to the next beginning or end of a system call.
    void Resume() {
        int status;
        if (ptrace(PTRACE_SYSCALL, process_, nullptr, nullptr) != 0 ||
            waitpid(process_, &status, 0) != process_ || !WIFSTOPPED(status))
            throw std::runtime_error("the child has ended of itself");
    }

    bool IsAtMarker() const {
        struct user_regs_struct registers = {};
        ptrace(PTRACE_GETREGS, process_, nullptr, &registers);
        return registers.orig_rax == kMarker;
    }

  private:
    const pid_t process_;
};

}  // namespace

TracedCall RunTraced(const std::function<int()> &call, int kill_at,
                     const std::function<void()> &observe) {
    const SharedResult result;
    Child child(call, result);
    do {
        child.Resume();
    } while (!child.IsAtMarker());
    child.Resume();
    TracedCall run;
    for (;;) {
        child.Resume();
        if (child.IsAtMarker()) break;
        if (++run.system_calls == kill_at) {
            run.was_killed = true;
            return run;
        }
        child.Resume();
        if (observe) observe();
    }
    run.result = *result;
    return run;
}
