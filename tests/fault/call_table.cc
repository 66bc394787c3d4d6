#include "fault/call_table.h"

#include <concepts>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "fault/working_node.h"
#include "kevacore.h"
#include "support/allocation.h"
#include "zor_conf.h"
#include "zor_constraint.h"
#include "zor_core.h"
#include "zor_encinfo.h"
#include "zor_filelock.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr uint32_t kUngroupedCommand = 17;
constexpr uint32_t kGroupedCommand = 24;

using TextReader = int32_t (*)(char *, uint32_t);

template <TextReader Read>
int Text() {
    char text[512];
    return Read(text, sizeof text);
}

// Records on the heap, where a sanitizer sees their ends.
template <typename Record, std::same_as<size_t>... Count>
auto Fresh(Count... count) {
    const allocation::Pause own;
    return std::make_unique<Record>(count...);
}

template <typename Record, typename Function>
int WithRecord(Function function) {
    const auto record = Fresh<Record>();
    return function(record.get());
}

VLIBCSzList *NewDisks(const char *disk) {
    const allocation::Pause own;
    VLIBCSzList *disks = VLIBCSzListAlloc(64);
    if (disk) VLIBCSzListPush(&disks, disk);
    return disks;
}

int GetDisks() {
    VLIBCSzList *disks = NewDisks(nullptr);
    const int result = KEVAZORGetSystemDiskList(&disks);
    VLIBCSzListFree(disks);
    return result;
}

int SetDisks() {
    VLIBCSzList *disks = NewDisks("sda");
    const int result = KEVAZORSetSystemDiskList(disks);
    VLIBCSzListFree(disks);
    return result;
}

VLIBCSzHash *NewSection() {
    const allocation::Pause own;
    VLIBCSzHash *section = VLIBCSzHashAlloc(64);
    VLIBCSzHashSetValue(&section, "Memory", "4096");
    return section;
}

int SetSection() {
    VLIBCSzHash *section = NewSection();
    const int result = HWSetSection("LOCAL_HOST", section);
    VLIBCSzHashFree(section);
    return result;
}

int LockAndUnlock() {
    FILE *lock = nullptr;
    if (ZORFileLock(ZOR_LOCK_BOOT_PROCEDURE, 0, &lock) != 0) return -1;
    return ZORFileUnlock(&lock);
}

int LockAndUnlockHardware() {
    FILE *lock = nullptr;
    if (ZORHWWaitAndLock(&lock) != 0) return -1;
    return ZORHWUnlock(&lock);
}

int LockAndUnlockCommand() {
    FILE *lock = nullptr;
    if (ZORChkIfLockAndLock(kGroupedCommand, 0, &lock) < 0) return -1;
    return ZORChkIfUnlockAndUnlock(kGroupedCommand, &lock) < 0 ? -1 : 0;
}

int LockAndUnlockRaid() {
    FILE *lock = nullptr;
    if (KEVAZORAdjustSystemRaidLock(&lock, 1) < 0) return -1;
    return KEVAZORAdjustSystemRaidLock(&lock, 0);
}

int WriteLogLine() {
    __zorlog(6, "a line of %s", "the test");
    return 0;
}

int SendAndWait() {
    ZORMgrRequest request = {};
    request.commandId = kUngroupedCommand;
    request.wait = 1;
    const int result = ZORSendReqToMgr(&request);
    free(request.outputData);
    return result;
}

int CleanQueues() {
    return ZORCleanAllMsgQueue(ZORGetTimeCode());
}

int WriteEnclosures() {
    const auto host = Fresh<ZORHWHostInfo>();
    host->HostType = ZOR_HOST_TYPE_FIRST;
    host->EncListLength = host->EncListStatusLastCorretPos = 1;
    snprintf(host->Encs[0].EncSN, sizeof host->Encs[0].EncSN, "E1");
    FILE *lock = nullptr;
    if (ZORHWWaitAndLock(&lock) != 0) return -1;
    const int result = HWWriteEncInfoToFile(ZOR_HOST_LOCAL, host.get());
    ZORHWUnlock(&lock);
    return result;
}

