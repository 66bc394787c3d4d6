// Running programs, and the out-of-memory score.

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include "descriptor.h"
#include "error_code.h"
#include "kevacore.h"

using kevacore::BadParameter;
using kevacore::Descriptor;
using kevacore::SystemError;

namespace {

constexpr char kSource[] = "process";
constexpr int kMaxArguments = 64;
constexpr int kFirstPrivateDescriptor = 3;

// The start of a program that inherits the standard descriptors alone.
class Spawn {
  public:
    Spawn() { posix_spawn_file_actions_init(&actions_); }
    ~Spawn() { posix_spawn_file_actions_destroy(&actions_); }
    Spawn(const Spawn &) = delete;
    Spawn &operator=(const Spawn &) = delete;

    // False with errno on a failure.
    bool Start(const char *path, char *const *arguments, pid_t *child) {
        errno = posix_spawn_file_actions_addclosefrom_np(&actions_, kFirstPrivateDescriptor);
        if (errno != 0) return false;
        // The analyser follows a null path, which both callers have refused.
        errno = posix_spawn(child, path, &actions_, nullptr, arguments, environ);  // NOLINT
        return errno == 0;
    }

  private:
    posix_spawn_file_actions_t actions_;
};

int Run(const char *path, va_list list) {
    const char *arguments[kMaxArguments + 1] = {path};
    for (int count = 1; arguments[count - 1]; ++count) {
        if (count == kMaxArguments) return BadParameter(kSource, __LINE__);
        // The analyser loses the list on its way here.
        arguments[count] = va_arg(list, const char *);  // NOLINT(clang-analyzer-valist.*)
    }
    pid_t child = -1;
    if (!Spawn().Start(path, const_cast<char *const *>(arguments), &child))
        return SystemError(kSource, __LINE__);
    int status;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) return SystemError(kSource, __LINE__);
    }
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    errno = EINTR;
    return SystemError(kSource, __LINE__);
}

}  // namespace

extern "C" {

int VLIBCExec(const char *path, ...) {
    if (!path) return BadParameter(kSource, __LINE__);
    va_list list;
    va_start(list, path);
    const int result = Run(path, list);
    va_end(list);
    return result;
}

// The platform's option words mean nothing here.
int VLIBCExecl(int /*options*/, const char *path, ...) {
    if (!path) return BadParameter(kSource, __LINE__);
    va_list list;
    va_start(list, path);
    const int result = Run(path, list);
    va_end(list);
    return result;
}

int VLIBCProcOomScoreSet(int score) {
    const Descriptor file(open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC));
    if (!file.IsOpen() || dprintf(file.Get(), "%d", score) < 0)
        return SystemError(kSource, __LINE__);
    return 0;
}

}  // extern "C"
