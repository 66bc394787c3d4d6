// The operator's console.

#include <fcntl.h>

#include <cstdio>

#include "foundation/descriptor.h"
#include "foundation/log.h"
#include "foundation/paths.h"

namespace {

constexpr char kLogModule[] = "zor_filelock";

}  // namespace

extern "C" int32_t ZORConsoleOutput(const char *text) {
    if (!text) {
        ZOR_ERROR("Bad @param");
        return -1;
    }
    // A daemon without a terminal must not be given the console as its own.
    const Descriptor console(
        open(kConsoleDevice, O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY | O_CLOEXEC, 0666));
    if (!console.IsOpen()) {
        ZOR_ERROR("Failed to open %s", kConsoleDevice);
        return -1;
    }
    if (dprintf(console.Get(), "%s\n", text) < 0) {
        ZOR_ERROR("Failed to fprintf");
        return -1;
    }
    return 0;
}
