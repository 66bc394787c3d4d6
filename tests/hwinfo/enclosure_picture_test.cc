// The picture of the enclosures, and the fans of one.

#include <filesystem>
#include <memory>

#include "hwinfo/hardware_fixture.h"
#include "zor_encinfo.h"
#include "zor_webapi_core.h"

namespace {

class EnclosurePicture : public HardwareTest {
  protected:
    EnclosurePicture() {
        WriteStatus("");
        WriteText("/tmp/zor/ui/.ui.zorinfo.flag", "");  // somebody has just asked
        WriteNode("local", "NODE0001", 2, 3);
        WriteNode("remote", "NODE0002", 9, 2);
        WriteHosts(8, 16);
    }

    // A node whose remote one is there and talks.
    static void WriteStatus(const std::string &changed) {
        std::string text = changed;
        for (const auto &[name, value] :
             {std::pair<std::string, const char *>{"enc_link_status", "3"},
              {"is_remote_alive_by_net", "yes"},
              {"is_remote_alive_by_expander_hb", "yes"},
              {"is_remote_handler_ready", "yes"},
              {"remote_role", "2"}}) {
            if (changed.find(name + "=") == std::string::npos)
                text += name + "=\"" + value + "\"\n";
        }
        WriteText(kStatusFile, text);
    }

    static void WriteNode(const std::string &node, const char *serial, int32_t a, int32_t b) {
        ZORNodeInfo info = {};
        snprintf(info.serial, sizeof info.serial, "%s", serial);
        info.replyValueA = 70 + a;
        info.replyStatusA = a;
        info.replyStatusB = b;
        WriteText("/tmp/zor/ui/.ui.zornode." + node + ".cache",
                  {reinterpret_cast<const char *>(&info), sizeof info});
    }

    static void WriteHosts(int local, int remote, int local_chain = 1, int remote_chain = 0) {
        WriteHardware(
            Section("LOCAL_HOST", {"HostType=" + std::to_string(local), "EncListLength=2",
                                   "EncListStatus=" + std::to_string(local_chain),
                                   "EncListStatusLastCorretPos=2", "EncList=E1,E2"}) +
            Section("REMOTE_HOST", {"HostType=" + std::to_string(remote), "EncListLength=2",
                                    "EncListStatus=" + std::to_string(remote_chain),
                                    "EncListStatusLastCorretPos=1", "EncList=E1,E2"}) +
            Enclosure("E1") + Enclosure("E2"));
    }

    const ZORClusterEncInfo &Get() {
        memset(picture_.get(), 0x55, sizeof *picture_);
        EXPECT_EQ(KEVAZORHostEncInfoGet(picture_.get()), 0);
        return *picture_;
    }

    static std::string Picture(const std::string &function, const std::string &message,
                               const std::string &level = "ERROR") {
        return level + " zor_encinfo(" + function + "): " + message;
    }

