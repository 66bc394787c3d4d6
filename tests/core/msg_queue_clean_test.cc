// Taking stale messages off the queues.

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>

#include "support/allocation.h"
#include "support/node_test.h"
#include "support/queue_end.h"
#include "support/system_calls.h"
#include "zor_core.h"

namespace fs = std::filesystem;

namespace {

constexpr int64_t kHour = 5;  // of the tests, by the time code

class MsgQueueClean : public NodeTest {
  protected:
    MsgQueueClean() {
        setenv("TZ", "UTC", 1);
        tzset();
        queue_end::RemoveAll();
        system_calls::SetUptime((kHour - 1) * 3600);
    }
    ~MsgQueueClean() override { queue_end::RemoveAll(); }

    static void Put(int project, int64_t hour, int64_t thread, const char *process = "tool") {
        ZORMgrMessage message = {};
        message.identity = hour << 20 | thread;
        message.commandId = 17;
        message.sendTime = 1000000;  // the 12th, 13:46:40
        memcpy(message.processName, process, strnlen(process, sizeof message.processName));
        queue_end::Put(project, message);
    }

    static std::string Dropped(int project, int64_t thread, const std::string &process = "tool") {
        return "ERROR zor_core(logMsg): DROP MSG IN QUEUE(" + std::to_string(project) +
               "), Process: " + process + ", pid: " + std::to_string(thread) +
               ", cmd: 17 time: 12:13:46:40(d,h,m,s)";
    }

    static std::string Cleaned(int count, int project) {
        return "ERROR zor_core(CleanMsgQueue): Clean " + std::to_string(count) + " msgs on queue " +
               std::to_string(project);
    }

    static std::string Failed(int project) {
        return "ERROR zor_core(ZORCleanAllMsgQueue): Clean msgqueue: " + std::to_string(project) +
               " Failed.";
    }
};

TEST_F(MsgQueueClean, TimeCodeAbove43BitsIsRefused) {
    Put(1, 1, 1);
    EXPECT_EQ(ZORCleanAllMsgQueue(0x80000000000), -1);
    ExpectLog({"ERROR zor_core(ZORCleanAllMsgQueue): Bad paramter, 8796093022208"});
    EXPECT_EQ(queue_end::Count(1), 1);
}

TEST_F(MsgQueueClean, NegativeTimeCodeIsRefusedLikeOne) {
    Put(1, 1, 1);
    EXPECT_EQ(ZORCleanAllMsgQueue(-1), -1);
    ExpectLog({"ERROR zor_core(ZORCleanAllMsgQueue): Bad paramter, -1"});
    EXPECT_EQ(queue_end::Count(1), 1);
}

TEST_F(MsgQueueClean, EmptyQueuesAreCleanSilently) {
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    EXPECT_EQ(ZORCleanAllMsgQueue(0x7ffffffffff), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    ExpectLog({});
}

TEST_F(MsgQueueClean, TheHourAndEarlierOnesAreDropped) {
    Put(1, kHour - 1, 7);
    Put(1, kHour, 8);
    Put(1, kHour + 1, 9);
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    ExpectLog({Dropped(1, 7), Dropped(1, 8), Cleaned(2, 1)});
    EXPECT_EQ(queue_end::Take(1)->identity, (kHour + 1) << 20 | 9);
    EXPECT_EQ(virtual_time::Sleeps(), 2);
    EXPECT_EQ(virtual_time::SleptMilliseconds(), 10);
}

TEST_F(MsgQueueClean, LargestThreadIdOfTheHourIsDropped) {
    Put(1, kHour, 0);
    ZORMgrMessage message = {};
    message.identity = (kHour << 20) + 0x100000;
    message.commandId = 17;
    message.sendTime = 1000000;
    strcpy(message.processName, "tool");
    queue_end::Put(1, message);
    message.identity += 1;
    queue_end::Put(1, message);
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    ExpectLog({Dropped(1, 0), Dropped(1, 0), Cleaned(2, 1)});
    EXPECT_EQ(queue_end::Count(1), 1);
}

TEST_F(MsgQueueClean, AllSevenQueuesAreCleaned) {
    Lines expected;
    for (int project = 1; project <= 7; ++project) {
        Put(project, kHour, project);
        expected.push_back(Dropped(project, project));
        expected.push_back(Cleaned(1, project));
    }
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    ExpectLog(expected);
}

TEST_F(MsgQueueClean, OfALaterHourOnlyThatHourIsDropped) {
    Put(2, kHour, 1);
    Put(2, kHour + 3, 0);
    Put(2, kHour + 3, 0xfffff);
    Put(2, kHour + 2, 3);
    Put(2, kHour + 4, 4);
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour + 3), 0);
    ExpectLog({Dropped(2, 0), Dropped(2, 0xfffff), Cleaned(2, 2)});
    EXPECT_EQ(queue_end::Count(2), 3);
}

