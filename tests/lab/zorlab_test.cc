// The development manager, through the queues and ha.status.

#include <signal.h>
#include <sys/ipc.h>
#include <sys/msg.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <regex>

#include "support/command_run.h"
#include "support/node_test.h"
#include "support/queue_end.h"
#include "zor_conf.h"
#include "zor_core.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace fs = std::filesystem;

namespace {

constexpr uint32_t kPing = 1000;

class ZorLab : public NodeTest {
  protected:
    ZorLab() {
        UseBuiltPrograms();
        virtual_time::Start([](int) { SleepMilliseconds(30); });
        fs::remove_all(kRuntimeFolder);
    }
    ~ZorLab() override {
        free(request_.outputData);
        manager_.reset();
        queue_end::RemoveAll();
    }

    void StartManager(const std::vector<std::string> &more = {}) {
        std::vector<std::string> words = {"zorlab", "manager"};
        words.insert(words.end(), more.begin(), more.end());
        manager_ = std::make_unique<BackgroundCommand>(words);
        ASSERT_TRUE(WaitFor([this] {
            return manager_->Output().find("is served") != std::string::npos;
        })) << manager_->Output();
        log_.Take();
    }

    void Tell(uint32_t command, const std::string &behaviour) {
        ASSERT_EQ(RunCommand({"zorlab", "tell", std::to_string(command), behaviour}).exit_code, 0);
    }

    int32_t Ask(uint32_t command, const std::string &payload = "", int64_t timeout = 100) {
        free(request_.outputData);
        request_ = {};
        request_.commandId = command;
        request_.inputData = payload.empty() ? nullptr : payload.data();
        request_.inputSize = static_cast<uint32_t>(payload.size());
        request_.wait = 1;
        request_.timeout = timeout;
        return ZORSendReqToMgr(&request_);
    }

    std::string Output() const {
        return {static_cast<const char *>(request_.outputData), request_.outputSize};
    }

