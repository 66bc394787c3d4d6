#include "core/process_name.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>

#include "foundation/descriptor.h"
#include "foundation/log.h"

namespace {

constexpr char kLogModule[] = "zor_core";

}  // namespace

void getProcessName(char (&name)[ZOR_PROCESS_NAME_SIZE]) {
    char path[32];
    snprintf(path, sizeof path, "/proc/%ld/cmdline", static_cast<long>(getpid()));
    const Descriptor file(open(path, O_RDONLY | O_CLOEXEC));
    if (!file.IsOpen() || read(file.Get(), name, sizeof name) <= 0)
        ZOR_ERROR("Get process name fialed");
}
