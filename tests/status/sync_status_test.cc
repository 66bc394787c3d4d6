// The status sync record.

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <memory>

#include "support/node_test.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace fs = std::filesystem;

namespace {

struct Field {
    const char *entry;  // less "local_" or "remote_"
    size_t offset;
    size_t width;
};

#define FIELD(entry, name) \
    { entry, offsetof(ZORSyncStatus, name), sizeof(ZORSyncStatus::name) }

// In the order in which they are written.
constexpr Field kCommon[] = {
    FIELD("host_zor_IP", zorIp),      FIELD("host_IP", hostIp),
    FIELD("host_ifname", hostIfName), FIELD("host_zor_ifname", zorIfName),
    FIELD("host_if_speed", ifSpeed),  FIELD("host_version", version),
};

class SyncStatus : public NodeTest {
  protected:
    ZORSyncStatus record_ = {};

    void FillRecord(int32_t role) {
        strcpy(record_.monitoredIfNoStaticIp, "eth4");
        strcpy(record_.ifHasStaticIp, "yes,no");
        strcpy(record_.ifSpeed, "1000,10000");
        strcpy(record_.ifStatus, "up,down");
        strcpy(record_.hostIfName, "eth0,eth1");
        strcpy(record_.zorIfName, "eth2");
        strcpy(record_.hostIp, "10.0.0.1");
        strcpy(record_.zorIp, "169.254.1.1");
        strcpy(record_.version, "6.1-1000");
        strcpy(record_.failedHardware, "fan1");
        strcpy(record_.failedServices, "smb");
        strcpy(record_.failedInterfaces, "eth1");
        strcpy(record_.blockingTasks, "rebuild");
        record_.unused = 0xdeadbeef;
        record_.role = role;
    }

    static std::string CommonRemoteLines(int role) {
        return "remote_host_zor_IP=\"169.254.1.1\"\n"
               "remote_host_IP=\"10.0.0.1\"\n"
               "remote_host_ifname=\"eth0,eth1\"\n"
               "remote_host_zor_ifname=\"eth2\"\n"
               "remote_host_if_speed=\"1000,10000\"\n"
               "remote_host_version=\"6.1-1000\"\n"
               "failed_remote_hardware=\"fan1\"\n"
               "remote_if_has_static_ip=\"yes,no\"\n"
               "remote_role=\"" +
               std::to_string(role) + "\"\n";
    }
};

TEST_F(SyncStatus, LayoutIsPlain) {
    EXPECT_EQ(offsetof(ZORSyncStatus, monitoredIfNoStaticIp), 0u);
    EXPECT_EQ(offsetof(ZORSyncStatus, ifHasStaticIp), 306u);
    EXPECT_EQ(offsetof(ZORSyncStatus, ifSpeed), 612u);
    EXPECT_EQ(offsetof(ZORSyncStatus, ifStatus), 684u);
    EXPECT_EQ(offsetof(ZORSyncStatus, hostIfName), 720u);
    EXPECT_EQ(offsetof(ZORSyncStatus, zorIfName), 1026u);
    EXPECT_EQ(offsetof(ZORSyncStatus, hostIp), 1332u);
    EXPECT_EQ(offsetof(ZORSyncStatus, zorIp), 1512u);
    EXPECT_EQ(offsetof(ZORSyncStatus, version), 1692u);
    EXPECT_EQ(offsetof(ZORSyncStatus, failedHardware), 1724u);
    EXPECT_EQ(offsetof(ZORSyncStatus, failedServices), 1868u);
    EXPECT_EQ(offsetof(ZORSyncStatus, failedInterfaces), 2012u);
    EXPECT_EQ(offsetof(ZORSyncStatus, blockingTasks), 2156u);
    EXPECT_EQ(offsetof(ZORSyncStatus, unused), 3180u);
    EXPECT_EQ(offsetof(ZORSyncStatus, role), 3184u);
    EXPECT_EQ(sizeof(ZORSyncStatus), 3188u);
}

TEST_F(SyncStatus, SetStoresNineKeysInOrder) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    FillRecord(2);
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), 0);
    EXPECT_EQ(ReadText(kStatusFile), "local_role=\"1\"\n" + CommonRemoteLines(2));
    EXPECT_FALSE(Exists("/tmp/zor/.zor.status.changed"));
    ExpectLog({});
}

