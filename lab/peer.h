// The other node of the pair, as the development manager sees it. One small
// interface, so that a node alone, a peer in this process and a node at the
// other end of a cluster engine are alike to everything else.
#pragma once

#include <memory>
#include <string>

#include "zor_conf.h"
#include "zor_hwinfo_core.h"
#include "zor_status.h"

class Peer {
  public:
    virtual ~Peer() = default;

    virtual bool IsAliveByNet() const = 0;
    virtual bool IsAliveByExpander() const = 0;
    virtual bool IsHandlerReady() const = 0;

    // The factory serial number; empty when the peer is not known.
    virtual std::string Serial() const = 0;

    // Sends this node's configuration. False when the peer cannot be reached.
    virtual bool SendConf(const ZORSyncConf &conf) = 0;

    // Sends this node's status. False when the peer cannot be reached.
    virtual bool SendStatus(const ZORSyncStatus &status) = 0;

    // Takes the newest status that the peer has sent, if there is a new one.
    virtual bool TakeStatus(ZORSyncStatus *status) = 0;

    // Sends what this node knows of its hardware. False when the peer cannot be
    // reached.
    virtual bool SendHardware(const ZORHWHostInfo &host) = 0;

    // Takes the newest hardware that the peer has sent, if there is a new one.
    virtual bool TakeHardware(ZORHWHostInfo *host) = 0;

    // Hands an item over that the peer is to carry out or keep: what it is called,
    // and its content. False when the peer cannot be reached.
    virtual bool Take(const std::string &what, const std::string &item) = 0;

    // Tells the peer to shut down. False when it cannot be reached.
    virtual bool ShutDown() = 0;
};

// The peer of a node that is alone: never there.
std::unique_ptr<Peer> MakeLonePeer();

// A peer that lives in this process: always there and passive. It keeps what it
// is sent and says so, its interfaces are as fast as this node's, and it is the
// other controller of the same chassis. It shuts down when it is told to.
std::unique_ptr<Peer> MakeInProcessPeer(const std::string &chassis_path);
