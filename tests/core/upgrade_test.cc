// Announcing upgrades and small updates, and their failures.

#include <cstring>
#include <filesystem>

#include "core/command_fixture.h"
#include "support/recorded_programs.h"

namespace fs = std::filesystem;

namespace {

constexpr char kMarker[] = "/.flash_version";
constexpr char kBackup[] = "/tmp/zor/.flash_version_backup";
constexpr char kOld[] = "flash_version=\"old\"\nother=\"kept\"\n";
constexpr char kCopied[] = "/bin/cp -f /.flash_version /tmp/zor/.flash_version_backup";
constexpr char kMoved[] = "/bin/mv -f /tmp/zor/.flash_version_backup /.flash_version";

class Upgrade : public CommandTest {
  protected:
    Upgrade() { WriteText(kMarker, kOld); }

    static std::string Marked(const std::string &version) {
        return "flash_version=\"" + version + "\"\nother=\"kept\"\n";
    }

    void ExpectPayload(uint32_t marks, uint32_t kind, const std::string &version) {
        ASSERT_EQ(request_.payloadLength, 108u);
        ZORUpgradePayload payload;
        memcpy(&payload, request_.payload, sizeof payload);
        EXPECT_EQ(payload.updateFlashVersion, marks);
        EXPECT_STREQ(payload.serialNumber, "NODE0001");
        EXPECT_EQ(std::string(payload.version), version);
        EXPECT_EQ(payload.kind, kind);
        const std::string rest(payload.version + version.size(), 64 - version.size());
        EXPECT_EQ(rest, std::string(rest.size(), '\0'));
    }

