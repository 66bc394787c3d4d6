// The hardware file, as the manager keeps it for its node: both hosts, their
// enclosures, and the counters of damaged storage.
#pragma once

#include <functional>
#include <string>

#include "chassis_file.h"

class Peer;

class HardwarePublisher {
  public:
    using Reporter = std::function<void(const std::string &)>;

    // What goes wrong with the description is reported.
    HardwarePublisher(ChassisFile chassis, Peer &peer, Reporter report)
        : chassis_(std::move(chassis)), peer_(peer), report_(std::move(report)) {}

    // Brings the file up to date with the chassis, the peer and the machine. True
    // when it was written.
    bool Publish();

  private:
    struct Picture {
        ZORHWHostInfo local = {};
        ZORHWHostInfo remote = {};  // of host type 0 when there is none
        DamageCount spaces;
        DamageCount flash_caches;
    };
    Picture Look();
    bool Write(const Picture &picture);

    ChassisFile chassis_;
    Peer &peer_;
    const Reporter report_;
    ZORHWHostInfo remote_ = {};  // what the peer has said last
    Picture written_;
    bool is_written_ = false;
};
