#include "cluster_commands.h"

#include <kevacore.h>

#include <cstdio>
#include <cstring>
#include <memory>

#include "health_publisher.h"
#include "peer.h"
#include "request_payload.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace {

constexpr int kListAllocation = 1024;

// Hands an item over. What is in it is nobody's business but the receiver's.
Outcome Forward(const char *what, const std::string &item, Peer &peer) {
    if (!peer.Take(what, item)) return {false, "", "the peer cannot be reached"};
    return {true, "",
            std::string(what) + " of " + std::to_string(item.size()) + " bytes forwarded"};
}

Outcome ForwardExactly(const char *what, size_t size, const ZORMgrMessage &request, Peer &peer) {
    const std::string item = PayloadText(request);
    if (item.size() != size)
        return {false, "", std::string("a ") + what + " has " + std::to_string(size) + " bytes"};
    return Forward(what, item, peer);
}

int CountSystemDisks() {
    VLIBCSzList *disks = VLIBCSzListAlloc(kListAllocation);
    int count = 0;
    if (KEVAZORGetSystemDiskList(&disks) == 0) {
        while (VLIBCSzListGet(disks, count)) ++count;
    }
    VLIBCSzListFree(disks);
    return count;
}

}  // namespace

Outcome ShutDownRemote(const ZORMgrMessage & /*request*/, CommandContext &context) {
    return {context.peer.ShutDown(), "", "the peer is told to shut down"};
}

Outcome AnnounceUpgrade(const ZORMgrMessage &request, CommandContext &context) {
    ZORUpgradePayload payload;
    if (!ReadPayload(request, &payload)) return {false, "", "no announcement of an upgrade"};
    const std::string serial(payload.serialNumber,
                             strnlen(payload.serialNumber, sizeof payload.serialNumber));
    char own[ZOR_SERIAL_SIZE] = {};
    if (ZORGetOriginalSerialNumber(own, sizeof own) != 0 || serial != own)
        return {false, "", "of another node: " + serial};
    const std::string version(payload.version, strnlen(payload.version, sizeof payload.version));
    const std::string kind =
        payload.kind == ZOR_UPDATE_KIND_SMALL_UPDATE ? "small update" : "upgrade";
    context.upgrade = kind + " to " + version;
    return {true, "", context.upgrade + " is under way"};
}

Outcome AnnounceUpgradeFailure(const ZORMgrMessage & /*request*/, CommandContext &context) {
    const std::string failed =
        context.upgrade.empty() ? "an update nobody announced" : context.upgrade;
    context.upgrade.clear();
    return {true, "", failed + " has failed"};
}

// There is no array to adjust on such a machine; its lock and its list are real.
Outcome AdjustSystemDisk(const ZORMgrMessage & /*request*/, CommandContext & /*context*/) {
    FILE *lock = nullptr;
    if (KEVAZORAdjustSystemRaidLock(&lock, 1) != 0)
        return {false, "", "the system disk is being adjusted"};
    const int disks = CountSystemDisks();
    KEVAZORAdjustSystemRaidLock(&lock, 0);
    return {true, "", "system disk adjusted, " + std::to_string(disks) + " disks in the list"};
}

Outcome ForwardLogRecord(const ZORMgrMessage &request, CommandContext &context) {
    return ForwardExactly("log record", sizeof(ZORLogRecord), request, context.peer);
}

Outcome ForwardNotification(const ZORMgrMessage &request, CommandContext &context) {
    return ForwardExactly("notification", sizeof(ZORNotifyRecord), request, context.peer);
}

Outcome ForwardBuzzerOff(const ZORMgrMessage &request, CommandContext &context) {
    return Forward("buzzer-off setting", PayloadText(request), context.peer);
}

Outcome SyncPasswords(const ZORMgrMessage & /*request*/, CommandContext &context) {
    return Forward("password synchronisation", "", context.peer);
}

Outcome AdjustRemoteFans(const ZORMgrMessage &request, CommandContext &context) {
    return Forward("fan adjustment", PayloadText(request), context.peer);
}

Outcome PressResetButton(const ZORMgrMessage & /*request*/, CommandContext & /*context*/) {
    ZORConsoleOutput("The reset button was pressed.");
    return {true, "", "the reset button was pressed, said so on the console"};
}

Outcome CheckHealth(const ZORMgrMessage & /*request*/, CommandContext &context) {
    return {true, "", "health word " + std::to_string(context.health.Answer())};
}
