// How far a switchover with a restart of the remote node has come.
#pragma once

#include <cstdint>

enum SwitchingStatus : int32_t {
    kLocalIsBooting = -2,    // the boot stage is neither 0 nor 3
    kSwitchingUnknown = -1,  // the boot stage is 0, or the status cannot be read
    kNotSwitching = 0,
    kSwitching = 1,        // for less than 300 seconds
    kSwitchingFailed = 2,  // for longer
};

SwitchingStatus getRemoteSwitchingStatus();
