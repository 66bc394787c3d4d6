// The development manager's chassis description.

#include <filesystem>

#include "kevacore.h"
#include "support/command_run.h"
#include "support/node_test.h"
#include "support/queue_end.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

namespace fs = std::filesystem;

namespace {

constexpr char kChassis[] = "/etc/test.chassis";
constexpr char kHardwareFile[] = "/tmp/zor/hw_info";

constexpr char kTwoEnclosures[] =
    "controllers:\n"
    "  - {position: 8, visible_disks: 16, used_disks: 12}\n"
    "  - {position: 16, visible_disks: 20, used_disks: 18}\n"
    "spaces: {degraded: 0, crashed: 1}\n"
    "enclosures:\n"
    "  - {serial: ENC1, model: 4, temperature: ok, disks: [1, 2, 0],\n"
    "     fans: [ok, ok, ok, ok, ok, ok, ok, ok], power: [ok, ok]}\n"
    "  - {serial: ENC2, model: 5, temperature: 3, disks: [],\n"
    "     fans: [1, ok, ok, ok, ok, ok, ok, unknown], power: [ok, unknown]}\n";

class ZorLabChassis : public NodeTest {
  protected:
    ZorLabChassis() {
        UseBuiltPrograms();
        virtual_time::Start([](int) { SleepMilliseconds(30); });
        fs::remove_all(kRuntimeFolder);
    }
    ~ZorLabChassis() override {
        manager_.reset();
        queue_end::RemoveAll();
    }

    void StartManager(const std::string &chassis, const std::string &peer = "in-process") {
        WriteText(kChassis, chassis);
        manager_ = std::make_unique<BackgroundCommand>(
            Lines{"zorlab", "manager", "--peer", peer, "--chassis", kChassis});
        ASSERT_TRUE(WaitFor([this] {
            return manager_->Output().find("is served") != std::string::npos;
        })) << manager_->Output();
        log_.Take();
    }

    static std::string Failed() {
        char failed[32] = "";
        EXPECT_EQ(ZORHWGetFailedEncHardware(failed, sizeof failed), 0);
        return failed;
    }

    static void Replace(const std::string &part, const std::string &by) {
        std::string text = ReadText(kChassis);
        const size_t at = text.find(part);
        ASSERT_NE(at, std::string::npos);
        WriteText(kChassis, text.replace(at, part.size(), by));
    }

    std::unique_ptr<BackgroundCommand> manager_;
    ZORHWHostInfo local_ = {};
    ZORHWHostInfo remote_ = {};
};

TEST_F(ZorLabChassis, DescriptionBecomesTheHardwareFile) {
    StartManager(kTwoEnclosures);
    ASSERT_EQ(ZORHWGetEncListCached(&local_, &remote_), 0);
    EXPECT_EQ(local_.HostType, 8);
    EXPECT_EQ(remote_.HostType, 16);
    EXPECT_EQ(local_.UsedDisk, 12);
    EXPECT_EQ(remote_.VisibleDisk, 20);
    EXPECT_EQ(local_.EncListStatus, 1);
    EXPECT_EQ(local_.EncListLength, 2);
    EXPECT_STREQ(local_.Encs[1].EncSN, "ENC2");
    EXPECT_EQ(local_.Encs[0].LinkState, 2);
    EXPECT_EQ(local_.Encs[0].MaxDisk, 3);
    EXPECT_EQ(local_.Encs[0].DiskTypes[1], 2);
    EXPECT_EQ(local_.Encs[1].TempStatus, 3);
    EXPECT_EQ(local_.Encs[1].FanStatus[7], -1);
    EXPECT_EQ(local_.Encs[1].PowerStatus[1], -1);
    EXPECT_GT(ZORHWGetMemory(ZOR_HOST_LOCAL), 0);
    uint32_t flags = 0;
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags), 0);
    EXPECT_EQ(flags, 5u) << "the peer has more disks";
    EXPECT_EQ(Failed(), "");
    ExpectLog({});
}

TEST_F(ZorLabChassis, PulledFanIsAFailedFanSoon) {
    StartManager(kTwoEnclosures);
    Replace("[ok, ok, ok, ok, ok, ok, ok, ok]", "[ok, ok, ok, ok, ok, ok, failed, ok]");
    EXPECT_TRUE(WaitFor([] { return Failed() == "fan"; }));
    char words[144] = "";
    EXPECT_TRUE(WaitFor([&] {
        ZORGetHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_FAILED_ENC_HARDWARE, words, sizeof words);
        return std::string(words) == "fan";
    }));
    Replace("power: [ok, ok]", "power: [3, ok]");
    EXPECT_TRUE(WaitFor([] { return Failed() == "power,fan"; }));
    Replace("failed", "ok");
    EXPECT_TRUE(WaitFor([] { return Failed() == "power"; }));
}

