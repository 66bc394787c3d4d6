// The command lock groups: manager commands that must not run side by side.

#include <sys/types.h>
#include <unistd.h>

#include "foundation/lock_file.h"
#include "foundation/log.h"
#include "foundation/pause.h"

const ZORFileLockEntry rgsaalckGroupList[ZOR_COMMAND_LOCK_GROUP_COUNT] = {
    {1, "/tmp/zor/.zor.ha.sys.cmd.lock"},
    {2, "/tmp/zor/.zor.ha.hwinfo.cmd.lock"},
    {3, "/tmp/zor/.zor.ha.install.cmd.lock"},
};

namespace {

constexpr char kLogModule[] = "zor_filelock";

constexpr int32_t kNoGroup = 0;
constexpr uint32_t kFirstCommand = 3;
constexpr uint32_t kLastCommand = 48;

template <typename... Commands>
constexpr uint64_t CommandMask(Commands... commands) {
    return ((uint64_t{1} << (static_cast<uint32_t>(commands) - kFirstCommand)) | ...);
}

struct Membership {
    int32_t group;
    uint64_t commands;  // bit 0 is kFirstCommand
};

constexpr Membership kMemberships[] = {
    {1, CommandMask(3, 11, 13, 48)},
    {2, CommandMask(24, 25, 26)},
    {3, CommandMask(47)},
};

int32_t ZORGetCmdLockGroup(uint32_t command) {
    if (command < kFirstCommand || command > kLastCommand) return kNoGroup;
    for (const Membership &membership : kMemberships) {
        if (membership.commands & CommandMask(command)) return membership.group;
    }
    return kNoGroup;
}

int32_t GroupIndex(int32_t group) {
    for (int32_t index = 0; index < ZOR_COMMAND_LOCK_GROUP_COUNT; ++index) {
        if (rgsaalckGroupList[index].id == group) return index;
    }
    return -1;
}

// Sleeps after every failed attempt, the last one included.
bool LockWithRetries(FILE *stream, int32_t retries) {
    for (int32_t left = retries;; --left) {
        if (TryLockFile(fileno(stream))) return true;
        PauseSeconds(1);
        if (left <= 0) return false;
    }
}

int32_t ZORCmdGroupFileLock(int32_t group, int32_t retries, FILE **handle) {
    const int32_t index = GroupIndex(group);
    if (index < 0) {
        ZOR_ERROR("Error file lock group : %d", group);
        return -1;
    }
    FILE *stream = OpenLockStream(rgsaalckGroupList[index].path);
    if (!stream) {
        // The path of the resource lock in the same row, on purpose: log
        // watchers know the line so.
        ZOR_ERROR("failed to fopen %s, errno=%m", rgsaalckList[index].path);
        return -1;
    }
    if (!LockWithRetries(stream, retries)) {
        ZOR_ERROR("get lock on state controller timeout");
        CloseLockStream(&stream);
        return -1;
    }
    *handle = stream;
    return 0;
}

int32_t ZORCmdGroupFileUnlock(int32_t index, FILE **handle) {
    if (!*handle) {
        ZOR_ERROR("Failed to unlock, pointer is null index:%d path:%s", index,
                  rgsaalckGroupList[index].path);
        return -1;
    }
    if (!UnlockFile(fileno(*handle))) {
        ZOR_ERROR("failed to unlock errno=%m");
        return -1;
    }
    CloseLockStream(handle);
    return 0;
}

}  // namespace

extern "C" {

int32_t ZORGetCmdLockGroupID(uint32_t command) {
    const int32_t group = ZORGetCmdLockGroup(command);
    return group == kNoGroup ? -1 : GroupIndex(group);
}

int32_t ZORChkIfLockAndLock(uint32_t command, int32_t retries, FILE **handle) {
    if (!handle) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    const int32_t group = ZORGetCmdLockGroup(command);
    if (group == kNoGroup) return 1;
    CloseLockStream(handle);
    if (ZORCmdGroupFileLock(group, retries, handle) == 0) return 0;
    ZOR_ERROR("Failed to get lock on command: %d", static_cast<int>(command));
    return -1;
}

int32_t ZORChkIfUnlockAndUnlock(uint32_t command, FILE **handle) {
    if (!handle) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    const int32_t index = ZORGetCmdLockGroupID(command);
    if (index < 0) return 1;
    if (ZORCmdGroupFileUnlock(index, handle) == 0) return 0;
    ZOR_ERROR("UNLOCK FAILED!!!! (command:%d tid:%ld)", static_cast<int>(command),
              static_cast<long>(gettid()));
    return -1;
}

}  // extern "C"
