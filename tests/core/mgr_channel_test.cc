// Requests to the manager. The test plays the manager: what the hook of the
// virtual clock does happens while the library sleeps.

#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

#include "support/node_test.h"
#include "support/queue_end.h"
#include "support/system_calls.h"
#include "zor_core.h"

namespace fs = std::filesystem;
using queue_end::AnswerTo;

namespace {

constexpr char kDualheadSetting[] = "/usr/keva/etc/kevacore-stand-in.conf";
constexpr char kReady[] = "is_local_handler_ready=\"yes\"\n";
constexpr uint32_t kUngrouped = 17;
constexpr uint32_t kGrouped = 24;

class MgrChannel : public NodeTest {
  protected:
    MgrChannel() {
        queue_end::RemoveAll();
        WriteText(kStatusFile, kReady);
        request_.commandId = kUngrouped;
    }
    ~MgrChannel() override {
        free(request_.outputData);
        queue_end::RemoveAll();
    }

    // Sends, with the manager doing something during the first sleep.
    template <typename Manager>
    int32_t SendWith(Manager manager) {
        request_.wait = 1;
        virtual_time::Start([=](int sleep) {
            if (sleep == 0) manager(*queue_end::Take());
        });
        return ZORSendReqToMgr(&request_);
    }

    ZORMgrRequest request_ = {};
};

void Answer(const ZORMgrMessage &answer) {
    queue_end::Put(queue_end::kAnswers, answer);
}

std::string Sender(const std::string &level, const std::string &message) {
    return level + " zor_core(ZORSendReqToMgr): " + message;
}

std::string OtherAnswerNotice(const ZORMgrMessage &sent, const ZORMgrMessage &answer) {
    return Sender("NOTICE",
                  "Send time is differecne with receive time, May be not the same message?(" +
                      std::to_string(sent.sendTime) + ", " + std::to_string(answer.sendTime) +
                      "). CommandType(" + std::to_string(sent.commandId) + "," +
                      std::to_string(answer.commandId) + ")");
}

// --- The checks, in their order

TEST_F(MgrChannel, ModelWithoutTwoNodeSupportIsRefusedFirst) {
    WriteText(kDualheadSetting, "support_dualhead=\"no\"\n");
    fs::remove_all(kRuntimeFolder);
    EXPECT_EQ(ZORSendReqToMgr(nullptr), -1);
    ExpectLog({Sender("ERROR", "ZOR is not supported on this model")});
    fs::remove(kDualheadSetting);
}

TEST_F(MgrChannel, MissingManagerIsANotice) {
    fs::remove_all(kRuntimeFolder);
    EXPECT_EQ(ZORSendReqToMgr(nullptr), -1);
    ExpectLog(
        {Sender("NOTICE", "ZOR Manager is not running. Message queue is not ready for send req")});
}

TEST_F(MgrChannel, HandlerMustBeReady) {
    for (const char *text : {"", "is_local_handler_ready=\"no\"\n"}) {
        WriteText(kStatusFile, text);
        EXPECT_EQ(ZORSendReqToMgr(nullptr), -1);
        ExpectLog({Sender("ERROR", "Local handler is not ready, but ZORSendReqToMgr() is called")});
    }
}

TEST_F(MgrChannel, NullRequestIsRefused) {
    EXPECT_EQ(ZORSendReqToMgr(nullptr), -1);
    ExpectLog({Sender("ERROR", "Bad parameter")});
}

TEST_F(MgrChannel, PayloadSizeIsOneTo32399) {
    const std::vector<uint8_t> payload(32400, 0xab);
    request_.inputData = payload.data();
    for (const uint32_t size : {0u, 32400u, 0xffffffffu}) {
        request_.inputSize = size;
        EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
        char expected[160];
        snprintf(expected, sizeof expected,
                 "The input data with pointer(%lX), but size(%u) is out of bounds, command id:17",
                 reinterpret_cast<unsigned long>(payload.data()), size);
        ExpectLog({Sender("ERROR", expected)});
        EXPECT_EQ(queue_end::Count(1), 0);
    }
    for (const uint32_t size : {1u, 32399u}) {
        request_.inputSize = size;
        EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
        const auto message = queue_end::Take();
        ASSERT_TRUE(message);
        EXPECT_EQ(message->payloadLength, size);
        EXPECT_EQ(memcmp(message->payload, payload.data(), size), 0);
        EXPECT_EQ(message->payload[size], 0);
    }
    ExpectLog({});
}

TEST_F(MgrChannel, SizeWithoutInputDataIsIgnored) {
    for (const uint32_t size : {0u, 5u, 0xffffffffu}) {
        request_.inputSize = size;
        EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
        EXPECT_EQ(queue_end::Take()->payloadLength, 0u);
    }
    ExpectLog({});
}

TEST_F(MgrChannel, AllocationFailureIsReported) {
    if (!system_calls::FailNextAllocationOf(sizeof(ZORMgrMessage)))
        GTEST_SKIP() << "the sanitizer keeps the allocator to itself";
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    ExpectLog({Sender("ERROR", "Failed to calloc")});
}

TEST_F(MgrChannel, MissingKeyFileIsReported) {
    fs::remove(kKeyFile);
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    ExpectLog({Sender("ERROR", "Failed to get key (1)")});
}

TEST_F(MgrChannel, QueueThatCannotBeOpenedIsReported) {
    const std::string before = ReadText("/proc/sys/kernel/msgmni");
    WriteText("/proc/sys/kernel/msgmni", "0");
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    WriteText("/proc/sys/kernel/msgmni", before);
    ExpectLog({Sender("ERROR", "Failed to get message queue: " + std::string(strerror(ENOSPC)))});
}

TEST_F(MgrChannel, NodeWithoutASerialCannotSend) {
    WriteText(kSerialFile, "\n");
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    fs::remove(kSerialFile);
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    ExpectLog({Sender("ERROR", "Failed to get sn"), Sender("ERROR", "Failed to get sn")});
    EXPECT_EQ(queue_end::Count(1), 0);
}

TEST_F(MgrChannel, MissingProcessNameIsReportedAndSentEmpty) {
    system_calls::SetProcessId(0x7ffffff0);
    EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
    system_calls::Reset();
    EXPECT_EQ(log_.Take().back(), "ERROR zor_core(getProcessName): Get process name fialed");
    const auto message = queue_end::Take();
    ASSERT_TRUE(message);
    EXPECT_EQ(message->processName[0], '\0');
}

// --- What is sent

TEST_F(MgrChannel, MessageCarriesTheRequest) {
    request_.inputData = "hello";
    request_.inputSize = 5;
    const int64_t before = time(nullptr);
    EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
    const int64_t after = time(nullptr);
    const auto message = queue_end::Take();
    ASSERT_TRUE(message);
    EXPECT_EQ(message->identity, ZORGetMsgIdenticalID());
    EXPECT_EQ(message->kind, 1u);
    EXPECT_EQ(message->result, 0u);
    EXPECT_EQ(message->wait, 0u);
    EXPECT_EQ(message->reserved1, 0u);
    EXPECT_EQ(message->payloadLength, 5u);
    EXPECT_STREQ(message->serialNumber, "NODE0001");
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(message->payload), 6),
              std::string("hello\0", 6));
    EXPECT_EQ(message->commandId, 17u);
    std::string name = ReadText("/proc/self/cmdline");
    name.resize(64);
    EXPECT_EQ(std::string(message->processName, 64), name);
    EXPECT_EQ(message->reserved2, 0u);
    EXPECT_GE(message->sendTime, before);
    EXPECT_LE(message->sendTime, after);
    ExpectLog({});
}

