// What is seen of the remote node, taken once, and what follows for the links.
#pragma once

#include <cstdint>

struct RemoteLink {
    bool byNet;
    bool byExpander;
    bool isHandlerReady;
    bool isHeartbeatNormal;

    bool IsReachable() const { return byNet || byExpander; }
    bool IsTalking() const { return byNet && isHandlerReady; }
};

// The heartbeat takes reading the interfaces, which only the cluster's picture
// needs.
RemoteLink LookAtRemote();
RemoteLink LookAtRemoteAndHeartbeat();

struct LinkStates {
    int32_t heartbeat;
    int32_t link;
};

LinkStates LinkStatesOf(const RemoteLink &remote);