TEST_F(MsgQueueClean, ProcessNameWithoutATerminatorIsBounded) {
    Put(1, kHour, 1, std::string(64, 'n').c_str());
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    ExpectLog({Dropped(1, 1, std::string(64, 'n')), Cleaned(1, 1)});
}

TEST_F(MsgQueueClean, SmallTimesArePaddedWithSpaces) {
    ZORMgrMessage message = {};
    message.identity = kHour << 20 | 1;
    message.sendTime = 3600 + 2 * 60 + 3;
    queue_end::Put(1, message);
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    ExpectLog(
        {"ERROR zor_core(logMsg): DROP MSG IN QUEUE(1), Process: , pid: 1, cmd: 0 time: 1: "
         "1: 2: 3(d,h,m,s)",
         Cleaned(1, 1)});
}

TEST_F(MsgQueueClean, ShortMessagesAreDroppedToo) {
    Put(1, kHour, 1);
    ZORMgrMessage message = {};
    message.identity = kHour << 20 | 2;
    queue_end::Put(1, message, 8);
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    ExpectLog({Dropped(1, 1),
               "ERROR zor_core(logMsg): DROP MSG IN QUEUE(1), Process: , pid: 2, cmd: 0 time: 1: "
               "0: 0: 0(d,h,m,s)",
               Cleaned(2, 1)});
}

TEST_F(MsgQueueClean, MissingKeyFileFailsForEveryQueue) {
    fs::remove(kKeyFile);
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    Lines expected;
    for (int project = 1; project <= 7; ++project) {
        expected.push_back("ERROR zor_core(CleanMsgQueue): Failed to get key (" +
                           std::to_string(project) + ")");
        expected.push_back(Failed(project));
    }
    ExpectLog(expected);
}

TEST_F(MsgQueueClean, QueueThatCannotBeOpenedIsReported) {
    const std::string before = ReadText("/proc/sys/kernel/msgmni");
    Put(1, kHour, 1);
    WriteText("/proc/sys/kernel/msgmni", "1");
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    WriteText("/proc/sys/kernel/msgmni", before);
    Lines expected = {Dropped(1, 1), Cleaned(1, 1)};
    for (int project = 2; project <= 7; ++project) {
        expected.push_back("ERROR zor_core(CleanMsgQueue): Failed to get message queue: " +
                           std::string(strerror(ENOSPC)));
        expected.push_back(Failed(project));
    }
    ExpectLog(expected);
}

TEST_F(MsgQueueClean, AllocationFailureIsReported) {
    if (!allocation::FailNextOf(sizeof(ZORMgrMessage)))
        GTEST_SKIP() << "the sanitizer keeps the allocator to itself";
    Put(2, kHour, 2);
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    ExpectLog({"ERROR zor_core(CleanMsgQueue): Failed to calloc", Failed(1), Dropped(2, 2),
               Cleaned(1, 2)});
}

class MsgQueueCleanOversize : public MsgQueueClean {
  protected:
    MsgQueueCleanOversize() : before_(ReadText("/proc/sys/kernel/msgmax")) {
        WriteText("/proc/sys/kernel/msgmax", "40000");
    }
    ~MsgQueueCleanOversize() override { WriteText("/proc/sys/kernel/msgmax", before_); }

    static void PutOversize(int project, int64_t identity) {
        struct Oversize {
            ZORMgrMessage message;
            char more[100];
        };
        const auto big = std::make_unique<Oversize>();
        big->message.identity = identity;
        queue_end::Put(project, big->message, 32537);
    }

    const std::string before_;
};

constexpr char kReceiveFailed[] =
    "ERROR zor_core(CleanMsgQueue): Failed to receive message from message queue: Argument list "
    "too long";

TEST_F(MsgQueueCleanOversize, IsOneLineAndTheNextQueueFollows) {
    PutOversize(1, kHour << 20 | 1);
    Put(2, kHour, 2);
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour), 0);
    ExpectLog({kReceiveFailed, Failed(1), Dropped(2, 2), Cleaned(1, 2)});
}

TEST_F(MsgQueueCleanOversize, StopsTheScanOfALaterHour) {
    PutOversize(1, (kHour + 1) << 20 | 5);
    Put(1, kHour + 1, 4);
    Put(1, kHour + 1, 6);
    EXPECT_EQ(ZORCleanAllMsgQueue(kHour + 1), 0);
    ExpectLog({Dropped(1, 4), kReceiveFailed, Cleaned(1, 1), Failed(1)});
    EXPECT_EQ(queue_end::Count(1), 2);
}

}  // namespace
