"""The records and functions of libkevazorcore.so.6, for Python.

Made by scripts/bindings.py from the headers; not to be edited. The names, units and
results are those of the headers; a function that needs a record takes its address:

    library = kevazorcore.load()
    info = kevazorcore.ZORIfInfo()
    result = library.ZORGetConfIfInfo(ctypes.byref(info))
"""
import ctypes


class ZORSyncConf(ctypes.Structure):
    _fields_ = [
        ("clusterSerial", (ctypes.c_char * 36)),
        ("leftSerial", (ctypes.c_char * 36)),
        ("rightSerial", (ctypes.c_char * 36)),
        ("clusterCustomSerial", (ctypes.c_char * 36)),
        ("leftCustomSerial", (ctypes.c_char * 36)),
        ("rightCustomSerial", (ctypes.c_char * 36)),
        ("monitorIf", (ctypes.c_char * 144)),
        ("isReady", ctypes.c_int32),
    ]


class ZORMgrRequest(ctypes.Structure):
    _fields_ = [
        ("commandId", ctypes.c_uint32),
        ("inputData", ctypes.c_void_p),
        ("inputSize", ctypes.c_uint32),
        ("outputData", ctypes.c_void_p),
        ("outputSize", ctypes.c_uint32),
        ("wait", ctypes.c_uint32),
        ("timeout", ctypes.c_int64),
    ]


class ZORMgrMessage(ctypes.Structure):
    _fields_ = [
        ("identity", ctypes.c_int64),
        ("kind", ctypes.c_uint32),
        ("result", ctypes.c_uint32),
        ("wait", ctypes.c_uint32),
        ("reserved1", ctypes.c_uint32),
        ("payloadLength", ctypes.c_uint32),
        ("serialNumber", (ctypes.c_char * 36)),
        ("payload", (ctypes.c_uint8 * 32400)),
        ("commandId", ctypes.c_uint32),
        ("processName", (ctypes.c_char * 64)),
        ("reserved2", ctypes.c_uint32),
        ("sendTime", ctypes.c_int64),
    ]


class ZORCancelPayload(ctypes.Structure):
    _fields_ = [
        ("commandId", ctypes.c_uint32),
        ("reserved1", ctypes.c_uint32),
        ("identity", ctypes.c_int64),
        ("sendTime", ctypes.c_int64),
        ("reason", ctypes.c_uint32),
        ("reserved2", ctypes.c_uint32),
    ]


class ZORIfPort(ctypes.Structure):
    _fields_ = [
        ("index", ctypes.c_int32),
        ("bond", ctypes.c_int32),
        ("monitored", ctypes.c_int32),
        ("staticIp", ctypes.c_int32),
        ("present", ctypes.c_int32),
        ("localSpeed", ctypes.c_int32),
        ("remoteSpeed", ctypes.c_int32),
    ]


class ZORIfBond(ctypes.Structure):
    _fields_ = [
        ("number", ctypes.c_int32),
        ("memberCount", ctypes.c_int32),
        ("minLocalSpeed", ctypes.c_int32),
        ("minRemoteSpeed", ctypes.c_int32),
        ("monitored", ctypes.c_int32),
        ("staticIp", ctypes.c_int32),
    ]


class ZORIfEntry(ctypes.Structure):
    _fields_ = [
        ("isBond", ctypes.c_int32),
        ("monitored", ctypes.c_int32),
        ("index", ctypes.c_int32),
        ("name", (ctypes.c_char * 16)),
    ]


class ZORIfInfo(ctypes.Structure):
    _fields_ = [
        ("ports", (ZORIfPort * 9)),
        ("bonds", (ZORIfBond * 9)),
        ("interfaces", (ZORIfEntry * 9)),
        ("portCount", ctypes.c_int32),
        ("bondCount", ctypes.c_int32),
        ("interfaceCount", ctypes.c_int32),
    ]


class ZORUpgradePayload(ctypes.Structure):
    _fields_ = [
        ("updateFlashVersion", ctypes.c_uint32),
        ("serialNumber", (ctypes.c_char * 36)),
        ("version", (ctypes.c_char * 64)),
        ("kind", ctypes.c_uint32),
    ]


class ZORLogRecord(ctypes.Structure):
    _fields_ = [
        ("bytes", (ctypes.c_uint8 * 568)),
    ]


