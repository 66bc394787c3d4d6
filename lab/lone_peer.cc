#include "peer.h"

namespace {

class LonePeer : public Peer {
  public:
    bool IsAliveByNet() const override { return false; }
    bool IsAliveByExpander() const override { return false; }
    bool IsHandlerReady() const override { return false; }
    std::string Serial() const override { return ""; }
    bool SendConf(const ZORSyncConf & /*conf*/) override { return false; }
    bool SendStatus(const ZORSyncStatus & /*status*/) override { return false; }
    bool TakeStatus(ZORSyncStatus * /*status*/) override { return false; }
    bool SendHardware(const ZORHWHostInfo & /*host*/) override { return false; }
    bool TakeHardware(ZORHWHostInfo * /*host*/) override { return false; }
    bool Take(const std::string & /*what*/, const std::string & /*item*/) override { return false; }
    bool ShutDown() override { return false; }
};

}  // namespace

std::unique_ptr<Peer> MakeLonePeer() {
    return std::make_unique<LonePeer>();
}
