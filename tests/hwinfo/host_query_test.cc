// Questions on single values of a node.

#include "hwinfo/hardware_fixture.h"

namespace {

using base_library::Call;

class HostQuery : public HardwareTest {};

TEST_F(HostQuery, HostTypeIsTheLocalOne) {
    WriteHardware(Section("LOCAL_HOST", {"HostType=8"}) + Section("REMOTE_HOST", {"HostType=16"}));
    EXPECT_EQ(ZORHWGetHostNodeType(), 8);
    EXPECT_TRUE(IsLockFree());
    for (const char *value : {"HostType=", "HostType=x", "HostType=0"}) {
        WriteHardware(Section("LOCAL_HOST", {value}));
        EXPECT_EQ(ZORHWGetHostNodeType(), 0);
    }
    for (const std::string &file : {std::string(), Section("LOCAL_HOST", {"Memory=1"})}) {
        WriteHardware(file);
        EXPECT_EQ(ZORHWGetHostNodeType(), 0);
    }
    ExpectLog({});
}

TEST_F(HostQuery, NumbersAreReadUpToSevenDigits) {
    WriteHardware(Section("LOCAL_HOST",
                          {"HostType=123456789", "Memory=123456789", "EncListStatus=987654321"}));
    EXPECT_EQ(ZORHWGetHostNodeType(), 1234567);
    EXPECT_EQ(ZORHWGetMemory(ZOR_HOST_LOCAL), 1234567);
    EXPECT_EQ(ZORHWGetEncListStatus(ZOR_HOST_LOCAL), 9876543);
}

TEST_F(HostQuery, EncListStatusIsThatOfTheNode) {
    WriteHardware(Section("LOCAL_HOST", {"Memory=1", "EncListStatus=2"}) +
                  Section("REMOTE_HOST", {"Memory=1", "EncListStatus=1"}));
    EXPECT_EQ(ZORHWGetEncListStatus(ZOR_HOST_LOCAL), 2);
    EXPECT_EQ(ZORHWGetEncListStatus(ZOR_HOST_REMOTE), 1);
    EXPECT_TRUE(IsLockFree());
    ExpectLog({});
}

TEST_F(HostQuery, WithoutMemoryTheSectionIsNotFilledYet) {
    for (const char *memory : {"Memory=0", "Memory=-5", "Memory=x", "Other=1"}) {
        WriteHardware(Section("LOCAL_HOST", {memory, "EncListStatus=2"}));
        base_library::Fail(Call::kGetSectionValue, 2);
        EXPECT_EQ(ZORHWGetEncListStatus(ZOR_HOST_LOCAL), 0);
        EXPECT_FALSE(base_library::Reset()) << "the status is not read";
    }
    ExpectLog({});
}

TEST_F(HostQuery, MemoryIsPositiveOrUnknown) {
    WriteHardware(Section("LOCAL_HOST", {"Memory=8192"}) + Section("REMOTE_HOST", {"Memory=4096"}));
    EXPECT_EQ(ZORHWGetMemory(ZOR_HOST_LOCAL), 8192);
    EXPECT_EQ(ZORHWGetMemory(ZOR_HOST_REMOTE), 4096);
    EXPECT_TRUE(IsLockFree());
    for (const char *memory : {"Memory=0", "Memory=-5", "Memory=x", "Memory=", "Other=1"}) {
        WriteHardware(Section("LOCAL_HOST", {memory}));
        EXPECT_EQ(ZORHWGetMemory(ZOR_HOST_LOCAL), -1) << memory;
        EXPECT_EQ(ZORHWGetMemory(ZOR_HOST_REMOTE), -1);
    }
    ExpectLog({});
}

TEST_F(HostQuery, OtherSelectorsAreRefused) {
    for (const int32_t selector : {0, 1, 3, 5, -1}) {
        EXPECT_EQ(ZORHWGetEncListStatus(selector), 0);
        EXPECT_EQ(ZORHWGetMemory(selector), -1);
        const std::string number = std::to_string(selector);
        ExpectLog({Error("ZORHWGetEncListStatus", "Bad parameter, role: " + number),
                   Error("ZORHWGetMemory", "Error parameter :" + number)});
    }
}

TEST_F(HostQuery, FailuresOfTheFileAreReported) {
    WriteHardware(Section("LOCAL_HOST", {"Memory=1", "EncListStatus=2"}));
    base_library::Fail(Call::kGetSectionValue, 2);
    EXPECT_EQ(ZORHWGetEncListStatus(ZOR_HOST_LOCAL), 0);
    ExpectLog({Error("ZORHWGetEncListStatus", "Failed to get host type")});
    const FolderInTheWay folder(kHardwareFile);
    EXPECT_EQ(ZORHWGetHostNodeType(), 0);
    EXPECT_EQ(ZORHWGetEncListStatus(ZOR_HOST_LOCAL), 0);
    EXPECT_EQ(ZORHWGetMemory(ZOR_HOST_LOCAL), -1);
    ExpectLog({Notice("ZORHWGetHostNodeType", "Failed to get host type"),
               Notice("ZORHWGetEncListStatus", "Failed to get host memory"),
               Notice("ZORHWGetMemory", "Failed to get memory on hw info cached")});
    EXPECT_TRUE(IsLockFree());
}

TEST_F(HostQuery, EachTakesTheLock) {
    WriteHardware(Section("LOCAL_HOST", {"Memory=1", "HostType=8", "EncListStatus=2"}));
    const HeldHardwareLock held;
    EXPECT_EQ(ZORHWGetHostNodeType(), 0);
    EXPECT_EQ(ZORHWGetEncListStatus(ZOR_HOST_LOCAL), 0);
    EXPECT_EQ(ZORHWGetMemory(ZOR_HOST_LOCAL), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 30);
    ExpectLog({Error("ZORHWGetHostNodeType", "Failed to lock"),
               Error("ZORHWGetEncListStatus", "Failed to lock"),
               Error("ZORHWGetMemory", "Failed to lock")});
}

}  // namespace