    std::unique_ptr<ZORClusterEncInfo> picture_ = std::make_unique<ZORClusterEncInfo>();
};

TEST_F(EnclosurePicture, BothNodesAndTheirEnclosures) {
    const ZORClusterEncInfo &picture = Get();
    EXPECT_EQ(picture.EncLinkStatus, 3);
    EXPECT_EQ(picture.RemotePresence, 2);
    EXPECT_EQ(picture.LastCorretPos, 2);
    EXPECT_STREQ(picture.Local.Label, "QM77000zt+(Active)");
    EXPECT_STREQ(picture.Local.Serial, "NODE0001");
    EXPECT_EQ(picture.Local.HostType, 8);
    EXPECT_EQ(picture.Local.ChainState, 2);
    EXPECT_EQ(picture.Local.ReplyValue, 72);
    EXPECT_EQ(picture.Local.FirstStatusOk, 1);
    EXPECT_EQ(picture.Local.SecondStatusOk, 0);
    EXPECT_STREQ(picture.Remote.Label, "QM77000zt+(Passive)");
    EXPECT_STREQ(picture.Remote.Serial, "NODE0002");
    EXPECT_EQ(picture.Remote.HostType, 16);
    EXPECT_EQ(picture.Remote.FirstStatusOk, 0);
    EXPECT_EQ(picture.Remote.SecondStatusOk, 1);
    EXPECT_STREQ(picture.Encs[1].EncSN, "E2");
    EXPECT_EQ(picture.Encs[1].FanStatus[7], 1);
    ExpectLog({});
}

TEST_F(EnclosurePicture, LinkStatesByController) {
    // The local node sees 2 and 0, the remote one 1 and 0.
    EXPECT_EQ(Get().Encs[0].LinkState, 2);
    EXPECT_EQ(picture_->Encs[0].PeerLinkState, 1);
    WriteHosts(16, 8);
    EXPECT_EQ(Get().Encs[0].LinkState, 1);
    EXPECT_EQ(picture_->Encs[0].PeerLinkState, 2);
    WriteHosts(0, 8);
    EXPECT_EQ(Get().Encs[0].LinkState, 1) << "a local node of another type is the second";
}

TEST_F(EnclosurePicture, ChainStates) {
    WriteHosts(8, 16, 2, 2);
    EXPECT_EQ(Get().Local.ChainState, 1);
    EXPECT_EQ(picture_->Remote.ChainState, 1);
    WriteHardware(Section("LOCAL_HOST", {"HostType=8"}));
    EXPECT_EQ(Get().Local.ChainState, 0);
    log_.Take();
}

TEST_F(EnclosurePicture, RemoteNodeByRoleAndReach) {
    WriteStatus("remote_role=\"1\"\n");
    EXPECT_STREQ(Get().Remote.Label, "QM77000zt+(Unknown)");
    WriteStatus("is_remote_alive_by_net=\"no\"\n");
    EXPECT_EQ(Get().RemotePresence, 2);
    EXPECT_STREQ(picture_->Remote.Label, "QM77000zt+(Passive)");
    EXPECT_STREQ(picture_->Remote.Serial, "") << "no communication";
    WriteStatus("is_remote_alive_by_net=\"no\"\nis_remote_alive_by_expander_hb=\"no\"\n");
    EXPECT_EQ(Get().RemotePresence, 1);
    EXPECT_STREQ(picture_->Remote.Label, "");
    ExpectLog({});
}

TEST_F(EnclosurePicture, RemoteNodeWithoutAPosition) {
    WriteHosts(8, 0, 1, 2);
    EXPECT_EQ(Get().RemotePresence, 2);
    EXPECT_STREQ(picture_->Remote.Label, "QM77000zt+(Unknown)");
    EXPECT_EQ(picture_->Remote.HostType, 16);
    EXPECT_EQ(picture_->Remote.ChainState, 1);
    WriteHosts(16, 0, 1, 2);
    EXPECT_EQ(Get().Remote.HostType, 8);
    WriteHosts(4, 0, 1, 2);
    EXPECT_EQ(Get().Remote.HostType, 0);
    WriteStatus("is_remote_alive_by_net=\"no\"\n");
    WriteHosts(8, 0, 1, 2);
    EXPECT_EQ(Get().RemotePresence, 1);
    WriteStatus("");
    WriteHosts(8, 0, 1, 1);
    EXPECT_EQ(Get().RemotePresence, 1);
    ExpectLog({});
}

TEST_F(EnclosurePicture, WhatIsMissingIsReported) {
    WriteText(kStatusFile, "");
    EXPECT_EQ(Get().EncLinkStatus, 0);
    ExpectLog({Picture("KEVAZORHostEncInfoGet", "Enc status not ready")});
    WriteStatus("");
    std::filesystem::remove("/tmp/zor/ui/.ui.zornode.local.cache");
    Get();
    EXPECT_EQ(virtual_time::Sleeps(), 31) << "waited for";
    Lines lines = log_.Take();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2],
              Picture("GetHostHWStatus", "Failed to get node info cached"));
    EXPECT_EQ(lines.back(), Picture("KEVAZORHostEncInfoGet", "Failed to get host hardware status"));
    EXPECT_EQ(KEVAZORHostEncInfoGet(nullptr), -1);
    ExpectLog({Picture("KEVAZORHostEncInfoGet", "Bad parameter")});
    const HeldHardwareLock held;
    EXPECT_EQ(KEVAZORHostEncInfoGet(picture_.get()), -1);
    EXPECT_EQ(log_.Take().back(),
              Picture("KEVAZORHostEncInfoGet", "Failed to get cached enc list"));
}

