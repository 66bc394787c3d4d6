// This program's own versions of a few calls of the C library, which the
// library under test then uses: the real ones, until a test asks for a change.
// Every change is undone by Reset, which also stops the uptime of sysinfo: with
// each full hour since boot the identity of a thread's messages changes, which
// must happen in the tests that ask for it and in no other.
#pragma once

#include <sys/types.h>

#include <functional>

namespace system_calls {

void Reset();

// What gettid, getpid and the uptime of sysinfo say.
void SetThreadId(pid_t id);
void SetProcessId(pid_t id);
void SetUptime(long seconds);
void FailSysinfo();

// Runs after each message that was sent.
void AfterSend(std::function<void()> hook);

}  // namespace system_calls