int ReadBothLists() {
    const auto local = Fresh<ZORHWHostInfo>();
    const auto remote = Fresh<ZORHWHostInfo>();
    return ZORHWGetEncListCached(local.get(), remote.get());
}

int WriteFans() {
    const auto hosts = Fresh<ZORHWHostInfo[]>(size_t{2});
    for (ZORHWHostInfo *host : {&hosts[0], &hosts[1]}) {
        host->HostType = host == &hosts[0] ? ZOR_HOST_TYPE_FIRST : ZOR_HOST_TYPE_SECOND;
        host->EncListLength = host->EncListStatus = host->EncListStatusLastCorretPos = 1;
        snprintf(host->Encs[0].EncSN, sizeof host->Encs[0].EncSN, "E1");
    }
    return ZORHWWriteFanPowerStatus(&hosts[0], &hosts[1]);
}

int ListText() {
    const auto host = Fresh<ZORHWHostInfo>();
    host->EncListLength = 1;
    char text[256];
    return ZORHWUtilGetEncListStr(host.get(), text, sizeof text);
}

int ReadFans() {
    int32_t fans[ZOR_ENC_FAN_COUNT];
    return KEVAZORGetEncFanStatus(1, fans, ZOR_ENC_FAN_COUNT);
}

int SetStatusRecord() {
    return WithRecord<ZORSyncStatus>([](ZORSyncStatus *record) {
        strcpy(record->hostIp, "10.0.0.9");
        return ZORSetSyncHAStatus(ZOR_HOST_REMOTE, record);
    });
}

int SetConfRecord() {
    return WithRecord<ZORSyncConf>([](ZORSyncConf *record) {
        strcpy(record->leftSerial, "NODE0001");
        record->isReady = 1;
        return ZORSetSyncHAConf(record);
    });
}

int GetAndRemove() {
    char value[64];
    return ZORGetAndRemoveHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_SERVICE_CHANGED, value,
                                   sizeof value);
}

int OpenAndCloseBiosWindow() {
    FILE *lock = nullptr;
    const int result = KEVAZORBiosUpgradeStart(&lock);
    return KEVAZORBiosUpgradeEnd(&lock) < 0 ? -1 : result;
}

int RaiseAndLowerBiosFlag() {
    if (ZORBiosUpgradeStart() != 0) return -1;
    return ZORBiosUpgradeEnd();
}

int ChooseServices() {
    const auto row = Fresh<ZORMonitorItem>();
    strcpy(row->name, "nfsd");
    return KEVAZORSetMonitor(ZOR_MONITOR_SERVICE, row.get(), 1);
}

int ListServices() {
    const auto rows = Fresh<ZORMonitorItem[]>(size_t{32});
    int32_t count = 0;
    return KEVAZORListMonitor(ZOR_MONITOR_SERVICE, rows.get(), 32, &count);
}

int ReadNetwork() {
    const auto rows = Fresh<ZORNetInfo[]>(size_t{32});
    int32_t count = 0;
    return KEVAZORGetNetInfo(rows.get(), 32, &count);
}

int CleanStatusFlag() {
    if (ZORSetHAStatusChangeFlag() != 0) return -1;
    ZORCleanStatusChangeFlag();
    return 0;
}

int ReadTables() {
    return rgsaalckList[0].path && rgsaalckGroupList[0].path && gMonitorServiceList[0] &&
                   gSkipRestart[0] >= 0 && gAppendLogEventList[0] && gSendNotifyTagList[0] &&
                   gZORLoadUIInfo[0].flagPath
               ? 0
               : -1;
}

}  // namespace