TEST_F(EnclosurePicture, UnreadableStatusIsReported) {
    const FolderInTheWay folder(kStatusFile);
    EXPECT_EQ(KEVAZORHostEncInfoGet(picture_.get()), -1);
    EXPECT_EQ(log_.Take().back(), Picture("KEVAZORHostEncInfoGet", "Failed to get ha.status"));
}

// --- The fans of one enclosure

TEST_F(EnclosurePicture, FansOfAnEnclosure) {
    WriteHardware(Section("LOCAL_HOST", {"EncListLength=2", "EncList=E1,E2"}) + Enclosure("E1") +
                  Enclosure("E2", "1,2,3,4,5,6,7,0"));
    int32_t fans[9] = {-7, -7, -7, -7, -7, -7, -7, -7, -7};
    EXPECT_EQ(KEVAZORGetEncFanStatus(2, fans, 8), 0);
    const int32_t expected[] = {1, 2, 3, 4, 5, 6, 7, 0, -7};
    EXPECT_EQ(memcmp(fans, expected, sizeof fans), 0);
    EXPECT_EQ(KEVAZORGetEncFanStatus(3, fans, 8), -1);
    EXPECT_EQ(log_.Take().back(),
              Picture("KEVAZORGetEncFanStatus", "Error: enc length = 2, but iEncID = 3", "NOTICE"));
}

TEST_F(EnclosurePicture, UnknownFanEndsTheCopy) {
    WriteHardware(Section("LOCAL_HOST", {"EncListLength=1", "EncList=E1"}) +
                  Section("REMOTE_HOST", {"Memory=1"}) + Enclosure("E1", "1,0,-1,1,1,1,1,1"));
    int32_t fans[8] = {-7, -7, -7, -7, -7, -7, -7, -7};
    EXPECT_EQ(KEVAZORGetEncFanStatus(1, fans, 8), -1);
    EXPECT_EQ(fans[0], 1);
    EXPECT_EQ(fans[1], 0);
    EXPECT_EQ(fans[2], -7);
    ExpectLog({Picture("KEVAZORGetEncFanStatus", "Error: get UNKNOWN fan status", "NOTICE")});
}

TEST_F(EnclosurePicture, FansNeedAnEnclosureAndAnArrayOfEight) {
    int32_t fans[8];
    for (const int32_t enclosure : {0, -1, 16, INT32_MAX})
        EXPECT_EQ(KEVAZORGetEncFanStatus(enclosure, fans, 8), -1);
    EXPECT_EQ(KEVAZORGetEncFanStatus(1, nullptr, 8), -1);
    for (const int32_t count : {0, 7, 9, -8}) EXPECT_EQ(KEVAZORGetEncFanStatus(1, fans, count), -1);
    ExpectLog(Lines(9, Picture("KEVAZORGetEncFanStatus", "Bad parameter")));
    const HeldHardwareLock held;
    EXPECT_EQ(KEVAZORGetEncFanStatus(1, fans, 8), -1);
    EXPECT_EQ(log_.Take().back(),
              Picture("KEVAZORGetEncFanStatus", "Failed to get cached enc list"));
}

TEST_F(EnclosurePicture, LengthBeyondTheRecordIsSafe) {
    WriteHardware(
        Section("LOCAL_HOST", {"EncListLength=2147483647", "EncList=" + Repeat("E1", 15)}) +
        Section("REMOTE_HOST", {"Memory=1"}) + Enclosure("E1"));
    int32_t fans[8];
    EXPECT_EQ(KEVAZORGetEncFanStatus(15, fans, 8), 0);
    ExpectLog({});
}

}  // namespace
