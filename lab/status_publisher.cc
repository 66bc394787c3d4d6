#include "status_publisher.h"

#include <kevacore.h>

#include <cstdio>

#include "machine.h"
#include "peer.h"
#include "zor_filelock.h"
#include "zor_status.h"

namespace {

constexpr char kHardwareFile[] = "/tmp/zor/hw_info";
constexpr char kRunning[] = "1";  // state 1, no transition

std::string YesNo(bool value) {
    return value ? "yes" : "no";
}

void AppendItem(std::string *list, const std::string &item, bool is_first) {
    if (!is_first) *list += ',';
    *list += item;
}

}  // namespace

int StatusPublisher::Publish() {
    written_ = 0;
    PublishNode();
    PublishPeer();
    PublishPorts();
    PublishMemory();
    return written_;
}

void StatusPublisher::AnnounceReady() {
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_IS_LOCAL_HANDLER_READY, "yes");
}

void StatusPublisher::Set(uint32_t selector, uint32_t key, const std::string &value) {
    const auto place = std::make_pair(selector, key);
    const auto known = published_.find(place);
    if (known != published_.end() && known->second == value) return;
    if (ZORSetHAStatus(selector, key, value.c_str()) != 0) return;  // the library has logged it
    published_[place] = value;
    ++written_;
}

void StatusPublisher::PublishNode() {
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_ROLE, std::to_string(role_));
    Set(ZOR_HOST_CLUSTER, ZOR_STATUS_RUNTIME_STATUS, kRunning);
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_VERSION, ReadSystemVersion());
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_IS_HWEVD_READY, "no");
}

void StatusPublisher::PublishPeer() {
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_IS_REMOTE_ALIVE_BY_NET, YesNo(peer_.IsAliveByNet()));
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_IS_REMOTE_ALIVE_BY_EXPANDER_HB,
        YesNo(peer_.IsAliveByExpander()));
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_IS_REMOTE_HANDLER_READY, YesNo(peer_.IsHandlerReady()));
}

// The speeds begin with that of the heartbeat link, which a lone node has not.
void StatusPublisher::PublishPorts() {
    std::string names, addresses, states;
    std::string speeds = "-1";
    for (const Port &port : ReadPorts()) {
        const bool is_first = names.empty();
        AppendItem(&names, port.name, is_first);
        AppendItem(&addresses, port.address, is_first);
        AppendItem(&states, port.is_up ? "up" : "down", is_first);
        AppendItem(&speeds, std::to_string(port.speed_mbit), false);
    }
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IFNAME, names);
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP, addresses);
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IF_STATUS, states);
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IF_SPEED, speeds);
}

void StatusPublisher::PublishMemory() {
    const std::string memory = std::to_string(ReadMemoryMib());
    if (memory == published_memory_) return;
    FILE *lock = nullptr;
    if (ZORHWWaitAndLock(&lock) != 0) return;
    if (VLIBCFileSetSectionValue(kHardwareFile, "LOCAL_HOST", "Memory", memory.c_str()) >= 0)
        published_memory_ = memory;
    ZORHWUnlock(&lock);
}
