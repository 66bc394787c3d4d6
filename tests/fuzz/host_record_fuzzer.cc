// Feeds the host record and the questions with sections of any content: the
// input stands behind the header of the local node's section, and may bring
// further sections with it.

#include <string>

#include "hardware_fuzzing.h"
#include "support/node_files.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    RequirePrivateNode();
    WriteNodeFile(kHardwareFile,
                  "[LOCAL_HOST]\n" + std::string(reinterpret_cast<const char *>(data), size));
    for (const int32_t selector : {ZOR_HOST_LOCAL, ZOR_HOST_REMOTE}) {
        GuardedHost record;
        const int32_t result = HWReadHostValue(selector, &record.host);
        Require(result >= -1 && result <= 1);
        record.Check();
    }
    AskEverything();
    return 0;
}