TEST_F(MgrChannel, LongSerialIsCutToItsField) {
    WriteText(kSerialFile, std::string(60, 'S') + "\n");
    EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
    EXPECT_EQ(std::string(queue_end::Take()->serialNumber), std::string(35, 'S'));
}

TEST_F(MgrChannel, RequestWithoutWaitReturnsAtOnce) {
    request_.timeout = 5;
    EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    EXPECT_EQ(queue_end::Count(1), 1);
}

TEST_F(MgrChannel, WaitFlagIsCopied) {
    request_.timeout = 1;
    request_.wait = 7;
    EXPECT_EQ(ZORSendReqToMgr(&request_), -3);
    EXPECT_EQ(queue_end::Take()->wait, 7u);
}

TEST_F(MgrChannel, FullQueueIsReported) {
    int sent = 0;
    while (ZORSendReqToMgr(&request_) == 0) ++sent;
    EXPECT_EQ(sent, 40);
    ExpectLog({Sender("ERROR", "Failed to send message: " + std::string(strerror(EAGAIN)))});
}

TEST_F(MgrChannel, ThreadIdAboveTheLimitCannotSend) {
    system_calls::SetThreadId(0x100000);
    EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
    system_calls::SetThreadId(0x100001);
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    ExpectLog({"ERROR zor_core(ZORGetMsgIdenticalID): Thread id(1048577) > MAXTID(1048576)",
               Sender("ERROR", "Failed to send message: " + std::string(strerror(EINVAL)))});
}

