// The entries of ha.status that the manager writes for its node.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

class BondingPlan;
class Peer;

class StatusPublisher {
  public:
    StatusPublisher(int role, const Peer &peer, const BondingPlan &bonding)
        : role_(role), peer_(peer), bonding_(bonding) {}

    // Writes the entries that have changed since the last call; returns how many.
    int Publish();

    // Writes the entries that follow from the hardware file.
    void PublishHardware();

    // Says that requests are served from now on.
    void AnnounceReady();

    // Writes an entry unless it has been written with this value already.
    void Set(uint32_t selector, uint32_t key, const std::string &value);

  private:
    void PublishNode();
    void PublishPeer();
    void PublishInterfaces();
    void PublishServices();

    const int role_;
    const Peer &peer_;
    const BondingPlan &bonding_;
    int written_ = 0;
    std::map<std::pair<uint32_t, uint32_t>, std::string> published_;
};