TEST_F(ZorLabChassis, RemovedEnclosureIsForgotten) {
    StartManager(kTwoEnclosures);
    const std::string text = kTwoEnclosures;
    WriteText(kChassis, text.substr(0, text.find("  - {serial: ENC2")));
    EXPECT_TRUE(WaitFor(
        [] { return ReadText(kHardwareFile).find("ENCLOSURE_ENC2") == std::string::npos; }));
    EXPECT_NE(ReadText(kHardwareFile).find("AllEnclosure=ENC1\n"), std::string::npos);
    fs::remove(kChassis);
    EXPECT_TRUE(
        WaitFor([] { return ReadText(kHardwareFile).find("ENCLOSURE_") == std::string::npos; }));
    EXPECT_EQ(ReadText(kHardwareFile).find("REMOTE_HOST"), std::string::npos);
}

TEST_F(ZorLabChassis, BrokenChainIsShownAsBroken) {
    StartManager(std::string(kTwoEnclosures) + "chain: {linked: 1}\n", "none");
    EXPECT_EQ(ZORHWReadHostValue(ZOR_HOST_REMOTE, &remote_), 0) << "a lone node";
    EXPECT_EQ(ZORHWGetEncListCached(&local_, &remote_), 0);
    EXPECT_EQ(local_.EncListStatus, 0);
    EXPECT_EQ(local_.EncListStatusLastCorretPos, 1);
    EXPECT_EQ(local_.Encs[0].LinkState, 1);
    EXPECT_EQ(local_.Encs[1].LinkState, 0);
}

TEST_F(ZorLabChassis, WhatIsNoDescriptionIsSaid) {
    struct Row {
        std::string text;
        std::string reason;
    };
    std::string sixteen = "enclosures:\n";
    for (int index = 0; index < 16; ++index)
        sixteen += "  - {serial: E" + std::to_string(index) + "}\n";
    for (const Row &row :
         {Row{"enclosures: [\n", "line 2"}, Row{"fans: [ok]\n", "line 1: unknown key 'fans'"},
          Row{"# a comment\nenclosures:\n  - {serial: A, fan: 3}\n", "line 3: unknown key 'fan'"},
          Row{"enclosures:\n  - {serial: A, fans: [ok]}\n", "fans must be a list of 8"},
          Row{"enclosures:\n  - {serial: A, power: [ok, bad]}\n", "'bad' is no state"},
          Row{"enclosures:\n  - {model: 4}\n", "needs a serial"},
          Row{"enclosures:\n  - {serial: \"A,B\"}\n", "needs a serial"},
          Row{"enclosures:\n  - {serial: " + std::string(36, 'A') + "}\n", "needs a serial"},
          Row{"enclosures:\n  - {serial: A}\n  - {serial: A}\n", "the same serial"},
          Row{"enclosures:\n  - {serial: A, disks: [" + std::string(15 * 2, '1') +
                  ", 1,1,1,1,1,1,1,1,1,1,1,1,1,1,1]}\n",
              "at most 15"},
          Row{sixteen, "at most 15 enclosures"},
          Row{"controllers:\n  - {position: 9}\n", "8 or 16"},
          Row{"controllers:\n  - {position: 8}\n  - {position: 8}\n", "the same position"},
          Row{"chain: {linked: 1}\n", "linked is a number of enclosures"},
          Row{"spaces: {crashed: many}\n", "crashed is no number"}, Row{"just text\n", "a map"}}) {
        WriteText(kChassis, row.text);
        const CommandResult result = RunCommand({"zorlab", "chassis", kChassis});
        EXPECT_EQ(result.exit_code, 1) << row.text;
        EXPECT_NE(result.errors.find(row.reason), std::string::npos) << result.errors;
    }
    WriteText(kChassis, kTwoEnclosures);
    EXPECT_EQ(RunCommand({"zorlab", "chassis", kChassis}).output,
              std::string(kChassis) + ": 2 controllers, 2 enclosures\n");
    EXPECT_EQ(RunCommand({"zorlab", "chassis", "/etc/nothing"}).exit_code, 1);
}

TEST_F(ZorLabChassis, LastGoodDescriptionHolds) {
    StartManager(kTwoEnclosures);
    WriteText(kChassis, "enclosures: [{serial: A, fan: 3}]\n");
    EXPECT_TRUE(
        WaitFor([&] { return manager_->Output().find("unknown key 'fan'") != std::string::npos; }));
    EXPECT_NE(ReadText(kHardwareFile).find("AllEnclosure=ENC1,ENC2\n"), std::string::npos);
    WriteText(kChassis, kTwoEnclosures);
    Replace("power: [ok, ok]", "power: [3, ok]");
    EXPECT_TRUE(WaitFor([] { return Failed() == "power"; })) << "until the next one";
}

TEST_F(ZorLabChassis, ExampleIsADescription) {
    StartManager(ReadText(KEVAZOR_SOURCE_FOLDER "/lab/chassis.yaml"));
    ASSERT_EQ(ZORHWGetEncListCached(&local_, &remote_), 0);
    EXPECT_EQ(local_.EncListLength, 2);
    EXPECT_EQ(remote_.EncListLength, 2);
    EXPECT_EQ(Failed(), "");
}

}  // namespace
