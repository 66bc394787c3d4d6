// Questions on both nodes.

#include <filesystem>

#include "support/node_test.h"
#include "zor_status.h"

namespace fs = std::filesystem;

namespace {

using NodeState = NodeTest;

struct FlagQuery {
    int32_t (*query)();
    const char *key;
};

constexpr FlagQuery kFlagQueries[] = {
    {ZORIsNetStatusChanged, "is_net_status_changed"},
    {ZORIsHwevdReady, "is_hwevd_ready"},
    {ZORIsRemoteAliveByNet, "is_remote_alive_by_net"},
    {ZORIsRemoteAliveByExpanderHB, "is_remote_alive_by_expander_hb"},
    {ZORIsLocalHandlerReady, "is_local_handler_ready"},
    {ZORIsRemoteHandlerReady, "is_remote_handler_ready"},
};

TEST_F(NodeState, FlagsAreSetByExactlyYesUnderTheirKey) {
    for (const FlagQuery &flag : kFlagQueries) {
        SCOPED_TRACE(flag.key);
        fs::remove(kStatusFile);
        EXPECT_EQ(flag.query(), 0) << "no file";
        WriteText(kStatusFile, "other=\"yes\"\n");
        EXPECT_EQ(flag.query(), 0) << "no key";
        for (const char *value : {"no", "Yes", "YES", "yes ", "yess", "ye", ""}) {
            WriteText(kStatusFile, std::string(flag.key) + "=\"" + value + "\"\n");
            EXPECT_EQ(flag.query(), 0) << value;
        }
        WriteText(kStatusFile, std::string(flag.key) + "=\"yes\"\n");
        EXPECT_NE(flag.query(), 0);
        for (const FlagQuery &other : kFlagQueries) {
            EXPECT_EQ(other.query() != 0, other.query == flag.query) << other.key;
        }
    }
    const FolderInTheWay folder(kStatusFile);
    for (const FlagQuery &flag : kFlagQueries) EXPECT_EQ(flag.query(), 0) << flag.key;
    ExpectLog({});
}

TEST_F(NodeState, RemoteHandlerReadyAndCommNormalNeedsBoth) {
    EXPECT_EQ(ZORIsRemoteHandlerReadyAndCommNormal(), 0);
    WriteText(kStatusFile, "is_remote_handler_ready=\"yes\"\n");
    EXPECT_EQ(ZORIsRemoteHandlerReadyAndCommNormal(), 0);
    WriteText(kStatusFile, "is_remote_alive_by_net=\"yes\"\n");
    EXPECT_EQ(ZORIsRemoteHandlerReadyAndCommNormal(), 0);
    WriteText(kStatusFile, "is_remote_handler_ready=\"yes\"\nis_remote_alive_by_net=\"yes\"\n");
    EXPECT_EQ(ZORIsRemoteHandlerReadyAndCommNormal(), 1);
    ExpectLog({});
}

constexpr char kNoBootDone[] =
    "ERROR zor_status(ZORGetRemoteBootDoneStatus): Failed to get remote_boot_done_status from ha "
    "status";
constexpr char kBootDoneUnknown[] =
    "ERROR zor_status(ZORIsRemoteBootDone): Error: remote boot done status is unknown";

TEST_F(NodeState, BootIsDoneWithBitZeroAndWithoutBitTwo) {
    for (int value = 0; value < 255; ++value) {
        const std::string entry = "remote_boot_done_status=\"" + std::to_string(value) + "\"\n";
        WriteText(kStatusFile, entry);
        const bool isDone = (value & 1) && !(value & 4);
        EXPECT_EQ(ZORGetRemoteBootDoneStatus(), value);
        EXPECT_EQ(ZORIsRemoteBootDone(), isDone) << value;
        EXPECT_EQ(ZORIsRemoteBootDoneAndCommNormal(), 0) << value;
        WriteText(kStatusFile, entry + "is_remote_alive_by_net=\"yes\"\n");
        EXPECT_EQ(ZORIsRemoteBootDoneAndCommNormal(), isDone) << value;
    }
    ExpectLog({});
}

TEST_F(NodeState, BootDoneIsReadToThreeDigits) {
    WriteText(kStatusFile, "remote_boot_done_status=\"1234\"\n");
    EXPECT_EQ(ZORGetRemoteBootDoneStatus(), 123);
}

TEST_F(NodeState, AbsentBootDoneIsUnknown) {
    EXPECT_EQ(ZORGetRemoteBootDoneStatus(), 255);
    ExpectLog({kNoBootDone});
    EXPECT_EQ(ZORIsRemoteBootDone(), 0);
    ExpectLog({kNoBootDone, kBootDoneUnknown});
    EXPECT_EQ(ZORIsRemoteBootDoneAndCommNormal(), 0);
    ExpectLog({kNoBootDone, kBootDoneUnknown});
}

TEST_F(NodeState, StoredUnknownBootDoneIsUnknown) {
    WriteText(kStatusFile, "remote_boot_done_status=\"255\"\nis_remote_alive_by_net=\"yes\"\n");
    EXPECT_EQ(ZORIsRemoteBootDone(), 0);
    EXPECT_EQ(ZORIsRemoteBootDoneAndCommNormal(), 0);
    ExpectLog({kBootDoneUnknown, kBootDoneUnknown});
}

TEST_F(NodeState, RolesAreDecimalNumbers) {
    WriteText(kStatusFile, "local_role=\"1\"\nremote_role=\"4\"\n");
    EXPECT_EQ(ZORGetLocalRole(), 1);
    EXPECT_EQ(ZORGetRemoteRole(), 4);
    EXPECT_EQ(KEVAZORGetLocalRole(), 1);
    EXPECT_EQ(KEVAZORGetRemoteRole(), 4);
    ExpectLog({});
}

TEST_F(NodeState, RolesAreReadIntoBuffersOfDifferentSize) {
    WriteText(kStatusFile, "local_role=\"12345678\"\nremote_role=\"12345678\"\n");
    EXPECT_EQ(ZORGetLocalRole(), 123);
    EXPECT_EQ(ZORGetRemoteRole(), 1234567);
}

TEST_F(NodeState, AbsentRolesAreUnknownAfterANoticeEach) {
    EXPECT_EQ(ZORGetLocalRole(), 0);
    ExpectLog({"NOTICE zor_status(ZORGetLocalRole): Failed to get role from ha status"});
    EXPECT_EQ(ZORGetRemoteRole(), 0);
    ExpectLog({"NOTICE zor_status(ZORGetRemoteRole): Failed to get remote status"});
    EXPECT_EQ(KEVAZORGetLocalRole(), 0);
    ExpectLog({"NOTICE zor_status(ZORGetLocalRole): Failed to get role from ha status"});
}

TEST_F(NodeState, RolesWithoutAManagerAreSilentlyUnknown) {
    fs::remove_all(kRuntimeFolder);
    EXPECT_EQ(KEVAZORGetLocalRole(), 0);
    EXPECT_EQ(KEVAZORGetRemoteRole(), 0);
    ExpectLog({});
}

TEST_F(NodeState, TmpPathIsThereWhileTheManagerRuns) {
    EXPECT_NE(ZORIsTmpPathExist(), 0);
    fs::remove_all(kRuntimeFolder);
    EXPECT_EQ(ZORIsTmpPathExist(), 0);
    WriteText(kRuntimeFolder, "no folder");
    EXPECT_EQ(ZORIsTmpPathExist(), 0);
}

TEST_F(NodeState, RemoteIsAliveByEitherHeartbeat) {
    struct Row {
        const char *expander;
        const char *net;
        uint32_t alive;
    };
    for (const Row &row : {Row{"yes", "yes", 1}, Row{"yes", "no", 1}, Row{"no", "yes", 1},
                           Row{"no", "no", 0}, Row{"", "", 0}, Row{"unknown!", "yes", 1}}) {
        WriteText(kStatusFile, std::string("is_remote_alive_by_expander_hb=\"") + row.expander +
                                   "\"\nis_remote_alive_by_net=\"" + row.net + "\"\n");
        uint32_t alive = 77;
        EXPECT_EQ(KEVAZORIsRemoteAlive(&alive), 0);
        EXPECT_EQ(alive, row.alive) << row.expander << ' ' << row.net;
    }
    ExpectLog({});
}

TEST_F(NodeState, RemoteAliveNeedsTheExpanderEntry) {
    WriteText(kStatusFile, "is_remote_alive_by_net=\"yes\"\n");
    uint32_t alive = 77;
    EXPECT_EQ(KEVAZORIsRemoteAlive(&alive), -1);
    EXPECT_EQ(alive, 77u);
    ExpectLog({});
}

TEST_F(NodeState, RemoteAliveNeedsTheManager) {
    fs::remove_all(kRuntimeFolder);
    uint32_t alive = 77;
    EXPECT_EQ(KEVAZORIsRemoteAlive(&alive), -1);
    EXPECT_EQ(alive, 77u);
    ExpectLog({});
}

}  // namespace
