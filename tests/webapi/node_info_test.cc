// The snapshots of the nodes.

#include <filesystem>

#include "webapi/webapi_fixture.h"

namespace fs = std::filesystem;

namespace {

constexpr char kBuilder[] = "ZORGetNodeInfo";

class NodeInfo : public WebapiTest {
  protected:
    NodeInfo() {
        Set("failed_local_interfaces", "");
        Set("failed_remote_interfaces", "");
        Answer(2, "NODE0002", 2, 2);
    }

    void Answer(int32_t role, const char *serial, int32_t status_a, int32_t status_b) {
        answer_ = {};
        answer_.role = role;
        snprintf(answer_.serial, sizeof answer_.serial, "%s", serial);
        answer_.valueA = 71;
        answer_.valueB = 72;
        answer_.statusA = status_a;
        answer_.statusB = status_b;
    }

    ZORNodeInfo Local() {
        AnswerWith(Bytes(answer_));
        EXPECT_EQ(ZORUILoadUI(ZOR_UI_LOCAL_NODE), 0);
        return ReadRecord<ZORNodeInfo>(kLocalCache);
    }
    ZORNodeInfo Remote() {
        AnswerWith(Bytes(answer_));
        EXPECT_EQ(ZORUILoadUI(ZOR_UI_REMOTE_NODE), 0);
        return ReadRecord<ZORNodeInfo>(kRemoteCache);
    }

    // The state of the remote node, and whether the manager was asked.
    int32_t RemoteState(bool is_asked = false) {
        request_ = {};
        const ZORNodeInfo info = Remote();
        EXPECT_EQ(request_.commandId == 33, is_asked);
        if (!is_asked) {
            EXPECT_EQ(info.replyStatusA, 9);
        }
        return info.nodeState;
    }

    void SetTransition(int transition) { Set("ha_runtime_status", std::to_string(transition | 1)); }
    void SetSwitching(double seconds_ago) {
        Set("is_switchover_remote_reboot",
            std::to_string(static_cast<double>(time(nullptr)) - seconds_ago));
    }
    void SetRemote(const char *net, const char *expander, const char *ready) {
        Set("is_remote_alive_by_net", net);
        Set("is_remote_alive_by_expander_hb", expander);
        Set("is_remote_handler_ready", ready);
    }