TEST_F(MgrChannel, LimitsThatAreTooSmallAreReported) {
    const std::string before = ReadText("/proc/sys/kernel/msgmax");
    WriteText("/proc/sys/kernel/msgmax", "8192");
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    WriteText("/proc/sys/kernel/msgmax", before);
    ExpectLog({Sender("ERROR", "Failed to send message: " + std::string(strerror(EINVAL)))});
}

// --- The answer

TEST_F(MgrChannel, AnswerWithResultIsSuccess) {
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 1, "payload")); }), 0);
    EXPECT_EQ(request_.outputSize, 7u);
    ASSERT_NE(request_.outputData, nullptr);
    EXPECT_EQ(memcmp(request_.outputData, "payload", 7), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 1);
    ExpectLog({});
}

TEST_F(MgrChannel, AnyResultButZeroIsSuccess) {
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 0x80000000)); }), 0);
}

TEST_F(MgrChannel, AnswerThatIsThereAlreadyCostsNoSleep) {
    request_.wait = 1;
    system_calls::AfterSend([] {
        system_calls::AfterSend(nullptr);
        Answer(AnswerTo(*queue_end::Take(), 1));
    });
    EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
}

TEST_F(MgrChannel, RefusalWithoutPayload) {
    request_.outputData = nullptr;
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 0)); }), -2);
    EXPECT_EQ(request_.outputData, nullptr);
    EXPECT_EQ(request_.outputSize, 0u);
    ExpectLog({});
}

TEST_F(MgrChannel, RefusalHandsItsPayloadOver) {
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 0, "why")); }), -2);
    EXPECT_EQ(request_.outputSize, 3u);
    ASSERT_NE(request_.outputData, nullptr);
    EXPECT_EQ(memcmp(request_.outputData, "why", 3), 0);
    ExpectLog({});
}

TEST_F(MgrChannel, EmptyAnswerHasNoOutput) {
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 1)); }), 0);
    EXPECT_EQ(request_.outputData, nullptr);
    EXPECT_EQ(request_.outputSize, 0u);
}

TEST_F(MgrChannel, LargestAnswerIsTaken) {
    EXPECT_EQ(
        SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 1, std::string(32400, 'p'))); }),
        0);
    EXPECT_EQ(request_.outputSize, 32400u);
    ASSERT_NE(request_.outputData, nullptr);
    EXPECT_EQ(std::string(static_cast<char *>(request_.outputData), 32400),
              std::string(32400, 'p'));
}

TEST_F(MgrChannel, AnswerThatClaimsMoreIsRefused) {
    for (const uint32_t length : {32401u, 0x80000000u, 0xffffffffu}) {
        EXPECT_EQ(SendWith([length](const ZORMgrMessage &m) {
                      ZORMgrMessage answer = AnswerTo(m, 1, "x");
                      answer.payloadLength = length;
                      Answer(answer);
                  }),
                  -2);
        EXPECT_EQ(request_.outputData, nullptr);
        EXPECT_EQ(request_.outputSize, length);
    }
    ExpectLog({});
}

TEST_F(MgrChannel, AllocationFailureOfTheOutputIsReported) {
    request_.wait = 1;
    virtual_time::Start([](int) {
        Answer(AnswerTo(*queue_end::Take(), 1, std::string(31337, 'p')));
        system_calls::FailNextAllocationOf(31337);
    });
    if (!system_calls::FailNextAllocationOf(0))
        GTEST_SKIP() << "the sanitizer keeps the allocator to itself";
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    EXPECT_EQ(request_.outputData, nullptr);
    ExpectLog({Sender("ERROR", "Failed to calloc()")});
}

