#include <cstring>
#include <map>
#include <utility>

#include "chassis_file.h"
#include "machine.h"
#include "peer.h"

namespace {

constexpr char kSerial[] = "PEERNODE000001";

constexpr size_t kController = 1;  // the second of the chassis

class InProcessPeer : public Peer {
  public:
    explicit InProcessPeer(const std::string &chassis_path) : chassis_(chassis_path) {}

    bool IsAliveByNet() const override { return is_up_; }
    bool IsAliveByExpander() const override { return is_up_; }
    bool IsHandlerReady() const override { return is_up_; }
    std::string Serial() const override { return kSerial; }

    bool SendConf(const ZORSyncConf &conf) override {
        conf_ = conf;
        return is_up_;
    }

    bool SendStatus(const ZORSyncStatus &status) override {
        if (memcmp(&status, &received_, sizeof status) == 0) return true;
        received_ = status;
        has_news_ = true;
        return true;
    }

    // Its own status: the same hardware as the node it hears from, in the other role.
    bool TakeStatus(ZORSyncStatus *status) override {
        if (!has_news_) return false;
        has_news_ = false;
        *status = received_;
        status->role = received_.role == ZOR_ROLE_ACTIVE ? ZOR_ROLE_PASSIVE : ZOR_ROLE_ACTIVE;
        memset(status->hostIp, 0, sizeof status->hostIp);
        memset(status->failedInterfaces, 0, sizeof status->failedInterfaces);
        memset(status->failedServices, 0, sizeof status->failedServices);
        memset(status->blockingTasks, 0, sizeof status->blockingTasks);
        return true;
    }

    bool SendHardware(const ZORHWHostInfo & /*host*/) override { return is_up_; }

    // Its own view of the chassis. A description that is none is for this node to
    // report.
    bool TakeHardware(ZORHWHostInfo *host) override {
        try {
            chassis_.Refresh();
        } catch (const ChassisError &) {
            return false;
        }
        *host = DescribeHost(chassis_.Get(), kController, ReadMemoryMib());
        return true;
    }

    bool Take(const std::string &what, const std::string &item) override {
        if (is_up_) items_[what] = item;
        return is_up_;
    }

    // Gone for good.
    bool ShutDown() override { return std::exchange(is_up_, false); }

  private:
    bool is_up_ = true;
    std::map<std::string, std::string> items_;  // the newest of each kind
    ChassisFile chassis_;
    ZORSyncConf conf_ = {};
    ZORSyncStatus received_ = {};
    bool has_news_ = false;
};

}  // namespace

std::unique_ptr<Peer> MakeInProcessPeer(const std::string &chassis_path) {
    return std::make_unique<InProcessPeer>(chassis_path);
}
