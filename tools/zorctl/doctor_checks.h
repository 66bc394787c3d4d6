// The checks of zorctl doctor, in the order in which a node needs what they
// look at.
#pragma once

#include <string>
#include <vector>

enum class Verdict {
    kGood,
    kNote,    // worth knowing, no obstacle
    kProblem  // requests or status will fail
};

struct Finding {
    const char *check;
    Verdict verdict;
    std::string text;
    std::string advice;  // what to do about a problem; may be empty
};

std::vector<Finding> RunAllChecks();
