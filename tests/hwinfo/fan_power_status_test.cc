// Fans, power supplies and temperatures, merged and stored.

#include <algorithm>

#include "hwinfo/hardware_fixture.h"

namespace {

using base_library::Call;

constexpr char kWriter[] = "ZORHWWriteFanPowerStatus";

class FanPowerStatus : public HardwareTest {
  protected:
    // Two nodes with two enclosures each: the local fans are 1, the remote ones 5.
    FanPowerStatus() {
        Fill(&host_, ZOR_HOST_TYPE_FIRST, 1);
        Fill(&other_, ZOR_HOST_TYPE_SECOND, 5);
        WriteHardware(Bare("E1") + Bare("E2"));
    }

    static void Fill(ZORHWHostInfo *host, int32_t type, int32_t value) {
        host->HostType = type;
        host->EncListLength = host->EncListStatusLastCorretPos = 2;
        for (int index = 0; index < 2; ++index) {
            ZORHWEncInfo &enclosure = host->Encs[index];
            snprintf(enclosure.EncSN, sizeof enclosure.EncSN, "E%d", index + 1);
            std::fill_n(enclosure.FanStatus, 8, value);
            std::fill_n(enclosure.PowerStatus, 2, value);
            enclosure.TempStatus = value;
        }
    }

    // An enclosure that has only what its own writer stores.
    static std::string Bare(const std::string &serial) {
        return Section("ENCLOSURE_" + serial,
                       {"ModelID=4", "MaxDisk=1", "EncSN=" + serial, "DiskTypes=1"});
    }

    static std::string With(const std::string &serial, const std::string &fans,
                            const std::string &power = "1,1",
                            const std::string &temperature = "1") {
        return Section("ENCLOSURE_" + serial,
                       {"ModelID=4", "MaxDisk=1", "EncSN=" + serial, "DiskTypes=1",
                        "FanStatus=" + fans, "PowerStatus=" + power, "TempStatus=" + temperature});
    }

    int32_t Write() { return ZORHWWriteFanPowerStatus(&host_, &other_); }

