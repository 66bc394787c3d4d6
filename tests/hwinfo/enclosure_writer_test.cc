// The enclosures of a node, stored in the hardware file.

#include <filesystem>

#include "hwinfo/hardware_fixture.h"
#include "kevacore.h"

namespace {

using base_library::Call;

constexpr char kWriter[] = "HWWriteEncInfoToFile";
constexpr char kStep[] = "WriteAEncInfo";

class EnclosureWriter : public HardwareTest {
  protected:
    // Lists enclosures in a record, each with two slots.
    static void List(ZORHWHostInfo *host, const Lines &serials) {
        *host = {};
        for (const std::string &serial : serials) {
            ZORHWEncInfo &enclosure = host->Encs[host->EncListLength++];
            snprintf(enclosure.EncSN, sizeof enclosure.EncSN, "%s", serial.c_str());
            enclosure.ModelID = 4;
            enclosure.MaxDisk = 2;
            enclosure.DiskTypes[0] = 1;
            enclosure.DiskTypes[1] = -2;
        }
    }

    int32_t Write(const Lines &serials, int32_t selector = ZOR_HOST_LOCAL) {
        List(&host_, serials);
        return HWWriteEncInfoToFile(selector, &host_);
    }

    static std::string All(const std::string &serials) {
        return Section("COMMON", {"AllEnclosure=" + serials});
    }

    static std::string Value(const std::string &section, const char *key) {
        char value[1200] = "";
        return VLIBCFileGetSectionValue(kHardwareFile, section.c_str(), key, value, sizeof value) >
                       0
                   ? value
                   : "(none)";
    }

    static std::string Stored(const std::string &serial, const Lines &more = {}) {
        Lines pairs = {"ModelID=4", "MaxDisk=2", "EncSN=" + serial, "DiskTypes=1,-2"};
        pairs.insert(pairs.end(), more.begin(), more.end());
        return Section("ENCLOSURE_" + serial, pairs);
    }

    void ExpectStepFailure(const std::string &message) {
        ExpectLog({Error(kStep, message), Error(kWriter, "Failed to write a enc info")});
    }
};

TEST_F(EnclosureWriter, FirstWriteMakesTheFile) {
    EXPECT_EQ(Write({"E1", "E2"}), 0);
    EXPECT_EQ(ReadText(kHardwareFile), Stored("E1") + Stored("E2") + All("E1,E2"));
    ExpectLog({});
}

TEST_F(EnclosureWriter, OtherKeysAndSectionsAreKept) {
    const std::string hosts = Section("LOCAL_HOST", {"Memory=8192", "EncList=E1"});
    WriteHardware(hosts + Section("ENCLOSURE_E1", {"FanStatus=1,1", "ModelID=9", "Odd=a=b"}) +
                  Section("COMMON", {"CrashedSpaces=1", "AllEnclosure=E1"}));
    EXPECT_EQ(Write({"E1"}), 0);
    EXPECT_EQ(ReadText(kHardwareFile),
              hosts +
                  Section("ENCLOSURE_E1", {"FanStatus=1,1", "ModelID=4", "Odd=a=b", "MaxDisk=2",
                                           "EncSN=E1", "DiskTypes=1,-2"}) +
                  Section("COMMON", {"CrashedSpaces=1", "AllEnclosure=E1"}));
    ExpectLog({});
}

TEST_F(EnclosureWriter, NewSerialsGoBeforeTheLastOne) {
    WriteHardware(All("A,B") + Section("REMOTE_HOST", {"EncListLength=2", "EncList=A,B"}));
    EXPECT_EQ(Write({"C", "B", "D"}), 0);
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), "A,C,D,B");
}

TEST_F(EnclosureWriter, EnclosuresOfTheOtherNodeAreKept) {
    WriteHardware(All("A,B") + Stored("A") + Stored("B") +
                  Section("REMOTE_HOST", {"EncListLength=1", "EncList=A,B"}));
    EXPECT_EQ(Write({"C"}), 0);
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), "A,C") << "the second is beyond the length";
    EXPECT_EQ(Value("ENCLOSURE_A", "EncSN"), "A");
    EXPECT_EQ(Value("ENCLOSURE_B", "EncSN"), "(none)");
    ExpectLog({});
}

