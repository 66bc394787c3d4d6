// The kinds of hardware that have failed.

#include "hwinfo/hardware_fixture.h"

namespace {

constexpr char kQuestion[] = "ZORHWGetFailedEncHardware";
constexpr char kAllFansNormal[] = "1,1,1,1,1,1,1,1";

class FailedHardware : public HardwareTest {
  protected:
    static void WriteChain(int length, int position, const std::string &enclosures) {
        WriteHardware(
            Section("LOCAL_HOST", {"EncListLength=" + std::to_string(length), "EncList=E1,E2,E3",
                                   "EncListStatusLastCorretPos=" + std::to_string(position)}) +
            Section("REMOTE_HOST", {"Memory=1"}) + enclosures);
    }

    std::string Ask(uint32_t size = 32) {
        strcpy(text_, "before");
        EXPECT_EQ(ZORHWGetFailedEncHardware(text_, size), 0);
        return text_;
    }

    char text_[32];
};

TEST_F(FailedHardware, EveryValueButNormalAndUnknownIsAFault) {
    struct Row {
        const char *fans;
        const char *power;
        const char *expected;
    };
    for (const Row &row :
         {Row{kAllFansNormal, "1,1", "before"}, Row{"-1,-1,-1,-1,-1,-1,-1,-1", "-1,-1", "before"},
          Row{"1,1,1,1,1,1,1,0", "1,-1", "fan"}, Row{"0,1,1,1,1,1,1,1", "-1,-1", "fan"},
          Row{"1,1,1,1,1,1,1,-2", "1,1", "fan"}, Row{kAllFansNormal, "3,1", "power"},
          Row{kAllFansNormal, "1,0", "power"}, Row{"1,2,1,1,1,1,1,1", "1,2", "power,fan"}}) {
        WriteChain(1, 1, Enclosure("E1", row.fans, row.power));
        EXPECT_EQ(Ask(), row.expected) << row.fans << " " << row.power;
    }
    EXPECT_TRUE(IsLockFree());
    ExpectLog({});
}

TEST_F(FailedHardware, OnlyTheCorrectlyLinkedEnclosuresCount) {
    const std::string enclosures = Enclosure("E1") + Enclosure("E2", "1,1,1,1,0,1,1,1") +
                                   Enclosure("E3", kAllFansNormal, "0,1");
    for (const auto &[position, expected] : {std::pair<int, const char *>{-1, "before"},
                                             {0, "before"},
                                             {1, "before"},
                                             {2, "fan"},
                                             {3, "power,fan"}}) {
        WriteChain(3, position, enclosures);
        EXPECT_EQ(Ask(), expected) << position;
    }
}

TEST_F(FailedHardware, PositionsBeyondTheRecordStopAtItsEnd) {
    for (const int position : {15, 16, INT32_MAX}) {
        WriteChain(1, position, Enclosure("E1"));
        EXPECT_EQ(Ask(), "power,fan") << "entries without an enclosure hold no normal value";
    }
    ExpectLog({});
}

TEST_F(FailedHardware, WordsAreCutToTheBuffer) {
    WriteChain(1, 1, Enclosure("E1", "0,1,1,1,1,1,1,1", "0,1"));
    const std::string all = "power,fan";
    for (uint32_t size = 1; size <= all.size() + 2; ++size) {
        memset(text_, '#', sizeof text_);
        EXPECT_EQ(ZORHWGetFailedEncHardware(text_, size), 0);
        EXPECT_EQ(std::string(text_), all.substr(0, size - 1));
        EXPECT_EQ(text_[size], '#');
    }
}

TEST_F(FailedHardware, MissingBufferIsRefusedSilently) {
    EXPECT_EQ(ZORHWGetFailedEncHardware(nullptr, 8), -1);
    EXPECT_EQ(ZORHWGetFailedEncHardware(text_, 0), -1);
    ExpectLog({});
}

TEST_F(FailedHardware, UnreadableListIsReported) {
    const HeldHardwareLock held;
    EXPECT_EQ(ZORHWGetFailedEncHardware(text_, sizeof text_), -1);
    ExpectLog({Error("ZORHWGetEncListCached", "Fail to get lock"),
               Error(kQuestion, "Failed to get cached enc list")});
}

}  // namespace