class ZORNotifyRecord(ctypes.Structure):
    _fields_ = [
        ("bytes", (ctypes.c_uint8 * 6152)),
    ]


class ZORHostHWStatus(ctypes.Structure):
    _fields_ = [
        ("ReplyValue", ctypes.c_int32),
        ("SecondStatusOk", ctypes.c_int32),
        ("FirstStatusOk", ctypes.c_int32),
        ("Label", (ctypes.c_char * 64)),
        ("Serial", (ctypes.c_char * 36)),
        ("ChainState", ctypes.c_int32),
        ("HostType", ctypes.c_int32),
    ]


class ZORHWEncInfo(ctypes.Structure):
    _fields_ = [
        ("TempStatus", ctypes.c_int32),
        ("MaxDisk", ctypes.c_int32),
        ("EncSN", (ctypes.c_char * 36)),
        ("ModelID", ctypes.c_int32),
        ("LinkState", ctypes.c_int32),
        ("PeerLinkState", ctypes.c_int32),
        ("PowerStatus", (ctypes.c_int32 * 2)),
        ("FanStatus", (ctypes.c_int32 * 8)),
        ("DiskTypes", (ctypes.c_int32 * 15)),
    ]


class ZORClusterEncInfo(ctypes.Structure):
    _fields_ = [
        ("EncLinkStatus", ctypes.c_int32),
        ("RemotePresence", ctypes.c_int32),
        ("LastCorretPos", ctypes.c_int32),
        ("Local", ZORHostHWStatus),
        ("Remote", ZORHostHWStatus),
        ("Encs", (ZORHWEncInfo * 15)),
    ]


class ZORFileLockEntry(ctypes.Structure):
    _fields_ = [
        ("id", ctypes.c_int32),
        ("path", ctypes.c_void_p),
    ]


class ZORHWHostInfo(ctypes.Structure):
    _fields_ = [
        ("Model", (ctypes.c_char * 100)),
        ("Encs", (ZORHWEncInfo * 15)),
        ("EncListStatus", ctypes.c_int32),
        ("HostType", ctypes.c_int32),
        ("UsedDisk", ctypes.c_int32),
        ("VisibleDisk", ctypes.c_int32),
        ("EncListLength", ctypes.c_int32),
        ("EncListStatusLastCorretPos", ctypes.c_int32),
        ("Memory", ctypes.c_int32),
    ]


class ZORSyncStatus(ctypes.Structure):
    _fields_ = [
        ("monitoredIfNoStaticIp", (ctypes.c_char * 306)),
        ("ifHasStaticIp", (ctypes.c_char * 306)),
        ("ifSpeed", (ctypes.c_char * 72)),
        ("ifStatus", (ctypes.c_char * 36)),
        ("hostIfName", (ctypes.c_char * 306)),
        ("zorIfName", (ctypes.c_char * 306)),
        ("hostIp", (ctypes.c_char * 180)),
        ("zorIp", (ctypes.c_char * 180)),
        ("version", (ctypes.c_char * 32)),
        ("failedHardware", (ctypes.c_char * 144)),
        ("failedServices", (ctypes.c_char * 144)),
        ("failedInterfaces", (ctypes.c_char * 144)),
        ("blockingTasks", (ctypes.c_char * 1024)),
        ("unused", ctypes.c_uint32),
        ("role", ctypes.c_int32),
    ]


class ZORRuntimeStatus(ctypes.Structure):
    _fields_ = [
        ("state", ctypes.c_uint32),
        ("transition", ctypes.c_uint32),
    ]


class ZORLoadUIInfo(ctypes.Structure):
    _fields_ = [
        ("type", ctypes.c_int32),
        ("lockId", ctypes.c_int32),
        ("flagPath", ctypes.c_void_p),
    ]


class ZORUIDesc(ctypes.Structure):
    _fields_ = [
        ("key", (ctypes.c_char * 64)),
        ("detail", (ctypes.c_char * 1024)),
    ]


class ZORUIInfo(ctypes.Structure):
    _fields_ = [
        ("status", ctypes.c_int32),
        ("linkStatus", ctypes.c_int32),
        ("heartbeatStatus", ctypes.c_int32),
        ("descCount", ctypes.c_int32),
        ("readyA", ctypes.c_int32),
        ("readyB", ctypes.c_int32),
        ("remoteIsThirdHost", ctypes.c_int32),
        ("loginIPIsStatic", ctypes.c_int32),
        ("remoteBootDoneAndCommNormal", ctypes.c_int32),
        ("desc", (ZORUIDesc * 64)),
    ]


