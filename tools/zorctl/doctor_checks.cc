#include "doctor_checks.h"

#include <kevacore.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "lock_holder.h"
#include "lock_name.h"
#include "queue_state.h"
#include "zor_core.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace {

constexpr char kRuntimeFolder[] = "/tmp/zor";
constexpr char kKeyFile[] = "/tmp/zor/.msg_queue_key_file";
constexpr char kStatusFile[] = "/tmp/zor/ha.status";
constexpr char kLogSocket[] = "/dev/log";
constexpr char kConsole[] = "/dev/console";
constexpr int kMessageSize = 32536;

Finding CheckModel() {
    if (VLIBCSupportDualhead()) return {"model", Verdict::kGood, "supports the two-node setup", ""};
    return {"model", Verdict::kProblem, "does not support the two-node setup",
            "No request can be sent on this hardware."};
}

Finding CheckSerial() {
    char serial[ZOR_SERIAL_SIZE] = {};
    if (ZORGetOriginalSerialNumber(serial, sizeof serial) != 0)
        return {"serial", Verdict::kProblem, "the kernel publishes no serial number",
                "Every request carries it: /proc/sys/kernel/keva_serial must be there."};
    if (serial[0] == '\0')
        return {"serial", Verdict::kProblem, "the serial number is empty",
                "Write one to /proc/sys/kernel/keva_serial."};
    return {"serial", Verdict::kGood, serial, ""};
}

Finding CheckRuntimeFolder() {
    struct stat status;
    if (lstat(kRuntimeFolder, &status) != 0)
        return {"runtime folder", Verdict::kProblem, std::string(kRuntimeFolder) + " is not there",
                "The manager makes it: start the manager."};
    if (!S_ISDIR(status.st_mode))
        return {"runtime folder", Verdict::kProblem, std::string(kRuntimeFolder) + " is no folder",
                "Remove it and start the manager again."};
    if (access(kRuntimeFolder, R_OK | W_OK | X_OK) != 0)
        return {"runtime folder", Verdict::kProblem,
                std::string(kRuntimeFolder) + ": " + strerror(errno),
                "Run as a user that may write there (its owner is " +
                    std::to_string(status.st_uid) + ")."};
    if (status.st_mode & S_IWOTH)
        return {"runtime folder", Verdict::kProblem,
                std::string(kRuntimeFolder) + " can be written by everybody",
                "Anybody can replace the node's status: chmod o-w " + std::string(kRuntimeFolder)};
    return {"runtime folder", Verdict::kGood, kRuntimeFolder, ""};
}

Finding CheckKeyFile() {
    struct stat status;
    if (lstat(kKeyFile, &status) != 0)
        return {"key file", Verdict::kProblem, std::string(kKeyFile) + ": " + strerror(errno),
                "The queues are found by it: start the manager again."};
    if (!S_ISREG(status.st_mode))
        return {"key file", Verdict::kProblem, std::string(kKeyFile) + " is no regular file",
                "Remove it and start the manager again."};
    return {"key file", Verdict::kGood, kKeyFile, ""};
}

Finding CheckQueueLimits() {
    const QueueLimits limits = ReadQueueLimits();
    const std::string text = "msgmax " + std::to_string(limits.largest_message) + ", msgmnb " +
                             std::to_string(limits.queue_bytes);
    if (limits.largest_message >= kMessageSize && limits.queue_bytes >= kMessageSize)
        return {"queue limits", Verdict::kGood, text, ""};
    return {"queue limits", Verdict::kProblem, text + "; both must be 32536 or more",
            "sysctl kernel.msgmax=32536 kernel.msgmnb=1301440, then start the manager again: "
            "queues keep the limit that they were made with."};
}

Finding CheckQueues() {
    const auto queues = ReadQueues();
    if (queues.empty())
        return {"queues", Verdict::kNote, "cannot be found without the key file", ""};
    const QueueState &requests = queues[0];
    if (!requests.exists)
        return {"queues", Verdict::kNote, "no request queue has been made yet", ""};
    const std::string text = std::to_string(requests.messages) + " requests and " +
                             std::to_string(queues[1].messages) + " answers waiting";
    if (requests.bytes_limit < static_cast<unsigned long>(kMessageSize))
        return {"queues", Verdict::kProblem,
                "the request queue holds " + std::to_string(requests.bytes_limit) +
                    " bytes, too few for one message",
                "It was made before the limits were raised: start the manager again."};
    if (requests.bytes + static_cast<unsigned long>(kMessageSize) > requests.bytes_limit)
        return {"queues", Verdict::kProblem, text + "; the request queue is full",
                "The manager does not read it. Restart it, or: zorctl queue clean"};
    return {"queues", Verdict::kGood, text, ""};
}

Finding CheckStatusFile() {
    struct stat status;
    if (lstat(kStatusFile, &status) != 0)
        return {"status file", Verdict::kProblem, std::string(kStatusFile) + ": " + strerror(errno),
                "The manager writes it: start the manager."};
    if (!S_ISREG(status.st_mode) || access(kStatusFile, R_OK) != 0)
        return {"status file", Verdict::kProblem,
                std::string(kStatusFile) + " cannot be read as a file",
                "Remove it and start the manager again."};
    return {"status file", Verdict::kGood, kStatusFile, ""};
}

Finding CheckHandler() {
    if (ZORIsLocalHandlerReady()) return {"manager", Verdict::kGood, "ready for requests", ""};
    return {"manager", Verdict::kProblem, "has not said that it is ready for requests",
            "Wait for is_local_handler_ready=\"yes\" in ha.status, or look at the manager's log."};
}

Finding CheckSystemLog() {
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    strcpy(address.sun_path, kLogSocket);
    const int log = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool is_heard = log >= 0 && connect(log, reinterpret_cast<struct sockaddr *>(&address),
                                              sizeof address) == 0;
    const std::string reason = strerror(errno);
    if (log >= 0) close(log);
    if (is_heard) return {"system log", Verdict::kGood, "listens at /dev/log", ""};
    return {"system log", Verdict::kProblem, "nobody listens at /dev/log (" + reason + ")",
            "Every failure is reported there and would be lost: start a system log daemon."};
}

Finding CheckConsole() {
    if (access(kConsole, W_OK) == 0)
        return {"console", Verdict::kGood, "/dev/console can be written", ""};
    return {"console", Verdict::kNote, std::string(kConsole) + ": " + strerror(errno), ""};
}

void CheckLocks(std::vector<Finding> *findings) {
    bool is_free = true;
    for (const ZORFileLockEntry &entry : rgsaalckList) {
        const auto holder = FindLockHolder(entry.path);
        if (!holder) continue;
        is_free = false;
        findings->push_back({"locks", Verdict::kNote,
                             "lock " + LockName(entry.id) + " is held by " + Describe(*holder),
                             "If it stays so: zorctl lock break " + LockName(entry.id)});
    }
    if (is_free) findings->push_back({"locks", Verdict::kGood, "none is held", ""});
}

}  // namespace

std::vector<Finding> RunAllChecks() {
    std::vector<Finding> findings;
    for (Finding (*check)() :
         {CheckModel, CheckSerial, CheckRuntimeFolder, CheckKeyFile, CheckQueueLimits, CheckQueues,
          CheckStatusFile, CheckHandler, CheckSystemLog, CheckConsole})
        findings.push_back(check());
    CheckLocks(&findings);
    return findings;
}
