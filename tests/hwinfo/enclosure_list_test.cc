// The chain of enclosures of a node.

#include "hwinfo/hardware_fixture.h"

namespace {

using base_library::Call;

constexpr char kReader[] = "HWReadEncList";
constexpr char kBoth[] = "ZORHWGetEncListCached";

class EnclosureList : public HardwareTest {
  protected:
    // A node with two enclosures and these values.
    static std::string Node(const std::string &section, int length, int64_t position, int status,
                            const std::string &serials = "E1,E2") {
        return Section(section, {"EncListLength=" + std::to_string(length),
                                 "EncListStatusLastCorretPos=" + std::to_string(position),
                                 "EncListStatus=" + std::to_string(status), "EncList=" + serials});
    }

    // The link states of all enclosures, as digits.
    std::string Links() const {
        std::string links;
        for (const ZORHWEncInfo &enclosure : host_.Encs)
            links += std::to_string(enclosure.LinkState);
        return links.substr(0, links.find_last_not_of('0') + 1);
    }
};

TEST_F(EnclosureList, ReadsTheNodeAndItsEnclosures) {
    WriteHardware(Node("LOCAL_HOST", 2, 1, 0) + Enclosure("E1") + Enclosure("E2", Repeat("3", 8)));
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), 3);
    EXPECT_EQ(host_.EncListLength, 2);
    EXPECT_STREQ(host_.Encs[0].EncSN, "E1");
    EXPECT_EQ(host_.Encs[0].FanStatus[0], 1);
    EXPECT_EQ(host_.Encs[1].FanStatus[0], 3);
    ExpectLog({});
}

TEST_F(EnclosureList, NodeWithoutASectionHasNone) {
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), 0);
    ExpectLog({Notice(kReader, "No host data on role:2")});
    EXPECT_EQ(HWReadEncList(ZOR_HOST_REMOTE, &host_), 0);
    ExpectLog({Notice(kReader, "No host data on role:4")});
}

TEST_F(EnclosureList, NodeThatCannotBeReadIsAnError) {
    EXPECT_EQ(HWReadEncList(3, &host_), -1);
    ExpectLog(
        {Error("HWReadHostValue", "Bad parameter"), Error(kReader, "Failed to load host value")});
}

TEST_F(EnclosureList, LengthZeroIsNoEnclosures) {
    WriteHardware(Node("LOCAL_HOST", 0, 1, 0));
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_EQ(Links(), "") << "nothing is marked";
    WriteHardware(Section("LOCAL_HOST", {"Memory=1"}));
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), 1);
    ExpectLog({});
}

TEST_F(EnclosureList, NegativeLengthIsUnusableButMarks) {
    WriteHardware(Node("LOCAL_HOST", -1, 2, 0) + Enclosure("E1"));
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), 2);
    EXPECT_EQ(Links(), "01");
    EXPECT_EQ(host_.Encs[0].ModelID, 0) << "no enclosure is read";
    ExpectLog({});
}

TEST_F(EnclosureList, LinkStatesFollowThePosition) {
    struct Row {
        int64_t position;
        int status;
        const char *links;
    };
    for (const Row &row :
         {Row{0, 0, ""}, Row{1, 0, "1"}, Row{2, 0, "21"}, Row{3, 0, "221"}, Row{4, 0, "2221"},
          Row{0, 1, ""}, Row{1, 1, ""}, Row{2, 1, "2"}, Row{3, 1, "22"}, Row{1, 2, "1"},
          Row{15, 0,
              "22200000000000"
              "1"},
          Row{16, 0, "222"}, Row{-1, 0, ""}, Row{INT32_MAX, 0, "222"}, Row{INT32_MIN, 0, ""}}) {
        WriteHardware(Node("LOCAL_HOST", 3, row.position, row.status, "E1,E2,E3"));
        host_ = {};
        EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), 3);
        EXPECT_EQ(Links(), row.links) << row.position << " " << row.status;
    }
    ExpectLog({});
}

TEST_F(EnclosureList, LengthsBeyondTheRecordStopAtItsEnd) {
    for (const int length : {15, 16, 1000, INT32_MAX}) {
        WriteHardware(Node("LOCAL_HOST", length, 15, 0, Repeat("E1", 15)) + Enclosure("E1"));
        host_ = {};
        EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), 3) << length;
        EXPECT_EQ(Links(), "222222222222221");
        EXPECT_EQ(host_.Encs[14].ModelID, 4);
        EXPECT_EQ(host_.EncListLength, length);
    }
    ExpectLog({});
}

TEST_F(EnclosureList, UnreadableEnclosureEndsTheReading) {
    const std::string broken = Section("ENCLOSURE_E2", {"EncSN=E2"});
    WriteHardware(Node("LOCAL_HOST", 3, 3, 0, "E1,E2,E3") + Enclosure("E1") + broken +
                  Enclosure("E3"));
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), 3) << "one was read";
    EXPECT_EQ(Links(), "2") << "the last correctly linked one is not marked";
    EXPECT_EQ(host_.Encs[2].ModelID, 0);
    ExpectLog({Error("HWReadAEncInfo", "No enc modelid in enc data."),
               Error(kReader, "Failed to load enc info")});
    WriteHardware(Node("LOCAL_HOST", 1, 1, 0, "E2") + broken);
    host_ = {};
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), 2) << "none was read";
    EXPECT_EQ(Links(), "");
    ExpectLog({Error("HWReadAEncInfo", "No enc modelid in enc data."),
               Error(kReader, "Failed to load enc info")});
}

