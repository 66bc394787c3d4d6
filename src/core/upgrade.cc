// Announcing an upgrade or a small update to the manager, and its failure. The
// flash version marker is rewritten on the way, and put back after a failure.

#include "core/request_sender.h"
#include "foundation/log.h"
#include "foundation/paths.h"
#include "foundation/text.h"
#include "kevacore.h"
#include "zor_core.h"
#include "zor_status.h"

namespace {

constexpr char kLogModule[] = "zor_core";

constexpr uint32_t kUpgradeCommand = 17;
constexpr uint32_t kUpgradeFailCommand = 18;
constexpr int64_t kTimeout = 60;  // seconds
constexpr int32_t kOnlyByExpander = -2;

// False when the node has no serial number.
bool FillPayload(const char *version, uint32_t kind, bool updatesMarker,
                 ZORUpgradePayload *payload) {
    payload->updateFlashVersion = updatesMarker ? 1 : 0;
    payload->kind = kind;
    if (ZORGetOriginalSerialNumber(payload->serialNumber, sizeof payload->serialNumber) < 0 ||
        payload->serialNumber[0] == '\0')
        return false;
    CopyText(payload->version, sizeof payload->version, version);
    return true;
}

// Keeps a copy of the marker and writes the new version.
bool RewriteMarker(const char *version, const char *function) {
    if (VLIBCExec("/bin/cp", "-f", kFlashVersionFile, kFlashVersionBackup, nullptr) != 0) {
        ZOR_ERROR_OF(function, "Failed to execute 'cp -f %s %s'", kFlashVersionFile,
                     kFlashVersionBackup);
        return false;
    }
    constexpr char kKey[] = "flash_version";
    if (VLIBCFileSetKeyValue(kFlashVersionFile, kKey, version, kKeyValueLine) != 1) {
        ZOR_ERROR_OF(function, "Failed to set value of key (path:%s, key:%s, value:%s)",
                     kFlashVersionFile, kKey, version);
        return false;
    }
    return true;
}

int32_t ZORUpgrade(const ZORUpgradePayload *payload) {
    if (!payload) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (payload->updateFlashVersion && !RewriteMarker(payload->version, __func__)) return -1;
    // The marker stays rewritten: the caller reports the failure, which restores it.
    if (ZORIsRemoteAliveByExpanderHB() && !ZORIsRemoteAliveByNet()) return kOnlyByExpander;
    if (SendCommandAndWait(kUpgradeCommand, payload, sizeof *payload, kTimeout) != 0) {
        ZOR_ERROR("Failed to send request: %d", static_cast<int>(kUpgradeCommand));
        return -1;
    }
    return 0;
}

int32_t ZORUpgradeFail() {
    if (!VLIBCFileCheckDir(kRuntimeFolder)) {
        ZOR_NOTICE("ZOR Manager is not running. Can't notify upgrade failed");
        return -1;
    }
    // A marker that cannot be put back does not keep the manager from being told.
    if (VLIBCFileExist(kFlashVersionBackup) &&
        VLIBCExec("/bin/mv", "-f", kFlashVersionBackup, kFlashVersionFile, nullptr) != 0)
        ZOR_ERROR("Failed to execute 'mv -f %s %s'", kFlashVersionBackup, kFlashVersionFile);
    if (SendCommandAndWait(kUpgradeFailCommand, nullptr, 0, kTimeout) != 0) {
        ZOR_ERROR("Failed to send request: %d", static_cast<int>(kUpgradeFailCommand));
        return -1;
    }
    return 0;
}

}  // namespace

extern "C" {

int32_t KEVAZORUpgrade(const char *version) {
    ZORUpgradePayload payload = {};
    if (!VLIBCFileCheckDir(kRuntimeFolder)) {
        ZOR_ERROR("ZOR Manager is not running. Can't do upgrade");
        return -1;
    }
    if (!version) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (!FillPayload(version, ZOR_UPDATE_KIND_UPGRADE, true, &payload)) {
        ZOR_ERROR("Failed to get sn");
        return -1;
    }
    const int32_t result = ZORUpgrade(&payload);
    if (result >= 0) return 0;
    ZOR_ERROR("Failed to send upgrade request");
    return result == kOnlyByExpander ? kOnlyByExpander : -1;
}

int32_t KEVAZORSmallUpdate(const char *version, int32_t updateFlashVersion) {
    ZORUpgradePayload payload = {};
    if (!VLIBCFileCheckDir(kRuntimeFolder)) {
        ZOR_ERROR("ZOR Manager is not running. Can't do small update");
        return -1;
    }
    if (!version) {
        ZOR_ERROR("Error parameter");
        return -1;
    }
    if (!FillPayload(version, ZOR_UPDATE_KIND_SMALL_UPDATE, updateFlashVersion != 0, &payload)) {
        ZOR_ERROR("Failed to get sn");
        return -1;
    }
    if (ZORUpgrade(&payload) >= 0) return 0;
    ZOR_ERROR("Failed to send upgrade request");
    return -1;  // for a remote node out of the network's reach too, unlike an upgrade
}

int32_t KEVAZORUpgradeFail(void) {
    if (!VLIBCFileCheckDir(kRuntimeFolder)) {
        ZOR_ERROR("ZOR Manager is not running. Can't notify upgrade failed");
        return -1;
    }
    if (ZORUpgradeFail() >= 0) return 0;
    ZOR_ERROR("Failed to send upgrade fail request");
    return -1;
}

int32_t KEVAZORSmallUpdateFail(void) {
    if (!VLIBCFileCheckDir(kRuntimeFolder)) {
        ZOR_ERROR("ZOR Manager is not running. Can't notify small update failed");
        return -1;
    }
    if (ZORUpgradeFail() >= 0) return 0;
    ZOR_ERROR("Failed to send upgrade fail request");
    return -1;
}

}  // extern "C"
