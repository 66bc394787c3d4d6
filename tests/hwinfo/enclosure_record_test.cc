// The record of one enclosure, read through the list of a node.

#include "hwinfo/hardware_fixture.h"

namespace {

using base_library::Call;

constexpr char kReader[] = "HWReadAEncInfo";
constexpr int32_t kUnreadable = 2;
constexpr int32_t kRead = 3;

class EnclosureRecord : public HardwareTest {
  protected:
    // Reads the one enclosure of a node, which has these pairs.
    int32_t Read(const Lines &pairs) { return ReadFile(Section("ENCLOSURE_E1", pairs)); }

    int32_t ReadFile(const std::string &enclosures) {
        WriteHardware(Section("LOCAL_HOST", {"EncListLength=1", "EncList=E1"}) + enclosures);
        memset(enc_, 0, sizeof *enc_);
        return HWReadEncList(ZOR_HOST_LOCAL, &host_);
    }

    void ExpectUnreadable(const std::string &message) {
        ExpectLog({Error(kReader, message), Error("HWReadEncList", "Failed to load enc info")});
    }

    ZORHWEncInfo *const enc_ = &host_.Encs[0];
    const Lines needed_ = {"EncSN=E1", "ModelID=4", "MaxDisk=3"};

    Lines With(const Lines &more) const {
        Lines all = needed_;
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }
};

TEST_F(EnclosureRecord, EveryKeyFillsItsField) {
    EXPECT_EQ(Read({"EncSN=SERIAL", "ModelID=4", "MaxDisk=3", "TempStatus=2", "DiskTypes=1,0,-2",
                    "FanStatus=1,0,-1,3,4,5,6,7", "PowerStatus=1,3"}),
              kRead);
    EXPECT_STREQ(enc_->EncSN, "SERIAL");
    EXPECT_EQ(enc_->ModelID, 4);
    EXPECT_EQ(enc_->MaxDisk, 3);
    EXPECT_EQ(enc_->TempStatus, 2);
    EXPECT_EQ(enc_->PeerLinkState, 0);
    const int32_t disks[] = {1, 0, -2, 0};
    const int32_t fans[] = {1, 0, -1, 3, 4, 5, 6, 7};
    const int32_t power[] = {1, 3};
    EXPECT_EQ(memcmp(enc_->DiskTypes, disks, sizeof disks), 0);
    EXPECT_EQ(memcmp(enc_->FanStatus, fans, sizeof fans), 0);
    EXPECT_EQ(memcmp(enc_->PowerStatus, power, sizeof power), 0);
    ExpectLog({});
}

TEST_F(EnclosureRecord, WithoutASectionEverythingIsUnknown) {
    WriteHardware(Section("LOCAL_HOST", {"EncListLength=1", "EncList=E1"}));
    enc_->TempStatus = enc_->ModelID = enc_->MaxDisk = enc_->DiskTypes[0] = 7;
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), kRead);
    for (const int32_t fan : enc_->FanStatus) EXPECT_EQ(fan, -1);
    for (const int32_t power : enc_->PowerStatus) EXPECT_EQ(power, -1);
    for (const int32_t field : {enc_->TempStatus, enc_->ModelID, enc_->MaxDisk, enc_->DiskTypes[0]})
        EXPECT_EQ(field, 7);
    EXPECT_STREQ(enc_->EncSN, "E1");
    ExpectLog({});
}

TEST_F(EnclosureRecord, ThreeKeysAreRequired) {
    EXPECT_EQ(Read({"ModelID=4", "MaxDisk=3"}), kUnreadable);
    ExpectUnreadable("No enc sn in enc data.");
    EXPECT_EQ(Read({"EncSN=X", "MaxDisk=3"}), kUnreadable);
    ExpectUnreadable("No enc modelid in enc data.");
    EXPECT_STREQ(enc_->EncSN, "X") << "set before the failure";
    EXPECT_EQ(Read({"EncSN=X", "ModelID=9"}), kUnreadable);
    ExpectUnreadable("No enc max disks in enc data.");
    EXPECT_EQ(enc_->ModelID, 9);
}

TEST_F(EnclosureRecord, OptionalKeysMayBeAbsent) {
    EXPECT_EQ(Read(needed_), kRead);
    EXPECT_EQ(enc_->TempStatus, 0);
    EXPECT_EQ(enc_->DiskTypes[0], 0);
    for (const int32_t fan : enc_->FanStatus) EXPECT_EQ(fan, -1);
    for (const int32_t power : enc_->PowerStatus) EXPECT_EQ(power, -1);
    ExpectLog({});
}

TEST_F(EnclosureRecord, EmptyListsLeaveTheValuesAlone) {
    WriteHardware(Section("LOCAL_HOST", {"EncListLength=1", "EncList=E1"}) +
                  Section("ENCLOSURE_E1", With({"DiskTypes=", "FanStatus=", "PowerStatus="})));
    enc_->DiskTypes[2] = enc_->FanStatus[7] = enc_->PowerStatus[1] = 42;
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), kRead);
    EXPECT_EQ(enc_->DiskTypes[2], 42);
    EXPECT_EQ(enc_->FanStatus[7], 42);
    EXPECT_EQ(enc_->PowerStatus[1], 42);
    ExpectLog({});
}

TEST_F(EnclosureRecord, DiskTypesMustBeAsManyAsSlots) {
    for (const char *types : {"DiskTypes=1,2", "DiskTypes=1,2,3,4", "DiskTypes=1"}) {
        EXPECT_EQ(Read(With({types})), kUnreadable) << types;
        ExpectUnreadable("disk list length not match");
        EXPECT_EQ(enc_->MaxDisk, 3);
        EXPECT_EQ(enc_->DiskTypes[0], 0);
    }
}

