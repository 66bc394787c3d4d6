// Answers of the manager: the right ones, those of others, and none.

#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>
#include <vector>

#include "core/mgr_channel_fixture.h"
#include "support/allocation.h"
#include "support/system_calls.h"

namespace fs = std::filesystem;
using queue_end::AnswerTo;

namespace {

using MgrAnswer = MgrChannel;

void Answer(const ZORMgrMessage &answer) {
    queue_end::Put(queue_end::kAnswers, answer);
}

std::string OtherAnswerNotice(const ZORMgrMessage &sent, const ZORMgrMessage &answer) {
    return Sender("NOTICE",
                  "Send time is differecne with receive time, May be not the same message?(" +
                      std::to_string(sent.sendTime) + ", " + std::to_string(answer.sendTime) +
                      "). CommandType(" + std::to_string(sent.commandId) + "," +
                      std::to_string(answer.commandId) + ")");
}

// --- The answer

TEST_F(MgrAnswer, AnswerWithResultIsSuccess) {
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 1, "payload")); }), 0);
    EXPECT_EQ(request_.outputSize, 7u);
    ASSERT_NE(request_.outputData, nullptr);
    EXPECT_EQ(memcmp(request_.outputData, "payload", 7), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 1);
    ExpectLog({});
}

TEST_F(MgrAnswer, AnyResultButZeroIsSuccess) {
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 0x80000000)); }), 0);
}

TEST_F(MgrAnswer, AnswerThatIsThereAlreadyCostsNoSleep) {
    request_.wait = 1;
    system_calls::AfterSend([] {
        system_calls::AfterSend(nullptr);
        Answer(AnswerTo(*queue_end::Take(), 1));
    });
    EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
}

TEST_F(MgrAnswer, RefusalWithoutPayload) {
    request_.outputData = nullptr;
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 0)); }), -2);
    EXPECT_EQ(request_.outputData, nullptr);
    EXPECT_EQ(request_.outputSize, 0u);
    ExpectLog({});
}

TEST_F(MgrAnswer, RefusalHandsItsPayloadOver) {
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 0, "why")); }), -2);
    EXPECT_EQ(request_.outputSize, 3u);
    ASSERT_NE(request_.outputData, nullptr);
    EXPECT_EQ(memcmp(request_.outputData, "why", 3), 0);
    ExpectLog({});
}

TEST_F(MgrAnswer, EmptyAnswerHasNoOutput) {
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 1)); }), 0);
    EXPECT_EQ(request_.outputData, nullptr);
    EXPECT_EQ(request_.outputSize, 0u);
}

TEST_F(MgrAnswer, LargestAnswerIsTaken) {
    EXPECT_EQ(
        SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 1, std::string(32400, 'p'))); }),
        0);
    EXPECT_EQ(request_.outputSize, 32400u);
    ASSERT_NE(request_.outputData, nullptr);
    EXPECT_EQ(std::string(static_cast<char *>(request_.outputData), 32400),
              std::string(32400, 'p'));
}

