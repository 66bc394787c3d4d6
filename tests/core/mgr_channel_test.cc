// Requests to the manager: what is checked before they go, and what is sent.

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

namespace {

constexpr char kDualheadSetting[] = "/usr/keva/etc/kevacore-stand-in.conf";

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
    if (!allocation::FailNextOf(sizeof(ZORMgrMessage)))
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

}  // namespace
