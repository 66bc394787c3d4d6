#include "webapi/ui_refresh.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <iterator>

#include "core/request_sender.h"
#include "foundation/descriptor.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "kevacore.h"
#include "webapi/wall_clock.h"
#include "zor_filelock.h"
#include "zor_webapi_core.h"

const ZORLoadUIInfo gZORLoadUIInfo[ZOR_UI_TYPE_COUNT] = {
    {ZOR_UI_CLUSTER, ZOR_LOCK_LOAD_UI_CLUSTER, "/tmp/zor/ui/.ui.zorinfo.flag"},
    {ZOR_UI_LOCAL_NODE, ZOR_LOCK_LOAD_UI_LOCAL_NODE, "/tmp/zor/ui/.ui.zornode.local.flag"},
    {ZOR_UI_REMOTE_NODE, ZOR_LOCK_LOAD_UI_REMOTE_NODE, "/tmp/zor/ui/.ui.zornode.remote.flag"},
};

namespace {

constexpr char kLogModule[] = "zor_webapi_core";

constexpr uint32_t kLoadUICommand = 50;
constexpr double kPause = 1;  // seconds between two requests
constexpr char kSnapshotFolder[] = "/tmp/zor/ui";

// The steps report as the one function that log watchers know.
constexpr char kReporter[] = "ZORSendLoadUIRequest";

// Of the callers at one instant, one goes on: looking at the flag and dating it
// are two steps. The folder itself is the lock, so that no file is added to it.
class FirstCaller {
  public:
    FirstCaller() : folder_(open(kSnapshotFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        // What cannot be locked guards nobody, and keeps nobody back.
        isFirst_ = !folder_.IsOpen() || flock(folder_.Get(), LOCK_EX | LOCK_NB) == 0 ||
                   errno != EWOULDBLOCK;
    }

    bool IsFirst() const { return isFirst_; }

  private:
    const Descriptor folder_;
    bool isFirst_;
};

bool WasJustAsked(const char *flag) {
    struct stat status;
    if (lstat(flag, &status) != 0) return false;
    const double age = AgeOf(status);
    return age >= 0 && age < kPause;
}

// Dates the flag. False when the request has just been sent.
bool TakeTurn(const char *flag) {
    if (!VLIBCFileExist(flag)) {
        if (VLIBCFileTouch(flag) < 0) ZOR_ERROR_OF(kReporter, "Failed to touch file");
    } else if (WasJustAsked(flag)) {
        return false;
    }
    if (VLIBCFileSetKeyValue(flag, "updatemtime", "yes", kKeyValueLine) != 1)
        ZOR_ERROR_OF(kReporter, "Failed to update flag");
    return true;
}

// The first flag decides for all callers, so that only it is guarded.
bool TakeTurnAlone(const char *flag) {
    const FirstCaller caller;
    return caller.IsFirst() && TakeTurn(flag);
}

bool Send(int32_t type) {
    const int32_t result = SendCommand(kLoadUICommand, &type, sizeof type);
    if (result >= 0) return true;
    ZOR_ERROR_OF(kReporter, "Failed to command ask node info for ui with return code: %d", result);
    return false;
}

}  // namespace

// A flag that is fresh ends the request, also for the types after it: the three
// are always asked for together.
int32_t ZORSendLoadUIRequest() {
    for (const ZORLoadUIInfo &row : gZORLoadUIInfo) {
        const bool isFirstRow = &row == std::begin(gZORLoadUIInfo);
        if (!(isFirstRow ? TakeTurnAlone(row.flagPath) : TakeTurn(row.flagPath))) return 0;
        if (!Send(row.type)) return -1;
    }
    return 0;
}