TEST_F(MgrAnswer, AnswerThatClaimsMoreIsRefused) {
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

TEST_F(MgrAnswer, AllocationFailureOfTheOutputIsReported) {
    request_.wait = 1;
    virtual_time::Start([](int) {
        Answer(AnswerTo(*queue_end::Take(), 1, std::string(31337, 'p')));
        allocation::FailNextOf(31337);
    });
    if (!allocation::FailNextOf(0)) GTEST_SKIP() << "the sanitizer keeps the allocator to itself";
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    EXPECT_EQ(request_.outputData, nullptr);
    ExpectLog({Sender("ERROR", "Failed to calloc()")});
}

// --- Answers to somebody or something else

TEST_F(MgrAnswer, EarlierAnswersAreDroppedWithANoticeEach) {
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

TEST_F(MgrAnswer, AnswerToAnotherCommandIsDropped) {
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

TEST_F(MgrAnswer, TruncatedAnswerShowsNothingOfTheOneBefore) {
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

TEST_F(MgrAnswer, AnswersOfOtherThreadsStayOnTheQueue) {
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

TEST_F(MgrAnswer, OversizeAnswerBreaksTheChannel) {
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

TEST_F(MgrAnswer, AnswerQueueThatIsGoneIsReported) {
    EXPECT_EQ(SendWith([](const ZORMgrMessage &) { queue_end::RemoveAll(); }), -1);
    ExpectLog({Sender("ERROR", "Failed to receive response for command type :17")});
}

TEST_F(MgrAnswer, KeyFileThatGoesMissingIsReportedForTheAnswerQueue) {
    request_.wait = 1;
    system_calls::AfterSend([] { fs::remove(kKeyFile); });
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    ExpectLog({Sender("ERROR", "Failed to get key (2)")});
}

TEST_F(MgrAnswer, AnswerQueueThatCannotBeOpenedIsReported) {
    const std::string before = ReadText("/proc/sys/kernel/msgmni");
    request_.wait = 1;
    system_calls::AfterSend([] { WriteText("/proc/sys/kernel/msgmni", "0"); });
    EXPECT_EQ(ZORSendReqToMgr(&request_), -1);
    WriteText("/proc/sys/kernel/msgmni", before);
    ExpectLog({Sender("ERROR", "Failed to get message queue: " + std::string(strerror(ENOSPC)))});
}

TEST_F(MgrAnswer, IdentityIsTakenOnceThoughTheHourRolls) {
    system_calls::SetUptime(3599);
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) {
                  system_calls::SetUptime(3601);
                  Answer(AnswerTo(m, 1));
              }),
              0);
}

// --- Time-out

TEST_F(MgrAnswer, TimeOutIsLookedForOncePerSecond) {
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

TEST_F(MgrAnswer, TimeOutOfZeroOrLessIsFifteenSeconds) {
    for (const int64_t timeout : {int64_t{0}, int64_t{-1}, INT64_MIN}) {
        virtual_time::Start();
        request_.wait = 1;
        request_.timeout = timeout;
        EXPECT_EQ(ZORSendReqToMgr(&request_), -3);
        EXPECT_EQ(virtual_time::Sleeps(), 16);
    }
}

TEST_F(MgrAnswer, LastLookComesAfterTheLastSleep) {
    request_.timeout = 2;
    request_.wait = 1;
    virtual_time::Start([](int sleep) {
        if (sleep == 2) Answer(AnswerTo(*queue_end::Take(), 1));
    });
    EXPECT_EQ(ZORSendReqToMgr(&request_), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 3);
}

TEST_F(MgrAnswer, TimeOutOfAnUngroupedCommandIsSilent) {
    request_.timeout = 1;
    request_.wait = 1;
    EXPECT_EQ(ZORSendReqToMgr(&request_), -3);
    EXPECT_EQ(queue_end::Count(1), 1) << "the request, and no cancellation";
    ExpectLog({});
}

TEST_F(MgrAnswer, TimeOutOfAGroupedCommandIsCancelled) {
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

TEST_F(MgrAnswer, CancellationThatCannotBeSentIsReported) {
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

TEST_F(MgrAnswer, RefusedGroupedCommandIsNotCancelled) {
    request_.commandId = kGrouped;
    EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 0)); }), -2);
    EXPECT_EQ(queue_end::Count(1), 0);
}

TEST_F(MgrAnswer, NothingIsLeftOpenOrAllocated) {
    const int before = CountDescriptors();
    for (int number = 0; number < 50; ++number) {
        EXPECT_EQ(SendWith([](const ZORMgrMessage &m) { Answer(AnswerTo(m, 1, "p")); }), 0);
        free(request_.outputData);
        request_.outputData = nullptr;
    }
    EXPECT_EQ(CountDescriptors(), before);
}

}  // namespace
