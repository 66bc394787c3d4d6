// The record of a node.

#include <algorithm>

#include "hwinfo/hardware_fixture.h"

namespace {

using base_library::Call;

constexpr char kReader[] = "HWReadHostValue";

class HostRecord : public HardwareTest {
  protected:
    static std::string Bytes(const ZORHWHostInfo &host) {
        return {reinterpret_cast<const char *>(&host), sizeof host};
    }
};

TEST_F(HostRecord, EveryKeyFillsItsField) {
    WriteHardware(Section(
        "LOCAL_HOST",
        {"VisibleDisk=24", "UsedDisk=20", "HostType=8", "EncListStatus=1", "EncListLength=2",
         "EncListStatusLastCorretPos=3", "Memory=8192", "EncList=ENC1,ENC2"}));
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_STREQ(host_.Model, "QM77000zt+");
    EXPECT_EQ(host_.VisibleDisk, 24);
    EXPECT_EQ(host_.UsedDisk, 20);
    EXPECT_EQ(host_.HostType, 8);
    EXPECT_EQ(host_.EncListStatus, 1);
    EXPECT_EQ(host_.EncListLength, 2);
    EXPECT_EQ(host_.EncListStatusLastCorretPos, 3);
    EXPECT_EQ(host_.Memory, 8192);
    EXPECT_STREQ(host_.Encs[0].EncSN, "ENC1");
    EXPECT_STREQ(host_.Encs[1].EncSN, "ENC2");
    EXPECT_STREQ(host_.Encs[2].EncSN, "");
    ExpectLog({});
}

TEST_F(HostRecord, SelectorChoosesTheSection) {
    WriteHardware(Section("LOCAL_HOST", {"Memory=1"}) + Section("REMOTE_HOST", {"Memory=2"}));
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_EQ(host_.Memory, 1);
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_REMOTE, &host_), 1);
    EXPECT_EQ(host_.Memory, 2);
}

TEST_F(HostRecord, AbsentKeysLeaveTheirFieldsAlone) {
    WriteHardware(Section("LOCAL_HOST", {"UsedDisk=7"}));
    host_.VisibleDisk = host_.HostType = host_.EncListStatus = host_.EncListLength =
        host_.EncListStatusLastCorretPos = host_.Memory = 99;
    strcpy(host_.Encs[0].EncSN, "BEFORE");
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_EQ(host_.UsedDisk, 7);
    for (const int32_t field :
         {host_.VisibleDisk, host_.HostType, host_.EncListStatus, host_.EncListLength,
          host_.EncListStatusLastCorretPos, host_.Memory})
        EXPECT_EQ(field, 99);
    EXPECT_STREQ(host_.Encs[0].EncSN, "BEFORE");
}

TEST_F(HostRecord, MissingSectionLeavesTheRecordUntouched) {
    const std::string before(sizeof host_, '#');
    for (const std::string &file : {std::string(), Section("REMOTE_HOST", {"Memory=2"})}) {
        WriteHardware(file);
        memset(&host_, '#', sizeof host_);
        EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 0);
        EXPECT_EQ(Bytes(host_), before);
    }
    std::remove(kHardwareFile);
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 0);
    EXPECT_EQ(Bytes(host_), before);
    ExpectLog({});
}

TEST_F(HostRecord, UnparsableNumbersReadAsZero) {
    for (const char *value : {"", "x", "-", "=5", "many"}) {
        WriteHardware(Section("LOCAL_HOST", {std::string("Memory=") + value}));
        host_.Memory = 5;
        EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
        EXPECT_EQ(host_.Memory, 0) << value;
    }
    WriteHardware(Section("LOCAL_HOST", {"Memory=12MB", "HostType=-3"}));
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_EQ(host_.Memory, 12);
    EXPECT_EQ(host_.HostType, -3);
}

TEST_F(HostRecord, FifteenEnclosuresAreAccepted) {
    WriteHardware(Section("LOCAL_HOST", {"EncList=" + Repeat("E", 15)}));
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_STREQ(host_.Encs[14].EncSN, "E");
    EXPECT_EQ(host_.EncListLength, 0) << "the length is a key of its own";
}

TEST_F(HostRecord, SixteenEnclosuresAreRefused) {
    const std::string list = Repeat("E", 16);
    WriteHardware(Section("LOCAL_HOST", {"EncList=" + list}));
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), -1);
    ExpectLog({Error(kReader, "List size(16) > max size(15), " + list)});
    EXPECT_STREQ(host_.Encs[0].EncSN, "");
}