    std::unique_ptr<BackgroundCommand> manager_;
    ZORMgrRequest request_ = {};
};

TEST_F(ZorLab, PublishesTheNodeFromTheRealMachine) {
    StartManager({"--role", "2"});
    char value[306] = {};
    EXPECT_EQ(ZORGetLocalRole(), 2);
    EXPECT_EQ(ZORGetHAStatus(2, ZOR_STATUS_HOST_VERSION, value, sizeof value), 1);
    EXPECT_STREQ(value, "6.1-1000");
    // One name, state and speed for each port, and a speed for the heartbeat link.
    const auto count = [&](uint32_t key) {
        EXPECT_EQ(ZORGetHAStatus(2, key, value, sizeof value), 1);
        const std::string text = value;
        return text.empty() ? 0 : std::count(text.begin(), text.end(), ',') + 1;
    };
    const auto ports = count(ZOR_STATUS_HOST_IFNAME);
    EXPECT_EQ(count(ZOR_STATUS_HOST_IF_STATUS), ports);
    EXPECT_EQ(count(ZOR_STATUS_HOST_IF_SPEED), ports + 1);
    EXPECT_TRUE(std::regex_search(ReadText("/tmp/zor/hw_info"),
                                  std::regex(R"(\[LOCAL_HOST\]\n\tMemory=[1-9]\d+\n)")));
    uint32_t alive = 1;
    EXPECT_EQ(KEVAZORIsRemoteAlive(&alive), 0);
    EXPECT_EQ(alive, 0u);
}

TEST_F(ZorLab, PublishesInterfacesThatTheLibraryCanRead) {
    StartManager();
    ZORIfInfo info;
    EXPECT_EQ(ZORGetConfIfInfo(&info), 0);
    EXPECT_EQ(info.ports[0].localSpeed, -1) << "a lone node has no heartbeat link";
    for (int32_t entry = 0; entry < info.interfaceCount; ++entry)
        EXPECT_EQ(info.interfaces[entry].monitored, 1);
    char states[144] = "";
    EXPECT_EQ(ZORGetHAStatus(1, ZOR_STATUS_MONITOR_SERVICE_STATUS, states, sizeof states), 1);
    EXPECT_TRUE(std::regex_match(states, std::regex("(running|stopped)(,(running|stopped)){4}")))
        << states;
    ExpectLog({});
}

TEST_F(ZorLab, FormsAClusterAndKeepsWhatIsThere) {
    WriteText(kConfFile, "monitor_if=\"yes,no\"\n");
    StartManager({"--peer", "in-process"});
    char value[162] = "";
    EXPECT_EQ(KEVAZORGetSerialNumber(0, value, sizeof value), 0);
    EXPECT_STREQ(value, "NODE0001");
    EXPECT_EQ(KEVAZORGetRemoteOriginalSN(value, sizeof value), 0);
    EXPECT_STREQ(value, "PEERNODE000001");
    EXPECT_EQ(ZORGetHAConf(1, ZOR_CONF_MONITOR_IF, value, sizeof value), 1);
    EXPECT_STREQ(value, "yes,no");
    EXPECT_EQ(ZORGetHAConf(1, ZOR_CONF_MONITOR_SERVICE, value, sizeof value), 1);
    EXPECT_EQ(std::string(value).size(), 16 * 2 + 15u);
    ExpectLog({});
}

TEST_F(ZorLab, ExchangesStatusAndConfigurationWithItsPeer) {
    StartManager({"--peer", "in-process"});
    uint32_t alive = 0;
    EXPECT_EQ(KEVAZORIsRemoteAlive(&alive), 0);
    EXPECT_EQ(alive, 1u);
    EXPECT_EQ(ZORGetRemoteRole(), ZOR_ROLE_PASSIVE);
    EXPECT_TRUE(WaitFor([] { return !ZORIsConfChanged(); }));
    const auto sent = [&] {
        const std::string output = manager_->Output();
        int count = 0;
        for (size_t at = 0; (at = output.find("went to the peer", at)) != std::string::npos; ++at)
            ++count;
        return count;
    };
    const int before = sent();
    EXPECT_GE(before, 1);
    ASSERT_EQ(ZORSetHAConf(1, ZOR_CONF_MONITOR_IF, "no"), 0);
    EXPECT_TRUE(WaitFor([&] { return sent() == before + 1; }));
    EXPECT_FALSE(ZORIsConfChanged());
}

TEST_F(ZorLab, PassiveNodeLeavesTheConfigurationAlone) {
    StartManager({"--role", "2", "--peer", "in-process"});
    EXPECT_FALSE(Exists(kConfFile));
    EXPECT_EQ(ZORGetRemoteRole(), ZOR_ROLE_ACTIVE);
}

TEST_F(ZorLab, AppliesABonding) {
    StartManager();
    EXPECT_EQ(KEVAZORBonding("nonsense", 8), -1);
    EXPECT_EQ(KEVAZORBondingDone(1), -1) << "none is under way";
    log_.Take();
    EXPECT_EQ(KEVAZORBonding("bond1:eth0:eth1,eth3", 20), 0);
    EXPECT_TRUE(ZORIsNetConfChanging());
    EXPECT_EQ(KEVAZORBondingDone(1), 0);
    EXPECT_FALSE(ZORIsNetConfChanging());
    EXPECT_TRUE(WaitFor([] {
        // The last of the lists; the names come before it.
        char statics[306] = "";
        ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_IF_HAS_STATIC_IP, statics, sizeof statics);
        return ReadText(kStatusFile).find("local_host_ifname=\"bond1:eth0:eth1,eth3\"") !=
                   std::string::npos &&
               std::count(statics, statics + strlen(statics), ',') == 1;
    }));
    ZORIfInfo info;
    EXPECT_EQ(ZORGetConfIfInfo(&info), 0);
    EXPECT_EQ(info.bonds[1].memberCount, 2);
    EXPECT_EQ(info.interfaceCount, 2);
    ExpectLog({});
}

