#include "webapi/remote_node_state.h"

#include "webapi/switching_status.h"
#include "zor_status.h"

namespace {

// What the state depends on.
struct Situation {
    RemoteLink remote;
    bool isConfigured;
    SwitchingStatus switching;
    bool hasBootError;
    uint32_t transition;
};

struct StateRow {
    int32_t state;
    bool (*applies)(const Situation &now);
};

// The first that applies.
constexpr StateRow kStateRows[] = {
    {9, [](const Situation &now) { return now.switching == kLocalIsBooting; }},
    {16, [](const Situation &now) { return now.hasBootError; }},
    {12, [](const Situation &now) { return now.transition == 0x40; }},
    {15, [](const Situation &now) { return now.transition == 0x50; }},
    {10, [](const Situation &now) { return now.transition == 0x20 || now.transition == 0x60; }},
    {11, [](const Situation &now) { return now.switching == kSwitching; }},
    {17, [](const Situation &now) { return now.switching == kSwitchingFailed; }},
    {6, [](const Situation &now) { return !now.remote.IsReachable() && !now.isConfigured; }},
    {5, [](const Situation &now) { return !now.remote.IsReachable(); }},
    {0, [](const Situation &now) { return !now.remote.IsTalking() && !now.isConfigured; }},
    {9, [](const Situation &now) { return !now.remote.IsTalking(); }},
};

bool HasBootError() {
    char text[144] = {};
    return ZORGetHAStatus(ZOR_HOST_REMOTE, ZOR_STATUS_BOOT_ERROR, text, sizeof text) == 1;
}

}  // namespace

int32_t RemoteStateWithoutQuestion(const RemoteLink &remote, bool isConfigured,
                                   uint32_t transition) {
    const Situation now = {remote, isConfigured, getRemoteSwitchingStatus(), HasBootError(),
                           transition};
    for (const StateRow &row : kStateRows) {
        if (row.applies(now)) return row.state;
    }
    return kAskForState;
}