class ZORNodeInfo(ctypes.Structure):
    _fields_ = [
        ("serial", (ctypes.c_char * 36)),
        ("role", ctypes.c_int32),
        ("nodeIndex", ctypes.c_int32),
        ("replyStatusA", ctypes.c_int32),
        ("replyStatusB", ctypes.c_int32),
        ("replyValueA", ctypes.c_int32),
        ("replyValueB", ctypes.c_int32),
        ("networkStatus", ctypes.c_int32),
        ("storageStatus", ctypes.c_int32),
        ("nodeState", ctypes.c_int32),
    ]


class ZORNodeInfoAnswer(ctypes.Structure):
    _fields_ = [
        ("role", ctypes.c_int32),
        ("serial", (ctypes.c_char * 36)),
        ("valueA", ctypes.c_int32),
        ("valueB", ctypes.c_int32),
        ("statusA", ctypes.c_int32),
        ("statusB", ctypes.c_int32),
    ]


class ZORNetInfo(ctypes.Structure):
    _fields_ = [
        ("name", (ctypes.c_char * 16)),
        ("hasLocalSpeed", ctypes.c_int32),
        ("localSpeed", ctypes.c_int32),
        ("hasRemoteSpeed", ctypes.c_int32),
        ("remoteSpeed", ctypes.c_int32),
        ("inBond", ctypes.c_int32),
        ("bondNumber", ctypes.c_int32),
        ("portState", ctypes.c_int32),
        ("monitored", ctypes.c_int32),
    ]


class ZORMonitorItem(ctypes.Structure):
    _fields_ = [
        ("enabled", ctypes.c_int32),
        ("name", (ctypes.c_char * 64)),
        ("state", ctypes.c_int32),
    ]


class ZOREnclosureStatus(ctypes.Structure):
    _fields_ = [
        ("status", ctypes.c_int32),
        ("reserved", (ctypes.c_int32 * 2)),
        ("powerStatus", ctypes.c_int32),
        ("fanStatus", ctypes.c_int32),
    ]


class ZORHaltBlock(ctypes.Structure):
    _fields_ = [
        ("blocked", ctypes.c_int32),
        ("tasks", (ctypes.c_char * 1024)),
    ]


class ZORHaltCheck(ctypes.Structure):
    _fields_ = [
        ("which", ctypes.c_int32),
        ("local", ZORHaltBlock),
        ("remote", ZORHaltBlock),
    ]


RECORDS = [ZORSyncConf, ZORMgrRequest, ZORMgrMessage, ZORCancelPayload, ZORIfPort, ZORIfBond, ZORIfEntry, ZORIfInfo, ZORUpgradePayload, ZORLogRecord, ZORNotifyRecord, ZORHostHWStatus, ZORHWEncInfo, ZORClusterEncInfo, ZORFileLockEntry, ZORHWHostInfo, ZORSyncStatus, ZORRuntimeStatus, ZORLoadUIInfo, ZORUIDesc, ZORUIInfo, ZORNodeInfo, ZORNodeInfoAnswer, ZORNetInfo, ZORMonitorItem, ZOREnclosureStatus, ZORHaltBlock, ZORHaltCheck]

