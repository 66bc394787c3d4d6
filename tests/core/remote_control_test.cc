// Passwords and fans of the remote node, the system disk, the reset button.

#include <cstring>

#include "core/command_fixture.h"

namespace {

class RemoteControl : public CommandTest {
  protected:
    void ExpectRequest(uint32_t command) {
        TakeRequest();
        EXPECT_EQ(request_.commandId, command);
        EXPECT_EQ(request_.wait, 0u);
        EXPECT_EQ(request_.payloadLength, 0u);
    }
};

TEST_F(RemoteControl, PasswordsAreSynchronisedByTheManager) {
    WriteStatus("local_role=\"1\"\nis_remote_alive_by_net=\"yes\"\n");
    EXPECT_EQ(KEVAZORSyncPasswdToRemote(), 0);
    ExpectRequest(42);
    ExpectLog({});
}

TEST_F(RemoteControl, PasswordsNeedTheRemoteNodeAndTheActiveRole) {
    constexpr char kFunction[] = "KEVAZORSyncPasswdToRemote";
    WriteStatus("local_role=\"2\"\nis_remote_alive_by_expander_hb=\"yes\"\n");
    EXPECT_EQ(KEVAZORSyncPasswdToRemote(), -1);
    ExpectLog({Notice(kFunction, "Remote is not online")});
    for (const char *role : {"0", "2", "4"}) {
        WriteStatus(std::string("is_remote_alive_by_net=\"yes\"\nlocal_role=\"") + role + "\"\n");
        EXPECT_EQ(KEVAZORSyncPasswdToRemote(), -1);
        ExpectLog({Error(kFunction, "Failed to sync pw, local role is not active")});
    }
    WriteText(kStatusFile, "local_role=\"1\"\nis_remote_alive_by_net=\"yes\"\n");
    EXPECT_EQ(KEVAZORSyncPasswdToRemote(), -1);
    ExpectLog({NotReady(), Error(kFunction, "Failed to send request: 42")});
}

TEST_F(RemoteControl, FanAdjustmentIsPassedOn) {
    const std::string data(32400, 'f');
    for (const int32_t size : {1, 4, 32399}) {
        EXPECT_EQ(KEVAZORRemoteFanAdjust(data.data(), size), 0);
        TakeRequest();
        EXPECT_EQ(request_.commandId, 45u);
        EXPECT_EQ(request_.wait, 0u);
        EXPECT_EQ(Payload(), data.substr(0, static_cast<size_t>(size)));
    }
    ExpectLog({});
}

TEST_F(RemoteControl, FanAdjustmentIsChecked) {
    constexpr char kFunction[] = "KEVAZORRemoteFanAdjust";
    const std::string data(32401, 'f');
    EXPECT_EQ(KEVAZORRemoteFanAdjust(nullptr, 4), -1);
    EXPECT_EQ(KEVAZORRemoteFanAdjust(data.data(), 0), -1);
    EXPECT_EQ(KEVAZORRemoteFanAdjust(data.data(), INT32_MIN), -1);
    ExpectLog(Lines(3, Error(kFunction, "Error parameter")));
    EXPECT_EQ(KEVAZORRemoteFanAdjust(data.data(), 32400), -1);
    EXPECT_EQ(KEVAZORRemoteFanAdjust(data.data(), INT32_MAX), -1);
    ExpectLog(Lines(2, Error(kFunction, "The output data size is too large")));
    WriteText(kStatusFile, "");
    EXPECT_EQ(KEVAZORRemoteFanAdjust(data.data(), 4), -1);
    ExpectLog({NotReady(), Error(kFunction, "Failed to send request: 45")});
    ForbidTwoNodes();
    EXPECT_EQ(KEVAZORRemoteFanAdjust(nullptr, 0), -1);
    ExpectLog({Error(kFunction, "This model is not dualhead")});
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
}

TEST_F(RemoteControl, SystemDiskAdjustmentIsNotWaitedFor) {
    EXPECT_EQ(KEVAZORAdjustSystemDisk(), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    ExpectRequest(29);
    WriteText(kStatusFile, "");
    EXPECT_EQ(KEVAZORAdjustSystemDisk(), -1);
    ExpectLog(
        {NotReady(), Error("KEVAZORAdjustSystemDisk", "Failed send msg to state controller")});
}

TEST_F(RemoteControl, ResetButtonIsWaitedFor) {
    AnswerWith(1);
    EXPECT_EQ(KEVAZORResetButtonPress(), 0);
    EXPECT_EQ(request_.commandId, 62u);
    EXPECT_EQ(request_.wait, 1u);
    EXPECT_EQ(request_.payloadLength, 0u);
    ExpectLog({});
    AnswerWith(0);
    EXPECT_EQ(KEVAZORResetButtonPress(), -1);
    ExpectLog({Error("KEVAZORResetButtonPress", "Failed send msg to state controller")});
    virtual_time::Start();
    EXPECT_EQ(KEVAZORResetButtonPress(), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 16);
    log_.Take();
}

}  // namespace
