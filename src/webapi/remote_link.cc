#include "webapi/remote_link.h"

#include "zor_core.h"
#include "zor_status.h"
#include "zor_webapi_core.h"

namespace {

// Of a node that is reachable.
struct LinkRow {
    bool isHeartbeatNormal;
    bool isTalking;
    LinkStates states;
};

constexpr LinkRow kLinkRows[] = {
    {true, true, {ZOR_UI_STATE_GOOD, ZOR_UI_STATE_GOOD}},
    {true, false, {ZOR_UI_STATE_GOOD, ZOR_UI_STATE_WARNING}},
    {false, true, {ZOR_UI_STATE_ERROR, ZOR_UI_STATE_WARNING}},
    {false, false, {ZOR_UI_STATE_ERROR, ZOR_UI_STATE_ERROR}},
};

}  // namespace

RemoteLink LookAtRemote() {
    RemoteLink remote = {};
    remote.byNet = ZORIsRemoteAliveByNet() != 0;
    remote.byExpander = ZORIsRemoteAliveByExpanderHB() != 0;
    remote.isHandlerReady = ZORIsRemoteHandlerReady() != 0;
    return remote;
}

RemoteLink LookAtRemoteAndHeartbeat() {
    RemoteLink remote = LookAtRemote();
    remote.isHeartbeatNormal = ZORIsHeartbeatLinkNormal() != 0;
    return remote;
}

LinkStates LinkStatesOf(const RemoteLink &remote) {
    if (remote.IsReachable()) {
        for (const LinkRow &row : kLinkRows) {
            if (row.isHeartbeatNormal == remote.isHeartbeatNormal &&
                row.isTalking == remote.IsTalking())
                return row.states;
        }
    }
    return {ZOR_UI_STATE_UNREACHABLE, ZOR_UI_STATE_UNREACHABLE};
}