TEST_F(SyncStatus, PassiveNodeTakesOverTheActiveNodesView) {
    WriteText(kStatusFile, "local_role=\"2\"\n");
    FillRecord(1);
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), 0);
    EXPECT_EQ(ReadText(kStatusFile), "local_role=\"2\"\n" + CommonRemoteLines(1) +
                                         "remote_host_if_status=\"up,down\"\n"
                                         "failed_local_services=\"smb\"\n"
                                         "failed_local_interfaces=\"eth1\"\n"
                                         "monitored_if_no_static_ip=\"eth4\"\n"
                                         "blocking_tasks_local=\"rebuild\"\n");
    ExpectLog({});
}

TEST_F(SyncStatus, NobodyElseTakesItOver) {
    struct Case {
        int localRole;
        uint32_t selector;
        int32_t recordRole;
    };
    for (const Case &c : {Case{1, 4, 1}, Case{4, 4, 1}, Case{0, 4, 1}, Case{2, 4, 2}, Case{2, 4, 4},
                          Case{2, 2, 1}, Case{2, 3, 1}}) {
        SCOPED_TRACE(std::to_string(c.localRole) + " " + std::to_string(c.selector) + " " +
                     std::to_string(c.recordRole));
        WriteText(kStatusFile, "local_role=\"" + std::to_string(c.localRole) + "\"\n");
        FillRecord(c.recordRole);
        EXPECT_EQ(ZORSetSyncHAStatus(c.selector, &record_), 0);
        const std::string text = ReadText(kStatusFile);
        for (const char *entry : {"if_status", "services", "interfaces", "no_static_ip", "tasks"})
            EXPECT_EQ(text.find(entry), std::string::npos) << entry;
    }
}

TEST_F(SyncStatus, EmptyBlockingTasksAreNotStored) {
    WriteText(kStatusFile, "local_role=\"2\"\nblocking_tasks_local=\"mine\"\n");
    FillRecord(1);
    record_.blockingTasks[0] = '\0';
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), 0);
    EXPECT_NE(ReadText(kStatusFile).find("blocking_tasks_local=\"mine\"\n"), std::string::npos);
}

TEST_F(SyncStatus, SetReadsTheLocalRoleBeforeAnythingElse) {
    EXPECT_EQ(ZORSetSyncHAStatus(4, nullptr), -1);
    ExpectLog({"NOTICE zor_status(ZORGetLocalRole): Failed to get role from ha status",
               "ERROR zor_status(ZORSetSyncHAStatus): Failed to get sync ha status"});
}

TEST_F(SyncStatus, SetWithoutTheLockFails) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    FILE *holder = nullptr;
    ASSERT_EQ(ZORFileLock(1, 0, &holder), 0);
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    ExpectLog({"ERROR zor_status(ZORSetSyncHAStatus): Failed to get file lock for ha.status"});
    ZORFileUnlock(&holder);
}

TEST_F(SyncStatus, SetStopsAtTheFirstCommonKeyThatFails) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    EXPECT_EQ(ZORSetSyncHAStatus(1, &record_), -1);
    ExpectLog({"ERROR zor_status(ZORGetStatusKey): Error: Get ha role on status host IP",
               "ERROR zor_status(ZORSetHAStatusImp): Failed to get key",
               "ERROR zor_status(ZORSetSyncHAStatus): Failed to get ha status"});
    FILE *handle = nullptr;
    EXPECT_EQ(ZORFileLock(1, 0, &handle), 0) << "the lock is free";
    ZORFileUnlock(&handle);
}

TEST_F(SyncStatus, CommonValueWithANewlineStopsTheCallThere) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    FillRecord(2);
    strcpy(record_.hostIfName, "eth0\neth1");
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), -1);
    EXPECT_EQ(ReadText(kStatusFile),
              "local_role=\"1\"\n"
              "remote_host_zor_IP=\"169.254.1.1\"\n"
              "remote_host_IP=\"10.0.0.1\"\n");
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], "ERROR zor_status(ZORSetSyncHAStatus): Failed to get ha status");
}

constexpr char kSetFailed[] = "ERROR zor_status(ZORSetSyncHAStatus): Failed to set ha status";
constexpr char kGetFailed[] = "ERROR zor_status(ZORSetSyncHAStatus): Failed to get ha status";

