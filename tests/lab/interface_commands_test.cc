// The development manager behind the management interface.

#include <filesystem>
#include <memory>

#include "support/command_run.h"
#include "support/node_test.h"
#include "support/queue_end.h"
#include "zor_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace fs = std::filesystem;

namespace {

class ZorLabInterface : public NodeTest {
  protected:
    ZorLabInterface() {
        UseBuiltPrograms();
        virtual_time::Start([](int) { SleepMilliseconds(30); });
        fs::remove_all(kRuntimeFolder);
    }
    ~ZorLabInterface() override {
        manager_.reset();
        queue_end::RemoveAll();
    }

    void StartManager(const std::string &peer = "in-process") {
        manager_ = std::make_unique<BackgroundCommand>(Lines{"zorlab", "manager", "--peer", peer});
        ASSERT_TRUE(WaitFor([this] {
            return manager_->Output().find("is served") != std::string::npos;
        })) << manager_->Output();
        log_.Take();
    }

    bool ManagerSays(const std::string &text) const {
        return manager_->Output().find(text) != std::string::npos;
    }

    // The snapshot of a node, once there is one.
    ZORNodeInfo Node(int32_t node) {
        ZORNodeInfo info = {};
        EXPECT_TRUE(WaitFor([&] { return KEVAZORGetNodeInfoCached(node, &info, 0) == 1; }));
        return info;
    }

    std::unique_ptr<BackgroundCommand> manager_;
};

TEST_F(ZorLabInterface, SnapshotsAreBuiltOnRequest) {
    StartManager();
    const auto info = std::make_unique<ZORUIInfo>();
    EXPECT_TRUE(WaitFor([&] { return KEVAZORGetZORInfoCached(info.get(), 0) == 1; }));
    EXPECT_NE(info->linkStatus, 6);
    EXPECT_EQ(info->remoteBootDoneAndCommNormal, 1);
    const ZORNodeInfo local = Node(1);
    EXPECT_STREQ(local.serial, "NODE0001");
    EXPECT_EQ(local.role, 1);
    EXPECT_EQ(local.replyStatusA, 2);
    const ZORNodeInfo remote = Node(2);
    EXPECT_STREQ(remote.serial, "PEERNODE000001");
    EXPECT_EQ(remote.role, 2);
    EXPECT_EQ(remote.nodeState, 2);
}

TEST_F(ZorLabInterface, LoneNodeHasNoRemoteCard) {
    StartManager("none");
    const ZORNodeInfo remote = Node(2);
    EXPECT_EQ(remote.nodeState, 6);
    EXPECT_STREQ(remote.serial, "");
    EXPECT_EQ(Node(1).nodeState, 2);
}

TEST_F(ZorLabInterface, HaltCheckTellsWhatIsUnderWay) {
    StartManager();
    const auto check = std::make_unique<ZORHaltCheck>();
    EXPECT_EQ(KEVAZORCheckHaltOpt(3, check.get(), 1), 0);
    EXPECT_EQ(check->which, 3);
    EXPECT_EQ(check->local.blocked, 0);
    EXPECT_EQ(check->remote.blocked, 0);
    WriteText("/.flash_version", "flash_version=\"old\"\n");
    EXPECT_EQ(KEVAZORUpgrade("6.2"), 0);
    EXPECT_EQ(ZORBiosUpgradeStart(), 0);
    EXPECT_EQ(KEVAZORCheckHaltOpt(1, check.get(), 1), 0);
    EXPECT_NE(check->local.blocked, 0);
    EXPECT_STREQ(check->local.tasks, "upgrade to 6.2, BIOS upgrade");
    char tasks[1024] = "";
    EXPECT_EQ(ZORGetHAStatus(2, ZOR_STATUS_BLOCKING_TASKS, tasks, sizeof tasks), 1);
    EXPECT_STREQ(tasks, "upgrade to 6.2, BIOS upgrade");
    EXPECT_EQ(KEVAZORUpgradeFail(), 0);
    EXPECT_EQ(ZORBiosUpgradeEnd(), 0);
    EXPECT_EQ(KEVAZORCheckHaltOpt(1, check.get(), 1), 0);
    EXPECT_EQ(ZORGetHAStatus(2, ZOR_STATUS_BLOCKING_TASKS, tasks, sizeof tasks), 0);
}

TEST_F(ZorLabInterface, ChangesOfWhatIsMonitoredReachTheManager) {
    StartManager();
    ZORMonitorItem item = {1, "samba", 0};
    EXPECT_EQ(KEVAZORSetMonitor(ZOR_MONITOR_SERVICE, &item, 1), 0);
    EXPECT_TRUE(WaitFor([&] { return ManagerSays("monitors the services yes,no,no,no,no"); }));
    char failed[144] = "";
    EXPECT_TRUE(WaitFor([&] {
        return ZORGetHAStatus(2, ZOR_STATUS_FAILED_SERVICES, failed, sizeof failed) == 1 &&
               std::string(failed) == "samba";
    }));
}

TEST_F(ZorLabInterface, OddPayloadsAreRefused) {
    StartManager();
    for (const uint32_t command : {33u, 50u, 60u}) {
        for (const std::string &payload :
             {std::string("x"), std::string("\7\0\0\0", 4), std::string(2061, 'x')}) {
            ZORMgrRequest request = {};
            request.commandId = command;
            request.inputData = payload.data();
            request.inputSize = static_cast<uint32_t>(payload.size());
            request.wait = 1;
            EXPECT_EQ(ZORSendReqToMgr(&request), -2) << command;
            free(request.outputData);
        }
    }
}

}  // namespace