TEST_F(HostRecord, LongSerialIsCut) {
    WriteHardware(
        Section("LOCAL_HOST", {"EncList=" + std::string(35, 'a') + "," + std::string(36, 'b')}));
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_EQ(host_.Encs[0].EncSN, std::string(35, 'a'));
    EXPECT_EQ(host_.Encs[1].EncSN, std::string(35, 'b'));
    EXPECT_EQ(host_.Encs[1].ModelID, 0) << "the field behind it is untouched";
}

TEST_F(HostRecord, LongListIsCut) {
    // 14 items, a comma each, and a last one that reaches to the 1,023rd character.
    const std::string list = Repeat("E", 14) + "," + std::string(1100, 'x');
    WriteHardware(Section("LOCAL_HOST", {"EncList=" + list}));
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_EQ(host_.Encs[14].EncSN, std::string(35, 'x'));
    const std::string commas(1100, ',');
    WriteHardware(Section("LOCAL_HOST", {"EncList=" + commas}));
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), -1);
    ExpectLog({Error(kReader, "List size(1024) > max size(15), " + commas.substr(0, 1023))});
}

TEST_F(HostRecord, EmptyItemsAreEmptySerials) {
    WriteHardware(Section("LOCAL_HOST", {"EncList=A,,B"}));
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_STREQ(host_.Encs[0].EncSN, "A");
    EXPECT_STREQ(host_.Encs[1].EncSN, "");
    EXPECT_STREQ(host_.Encs[2].EncSN, "B");
}

TEST_F(HostRecord, ValuesMayHoldAnEqualsSign) {
    WriteHardware(Section("LOCAL_HOST", {"EncList=A=1,B==2"}));
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_STREQ(host_.Encs[0].EncSN, "A=1");
    EXPECT_STREQ(host_.Encs[1].EncSN, "B==2");
}

TEST_F(HostRecord, SectionCutInALineIsReadAsFarAsItGoes) {
    const std::string whole = Section("LOCAL_HOST", {"Memory=8192", "UsedDisk=20"});
    for (size_t length = 0; length <= whole.size(); ++length) {
        WriteHardware(whole.substr(0, length));
        EXPECT_GE(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 0) << length;
    }
    EXPECT_EQ(host_.UsedDisk, 20);
    ExpectLog({});
}

TEST_F(HostRecord, BadArgumentsAreRefused) {
    for (const int32_t selector : {0, 1, 3, 5, -1})
        EXPECT_EQ(HWReadHostValue(selector, &host_), -1);
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, nullptr), -1);
    ExpectLog(Lines(6, Error(kReader, "Bad parameter")));
}

TEST_F(HostRecord, FailuresOfTheBaseLibraryAreReported) {
    WriteHardware(Section("LOCAL_HOST", {"EncList=A,B"}));
    for (const Call call : {Call::kHashAlloc, Call::kListAlloc}) {
        base_library::Fail(call);
        EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), -1);
        ExpectLog({Error(kReader, "Failed to alloc")});
    }
    base_library::Fail(Call::kStrSep);
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), -1);
    ExpectLog({Error(kReader, "Failed to strsep(A,B)")});
    const FolderInTheWay folder(kHardwareFile);
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), -1);
    EXPECT_EQ(HWReadHostValue(ZOR_HOST_REMOTE, &host_), -1);
    ExpectLog({Error(kReader, "Failed to get section :LOCAL_HOST"),
               Error(kReader, "Failed to get section :REMOTE_HOST")});
}

TEST_F(HostRecord, LockedReaderGivesTheSameResults) {
    constexpr char kLocked[] = "ZORHWReadHostValue";
    EXPECT_EQ(ZORHWReadHostValue(ZOR_HOST_LOCAL, &host_), 0);
    WriteHardware(Section("LOCAL_HOST", {"Memory=8192"}));
    EXPECT_EQ(ZORHWReadHostValue(ZOR_HOST_LOCAL, &host_), 1);
    EXPECT_EQ(host_.Memory, 8192);
    EXPECT_TRUE(IsLockFree());
    ExpectLog({});
    EXPECT_EQ(ZORHWReadHostValue(3, &host_), -1);
    ExpectLog({Error(kReader, "Bad parameter")});
    EXPECT_TRUE(IsLockFree());
    {
        const HeldHardwareLock held;
        EXPECT_EQ(ZORHWReadHostValue(ZOR_HOST_LOCAL, &host_), -1);
        EXPECT_EQ(virtual_time::Sleeps(), 10);
        ExpectLog({Error(kLocked, "Failed to get lock")});
        EXPECT_EQ(HWReadHostValue(ZOR_HOST_LOCAL, &host_), 1) << "takes no lock";
    }
    const FolderInTheWay folder(kHardwareLockFile);
    EXPECT_EQ(ZORHWReadHostValue(ZOR_HOST_LOCAL, &host_), -1);
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], Error(kLocked, "Failed to get lock"));
}

}  // namespace