TEST_F(ZorLab, AnswersWithThePayloadOfAPing) {
    StartManager();
    EXPECT_EQ(Ask(kPing, "hello"), 0);
    EXPECT_EQ(Output(), "hello");
    EXPECT_EQ(Ask(kPing), 0);
    EXPECT_EQ(request_.outputData, nullptr);
}

TEST_F(ZorLab, RefusesWhatItDoesNotServe) {
    StartManager();
    for (const uint32_t command : {33u, 60u, 77u, 3u}) EXPECT_EQ(Ask(command), -2);
    ExpectLog({});
}

TEST_F(ZorLab, RefusesASnapshotRequestWithoutAType) {
    StartManager();
    EXPECT_EQ(Ask(50, "xx"), -2);
    EXPECT_NE(manager_->Output().find("no snapshot type"), std::string::npos);
    EXPECT_EQ(Ask(50, std::string("\3\0\0\0", 4)), -2);
}

TEST_F(ZorLab, CanBeToldToRefuse) {
    StartManager();
    Tell(kPing, "refuse");
    EXPECT_EQ(Ask(kPing, "x"), -2);
    Tell(kPing, "ordinary");
    EXPECT_EQ(Ask(kPing, "x"), 0);
}

TEST_F(ZorLab, CanBeToldToAnswerTwice) {
    StartManager();
    Tell(kPing, "twice");
    EXPECT_EQ(Ask(kPing, "x"), 0);
    EXPECT_TRUE(WaitFor([] { return queue_end::Count(queue_end::kAnswers) == 1; }));
    Tell(kPing, "ordinary");
    SleepMilliseconds(1100);  // another second of send time
    EXPECT_EQ(Ask(kPing, "y"), 0);
    EXPECT_EQ(Output(), "y");
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("Send time is differecne"), std::string::npos);
}

TEST_F(ZorLab, CanBeToldToAnswerWithAnotherSendTime) {
    StartManager();
    Tell(kPing, "wrong-time");
    EXPECT_EQ(Ask(kPing, "x"), 0);
    EXPECT_EQ(log_.Take().size(), 1u);
}

TEST_F(ZorLab, CanBeToldToAnswerOversized) {
    StartManager();
    Tell(kPing, "oversized");
    EXPECT_EQ(Ask(kPing, "x"), -2);
    EXPECT_EQ(request_.outputSize, 32401u);
}

TEST_F(ZorLab, CanBeToldToDelay) {
    StartManager();
    Tell(kPing, "delay:1");
    EXPECT_EQ(Ask(kPing, "x", 2), -3) << "not within this test's short seconds";
    EXPECT_EQ(Ask(kPing, "x", 200), 0);
}

TEST_F(ZorLab, HonoursTheCancellationOfADroppedCommand) {
    StartManager();
    Tell(24, "drop");
    EXPECT_EQ(Ask(24, "", 1), -3);
    EXPECT_TRUE(WaitFor([&] {
        return manager_->Output().find("done, cancels command 24") != std::string::npos;
    })) << manager_->Output();
    ExpectLog({});
}

TEST_F(ZorLab, HonoursTheCancellationOfADelayedCommand) {
    StartManager();
    Tell(24, "delay:1");
    EXPECT_EQ(Ask(24, "", 1), -3);
    SleepMilliseconds(1500);
    EXPECT_EQ(queue_end::Count(queue_end::kAnswers), 0) << "the late answer is not sent";
}

TEST_F(ZorLab, TellsACancellationOfNothing) {
    StartManager();
    const ZORCancelPayload cancel = {24, 0, 1, 1, 3, 0};
    EXPECT_EQ(Ask(40, std::string(reinterpret_cast<const char *>(&cancel), sizeof cancel)), -2);
    EXPECT_NE(manager_->Output().find("which is not pending"), std::string::npos);
    EXPECT_EQ(Ask(40, "short"), -2);
}

