// zorctl lock: the resource locks.

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <thread>

#include "command.h"
#include "exit_code.h"
#include "library_log.h"
#include "lock_holder.h"
#include "lock_name.h"
#include "output.h"
#include "stop_signal.h"
#include "zor_filelock.h"

namespace {

std::string CheckLock(const std::string &text) {
    return ParseLock(text) ? "" : "there is no lock '" + text + "'; see zorctl lock list";
}

// Takes the lock; on a failure says why. A lock that is held elsewhere leaves no
// line of the library's.
int Take(int32_t id, int32_t retries, FILE **handle) {
    if (ZORFileLock(id, retries, handle) == 0) return kExitSuccess;
    const auto holder = FindLockHolder(LockPath(id));
    ReportFailure("lock " + LockName(id) + " is not to be had" +
                  (holder ? ": held by " + Describe(*holder) : ""));
    return kExitFailure;
}

int Try(int32_t id, int32_t retries) {
    FILE *handle = nullptr;
    if (const int failed = Take(id, retries, &handle)) return failed;
    ZORFileUnlock(&handle);
    printf("lock %s is free\n", LockName(id).c_str());
    return kExitSuccess;
}

int Hold(int32_t id, int32_t retries, int seconds) {
    FILE *handle = nullptr;
    if (const int failed = Take(id, retries, &handle)) return failed;
    printf("lock %s is held by process %d\n", LockName(id).c_str(), getpid());
    fflush(stdout);
    const StopSignal stop;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!stop.IsAsked() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    if (ZORFileUnlock(&handle) == 0) return kExitSuccess;
    ReportFailure("cannot release lock " + LockName(id));
    return kExitFailure;
}

int Break(int32_t id) {
    const auto holder = FindLockHolder(LockPath(id));
    if (ZORForceFileUnlock(id) != 0) {
        ReportFailure("cannot break lock " + LockName(id));
        return kExitFailure;
    }
    printf("lock %s is broken%s\n", LockName(id).c_str(),
           holder ? ("; it was held by " + Describe(*holder)).c_str() : "; nobody held it");
    return kExitSuccess;
}

int List(bool json) {
    Json output = Json::array();
    for (const ZORFileLockEntry &entry : rgsaalckList) {
        const auto holder = FindLockHolder(entry.path);
        output.push_back({{"id", entry.id},
                          {"name", LockName(entry.id)},
                          {"path", entry.path},
                          {"holder", holder ? Json(holder->process) : nullptr}});
        if (!json)
            printf("%2d  %-20s %s\n", entry.id, LockName(entry.id).c_str(),
                   holder ? Describe(*holder).c_str() : "free");
    }
    if (json) PrintJson({{"locks", output}});
    return kExitSuccess;
}

struct LockArguments {
    std::string lock;
    int32_t retries = 0;
    int seconds = 60;
};

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const ZORFileLockEntry &entry : rgsaalckList) names.push_back(LockName(entry.id));
    return names;
}

}  // namespace

void AddLockCommand(const Verb &app) {
    const Verb lock = app.Add("lock", "the resource locks");
    lock.NeedsVerb();
    const auto arguments = std::make_shared<LockArguments>();
    const auto add_verb = [&](const char *name, const char *description) {
        const Verb verb = lock.Add(name, description, "status");
        verb.AddOption("lock", arguments->lock, "name or number of the lock")
            .Required()
            .CheckedBy(CheckLock)
            .Suggests(Names());
        return verb;
    };

    const Verb list = lock.Add("list", "all locks and who holds them");
    list.AddJsonFlag();
    list.Runs([=] { return List(list.PrintsJson()); });

    const Verb attempt = add_verb("try", "take a lock and release it");
    attempt.AddOption("--retries", arguments->retries, "seconds to try for");
    attempt.Runs([=] { return Try(*ParseLock(arguments->lock), arguments->retries); });

    const Verb hold = add_verb("hold", "take a lock and keep it");
    hold.AddOption("--retries", arguments->retries, "seconds to try for");
    hold.AddOption("--seconds", arguments->seconds, "how long to keep it").ShowsDefault();
    hold.Runs(
        [=] { return Hold(*ParseLock(arguments->lock), arguments->retries, arguments->seconds); });

    const Verb breaking = add_verb("break", "delete the lock file, whoever holds the lock");
    breaking.Runs([=] { return Break(*ParseLock(arguments->lock)); });
}
