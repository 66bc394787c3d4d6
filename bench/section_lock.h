// How long a lock is held: this program's own flock sees each lock being taken
// and released, by the library or by a floor.
#pragma once

// Forgets what was measured.
void ResetHoldTimes();

// The median time between taking and releasing, in microseconds.
double MedianHoldTime();