TEST_F(EnclosureList, BothNodesAreReadUnderTheLock) {
    WriteHardware(Node("LOCAL_HOST", 1, 1, 0) + Node("REMOTE_HOST", 2, 2, 0) + Enclosure("E1"));
    EXPECT_EQ(ZORHWGetEncListCached(&host_, &other_), 0);
    EXPECT_EQ(host_.EncListLength, 1);
    EXPECT_EQ(other_.EncListLength, 2);
    EXPECT_EQ(other_.Encs[0].ModelID, 4);
    EXPECT_EQ(other_.Encs[1].FanStatus[0], -1);
    EXPECT_TRUE(IsLockFree());
    ExpectLog({});
    const HeldHardwareLock held;
    EXPECT_EQ(ZORHWGetEncListCached(&host_, &other_), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    ExpectLog({Error(kBoth, "Fail to get lock")});
}

TEST_F(EnclosureList, MissingNodesAreNoFailure) {
    EXPECT_EQ(ZORHWGetEncListCached(&host_, &other_), 0);
    ExpectLog(
        {Notice(kReader, "No host data on role:2"), Notice(kReader, "No host data on role:4")});
}

TEST_F(EnclosureList, FailureOfEitherNodeIsReported) {
    EXPECT_EQ(ZORHWGetEncListCached(nullptr, &other_), -1);
    EXPECT_EQ(ZORHWGetEncListCached(&host_, nullptr), -1);
    ExpectLog({Error(kBoth, "Bad parameter"), Error(kBoth, "Bad parameter")});
    WriteHardware(Node("LOCAL_HOST", 0, 0, 0) +
                  Section("REMOTE_HOST", {"EncList=" + Repeat("E", 16)}));
    EXPECT_EQ(ZORHWGetEncListCached(&host_, &other_), -1);
    ExpectLog({Error("HWReadHostValue", "List size(16) > max size(15), " + Repeat("E", 16)),
               Error(kReader, "Failed to load host value"),
               Error(kBoth, "Failed to read enc list")});
    EXPECT_TRUE(IsLockFree());
    const FolderInTheWay folder(kHardwareFile);
    EXPECT_EQ(ZORHWGetEncListCached(&host_, &other_), -1);
    ExpectLog({Error("HWReadHostValue", "Failed to get section :LOCAL_HOST"),
               Error(kReader, "Failed to load host value"),
               Error(kBoth, "Failed to read enc list")});
    EXPECT_TRUE(IsLockFree());
}

TEST_F(EnclosureList, SerialsAreJoined) {
    char text[64] = "before";
    EXPECT_EQ(ZORHWUtilGetEncListStr(&host_, text, sizeof text), 0);
    EXPECT_STREQ(text, "before") << "an empty list leaves the buffer alone";
    host_.EncListLength = -1;
    EXPECT_EQ(ZORHWUtilGetEncListStr(&host_, text, sizeof text), 0);
    EXPECT_STREQ(text, "before");
    strcpy(host_.Encs[0].EncSN, "E1");
    strcpy(host_.Encs[2].EncSN, "E3");
    host_.EncListLength = 1;
    EXPECT_EQ(ZORHWUtilGetEncListStr(&host_, text, sizeof text), 0);
    EXPECT_STREQ(text, "E1");
    host_.EncListLength = 3;
    EXPECT_EQ(ZORHWUtilGetEncListStr(&host_, text, sizeof text), 0);
    EXPECT_STREQ(text, "E1,,E3");
    host_.EncListLength = 16;
    EXPECT_EQ(ZORHWUtilGetEncListStr(&host_, text, sizeof text), 0);
    EXPECT_STREQ(text, "E1,,E3,,,,,,,,,,,,");
    ExpectLog({});
}

TEST_F(EnclosureList, JoinedSerialsAreCutToTheBuffer) {
    strcpy(host_.Encs[0].EncSN, "ABC");
    strcpy(host_.Encs[1].EncSN, "DEF");
    memset(host_.Encs[2].EncSN, 'x', sizeof host_.Encs[2].EncSN);  // without its NUL
    host_.Encs[2].ModelID = 0x41414141;
    host_.EncListLength = 3;
    const std::string all = "ABC,DEF," + std::string(35, 'x');
    for (uint32_t size = 1; size <= all.size() + 2; ++size) {
        char text[64];
        memset(text, '#', sizeof text);
        EXPECT_EQ(ZORHWUtilGetEncListStr(&host_, text, size), 0);
        EXPECT_EQ(std::string(text), all.substr(0, size - 1)) << size;
        EXPECT_EQ(text[size], '#');
    }
}

TEST_F(EnclosureList, JoiningNeedsABuffer) {
    char text[8];
    EXPECT_EQ(ZORHWUtilGetEncListStr(&host_, nullptr, 8), -1);
    ExpectLog({Error("ZORHWUtilGetEncListStr", "Bad paramter 0 8")});
    EXPECT_EQ(ZORHWUtilGetEncListStr(&host_, text, 0), -1);
    char expected[64];
    snprintf(expected, sizeof expected, "Bad paramter %lX 0",
             reinterpret_cast<unsigned long>(text));
    ExpectLog({Error("ZORHWUtilGetEncListStr", expected)});
    EXPECT_EQ(ZORHWUtilGetEncListStr(nullptr, text, sizeof text), -1);
}

}  // namespace
