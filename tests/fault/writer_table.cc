#include "fault/writer_table.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "fault/working_node.h"
#include "kevacore.h"
#include "zor_conf.h"
#include "zor_constraint.h"
#include "zor_core.h"
#include "zor_filelock.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr char kStatusFlag[] = "/tmp/zor/.zor.status.changed";
constexpr char kConfFlag[] = "/tmp/zor/.zor.conf.changed";
constexpr char kConfCache[] = "/tmp/zor/ha.info.cache";
constexpr char kNetFlag[] = "/tmp/zor/.zor.net.conf.changing";
constexpr char kBiosFlag[] = "/tmp/zor/bios_upgrade";
constexpr char kFlashBackup[] = "/tmp/zor/.flash_version_backup";
constexpr char kClusterCache[] = "/tmp/zor/ui/.ui.zorinfo.cache";
constexpr char kClusterFlag[] = "/tmp/zor/ui/.ui.zorinfo.flag";
constexpr char kLocalCache[] = "/tmp/zor/ui/.ui.zornode.local.cache";

// Two enclosures of a chain; what the file has of others is to be forgotten.
void FillHost(ZORHWHostInfo *host, int32_t type, const char *second) {
    host->HostType = type;
    host->EncListLength = host->EncListStatusLastCorretPos = 2;
    const char *const serials[] = {"E1", second};
    for (int index = 0; index < 2; ++index) {
        ZORHWEncInfo &enclosure = host->Encs[index];
        snprintf(enclosure.EncSN, sizeof enclosure.EncSN, "%s", serials[index]);
        enclosure.ModelID = 9;
        enclosure.MaxDisk = 2;
        std::fill_n(enclosure.FanStatus, 8, type);
    }
}

int WriteEnclosures() {
    ZORHWHostInfo host = {};
    FillHost(&host, ZOR_HOST_TYPE_FIRST, "NEW");
    FILE *lock = nullptr;
    if (ZORHWWaitAndLock(&lock) != 0) return -1;
    const int result = HWWriteEncInfoToFile(ZOR_HOST_LOCAL, &host);
    ZORHWUnlock(&lock);
    return result;
}

int WriteFans() {
    ZORHWHostInfo local = {};
    ZORHWHostInfo remote = {};
    FillHost(&local, ZOR_HOST_TYPE_FIRST, "E2");
    FillHost(&remote, ZOR_HOST_TYPE_SECOND, "E2");
    return ZORHWWriteFanPowerStatus(&local, &remote);
}

int SetSection() {
    VLIBCSzHash *hash = VLIBCSzHashAlloc(256);
    if (!hash) return -1;
    VLIBCSzHashSetValue(&hash, "Memory", "4096");
    const int result = HWSetSection("LOCAL_HOST", hash);
    VLIBCSzHashFree(hash);
    return result;
}

int SetStatusRecord() {
    ZORSyncStatus record = {};
    strcpy(record.hostIp, "10.0.0.9");
    strcpy(record.hostIfName, "eth0,eth1");
    strcpy(record.version, "6.1-9");
    record.role = ZOR_ROLE_PASSIVE;
    return ZORSetSyncHAStatus(ZOR_HOST_REMOTE, &record);
}

int SetConfRecord() {
    ZORSyncConf record = {};
    strcpy(record.clusterSerial, "RENAMED");
    strcpy(record.leftSerial, "NODE0001");
    strcpy(record.rightSerial, "NODE0003");
    strcpy(record.monitorIf, "no,yes");
    record.isReady = 1;
    return ZORSetSyncHAConf(&record);
}

int GetAndRemove() {
    char value[64];
    return ZORGetAndRemoveHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_SERVICE_CHANGED, value, sizeof value);
}

int SetDisks() {
    VLIBCSzList *disks = VLIBCSzListAlloc(256);
    if (!disks) return -1;
    VLIBCSzListPush(&disks, "sdc");
    const int result = KEVAZORSetSystemDiskList(disks);
    VLIBCSzListFree(disks);
    return result;
}

int AskForCluster() {
    static ZORUIInfo info;
    return KEVAZORGetZORInfoCached(&info, 0);
}

// The lock that the window keeps open ends with the call.
int OpenBiosWindow() {
    FILE *lock = nullptr;
    const int result = KEVAZORBiosUpgradeStart(&lock);
    if (lock) ZORFileUnlock(&lock);
    return result;
}

int CloseBiosWindow() {
    FILE *lock = nullptr;
    if (ZORBiosUpgradeStart() != 0) return -1;
    return KEVAZORBiosUpgradeEnd(&lock);
}