TEST_F(EnclosureWriter, DroppedByTheRemoteNodeIsForgottenAtTheNextWrite) {
    WriteHardware(All("L,R") + Stored("L") + Stored("R") +
                  Section("REMOTE_HOST", {"EncListLength=1", "EncList=R"}));
    EXPECT_EQ(Write({"L"}), 0);
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), "L,R");
    ASSERT_GE(VLIBCFileSetSectionValue(kHardwareFile, "REMOTE_HOST", "EncListLength", "0"), 0);
    EXPECT_EQ(Value("ENCLOSURE_R", "EncSN"), "R") << "not before a write";
    EXPECT_EQ(Write({"L"}), 0);
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), "L");
    EXPECT_EQ(Value("ENCLOSURE_R", "EncSN"), "(none)");
    ExpectLog({});
}

TEST_F(EnclosureWriter, SelectorTellsTheOtherNode) {
    const std::string file = All("X,Y") + Stored("X") + Stored("Y") +
                             Section("LOCAL_HOST", {"EncListLength=1", "EncList=X"}) +
                             Section("REMOTE_HOST", {"EncListLength=1", "EncList=Y"});
    for (const auto &[selector, kept] : {std::pair<int32_t, const char *>{ZOR_HOST_LOCAL, "Y"},
                                         {ZOR_HOST_REMOTE, "X"},
                                         {7, "X"}}) {
        WriteHardware(file);
        EXPECT_EQ(Write({}, selector), 0);
        EXPECT_EQ(Value("COMMON", "AllEnclosure"), kept);
    }
}

TEST_F(EnclosureWriter, EmptyItemsAreDropped) {
    WriteHardware(All(",A,,B,"));
    EXPECT_EQ(Write({"A", "B"}), 0);
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), "A,B");
    EXPECT_EQ(Write({}), 0);
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), "");
    EXPECT_EQ(Value("ENCLOSURE_A", "EncSN"), "(none)");
}

TEST_F(EnclosureWriter, SlotsAreWrittenAsFarAsTheRecordReaches) {
    struct Row {
        int32_t slots;
        std::string types;
    };
    for (const Row &row : {Row{0, ""}, Row{-1, ""}, Row{1, "1"}, Row{15, Repeat("1", 15)},
                           Row{16, Repeat("1", 15)}, Row{INT32_MAX, Repeat("1", 15)}}) {
        List(&host_, {"E"});
        host_.Encs[0].MaxDisk = row.slots;
        for (int32_t &type : host_.Encs[0].DiskTypes) type = 1;
        EXPECT_EQ(HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host_), 0);
        EXPECT_EQ(Value("ENCLOSURE_E", "DiskTypes"), row.types);
        EXPECT_EQ(Value("ENCLOSURE_E", "MaxDisk"), std::to_string(row.slots));
    }
}

TEST_F(EnclosureWriter, DiskTypesAreCutAtFortyFourCharacters) {
    List(&host_, {"E"});
    host_.Encs[0].MaxDisk = 15;
    for (int32_t &type : host_.Encs[0].DiskTypes) type = 100;
    EXPECT_EQ(HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host_), 0);
    EXPECT_EQ(Value("ENCLOSURE_E", "DiskTypes"), Repeat("100", 11) + ",");
}

TEST_F(EnclosureWriter, LengthsBeyondTheRecordStopAtItsEnd) {
    for (const int32_t length : {16, INT32_MAX}) {
        List(&host_, {});
        for (int index = 0; index < 15; ++index) {
            snprintf(host_.Encs[index].EncSN, sizeof host_.Encs[index].EncSN, "E%d", index);
        }
        host_.EncListLength = length;
        EXPECT_EQ(HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host_), 0);
        EXPECT_EQ(Value("COMMON", "AllEnclosure"),
                  "E0,E1,E2,E3,E4,E5,E6,E7,E8,E9,E10,E11,E12,E13,E14");
    }
    host_.EncListLength = -1;
    EXPECT_EQ(HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host_), 0);
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), "");
    ExpectLog({});
}

TEST_F(EnclosureWriter, SerialWithoutItsNulIsBounded) {
    List(&host_, {"E"});
    memset(host_.Encs[0].EncSN, 'S', sizeof host_.Encs[0].EncSN);
    EXPECT_EQ(HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host_), 0);
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), std::string(35, 'S'));
    EXPECT_EQ(Value("ENCLOSURE_" + std::string(35, 'S'), "ModelID"), "4");
}