    ZORNodeInfoAnswer answer_;
};

TEST_F(NodeInfo, LocalNodeIsAsAnswered) {
    Answer(1, "ANOTHER", 2, 2);
    const ZORNodeInfo info = Local();
    EXPECT_EQ(request_.commandId, 33u);
    EXPECT_EQ(request_.wait, 1u);
    EXPECT_EQ(request_.payloadLength, 4u);
    EXPECT_EQ(request_.payload[0], 1);
    EXPECT_STREQ(info.serial, "NODE0001") << "its own, not the answer's";
    EXPECT_EQ(info.role, 1);
    EXPECT_EQ(info.nodeIndex, 0);
    EXPECT_EQ(info.replyStatusA, 2);
    EXPECT_EQ(info.replyStatusB, 2);
    EXPECT_EQ(info.replyValueA, 71);
    EXPECT_EQ(info.replyValueB, 72);
    EXPECT_EQ(info.networkStatus, 2);
    EXPECT_EQ(info.storageStatus, 2);
    EXPECT_EQ(info.nodeState, 2);
    ExpectLog({});
}

TEST_F(NodeInfo, StatusWordsDecideTheState) {
    for (const int32_t a : {2, 3, 9}) {
        for (const int32_t b : {2, 9}) {
            Answer(2, "NODE0002", a, b);
            EXPECT_EQ(Local().nodeState, a == 2 && b == 2 ? 2 : 3);
            EXPECT_EQ(Remote().nodeState, a == 2 && b == 2 ? 2 : 3);
        }
    }
}

TEST_F(NodeInfo, RemoteNodeIsAsAnswered) {
    const ZORNodeInfo info = Remote();
    EXPECT_EQ(request_.payload[0], 2);
    EXPECT_STREQ(info.serial, "NODE0002");
    EXPECT_EQ(info.role, 2);
    EXPECT_EQ(info.nodeIndex, 1);
    EXPECT_EQ(info.replyValueA, 71);
    EXPECT_EQ(info.networkStatus, 2);
    EXPECT_EQ(info.storageStatus, 2);
    EXPECT_EQ(info.nodeState, 2);
    ExpectLog({});
}

TEST_F(NodeInfo, PositionsByHostType) {
    struct Row {
        const char *type;
        int32_t local;
        int32_t remote;
    };
    for (const Row &row : {Row{"8", 0, 1}, Row{"16", 1, 0}, Row{"0", -1, -1}, Row{"24", -1, -1}}) {
        WriteText(kHardwareFile, std::string("[LOCAL_HOST]\n\tHostType=") + row.type + "\n");
        EXPECT_EQ(Local().nodeIndex, row.local);
        EXPECT_EQ(Remote().nodeIndex, row.remote);
    }
}

TEST_F(NodeInfo, NetworkAndStorageOfEachNode) {
    Set("failed_local_interfaces", "eth0");
    WriteText(kHardwareFile,
              "[LOCAL_HOST]\n\tMemory=1\n\tEncListStatus=2\n"
              "[REMOTE_HOST]\n\tMemory=1\n\tEncListStatus=0\n");
    EXPECT_EQ(Local().networkStatus, 3);
    EXPECT_EQ(Local().storageStatus, 3);
    ExpectLog({});
    EXPECT_EQ(Remote().networkStatus, 2);
    EXPECT_EQ(Remote().storageStatus, 0);
    ExpectLog({Notice("getStorageStatus", "Failed to load link status, role:2"),
               Notice("getStorageStatus", "Failed to load link status, role:2")});
    Unset("failed_remote_interfaces");
    EXPECT_EQ(Remote().networkStatus, 0);
}

// Each row of the table with those before it absent.
TEST_F(NodeInfo, RemoteStatesInTheirOrder) {
    SetRemote("yes", "no", "yes");
    EXPECT_EQ(RemoteState(true), 14);
    SetRemote("yes", "yes", "no");
    EXPECT_EQ(RemoteState(), 9);
    SetRemote("no", "yes", "yes");
    EXPECT_EQ(RemoteState(), 9);
    SetRemote("no", "no", "yes");
    EXPECT_EQ(RemoteState(), 5);
    SetSwitching(301);
    EXPECT_EQ(RemoteState(), 17);
    SetSwitching(10);
    EXPECT_EQ(RemoteState(), 11);
    SetTransition(0x20);
    EXPECT_EQ(RemoteState(), 10);
    SetTransition(0x60);
    EXPECT_EQ(RemoteState(), 10);
    SetTransition(0x50);
    EXPECT_EQ(RemoteState(), 15);
    SetTransition(0x40);
    EXPECT_EQ(RemoteState(), 12);
    SetTransition(0x10);
    EXPECT_EQ(RemoteState(), 11) << "a transition that the card does not show";
    Set("remote_boot_error", "");
    EXPECT_EQ(RemoteState(), 16);
    Set("local_boot_stage", "1");
    EXPECT_EQ(RemoteState(), 9);
}

TEST_F(NodeInfo, RemoteNodeThatIsNotConfigured) {
    for (const bool is_empty : {false, true}) {
        conf_.erase("sn1");
        if (is_empty) conf_["sn1"] = "";
        SetRemote("no", "no", "no");
        const ZORNodeInfo info = Remote();
        EXPECT_EQ(info.nodeState, 6);
        EXPECT_EQ(info.role, 0);
        SetRemote("no", "yes", "yes");
        EXPECT_EQ(RemoteState(), 0);
        SetRemote("yes", "yes", "yes");
        EXPECT_EQ(RemoteState(true), 0) << "nobody's serial number is the right one";
    }
    ExpectLog({});
}

TEST_F(NodeInfo, AnotherSerialIsAForeignNode) {
    Answer(2, "NODE0003", 2, 2);
    const ZORNodeInfo info = Remote();
    EXPECT_EQ(info.nodeState, 0);
    EXPECT_STREQ(info.serial, "NODE0003");
    SetRemote("yes", "no", "yes");
    EXPECT_EQ(RemoteState(true), 0) << "before the expander is looked at";
}

TEST_F(NodeInfo, UnterminatedAnswerIsCut) {
    memset(answer_.serial, 'x', sizeof answer_.serial);
    EXPECT_EQ(std::string(Remote().serial), std::string(35, 'x'));
}

TEST_F(NodeInfo, FailedQuestionIsWrittenAsFarAsItGoes) {
    virtual_time::Start();  // nobody answers
    EXPECT_EQ(ZORUILoadUI(ZOR_UI_LOCAL_NODE), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 6) << "five seconds";
    const ZORNodeInfo local = ReadRecord<ZORNodeInfo>(kLocalCache);
    EXPECT_EQ(local.nodeState, 6);
    EXPECT_EQ(local.nodeIndex, -1);
    EXPECT_STREQ(local.serial, "");
    EXPECT_EQ(local.replyStatusA, 9);
    ExpectLog({Error(kBuilder, "Failed to command ask node info for ui with return code: -3")});
    AnswerWith("", 0);
    EXPECT_EQ(ZORUILoadUI(ZOR_UI_REMOTE_NODE), 0);
    const ZORNodeInfo remote = ReadRecord<ZORNodeInfo>(kRemoteCache);
    EXPECT_EQ(remote.nodeState, 9);
    EXPECT_EQ(remote.nodeIndex, 1);
    EXPECT_EQ(remote.role, 2);
    ExpectLog({Error(kBuilder, "Failed to command ask node info for ui with return code: -2")});
}

TEST_F(NodeInfo, AnswersOfTheWrongSizeAreNotWritten) {
    for (const size_t size : {0u, 1u, 55u, 57u, 2000u}) {
        AnswerWith(std::string(size, 'a'));
        EXPECT_EQ(ZORUILoadUI(ZOR_UI_LOCAL_NODE), -1);
        EXPECT_EQ(ZORUILoadUI(ZOR_UI_REMOTE_NODE), -1);
        EXPECT_FALSE(Exists(kLocalCache));
        EXPECT_FALSE(Exists(kRemoteCache));
        const std::string line =
            Error(kBuilder, "wrongin size of return, 56 " + std::to_string(size));
        const std::string failed = Error("ZORUILoadUI", "Failed to get node Info");
        ExpectLog({line, failed, line, failed});
    }
}

TEST_F(NodeInfo, MissingSerialIsADash) {
    // The serial is there for the question and gone for the card.
    virtual_time::Start([this](int) {
        const auto request = queue_end::Take();
        if (!request) return;
        fs::remove(kSerialFile);
        queue_end::Put(queue_end::kAnswers, queue_end::AnswerTo(*request, 1, Bytes(answer_)));
    });
    EXPECT_EQ(ZORUILoadUI(ZOR_UI_LOCAL_NODE), 0);
    EXPECT_STREQ(ReadRecord<ZORNodeInfo>(kLocalCache).serial, "-");
    EXPECT_EQ(log_.Take().back(), Error(kBuilder, "Failed to get serial number"));
}

TEST_F(NodeInfo, ConfigurationThatCannotBeReadIsReported) {
    conf_ = {{"sn0", "A"}, {"sn1", "B"}};
    Write();
    EXPECT_EQ(Remote().nodeState, 0);
    const Lines lines = log_.Take();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), Error(kBuilder, "Failed to read passive sn!"));
}

