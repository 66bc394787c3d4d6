// A tool that sends a request to the manager and waits for its answer.
//
// Usage: send_request COMMAND TEXT

#include <zor_core.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

int main(int argc, char **argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: send_request COMMAND TEXT\n");
        return 64;
    }
    std::string text = argv[2];
    ZORMgrRequest request = {};
    request.commandId = static_cast<uint32_t>(atoi(argv[1]));
    request.inputData = &text[0];
    request.inputSize = static_cast<uint32_t>(text.size());
    request.wait = 1;
    request.timeout = 5;  // seconds
    const int32_t result = ZORSendReqToMgr(&request);
    // What the answer brought is the caller's, whatever the result is.
    const std::unique_ptr<void, decltype(&free)> answer(request.outputData, free);
    if (result == 0) {
        printf("done: %.*s\n", static_cast<int>(request.outputSize),
               static_cast<const char *>(answer.get()));
        return 0;
    }
    fprintf(stderr, result == -2 ? "refused by the manager\n" : "not sent, or no answer in time\n");
    return 1;
}
