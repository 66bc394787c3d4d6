// Two operations timed side by side: short runs of each in turn, so that both
// see the same machine.
#pragma once

#include <functional>
#include <vector>

struct PairedTimes {
    double first_us;  // median time of one operation
    double second_us;
    double ratio;  // median over the rounds of first / second
};

// Runs each operation rounds × repetitions times.
PairedTimes TimePaired(const std::function<void()> &first, const std::function<void()> &second,
                       int rounds, int repetitions);

double Median(std::vector<double> values);
