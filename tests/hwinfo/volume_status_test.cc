// The volume status bits.

#include "hwinfo/hardware_fixture.h"

namespace {

using base_library::Call;

constexpr char kQuestion[] = "ZORHWGetVolumnStatus";

class VolumeStatus : public HardwareTest {
  protected:
    static std::string Counters(const std::string &degraded, const std::string &crashed,
                                const std::string &degradedCache, const std::string &crashedCache) {
        return Section("COMMON",
                       {"DegradedSpaces=" + degraded, "CrashedSpaces=" + crashed,
                        "DegradedFCache=" + degradedCache, "CrashedFCache=" + crashedCache});
    }

    static std::string Disks(int local, int remote) {
        return Section("LOCAL_HOST", {"UsedDisk=" + std::to_string(local)}) +
               Section("REMOTE_HOST", {"UsedDisk=" + std::to_string(remote)});
    }

    uint32_t flags_ = 0xffffffff;
};

TEST_F(VolumeStatus, EveryCombinationOfCounters) {
    for (uint32_t set = 0; set < 16; ++set) {
        for (const bool remote_has_more : {false, true}) {
            const auto count = [set](uint32_t bit) { return set & bit ? "3" : "0"; };
            WriteHardware(Counters(count(1), count(2), count(4), count(8)) +
                          Disks(10, remote_has_more ? 11 : 10));
            uint32_t expected = (set & 1 ? 2u : 0u) | (set & 2 ? 1u : 0u) | (set & 4 ? 16u : 0u) |
                                (set & 8 ? 8u : 0u);
            if (remote_has_more) expected |= (set & 2 ? 4u : 0u) | (set & 8 ? 32u : 0u);
            EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), 0);
            EXPECT_EQ(flags_, expected) << set << remote_has_more;
        }
    }
    EXPECT_TRUE(IsLockFree());
    ExpectLog({});
}

TEST_F(VolumeStatus, CrashedWithTheRemoteNodesDisks) {
    WriteHardware(Counters("0", "1", "0", "0") + Disks(5, 5));
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), 0);
    EXPECT_EQ(flags_, 1u);
    WriteHardware(Counters("0", "1", "0", "0") + Disks(5, 6));
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), 0);
    EXPECT_EQ(flags_, 5u);
    WriteHardware(Counters("0", "1", "0", "0") + Disks(6, 5));
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), 0);
    EXPECT_EQ(flags_, 1u);
}

TEST_F(VolumeStatus, AbsentCountersAndHostsCountAsNone) {
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), 0);
    EXPECT_EQ(flags_, 0u);
    WriteHardware(Section("COMMON", {"CrashedSpaces=1"}) + Section("REMOTE_HOST", {"UsedDisk=1"}));
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), 0);
    EXPECT_EQ(flags_, 5u);
    ExpectLog({});
}

TEST_F(VolumeStatus, CountersAreReadUpToThreeDigits) {
    WriteHardware(Counters("0001", "00001", "-1", "x"));
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), 0);
    EXPECT_EQ(flags_, 0u);
    WriteHardware(Counters("001", "9999", "", "1"));
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), 0);
    EXPECT_EQ(flags_, 1u | 2u | 8u);
}

TEST_F(VolumeStatus, FailedCounterKeepsTheBitsBeforeIt) {
    WriteHardware(Counters("1", "1", "1", "1"));
    struct Row {
        int nth;
        uint32_t flags;
        const char *message;
    };
    for (const Row &row : {Row{1, 0, "Failed to get space degrade count"},
                           Row{2, 2, "Failed to get space crash count"},
                           Row{3, 3, "Failed to get space degrade count"},
                           Row{4, 19, "Failed to get space crash count"}}) {
        base_library::Fail(Call::kGetSectionValue, row.nth);
        EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), -1);
        EXPECT_EQ(flags_, row.flags) << row.nth;
        ExpectLog({Error(kQuestion, row.message)});
        EXPECT_TRUE(IsLockFree());
    }
}

TEST_F(VolumeStatus, HostsMustBeReadable) {
    WriteHardware(Counters("0", "1", "0", "0") +
                  Section("LOCAL_HOST", {"EncList=" + Repeat("E", 16)}));
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), -1);
    EXPECT_EQ(flags_, 1u);
    const std::string refused = "List size(16) > max size(15), " + Repeat("E", 16);
    ExpectLog(
        {Error("HWReadHostValue", refused), Error(kQuestion, "Failed to get local host value")});
    WriteHardware(Counters("0", "0", "0", "1") +
                  Section("REMOTE_HOST", {"EncList=" + Repeat("E", 16)}));
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), -1);
    EXPECT_EQ(flags_, 8u);
    ExpectLog(
        {Error("HWReadHostValue", refused), Error(kQuestion, "Failed to get remote host value")});
    WriteHardware(Counters("1", "0", "1", "0") +
                  Section("REMOTE_HOST", {"EncList=" + Repeat("E", 16)}));
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), 0) << "without a crash nobody reads the hosts";
    EXPECT_EQ(flags_, 18u);
    ExpectLog({});
}

TEST_F(VolumeStatus, NeedsFlagsAndTheLock) {
    EXPECT_EQ(ZORHWGetVolumnStatus(nullptr), -1);
    ExpectLog({Error(kQuestion, "Error parameter")});
    const HeldHardwareLock held;
    EXPECT_EQ(ZORHWGetVolumnStatus(&flags_), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    EXPECT_EQ(flags_, 0xffffffff);
    ExpectLog({Error(kQuestion, "Failed to lock")});
}

}  // namespace
