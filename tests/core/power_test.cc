// Restarting and stopping the local node, and shutting the remote one down.

#include "core/command_fixture.h"

namespace {

constexpr char kRebootFlag[] = "/tmp/zor/reboot";
constexpr char kPoweroffFlag[] = "/tmp/zor/poweroff";
constexpr char kNotFlashMode[] =
    "Local host is not in flash mode (role is not unknown, passive, junior";
constexpr char kShutdown[] = "KEVAZORShutdownRemoteAndWaitDisconnectedOnActive";

class Power : public CommandTest {
  protected:
    static void SetRole(const std::string &role) { WriteStatus("local_role=\"" + role + "\"\n"); }

    // An active node, and what it sees of the remote one.
    static void SetRemote(const char *net, const char *expander) {
        WriteStatus(std::string("local_role=\"1\"\nis_remote_alive_by_net=\"") + net +
                    "\"\nis_remote_alive_by_expander_hb=\"" + expander + "\"\n");
    }
};

TEST_F(Power, FlashModeNodesRaiseTheFlag) {
    for (const char *role : {"0", "2", "4", "x"}) {
        SetRole(role);
        const std::string number = role == std::string("x") ? "0" : role;
        EXPECT_EQ(ZORFlashModeReboot(), 0);
        EXPECT_TRUE(Exists(kRebootFlag));
        EXPECT_FALSE(Exists(kPoweroffFlag));
        EXPECT_EQ(ZORFlashModePoweroff(), 0);
        EXPECT_TRUE(Exists(kPoweroffFlag));
        ExpectLog(
            {Error("ZORFlashModeReboot", "============ now reboot local host, role: " + number),
             Error("ZORFlashModePoweroff",
                   "============ now poweroff local host, role: " + number)});
        std::remove(kRebootFlag);
        std::remove(kPoweroffFlag);
    }
}

TEST_F(Power, ServingNodesRefuse) {
    for (const char *role : {"1", "3", "5", "-1"}) {
        SetRole(role);
        EXPECT_EQ(ZORFlashModeReboot(), -1);
        EXPECT_EQ(ZORFlashModePoweroff(), -1);
        EXPECT_EQ(KEVAZORPassiveReboot(), -1);
        EXPECT_EQ(KEVAZORPassivePoweroff(), -1);
        ExpectLog({Error("ZORFlashModeReboot", kNotFlashMode),
                   Error("ZORFlashModePoweroff", kNotFlashMode),
                   Error("ZORFlashModeReboot", kNotFlashMode),
                   Error("ZORFlashModePoweroff", kNotFlashMode)});
        EXPECT_FALSE(Exists(kRebootFlag));
        EXPECT_FALSE(Exists(kPoweroffFlag));
    }
}

TEST_F(Power, PassiveNodeNeedsItsManager) {
    SetRole("2");
    EXPECT_EQ(KEVAZORPassiveReboot(), 0);
    EXPECT_EQ(KEVAZORPassivePoweroff(), 0);
    EXPECT_TRUE(Exists(kRebootFlag));
    EXPECT_TRUE(Exists(kPoweroffFlag));
    log_.Take();
    RemoveManager();
    EXPECT_EQ(KEVAZORPassiveReboot(), -1);
    EXPECT_EQ(KEVAZORPassivePoweroff(), -1);
    ExpectLog(
        {Notice("KEVAZORPassiveReboot", "ZOR Manager is not running. We can't reboot passive"),
         Notice("KEVAZORPassivePoweroff",
                "ZOR Manager is not running. We can't poweroff passive")});
}

TEST_F(Power, FlagThatCannotBeRaisedIsReported) {
    SetRole("2");
    {
        const UntouchableFile reboot(kRebootFlag);
        EXPECT_EQ(ZORFlashModeReboot(), -1);
    }
    const UntouchableFile poweroff(kPoweroffFlag);
    EXPECT_EQ(ZORFlashModePoweroff(), -1);
    ExpectLog({Error("ZORFlashModeReboot", "============ now reboot local host, role: 2"),
               Error("ZORFlashModeReboot", "Failed to touch the file '/tmp/zor/reboot'"),
               Error("ZORFlashModePoweroff", "============ now poweroff local host, role: 2"),
               Error("ZORFlashModePoweroff", "Failed to touch the file '/tmp/zor/poweroff'")});
}

TEST_F(Power, RemoteThatIsGoneNeedsNoShutdown) {
    SetRemote("no", "no");
    EXPECT_EQ(KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(), 0);
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    ExpectLog({});
}

TEST_F(Power, ShutdownWaitsUntilTheRemoteNodeIsGone) {
    SetRemote("yes", "yes");
    virtual_time::Start([](int sleep) {
        if (sleep == 1) SetRemote("no", "yes");
        if (sleep == 3) SetRemote("no", "no");
    });
    EXPECT_EQ(KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 4);
    TakeRequest();
    EXPECT_EQ(request_.commandId, 14u);
    EXPECT_EQ(request_.wait, 0u);
    EXPECT_EQ(request_.payloadLength, 0u);
    ExpectLog({});
}

TEST_F(Power, ShutdownIsSentWithoutTheNetworkToo) {
    SetRemote("no", "yes");
    virtual_time::Start([](int) { SetRemote("no", "no"); });
    EXPECT_EQ(KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(), 0);
    ExpectLog({Error(kShutdown, "Remote alive but communication not OK.")});
    TakeRequest();
    EXPECT_EQ(request_.commandId, 14u);
}

TEST_F(Power, ShutdownGivesUpAfterThirtyOneTests) {
    SetRemote("yes", "no");
    EXPECT_EQ(KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(), -4);
    EXPECT_EQ(virtual_time::Sleeps(), 30);
    EXPECT_EQ(virtual_time::SleptMilliseconds(), 30000);
    ExpectLog({Error(kShutdown, "WAIT REMOTE SHUTDOWN TIMEOUT")});
    virtual_time::Start([](int sleep) {
        if (sleep == 29) SetRemote("no", "no");
    });
    EXPECT_EQ(KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(), 0) << "the last test sees it";
}

TEST_F(Power, ShutdownChecksInOrder) {
    SetRole("2");
    EXPECT_EQ(KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(), -1);
    ExpectLog(
        {Error(kShutdown, "Local is not active. should not call shut down remote on active")});
    WriteText(kStatusFile, "local_role=\"1\"\nis_remote_alive_by_net=\"yes\"\n");
    EXPECT_EQ(KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(), -2);
    ExpectLog({NotReady(), Error(kShutdown, "Failed to send command to remote with code: -1")});
    RemoveManager();
    EXPECT_EQ(KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(), -3);
    ExpectLog(
        {Notice(kShutdown, "ZOR Manager is not running. Message queue is not ready for send req")});
    ForbidTwoNodes();
    EXPECT_EQ(KEVAZORShutdownRemoteAndWaitDisconnectedOnActive(), -1);
    ExpectLog({Error(kShutdown, "ZOR is not supported on this model")});
}

}  // namespace
