// The state of the remote node, as far as it is known without asking for it.
#pragma once

#include <cstdint>

#include "webapi/remote_link.h"

// No state of a node: the manager must be asked.
constexpr int32_t kAskForState = -1;

// States that only an answer shows.
constexpr int32_t kForeignNode = 0;  // none is configured, or another one
constexpr int32_t kWithoutExpander = 14;

// transition: of the runtime status.
int32_t RemoteStateWithoutQuestion(const RemoteLink &remote, bool isConfigured,
                                   uint32_t transition);
