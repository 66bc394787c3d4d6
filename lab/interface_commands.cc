#include "interface_commands.h"

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "health_publisher.h"
#include "peer.h"
#include "request_payload.h"
#include "zor_conf.h"
#include "zor_filelock.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

constexpr int32_t kLocalNode = 1;
constexpr int32_t kRemoteNode = 2;

bool IsEmpty(uint32_t selector, uint32_t key) {
    char value[1024] = "";
    return ZORGetHAStatus(selector, key, value, sizeof value) < 1 || value[0] == '\0';
}

// The first status word says how the node's interfaces and services are, the
// second how its hardware is; the values are its disks.
ZORNodeInfoAnswer DescribeNode(uint32_t selector, int32_t role, const std::string &serial) {
    ZORNodeInfoAnswer answer = {};
    answer.role = role;
    snprintf(answer.serial, sizeof answer.serial, "%s", serial.c_str());
    ZORHWHostInfo host = {};
    ZORHWReadHostValue(static_cast<int32_t>(selector), &host);
    answer.valueA = host.VisibleDisk;
    answer.valueB = host.UsedDisk;
    const bool serves = IsEmpty(selector, ZOR_STATUS_FAILED_INTERFACES) &&
                        IsEmpty(selector, ZOR_STATUS_FAILED_SERVICES);
    const bool is_sound = IsEmpty(selector, ZOR_STATUS_FAILED_HARDWARE) &&
                          IsEmpty(ZOR_HOST_CLUSTER, ZOR_STATUS_FAILED_ENC_HARDWARE);
    answer.statusA = serves ? ZOR_UI_STATE_GOOD : ZOR_UI_STATE_WARNING;
    answer.statusB = is_sound ? ZOR_UI_STATE_GOOD : ZOR_UI_STATE_WARNING;
    return answer;
}

std::string OwnSerial() {
    char serial[ZOR_SERIAL_SIZE] = {};
    ZORGetOriginalSerialNumber(serial, sizeof serial);
    return serial;
}

template <typename Record>
std::string Bytes(const Record &record) {
    return {reinterpret_cast<const char *>(&record), sizeof record};
}

void AddTask(const std::string &task, ZORHaltBlock *block) {
    block->blocked = 1;
    const std::string text = (block->tasks[0] ? std::string(block->tasks) + ", " : "") + task;
    snprintf(block->tasks, sizeof block->tasks, "%s", text.c_str());
}

// What the manager knows to be under way on its node.
ZORHaltBlock LocalTasks(const CommandContext &context) {
    ZORHaltBlock block = {};
    if (!context.upgrade.empty()) AddTask(context.upgrade, &block);
    if (ZORIsUpgradingBios()) AddTask("BIOS upgrade", &block);
    FILE *lock = nullptr;
    if (KEVAZORAdjustSystemRaidLock(&lock, 1) == 0)
        KEVAZORAdjustSystemRaidLock(&lock, 0);
    else
        AddTask("adjusting the system disk", &block);
    return block;
}

std::string Setting(uint32_t key) {
    char value[ZOR_CONF_MONITOR_SIZE] = "";
    ZORGetHAConf(ZOR_HOST_CLUSTER, key, value, sizeof value);
    return value;
}

}  // namespace

// In a process of its own: the builders ask this manager for its nodes and wait
// for the answer.
Outcome LoadSnapshot(const ZORMgrMessage &request, CommandContext & /*context*/) {
    int32_t type;
    if (!ReadPayload(request, &type) || type < 0 || type >= ZOR_UI_TYPE_COUNT)
        return {false, "", "no snapshot type"};
    const pid_t manager = getpid();
    const pid_t child = fork();
    if (child < 0) return {false, "", "no process to build it in"};
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() == manager) ZORUILoadUI(type);
        _exit(0);
    }
    return {true, "", "builds snapshot " + std::to_string(type)};
}

Outcome AskNode(const ZORMgrMessage &request, CommandContext &context) {
    int32_t node;
    if (!ReadPayload(request, &node) || (node != kLocalNode && node != kRemoteNode))
        return {false, "", "no node"};
    if (node == kLocalNode)
        return {true, Bytes(DescribeNode(ZOR_HOST_LOCAL, ZORGetLocalRole(), OwnSerial())),
                "tells of this node"};
    if (!context.peer.IsHandlerReady()) return {false, "", "the peer cannot be reached"};
    return {true, Bytes(DescribeNode(ZOR_HOST_REMOTE, ZORGetRemoteRole(), context.peer.Serial())),
            "tells of the peer"};
}

Outcome CheckHalt(const ZORMgrMessage &request, CommandContext &context) {
    ZORHaltCheck check;
    if (!ReadPayload(request, &check)) return {false, "", "no halt check"};
    check.local = LocalTasks(context);
    check.remote = {};  // a peer that is only another face of this node has no tasks
    return {true, Bytes(check),
            check.local.blocked ? std::string("halting is blocked by ") + check.local.tasks
                                : "nothing blocks halting"};
}

Outcome ChangeMonitoredLinks(const ZORMgrMessage & /*request*/, CommandContext &context) {
    context.health.Publish();
    return {true, "", "monitors the interfaces " + Setting(ZOR_CONF_MONITOR_IF)};
}

Outcome ChangeMonitoredServices(const ZORMgrMessage & /*request*/, CommandContext &context) {
    context.health.Publish();
    return {true, "", "monitors the services " + Setting(ZOR_CONF_MONITOR_SERVICE)};
}
