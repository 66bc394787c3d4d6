// The runtime status and the boot stage.

#include <bit>

#include "support/node_test.h"
#include "zor_status.h"

namespace {

class RuntimeStatus : public NodeTest {
  protected:
    void SetStatus(const std::string &value) {
        WriteText(kStatusFile, "ha_runtime_status=\"" + value + "\"\n");
    }
};

const Lines kUnreadable = {
    "NOTICE zor_status(ZORGetOriginalRuntimeStatus): Failed to read ha runtime status"};

TEST_F(RuntimeStatus, IsADecimalNumber) {
    SetStatus("98");
    EXPECT_EQ(ZORGetOriginalRuntimeStatus(), 98);
    ExpectLog({});
}

TEST_F(RuntimeStatus, AbsentIsOneAfterANotice) {
    EXPECT_EQ(ZORGetOriginalRuntimeStatus(), 1);
    ExpectLog(kUnreadable);
}

TEST_F(RuntimeStatus, UnreadableIsOneAfterANotice) {
    const FolderInTheWay folder(kStatusFile);
    EXPECT_EQ(ZORGetOriginalRuntimeStatus(), 1);
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], kUnreadable[0]);
}

TEST_F(RuntimeStatus, NoNumberIsZero) {
    SetStatus("idle");
    EXPECT_EQ(ZORGetOriginalRuntimeStatus(), 0);
    SetStatus("17up");
    EXPECT_EQ(ZORGetOriginalRuntimeStatus(), 17);
    SetStatus("");
    EXPECT_EQ(ZORGetOriginalRuntimeStatus(), 0);
}

TEST_F(RuntimeStatus, SevenCharactersAreRead) {
    SetStatus("123456789");
    EXPECT_EQ(ZORGetOriginalRuntimeStatus(), 1234567);
}

TEST_F(RuntimeStatus, IsTakenApartIntoStateAndTransition) {
    SetStatus(std::to_string(0x62));
    ZORRuntimeStatus status = ZORGetRuntimeStatus();
    EXPECT_EQ(status.state, 2u);
    EXPECT_EQ(status.transition, 0x60u);
    EXPECT_EQ(ZORIsNowSwitchoverFailoverTakeover(status), 1);
    SetStatus(std::to_string(0x42));
    status = ZORGetRuntimeStatus();
    EXPECT_EQ(status.state, 2u);
    EXPECT_EQ(status.transition, 0x40u);
    EXPECT_EQ(ZORIsNowSwitchoverFailoverTakeover(status), 0);
}

TEST_F(RuntimeStatus, BitsAboveTheEighthAreLeftOut) {
    SetStatus(std::to_string(0xf1f));
    const ZORRuntimeStatus status = ZORGetRuntimeStatus();
    EXPECT_EQ(status.state, 0xfu);
    EXPECT_EQ(status.transition, 0x10u);
}

TEST_F(RuntimeStatus, AbsentIsStateOneWithoutTransition) {
    const ZORRuntimeStatus status = ZORGetRuntimeStatus();
    EXPECT_EQ(status.state, 1u);
    EXPECT_EQ(status.transition, 0u);
    ExpectLog(kUnreadable);
}

TEST_F(RuntimeStatus, PairIsOneNumberWithTheStateInItsLowHalf) {
    SetStatus(std::to_string(0x62));
    EXPECT_EQ(std::bit_cast<uint64_t>(ZORGetRuntimeStatus()), 0x0000006000000002u);
}

TEST_F(RuntimeStatus, ThreeTransitionsAreInProgress) {
    for (uint32_t transition = 0; transition <= 0xf0; transition += 0x10) {
        const bool expected = transition == 0x10 || transition == 0x20 || transition == 0x60;
        for (uint32_t state = 0; state < 16; ++state)
            EXPECT_EQ(ZORIsNowSwitchoverFailoverTakeover({state, transition}), expected);
    }
    EXPECT_EQ(ZORIsNowSwitchoverFailoverTakeover({0, 0x110}), 0);
}

TEST_F(RuntimeStatus, BootStageIsADecimalNumberOfThreeDigits) {
    WriteText(kStatusFile, "local_boot_stage=\"7\"\n");
    EXPECT_EQ(ZORGetLocalBootStage(), 7);
    WriteText(kStatusFile, "local_boot_stage=\"1234\"\n");
    EXPECT_EQ(ZORGetLocalBootStage(), 123);
    ExpectLog({});
}

TEST_F(RuntimeStatus, AbsentBootStageIsZeroWithoutALine) {
    WriteText(kStatusFile, "");
    EXPECT_EQ(ZORGetLocalBootStage(), 0);
    ExpectLog({});
}

TEST_F(RuntimeStatus, UnreadableBootStageIsZeroAfterAnError) {
    const FolderInTheWay folder(kStatusFile);
    EXPECT_EQ(ZORGetLocalBootStage(), 0);
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], "ERROR zor_status(ZORGetLocalBootStage): Failed to get boot status");
}

}  // namespace