void KeepMarker() {
    WriteText(kFlashBackup, "flash_version=\"6.0-900\"\nother=\"kept\"\n");
}

int StoreHaltCheck() {
    ZORHaltCheck check = {};
    return KEVAZORCheckHaltOpt(1, &check, 1);
}

int WriteBlindly() {
    const std::string text = "local_role=\"2\"\n" + ReadText(kStatusFile);
    constexpr char kNew[] = "/tmp/zor/ha.status.new";
    const int file = open(kNew, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (write(file, text.data(), text.size()) < 0) errno = 0;
    close(file);
    if (rename(kNew, kStatusFile) != 0) errno = 0;
    return 0;
}

int ChooseServices() {
    ZORMonitorItem row = {};
    strcpy(row.name, "nfsd");
    row.enabled = 1;
    return KEVAZORSetMonitor(ZOR_MONITOR_SERVICE, &row, 1);
}

}  // namespace

const std::vector<Writer> kWriters = {
    {"ZORSetHAStatus",
     [] { return ZORSetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP, "10.9.9.9"); },
     {kStatusFile, kStatusFlag},
     3},
    {"ZORRemoveHAStatus",
     [] { return ZORRemoveHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP); },
     {kStatusFile, kStatusFlag},
     2},
    {"ZORGetAndRemoveHAStatus", GetAndRemove, {kStatusFile, kStatusFlag}, 2},
    {"ZORSetSyncHAStatus", SetStatusRecord, {kStatusFile, kStatusFlag}, 9, kGoesOn},
    {"ZORSetHAStatusChangeFlag", ZORSetHAStatusChangeFlag, {kStatusFlag}, 2, kSilent},
    {"ZORSetHAConf",
     [] { return ZORSetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_IF, "no,no"); },
     {kConfFile, kConfFlag, kConfCache},
     3},
    {"ZORPrepareCachedConf", ZORPrepareCachedConf, {kConfCache}, 4, kGuesses | kGoesOn},
    {"ZORSetSyncHAConf",
     SetConfRecord,
     {kConfFile, kConfFlag, kConfCache},
     5,
     kGoesOn | kGuesses,
     BePassive},
    {"ZORSetHAConfChangeFlag", ZORSetHAConfChangeFlag, {kConfFlag}, 2, kSilent},
    {"ZORSetConstraint",
     [] { return ZORSetConstraint(ZOR_HOST_LOCAL, ZOR_CONSTRAINT_FAILED_SERVICES, "nfsd"); },
     {kConstraintFile},
     2},
    {"ZORCleanConstraint",
     [] { return ZORCleanConstraint(ZOR_HOST_LOCAL, ZOR_CONSTRAINT_FAILED_SERVICES); },
     {kConstraintFile},
     2},
    {"KEVAZORSetSystemDiskList", SetDisks, {kStatusFile, kStatusFlag}, 3},
    {"HWWriteEncInfoToFile", WriteEnclosures, {kHardwareFile}, 5, kGoesOn},
    {"HWSetSection", SetSection, {kHardwareFile}, 2},
    {"ZORHWWriteFanPowerStatus", WriteFans, {kHardwareFile}, 3},
    {"ZORUIGetZORInfo", ZORUIGetZORInfo, {kClusterCache}, 2, kGuesses},
    {"ZORUILoadUI", [] { return ZORUILoadUI(1); }, {kLocalCache}, 2, kGuesses},
    {"KEVAZORGetZORInfoCached", AskForCluster, {kClusterFlag}, 3, kSilent | kOnce},
    {"ZORSetNetConfChanging", [] { return ZORSetNetConfChanging(1); }, {kNetFlag}, 2, kSilent},
    {"KEVAZORSetMonitor", ChooseServices, {kConfFile, kConfFlag}, 2},
    {"KEVAZORUpgrade",
     [] { return KEVAZORUpgrade("6.2-2000"); },
     {kFlashVersionFile, kFlashBackup},
     3,
     kOnce},
    {"KEVAZORUpgradeFail",
     KEVAZORUpgradeFail,
     {kFlashVersionFile, kFlashBackup},
     2,
     kGoesOn | kGuesses | kOnce,
     KeepMarker},
    {"KEVAZORCheckHaltOpt", StoreHaltCheck, {kStatusFile}, 2, kGoesOn},
    {"KEVAZORBiosUpgradeStart", OpenBiosWindow, {kBiosFlag}, 2},
    {"KEVAZORBiosUpgradeEnd", CloseBiosWindow, {kBiosFlag}, 3},
};

const Writer kBlindWriter = {"Blind", WriteBlindly, {kStatusFile}, 2};