TEST_F(SyncStatus, StaticFlagsThatFailDoNotStopTheCall) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    FillRecord(2);
    strcpy(record_.ifHasStaticIp, "yes\nno");
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), 0);
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], kSetFailed);
    EXPECT_NE(ReadText(kStatusFile).find("remote_role=\"2\""), std::string::npos);
}

TEST_F(SyncStatus, InterfaceStatusThatFailsStopsTheCall) {
    WriteText(kStatusFile, "local_role=\"2\"\n");
    FillRecord(1);
    strcpy(record_.ifStatus, "a\nb");
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), -1);
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], kGetFailed);
    EXPECT_EQ(ReadText(kStatusFile).find("failed_local_services"), std::string::npos);
}

TEST_F(SyncStatus, FailureListsThatFailDoNotStopTheCall) {
    WriteText(kStatusFile, "local_role=\"2\"\n");
    FillRecord(1);
    strcpy(record_.failedServices, "a\nb");
    strcpy(record_.failedInterfaces, "a\nb");
    strcpy(record_.monitoredIfNoStaticIp, "a\nb");
    strcpy(record_.blockingTasks, "a\nb");
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), 0);
    const Lines lines = log_.Take();
    ASSERT_EQ(lines.size(), 8u);
    EXPECT_EQ(lines[1], kSetFailed);
    EXPECT_EQ(lines[3], kSetFailed);
    EXPECT_EQ(lines[5], kSetFailed);
    EXPECT_EQ(lines[7], kGetFailed);
}

TEST_F(SyncStatus, TextWithoutATerminatorIsBoundedByItsWidth) {
    WriteText(kStatusFile, "local_role=\"2\"\n");
    memset(&record_, 'x', sizeof record_);
    record_.role = 1;
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), 0);
    const std::string text = ReadText(kStatusFile);
    const auto expect = [&](const std::string &entry, size_t width) {
        EXPECT_NE(text.find(entry + "=\"" + std::string(width, 'x') + "\"\n"), std::string::npos)
            << entry;
    };
    for (const Field &field : kCommon) expect("remote_" + std::string(field.entry), field.width);
    expect("failed_remote_hardware", 144);
    expect("remote_if_has_static_ip", 306);
    expect("remote_host_if_status", 36);
    expect("failed_local_services", 144);
    expect("failed_local_interfaces", 144);
    expect("monitored_if_no_static_ip", 306);
    expect("blocking_tasks_local", 1024);
    ExpectLog({});
}

TEST_F(SyncStatus, RoleIsStoredWithSevenDigitsAtMost) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    FillRecord(123456789);
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), 0);
    EXPECT_NE(ReadText(kStatusFile).find("remote_role=\"1234567\"\n"), std::string::npos);
    FillRecord(-1);
    EXPECT_EQ(ZORSetSyncHAStatus(4, &record_), 0);
    EXPECT_NE(ReadText(kStatusFile).find("remote_role=\"-1\"\n"), std::string::npos);
}

// --- Get

constexpr char kActiveNode[] =
    "local_role=\"1\"\n"
    "local_host_zor_IP=\"169.254.1.1\"\n"
    "local_host_IP=\"10.0.0.1\"\n"
    "local_host_ifname=\"eth0,eth1\"\n"
    "local_host_zor_ifname=\"eth2\"\n"
    "local_host_if_speed=\"1000,10000\"\n"
    "local_host_version=\"6.1-1000\"\n"
    "failed_local_hardware=\"fan1\"\n"
    "local_if_has_static_ip=\"yes,no\"\n"
    "local_host_if_status=\"up,down\"\n"
    "failed_remote_services=\"smb\"\n"
    "failed_remote_interfaces=\"eth1\"\n"
    "failed_local_services=\"own\"\n"
    "failed_local_interfaces=\"own\"\n"
    "monitored_if_no_static_ip=\"eth4\"\n"
    "blocking_tasks_remote=\"rebuild\"\n"
    "blocking_tasks_local=\"own\"\n";

TEST_F(SyncStatus, ActiveNodeSendsItsViewOfTheRemoteNode) {
    WriteText(kStatusFile, kActiveNode);
    record_.unused = 0xdeadbeef;
    EXPECT_EQ(ZORGetSyncHAStatus(2, &record_), 0);
    const ZORSyncStatus got = record_;
    FillRecord(1);
    EXPECT_EQ(memcmp(&got, &record_, sizeof got), 0);
    ExpectLog({});
}

