#include "status_publisher.h"

#include "bonding_plan.h"
#include "interface_lists.h"
#include "machine.h"
#include "peer.h"
#include "service_states.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

namespace {

constexpr size_t kFailedHardwareSize = 32;
constexpr char kBooted[] = "3";
constexpr char kRemoteBootDone[] = "1";
constexpr char kRemoteNotBooted[] = "0";
constexpr char kRunning[] = "1";  // state 1, no transition

std::string YesNo(bool value) {
    return value ? "yes" : "no";
}

}  // namespace

int StatusPublisher::Publish() {
    written_ = 0;
    PublishNode();
    PublishPeer();
    PublishInterfaces();
    PublishServices();
    return written_;
}

void StatusPublisher::PublishHardware() {
    char failed[kFailedHardwareSize] = "";
    if (ZORHWGetFailedEncHardware(failed, sizeof failed) == 0)
        Set(ZOR_HOST_CLUSTER, ZOR_STATUS_FAILED_ENC_HARDWARE, failed);
    Set(ZOR_HOST_CLUSTER, ZOR_STATUS_ENC_LINK_STATUS,
        std::to_string(ZORHWGetEncListStatus(ZOR_HOST_LOCAL)));
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
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_BOOT_STAGE, kBooted);
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_IS_HWEVD_READY, "no");
}

void StatusPublisher::PublishPeer() {
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_IS_REMOTE_ALIVE_BY_NET, YesNo(peer_.IsAliveByNet()));
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_IS_REMOTE_ALIVE_BY_EXPANDER_HB,
        YesNo(peer_.IsAliveByExpander()));
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_IS_REMOTE_HANDLER_READY, YesNo(peer_.IsHandlerReady()));
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_REMOTE_BOOT_DONE_STATUS,
        peer_.IsHandlerReady() ? kRemoteBootDone : kRemoteNotBooted);
}

void StatusPublisher::PublishInterfaces() {
    const InterfaceLists lists = ListInterfaces(bonding_.Names(), peer_.IsAliveByNet());
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IFNAME, lists.names);
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IP, lists.addresses);
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IF_STATUS, lists.states);
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_HOST_IF_SPEED, lists.speeds);
    Set(ZOR_HOST_LOCAL, ZOR_STATUS_IF_HAS_STATIC_IP, lists.statics);
}

void StatusPublisher::PublishServices() {
    Set(ZOR_HOST_CLUSTER, ZOR_STATUS_MONITOR_SERVICE_STATUS, ListServiceStates());
}
