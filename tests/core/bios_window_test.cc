// The BIOS upgrade window in its three worlds.

#include <filesystem>

#include "core/command_fixture.h"
#include "support/recorded_programs.h"
#include "zor_filelock.h"

namespace fs = std::filesystem;

namespace {

constexpr char kFlag[] = "/tmp/zor/bios_upgrade";
constexpr char kLockFile[] = "/tmp/zor/.zor.lock.upgrade.bios";
constexpr char kStart[] = "KEVAZORBiosUpgradeStart";
constexpr char kEnd[] = "KEVAZORBiosUpgradeEnd";
constexpr char kTimers[] = "/usr/keva/kevazor/bin/kevazor --set_all_expander_HB_timer 600";
constexpr char kTimersBelow[] =
    "/usr/sbin/chroot /dual_glibc /usr/keva/kevazor/bin/kevazor --set_all_expander_HB_timer 600";
constexpr char kStartBelow[] =
    "/usr/sbin/chroot /dual_glibc /usr/keva/kevazor/bin/kevazor --bios-upgrade-start";
constexpr char kEndBelow[] =
    "/usr/sbin/chroot /dual_glibc /usr/keva/kevazor/bin/kevazor --bios-upgrade-end";
constexpr char kManagerBelow[] =
    "/usr/sbin/chroot /dual_glibc /usr/keva/kevazor/bin/keva_zor_mgr_daemon junior_stage";
constexpr char kKillManager[] = "/usr/bin/killall keva_zor_mgr_daemon";
constexpr char kKillCompanion[] = "/usr/bin/killall keva_zor_comm_to_remote_daemon";

class BiosWindow : public CommandTest {
  protected:
    BiosWindow() {
        fs::remove_all("/dual_glibc");
        SetVersion("6", "1");
    }
    ~BiosWindow() override {
        if (handle_) ZORFileUnlock(&handle_);
    }

    static void SetVersion(const std::string &major, const std::string &minor) {
        fs::create_directories("/etc.defaults");
        WriteText("/etc.defaults/VERSION",
                  "majorversion=\"" + major + "\"\nminorversion=\"" + minor + "\"\n");
    }
    static void MakeOtherRoot() { fs::create_directories("/dual_glibc"); }
    static void SetRole(const char *role) {
        WriteStatus(std::string("local_role=\"") + role + "\"\n");
    }
    static bool IsLocked() {
        FILE *other = nullptr;
        if (ZORFileLock(ZOR_LOCK_UPGRADE_BIOS, 0, &other) != 0) return true;
        ZORFileUnlock(&other);
        return false;
    }

    RecordedPrograms programs_;
    FILE *handle_ = nullptr;
};

// --- In this root

TEST_F(BiosWindow, NewVersionHoldsALockAndAFlag) {
    EXPECT_EQ(ZORIsUpgradingBios(), 0);
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), 0);
    EXPECT_NE(ZORIsUpgradingBios(), 0);
    EXPECT_TRUE(IsLocked());
    EXPECT_NE(handle_, nullptr);
    EXPECT_EQ(programs_.Take(), Lines{kTimers});
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), 0);
    EXPECT_EQ(ZORIsUpgradingBios(), 0);
    EXPECT_FALSE(IsLocked());
    EXPECT_EQ(handle_, nullptr);
    EXPECT_EQ(programs_.Take(), Lines{});
    ExpectLog({});
}

TEST_F(BiosWindow, SixHundredIsNew) {
    for (const auto &[major, minor, is_new] :
         {std::tuple<const char *, const char *, bool>{"6", "0", true},
          {"5", "99", false},
          {"5", "100", true},
          {"7", "0", true},
          {"0", "0", false},
          {"x", "y", false}}) {
        SetVersion(major, minor);
        SetRole("2");
        EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), 0);
        EXPECT_EQ(handle_ != nullptr, is_new) << major << "." << minor;
        EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), 0);
    }
    ExpectLog({});
}

TEST_F(BiosWindow, SecondStartFailsAtOnce) {
    ASSERT_EQ(KEVAZORBiosUpgradeStart(&handle_), 0);
    FILE *second = nullptr;
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&second), -1);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(virtual_time::Sleeps(), 0);
    ExpectLog({Error(kStart, "Failed to get lock, bios upgrade is in processing")});
    EXPECT_NE(ZORIsUpgradingBios(), 0);
}

TEST_F(BiosWindow, FailedStartKeepsTheLockForTheEnd) {
    programs_.SetExitCode("kevazor", 3);
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), -1);
    ExpectLog({Error("ZORBiosUpgradeStart", "Failed to prolong expander HB"),
               Error(kStart, "Failed to do bios upgrade start procedure")});
    EXPECT_TRUE(IsLocked());
    EXPECT_TRUE(Exists(kFlag)) << "earlier steps are not undone";
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), 0);
    EXPECT_FALSE(IsLocked());
}

TEST_F(BiosWindow, EndWithoutAFlagFailsAndReleases) {
    ASSERT_EQ(KEVAZORBiosUpgradeStart(&handle_), 0);
    fs::remove(kFlag);
    EXPECT_EQ(ZORBiosUpgradeEnd(), -1);
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), -1);
    ExpectLog({Error(kEnd, "Failed to do bios upgrade end procedure")});
    EXPECT_EQ(handle_, nullptr);
    EXPECT_FALSE(IsLocked());
}

TEST_F(BiosWindow, OldVersionLeavesAnActiveNodeAlone) {
    SetVersion("5", "20");
    SetRole("1");
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), 0);
    EXPECT_FALSE(Exists(kFlag));
    EXPECT_EQ(handle_, nullptr);
    EXPECT_EQ(programs_.Take(), Lines{});
    ExpectLog({});
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), -1);
    ExpectLog({Error(kEnd, "Local role is active, should not be here")});
}