// --- The getter's defaults

TEST_F(NodeInfo, DefaultsWhenNothingIsFresh) {
    WriteText(kFlags[0], "");
    ZORNodeInfo info;
    for (const char *type : {"8", "16", "0"}) {
        WriteText(kHardwareFile, std::string("[LOCAL_HOST]\n\tHostType=") + type + "\n");
        const bool is_first = type == std::string("8");
        memset(&info, 0x55, sizeof info);
        EXPECT_EQ(KEVAZORGetNodeInfoCached(1, &info, 0), 0);
        EXPECT_EQ(info.role, 1);
        EXPECT_EQ(info.nodeIndex, is_first ? 0 : 1);
        EXPECT_EQ(std::string(info.serial, sizeof info.serial), std::string(36, '\0'));
        for (const int32_t field : {info.replyStatusA, info.replyStatusB, info.networkStatus,
                                    info.storageStatus, info.nodeState})
            EXPECT_EQ(field, 9);
        EXPECT_EQ(info.replyValueA, 0);
        EXPECT_EQ(info.replyValueB, 0);
        memset(&info, 0x55, sizeof info);
        EXPECT_EQ(KEVAZORGetNodeInfoCached(2, &info, 0), 0);
        EXPECT_EQ(info.role, 0x55555555) << "left as it was";
        EXPECT_EQ(info.nodeIndex, is_first ? 1 : 0);
    }
    ExpectLog({});
}

}  // namespace