FUNCTIONS = {
    "HWReadEncList": (ctypes.c_int32, [ctypes.c_int32, ctypes.POINTER(ZORHWHostInfo)]),
    "HWReadHostValue": (ctypes.c_int32, [ctypes.c_int32, ctypes.POINTER(ZORHWHostInfo)]),
    "HWSetSection": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_void_p]),
    "HWWriteEncInfoToFile": (ctypes.c_int32, [ctypes.c_int32, ctypes.POINTER(ZORHWHostInfo)]),
    "KEVAZORAdjustSystemDisk": (ctypes.c_int32, []),
    "KEVAZORAdjustSystemRaidLock": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_void_p), ctypes.c_int32]),
    "KEVAZORBiosUpgradeEnd": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_void_p)]),
    "KEVAZORBiosUpgradeStart": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_void_p)]),
    "KEVAZORBonding": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_int32]),
    "KEVAZORBondingDone": (ctypes.c_int32, [ctypes.c_uint32]),
    "KEVAZORCheckHaltOpt": (ctypes.c_int32, [ctypes.c_int32, ctypes.POINTER(ZORHaltCheck), ctypes.c_int32]),
    "KEVAZORGetCustomSN": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_uint32]),
    "KEVAZORGetEncFanStatus": (ctypes.c_int32, [ctypes.c_int32, ctypes.POINTER(ctypes.c_int32), ctypes.c_int32]),
    "KEVAZORGetEnclosure": (ctypes.c_int32, [ctypes.POINTER(ZOREnclosureStatus)]),
    "KEVAZORGetLocalRole": (ctypes.c_int32, []),
    "KEVAZORGetMac": (ctypes.c_int32, [ctypes.c_int32, ctypes.c_char_p, ctypes.c_uint32]),
    "KEVAZORGetNetInfo": (ctypes.c_int32, [ctypes.POINTER(ZORNetInfo), ctypes.c_int32, ctypes.POINTER(ctypes.c_int32)]),
    "KEVAZORGetNodeInfoCached": (ctypes.c_int32, [ctypes.c_int32, ctypes.POINTER(ZORNodeInfo), ctypes.c_int32]),
    "KEVAZORGetOriginalSN": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_uint32]),
    "KEVAZORGetOverviewStatus": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_uint32]),
    "KEVAZORGetRemoteOriginalSN": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_uint32]),
    "KEVAZORGetRemoteRole": (ctypes.c_int32, []),
    "KEVAZORGetSerialNumber": (ctypes.c_int32, [ctypes.c_int32, ctypes.c_char_p, ctypes.c_uint32]),
    "KEVAZORGetSystemDiskList": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_void_p)]),
    "KEVAZORGetZORInfoCached": (ctypes.c_int32, [ctypes.POINTER(ZORUIInfo), ctypes.c_int32]),
    "KEVAZORHostEncInfoGet": (ctypes.c_int32, [ctypes.POINTER(ZORClusterEncInfo)]),
    "KEVAZORIsRemoteAlive": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_uint32)]),
    "KEVAZORListMonitor": (ctypes.c_int32, [ctypes.c_uint32, ctypes.POINTER(ZORMonitorItem), ctypes.c_int32, ctypes.POINTER(ctypes.c_int32)]),
    "KEVAZORPassivePoweroff": (ctypes.c_int32, []),
    "KEVAZORPassiveReboot": (ctypes.c_int32, []),
    "KEVAZORRemoteFanAdjust": (ctypes.c_int32, [ctypes.c_void_p, ctypes.c_int32]),
    "KEVAZORResetButtonPress": (ctypes.c_int32, []),
    "KEVAZORSendBuzzerOffCfgToRemote": (ctypes.c_int32, []),
    "KEVAZORSendLogToRemote": (ctypes.c_int32, [ZORLogRecord]),
    "KEVAZORSendNotifyDataToRemote": (ctypes.c_int32, [ctypes.POINTER(ZORNotifyRecord)]),
    "KEVAZORSetMonitor": (ctypes.c_int32, [ctypes.c_uint32, ctypes.POINTER(ZORMonitorItem), ctypes.c_int32]),
    "KEVAZORSetSystemDiskList": (ctypes.c_int32, [ctypes.c_void_p]),
    "KEVAZORShouldAppendSNToLog": (ctypes.c_int32, [ctypes.c_uint64]),
    "KEVAZORShouldSendNotifyDataToRemote": (ctypes.c_int32, [ctypes.c_char_p]),
    "KEVAZORShutdownRemoteAndWaitDisconnectedOnActive": (ctypes.c_int32, []),
    "KEVAZORSmallUpdate": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_int32]),
    "KEVAZORSmallUpdateFail": (ctypes.c_int32, []),
    "KEVAZORSyncPasswdToRemote": (ctypes.c_int32, []),
    "KEVAZORUpgrade": (ctypes.c_int32, [ctypes.c_char_p]),
    "KEVAZORUpgradeFail": (ctypes.c_int32, []),
    "ZORBiosUpgradeEnd": (ctypes.c_int32, []),
    "ZORBiosUpgradeStart": (ctypes.c_int32, []),
    "ZORCheckHealthyStatus": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_uint32)]),
    "ZORCheckHealthyStatusNoWait": (ctypes.c_int32, []),
    "ZORChkIfLockAndLock": (ctypes.c_int32, [ctypes.c_uint32, ctypes.c_int32, ctypes.POINTER(ctypes.c_void_p)]),
    "ZORChkIfUnlockAndUnlock": (ctypes.c_int32, [ctypes.c_uint32, ctypes.POINTER(ctypes.c_void_p)]),
    "ZORCleanAllMsgQueue": (ctypes.c_int32, [ctypes.c_int64]),
    "ZORCleanConfChangeFlag": (ctypes.c_int32, []),
    "ZORCleanConstraint": (ctypes.c_int32, [ctypes.c_int32, ctypes.c_int32]),
    "ZORCleanStatusChangeFlag": (None, []),
    "ZORConsoleOutput": (ctypes.c_int32, [ctypes.c_char_p]),
    "ZORFileLock": (ctypes.c_int32, [ctypes.c_int32, ctypes.c_int32, ctypes.POINTER(ctypes.c_void_p)]),
    "ZORFileUnlock": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_void_p)]),
    "ZORFlashModePoweroff": (ctypes.c_int32, []),
    "ZORFlashModeReboot": (ctypes.c_int32, []),
    "ZORForceFileUnlock": (ctypes.c_int32, [ctypes.c_int32]),
    "ZORGetAndRemoveHAStatus": (ctypes.c_int32, [ctypes.c_uint32, ctypes.c_uint32, ctypes.c_char_p, ctypes.c_uint32]),
    "ZORGetCmdLockGroupID": (ctypes.c_int32, [ctypes.c_uint32]),
    "ZORGetConfIfInfo": (ctypes.c_int32, [ctypes.POINTER(ZORIfInfo)]),
    "ZORGetConfKey": (ctypes.c_char_p, [ctypes.c_uint32, ctypes.c_uint32]),
    "ZORGetConstraint": (ctypes.c_int32, [ctypes.c_int32, ctypes.c_int32, ctypes.c_char_p, ctypes.c_uint32]),
    "ZORGetCustomSerialNumber": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_uint32]),
    "ZORGetHAConf": (ctypes.c_int32, [ctypes.c_uint32, ctypes.c_uint32, ctypes.c_char_p, ctypes.c_uint32]),
    "ZORGetHAStatus": (ctypes.c_int32, [ctypes.c_uint32, ctypes.c_uint32, ctypes.c_char_p, ctypes.c_uint32]),
    "ZORGetHealthyStatus": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_uint32)]),
    "ZORGetLocalBootStage": (ctypes.c_int32, []),
    "ZORGetLocalRole": (ctypes.c_int32, []),
    "ZORGetMsgIdenticalID": (ctypes.c_int64, []),
    "ZORGetOriginalRuntimeStatus": (ctypes.c_int32, []),
    "ZORGetOriginalSerialNumber": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_uint32]),
    "ZORGetRemoteBootDoneStatus": (ctypes.c_int32, []),
    "ZORGetRemoteRole": (ctypes.c_int32, []),
    "ZORGetRuntimeStatus": (ZORRuntimeStatus, []),
    "ZORGetServiceNameList": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_uint32]),
    "ZORGetSyncHAConf": (ctypes.c_int32, [ctypes.POINTER(ZORSyncConf)]),
    "ZORGetSyncHAStatus": (ctypes.c_int32, [ctypes.c_uint32, ctypes.POINTER(ZORSyncStatus)]),
    "ZORGetTimeCode": (ctypes.c_int64, []),
    "ZORHWGetEncListCached": (ctypes.c_int32, [ctypes.POINTER(ZORHWHostInfo), ctypes.POINTER(ZORHWHostInfo)]),
    "ZORHWGetEncListStatus": (ctypes.c_int32, [ctypes.c_int32]),
    "ZORHWGetFailedEncHardware": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_uint32]),
    "ZORHWGetHostNodeType": (ctypes.c_int32, []),
    "ZORHWGetMemory": (ctypes.c_int32, [ctypes.c_int32]),
    "ZORHWGetVolumnStatus": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_uint32)]),
    "ZORHWReadHostValue": (ctypes.c_int32, [ctypes.c_int32, ctypes.POINTER(ZORHWHostInfo)]),
    "ZORHWUnlock": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_void_p)]),
    "ZORHWUtilGetEncListStr": (ctypes.c_int32, [ctypes.POINTER(ZORHWHostInfo), ctypes.c_char_p, ctypes.c_uint32]),
    "ZORHWWaitAndLock": (ctypes.c_int32, [ctypes.POINTER(ctypes.c_void_p)]),
    "ZORHWWriteFanPowerStatus": (ctypes.c_int32, [ctypes.POINTER(ZORHWHostInfo), ctypes.POINTER(ZORHWHostInfo)]),
    "ZORIsConfChanged": (ctypes.c_int32, []),
    "ZORIsHeartbeatLinkNormal": (ctypes.c_int32, []),
    "ZORIsHwevdReady": (ctypes.c_int32, []),
    "ZORIsLocalHandlerReady": (ctypes.c_int32, []),
    "ZORIsNetConfChanging": (ctypes.c_int32, []),
    "ZORIsNetStatusChanged": (ctypes.c_int32, []),
    "ZORIsNowSwitchoverFailoverTakeover": (ctypes.c_int32, [ZORRuntimeStatus]),
    "ZORIsRemoteAliveByExpanderHB": (ctypes.c_int32, []),
    "ZORIsRemoteAliveByNet": (ctypes.c_int32, []),
    "ZORIsRemoteBootDone": (ctypes.c_int32, []),
    "ZORIsRemoteBootDoneAndCommNormal": (ctypes.c_int32, []),
    "ZORIsRemoteHandlerReady": (ctypes.c_int32, []),
    "ZORIsRemoteHandlerReadyAndCommNormal": (ctypes.c_int32, []),
    "ZORIsSkipRestartService": (ctypes.c_int32, [ctypes.c_char_p]),
    "ZORIsStatusChanged": (ctypes.c_int32, []),
    "ZORIsTmpPathExist": (ctypes.c_int32, []),
    "ZORIsUpgradingBios": (ctypes.c_int32, []),
    "ZORParseIFIndex": (ctypes.c_int32, [ctypes.c_char_p, ctypes.POINTER(ctypes.c_int32), ctypes.c_int32, ctypes.c_int32]),
    "ZORPrepareCachedConf": (ctypes.c_int32, []),
    "ZORRemoveHAStatus": (ctypes.c_int32, [ctypes.c_uint32, ctypes.c_uint32]),
    "ZORSendReqToMgr": (ctypes.c_int32, [ctypes.POINTER(ZORMgrRequest)]),
    "ZORSetConstraint": (ctypes.c_int32, [ctypes.c_int32, ctypes.c_int32, ctypes.c_char_p]),
    "ZORSetHAConf": (ctypes.c_int32, [ctypes.c_uint32, ctypes.c_uint32, ctypes.c_char_p]),
    "ZORSetHAConfChangeFlag": (ctypes.c_int32, []),
    "ZORSetHAStatus": (ctypes.c_int32, [ctypes.c_uint32, ctypes.c_uint32, ctypes.c_char_p]),
    "ZORSetHAStatusChangeFlag": (ctypes.c_int32, []),
    "ZORSetNetConfChanging": (ctypes.c_int32, [ctypes.c_int32]),
    "ZORSetPriority": (ctypes.c_int32, [ctypes.c_int32, ctypes.c_int32, ctypes.c_int32]),
    "ZORSetSyncHAConf": (ctypes.c_int32, [ctypes.POINTER(ZORSyncConf)]),
    "ZORSetSyncHAStatus": (ctypes.c_int32, [ctypes.c_uint32, ctypes.POINTER(ZORSyncStatus)]),
    "ZORShouldAppendSNToLog": (ctypes.c_int32, [ctypes.c_uint64]),
    "ZORShouldSendNotifyDataToRemote": (ctypes.c_int32, [ctypes.c_char_p]),
    "ZORUIGetZORInfo": (ctypes.c_int32, []),
    "ZORUILoadUI": (ctypes.c_int32, [ctypes.c_int32]),
    "ZORValidateIFPrefix": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_int32, ctypes.c_int32]),
    "__zorlog": (None, [ctypes.c_int32, ctypes.c_char_p]),
}


def load(path="libkevazorcore.so.6"):
    """The library, with the arguments and results of its functions declared."""
    library = ctypes.CDLL(path)
    for name, (result, arguments) in FUNCTIONS.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library