    RecordedPrograms programs_;
};

TEST_F(Upgrade, IsAnnouncedWithTheMarkerRewritten) {
    AnswerWith(1);
    EXPECT_EQ(KEVAZORUpgrade("6.2-2000"), 0);
    EXPECT_EQ(request_.commandId, 17u);
    EXPECT_EQ(request_.wait, 1u);
    ExpectPayload(1, 1, "6.2-2000");
    EXPECT_EQ(ReadText(kMarker), Marked("6.2-2000"));
    EXPECT_EQ(ReadText(kBackup), kOld);
    EXPECT_EQ(programs_.Take(), Lines{kCopied});
    ExpectLog({});
}

TEST_F(Upgrade, SmallUpdateRewritesTheMarkerOnRequest) {
    for (const int32_t flag : {1, 7, -1}) {
        WriteText(kMarker, kOld);
        AnswerWith(1);
        EXPECT_EQ(KEVAZORSmallUpdate("6.1.1", flag), 0);
        EXPECT_EQ(request_.commandId, 17u);
        ExpectPayload(1, 2, "6.1.1");
        EXPECT_EQ(ReadText(kMarker), Marked("6.1.1"));
        EXPECT_EQ(programs_.Take(), Lines{kCopied});
    }
    WriteText(kMarker, kOld);
    fs::remove(kBackup);
    AnswerWith(1);
    EXPECT_EQ(KEVAZORSmallUpdate("6.1.1", 0), 0);
    ExpectPayload(0, 2, "6.1.1");
    EXPECT_EQ(ReadText(kMarker), kOld);
    EXPECT_FALSE(Exists(kBackup));
    EXPECT_EQ(programs_.Take(), Lines{});
    ExpectLog({});
}

TEST_F(Upgrade, LongVersionIsCut) {
    for (const size_t length : {63u, 64u, 200u}) {
        AnswerWith(1);
        EXPECT_EQ(KEVAZORUpgrade(std::string(length, 'v').c_str()), 0);
        ExpectPayload(1, 1, std::string(63, 'v'));
        EXPECT_EQ(ReadText(kMarker), Marked(std::string(63, 'v')));
    }
}

TEST_F(Upgrade, OnlyTheExpanderSeesTheRemoteNode) {
    WriteStatus("is_remote_alive_by_expander_hb=\"yes\"\nis_remote_alive_by_net=\"no\"\n");
    EXPECT_EQ(KEVAZORUpgrade("new"), -2);
    EXPECT_EQ(ReadText(kMarker), Marked("new"));
    EXPECT_EQ(ReadText(kBackup), kOld);
    ExpectLog({Error("KEVAZORUpgrade", "Failed to send upgrade request")});
    EXPECT_EQ(KEVAZORSmallUpdate("newer", 1), -1) << "a small update says no more";
    ExpectLog({Error("KEVAZORSmallUpdate", "Failed to send upgrade request")});
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
    WriteStatus("is_remote_alive_by_expander_hb=\"yes\"\nis_remote_alive_by_net=\"yes\"\n");
    AnswerWith(1);
    EXPECT_EQ(KEVAZORUpgrade("new"), 0);
}

TEST_F(Upgrade, RefusalIsReported) {
    AnswerWith(0);
    EXPECT_EQ(KEVAZORUpgrade("new"), -1);
    ExpectLog({Error("ZORUpgrade", "Failed to send request: 17"),
               Error("KEVAZORUpgrade", "Failed to send upgrade request")});
    AnswerWith(0);
    EXPECT_EQ(KEVAZORSmallUpdate("new", 0), -1);
    ExpectLog({Error("ZORUpgrade", "Failed to send request: 17"),
               Error("KEVAZORSmallUpdate", "Failed to send upgrade request")});
    AnswerWith(0);
    EXPECT_EQ(KEVAZORUpgradeFail(), -1);
    ExpectLog({Error("ZORUpgradeFail", "Failed to send request: 18"),
               Error("KEVAZORUpgradeFail", "Failed to send upgrade fail request")});
    AnswerWith(0);
    EXPECT_EQ(KEVAZORSmallUpdateFail(), -1);
    ExpectLog({Error("ZORUpgradeFail", "Failed to send request: 18"),
               Error("KEVAZORSmallUpdateFail", "Failed to send upgrade fail request")});
}

TEST_F(Upgrade, TimeOutIsSixtySeconds) {
    EXPECT_EQ(KEVAZORUpgrade("new"), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 61);
    virtual_time::Start();
    EXPECT_EQ(KEVAZORUpgradeFail(), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 61);
    log_.Take();
}

TEST_F(Upgrade, ManagerIsLookedForBeforeTheArguments) {
    RemoveManager();
    EXPECT_EQ(KEVAZORUpgrade(nullptr), -1);
    EXPECT_EQ(KEVAZORSmallUpdate(nullptr, 1), -1);
    EXPECT_EQ(KEVAZORUpgradeFail(), -1);
    EXPECT_EQ(KEVAZORSmallUpdateFail(), -1);
    ExpectLog(
        {Error("KEVAZORUpgrade", "ZOR Manager is not running. Can't do upgrade"),
         Error("KEVAZORSmallUpdate", "ZOR Manager is not running. Can't do small update"),
         Error("KEVAZORUpgradeFail", "ZOR Manager is not running. Can't notify upgrade failed"),
         Error("KEVAZORSmallUpdateFail",
               "ZOR Manager is not running. Can't notify small update failed")});
    EXPECT_EQ(ReadText(kMarker), kOld);
    EXPECT_EQ(programs_.Take(), Lines{});
}

TEST_F(Upgrade, NeedsAVersionAndASerial) {
    EXPECT_EQ(KEVAZORUpgrade(nullptr), -1);
    EXPECT_EQ(KEVAZORSmallUpdate(nullptr, 1), -1);
    ExpectLog({Error("KEVAZORUpgrade", "Error parameter"),
               Error("KEVAZORSmallUpdate", "Error parameter")});
    for (const char *serial : {"", "\n"}) {
        WriteText(kSerialFile, serial);
        EXPECT_EQ(KEVAZORUpgrade("new"), -1);
        EXPECT_EQ(KEVAZORSmallUpdate("new", 1), -1);
        ExpectLog({Error("KEVAZORUpgrade", "Failed to get sn"),
                   Error("KEVAZORSmallUpdate", "Failed to get sn")});
    }
    fs::remove(kSerialFile);
    EXPECT_EQ(KEVAZORUpgrade("new"), -1);
    ExpectLog({Error("KEVAZORUpgrade", "Failed to get sn")});
    EXPECT_EQ(ReadText(kMarker), kOld);
}

TEST_F(Upgrade, CopyThatFailsEndsIt) {
    for (const int code : {1, 127}) {
        programs_.SetExitCode("cp", code);
        EXPECT_EQ(KEVAZORUpgrade("new"), -1);
        ExpectLog({Error("ZORUpgrade",
                         "Failed to execute 'cp -f /.flash_version "
                         "/tmp/zor/.flash_version_backup'"),
                   Error("KEVAZORUpgrade", "Failed to send upgrade request")});
    }
    fs::remove("/bin/cp");
    EXPECT_EQ(KEVAZORUpgrade("new"), -1);
    EXPECT_EQ(log_.Take().size(), 2u);
    EXPECT_EQ(ReadText(kMarker), kOld);
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
}

TEST_F(Upgrade, MarkerThatCannotBeWrittenEndsIt) {
    programs_.SetExitCode("cp", 0);
    const FolderInTheWay folder(kMarker);
    EXPECT_EQ(KEVAZORUpgrade("new"), -1);
    ExpectLog({Error("ZORUpgrade",
                     "Failed to set value of key (path:/.flash_version, "
                     "key:flash_version, value:new)"),
               Error("KEVAZORUpgrade", "Failed to send upgrade request")});
    EXPECT_EQ(KEVAZORUpgrade("two\nlines"), -1);
    log_.Take();
    EXPECT_EQ(queue_end::Count(queue_end::kRequests), 0);
}

TEST_F(Upgrade, FailurePutsTheMarkerBack) {
    for (int32_t (*fail)() : {KEVAZORUpgradeFail, KEVAZORSmallUpdateFail}) {
        WriteText(kMarker, "flash_version=\"new\"\n");
        WriteText(kBackup, kOld);
        AnswerWith(1);
        EXPECT_EQ(fail(), 0);
        EXPECT_EQ(request_.commandId, 18u);
        EXPECT_EQ(request_.wait, 1u);
        EXPECT_EQ(request_.payloadLength, 0u);
        EXPECT_EQ(ReadText(kMarker), kOld);
        EXPECT_FALSE(Exists(kBackup));
        EXPECT_EQ(programs_.Take(), Lines{kMoved});
    }
    ExpectLog({});
}

TEST_F(Upgrade, FailureWithoutABackupIsAnnounced) {
    AnswerWith(1);
    EXPECT_EQ(KEVAZORUpgradeFail(), 0);
    EXPECT_EQ(request_.commandId, 18u);
    EXPECT_EQ(ReadText(kMarker), kOld);
    EXPECT_EQ(programs_.Take(), Lines{});
    ExpectLog({});
}

TEST_F(Upgrade, FailureIsAnnouncedEvenWhenTheMarkerStays) {
    WriteText(kBackup, kOld);
    programs_.SetExitCode("mv", 1);
    AnswerWith(1);
    EXPECT_EQ(KEVAZORUpgradeFail(), 0);
    EXPECT_EQ(request_.commandId, 18u);
    ExpectLog({Error("ZORUpgradeFail",
                     "Failed to execute 'mv -f /tmp/zor/.flash_version_backup "
                     "/.flash_version'")});
}

}  // namespace