const std::vector<ExportedCall> kExportedCalls = {
    // zor_filelock
    {{"ZORFileLock", "ZORFileUnlock"}, LockAndUnlock},
    {{"ZORForceFileUnlock"}, [] { return ZORForceFileUnlock(ZOR_LOCK_BOOT_PROCEDURE); }},
    {{"ZORHWWaitAndLock", "ZORHWUnlock"}, LockAndUnlockHardware},
    {{"ZORChkIfLockAndLock", "ZORChkIfUnlockAndUnlock"}, LockAndUnlockCommand},
    {{"KEVAZORAdjustSystemRaidLock"}, LockAndUnlockRaid},
    {{"ZORGetCmdLockGroupID"}, [] { return ZORGetCmdLockGroupID(kGroupedCommand); }, kQuery},
    {{"ZORConsoleOutput"}, [] { return ZORConsoleOutput("a line"); }},
    {{"__zorlog"}, WriteLogLine},
    {{"rgsaalckList", "rgsaalckGroupList", "gMonitorServiceList", "gSkipRestart",
      "gAppendLogEventList", "gSendNotifyTagList", "gZORLoadUIInfo"},
     ReadTables,
     kQuery},
    // zor_status
    {{"ZORSetHAStatus"},
     [] { return ZORSetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP, "10.9.9.9"); }},
    {{"ZORGetHAStatus"},
     [] {
         char value[64];
         return ZORGetHAStatus(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IFNAME, value, sizeof value);
     },
     kQuery},
    {{"ZORGetAndRemoveHAStatus"}, GetAndRemove},
    {{"ZORRemoveHAStatus"},
     [] { return ZORRemoveHAStatus(ZOR_HOST_CLUSTER, ZOR_STATUS_SERVICE_CHANGED); }},
    {{"ZORSetHAStatusChangeFlag"}, ZORSetHAStatusChangeFlag},
    {{"ZORIsStatusChanged"}, ZORIsStatusChanged, kQuery},
    {{"ZORCleanStatusChangeFlag"}, CleanStatusFlag},
    {{"ZORSetSyncHAStatus"}, SetStatusRecord},
    {{"ZORGetSyncHAStatus"},
     [] {
         return WithRecord<ZORSyncStatus>(
             [](ZORSyncStatus *record) { return ZORGetSyncHAStatus(ZOR_HOST_LOCAL, record); });
     },
     kQuery},
    {{"ZORGetOriginalRuntimeStatus"}, ZORGetOriginalRuntimeStatus, kQuery},
    {{"ZORGetRuntimeStatus", "ZORIsNowSwitchoverFailoverTakeover"},
     [] { return ZORIsNowSwitchoverFailoverTakeover(ZORGetRuntimeStatus()); },
     kQuery},
    {{"ZORGetLocalBootStage"}, ZORGetLocalBootStage, kQuery},
    {{"ZORIsNetStatusChanged"}, ZORIsNetStatusChanged, kQuery},
    {{"ZORIsHwevdReady"}, ZORIsHwevdReady, kQuery},
    {{"ZORIsRemoteAliveByNet"}, ZORIsRemoteAliveByNet, kQuery},
    {{"ZORIsRemoteAliveByExpanderHB"}, ZORIsRemoteAliveByExpanderHB, kQuery},
    {{"ZORIsLocalHandlerReady"}, ZORIsLocalHandlerReady, kQuery},
    {{"ZORIsRemoteHandlerReady"}, ZORIsRemoteHandlerReady, kQuery},
    {{"ZORIsRemoteHandlerReadyAndCommNormal"}, ZORIsRemoteHandlerReadyAndCommNormal, kQuery},
    {{"ZORGetRemoteBootDoneStatus"}, ZORGetRemoteBootDoneStatus, kQuery},
    {{"ZORIsRemoteBootDone"}, ZORIsRemoteBootDone, kQuery},
    {{"ZORIsRemoteBootDoneAndCommNormal"}, ZORIsRemoteBootDoneAndCommNormal, kQuery},
    {{"ZORGetLocalRole"}, ZORGetLocalRole, kQuery},
    {{"ZORGetRemoteRole"}, ZORGetRemoteRole, kQuery},
    {{"ZORIsTmpPathExist"}, ZORIsTmpPathExist, kQuery},
    {{"KEVAZORGetLocalRole"}, KEVAZORGetLocalRole, kQuery},
    {{"KEVAZORGetRemoteRole"}, KEVAZORGetRemoteRole, kQuery},
    {{"KEVAZORIsRemoteAlive"},
     [] {
         uint32_t alive;
         return KEVAZORIsRemoteAlive(&alive);
     },
     kQuery},
    // zor_conf
    {{"ZORGetConfKey"},
     [] { return ZORGetConfKey(ZOR_HOST_CLUSTER, ZOR_CONF_SN) ? 0 : -1; },
     kQuery},
    {{"ZORGetHAConf"},
     [] {
         char value[64];
         return ZORGetHAConf(ZOR_HOST_REMOTE, ZOR_CONF_SN, value, sizeof value);
     },
     kQuery},
    {
        {"ZORSetHAConf"},
        [] { return ZORSetHAConf(ZOR_HOST_CLUSTER, ZOR_CONF_MONITOR_SERVICE, "no,no"); },
    },
    {{"ZORPrepareCachedConf"}, ZORPrepareCachedConf},
    {{"ZORSetHAConfChangeFlag"}, ZORSetHAConfChangeFlag},
    {{"ZORIsConfChanged"}, ZORIsConfChanged, kQuery},
    {{"ZORCleanConfChangeFlag"},
     [] { return ZORSetHAConfChangeFlag() | ZORCleanConfChangeFlag(); }},
    {{"ZORGetSyncHAConf"}, [] { return WithRecord<ZORSyncConf>(ZORGetSyncHAConf); }, kQuery},
    {{"ZORSetSyncHAConf"}, SetConfRecord, kOnPassive},
    {{"ZORGetServiceNameList"}, Text<ZORGetServiceNameList>, kQuery},
    {{"ZORIsSkipRestartService"}, [] { return ZORIsSkipRestartService("samba"); }, kQuery},
    // zor_constraint
    {{"ZORGetConstraint"},
     [] {
         char value[160];
         return ZORGetConstraint(ZOR_HOST_LOCAL, ZOR_CONSTRAINT_FAILED_SERVICES, value,
                                 sizeof value);
     },
     kQuery},
    {
        {"ZORSetConstraint"},
        [] { return ZORSetConstraint(ZOR_HOST_LOCAL, ZOR_CONSTRAINT_FAILED_SERVICES, "nfsd"); },
    },
    {
        {"ZORCleanConstraint"},
        [] { return ZORCleanConstraint(ZOR_HOST_LOCAL, ZOR_CONSTRAINT_FAILOVER_FROM); },
    },
    // zor_core
    {{"ZORSendReqToMgr"}, SendAndWait},
    {{"ZORGetTimeCode"}, [] { return static_cast<int>(ZORGetTimeCode()); }, kQuery},
    {{"ZORGetMsgIdenticalID"}, [] { return ZORGetMsgIdenticalID() > 0 ? 0 : -1; }, kQuery},
    {{"ZORCleanAllMsgQueue"}, CleanQueues},
    {{"ZORGetOriginalSerialNumber"}, Text<ZORGetOriginalSerialNumber>, kQuery},
    {{"ZORGetCustomSerialNumber"}, Text<ZORGetCustomSerialNumber>, kQuery},
    {{"KEVAZORGetOriginalSN"}, Text<KEVAZORGetOriginalSN>, kQuery},
    {{"KEVAZORGetCustomSN"}, Text<KEVAZORGetCustomSN>, kQuery},
    {{"KEVAZORGetRemoteOriginalSN"}, Text<KEVAZORGetRemoteOriginalSN>, kQuery},
    {{"KEVAZORGetSerialNumber"},
     [] {
         char text[64];
         return KEVAZORGetSerialNumber(0, text, sizeof text);
     },
     kQuery},
    {{"KEVAZORGetMac"},
     [] {
         char text[64];
         return KEVAZORGetMac(1, text, sizeof text);
     },
     kQuery},
    {{"ZORGetConfIfInfo"}, [] { return WithRecord<ZORIfInfo>(ZORGetConfIfInfo); }, kQuery},
    {{"ZORParseIFIndex"},
     [] {
         int32_t index;
         return ZORParseIFIndex("eth3", &index, 1, 0);
     },
     kQuery},
    {{"ZORValidateIFPrefix"}, [] { return ZORValidateIFPrefix("bond1", 0, 1); }, kQuery},
    {{"ZORIsHeartbeatLinkNormal"}, ZORIsHeartbeatLinkNormal, kQuery},
    {{"ZORSetNetConfChanging"}, [] { return ZORSetNetConfChanging(1); }},
    {{"ZORIsNetConfChanging"}, ZORIsNetConfChanging, kQuery},
    {{"KEVAZORBonding"}, [] { return KEVAZORBonding("bond0:eth0:eth1", 15); }},
    {{"KEVAZORBondingDone"}, [] { return KEVAZORBondingDone(1); }},
    {{"KEVAZORSetSystemDiskList"}, SetDisks},
    {{"KEVAZORGetSystemDiskList"}, GetDisks, kQuery},
    {{"KEVAZORUpgrade"}, [] { return KEVAZORUpgrade("6.2-2000"); }, kStartsPrograms},
    {{"KEVAZORSmallUpdate"}, [] { return KEVAZORSmallUpdate("6.2-2000", 0); }},
    {{"KEVAZORUpgradeFail"}, KEVAZORUpgradeFail, kStartsPrograms},
    {{"KEVAZORSmallUpdateFail"}, KEVAZORSmallUpdateFail, kStartsPrograms},
    {{"ZORGetHealthyStatus"},
     [] {
         uint32_t health;
         return ZORGetHealthyStatus(&health);
     },
     kQuery},
    {{"ZORCheckHealthyStatusNoWait"}, ZORCheckHealthyStatusNoWait},
    {{"ZORCheckHealthyStatus"},
     [] {
         uint32_t health;
         return ZORCheckHealthyStatus(&health);
     }},
    {{"KEVAZORGetOverviewStatus"}, Text<KEVAZORGetOverviewStatus>, kQuery},
    {{"ZORShouldAppendSNToLog"}, [] { return ZORShouldAppendSNToLog(1); }, kQuery},
    {{"KEVAZORShouldAppendSNToLog"}, [] { return KEVAZORShouldAppendSNToLog(1); }, kQuery},
    {{"ZORShouldSendNotifyDataToRemote"},
     [] { return ZORShouldSendNotifyDataToRemote("tag"); },
     kQuery},
    {{"KEVAZORShouldSendNotifyDataToRemote"},
     [] { return KEVAZORShouldSendNotifyDataToRemote("tag"); },
     kQuery},
    {{"KEVAZORSendLogToRemote"}, [] { return KEVAZORSendLogToRemote(ZORLogRecord{}); }},
    {{"KEVAZORSendNotifyDataToRemote"},
     [] { return WithRecord<ZORNotifyRecord>(KEVAZORSendNotifyDataToRemote); }},
    {{"KEVAZORSendBuzzerOffCfgToRemote"}, KEVAZORSendBuzzerOffCfgToRemote},
    {{"ZORFlashModeReboot"}, ZORFlashModeReboot, kOnPassive},
    {{"ZORFlashModePoweroff"}, ZORFlashModePoweroff, kOnPassive},
    {{"KEVAZORPassiveReboot"}, KEVAZORPassiveReboot, kOnPassive},
    {{"KEVAZORPassivePoweroff"}, KEVAZORPassivePoweroff, kOnPassive},
    {{"KEVAZORShutdownRemoteAndWaitDisconnectedOnActive"},
     KEVAZORShutdownRemoteAndWaitDisconnectedOnActive,
     kTimesOut},
    {{"KEVAZORSyncPasswdToRemote"}, KEVAZORSyncPasswdToRemote},
    {{"KEVAZORRemoteFanAdjust"}, [] { return KEVAZORRemoteFanAdjust("fan", 3); }},
    {{"KEVAZORAdjustSystemDisk"}, KEVAZORAdjustSystemDisk},
    {{"KEVAZORResetButtonPress"}, KEVAZORResetButtonPress},
    {{"ZORIsUpgradingBios"}, ZORIsUpgradingBios, kQuery},
    {{"ZORBiosUpgradeStart", "ZORBiosUpgradeEnd"}, RaiseAndLowerBiosFlag, kStartsPrograms},
    {{"KEVAZORBiosUpgradeStart", "KEVAZORBiosUpgradeEnd"}, OpenAndCloseBiosWindow, kStartsPrograms},
    {{"ZORSetPriority"}, [] { return ZORSetPriority(0, 0, 0); }},
    // zor_hwinfo_core and zor_encinfo
    {{"HWReadHostValue"},
     [] {
         return WithRecord<ZORHWHostInfo>(
             [](ZORHWHostInfo *host) { return HWReadHostValue(ZOR_HOST_LOCAL, host); });
     },
     kQuery},
    {{"ZORHWReadHostValue"},
     [] {
         return WithRecord<ZORHWHostInfo>(
             [](ZORHWHostInfo *host) { return ZORHWReadHostValue(ZOR_HOST_LOCAL, host); });
     },
     kQuery},
    {{"HWReadEncList"},
     [] {
         return WithRecord<ZORHWHostInfo>(
             [](ZORHWHostInfo *host) { return HWReadEncList(ZOR_HOST_LOCAL, host); });
     },
     kQuery},
    {{"ZORHWGetEncListCached"}, ReadBothLists, kQuery},
    {{"ZORHWUtilGetEncListStr"}, ListText, kQuery},
    {{"HWWriteEncInfoToFile"}, WriteEnclosures},
    {{"HWSetSection"}, SetSection},
    {{"ZORHWWriteFanPowerStatus"}, WriteFans},
    {{"ZORHWGetHostNodeType"}, ZORHWGetHostNodeType, kQuery},
    {{"ZORHWGetEncListStatus"}, [] { return ZORHWGetEncListStatus(ZOR_HOST_LOCAL); }, kQuery},
    {{"ZORHWGetMemory"}, [] { return ZORHWGetMemory(ZOR_HOST_LOCAL); }, kQuery},
    {{"ZORHWGetVolumnStatus"},
     [] {
         uint32_t flags;
         return ZORHWGetVolumnStatus(&flags);
     },
     kQuery},
    {{"ZORHWGetFailedEncHardware"}, Text<ZORHWGetFailedEncHardware>, kQuery},
    {{"KEVAZORHostEncInfoGet"},
     [] { return WithRecord<ZORClusterEncInfo>(KEVAZORHostEncInfoGet); }},
    {{"KEVAZORGetEncFanStatus"}, ReadFans, kQuery},
    // zor_webapi_core
    {{"ZORUIGetZORInfo"}, ZORUIGetZORInfo},
    {
        {"KEVAZORGetZORInfoCached"},
        [] {
            return WithRecord<ZORUIInfo>(
                [](ZORUIInfo *info) { return KEVAZORGetZORInfoCached(info, 0); });
        },
    },
    {{"KEVAZORGetNodeInfoCached"},
     [] {
         return WithRecord<ZORNodeInfo>(
             [](ZORNodeInfo *info) { return KEVAZORGetNodeInfoCached(1, info, 0); });
     }},
    {{"ZORUILoadUI"}, [] { return ZORUILoadUI(ZOR_UI_LOCAL_NODE); }},
    {{"KEVAZORGetNetInfo"}, ReadNetwork, kQuery},
    {{"KEVAZORListMonitor"}, ListServices, kQuery},
    {{"KEVAZORSetMonitor"}, ChooseServices},
    {{"KEVAZORGetEnclosure"},
     [] { return WithRecord<ZOREnclosureStatus>(KEVAZORGetEnclosure); },
     kQuery},
    {{"KEVAZORCheckHaltOpt"},
     [] {
         return WithRecord<ZORHaltCheck>(
             [](ZORHaltCheck *record) { return KEVAZORCheckHaltOpt(1, record, 0); });
     }},
};

std::vector<ExportedCall> CallsWith(CallTrait trait) {
    std::vector<ExportedCall> calls;
    for (const ExportedCall &call : kExportedCalls) {
        if (call.Is(trait)) calls.push_back(call);
    }
    return calls;
}