    static constexpr char kLocalFans[] = "1,1,1,1,1,1,1,1";
    static constexpr char kFirstFromRemote[] = "5,5,5,5,1,1,1,1";
    static constexpr char kLastFromRemote[] = "1,1,1,1,5,5,5,5";
};

TEST_F(FanPowerStatus, RemoteHostTypeChoosesTheFans) {
    struct Row {
        int32_t local;
        int32_t remote;
        const char *fans;
    };
    for (const Row &row :
         {Row{8, 16, kLastFromRemote}, Row{16, 8, kFirstFromRemote}, Row{8, 24, kFirstFromRemote},
          Row{8, 0, kLocalFans}, Row{8, 1, kLocalFans}, Row{8, 48, kLastFromRemote},
          Row{8, -1, kFirstFromRemote}}) {
        Fill(&host_, row.local, 1);
        other_.HostType = row.remote;
        WriteHardware(Bare("E1") + Bare("E2"));
        EXPECT_EQ(Write(), 0);
        EXPECT_EQ(ReadText(kHardwareFile), With("E1", row.fans) + With("E2", row.fans))
            << row.remote;
    }
    EXPECT_TRUE(IsLockFree());
    ExpectLog({});
}

TEST_F(FanPowerStatus, MergeReachesAsFarAsBothChains) {
    struct Row {
        int32_t remote_position;
        int32_t merged;
    };
    for (const Row &row :
         {Row{-1, 0}, Row{0, 0}, Row{1, 1}, Row{2, 2}, Row{3, 2}, Row{16, 2}, Row{INT32_MAX, 2}}) {
        Fill(&host_, 8, 1);
        other_.EncListStatusLastCorretPos = row.remote_position;
        WriteHardware(Bare("E1") + Bare("E2"));
        EXPECT_EQ(Write(), 0);
        EXPECT_EQ(ReadText(kHardwareFile),
                  With("E1", row.merged > 0 ? kLastFromRemote : kLocalFans) +
                      With("E2", row.merged > 1 ? kLastFromRemote : kLocalFans));
        EXPECT_EQ(host_.Encs[0].FanStatus[7], row.merged > 0 ? 5 : 1) << "merged in place";
        EXPECT_EQ(host_.Encs[1].FanStatus[7], row.merged > 1 ? 5 : 1);
        EXPECT_EQ(host_.Encs[0].PowerStatus[0], 1);
        EXPECT_EQ(host_.Encs[0].TempStatus, 1);
    }
}

TEST_F(FanPowerStatus, StoredValuesAreReplaced) {
    WriteHardware(Section("COMMON", {"AllEnclosure=E1,E2"}) + With("E1", "9,9", "9", "9") +
                  Bare("E2"));
    other_.HostType = 0;
    host_.Encs[1].FanStatus[0] = host_.Encs[1].PowerStatus[1] = -1;
    host_.Encs[1].TempStatus = INT32_MIN;
    EXPECT_EQ(Write(), 0);
    EXPECT_EQ(ReadText(kHardwareFile), Section("COMMON", {"AllEnclosure=E1,E2"}) +
                                           With("E1", kLocalFans) +
                                           With("E2", "-1,1,1,1,1,1,1,1", "1,-1", "-2147483648"));
}

TEST_F(FanPowerStatus, LongTextsAreCut) {
    other_.HostType = 0;
    host_.EncListLength = 1;
    std::fill_n(host_.Encs[0].FanStatus, 8, INT32_MIN);
    std::fill_n(host_.Encs[0].PowerStatus, 2, INT32_MIN);
    EXPECT_EQ(Write(), 0);
    EXPECT_EQ(
        ReadText(kHardwareFile),
        With("E1", Repeat("-2147483648", 8).substr(0, 63), Repeat("-2147483648", 2)) + Bare("E2"));
}

TEST_F(FanPowerStatus, NodesMustBeTellable) {
    const ZORHWHostInfo before = host_;
    EXPECT_EQ(ZORHWWriteFanPowerStatus(nullptr, &other_), -1);
    EXPECT_EQ(ZORHWWriteFanPowerStatus(&host_, nullptr), -1);
    ExpectLog(Lines(2, Error(kWriter, "Bad parameter")));
    other_.HostType = 8;
    EXPECT_EQ(Write(), -1);
    ExpectLog({Error(kWriter, "Local host type is same with remote: 8 8")});
    EXPECT_EQ(memcmp(&before, &host_, sizeof before), 0) << "nothing is merged";
    for (const int32_t remote : {0, 16}) {
        host_.HostType = 0;
        other_.HostType = remote;
        EXPECT_EQ(Write(), -1);
        ExpectLog({Error(kWriter, "No local enclist initialized")});
    }
    EXPECT_EQ(ReadText(kHardwareFile), Bare("E1") + Bare("E2"));
}

TEST_F(FanPowerStatus, EmptyChainIsASuccess) {
    for (const int32_t length : {0, -1}) {
        host_.EncListLength = length;
        EXPECT_EQ(Write(), 0);
        EXPECT_EQ(host_.Encs[0].FanStatus[7], 1) << "nothing is merged";
    }
    EXPECT_EQ(ReadText(kHardwareFile), Bare("E1") + Bare("E2"));
    ExpectLog({});
}

TEST_F(FanPowerStatus, LengthsBeyondTheRecordStopAtItsEnd) {
    std::string sections;
    for (int index = 0; index < 15; ++index) {
        snprintf(host_.Encs[index].EncSN, sizeof host_.Encs[index].EncSN, "E%d", index);
        sections += Bare("E" + std::to_string(index));
    }
    WriteHardware(sections);
    host_.EncListLength = other_.EncListStatusLastCorretPos = INT32_MAX;
    EXPECT_EQ(Write(), 0);
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &host_), 0);
    log_.Take();
    EXPECT_NE(ReadText(kHardwareFile).find(With("E14", "0,0,0,0,0,0,0,0", "0,0", "0")),
              std::string::npos);
}