TEST_F(BiosWindow, OldVersionOnAnyOtherNodeTakesNoLock) {
    SetVersion("5", "2");
    for (const char *role : {"0", "2", "4"}) {
        SetRole(role);
        EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), 0);
        EXPECT_TRUE(Exists(kFlag));
        EXPECT_EQ(handle_, nullptr);
        EXPECT_FALSE(Exists(kLockFile));
        EXPECT_EQ(programs_.Take(), Lines{kTimers});
        EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), 0);
        EXPECT_FALSE(Exists(kFlag));
    }
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), -1);
    ExpectLog({Error(kEnd, "Failed to do bios upgrade end procedure")});
    programs_.SetExitCode("kevazor", 1);
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), -1);
    ExpectLog({Error("ZORBiosUpgradeStart", "Failed to prolong expander HB"),
               Error(kStart, "Failed to do bios upgrade start procedure")});
}

TEST_F(BiosWindow, FlagThatCannotBeMadeIsReported) {
    const UntouchableFile flag(kFlag);
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), -1);
    ExpectLog({Error("ZORBiosUpgradeStart", "Failed to create bios upgrade flag"),
               Error(kStart, "Failed to do bios upgrade start procedure")});
    EXPECT_EQ(programs_.Take(), Lines{});
}

// --- In the other root

TEST_F(BiosWindow, NewVersionInTheOtherRootRunsItsTool) {
    MakeOtherRoot();
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), 0);
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), 0);
    EXPECT_EQ(programs_.Take(), (Lines{kStartBelow, kEndBelow}));
    EXPECT_FALSE(Exists(kFlag));
    EXPECT_EQ(handle_, nullptr);
    ExpectLog({});
    programs_.SetExitCode("chroot", 1);
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), -1);
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), -1);
    ExpectLog({Error(kStart, "Failed to do bios upgrade start procedure"),
               Error(kEnd, "Failed to do bios upgrade end procedure")});
}

TEST_F(BiosWindow, OldVersionInTheOtherRootStopsAndStartsTheManager) {
    MakeOtherRoot();
    SetVersion("5", "2");
    SetRole("1");
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), 0);
    EXPECT_EQ(programs_.Take(), (Lines{kKillManager, kKillCompanion, kTimersBelow}));
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), 0);
    EXPECT_EQ(programs_.Take(), Lines{kManagerBelow});
    ExpectLog({});
}

TEST_F(BiosWindow, FailuresInTheOtherRootAreReported) {
    MakeOtherRoot();
    SetVersion("5", "2");
    programs_.SetExitCode("chroot", 9);
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), -1);
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), -1);
    ExpectLog({Error(kStart, "Failed to prolong expander HB timeout to 600"),
               Error(kEnd, "Failed to start ha mgr")});
    programs_.SetExitCode("killall", 1);
    programs_.Take();
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), -1);
    ExpectLog({Error(kStart, "Failed to stop ha mgr")});
    EXPECT_EQ(programs_.Take(), Lines{kKillManager});
}

TEST_F(BiosWindow, EndReleasesALockWhateverTheWorld) {
    ASSERT_EQ(ZORFileLock(ZOR_LOCK_UPGRADE_BIOS, 0, &handle_), 0);
    MakeOtherRoot();
    programs_.SetExitCode("chroot", 1);
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), -1);
    EXPECT_EQ(handle_, nullptr);
    EXPECT_FALSE(IsLocked());
    log_.Take();
}

// --- Before any world

TEST_F(BiosWindow, VersionMustBeKnown) {
    WriteText("/etc.defaults/VERSION", "majorversion=\"6\"\n");
    const Lines minor = {
        Error("GetSysVersion", "Failed to read minor version from /etc.defaults/VERSION")};
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), -1);
    ExpectLog({minor[0], Error(kStart, "Failed to get system version")});
    ASSERT_EQ(ZORFileLock(ZOR_LOCK_UPGRADE_BIOS, 0, &handle_), 0);
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), -1);
    ExpectLog({minor[0], Error(kEnd, "Failed to get system version")});
    EXPECT_EQ(handle_, nullptr) << "released";
    fs::remove("/etc.defaults/VERSION");
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&handle_), -1);
    ExpectLog({Error("GetSysVersion", "Failed to read major version from /etc.defaults/VERSION"),
               Error(kStart, "Failed to get system version")});
}

TEST_F(BiosWindow, HandleIsNeeded) {
    EXPECT_EQ(KEVAZORBiosUpgradeStart(nullptr), -1);
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(nullptr), -1);
    ExpectLog({Error(kStart, "Error parameter"), Error(kEnd, "Error parameter")});
}

TEST_F(BiosWindow, ModelMustSupportTwoNodes) {
    ASSERT_EQ(ZORFileLock(ZOR_LOCK_UPGRADE_BIOS, 0, &handle_), 0);
    ForbidTwoNodes();
    FILE *other = nullptr;
    EXPECT_EQ(KEVAZORBiosUpgradeStart(&other), -1);
    ExpectLog({Error(kStart, "ZOR is not supported on this model")});
    EXPECT_EQ(KEVAZORBiosUpgradeStart(nullptr), -1);
    ExpectLog({Error(kStart, "Error parameter")});
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(nullptr), -1);
    ExpectLog({Error(kEnd, "ZOR is not supported on this model")});
    EXPECT_EQ(KEVAZORBiosUpgradeEnd(&handle_), -1);
    ExpectLog({Error(kEnd, "ZOR is not supported on this model")});
    EXPECT_EQ(handle_, nullptr) << "released";
}

}  // namespace