TEST_F(ZorLab, CommandsOfAHeldGroupAreRefused) {
    StartManager();
    FILE *lock = nullptr;
    ASSERT_EQ(ZORChkIfLockAndLock(25, 0, &lock), 0);
    EXPECT_EQ(Ask(24), -2);
    EXPECT_NE(manager_->Output().find("another command of its group"), std::string::npos);
    ZORChkIfUnlockAndUnlock(25, &lock);
    log_.Take();
}

TEST_F(ZorLab, RequestWithoutWaitGetsNoAnswer) {
    StartManager();
    ZORMgrRequest request = {};
    request.commandId = kPing;
    EXPECT_EQ(ZORSendReqToMgr(&request), 0);
    EXPECT_TRUE(
        WaitFor([&] { return manager_->Output().find("command 1000") != std::string::npos; }));
    EXPECT_EQ(queue_end::Count(queue_end::kAnswers), 0);
}

TEST_F(ZorLab, SurvivesMessagesThatAreNone) {
    StartManager();
    ZORMgrMessage odd = {};
    odd.identity = 5;
    odd.payloadLength = 0xffffffff;
    odd.commandId = kPing;
    odd.wait = 1;
    memset(odd.processName, 'x', sizeof odd.processName);
    queue_end::Put(queue_end::kRequests, odd);
    queue_end::Put(queue_end::kRequests, odd, 1);
    EXPECT_TRUE(WaitFor([] { return queue_end::Count(queue_end::kRequests) == 0; }));
    EXPECT_EQ(Ask(kPing, "still here"), 0);
}

TEST_F(ZorLab, CleanStopRemovesFilesAndQueues) {
    StartManager();
    const int queue = msgget(ftok(kKeyFile, 1), 0);
    ASSERT_GE(queue, 0);
    EXPECT_EQ(RunCommand({"zorlab", "stop"}).exit_code, 0);
    EXPECT_FALSE(Exists(kRuntimeFolder));
    struct msqid_ds status;
    EXPECT_NE(msgctl(queue, IPC_STAT, &status), 0);
    EXPECT_EQ(manager_->End(0), 0);
}

TEST_F(ZorLab, SecondManagerIsRefused) {
    StartManager();
    const CommandResult second = RunCommand({"zorlab", "manager"});
    EXPECT_EQ(second.exit_code, 1);
    EXPECT_NE(second.errors.find("a manager runs already"), std::string::npos);
    EXPECT_TRUE(Exists(kStatusFile));
}

TEST_F(ZorLab, StartsAfterACrash) {
    StartManager();
    const int queue = msgget(ftok(kKeyFile, 1), 0);
    manager_->End(SIGKILL);
    EXPECT_TRUE(Exists(kRuntimeFolder));
    StartManager();
    EXPECT_EQ(Ask(kPing, "x"), 0);
    struct msqid_ds status;
    EXPECT_NE(msgctl(queue, IPC_STAT, &status), 0) << "the crashed manager's queue is gone";
}

TEST_F(ZorLab, LimitsThatAreTooSmallAreReportedBeforeAnyQueueIsMade) {
    const std::string before = ReadText("/proc/sys/kernel/msgmax");
    WriteText("/proc/sys/kernel/msgmax", "8192");
    const CommandResult result = RunCommand({"zorlab", "manager"});
    WriteText("/proc/sys/kernel/msgmax", before);
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_NE(result.errors.find("kernel.msgmax is 8192 and must be 32536 or more"),
              std::string::npos)
        << result.errors;
    EXPECT_FALSE(Exists(kRuntimeFolder));
}

TEST_F(ZorLab, WrongWordsAreRefused) {
    EXPECT_EQ(RunCommand({"zorlab", "tell", "17", "nonsense"}).exit_code, 2);
    EXPECT_EQ(RunCommand({"zorlab", "tell", "17", "delay:x"}).exit_code, 2);
    EXPECT_EQ(RunCommand({"zorlab", "tell", "17", "delay:-1"}).exit_code, 2);
    EXPECT_EQ(RunCommand({"zorlab", "tell", "17", "drop"}).exit_code, 1) << "no manager";
    EXPECT_EQ(RunCommand({"zorlab", "stop"}).exit_code, 1);
}

}  // namespace