// --- Answers to somebody or something else

TEST_F(MgrChannel, EarlierAnswersAreDroppedWithANoticeEach) {
    for (const int stale : {1, 5, 30}) {
        Lines expected;
        EXPECT_EQ(SendWith([&](const ZORMgrMessage &m) {
                      ZORMgrMessage old = AnswerTo(m, 0, "old");
                      for (int number = 1; number <= stale; ++number) {
                          old.sendTime = m.sendTime - number;
                          Answer(old);
                          expected.push_back(OtherAnswerNotice(m, old));
                      }
                      Answer(AnswerTo(m, 1));
                  }),
                  0);
        EXPECT_EQ(virtual_time::Sleeps(), 1) << "dropping takes no time";
        EXPECT_EQ(queue_end::Count(2), 0);
        ExpectLog(expected);
    }
}

TEST_F(MgrChannel, AnswerToAnotherCommandIsDropped) {
    Lines expected;
    EXPECT_EQ(SendWith([&](const ZORMgrMessage &m) {
                  ZORMgrMessage other = AnswerTo(m, 1);
                  other.commandId = 99;
                  Answer(other);
                  expected.push_back(OtherAnswerNotice(m, other));
                  Answer(AnswerTo(m, 0));
              }),
              -2);
    ExpectLog(expected);
}

TEST_F(MgrChannel, TruncatedAnswerShowsNothingOfTheOneBefore) {
    request_.timeout = 1;
    Lines expected;
    EXPECT_EQ(SendWith([&](const ZORMgrMessage &m) {
                  ZORMgrMessage old = AnswerTo(m, 1, "payload");
                  old.sendTime -= 1;
                  Answer(old);
                  expected.push_back(OtherAnswerNotice(m, old));
                  // Its send time and command are missing: they read as zero,
                  // not as those of the message before.
                  queue_end::Put(queue_end::kAnswers, AnswerTo(m, 1), 64);
                  ZORMgrMessage zeroed = {};
                  expected.push_back(OtherAnswerNotice(m, zeroed));
              }),
              -3);
    ExpectLog(expected);
}

TEST_F(MgrChannel, AnswersOfOtherThreadsStayOnTheQueue) {
    request_.timeout = 1;
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) {
                  ZORMgrMessage foreign = AnswerTo(m, 1);
                  foreign.identity ^= 1;
                  Answer(foreign);
              }),
              -3);
    EXPECT_EQ(queue_end::Count(2), 1);
    ExpectLog({});
}

TEST_F(MgrChannel, OversizeAnswerBreaksTheChannel) {
    const std::string before = ReadText("/proc/sys/kernel/msgmax");
    WriteText("/proc/sys/kernel/msgmax", "40000");
    struct Oversize {
        ZORMgrMessage message;
        char more[100];
    };
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) {
                  const auto big = std::make_unique<Oversize>();
                  big->message = AnswerTo(m, 1);
                  queue_end::Put(queue_end::kAnswers, big->message, 32537);
              }),
              -1);
    WriteText("/proc/sys/kernel/msgmax", before);
    ExpectLog({Sender("ERROR", "Failed to receive response for command type :17")});
}

TEST_F(MgrChannel, AnswerQueueThatIsGoneIsReported) {
    EXPECT_EQ(SendWith([](const ZORMgrMessage &) { queue_end::RemoveAll(); }), -1);
    ExpectLog({Sender("ERROR", "Failed to receive response for command type :17")});
}

TEST_F(MgrChannel, KeyFileThatGoesMissingIsReportedForTheAnswerQueue) {
    request_.wait = 1;
    system_calls::AfterSend([] { fs::remove(kKeyFile); });
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    ExpectLog({Sender("ERROR", "Failed to get key (2)")});
}

TEST_F(MgrChannel, AnswerQueueThatCannotBeOpenedIsReported) {
    const std::string before = ReadText("/proc/sys/kernel/msgmni");
    request_.wait = 1;
    system_calls::AfterSend([] { WriteText("/proc/sys/kernel/msgmni", "0"); });
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    WriteText("/proc/sys/kernel/msgmni", before);
    ExpectLog({Sender("ERROR", "Failed to get message queue: " + std::string(strerror(ENOSPC)))});
}

