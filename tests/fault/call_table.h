// Every exported function as a call that works in a working node and can be repeated
// without end. A function that only makes sense with another, as a lock with its
// release, is called with it; the row has both names.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

enum CallTrait : unsigned {
    kQuery = 1,           // reads, and changes nothing
    kStartsPrograms = 2,  // a thousand times dearer than the others
    kOnPassive = 4,       // refused by an active node
    kTimesOut = 8,        // waits for what does not come: a peer that goes
};

struct ExportedCall {
    std::vector<std::string> names;
    int (*call)();
    unsigned traits = 0;

    bool Is(CallTrait trait) const { return (traits & trait) != 0; }
    std::string Name() const { return names.front(); }
};

// How GoogleTest prints a row.
inline void PrintTo(const ExportedCall &call, std::ostream *out) {
    *out << call.Name();
}

// The name of a case.
inline std::string CallName(const testing::TestParamInfo<ExportedCall> &row) {
    return row.param.Name();
}

extern const std::vector<ExportedCall> kExportedCalls;

// The calls with a trait.
std::vector<ExportedCall> CallsWith(CallTrait trait);
