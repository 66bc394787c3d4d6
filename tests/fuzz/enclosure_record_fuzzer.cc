// Feeds the enclosure records with sections of any content, writes back what was
// read, and reads it again. The first line of the input is the rest of the local
// node's section, its pairs apart by tabs; what follows is the enclosure's.

#include <algorithm>
#include <string>

#include "hardware_fuzzing.h"
#include "support/node_files.h"

namespace {

void CheckSerials(const ZORHWHostInfo &host) {
    char text[32];
    memset(text, '#', sizeof text);
    Require(ZORHWUtilGetEncListStr(&host, text, sizeof text - 1) == 0);
    Require(text[sizeof text - 1] == '#');
}

// What was read can be written, and reads back the same.
void CheckRoundTrip(ZORHWHostInfo host) {
    if (HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host) != 0) return;
    ZORHWHostInfo remote = {};
    ZORHWWriteFanPowerStatus(&host, &remote);
    GuardedHost again;
    HWReadEncList(ZOR_HOST_LOCAL, &again.host);
    again.Check();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    RequirePrivateNode();
    const std::string input(reinterpret_cast<const char *>(data), size);
    const size_t end = std::min(input.find('\n'), input.size());
    std::string host = input.substr(0, end);
    std::replace(host.begin(), host.end(), '\t', '\n');
    const std::string enclosure = end < input.size() ? input.substr(end + 1) : "";
    WriteNodeFile(kHardwareFile, "[LOCAL_HOST]\nEncList=E1,E2\nHostType=8\n" + host +
                                     "\n[ENCLOSURE_E2]\nEncSN=E2\nModelID=1\nMaxDisk=0\n"
                                     "[ENCLOSURE_E1]\n" +
                                     enclosure);
    GuardedHost record;
    const int32_t result = HWReadEncList(ZOR_HOST_LOCAL, &record.host);
    Require(result >= -1 && result <= 3);
    record.Check();
    CheckSerials(record.host);
    AskEverything();
    CheckRoundTrip(record.host);
    return 0;
}