TEST_F(EnclosureWriter, ListOfAllIsCutToItsSize) {
    std::string all;
    Lines serials;
    for (int index = 0; index < 30; ++index) {
        std::string serial = std::string(33, 's') + std::to_string(10 + index);
        all += (index == 0 ? "" : ",") + serial;
        serials.push_back(serial);
    }
    WriteHardware(
        Section("REMOTE_HOST", {"EncListLength=15", "EncList=" + all.substr(0, 15 * 36 - 1)}));
    EXPECT_EQ(Write({serials.begin() + 15, serials.end()}), 0);
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), all.substr(15 * 36))
        << "the other's have no section";
    WriteHardware(ReadText(kHardwareFile) +
                  Section("LOCAL_HOST", {"EncListLength=15", "EncList=" + all.substr(15 * 36)}));
    EXPECT_EQ(Write({serials.begin(), serials.begin() + 15}, ZOR_HOST_REMOTE), 0);
    EXPECT_EQ(Value("COMMON", "AllEnclosure").size(), 1023u);
    ExpectLog({});
}

TEST_F(EnclosureWriter, MissingRecordIsRefused) {
    EXPECT_EQ(HWWriteEncInfoToFile(ZOR_HOST_LOCAL, nullptr), -1);
    ExpectLog({Error(kWriter, "Error parameter")});
}

TEST_F(EnclosureWriter, FailuresBeforeTheFirstEnclosure) {
    List(&host_, {"E1"});
    base_library::Fail(Call::kListAlloc);
    EXPECT_EQ(HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host_), -1);
    ExpectLog({Error(kWriter, "Failed to alloc list")});
    base_library::Fail(Call::kStrSep);
    EXPECT_EQ(HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host_), -1);
    ExpectLog({Error(kWriter, "Failed to strsep")});
    EXPECT_FALSE(Exists(kHardwareFile));
    const FolderInTheWay folder(kHardwareFile);
    EXPECT_EQ(HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host_), -1);
    ExpectLog({Error(kWriter, "Failed to get host type")});
}

TEST_F(EnclosureWriter, FailedInsertionLeavesTheListWithoutIt) {
    base_library::Fail(Call::kListInsert);
    EXPECT_EQ(Write({"E1", "E2"}), 0);
    ExpectLog({Error(kStep, "Faiiled to insert to list")});
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), "E2");
    EXPECT_EQ(Value("ENCLOSURE_E1", "EncSN"), "E1") << "its section is written";
}

TEST_F(EnclosureWriter, FailureAtAnEnclosureEndsTheWriting) {
    const std::string before = Stored("E1") + All("E1");
    WriteHardware(before);
    base_library::Fail(Call::kHashAlloc);
    EXPECT_EQ(Write({"E1", "E2"}), -1);
    ExpectStepFailure("Failed to alloc memory");
    base_library::Fail(Call::kGetSection);
    EXPECT_EQ(Write({"E1", "E2"}), -1);
    ExpectStepFailure("Failed to get section :ENCLOSURE_E1");
    for (int nth = 1; nth <= 4; ++nth) {
        base_library::Fail(Call::kHashSetValue, nth);
        EXPECT_EQ(Write({"E1", "E2"}), -1);
        ExpectStepFailure("Failed to set disks");
    }
    EXPECT_EQ(ReadText(kHardwareFile), before);
    base_library::Fail(Call::kSetSection, 2);
    EXPECT_EQ(Write({"E1", "E2"}), -1);
    ExpectLog({Error("HWSetSection", "Failed to set section: ENCLOSURE_E2"),
               Error(kStep, "Failed to set section: ENCLOSURE_E2"),
               Error(kWriter, "Failed to write a enc info")});
    EXPECT_EQ(Value("ENCLOSURE_E1", "EncSN"), "E1");
    EXPECT_EQ(Value("ENCLOSURE_E2", "EncSN"), "(none)");
}

