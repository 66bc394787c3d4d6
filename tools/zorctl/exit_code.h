// The exit codes of zorctl.
#pragma once

enum ExitCode {
    kExitSuccess = 0,
    kExitFailure = 1,     // a local failure; the library's log line is shown
    kExitRefused = 2,     // the manager refused, or its answer was too large
    kExitTimedOut = 3,    // no answer in time
    kExitNotRunning = 4,  // the manager is not running
    kExitAbsent = 5,      // the entry asked for is not set
    kExitUsage = 64       // the command line is wrong
};
