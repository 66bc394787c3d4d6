// Says what changes in the hardware of both nodes.
#pragma once

// Prints a line for each change, as JSON or as words, for so many seconds; 0:
// until a signal to stop. Returns the exit code.
int WatchHardware(int seconds, bool json);