TEST_F(EnclosureRecord, FansMustBeEight) {
    EXPECT_EQ(Read(With({"FanStatus=1,2,3,4,5,6,7"})), kUnreadable);
    ExpectUnreadable("disk list length not match 8 != 7 (1,2,3,4,5,6,7)");
    EXPECT_EQ(Read(With({"FanStatus=1,2,3,4,5,6,7,8,9"})), kUnreadable);
    ExpectUnreadable("disk list length not match 8 != 9 (1,2,3,4,5,6,7,8,9)");
    EXPECT_EQ(enc_->FanStatus[0], 0);
}

TEST_F(EnclosureRecord, PowerSuppliesMustBeTwo) {
    for (const char *power : {"PowerStatus=1", "PowerStatus=1,2,3"}) {
        EXPECT_EQ(Read(With({power})), kUnreadable) << power;
        ExpectUnreadable("disk list length not match");
    }
    EXPECT_EQ(enc_->PowerStatus[0], 0);
}

TEST_F(EnclosureRecord, MoreSlotsThanTheRecordHoldsAreCounted) {
    const std::string sixteen = "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16";
    EXPECT_EQ(Read({"EncSN=E1", "ModelID=4", "MaxDisk=16", "DiskTypes=" + sixteen}), kRead);
    EXPECT_EQ(enc_->MaxDisk, 16);
    for (int32_t slot = 0; slot < 15; ++slot) EXPECT_EQ(enc_->DiskTypes[slot], slot + 1);
    EXPECT_EQ(host_.Encs[1].TempStatus, 0) << "the enclosure behind it is untouched";
    EXPECT_EQ(host_.Encs[1].MaxDisk, 0);
    EXPECT_EQ(Read({"EncSN=E1", "ModelID=4", "MaxDisk=1000", "DiskTypes=" + Repeat("9", 1000)}),
              kRead);
    EXPECT_EQ(enc_->DiskTypes[14], 9);
    EXPECT_EQ(host_.Encs[1].MaxDisk, 0);
    ExpectLog({});
}

TEST_F(EnclosureRecord, OddNumbersOfSlotsAreRead) {
    for (const auto &[text, number] :
         {std::pair<const char *, int32_t>{"-1", -1}, {"2147483647", INT32_MAX}, {"x", 0}}) {
        EXPECT_EQ(Read({"EncSN=E1", "ModelID=4", std::string("MaxDisk=") + text}), kRead);
        EXPECT_EQ(enc_->MaxDisk, number);
    }
    ExpectLog({});
    EXPECT_EQ(Read({"EncSN=E1", "ModelID=4", "MaxDisk=-1", "DiskTypes=1"}), kUnreadable);
    ExpectUnreadable("disk list length not match");
}

TEST_F(EnclosureRecord, UnparsableNumbersReadAsZero) {
    EXPECT_EQ(Read({"EncSN=E1", "ModelID=no", "MaxDisk=2", "TempStatus=", "DiskTypes=x,5",
                    "FanStatus=1,,x,1,1,1,1,1", "PowerStatus=,1"}),
              kRead);
    EXPECT_EQ(enc_->ModelID, 0);
    EXPECT_EQ(enc_->DiskTypes[0], 0);
    EXPECT_EQ(enc_->DiskTypes[1], 5);
    EXPECT_EQ(enc_->FanStatus[1], 0);
    EXPECT_EQ(enc_->FanStatus[2], 0);
    EXPECT_EQ(enc_->PowerStatus[0], 0);
    EXPECT_EQ(enc_->PowerStatus[1], 1);
}

TEST_F(EnclosureRecord, LongSerialIsCut) {
    const std::string serial(80, 'S');
    WriteHardware(Section("LOCAL_HOST", {"EncListLength=1", "EncList=" + serial}) +
                  Section("ENCLOSURE_" + serial.substr(0, 35),
                          {"EncSN=" + serial, "ModelID=4", "MaxDisk=0"}));
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), kRead);
    EXPECT_EQ(enc_->EncSN, serial.substr(0, 35));
    EXPECT_EQ(enc_->ModelID, 4) << "found under the cut serial number";
}

TEST_F(EnclosureRecord, FailuresOfTheBaseLibraryAreReported) {
    base_library::Fail(Call::kHashAlloc, 2);  // the first is the node's
    EXPECT_EQ(Read(needed_), kUnreadable);
    ExpectUnreadable("Failed to alloc hash");
    base_library::Fail(Call::kListAlloc, 2);
    EXPECT_EQ(Read(needed_), kUnreadable);
    ExpectUnreadable("Failed to allock list");
    base_library::Fail(Call::kGetSection, 2);
    EXPECT_EQ(Read(needed_), kUnreadable);
    ExpectUnreadable("Failed to use file get section");
    base_library::Fail(Call::kStrSep, 2);
    EXPECT_EQ(Read(With({"DiskTypes=1,2,3"})), kUnreadable);
    ExpectUnreadable("Failed to strsep");
    base_library::Fail(Call::kStrSep, 2);
    EXPECT_EQ(Read(With({"FanStatus=1,1,1,1,1,1,1,1"})), kUnreadable);
    ExpectUnreadable("disk list length not match 8 != -1 (1,1,1,1,1,1,1,1)");
    base_library::Fail(Call::kStrSep, 2);
    EXPECT_EQ(Read(With({"PowerStatus=1,1"})), kUnreadable);
    ExpectUnreadable("disk list length not match");
}

}  // namespace