TEST_F(FanPowerStatus, EnclosureWithoutASerialIsSkipped) {
    host_.Encs[0].EncSN[0] = '\0';
    EXPECT_EQ(Write(), 0);
    EXPECT_EQ(ReadText(kHardwareFile), Bare("E1") + With("E2", kLastFromRemote));
    ExpectLog({Error(kWriter, "No sn in enclosure: 0")});
}

TEST_F(FanPowerStatus, EnclosureWithoutASectionStopsTheWriting) {
    WriteHardware(Bare("E1"));
    EXPECT_EQ(Write(), -1);
    EXPECT_EQ(ReadText(kHardwareFile), With("E1", kLastFromRemote)) << "those before are written";
    ExpectLog({Error(kWriter, "Failed to get section ENCLOSURE_E2")});
    EXPECT_TRUE(IsLockFree());
    WriteHardware(Bare("E2"));
    EXPECT_EQ(Write(), -1);
    EXPECT_EQ(ReadText(kHardwareFile), Bare("E2")) << "those after it are left alone";
    ExpectLog({Error(kWriter, "Failed to get section ENCLOSURE_E1")});
}

TEST_F(FanPowerStatus, FailuresOfTheBaseLibraryAreReported) {
    struct Row {
        Call call;
        int nth;
        const char *message;
    };
    for (const Row &row : {Row{Call::kHashAlloc, 1, "Failed to alloc"},
                           Row{Call::kGetSection, 1, "Failed to get section ENCLOSURE_E1"},
                           Row{Call::kHashSetValue, 1, "Failed to set hash set value"},
                           Row{Call::kHashSetValue, 2, "Failed set hash value"},
                           Row{Call::kHashSetValue, 3, "Failed to set temperature to hash"},
                           Row{Call::kSetSection, 1, "Failed to set section: ENCLOSURE_E1"}}) {
        Fill(&host_, 8, 1);
        base_library::Fail(row.call, row.nth);
        EXPECT_EQ(Write(), -1);
        ExpectLog({Error(kWriter, row.message)});
        EXPECT_TRUE(IsLockFree());
        EXPECT_EQ(host_.Encs[0].FanStatus[7], 5) << "merged, whatever follows";
    }
    EXPECT_EQ(ReadText(kHardwareFile), Bare("E1") + Bare("E2"));
}

TEST_F(FanPowerStatus, NeedsTheLockAfterTheMerge) {
    const HeldHardwareLock held;
    EXPECT_EQ(Write(), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    EXPECT_EQ(host_.Encs[1].FanStatus[4], 5);
    EXPECT_EQ(ReadText(kHardwareFile), Bare("E1") + Bare("E2"));
    ExpectLog({Error(kWriter, "Failed to lock")});
}

TEST_F(FanPowerStatus, WhatIsStoredIsWhatTheQueriesSee) {
    host_.Encs[1].PowerStatus[0] = 3;
    other_.Encs[0].FanStatus[6] = 0;
    WriteHardware(Section("LOCAL_HOST",
                          {"EncListLength=2", "EncList=E1,E2", "EncListStatusLastCorretPos=2"}) +
                  Bare("E1") + Bare("E2"));
    EXPECT_EQ(Write(), 0);
    ZORHWHostInfo read = {};
    EXPECT_EQ(HWReadEncList(ZOR_HOST_LOCAL, &read), 3);
    EXPECT_EQ(read.Encs[0].FanStatus[6], 0);
    EXPECT_EQ(read.Encs[0].FanStatus[5], 5);
    EXPECT_EQ(read.Encs[1].PowerStatus[0], 3);
    char failed[32] = "";
    EXPECT_EQ(ZORHWGetFailedEncHardware(failed, sizeof failed), 0);
    EXPECT_STREQ(failed, "power,fan");
}

}  // namespace