TEST_F(SyncStatus, OtherNodesSendNineKeysAlone) {
    std::string text = kActiveNode;
    text.replace(0, 14, "local_role=\"2\"");
    WriteText(kStatusFile, text);
    EXPECT_EQ(ZORGetSyncHAStatus(2, &record_), 0);
    const ZORSyncStatus got = record_;
    memset(&record_, 0, sizeof record_);
    FillRecord(2);
    record_.unused = 0;
    memset(record_.ifStatus, 0, sizeof record_.ifStatus);
    memset(record_.failedServices, 0, sizeof record_.failedServices);
    memset(record_.failedInterfaces, 0, sizeof record_.failedInterfaces);
    memset(record_.monitoredIfNoStaticIp, 0, sizeof record_.monitoredIfNoStaticIp);
    memset(record_.blockingTasks, 0, sizeof record_.blockingTasks);
    EXPECT_EQ(memcmp(&got, &record_, sizeof got), 0);
    ExpectLog({});
}

TEST_F(SyncStatus, RemoteSelectorSendsNineKeysAloneAlsoOnTheActiveNode) {
    WriteText(kStatusFile,
              "local_role=\"1\"\n" + CommonRemoteLines(2) + "remote_host_if_status=\"up\"\n");
    EXPECT_EQ(ZORGetSyncHAStatus(4, &record_), 0);
    EXPECT_STREQ(record_.hostIp, "10.0.0.1");
    EXPECT_EQ(record_.role, 2);
    EXPECT_STREQ(record_.ifStatus, "");
}

TEST_F(SyncStatus, AbsentRoleIsZero) {
    record_.role = 77;
    EXPECT_EQ(ZORGetSyncHAStatus(4, &record_), 0);
    EXPECT_EQ(record_.role, 0);
    ExpectLog({"NOTICE zor_status(ZORGetLocalRole): Failed to get role from ha status"});
}

TEST_F(SyncStatus, LongValuesAreCutToTheirField) {
    WriteText(kStatusFile, "local_role=\"1\"\nlocal_host_version=\"" + std::string(100, 'v') +
                               "\"\nlocal_host_if_status=\"" + std::string(100, 's') + "\"\n");
    EXPECT_EQ(ZORGetSyncHAStatus(2, &record_), 0);
    EXPECT_EQ(std::string(record_.version), std::string(31, 'v'));
    EXPECT_EQ(std::string(record_.ifStatus), std::string(35, 's'));
}

TEST_F(SyncStatus, GetOfANullRecordFails) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    EXPECT_EQ(ZORGetSyncHAStatus(2, nullptr), -1);
    ExpectLog({"ERROR zor_status(ZORGetSyncHAStatus): Failed to get sync ha status"});
}

TEST_F(SyncStatus, GetWithoutTheLockFails) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    FILE *holder = nullptr;
    ASSERT_EQ(ZORFileLock(1, 0, &holder), 0);
    EXPECT_EQ(ZORGetSyncHAStatus(2, &record_), -1);
    EXPECT_EQ(virtual_time::Sleeps(), 10);
    ExpectLog({"ERROR zor_status(ZORGetSyncHAStatus): Failed to get file lock for ha.status"});
    ZORFileUnlock(&holder);
}

TEST_F(SyncStatus, EveryKeyThatCannotBeReadIsReportedAndPassedOver) {
    WriteText(kStatusFile, "local_role=\"1\"\n");
    EXPECT_EQ(ZORGetSyncHAStatus(1, &record_), 0);
    int reports = 0;
    for (const std::string &line : log_.Take())
        reports += line == "ERROR zor_status(ZORGetSyncHAStatus): Failed to get ha status";
    EXPECT_EQ(reports, 9);
}

TEST_F(SyncStatus, RecordTravelsFromActiveToPassiveNode) {
    WriteText(kStatusFile, kActiveNode);
    ASSERT_EQ(ZORGetSyncHAStatus(2, &record_), 0);
    WriteText(kStatusFile, "local_role=\"2\"\n");
    ASSERT_EQ(ZORSetSyncHAStatus(4, &record_), 0);
    EXPECT_NE(ReadText(kStatusFile).find("failed_local_services=\"smb\"\n"), std::string::npos);
}

}  // namespace