TEST_F(EnclosureWriter, OtherNodeMustBeReadable) {
    WriteHardware(Section("REMOTE_HOST", {"EncList=" + Repeat("E", 16)}));
    EXPECT_EQ(Write({"E1"}), -1);
    ExpectLog({Error("HWReadHostValue", "List size(16) > max size(15), " + Repeat("E", 16)),
               Error(kWriter, "Failed to load enc list")});
    EXPECT_EQ(Value("ENCLOSURE_E1", "EncSN"), "E1") << "written before";
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), "(none)");
}

TEST_F(EnclosureWriter, FailedRemovalGoesOn) {
    WriteHardware(All("A,B") + Stored("A") + Stored("B"));
    base_library::Fail(Call::kRemoveSection);
    EXPECT_EQ(Write({}), 0);
    ExpectLog({Error(kWriter, "Failed to remove section: ENCLOSURE_A")});
    EXPECT_EQ(Value("COMMON", "AllEnclosure"), "");
    EXPECT_EQ(Value("ENCLOSURE_A", "EncSN"), "A");
    EXPECT_EQ(Value("ENCLOSURE_B", "EncSN"), "(none)");
}

TEST_F(EnclosureWriter, FailureOfTheListOfAllKeepsTheResult) {
    base_library::Fail(Call::kSetSectionValue);
    EXPECT_EQ(Write({"E1"}), 0);
    ExpectLog({Error(kWriter, "Failed to set all enclist")});
    EXPECT_EQ(ReadText(kHardwareFile), Stored("E1"));
}

TEST_F(EnclosureWriter, TakesNoLock) {
    const HeldHardwareLock held;
    EXPECT_EQ(Write({"E1"}), 0);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
}

TEST_F(EnclosureWriter, WhatIsWrittenReadsBack) {
    List(&host_, {"E1", "E2"});
    ASSERT_EQ(HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host_), 0);
    WriteHardware(Section("LOCAL_HOST", {"EncListLength=2", "EncList=E1,E2"}) +
                  ReadText(kHardwareFile));
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &other_), 3);
    for (int index = 0; index < 2; ++index) {
        EXPECT_STREQ(other_.Encs[index].EncSN, host_.Encs[index].EncSN);
        EXPECT_EQ(other_.Encs[index].ModelID, 4);
        EXPECT_EQ(other_.Encs[index].MaxDisk, 2);
        EXPECT_EQ(other_.Encs[index].DiskTypes[1], -2);
        EXPECT_EQ(other_.Encs[index].FanStatus[0], -1) << "not stored yet";
    }
}

// --- One section

class SectionWriter : public HardwareTest {
  protected:
    SectionWriter() : hash_(VLIBCSzHashAlloc(1024)) {
        VLIBCSzHashSetValue(&hash_, "key", "a=b");
        VLIBCSzHashSetValue(&hash_, "other", "");
    }
    ~SectionWriter() override { VLIBCSzHashFree(hash_); }

    VLIBCSzHash *hash_;
};

TEST_F(SectionWriter, ReplacesOrAddsASection) {
    EXPECT_EQ(HWSetSection("NEW", hash_), 0);
    EXPECT_EQ(ReadText(kHardwareFile), "[NEW]\n\tkey=a=b\n\tother=\n");
    WriteHardware("[OLD]\n\tkey=1\n\tgone=2\n[NEXT]\n\ta=1\n");
    EXPECT_EQ(HWSetSection("OLD", hash_), 0);
    EXPECT_EQ(ReadText(kHardwareFile), "[OLD]\n\tkey=a=b\n\tother=\n[NEXT]\n\ta=1\n");
    ExpectLog({});
}

TEST_F(SectionWriter, MissingArgumentsAreRefused) {
    EXPECT_EQ(HWSetSection(nullptr, hash_), -1);
    EXPECT_EQ(HWSetSection("ANY", nullptr), -1);
    ExpectLog(Lines(2, Error("HWSetSection", "Bad paremeter")));
    EXPECT_FALSE(Exists(kHardwareFile));
}

TEST_F(SectionWriter, FailuresAreReported) {
    base_library::Fail(Call::kAddSection);
    EXPECT_EQ(HWSetSection("NEW", hash_), -1);
    ExpectLog({Error("HWSetSection", "Failed to add section: NEW")});
    const FolderInTheWay folder(kHardwareFile);
    EXPECT_EQ(HWSetSection("NEW", hash_), -1);
    ExpectLog({Error("HWSetSection", "Failed to set section: NEW")});
}

}  // namespace
