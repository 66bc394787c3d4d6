#include "support/system_calls.h"

#include <sys/msg.h>
#include <sys/syscall.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <ctime>

#include "support/allocation.h"

namespace {

std::atomic<pid_t> thread_id{0};
std::atomic<pid_t> process_id{0};
std::atomic<long> uptime{-1};
std::atomic<bool> sysinfo_fails{false};
std::function<void()> after_send;

long SecondsSinceBoot() {
    struct timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec;
}

}  // namespace

namespace system_calls {

void Reset() {
    thread_id = 0;
    process_id = 0;
    uptime = SecondsSinceBoot();
    sysinfo_fails = false;
    allocation::Stop();
    after_send = nullptr;
}

void SetThreadId(pid_t id) {
    thread_id = id;
}
void SetProcessId(pid_t id) {
    process_id = id;
}
void SetUptime(long seconds) {
    uptime = seconds;
}
void FailSysinfo() {
    sysinfo_fails = true;
}
void AfterSend(std::function<void()> hook) {
    after_send = std::move(hook);
}

}  // namespace system_calls

// Visible to the library under test.
#pragma GCC visibility push(default)
extern "C" {

pid_t gettid() noexcept {
    return thread_id != 0 ? thread_id.load() : static_cast<pid_t>(syscall(SYS_gettid));
}

pid_t getpid() noexcept {
    return process_id != 0 ? process_id.load() : static_cast<pid_t>(syscall(SYS_getpid));
}

int sysinfo(struct sysinfo *info) noexcept {
    if (sysinfo_fails) {
        errno = EFAULT;
        return -1;
    }
    const int result = static_cast<int>(syscall(SYS_sysinfo, info));
    if (uptime >= 0) info->uptime = uptime;
    return result;
}

int msgsnd(int queue, const void *message, size_t size, int flags) {
    const int result = static_cast<int>(syscall(SYS_msgsnd, queue, message, size, flags));
    if (result == 0 && after_send) after_send();
    return result;
}

}  // extern "C"

#pragma GCC visibility pop
