// The interfaces that can be monitored, as the settings see them.
#pragma once

#include "zor_core.h"

// Whether a port or a bond of the record works: it has a link on this node, one
// on the remote node when that is reachable, and a static address.
bool IsInterfaceActive(const ZORIfInfo &info, const ZORIfEntry &entry);
