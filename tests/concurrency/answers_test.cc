// Many requesters at once: each receives its own answers and nobody else's.

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "support/node_test.h"
#include "support/queue_end.h"
#include "zor_core.h"

namespace {

constexpr int kRequesters = 8;  // threads, and as many processes
constexpr int kRequests = 25;   // of each

class Answers : public NodeTest {
  protected:
    Answers() {
        queue_end::RemoveAll();
        WriteText(kStatusFile, "is_local_handler_ready=\"yes\"\n");
        virtual_time::Start([](int) { usleep(200); });
    }
    ~Answers() override { queue_end::RemoveAll(); }
};

// Answers every request with its own payload; odd ones are refused.
void Serve(const std::atomic<bool> &done) {
    while (!done) {
        const auto request = queue_end::Take();
        if (!request) {
            usleep(20);
            continue;
        }
        const std::string payload(reinterpret_cast<const char *>(request->payload),
                                  request->payloadLength);
        const uint32_t result = request->commandId % 2 == 0 ? 1 : 0;
        queue_end::Put(queue_end::kAnswers, queue_end::AnswerTo(*request, result, payload));
    }
}

// A full queue is no fault here: the requester tries again.
int32_t SendPatiently(ZORMgrRequest *request) {
    for (;;) {
        const int32_t result = ZORSendReqToMgr(request);
        if (result != ZOR_REQUEST_FAILED) return result;
        usleep(500);
    }
}

bool AskAndCheck(int requester) {
    for (int number = 0; number < kRequests; ++number) {
        const std::string payload = std::to_string(requester) + "/" + std::to_string(getpid()) +
                                    "/" + std::to_string(number);
        ZORMgrRequest request = {};
        request.commandId = static_cast<uint32_t>(1000 + number);
        request.inputData = payload.data();
        request.inputSize = static_cast<uint32_t>(payload.size());
        request.wait = 1;
        request.timeout = 10000;
        const int32_t result = SendPatiently(&request);
        const bool isOwn = request.outputSize == payload.size() && request.outputData &&
                           memcmp(request.outputData, payload.data(), payload.size()) == 0;
        free(request.outputData);
        if (!isOwn || result != (number % 2 == 0 ? 0 : -2)) return false;
    }
    return true;
}

TEST_F(Answers, OfSixteenRequestersReachTheirOwnThreadAlone) {
    std::vector<pid_t> children;
    for (int process = 0; process < kRequesters; ++process) {
        const pid_t child = fork();
        if (child == 0) _exit(AskAndCheck(process) ? 0 : 1);
        children.push_back(child);
    }
    std::atomic<bool> done{false};
    std::thread manager([&] { Serve(done); });
    std::atomic<int> failed{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kRequesters; ++thread)
        threads.emplace_back([&, thread] { failed += !AskAndCheck(100 + thread); });
    for (std::thread &thread : threads) thread.join();
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        failed += !WIFEXITED(status) || WEXITSTATUS(status) != 0;
    }
    done = true;
    manager.join();
    EXPECT_EQ(failed, 0);
    EXPECT_EQ(queue_end::Count(queue_end::kAnswers), 0);
    for (const std::string &line : log_.Take())
        EXPECT_NE(line.find("Failed to send message: Resource temporarily unavailable"),
                  std::string::npos)
            << line;
}

}  // namespace