TEST_F(MgrChannel, IdentityIsTakenOnceThoughTheHourRolls) {
    system_calls::SetUptime(3599);
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) {
                  system_calls::SetUptime(3601);
                  Answer(AnswerTo(m, 1));
              }),
              0);
}

// --- Time-out

TEST_F(MgrChannel, TimeOutIsLookedForOncePerSecond) {
    for (const int64_t timeout : {1, 2, 7}) {
        virtual_time::Start();
        request_.wait = 1;
        request_.timeout = timeout;
        EXPECT_EQ(ZORSendReqToMgr(&request_), -3);
        EXPECT_EQ(virtual_time::Sleeps(), timeout + 1);
        EXPECT_EQ(virtual_time::SleptMilliseconds(), (timeout + 1) * 1000);
    }
    ExpectLog({});
}

TEST_F(MgrChannel, TimeOutOfZeroOrLessIsFifteenSeconds) {
    for (const int64_t timeout : {int64_t{0}, int64_t{-1}, INT64_MIN}) {
        virtual_time::Start();
        request_.wait = 1;
        request_.timeout = timeout;
        EXPECT_EQ(ZORSendReqToMgr(&request_), -3);
        EXPECT_EQ(virtual_time::Sleeps(), 16);
    }
}

TEST_F(MgrChannel, LastLookComesAfterTheLastSleep) {
    request_.timeout = 2;
    request_.wait = 1;
    virtual_time::Start([](int sleep) {
        if (sleep == 2) Answer(AnswerTo(*queue_end::Take(), 1));
    });
    EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 3);
}

TEST_F(MgrChannel, TimeOutOfAnUngroupedCommandIsSilent) {
    request_.timeout = 1;
    request_.wait = 1;
    EXPECT_EQ(ZORSendReqToMgr(&request_), -3);
    EXPECT_EQ(queue_end::Count(1), 1) << "the request, and no cancellation";
    ExpectLog({});
}

TEST_F(MgrChannel, TimeOutOfAGroupedCommandIsCancelled) {
    request_.commandId = kGrouped;
    request_.timeout = 1;
    request_.wait = 1;
    EXPECT_EQ(ZORSendReqToMgr(&request_), -3);
    const auto sent = queue_end::Take();
    const auto cancel = queue_end::Take();
    ASSERT_TRUE(sent && cancel);
    EXPECT_EQ(cancel->commandId, 40u);
    EXPECT_EQ(cancel->wait, 0u);
    ASSERT_EQ(cancel->payloadLength, 32u);
    ZORCancelPayload payload;
    memcpy(&payload, cancel->payload, sizeof payload);
    EXPECT_EQ(payload.commandId, kGrouped);
    EXPECT_EQ(payload.reserved1, 0u);
    EXPECT_EQ(payload.identity, sent->identity);
    EXPECT_EQ(payload.sendTime, sent->sendTime);
    EXPECT_EQ(payload.reason, 3u);
    EXPECT_EQ(payload.reserved2, 0u);
    EXPECT_FALSE(queue_end::Take());
    ExpectLog({});
}

TEST_F(MgrChannel, CancellationThatCannotBeSentIsReported) {
    request_.commandId = kGrouped;
    request_.timeout = 1;
    request_.wait = 1;
    virtual_time::Start([](int sleep) {
        if (sleep == 1) WriteText(kStatusFile, "");
    });
    EXPECT_EQ(ZORSendReqToMgr(&request_), -3);
    ExpectLog({Sender("ERROR", "Local handler is not ready, but ZORSendReqToMgr() is called"),
               "ERROR zor_core(ZORFailbackTimeoutCommand): Failed to send msg to queue",
               Sender("ERROR", "Failed to failback timeout command")});
}

TEST_F(MgrChannel, RefusedGroupedCommandIsNotCancelled) {
    request_.commandId = kGrouped;
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 0)); }), -2);
    EXPECT_EQ(queue_end::Count(1), 0);
}

TEST_F(MgrChannel, NothingIsLeftOpenOrAllocated) {
    const int before = CountDescriptors();
    for (int number = 0; number < 50; ++number) {
        EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 1, "p")); }), 0);
        free(request_.outputData);
        request_.outputData = nullptr;
    }
    EXPECT_EQ(CountDescriptors(), before);
}

}  // namespace
