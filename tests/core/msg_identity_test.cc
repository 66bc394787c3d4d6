// The identity of a thread's messages.

#include <sys/syscall.h>
#include <unistd.h>

#include <thread>

#include "support/node_test.h"
#include "support/system_calls.h"
#include "zor_core.h"

namespace {

using MsgIdentity = NodeTest;

TEST_F(MsgIdentity, TimeCodeIsWholeHoursSinceBootPlusOne) {
    struct Row {
        long uptime;
        int64_t code;
    };
    for (const Row &row : {Row{0, 1}, Row{3599, 1}, Row{3600, 2}, Row{7199, 2}, Row{86400, 25}}) {
        system_calls::SetUptime(row.uptime);
        EXPECT_EQ(ZORGetTimeCode(), row.code) << row.uptime;
    }
    ExpectLog({});
}

TEST_F(MsgIdentity, TimeCodeHasFortyThreeBits) {
    system_calls::SetUptime(0x7fffffffffffffffL);
    EXPECT_EQ(ZORGetTimeCode(), (0x7fffffffffffffffL / 3600 + 1) & 0x7ffffffffffL);
}

TEST_F(MsgIdentity, UptimeThatCannotBeReadCountsAsZero) {
    system_calls::SetUptime(7200);
    system_calls::FailSysinfo();
    EXPECT_EQ(ZORGetTimeCode(), 1);
    ExpectLog({"ERROR zor_core(ZORGetTimeCode): Failed to get sysinfo"});
}

TEST_F(MsgIdentity, IsTimeCodeAndThreadId) {
    system_calls::SetUptime(3600);
    system_calls::SetThreadId(0x12345);
    EXPECT_EQ(ZORGetMsgIdenticalID(), 0x212345);
    system_calls::SetThreadId(0x100000);
    EXPECT_EQ(ZORGetMsgIdenticalID(), 0x300000) << "the largest thread id is joined, not added";
    ExpectLog({});
}

TEST_F(MsgIdentity, ThreadIdAboveTheLimitIsRefused) {
    system_calls::SetThreadId(0x100001);
    EXPECT_EQ(ZORGetMsgIdenticalID(), -1);
    ExpectLog({"ERROR zor_core(ZORGetMsgIdenticalID): Thread id(1048577) > MAXTID(1048576)"});
}

TEST_F(MsgIdentity, IsThatOfTheRealThread) {
    int64_t identity = 0;
    pid_t thread_id = 0;
    std::thread([&] {
        identity = ZORGetMsgIdenticalID();
        thread_id = static_cast<pid_t>(syscall(SYS_gettid));
    }).join();
    EXPECT_EQ(identity & 0xfffff, thread_id);
    EXPECT_EQ(ZORGetMsgIdenticalID() & 0xfffff, syscall(SYS_gettid));
    EXPECT_EQ(ZORGetMsgIdenticalID() >> 20, ZORGetTimeCode());
}

}  // namespace
