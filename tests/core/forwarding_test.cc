// What is forwarded to the remote node.

#include <cstring>
#include <iterator>

#include "core/command_fixture.h"
#include "kevacore.h"

namespace {

class Forwarding : public CommandTest {};

constexpr uint64_t kEvents[] = {
    0x1110000A, 0x1110000F, 0x11100011, 0x11600004, 0x11600005, 0x11600006, 0x11600007,
    0x11600063, 0x11600064, 0x11600065, 0x11600066, 0x13300045, 0x1110000B, 0x11600040,
    0x11600046, 0x11600047, 0x1160004E, 0x11600084, 0x1160008A, 0x1160008B, 0x11600098,
    0x11600099, 0x1160009A, 0x12800005, 0x12800006, 0x13300056, 0x11100007, 0x11100008,
    0x11600048, 0x11600050, 0x116000AD, 0x116000AE, 0x11600051, 0x11600052};

constexpr const char *kTags[] = {"EboxFanResume",
                                 "EboxFanStop",
                                 "InternalFanResume",
                                 "InternalFanStop",
                                 "CpuFanResume",
                                 "CpuFanStop",
                                 "OverheatShutdownCPU",
                                 "OverheatShutdownThermal",
                                 "RedundantPowerStopProvide",
                                 "RedundantPowerRecoveredProvide",
                                 "EboxLinkResume",
                                 "EboxLinkFail"};

TEST_F(Forwarding, TablesAreAsTheyAre) {
    ASSERT_EQ(std::size(gAppendLogEventList), 34u);
    ASSERT_EQ(std::size(gSendNotifyTagList), 12u);
    for (size_t index = 0; index < std::size(kEvents); ++index)
        EXPECT_EQ(gAppendLogEventList[index], kEvents[index]);
    for (size_t index = 0; index < std::size(kTags); ++index)
        EXPECT_STREQ(gSendNotifyTagList[index], kTags[index]);
}

TEST_F(Forwarding, EventsOfTheTableAndOfTheRange) {
    for (int32_t (*question)(uint64_t) : {ZORShouldAppendSNToLog, KEVAZORShouldAppendSNToLog}) {
        for (const uint64_t event : kEvents) EXPECT_EQ(question(event), 1);
        for (uint64_t event = 0x13450001; event <= 0x13450022; ++event)
            EXPECT_EQ(question(event), 1);
        for (const uint64_t event :
             {uint64_t{0}, uint64_t{0x13450000}, uint64_t{0x13450023}, uint64_t{0x1110000C},
              uint64_t{0x100000000} + 0x11600052, ~uint64_t{0}})
            EXPECT_EQ(question(event), 0) << event;
    }
}

TEST_F(Forwarding, TagsOfTheTable) {
    for (int32_t (*question)(const char *) :
         {ZORShouldSendNotifyDataToRemote, KEVAZORShouldSendNotifyDataToRemote}) {
        for (const char *tag : kTags) EXPECT_EQ(question(tag), 1) << tag;
        for (const char *tag : {"", "eboxLinkFail", "EBOXLINKFAIL", "EboxLinkFail ", "EboxLink"})
            EXPECT_EQ(question(tag), 0) << tag;
        VLIBCErrSetEx(0, "test", 1);
        EXPECT_EQ(question(nullptr), 0);
        EXPECT_EQ(VLIBCErrGet(), 3328);
    }
    ExpectLog({});
}

TEST_F(Forwarding, LogRecordIsSentWhole) {
    ZORLogRecord record;
    for (size_t at = 0; at < sizeof record; ++at) record.bytes[at] = static_cast<uint8_t>(at * 7);
    EXPECT_EQ(KEVAZORSendLogToRemote(record), 0);
    TakeRequest();
    EXPECT_EQ(request_.commandId, 34u);
    EXPECT_EQ(request_.wait, 0u);
    ASSERT_EQ(request_.payloadLength, 568u);
    EXPECT_EQ(memcmp(request_.payload, &record, sizeof record), 0);
    ExpectLog({});
}

TEST_F(Forwarding, NotificationIsSentWhole) {
    ZORNotifyRecord record;
    for (size_t at = 0; at < sizeof record; ++at) record.bytes[at] = static_cast<uint8_t>(at * 3);
    EXPECT_EQ(KEVAZORSendNotifyDataToRemote(&record), 0);
    TakeRequest();
    EXPECT_EQ(request_.commandId, 52u);
    EXPECT_EQ(request_.wait, 0u);
    ASSERT_EQ(request_.payloadLength, 6152u);
    EXPECT_EQ(memcmp(request_.payload, &record, sizeof record), 0);
    EXPECT_EQ(KEVAZORSendNotifyDataToRemote(nullptr), -1);
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
    ExpectLog({});
}

TEST_F(Forwarding, BuzzerOffSettingIsSentWithoutItsNul) {
    WriteText("/etc/kevainfo.conf", "other=\"1\"\nbuzzeroffcfg=\"fan,power\"\n");
    EXPECT_EQ(KEVAZORSendBuzzerOffCfgToRemote(), 0);
    TakeRequest();
    EXPECT_EQ(request_.commandId, 36u);
    EXPECT_EQ(request_.wait, 0u);
    EXPECT_EQ(Payload(), "fan,power");
    WriteText("/etc/kevainfo.conf", "buzzeroffcfg=\"" + std::string(40, 'b') + "\"\n");
    EXPECT_EQ(KEVAZORSendBuzzerOffCfgToRemote(), 0);
    TakeRequest();
    EXPECT_EQ(Payload(), std::string(31, 'b'));
    ExpectLog({});
}

TEST_F(Forwarding, WithoutABuzzerOffSettingNothingIsSent) {
    for (const char *file : {"", "buzzeroffcfg=\"\"\n", "buzzer=\"1\"\n"}) {
        WriteText("/etc/kevainfo.conf", file);
        EXPECT_EQ(KEVAZORSendBuzzerOffCfgToRemote(), -1);
    }
    const FolderInTheWay folder("/etc/kevainfo.conf");
    EXPECT_EQ(KEVAZORSendBuzzerOffCfgToRemote(), -1);
    ExpectLog(Lines(4, Error("KEVAZORSendBuzzerOffCfgToRemote",
                             "Failed to get buzzeroffcfg from kevainfo.conf")));
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
}

TEST_F(Forwarding, FailuresToSendNameTheCommand) {
    WriteText(kStatusFile, "");
    WriteText("/etc/kevainfo.conf", "buzzeroffcfg=\"secret-content\"\n");
    ZORLogRecord log = {};
    ZORNotifyRecord notification = {};
    EXPECT_EQ(KEVAZORSendLogToRemote(log), -1);
    EXPECT_EQ(KEVAZORSendNotifyDataToRemote(&notification), -1);
    EXPECT_EQ(KEVAZORSendBuzzerOffCfgToRemote(), -1);
    ExpectLog({NotReady(), Error("KEVAZORSendLogToRemote", "Failed to send request: 34"),
               NotReady(), Error("KEVAZORSendNotifyDataToRemote", "Failed to send request: 52"),
               NotReady(), Error("KEVAZORSendBuzzerOffCfgToRemote", "Failed to send request: 36")});
}

}  // namespace
